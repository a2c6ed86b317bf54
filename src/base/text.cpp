#include "base/text.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tavrel {
namespace {

constexpr std::string_view kPadding(" \t\0", 3);

// One character of a UTF-8 text. A byte that belongs to no character is one of its own.
struct Character {
  char32_t Code = 0;
  std::size_t Bytes = 1;
  bool Broken = false;
};

constexpr Character kBrokenByte{U'?', 1, true};

// What the first byte of a character says of the whole.
struct Lead {
  std::size_t Bytes = 0;  // 0: no character starts like this
  char32_t Bits = 0;      // its share of the code
  char32_t Smallest = 0;  // a smaller code in so many bytes is no UTF-8
};

constexpr Lead LeadOf(unsigned char byte) {
  if (byte < 0x80) {
    return {1, byte, 0};
  }
  if ((byte & 0xE0U) == 0xC0) {
    return {2, byte & 0x1FU, 0x80};
  }
  if ((byte & 0xF0U) == 0xE0) {
    return {3, byte & 0x0FU, 0x800};
  }
  if ((byte & 0xF8U) == 0xF0) {
    return {4, byte & 0x07U, 0x10000};
  }
  return {};
}

// Both ranges of them; the second one holds the five bytes that Windows-1252 leaves undefined.
constexpr bool IsControl(char32_t code) {
  return code < 0x20 || (code >= 0x7F && code < 0xA0);
}

constexpr bool IsCode(char32_t code) {
  return code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

// The character at the start of `text`, which is not empty.
Character FirstOf(std::string_view text) {
  const Lead lead = LeadOf(static_cast<unsigned char>(text[0]));
  if (lead.Bytes == 0 || lead.Bytes > text.size()) {
    return kBrokenByte;
  }
  char32_t code = lead.Bits;
  for (const char next : text.substr(1, lead.Bytes - 1)) {
    const auto byte = static_cast<unsigned char>(next);
    if ((byte & 0xC0U) != 0x80) {
      return kBrokenByte;
    }
    code = (code << 6U) | (byte & 0x3FU);
  }
  if (code < lead.Smallest || !IsCode(code)) {
    return kBrokenByte;
  }
  return {code, lead.Bytes, false};
}

// Appends a code below 0x10000, which is all that Windows-1252 needs.
void AppendUtf8(std::string& text, char32_t code) {
  if (code < 0x80) {
    text += static_cast<char>(code);
    return;
  }
  if (code < 0x800) {
    text += static_cast<char>(0xC0U | (code >> 6U));
  } else {
    text += static_cast<char>(0xE0U | (code >> 12U));
    text += static_cast<char>(0x80U | ((code >> 6U) & 0x3FU));
  }
  text += static_cast<char>(0x80U | (code & 0x3FU));
}

// The codes of the bytes 0x80 to 0x9F. All other bytes are the code of the same number.
constexpr char32_t kFirstSpecial = 0x80;
constexpr std::array<char32_t, 32> kSpecial = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr bool IsSpecialByte(char32_t number) {
  return number >= kFirstSpecial && number < kFirstSpecial + kSpecial.size();
}

char32_t CodeOfByte(unsigned char byte) {
  return IsSpecialByte(byte) ? kSpecial.at(byte - kFirstSpecial) : byte;
}

char ByteOfCode(char32_t code) {
  const auto* const special = std::find(kSpecial.begin(), kSpecial.end(), code);
  if (special != kSpecial.end()) {
    return static_cast<char>(kFirstSpecial + static_cast<char32_t>(special - kSpecial.begin()));
  }
  return code <= 0xFF && !IsSpecialByte(code) ? static_cast<char>(code) : '?';
}

// Letters in both cases whose codes are not 0x20 apart.
struct LetterPair {
  char32_t Upper;
  char32_t Lower;
};
constexpr std::array<LetterPair, 4> kFarPairs = {
    {{0x160, 0x161}, {0x152, 0x153}, {0x17D, 0x17E}, {0x178, 0xFF}}};

constexpr char32_t kCaseDistance = 0x20;

// The multiplication sign stands among the capitals where the division sign stands among the
// small letters; neither is a letter.
constexpr bool IsNearUpper(char32_t code) {
  return (code >= U'A' && code <= U'Z') || (code >= 0xC0 && code <= 0xDE && code != 0xD7);
}

char32_t UpperOf(char32_t code) {
  for (const LetterPair& pair : kFarPairs) {
    if (pair.Lower == code) {
      return pair.Upper;
    }
  }
  const bool near = code >= kCaseDistance && IsNearUpper(code - kCaseDistance);
  return near ? code - kCaseDistance : code;
}

char32_t LowerOf(char32_t code) {
  for (const LetterPair& pair : kFarPairs) {
    if (pair.Upper == code) {
      return pair.Lower;
    }
  }
  return IsNearUpper(code) ? code + kCaseDistance : code;
}

std::string ChangeCase(std::string_view text, char32_t (*change)(char32_t)) {
  std::string result;
  result.reserve(text.size());
  while (!text.empty()) {
    const Character character = FirstOf(text);
    const char32_t changed = character.Broken ? character.Code : change(character.Code);
    if (changed == character.Code) {
      result += text.substr(0, character.Bytes);
    } else {
      AppendUtf8(result, changed);
    }
    text.remove_prefix(character.Bytes);
  }
  return result;
}

// How many bytes the first `count` characters take.
std::size_t BytesOf(std::string_view text, std::size_t count) {
  std::size_t bytes = 0;
  for (; count > 0 && bytes < text.size(); --count) {
    bytes += FirstOf(text.substr(bytes)).Bytes;
  }
  return bytes;
}

}  // namespace

std::string Trim(std::string_view text) {
  const std::size_t first = text.find_first_not_of(kPadding);
  return first == std::string_view::npos ? std::string() : TrimRight(text.substr(first));
}

std::string TrimRight(std::string_view text) {
  return std::string(text.substr(0, text.find_last_not_of(kPadding) + 1));
}

std::string UpperCase(std::string_view utf8) {
  return ChangeCase(utf8, UpperOf);
}

std::string LowerCase(std::string_view utf8) {
  return ChangeCase(utf8, LowerOf);
}

bool EqualNoCase(std::string_view left, std::string_view right) {
  return UpperCase(left) == UpperCase(right);
}

std::string FirstCharacters(std::string_view utf8, std::size_t count) {
  return std::string(utf8.substr(0, BytesOf(utf8, count)));
}

std::string AfterCharacters(std::string_view utf8, std::size_t count) {
  return std::string(utf8.substr(BytesOf(utf8, count)));
}

std::string WithoutControls(std::string_view utf8) {
  std::string text;
  text.reserve(utf8.size());
  while (!utf8.empty()) {
    const Character character = FirstOf(utf8);
    if (!character.Broken && IsControl(character.Code)) {
      text += ' ';
    } else {
      text += utf8.substr(0, character.Bytes);
    }
    utf8.remove_prefix(character.Bytes);
  }
  return text;
}

std::string ToWindows1252(std::string_view utf8) {
  std::string bytes;
  bytes.reserve(utf8.size());
  while (!utf8.empty()) {
    const Character character = FirstOf(utf8);
    bytes += ByteOfCode(character.Code);
    utf8.remove_prefix(character.Bytes);
  }
  return bytes;
}

std::string FromWindows1252(std::string_view bytes) {
  std::string text;
  text.reserve(bytes.size());
  for (const char byte : bytes) {
    AppendUtf8(text, CodeOfByte(static_cast<unsigned char>(byte)));
  }
  return text;
}

}  // namespace tavrel
