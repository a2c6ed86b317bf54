#include "setup/calibration.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "base/number.h"

namespace tavrel {
namespace {

TEST(FinalRange, OfALinearInputIsFixed) {
  const FinalRange range = FinalRangeOf(sensor::kLinear, 25000);
  EXPECT_EQ(range.low, 1);
  EXPECT_EQ(range.high, 1000);
}

TEST(FinalRange, OfAThermocoupleBeginsOneDegreeAboveTheReference) {
  EXPECT_EQ(FinalRangeOf(sensor::kFeCuNi, 25012).low, 26.012F);
  EXPECT_EQ(FinalRangeOf(sensor::kNiCrNi, -3000).low, -2);
  EXPECT_EQ(FinalRangeOf(sensor::kNiCrNi, 25012).high, 500);
}

TEST(FinalRange, HoldsBothBounds) {
  const FinalRange range = FinalRangeOf(sensor::kFeCuNi, 25000);
  EXPECT_TRUE(range.Holds(26));
  EXPECT_TRUE(range.Holds(500));
  EXPECT_FALSE(range.Holds(std::nextafter(26.0F, 0.0F)));
  EXPECT_FALSE(range.Holds(std::nextafter(500.0F, 501.0F)));
  EXPECT_FALSE(range.Holds(std::numeric_limits<float>::quiet_NaN()));
}

// Whatever the reference: the bound as the box tells it, typed in, is within the range.
TEST(FinalRange, TakesItsOwnLowerBoundAsItIsShown) {
  for (int sum = -20000; sum <= 100000; ++sum) {
    const FinalRange range = FinalRangeOf(sensor::kFeCuNi, static_cast<float>(sum));
    const auto typed = static_cast<float>(ReadNumber(ShortestNumber(double{range.low})));
    ASSERT_EQ(typed, range.low) << sum;
  }
}

TEST(Divisor, IsCutIntoWholeAndParts) {
  EXPECT_EQ(DivisorOf(1.25F), (Divisor{1, 16384}));
  EXPECT_EQ(DivisorOf(0), (Divisor{0, 0}));
  EXPECT_EQ(DivisorOf(32766), (Divisor{32766, 0}));
  EXPECT_EQ(DivisorOf(0.49998474F), (Divisor{0, 32767}));
}

TEST(Divisor, TakesAFractionOfAHalfAndMoreAsANegativeWord) {
  EXPECT_EQ(DivisorOf(1.5F), (Divisor{1, -32768}));
  EXPECT_EQ(DivisorOf(1.75F), (Divisor{1, -16384}));
  EXPECT_EQ(DivisorOf(7.9999847F), (Divisor{7, -1}));
}

TEST(Divisor, ThatIsRoundedUpToAWholeLosesIt) {
  const float almost_two = std::nextafter(2.0F, 1.0F);
  EXPECT_EQ(DivisorOf(almost_two), (Divisor{1, 0}));
}

TEST(Divisor, RoundsPartsToTheNearestEvenOfTwo) {
  EXPECT_EQ(DivisorOf(1 + 0.5F / 65536), (Divisor{1, 0}));
  EXPECT_EQ(DivisorOf(1 + 1.5F / 65536), (Divisor{1, 2}));
  EXPECT_EQ(DivisorOf(1 + 2.5F / 65536), (Divisor{1, 2}));
}

TEST(Divisor, IsRefusedWhereTheRegistersEnd) {
  EXPECT_EQ(DivisorOf(32767), std::nullopt);
  EXPECT_TRUE(DivisorOf(std::nextafter(32767.0F, 0.0F)).has_value());
  EXPECT_EQ(DivisorOf(-1), std::nullopt);
  EXPECT_EQ(DivisorOf(std::nextafter(0.0F, -1.0F)), std::nullopt);
  EXPECT_EQ(DivisorOf(std::numeric_limits<float>::infinity()), std::nullopt);
  EXPECT_EQ(DivisorOf(std::numeric_limits<float>::quiet_NaN()), std::nullopt);
}

TEST(Divisor, IsShownWithItsPartsAsAnUnsignedNumber) {
  EXPECT_DOUBLE_EQ(ShownDivisor({1, 16384}), 1.25);
  EXPECT_DOUBLE_EQ(ShownDivisor({1, -16384}), 1.75);
  EXPECT_DOUBLE_EQ(ShownDivisor({1, -32768}), 1.5);
  EXPECT_DOUBLE_EQ(ShownDivisor({0, 32767}), 32767 / 65536.0);
  EXPECT_DOUBLE_EQ(ShownDivisor({-2, -1}), -2 + 65535 / 65536.0);
}

// By hand: 200 degrees are 4000 counts less 68 of correction, 25 degrees 500 less 27.
TEST(InputDivisor, IsTheRawSpanByTheLinearDistance) {
  const LinearisedSpan span = LookUpSpan(sensor::kFeCuNi, 2500, 200);
  const float distance = 4000 - 500 + 27 - 68;
  EXPECT_EQ(span.final_correction, 68);
  EXPECT_EQ(span.reference_correction, 27);
  EXPECT_EQ(InputDivisor(sensor::kFeCuNi, 12, 12 + 1.2F * distance, span),
            (12 + 1.2F * distance - 12) / distance);
  EXPECT_NEAR(InputDivisor(sensor::kFeCuNi, 12, 12 + 1.2F * distance, span), 1.2, 1e-6);
}

TEST(InputDivisor, OfALinearInputNeedsNoReference) {
  const LinearisedSpan span = LookUpSpan(sensor::kLinear, 2500, 100);
  EXPECT_EQ(InputDivisor(sensor::kLinear, 100, 2600, span), 1.25F);
}

TEST(InputDivisor, IsRefusedWithoutADistance) {
  EXPECT_EQ(InputDivisor(sensor::kNiCrNi, 0, 100, LinearisedSpan{500, 490, 20, 30}), 5);
  EXPECT_EQ(InputDivisor(sensor::kNiCrNi, 0, 100, LinearisedSpan{500, 490, 20, 10}), -1);
}

TEST(ReferenceDivisor, IsBetweenZeroAndAHundredDegrees) {
  EXPECT_EQ(ReferenceDivisor(8, 12508), 1.25F);
}

}  // namespace
}  // namespace tavrel
