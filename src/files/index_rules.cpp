#include "files/index_rules.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "base/file_names.h"
#include "base/text.h"
#include "files/recording_format.h"
#include "state/unit_record.h"

namespace tavrel {
namespace {

// The designation: three letters of the extension and a colon stand before the apparatus.
constexpr IndexRule kOwnRule = {
    'M', true, sizeof(UnitRecord), offsetof(UnitRecord, UnitDesignation), kTextLength, 4};
constexpr IndexRule kFirstRelative = {'M', false, 40, 0, 40, 0};
constexpr IndexRule kSecondRelative = {'K', false, 40, 0, 40, 0};

constexpr std::size_t kDateDigits = 6;  // "yymmdd" behind the letter
constexpr char kSubfileLetter = 'S';

// "mm-dd-yyyy / hh:nn" as yyyymmddhhmm; 0 for any other text.
std::int64_t DateNumber(std::string_view text) {
  constexpr std::string_view kForm = "00-00-0000 / 00:00";
  if (text.size() < kForm.size()) {
    return 0;
  }
  for (std::size_t place = 0; place < kForm.size(); ++place) {
    const bool fits = kForm[place] == '0' ? IsDigit(text[place]) : text[place] == kForm[place];
    if (!fits) {
      return 0;
    }
  }
  const auto number = [text](std::size_t from, std::size_t digits) {
    std::int64_t value = 0;
    for (const char digit : text.substr(from, digits)) {
      value = value * 10 + (digit - '0');
    }
    return value;
  };
  return (number(6, 4) * 10000 + number(0, 2) * 100 + number(3, 2)) * 10000 + number(13, 2) * 100 +
         number(16, 2);
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

IndexDetails DetailsOf(const IndexRule& rule, std::string_view piece, std::int64_t length) {
  UnitRecord unit;
  if (rule.Read != sizeof unit || piece.size() != sizeof unit) {
    return {};
  }
  std::memcpy(&unit, piece.data(), sizeof unit);
  if (!IsTavrelHeader(unit)) {
    return {};
  }
  const std::int64_t row_bytes = std::int64_t{2} * unit.UnitChannels;
  const std::int64_t rows = (length - static_cast<std::int64_t>(sizeof unit)) / row_bytes;
  return {DateNumber({unit.UnitDate.Bytes.data(), unit.UnitDate.Bytes.size()}),
          std::max<std::int64_t>(rows - 1, 0) * RecIntervalOf(unit), unit.UnitInet};
}

std::string ContentsOf(const IndexRule& rule, std::string_view piece) {
  const std::string_view text = piece.substr(std::min(rule.Offset, piece.size()), rule.Bytes);
  std::string bytes(text.substr(std::min(rule.Skipped, text.size())));
  std::replace_if(
      bytes.begin(), bytes.end(), [](char byte) { return byte >= '\0' && byte < ' '; }, ' ');
  return Trim(FromWindows1252(bytes));
}

}  // namespace tavrel
