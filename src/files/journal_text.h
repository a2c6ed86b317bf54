#ifndef TAVREL_FILES_JOURNAL_TEXT_H_
#define TAVREL_FILES_JOURNAL_TEXT_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/clock.h"
#include "platform/json.h"
#include "platform/sha256.h"

// The text of the journal of a recording: one JSON object a line, each line bound to all before it
// by a hash. docs/recording_journal.md tells the format. Pure rules, no file is touched here.
namespace tavrel {

inline constexpr const char* kJournalDirectory = "journal";  // beside the recordings

// A journal that is longer is none: one of a year of recording has 15 MB.
inline constexpr std::int64_t kMostJournalBytes = std::int64_t{64} << 20U;

// The kinds of lines that rules look at; all others only tell what happened.
namespace journal {
inline constexpr const char* kBegin = "begin";
inline constexpr const char* kTorn = "torn";
inline constexpr const char* kHeader = "header";
inline constexpr const char* kDrained = "drained";
inline constexpr const char* kSeal = "seal";
}  // namespace journal

// The full path of the journal of the recording `name` in `directory`.
[[nodiscard]] std::string JournalPath(const std::string& directory, const std::string& name);

// "2026-03-14T10:00:00+01:00".
[[nodiscard]] std::string TimeWithZone(const WallTime& time);

// When something was written down.
struct JournalStamp {
  WallTime Wall;
  double Up = 0;     // seconds on the clock that nobody sets
  std::string Boot;  // of that clock
};

// Where a journal stands: the number of its next line, and the hash of all its bytes.
class JournalChain {
 public:
  // The next line, with its line feed; it counts as a part of the journal from here on.
  [[nodiscard]] std::string Line(const JournalStamp& stamp, const std::string& kind,
                                 const JsonValue::Members& fields);

  // Bytes that come behind and are no line of their own.
  void AddRaw(std::string_view bytes) { hash_.Add(bytes); }

  // Stands behind `before` if that is what `seal` has sealed; else nothing changes.
  [[nodiscard]] bool GoTo(std::string_view before, const JsonValue& seal);

  // Takes a line as it stands in a journal, without its line feed, if it is the next one.
  [[nodiscard]] bool Takes(std::string_view line, JsonValue& read);

  // Of all bytes so far.
  [[nodiscard]] std::string Hash() const { return hash_.Hex(); }

  [[nodiscard]] std::int64_t NextNumber() const { return next_number_; }

 private:
  // True if the seal names the hash of all bytes so far.
  [[nodiscard]] bool Seals(const JsonValue& seal) const;

  Sha256 hash_;
  std::int64_t next_number_ = 1;
};

// A line of a journal.
struct JournalEntry {
  std::string Kind;
  JsonValue Fields;  // all of the line

  // A member of the line; 0 or the empty text where there is none of that kind.
  [[nodiscard]] std::int64_t Number(std::string_view name) const;
  [[nodiscard]] std::string Text(std::string_view name) const;
};

// What stands in a journal.
struct JournalReading {
  std::vector<JournalEntry> Entries;      // up to the first line that does not fit
  std::string Problem;                    // empty, or which line is not as it was written
  std::optional<std::int64_t> TornBytes;  // of an unfinished line at the end; empty: there is none
  bool LacksLineFeed = false;             // the last byte is no line feed
  JournalChain Chain;  // behind all bytes that are read, the unfinished ones included

  [[nodiscard]] std::string Id() const { return Entries.empty() ? "" : Entries.front().Text("id"); }
};

// Takes any bytes. A line that a kill has left unfinished is no problem at the end of the text, nor
// where the next line says so.
[[nodiscard]] JournalReading ReadJournal(std::string_view text);

// The same, to go on with the journal: of the lines in front of the last seal only the
// first is among the entries, if all bytes in front of that seal are those that it seals. So a
// journal of many months costs one hash of its text. Where they are not, all lines are read.
[[nodiscard]] JournalReading ReadJournalEnd(std::string_view text);

}  // namespace tavrel

#endif  // TAVREL_FILES_JOURNAL_TEXT_H_
