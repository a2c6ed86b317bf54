#include "service/quality_texts.h"

#include <algorithm>
#include <array>

#include "base/number.h"
#include "base/numbered.h"
#include "base/text.h"

namespace tavrel {
namespace {

constexpr const char* kNoDate = "-";
constexpr std::string_view kOwnForm = "d.M.y";

constexpr int kFirstYear = 1980;  // of the hundred that two digits can tell
constexpr int kLastYear = 2079;
constexpr int kCentury = 100;

constexpr int kFirstCode = 33;  // the first character that shows
constexpr int kLastCode = 99;   // that has two digits
constexpr int kCodeFactor = 100;

struct Date {
  int day = 0;
  int month = 0;
  int year = 0;
};

bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

int FullYear(int two_digits) {
  return two_digits < kFirstYear % kCentury ? 2000 + two_digits : 1900 + two_digits;
}

bool IsLeapYear(int year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

bool IsDate(const Date& date) {
  if (date.month < 1 || date.month > 12 || date.year < kFirstYear || date.year > kLastYear) {
    return false;
  }
  constexpr Numbered<int, 1, 12> kDays = {{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31}};
  const int leap_day = date.month == 2 && IsLeapYear(date.year) ? 1 : 0;
  const int days = kDays[date.month] + leap_day;
  return date.day >= 1 && date.day <= days;
}

std::string TwoDigits(int number) {
  return FormatMask(number, "00");
}

std::string DigitsOf(const Date& date) {
  return TwoDigits(date.day) + TwoDigits(date.month) + TwoDigits(date.year % kCentury);
}

// Reads a date along the form in which it is written.
class DateReader {
 public:
  DateReader(std::string_view text, std::string_view form) : text_(text), form_(form) {}

  [[nodiscard]] std::optional<Date> Read() {
    while (place_ < form_.size()) {
      if (!TakePart()) {
        return std::nullopt;
      }
    }
    SkipBlanks();
    return text_.empty() && IsDate(date_) ? std::optional(date_) : std::nullopt;
  }

 private:
  [[nodiscard]] bool TakePart() {
    if (form_[place_] == '\'') {
      is_in_words_ = !is_in_words_;
      ++place_;
      return true;
    }
    switch (is_in_words_ ? ' ' : form_[place_]) {
      case 'd':
        return TakeNumber(date_.day);
      case 'M':
        return TakeNumber(date_.month);
      case 'y':
        return TakeYear();
      default:
        return TakeCharacter();
    }
  }
  // One or two digits; a name of the month is not read.
  [[nodiscard]] bool TakeNumber(int& number) {
    constexpr std::size_t kMostDigits = 2;
    const bool is_name = SkipLetter() > kMostDigits;
    const std::string_view digits = TakeDigits();
    if (is_name || digits.empty() || digits.size() > kMostDigits) {
      return false;
    }
    number = static_cast<int>(ReadNumber(digits));
    return true;
  }
  // Two or four digits, whatever the form says.
  [[nodiscard]] bool TakeYear() {
    SkipLetter();
    const std::string_view digits = TakeDigits();
    const int number = digits.size() <= 4 ? static_cast<int>(ReadNumber(digits)) : 0;
    date_.year = digits.size() == 2 ? FullYear(number) : number;
    return digits.size() == 2 || digits.size() == 4;
  }
  // Blanks may be missing.
  [[nodiscard]] bool TakeCharacter() {
    const char wanted = form_[place_];
    ++place_;
    SkipBlanks();
    if (wanted == ' ') {
      return true;
    }
    const bool is_there = !text_.empty() && text_.front() == wanted;
    text_.remove_prefix(is_there ? 1 : 0);
    return is_there;
  }
  std::size_t SkipLetter() {
    const char letter = form_[place_];
    const std::size_t begin = place_;
    while (place_ < form_.size() && form_[place_] == letter) {
      ++place_;
    }
    return place_ - begin;
  }
  std::string_view TakeDigits() {
    SkipBlanks();
    const auto end = std::find_if_not(text_.begin(), text_.end(), IsDigit);
    const std::string_view digits = text_.substr(0, static_cast<std::size_t>(end - text_.begin()));
    text_.remove_prefix(digits.size());
    return digits;
  }
  void SkipBlanks() {
    while (!text_.empty() && text_.front() == ' ') {
      text_.remove_prefix(1);
    }
  }

  std::string_view text_;  // what is not read yet
  std::string_view form_;
  std::size_t place_ = 0;  // in the form
  bool is_in_words_ = false;
  Date date_;
};

std::optional<Date> DateOfDigits(std::string digits) {
  constexpr std::size_t kDigits = 6;
  digits = digits.size() == kDigits - 1 ? "0" + digits : digits;
  if (digits.size() != kDigits || !std::all_of(digits.begin(), digits.end(), IsDigit)) {
    return std::nullopt;
  }
  const auto number = [&digits](std::size_t place) {
    return static_cast<int>(ReadNumber(digits.substr(place, 2)));
  };
  const Date date{number(0), number(2), FullYear(number(4))};
  return IsDate(date) ? std::optional(date) : std::nullopt;
}

}  // namespace

std::string DateDigits(const WallTime& day) {
  return DigitsOf({day.Day, day.Month, day.Year});
}

std::string ShownDate(const std::string& digits, const Regional& regional) {
  const std::optional<Date> date = DateOfDigits(digits);
  return date ? regional.ShortDate({date->year, date->month, date->day}) : kNoDate;
}

std::optional<std::string> ReadDate(std::string_view text, const Regional& regional) {
  const std::string region_form = regional.ShortDateForm();
  for (const std::string_view form : {std::string_view(region_form), kOwnForm}) {
    if (const std::optional<Date> date = DateReader(text, form).Read()) {
      return DigitsOf(*date);
    }
  }
  return std::nullopt;
}

std::int16_t NameWord(std::string_view name) {
  const auto code = [name](std::size_t place) { return place < name.size() ? name[place] : ' '; };
  return static_cast<std::int16_t>(code(0) * kCodeFactor + code(1));
}

std::string NameText(std::int16_t word) {
  const std::string digits = std::to_string(word);
  std::string name;
  for (const std::size_t place : {std::size_t{0}, std::size_t{2}}) {
    const std::string code = digits.size() > place ? digits.substr(place, 2) : "";
    const int number = static_cast<int>(ReadNumber(code));
    if (number < kFirstCode) {
      return "";
    }
    name += static_cast<char>(number);
  }
  return name;
}

bool IsInitials(std::string_view name) {
  constexpr std::size_t kMost = 2;
  return !name.empty() && name.size() <= kMost &&
         std::all_of(name.begin(), name.end(), [](char character) {
           return character >= kFirstCode && character <= kLastCode;
         });
}

}  // namespace tavrel
