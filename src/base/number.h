#ifndef TAVREL_BASE_NUMBER_H_
#define TAVREL_BASE_NUMBER_H_

#include <cstdint>
#include <string>
#include <string_view>

// Numbers and their texts. Nothing here depends on the locale of the process: the decimal
// mark is always a point.
namespace tavrel {

// `value` by a mask such as "####0.00": a 0 is a digit that is always shown, a # one shown only
// if there is one. Rounded half away from zero on the decimal value at 15 significant digits
// (0.15 in "####0.0" is 0.2); no digit before the point is ever lost; no minus stands on a
// zero; 0 in "#####" is the empty text. What is no number gives the empty text.
[[nodiscard]] std::string FormatMask(double value, std::string_view mask);

// Decimals by size: |value| <= 10 "###0.00", <= 100 "####0.0", above "######0". A single stands
// for its decimal value at 7 significant digits, so that 10.15 shows as 10.2.
[[nodiscard]] std::string FormatAuto(float value);

// The same with the limits 100 and 1000.
[[nodiscard]] std::string FormatAutoWide(float value);

// The shortest decimal text with at most 7 significant digits, as numbers stand in boxes and
// settings: 11, 0.5. Written out as long as 15 digits before the point and 15 behind it do, else
// as 1.5E+20. What is no number gives the empty text.
[[nodiscard]] std::string ShortestNumber(double value);

// The number at the start of a text: blanks, one sign, digits, one point, an exponent. The
// first comma counts as a point. An empty text, or one that does not start with a number, is 0
// ("nan", "inf" and "0x10" are 0). A number too large is the largest double of its sign.
[[nodiscard]] double ReadNumber(std::string_view text);

// To the nearest, ties to even, held at the limits of 16 bits; no number gives 0.
[[nodiscard]] std::int16_t ToWord(double value);

// Rounds down, also below zero, held at the limits of 32 bits.
[[nodiscard]] std::int32_t IntFloor(double value);

// Upper-case hexadecimal without leading zeros; negative values as four digits (-1 is FFFF).
[[nodiscard]] std::string Hex(std::int16_t value);

// `text` as hexadecimal digits of either case, at most the last four of them significant, read
// into 16 bits signed: 8000 is -32768. Reading stops at the first other character; none is 0.
[[nodiscard]] std::int16_t ReadHex(std::string_view text);

}  // namespace tavrel

#endif  // TAVREL_BASE_NUMBER_H_
