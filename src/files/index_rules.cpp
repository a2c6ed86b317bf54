#include "files/index_rules.h"

#include <algorithm>
#include <cstddef>

#include "base/file_names.h"
#include "base/text.h"
#include "state/unit_record.h"

namespace tavrel {
namespace {

// The designation: three letters of the extension and a colon stand before the apparatus.
constexpr IndexRule kOwnRule = {'M', true, offsetof(UnitRecord, UnitDesignation), kTextLength, 4};
constexpr IndexRule kFirstRelative = {'M', false, 0, 40, 0};
constexpr IndexRule kSecondRelative = {'K', false, 0, 40, 0};

constexpr std::size_t kDateDigits = 6;  // "yymmdd" behind the letter
constexpr char kSubfileLetter = 'S';

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

bool HasDate(std::string_view name) {
  const std::string_view date = name.substr(1).substr(0, kDateDigits);
  return date.size() == kDateDigits && std::all_of(date.begin(), date.end(), IsDigit);
}

char CapitalOf(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

bool IsActive(std::string_view name, const std::vector<std::string>& active_capitals) {
  const std::string capitals = UpperCase(name);
  return std::find(active_capitals.begin(), active_capitals.end(), capitals) !=
         active_capitals.end();
}

}  // namespace

const IndexRule& IndexRuleOf(int type_sel) {
  switch (type_sel) {
    case 2:
      return kFirstRelative;
    case 3:
      return kSecondRelative;
    default:
      return kOwnRule;
  }
}

bool IsIndexed(const IndexRule& rule, std::string_view name,
               const std::vector<std::string>& active_capitals) {
  if (name.empty()) {
    return false;
  }
  const char letter = CapitalOf(name.front());
  const bool is_recording = letter == rule.Letter && HasDate(name);
  if (!rule.TakesSubfiles) {
    return is_recording;
  }
  return (is_recording || letter == kSubfileLetter) && IsDataFileName(name) &&
         !IsActive(name, active_capitals);
}

std::string ContentsOf(const IndexRule& rule, std::string_view piece) {
  std::string bytes(piece.substr(std::min(rule.Skipped, piece.size())));
  std::replace_if(
      bytes.begin(), bytes.end(), [](char byte) { return byte >= '\0' && byte < ' '; }, ' ');
  return Trim(FromWindows1252(bytes));
}

}  // namespace tavrel
