#include "setup/linearisation.h"

#include <array>
#include <cstddef>
#include <string_view>

#include "base/number.h"

namespace tavrel {
namespace {

constexpr std::size_t kPieces = 25;
constexpr std::size_t kEntriesOfPiece = 25;
constexpr float kDegreesPerCount = 0.05F;
constexpr float kHundredthsPerCount = 5;

// Two hexadecimal digits an entry, in counts.
using Pieces = std::array<std::string_view, kPieces>;

static_assert(kPieces * kEntriesOfPiece == kCorrections);

constexpr Pieces kFeCuNiEntries = {
    "000102030405060708090A0B0C0D0E0F101112131414151617",
    "18191A1B1B1C1D1E1F1F2021222324242526272828292A2B2B",
    "2C2C2D2D2E2E2F2F3030313132323333343435353636373738",
    "3839393A3A3B3B3C3C3D3D3E3E3F3F40404141424243434343",
    "44444444444545454545464646464647474747484848484849",
    "494949494A4A4A4A4A4B4B4B4B4B4C4C4C4C4C4D4D4D4D4D4D",
    "4C4C4C4C4C4C4C4C4C4C4C4B4B4B4B4B4B4B4B4B4B4B4B4A4A",
    "4A4A4A4A4A4A4A4A4A4A494949494949494949494948484848",
    "48484848484848484747474747474747474747474646464646",
    "46464646464645454545454545454545454544444444444444",
    "44444444444343434343434343434343424242424242424242",
    "42424241414141414141414141414140404040404040404040",
    "403F3F3F3F3F3F3F3F3F3F3F3F3E3E3E3E3E3E3E3E3E3E3D3D",
    "3D3D3C3C3C3C3C3B3B3B3B3A3A3A3A39393939393838383838",
    "38383837373737373737373737373736363636363636363636",
    "36353535353535353535353535343434343434343434343434",
    "33333333333333333333333232323232323232323232323131",
    "3131313131313131313130303030303030303030302F2F2F2F",
    "2F2F2F2F2F2F2F2F2E2E2E2E2E2E2E2E2E2E2E2E2D2D2D2D2D",
    "2D2D2D2D2D2D2C2C2C2C2C2C2C2C2C2C2C2C2B2B2B2B2B2B2B",
    "2A2A2A2A2A2929292928282828282727272726262626252525",
    "24242423232322222221212020201F1F1F1E1E1E1D1D1C1C1C",
    "1B1B1B1A1A1A19191818181717171616161515141414131313",
    "12121211111010100F0F0F0E0E0E0D0D0C0C0C0B0B0B0A0A09",
    "09090808080707070606050505040404030303020201010100",
};

constexpr Pieces kNiCrNiEntries = {
    "000101020203030404050506060707080809090A0A0B0B0C0C",
    "0D0D0D0E0E0E0F0F0F10101011111112121213131313141414",
    "14151515151515151516161616161616161617171717171717",
    "17171717171717171716161616161616161616161616151515",
    "1515141414141313131312121211111111101010100F0F0F0F",
    "0F0F0F0F0F0F0F0F1010101010101010111111111111111111",
    "12121213131314141415151516161617171717181818191919",
    "1A1B1B1C1C1D1D1E1E1F1F2020212122222323242425252626",
    "27282829292A2A2B2B2C2C2D2D2E2E2F2F3030313132323333",
    "34353536363737383839393A3A3B3B3C3C3D3D3E3E3F3F4040",
    "40414141414242424343434444444545454646464747474748",
    "48484949494A4A4A4B4B4B4C4C4C4D4D4D4D4E4E4E4F4F4F4F",
    "4F4F4F4F4F5050505050505050515151515151515151525252",
    "52525252525353535353535353535454545454545454555555",
    "55555555555556565656565656565757575757575757575757",
    "57575757565656565656565656565656565555555555555454",
    "54545353535252525251515151505050504F4F4F4E4E4E4E4E",
    "4E4E4E4E4E4E4E4E4D4D4D4D4D4D4D4D4D4D4D4D4D4C4C4C4C",
    "4B4B4B4A4A4A4A494949494848484847474746464646454544",
    "444343424242414140403F3F3E3E3D3D3D3C3C3B3B3A3A3A39",
    "39393938383838373737363636363535353534343434333332",
    "3231313130302F2F2E2E2D2D2C2C2C2B2B2A2A292928282727",
    "272626252524242323232222212120201F1F1E1E1E1D1D1C1C",
    "1B1B1A1A191919181817171616151515141413131212111110",
    "100F0F0E0D0D0C0B0B0A090908080706060504040303020101",
};

constexpr int DigitValue(char digit) {
  return digit <= '9' ? digit - '0' : digit - 'A' + 10;
}

// `place` counts from 0.
constexpr int EntryOf(const Pieces& pieces, std::size_t place) {
  const std::string_view piece = pieces.at(place / kEntriesOfPiece);
  const std::size_t digit = place % kEntriesOfPiece * 2;
  return DigitValue(piece.at(digit)) * 16 + DigitValue(piece.at(digit + 1));
}

constexpr bool IsWhole(const Pieces& pieces) {
  for (const std::string_view piece : pieces) {
    if (piece.size() != 2 * kEntriesOfPiece) {
      return false;
    }
  }
  return true;
}

static_assert(IsWhole(kFeCuNiEntries) && IsWhole(kNiCrNiEntries));

int IndexOf(float counts) {
  return IntFloor(counts / kCountsPerCorrection);
}

}  // namespace

int CorrectionAt(int sensor_code, int index) {
  if (index < 1 || index > kCorrections) {
    return 0;
  }
  const auto place = static_cast<std::size_t>(index - 1);
  switch (sensor_code) {
    case sensor::kFeCuNi:
      return EntryOf(kFeCuNiEntries, place);
    case sensor::kNiCrNi:
      return EntryOf(kNiCrNiEntries, place);
    default:
      return 0;
  }
}

int CorrectionOfTrue(int sensor_code, float true_counts) {
  const int first = CorrectionAt(sensor_code, IndexOf(true_counts));
  return CorrectionAt(sensor_code, IndexOf(true_counts - static_cast<float>(first)));
}

LinearisedSpan LookUpSpan(int sensor_code, float reference_hundredths, float final_degrees) {
  LinearisedSpan span;
  span.final_counts = final_degrees / kDegreesPerCount;
  if (sensor_code != sensor::kFeCuNi && sensor_code != sensor::kNiCrNi) {
    return span;
  }
  span.reference_counts = reference_hundredths / kHundredthsPerCount;
  span.reference_correction = CorrectionOfTrue(sensor_code, span.reference_counts);
  span.final_correction = CorrectionOfTrue(sensor_code, span.final_counts);
  return span;
}

}  // namespace tavrel
