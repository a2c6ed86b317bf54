#ifndef TAVREL_FILES_LEDGER_H_
#define TAVREL_FILES_LEDGER_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "files/journal_check.h"
#include "files/journal_text.h"
#include "files/ledger_clock.h"
#include "platform/json.h"

// How complete a recording is, to the set, by the lines of its journal. Pure rules:
// docs/recording_journal.md tells them.
namespace tavrel {

// A number of sets that lies between two bounds; equal ones are the number.
struct SetBounds {
  std::int64_t Least = 0;
  std::optional<std::int64_t> Most = 0;  // empty: nobody knows

  [[nodiscard]] bool IsExact() const { return Most && *Most == Least; }
  [[nodiscard]] bool IsNone() const { return Most && *Most == 0; }
  [[nodiscard]] bool operator==(const SetBounds&) const = default;
};

[[nodiscard]] SetBounds operator+(const SetBounds& left, const SetBounds& right);

// Sets that are lost in one place.
struct LedgerLoss {
  std::int64_t Before = 0;  // the row before which they are missing
  SetBounds Sets;
  std::optional<std::int64_t> About;  // by a clock that can be set, where the bounds do not tell
  std::string Time;                   // when it was noticed, as in the journal
  std::string What;                   // in words
};

// Rows of which the journal tells something.
struct ToldRows {
  enum class Kind {
    kLater,       // fetched after the instrument was silent or the program was away
    kFilled,      // a value stands in place of a lost one
    kQuestioned,  // values may stand in a wrong row
    kMissing,     // sets are missing before First
  };
  Kind What = Kind::kLater;
  std::int64_t First = 0;
  std::int64_t Last = 0;         // of kMissing the same as First
  SetBounds Missing;             // of kMissing
  std::vector<int> Inputs = {};  // of kFilled and kQuestioned
  std::string Why;               // in the words of the journal; may be empty

  [[nodiscard]] bool operator==(const ToldRows&) const = default;
};

// The figures of a recording.
struct LedgerFigures {
  bool IsKnown = false;         // false: nothing can be said, for Why
  std::string Why;              // "there is no journal", "it is a part of another recording"
  std::int64_t Rows = 0;        // of the file
  std::int64_t Unwatched = 0;   // of them, rows that no line of the journal vouches for
  std::int64_t Recorded = 0;    // sets; rows 0 and 1 hold the same one
  std::int64_t Live = 0;        // of them, taken while the instrument was read all the time
  std::int64_t Later = 0;       // of them, fetched after it was silent or the program was away
  std::int64_t Filled = 0;      // rows with a value that stands in place of a lost one
  std::int64_t Questioned = 0;  // rows in which values may stand in a wrong row
  SetBounds Lost;
  std::vector<LedgerLoss> Losses;
  std::optional<SetBounds> Waiting;  // in the instrument at that moment; empty: nobody knows
  std::int64_t Segments = 0;         // one for each start

  [[nodiscard]] SetBounds Expected() const;  // recorded, lost and waiting
  [[nodiscard]] bool IsComplete() const {
    return IsKnown && Unwatched == 0 && Lost.IsNone() && Filled == 0 && Questioned == 0;
  }
};

// A moment on the clock that nobody sets.
struct LedgerMoment {
  double Up = 0;
  std::string Boot;
};

// Takes the lines of a journal one after the other, in their order.
class Ledger {
 public:
  // `fields` is the whole line or its own members; `time` as in the journal.
  void Take(std::string_view kind, const JsonValue& fields, const LedgerMoment& when,
            const std::string& time);

  // A line as it was read from a journal.
  void Take(const JournalEntry& entry);

  // With `rows` in the file; what waits in the instrument is estimated for `now`, or for the moment
  // of the last line. Without `now` nobody records, and rows behind the last line may be of a time
  // in which the journal could not be written.
  [[nodiscard]] LedgerFigures Figures(std::int64_t rows,
                                      const std::optional<LedgerMoment>& now = {}) const;

  // What it tells of the rows of a file with `rows` of them, in no order. Nothing where there is no
  // ledger.
  [[nodiscard]] std::vector<ToldRows> Told(std::int64_t rows) const;

 private:
  // Rows from..to, both of them.
  struct Span {
    std::int64_t from = 0;
    std::int64_t to = 0;
    std::vector<int> inputs = {};
    std::string why = {};
  };

  [[nodiscard]] std::string WhyNone() const;
  void TakeBegin(const JsonValue& fields);
  void TakeAdopted(const JsonValue& fields, bool follows_late_begin);
  void TakeStart(std::int64_t rows);
  void TakeLost(const JsonValue& fields, const std::string& time);
  void TakeValues(const JsonValue& fields);
  void TakeDrained(const JsonValue& fields, const LedgerMoment& when, const std::string& time);
  void TakeCounted(const JsonValue& fields, const LedgerMoment& when);
  [[nodiscard]] bool GoesOn(const LedgerMoment& when) const;
  void BeginSeries();
  void CloseLosses();
  [[nodiscard]] std::optional<std::int64_t> Compare(const LedgerClock::Moment& moment,
                                                    const std::string& time);
  void Narrow(const SetBounds& missing);
  [[nodiscard]] SetBounds OpenSum() const;
  [[nodiscard]] std::int64_t Unexplained(std::int64_t rows) const;
  [[nodiscard]] std::optional<SetBounds> WaitingAt(std::int64_t rows,
                                                   const LedgerMoment& now) const;

  bool has_begun_ = false;
  std::string why_;
  bool began_late_ = false;  // the file was there before, and its rows are told next
  bool is_simulated_ = false;
  bool has_drained_ = false;
  bool is_on_ = false;
  double interval_ = 0;
  std::int64_t rows_ = 0;
  std::int64_t unwatched_ = 0;
  std::int64_t later_ = 0;
  std::int64_t segments_ = 0;
  std::optional<std::int64_t> later_from_;
  std::vector<Span> later_spans_;
  std::vector<Span> filled_;
  std::vector<Span> questioned_;
  std::optional<std::int64_t> question_from_;
  std::vector<LedgerLoss> losses_;
  std::size_t open_ = 0;               // the first loss that the clocks have not been asked about
  SetBounds closed_;                   // of those before it
  std::optional<SetBounds> open_sum_;  // of those behind it, where the clocks have narrowed it
  std::optional<LedgerClock> clock_;
  bool has_anchor_ = false;  // the clock has begun, and the series of the instrument go on since
  std::int64_t rows_of_new_series_ = 0;  // when they were begun
  LedgerMoment drained_;
  std::int64_t drained_rows_ = 0;
  std::int64_t position_ = 0;  // sets that were made since the clock began, at drained_
  LedgerMoment last_;
};

// By all lines of a journal. Lines that say nothing of sets are passed over without being read: a
// journal of a year takes a moment.
[[nodiscard]] Ledger ReadLedger(std::string_view journal);

// By the lines of a journal that fit.
[[nodiscard]] LedgerFigures LedgerOf(const JournalReading& journal, std::int64_t rows);

}  // namespace tavrel

#endif  // TAVREL_FILES_LEDGER_H_
