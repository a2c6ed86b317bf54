#include "setup/linearisation.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <limits>
#include <string>

namespace tavrel {
namespace {

struct TellingRow {
  int index;
  double linear_degrees;
  double fecuni_degrees;
  double nicrni_degrees;
};

constexpr std::array<TellingRow, 8> kTellingRows = {{{1, 0.8, 0.00, 0.00},
                                                     {25, 20, 1.15, 0.60},
                                                     {100, 80, 3.35, 1.05},
                                                     {145, 116, 3.85, 0.85},
                                                     {250, 200, 3.40, 3.20},
                                                     {365, 292, 2.75, 4.35},
                                                     {500, 400, 2.15, 2.85},
                                                     {625, 500, 0.00, 0.05}}};

TEST(Linearisation, HoldsTheTellingRows) {
  for (const TellingRow& row : kTellingRows) {
    EXPECT_DOUBLE_EQ(row.index * kCountsPerCorrection * 0.05, row.linear_degrees);
    EXPECT_NEAR(CorrectionAt(sensor::kFeCuNi, row.index) * 0.05, row.fecuni_degrees, 1e-9);
    EXPECT_NEAR(CorrectionAt(sensor::kNiCrNi, row.index) * 0.05, row.nicrni_degrees, 1e-9);
  }
}

// What was counted on a copy of the tables that another program has read.
struct Digest {
  int sum = 0;
  long weighted = 0;                 // by the index
  std::uint32_t hash = 2166136261U;  // FNV-1a of the entries as bytes
  int largest = 0;
  int largest_at = 0;            // the first of them
  std::array<int, 25> pieces{};  // sums of 25 entries
};

Digest DigestOf(int code) {
  Digest digest;
  for (int index = 1; index <= kCorrections; ++index) {
    const int entry = CorrectionAt(code, index);
    digest.sum += entry;
    digest.weighted += long{index} * entry;
    digest.hash = (digest.hash ^ static_cast<std::uint32_t>(entry)) * 16777619U;
    digest.pieces.at(static_cast<std::size_t>((index - 1) / 25)) += entry;
    if (entry > digest.largest) {
      digest.largest = entry;
      digest.largest_at = index;
    }
  }
  return digest;
}

TEST(Linearisation, FeCuNiIsWholeEntryByEntry) {
  const Digest digest = DigestOf(sensor::kFeCuNi);
  EXPECT_EQ(digest.sum, 31329);
  EXPECT_EQ(digest.weighted, 8700851);
  EXPECT_EQ(digest.hash, 0xB33D135AU);
  EXPECT_EQ(digest.largest, 77);
  EXPECT_EQ(digest.largest_at, 145);
  const std::array<int, 25> pieces = {296,  847,  1244, 1554, 1752, 1879, 1884, 1831, 1778,
                                      1724, 1671, 1618, 1562, 1455, 1368, 1314, 1259, 1206,
                                      1153, 1099, 993,  802,  575,  347,  118};
  EXPECT_EQ(digest.pieces, pieces);
}

TEST(Linearisation, NiCrNiIsWholeEntryByEntry) {
  const Digest digest = DigestOf(sensor::kNiCrNi);
  EXPECT_EQ(digest.sum, 29786);
  EXPECT_EQ(digest.weighted, 10450426);
  EXPECT_EQ(digest.hash, 0xBE6685E3U);
  EXPECT_EQ(digest.largest, 87);
  EXPECT_EQ(digest.largest_at, 365);
  const std::array<int, 25> pieces = {156,  415,  547,  556,  444,  401,  539,  806,  1131,
                                      1456, 1700, 1896, 2010, 2084, 2155, 2144, 2016, 1929,
                                      1800, 1560, 1348, 1111, 830,  546,  206};
  EXPECT_EQ(digest.pieces, pieces);
}

TEST(Linearisation, IsZeroBeyondItsEnds) {
  constexpr int kLowest = std::numeric_limits<int>::min();
  constexpr int kHighest = std::numeric_limits<int>::max();
  for (const int code : {int{sensor::kFeCuNi}, int{sensor::kNiCrNi}}) {
    for (const int index : {kLowest, -1, 0, 626, 627, kHighest}) {
      EXPECT_EQ(CorrectionAt(code, index), 0) << index;
    }
  }
  EXPECT_EQ(CorrectionAt(sensor::kNiCrNi, 625), 1);
}

TEST(Linearisation, OtherSensorsHaveNoTable) {
  for (const int code : {-1, 0, 1, 2, 5, 6}) {
    EXPECT_EQ(CorrectionAt(code, 145), 0) << code;
    EXPECT_EQ(CorrectionOfTrue(code, 2320), 0) << code;
  }
}

TEST(Linearisation, LooksUpTwice) {
  // True 116 degrees are 2320 counts, entry 145: 77 counts. 2243 counts are entry 140: 76.
  EXPECT_EQ(CorrectionAt(sensor::kFeCuNi, 145), 77);
  EXPECT_EQ(CorrectionAt(sensor::kFeCuNi, 140), 76);
  EXPECT_EQ(CorrectionOfTrue(sensor::kFeCuNi, 2320), 76);
}

TEST(Linearisation, TakesTheLowerEntryBetweenTwo) {
  for (int index = 2; index <= kCorrections; ++index) {
    const auto counts = static_cast<float>(index * kCountsPerCorrection);
    const int first = CorrectionAt(sensor::kNiCrNi, index);
    for (const float beyond : {0.0F, 0.5F, 15.0F, 15.99F}) {
      const float linear = counts + beyond - static_cast<float>(first);
      EXPECT_EQ(CorrectionOfTrue(sensor::kNiCrNi, counts + beyond),
                CorrectionAt(sensor::kNiCrNi, static_cast<int>(linear) / kCountsPerCorrection))
          << counts + beyond;
    }
  }
}

TEST(Linearisation, ReferenceBelowTheFirstEntryHasNoCorrection) {
  EXPECT_EQ(LookUpSpan(sensor::kFeCuNi, 79, 200).reference_correction, 0);
  EXPECT_EQ(LookUpSpan(sensor::kFeCuNi, 0, 200).reference_correction, 0);
  EXPECT_EQ(LookUpSpan(sensor::kFeCuNi, -2500, 200).reference_correction, 0);
  EXPECT_FLOAT_EQ(LookUpSpan(sensor::kFeCuNi, -2500, 200).reference_counts, -500);
}

TEST(Linearisation, FinalValueOfFiveHundredIsTheLastEntry) {
  const LinearisedSpan fecuni = LookUpSpan(sensor::kFeCuNi, 2500, 500);
  EXPECT_EQ(fecuni.final_counts, 10000.0F);
  EXPECT_EQ(fecuni.final_correction, 0);
  // Entry 625 is 1 count, which leads to entry 624: 1 count.
  EXPECT_EQ(LookUpSpan(sensor::kNiCrNi, 2500, 500).final_correction, 1);
}

TEST(Linearisation, SpanIsInCounts) {
  const LinearisedSpan span = LookUpSpan(sensor::kFeCuNi, 2512, 200);
  EXPECT_FLOAT_EQ(span.final_counts, 4000);
  EXPECT_FLOAT_EQ(span.reference_counts, 502.4F);
  // 502 counts are entry 31: 28; 474 counts are entry 29: 27.
  EXPECT_EQ(span.reference_correction, CorrectionAt(sensor::kFeCuNi, 29));
  EXPECT_EQ(span.reference_correction, 27);
  // 4000 counts are entry 250: 68; 3932 counts are entry 245: 68.
  EXPECT_EQ(span.final_correction, CorrectionAt(sensor::kFeCuNi, 245));
  EXPECT_EQ(span.final_correction, 68);
}

TEST(Linearisation, LinearInputNeedsTheFinalValueAlone) {
  const LinearisedSpan span = LookUpSpan(sensor::kLinear, 2512, 1000);
  EXPECT_FLOAT_EQ(span.final_counts, 20000);
  EXPECT_EQ(span.reference_counts, 0);
  EXPECT_EQ(span.reference_correction, 0);
  EXPECT_EQ(span.final_correction, 0);
}

TEST(Linearisation, TakesAnyNumber) {
  constexpr float kHuge = std::numeric_limits<float>::max();
  constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();
  for (const float value : {kHuge, -kHuge, kNoNumber}) {
    EXPECT_EQ(CorrectionOfTrue(sensor::kFeCuNi, value), 0);
  }
}

}  // namespace
}  // namespace tavrel
