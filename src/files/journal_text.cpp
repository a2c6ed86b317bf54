#include "files/journal_text.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "platform/file_system.h"

namespace tavrel {
namespace {

constexpr std::string_view kSumBegins = ",\"sum\":\"";
constexpr std::string_view kSumEnds = "\"}";
constexpr std::size_t kSumDigits = 16;
constexpr std::string_view kSealLine = ",\"kind\":\"seal\",";  // a text cannot hold it unescaped
constexpr std::size_t kSumBytes = kSumBegins.size() + kSumDigits + kSumEnds.size();

std::string SumOf(const Sha256& hash) {
  return hash.Hex().substr(0, kSumDigits);
}

// True if the line ends as whole lines do, whatever its sum is.
bool HasSum(std::string_view line) {
  return line.size() > kSumBytes && line.ends_with(kSumEnds) &&
         line.substr(line.size() - kSumBytes).starts_with(kSumBegins);
}

// Takes a journal line by line. Lines that do not fit are held until one says that they were torn.
class Reader {
 public:
  explicit Reader(JournalReading& reading) : reading_(reading) {}

  void TakeAll(std::string_view text) {
    while (!text.empty()) {
      const std::size_t end = text.find('\n');
      const bool has_feed = end != std::string_view::npos;
      Take(text.substr(0, end), has_feed);
      text.remove_prefix(has_feed ? end + 1 : text.size());
    }
    End();
  }

 private:
  void Take(std::string_view line, bool has_feed) {
    JsonValue read;
    if (reading_.Chain.Takes(line, read) && ExplainsHeld(read)) {
      held_bytes_ = 0;
      AddEntry(std::move(read));
    } else {
      Hold(line);
    }
    if (has_feed) {
      reading_.Chain.AddRaw("\n");
    }
    reading_.LacksLineFeed = !has_feed;
    ++number_;
  }

  // At the end of the text.
  void End() {
    if (held_bytes_ == 0) {
      return;
    }
    if (held_is_whole_) {
      reading_.Problem = "line " + std::to_string(first_held_) + " is not as it was written";
    } else {
      reading_.TornBytes = held_bytes_ - 1;
    }
  }

  [[nodiscard]] bool ExplainsHeld(const JsonValue& read) const {
    const JsonValue* const bytes = read.Find("bytes");
    const JsonValue* const kind = read.Find("kind");
    return held_bytes_ == 0 || (*kind->Text() == journal::kTorn && bytes != nullptr &&
                                bytes->Whole() == held_bytes_ - 1);
  }

  void AddEntry(JsonValue read) {
    std::string kind = *read.Find("kind")->Text();
    reading_.Entries.push_back({std::move(kind), std::move(read)});
  }

  void Hold(std::string_view line) {
    if (held_bytes_ == 0) {
      first_held_ = number_;
      held_is_whole_ = false;
    }
    held_is_whole_ = held_is_whole_ || HasSum(line);
    held_bytes_ += static_cast<std::int64_t>(line.size()) + 1;
    reading_.Chain.AddRaw(line);
  }

  JournalReading& reading_;
  int number_ = 1;
  int first_held_ = 0;
  std::int64_t held_bytes_ = 0;  // with a line feed behind each
  bool held_is_whole_ = false;
};

}  // namespace

std::string JournalPath(const std::string& directory, const std::string& name) {
  return JoinPath(JoinPath(directory, kJournalDirectory), name);
}

std::string TimeWithZone(const WallTime& time) {
  const int zone = std::abs(time.ZoneMinutes);
  char text[96];
  std::snprintf(text, sizeof text, "%04d-%02d-%02dT%02d:%02d:%02d%c%02d:%02d", time.Year,
                time.Month, time.Day, time.Hour, time.Minute, time.Second,
                time.ZoneMinutes < 0 ? '-' : '+', zone / 60, zone % 60);
  return text;
}

std::string JournalChain::Line(const JournalStamp& stamp, const std::string& kind,
                               const JsonValue::Members& fields) {
  JsonValue::Members members{{"n", next_number_},
                             {"time", TimeWithZone(stamp.Wall)},
                             {"up", std::round(stamp.Up * 1000) / 1000},
                             {"boot", stamp.Boot},
                             {"kind", kind}};
  members.insert(members.end(), fields.begin(), fields.end());
  std::string line = JsonText(members);
  line.pop_back();  // the bracket comes behind the sum
  hash_.Add(line);
  const std::string end = std::string(kSumBegins) + SumOf(hash_) + std::string(kSumEnds) + "\n";
  hash_.Add(end);
  ++next_number_;
  return line + end;
}

bool JournalChain::GoTo(std::string_view before, const JsonValue& seal) {
  Sha256 hash;
  hash.Add(before);
  const JsonValue* const number = seal.Find("n");
  std::swap(hash_, hash);
  const bool fits = number != nullptr && number->Whole() && Seals(seal);
  if (fits) {
    next_number_ = *number->Whole();
  } else {
    std::swap(hash_, hash);
  }
  return fits;
}

bool JournalChain::Seals(const JsonValue& seal) const {
  const JsonValue* const sealed = seal.Find("journal");
  return sealed != nullptr && sealed->Text() != nullptr && *sealed->Text() == hash_.Hex();
}

bool JournalChain::Takes(std::string_view line, JsonValue& read) {
  if (!HasSum(line)) {
    return false;
  }
  const std::size_t told = line.size() - kSumBytes;
  Sha256 hash = hash_;
  hash.Add(line.substr(0, told));
  const std::string sum = SumOf(hash);
  if (sum.empty() || line.substr(told + kSumBegins.size(), kSumDigits) != sum) {
    return false;
  }
  auto value = ReadJson(line);
  const JsonValue* const number = value ? value->Find("n") : nullptr;
  const JsonValue* const kind = value ? value->Find("kind") : nullptr;
  const bool is_next = number != nullptr && number->Whole() == next_number_ && kind != nullptr &&
                       kind->Text() != nullptr;
  if (!is_next || (*kind->Text() == journal::kSeal && !Seals(*value))) {
    return false;
  }
  hash.Add(line.substr(told));
  hash_ = std::move(hash);
  ++next_number_;
  read = std::move(*value);
  return true;
}

std::int64_t JournalEntry::Number(std::string_view name) const {
  const JsonValue* const value = Fields.Find(name);
  return value != nullptr ? value->Whole().value_or(0) : 0;
}

std::string JournalEntry::Text(std::string_view name) const {
  const JsonValue* const value = Fields.Find(name);
  return value != nullptr && value->Text() != nullptr ? *value->Text() : "";
}

JournalReading ReadJournal(std::string_view text) {
  JournalReading reading;
  Reader(reading).TakeAll(text);
  const bool has_begin =
      !reading.Entries.empty() && reading.Entries.front().Kind == journal::kBegin;
  if (text.empty()) {
    reading.TornBytes = 0;  // a full disk, or a kill before the first byte
  } else if (reading.Problem.empty() && !has_begin && !reading.TornBytes) {
    reading.Problem = "its beginning is missing";
  }
  return reading;
}

JournalReading ReadJournalEnd(std::string_view text) {
  const std::size_t found = text.rfind(kSealLine);
  const std::size_t line_feed = text.rfind('\n', found);
  if (found == std::string_view::npos || line_feed == std::string_view::npos) {
    return ReadJournal(text);
  }
  const std::string_view behind = text.substr(line_feed + 1);
  const auto seal = ReadJson(behind.substr(0, behind.find('\n')));
  auto first = ReadJson(text.substr(0, text.find('\n')));
  const JsonValue* const kind = first ? first->Find("kind") : nullptr;
  const bool is_begin =
      kind != nullptr && kind->Text() != nullptr && *kind->Text() == journal::kBegin;
  JournalReading reading;
  if (!is_begin || !seal || !reading.Chain.GoTo(text.substr(0, line_feed + 1), *seal)) {
    return ReadJournal(text);
  }
  reading.Entries.push_back({journal::kBegin, std::move(*first)});
  Reader(reading).TakeAll(behind);
  return reading.Problem.empty() ? std::move(reading) : ReadJournal(text);
}

}  // namespace tavrel
