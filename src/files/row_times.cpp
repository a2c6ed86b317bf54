#include "files/row_times.h"

#include <algorithm>
#include <chrono>
#include <string_view>

namespace tavrel {
namespace {

constexpr std::int64_t kMostLostSets = 1'000'000'000;  // more is no count of sets
constexpr std::int64_t kMinute = 60;                   // seconds
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;
constexpr std::size_t kZonePlace = 19;
constexpr std::string_view kTimeForm = "dddd-dd-ddTdd:dd:ddsdd:dd";  // s: a sign

// A moment and its zone.
struct ZonedTime {
  std::int64_t Moment = 0;  // seconds since 1970, universal time
  int Minutes = 0;          // by which local time is ahead
};

bool HasForm(std::string_view text) {
  return std::equal(text.begin(), text.end(), kTimeForm.begin(), kTimeForm.end(),
                    [](char each, char form) {
                      return form == 'd'   ? each >= '0' && each <= '9'
                             : form == 's' ? each == '+' || each == '-'
                                           : each == form;
                    });
}

int NumberAt(std::string_view text, std::size_t place, std::size_t digits) {
  int number = 0;
  for (const char each : text.substr(place, digits)) {
    number = number * 10 + (each - '0');
  }
  return number;
}

// Empty outside of the years 1 to 9999.
std::optional<WallTime> WallTimeOf(const ZonedTime& time) {
  const std::int64_t local = time.Moment + time.Minutes * kMinute;
  const std::int64_t day = local / kDay - (local % kDay < 0 ? 1 : 0);
  constexpr std::int64_t kFirstDay = -719162;  // 0001-01-01
  constexpr std::int64_t kLastDay = 2932896;   // 9999-12-31
  if (day < kFirstDay || day > kLastDay) {
    return std::nullopt;
  }
  const std::chrono::year_month_day date{
      std::chrono::sys_days(std::chrono::days(static_cast<int>(day)))};
  const auto second = static_cast<int>(local - day * kDay);
  return WallTime{static_cast<int>(date.year()),
                  static_cast<int>(static_cast<unsigned>(date.month())),
                  static_cast<int>(static_cast<unsigned>(date.day())),
                  second / static_cast<int>(kHour),
                  second / static_cast<int>(kMinute) % 60,
                  second % 60,
                  time.Minutes};
}

// Seconds of the day; empty where the hour, minute or second is none.
std::optional<int> SecondOfDay(int hour, int minute, int second) {
  if (hour >= 24 || minute >= 60 || second >= 60) {
    return std::nullopt;
  }
  return (hour * 60 + minute) * 60 + second;
}

// Empty for what is no time.
std::optional<ZonedTime> ReadTime(const std::string& text) {
  if (!HasForm(text)) {
    return std::nullopt;
  }
  const std::chrono::year_month_day date{
      std::chrono::year(NumberAt(text, 0, 4)),
      std::chrono::month(static_cast<unsigned>(NumberAt(text, 5, 2))),
      std::chrono::day(static_cast<unsigned>(NumberAt(text, 8, 2)))};
  const auto second =
      SecondOfDay(NumberAt(text, 11, 2), NumberAt(text, 14, 2), NumberAt(text, 17, 2));
  const auto zone = SecondOfDay(NumberAt(text, 20, 2), NumberAt(text, 23, 2), 0);
  if (!date.ok() || !second || !zone) {
    return std::nullopt;
  }
  const int ahead = text[19] == '-' ? -*zone : *zone;
  const std::int64_t days = std::chrono::sys_days(date).time_since_epoch().count();
  const ZonedTime time{days * kDay + *second - ahead, ahead / static_cast<int>(kMinute)};
  const bool is_in_range = date.year() >= std::chrono::year(1) && WallTimeOf({time.Moment, 0});
  return is_in_range ? std::optional(time) : std::nullopt;
}

// Summer time begins and ends at a full hour.
std::int64_t MomentOfChange(std::int64_t before, std::int64_t after) {
  const std::int64_t rest = ((before % kHour) + kHour) % kHour;
  const std::int64_t hour = before - rest + kHour;
  return hour <= after && after < hour + kHour ? hour : after;
}

std::optional<std::int64_t> WholeOf(const JournalEntry& line, std::string_view name) {
  const JsonValue* const value = line.Fields.Find(name);
  return value != nullptr ? value->Whole() : std::nullopt;
}

}  // namespace

RowTimes::RowTimes(const JournalReading& journal, std::int64_t interval) : interval_(interval) {
  const bool fits = journal.Problem.empty() && !journal.Entries.empty() &&
                    WholeOf(journal.Entries.front(), "interval") == interval;
  if (!fits) {
    return;
  }
  TakeAnchors(journal.Entries.front().Fields);
  for (const JournalEntry& line : journal.Entries) {
    TakeTime(line);
    if (line.Kind == "start") {
      TakeStart(line);
    } else if (line.Kind == "lost" && !anchors_.empty()) {
      TakeLost(line);
    }
  }
  AddUp();
}

std::optional<std::string> RowTimes::Utc(std::int32_t row) const {
  const auto moment = Moment(row);
  const auto time = moment ? WallTimeOf({*moment, 0}) : std::nullopt;
  if (!time) {
    return std::nullopt;
  }
  const std::string text = TimeWithZone(*time);
  return text.substr(0, text.find('+')) + "Z";
}

std::optional<std::string> RowTimes::Local(std::int32_t row) const {
  const auto moment = Moment(row);
  if (!moment || !WallTimeOf({*moment, 0})) {
    return std::nullopt;
  }
  const auto behind =
      std::upper_bound(changes_.begin(), changes_.end(), *moment,
                       [](std::int64_t at, const ZoneChange& each) { return at < each.Moment; });
  const int minutes = behind == changes_.begin() ? behind->Minutes : std::prev(behind)->Minutes;
  const auto time = WallTimeOf({*moment, minutes});
  return time ? std::optional(TimeWithZone(*time)) : std::nullopt;
}

JsonValue::List RowTimes::AnchorsOf(std::int32_t from, std::int32_t count) const {
  JsonValue::List anchors;
  std::optional<std::string> last;  // of the row before
  for (std::int32_t row = 0; row < count; ++row) {
    const auto local = Local(from + row);
    const auto before = row > 0 ? Moment(from + row - 1) : std::nullopt;
    const auto moment = local ? Moment(from + row) : std::nullopt;
    const bool goes_on = before && moment && *moment == *before + interval_;
    const bool is_same_zone =
        local && last && local->substr(kZonePlace) == last->substr(kZonePlace);
    const bool is_unknown_still = !local && !last && row > 0;
    // The rows 0 and 1 of any file count as one set.
    if (row <= 1 || !(is_unknown_still || (goes_on && is_same_zone))) {
      anchors.push_back(JsonValue::Members{{"rows", row}, {"time", local ? *local : JsonValue()}});
    }
    last = local;
  }
  const bool any = std::any_of(anchors.begin(), anchors.end(),
                               [](const JsonValue& each) { return !each.Find("time")->IsNull(); });
  return any ? anchors : JsonValue::List();
}

std::int64_t RowTimes::Seconds(std::int32_t row, std::int64_t interval) {
  return interval * std::max(row - 1, 0);
}

// What a file of which this is the next one, or a part, says of its rows here.
void RowTimes::TakeAnchors(const JsonValue& begin) {
  for (const char* const member : {"before", "origin"}) {
    const JsonValue* const other = begin.Find(member);
    const JsonValue* const anchors = other != nullptr ? other->Find("anchors") : nullptr;
    const JsonValue::List* const list = anchors != nullptr ? anchors->Elements() : nullptr;
    for (const JsonValue& each : list != nullptr ? *list : JsonValue::List()) {
      const JournalEntry line{"start", each};
      TakeTime(line);
      TakeStart(line);
    }
  }
}

// A later start takes the rows of one before it. Without its rows it anchors nothing.
void RowTimes::TakeStart(const JournalEntry& line) {
  const auto rows = WholeOf(line, "rows");
  Anchor anchor;
  const bool has_row = rows && *rows >= 0;
  anchor.Row = has_row ? *rows : 0;
  const auto time = ReadTime(line.Text("time"));
  if (has_row && time) {
    anchor.Moment = time->Moment;
  }
  while (!anchors_.empty() && anchors_.back().Row >= anchor.Row) {
    anchors_.pop_back();
  }
  anchors_.push_back(std::move(anchor));
}

void RowTimes::TakeLost(const JournalEntry& line) {
  const JsonValue* const exact = line.Fields.Find("exact");
  auto sets = WholeOf(line, "sets");
  const bool is_known =
      exact != nullptr && exact->Truth() == true && sets && *sets >= 0 && *sets <= kMostLostSets;
  if (!is_known) {
    sets.reset();
  }
  anchors_.back().Lost.emplace_back(line.Number("before"), sets);
}

void RowTimes::TakeTime(const JournalEntry& line) {
  const auto time = ReadTime(line.Text("time"));
  if (!time) {
    return;
  }
  if (!last_line_) {
    changes_.push_back({time->Moment, time->Minutes});
  } else if (last_line_->Minutes != time->Minutes) {
    changes_.push_back({MomentOfChange(last_line_->Moment, time->Moment), time->Minutes});
  }
  last_line_ = ZoneChange{time->Moment, time->Minutes};
}

void RowTimes::AddUp() {
  std::stable_sort(
      changes_.begin(), changes_.end(),
      [](const ZoneChange& left, const ZoneChange& right) { return left.Moment < right.Moment; });
  for (Anchor& anchor : anchors_) {
    std::stable_sort(anchor.Lost.begin(), anchor.Lost.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
    std::optional<std::int64_t> sum = 0;
    for (auto& lost : anchor.Lost) {
      sum = sum && lost.second ? std::optional(*sum + *lost.second) : std::nullopt;
      lost.second = sum;
    }
  }
}

std::optional<std::int64_t> RowTimes::Moment(std::int32_t row) const {
  const auto behind =
      std::upper_bound(anchors_.begin(), anchors_.end(), std::int64_t{row},
                       [](std::int64_t at, const Anchor& each) { return at < each.Row; });
  if (behind == anchors_.begin() || !std::prev(behind)->Moment) {
    return std::nullopt;
  }
  const Anchor& anchor = *std::prev(behind);
  const auto later =
      std::upper_bound(anchor.Lost.begin(), anchor.Lost.end(), std::int64_t{row},
                       [](std::int64_t at, const auto& each) { return at < each.first; });
  const std::optional<std::int64_t> lost =
      later == anchor.Lost.begin() ? 0 : std::prev(later)->second;
  if (!lost || *lost > kMostLostSets) {
    return std::nullopt;
  }
  const std::int64_t first = std::max<std::int64_t>(anchor.Row - 1, 0);
  return *anchor.Moment + interval_ * (*lost - first) + Seconds(row, interval_);
}

}  // namespace tavrel
