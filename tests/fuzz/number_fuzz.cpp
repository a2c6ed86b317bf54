#include "base/number.h"

#include <cmath>
#include <limits>

#include "tests/fuzz/fuzz_input.h"

namespace tavrel {
namespace {

constexpr std::string_view kDigits = "0123456789";

void CheckShape(const std::string& shown, const char* rule) {
  std::string_view text = shown;
  const bool is_negative = text.starts_with('-');
  text.remove_prefix(is_negative ? 1 : 0);
  const std::size_t point = std::min(text.find('.'), text.size());
  Require(text.substr(0, point).find_first_not_of(kDigits) == std::string_view::npos, rule);
  Require(text.substr(std::min(point + 1, text.size())).find_first_not_of(kDigits) ==
              std::string_view::npos,
          rule);
  Require(!is_negative || text.find_first_of("123456789") != std::string_view::npos,
          "no minus stands on a zero");
}

// A mask of the two characters that it may hold, and at most one point.
std::string TakeMask(FuzzInput& input) {
  std::string mask;
  const int whole = input.Choice(9);
  const int fraction = input.Choice(7);
  for (int place = 0; place < whole; ++place) {
    mask += input.Flag() ? '0' : '#';
  }
  mask += fraction > 0 ? "." : "";
  for (int place = 0; place < fraction; ++place) {
    mask += input.Flag() ? '0' : '#';
  }
  return mask;
}

void CheckMask(double value, const std::string& mask) {
  const std::string shown = FormatMask(value, mask);
  if (!std::isfinite(value)) {
    Require(shown.empty(), "what is no number shows nothing");
    return;
  }
  CheckShape(shown, "a mask gives digits and one point");
  const std::size_t fraction = mask.size() - std::min(mask.find('.') + 1, mask.size());
  const double step =
      std::pow(10.0, -static_cast<double>(mask.find('.') == std::string::npos ? 0 : fraction));
  // Half a step of the last place, and what a double of 15 digits leaves open.
  const double tolerance = step * 0.5 + std::fabs(value) * 1e-14 + 1e-300;
  Require(std::fabs(ReadNumber(shown) - value) <= tolerance * 1.000001,
          "the shown number is the value to the last place of the mask");
  Require(FormatMask(ReadNumber(shown), mask) == shown || std::fabs(value) > 1e14,
          "a shown number shows as itself");
}

void CheckShortest(double value) {
  const std::string text = ShortestNumber(value);
  if (!std::isfinite(value)) {
    Require(text.empty(), "what is no number has no text");
    return;
  }
  const double back = ReadNumber(text);
  Require(std::isfinite(back), "a text of a number is a number");
  Require(std::fabs(back - value) <= std::fabs(value) * 5.1e-7 || std::fabs(value) < 1e-300,
          "seven digits are kept");
  Require(ShortestNumber(back) == text, "the text of a read text is the same");
}

void CheckWhole(double value) {
  const std::int16_t word = ToWord(value);
  const std::int32_t floor = IntFloor(value);
  if (std::fabs(value) <= 32767) {
    Require(std::fabs(word - value) <= 0.5, "a word is the nearest");
    Require(floor <= value && value - floor <= 1, "floor is the next below");
  } else if (!std::isnan(value)) {
    Require(value > 0 ? word == std::numeric_limits<std::int16_t>::max() : word <= -32767,
            "a word is held at its limits");
  }
}

void CheckHex(std::int16_t word, const std::string& text) {
  const std::string digits = Hex(word);
  Require(ReadHex(digits) == word, "a word survives its text");
  Require(digits.size() <= 4 && (digits == "0" || digits[0] != '0'), "no leading zeros");
  const std::int16_t read = ReadHex(text);
  Require(ReadHex(Hex(read)) == read, "what was read survives its text");
}

void CheckRead(const std::string& text) {
  const double value = ReadNumber(text);
  Require(std::isfinite(value), "any text is a number");
  Require(ReadNumber("  " + text) == value, "blanks before a number do not count");
  CheckWhole(value);
  CheckShortest(value);
  const std::string again = ShortestNumber(value);
  Require(ReadNumber(again + "x") == ReadNumber(again), "a number ends where its digits end");
}

}  // namespace
}  // namespace tavrel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavrel;
  const std::string bytes = TextOf(data, size);
  FuzzInput input(bytes);
  const auto value = input.Bits<double>();
  const auto single = input.Bits<float>();
  const std::int16_t word = input.Word();
  const std::string mask = TakeMask(input);
  const std::string text = input.Text(400);
  CheckMask(value, mask);
  CheckMask(word * 0.05, mask);
  CheckShortest(value);
  CheckWhole(value);
  CheckShape(FormatAuto(single), "a single shows as digits and one point");
  CheckShape(FormatAutoWide(single), "a single shows as digits and one point");
  CheckHex(word, text);
  CheckRead(text);
  CheckMask(ReadNumber(text), mask);
  return 0;
}
