#include "base/number.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

#include "base/text.h"

namespace tavrel {
namespace {

constexpr int kDoubleDigits = 15;  // decimal digits that a double always holds
constexpr int kSingleDigits = 7;   // decimal digits that numbers in single precision show

// A number above zero as decimal digits: 0.DIGITS times ten to the power of Point.
struct Decimal {
  bool Negative = false;
  std::string Digits;  // without zeros at the right end; empty for zero
  int Point = 0;       // digits before the point; below 0: zeros behind it
};

void DropZeros(Decimal& number) {
  number.Digits.erase(number.Digits.find_last_not_of('0') + 1);
  if (number.Digits.empty()) {
    number = {};
  }
}

// `value`, which is finite, at `significant` digits.
Decimal ToDecimal(double value, int significant) {
  char text[40];
  const auto end = std::to_chars(std::begin(text), std::end(text), std::fabs(value),
                                 std::chars_format::scientific, significant - 1);
  const std::string_view whole(text, static_cast<std::size_t>(end.ptr - text));  // d.ddde+xx
  const std::size_t mark = whole.find('e');
  const bool minus = whole[mark + 1] == '-';
  int exponent = 0;
  std::from_chars(whole.data() + mark + 2, whole.data() + whole.size(), exponent);

  Decimal number{value < 0, std::string(whole.substr(0, mark)), 1 + (minus ? -exponent : exponent)};
  std::erase(number.Digits, '.');
  DropZeros(number);
  return number;
}

// Adds one to the last digit.
void CountUp(Decimal& number) {
  for (auto digit = number.Digits.rbegin(); digit != number.Digits.rend(); ++digit) {
    if (*digit != '9') {
      ++*digit;
      return;
    }
    *digit = '0';
  }
  number.Digits.insert(number.Digits.begin(), '1');
  ++number.Point;
}

// Rounds half away from zero to `decimals` digits behind the point.
void RoundAt(Decimal& number, int decimals) {
  const int kept = number.Point + decimals;
  if (kept >= static_cast<int>(number.Digits.size())) {
    return;
  }
  if (kept < 0) {
    number = {};
    return;
  }
  const auto cut = static_cast<std::size_t>(kept);
  const bool up = number.Digits[cut] >= '5';
  number.Digits.resize(cut);
  if (up) {
    CountUp(number);
  }
  DropZeros(number);
}

// The digits before the point, none if the number is below 1.
std::string WholeDigits(const Decimal& number) {
  std::string digits = number.Digits;
  digits.resize(static_cast<std::size_t>(std::max(number.Point, 0)), '0');
  return digits;
}

// The digits behind the point, without zeros at the right end.
std::string FractionDigits(const Decimal& number) {
  if (number.Point < 0) {
    return std::string(static_cast<std::size_t>(-number.Point), '0') + number.Digits;
  }
  const auto whole = static_cast<std::size_t>(number.Point);
  return whole < number.Digits.size() ? number.Digits.substr(whole) : std::string();
}

std::string_view MaskBySize(float value, float small, float large) {
  const float size = std::fabs(value);
  if (size <= small) {
    return "###0.00";
  }
  return size <= large ? "####0.0" : "######0";
}

std::size_t DigitsAt(std::string_view text, std::size_t place) {
  std::size_t count = 0;
  while (place + count < text.size() && IsDigit(text[place + count])) {
    ++count;
  }
  return count;
}

bool IsSignAt(std::string_view text, std::size_t place) {
  return place < text.size() && (text[place] == '+' || text[place] == '-');
}

// Bytes of the exponent at `place`, 0 if there is none.
std::size_t ExponentAt(std::string_view text, std::size_t place) {
  if (place >= text.size() || (text[place] != 'e' && text[place] != 'E')) {
    return 0;
  }
  const std::size_t sign = IsSignAt(text, place + 1) ? 1 : 0;
  const std::size_t digits = DigitsAt(text, place + 1 + sign);
  return digits == 0 ? 0 : 1 + sign + digits;
}

// The part of `text` that is a number without a sign, empty if none starts here.
std::string_view UnsignedNumber(std::string_view text) {
  const std::size_t whole = DigitsAt(text, 0);
  std::size_t length = whole;
  std::size_t fraction = 0;
  if (length < text.size() && text[length] == '.') {
    fraction = DigitsAt(text, length + 1);
    length += 1 + fraction;
  }
  if (whole + fraction == 0) {
    return {};
  }
  return text.substr(0, length + ExponentAt(text, length));
}

// Whether a number that no double can hold is too large; else it is too small.
bool IsTooLarge(std::string_view number) {
  const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
  const std::string_view mantissa = number.substr(0, mark);
  const auto point = static_cast<double>(std::min(mantissa.find('.'), mantissa.size()));
  const auto first = static_cast<double>(mantissa.find_first_of("123456789"));
  const double exponent = mark < number.size() ? ReadNumber(number.substr(mark + 1)) : 0;
  return point - first + exponent > 0;
}

double ParseUnsigned(std::string_view number) {
  double value = 0;
  const auto end = std::from_chars(number.data(), number.data() + number.size(), value);
  if (end.ec == std::errc::result_out_of_range) {
    return IsTooLarge(number) ? std::numeric_limits<double>::max() : 0;
  }
  return value;
}

std::optional<unsigned> HexDigit(char character) {
  if (IsDigit(character)) {
    return static_cast<unsigned>(character - '0');
  }
  const char upper = static_cast<char>(character & ~0x20);
  if (upper >= 'A' && upper <= 'F') {
    return static_cast<unsigned>(upper - 'A' + 10);
  }
  return std::nullopt;
}

std::string WithExponent(const Decimal& number) {
  std::string text = number.Digits.substr(0, 1);
  if (number.Digits.size() > 1) {
    text += '.';
    text += number.Digits.substr(1);
  }
  const int exponent = number.Point - 1;
  const std::string power = std::to_string(std::abs(exponent));
  text += exponent < 0 ? "E-" : "E+";
  text.append(power.size() < 2 ? 1 : 0, '0');
  return text + power;
}

// The digits with at least `least_whole` of them before the point and `least_fraction` behind.
std::string WrittenOut(const Decimal& number, std::size_t least_whole, std::size_t least_fraction) {
  const std::string whole = WholeDigits(number);
  std::string fraction = FractionDigits(number);
  fraction.resize(std::max(fraction.size(), least_fraction), '0');

  std::string text(least_whole - std::min(least_whole, whole.size()), '0');
  text += whole;
  if (!fraction.empty()) {
    text += '.';
    text += fraction;
  }
  return text;
}

std::string WithSign(const Decimal& number, const std::string& digits) {
  std::string text(number.Negative ? 1 : 0, '-');
  return text += digits;
}

std::string FormatDecimal(Decimal number, std::string_view mask) {
  const std::size_t point = std::min(mask.find('.'), mask.size());
  const std::string_view whole = mask.substr(0, point);
  const std::string_view fraction = mask.substr(std::min(point + 1, mask.size()));
  RoundAt(number, static_cast<int>(fraction.size()));
  return WithSign(number,
                  WrittenOut(number, static_cast<std::size_t>(std::ranges::count(whole, '0')),
                             static_cast<std::size_t>(std::ranges::count(fraction, '0'))));
}

// A single stands for its decimal value at 7 digits: 10.15 shows as 10.2, though the nearest
// single lies a little below.
std::string FormatSingle(float value, std::string_view mask) {
  return std::isfinite(value) ? FormatDecimal(ToDecimal(value, kSingleDigits), mask) : "";
}

}  // namespace

std::string FormatMask(double value, std::string_view mask) {
  return std::isfinite(value) ? FormatDecimal(ToDecimal(value, kDoubleDigits), mask) : "";
}

std::string FormatAuto(float value) {
  return FormatSingle(value, MaskBySize(value, 10, 100));
}

std::string FormatAutoWide(float value) {
  return FormatSingle(value, MaskBySize(value, 100, 1000));
}

std::string ShortestNumber(double value) {
  if (!std::isfinite(value)) {
    return "";
  }
  const Decimal number = ToDecimal(value, kSingleDigits);
  const auto decimals = static_cast<int>(number.Digits.size()) - number.Point;
  const bool fits = number.Point <= kDoubleDigits && decimals <= kDoubleDigits;
  return WithSign(number, fits ? WrittenOut(number, 1, 0) : WithExponent(number));
}

double ReadNumber(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
  std::string copy(text);
  const std::size_t comma = copy.find(',');
  if (comma != std::string::npos) {
    copy[comma] = '.';
  }
  const bool negative = copy.starts_with('-');
  const std::string_view unsigned_text = std::string_view(copy).substr(IsSignAt(copy, 0) ? 1 : 0);
  const std::string_view number = UnsignedNumber(unsigned_text);
  const double size = number.empty() ? 0 : ParseUnsigned(number);
  return negative && size > 0 ? -size : size;
}

std::int16_t ToWord(double value) {
  using Limits = std::numeric_limits<std::int16_t>;
  if (std::isnan(value)) {
    return 0;
  }
  const double held = std::clamp<double>(value, Limits::min(), Limits::max());
  return static_cast<std::int16_t>(std::nearbyint(held));
}

std::int32_t IntFloor(double value) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (std::isnan(value)) {
    return 0;
  }
  const double held = std::clamp<double>(value, Limits::min(), Limits::max());
  return static_cast<std::int32_t>(std::floor(held));
}

std::string Hex(std::int16_t value) {
  char text[8];
  const auto end =
      std::to_chars(std::begin(text), std::end(text), static_cast<std::uint16_t>(value), 16);
  std::string digits(text, end.ptr);
  std::ranges::transform(digits, digits.begin(), [](char digit) {
    return IsDigit(digit) ? digit : static_cast<char>(digit & ~0x20);
  });
  return digits;
}

std::int16_t ReadHex(std::string_view text) {
  unsigned value = 0;
  for (const char character : text) {
    const std::optional<unsigned> digit = HexDigit(character);
    if (!digit) {
      break;
    }
    value = ((value << 4U) | *digit) & 0xFFFFU;
  }
  return static_cast<std::int16_t>(value);
}

}  // namespace tavrel
