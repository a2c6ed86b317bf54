#include "files/ledger.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include "files/reasons.h"
#include "files/recording_format.h"

namespace tavrel {
namespace {

// The first set of a file stands in the rows 0 and 1.
std::int64_t SetsOf(std::int64_t rows) {
  return std::max<std::int64_t>(rows - 1, 0);
}

// Of members that a damaged or foreign journal may hold, too.
std::int64_t NumberIn(const JsonValue& fields, std::string_view name) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
  const JsonValue* const member = fields.Find(name);
  const std::int64_t number = member != nullptr ? member->Whole().value_or(0) : 0;
  return std::clamp<std::int64_t>(number, 0, kMost);
}

std::string TextIn(const JsonValue& fields, std::string_view name) {
  const JsonValue* const member = fields.Find(name);
  const std::string* const text = member != nullptr ? member->Text() : nullptr;
  return text != nullptr ? *text : "";
}

bool IsTrue(const JsonValue& fields, std::string_view name) {
  const JsonValue* const member = fields.Find(name);
  return member != nullptr && member->Truth().value_or(false);
}

bool HasNumber(const JsonValue& fields, std::string_view name) {
  const JsonValue* const member = fields.Find(name);
  return member != nullptr && member->Whole().has_value();
}

double SecondsIn(const JsonValue& fields, std::string_view name) {
  constexpr double kMost = 1e12;
  const JsonValue* const member = fields.Find(name);
  return std::clamp(member != nullptr ? member->Number().value_or(0) : 0, 0.0, kMost);
}

std::vector<int> InputsIn(const JsonValue& fields) {
  const JsonValue* const member = fields.Find("inputs");
  const JsonValue::List* const list = member != nullptr ? member->Elements() : nullptr;
  std::vector<int> inputs;
  for (std::size_t place = 0; list != nullptr && place < list->size(); ++place) {
    const std::int64_t input = (*list)[place].Whole().value_or(0);
    if (input >= 1 && input <= kInputs && inputs.size() < kInputs) {
      inputs.push_back(static_cast<int>(input));
    }
  }
  return inputs;
}

// Lines that were written before there were bounds tell a number, and whether it is one.
SetBounds BoundsIn(const JsonValue& fields) {
  if (HasNumber(fields, "least")) {
    const std::int64_t least = NumberIn(fields, "least");
    const bool has_most = HasNumber(fields, "most");
    return {least,
            has_most ? std::optional(std::max(least, NumberIn(fields, "most"))) : std::nullopt};
  }
  const std::int64_t sets = NumberIn(fields, "sets");
  return IsTrue(fields, "exact") ? SetBounds{sets, sets} : SetBounds{0, std::nullopt};
}

// Rows in at least one of the spans; row 0 is row 1 and does not count.
template <typename Spans>
std::int64_t RowsIn(Spans spans, std::int64_t rows) {
  std::sort(spans.begin(), spans.end(),
            [](const auto& left, const auto& right) { return left.from < right.from; });
  std::int64_t count = 0;
  std::int64_t next = 1;
  for (const auto& span : spans) {
    const std::int64_t from = std::max(span.from, next);
    const std::int64_t end = std::min(span.to + 1, rows);
    if (end > from) {
      count += end - from;
      next = end;
    }
  }
  return count;
}

}  // namespace

SetBounds operator+(const SetBounds& left, const SetBounds& right) {
  const bool is_bounded = left.Most && right.Most;
  return {left.Least + right.Least,
          is_bounded ? std::optional(*left.Most + *right.Most) : std::nullopt};
}

SetBounds LedgerFigures::Expected() const {
  return SetBounds{Recorded, Recorded} + Lost + Waiting.value_or(SetBounds{0, std::nullopt});
}

// ---- The lines.

void Ledger::Take(const JournalEntry& entry) {
  Take(entry.Kind, entry.Fields, {SecondsIn(entry.Fields, "up"), TextIn(entry.Fields, "boot")},
       TextIn(entry.Fields, "time"));
}

void Ledger::Take(std::string_view kind, const JsonValue& fields, const LedgerMoment& when,
                  const std::string& time) {
  const bool follows_late_begin = std::exchange(began_late_, false);
  rows_ = HasNumber(fields, "rows") ? NumberIn(fields, "rows") : rows_;
  last_ = when;
  const std::string line = TextIn(fields, "line");
  is_simulated_ = line.empty() ? is_simulated_ : line == "simulated";
  if (kind == journal::kBegin) {
    TakeBegin(fields);
  } else if (kind == "adopted") {
    TakeAdopted(fields, follows_late_begin);
  } else if (kind == "start") {
    TakeStart(rows_);
  } else if (kind == "resume" || kind == "back") {
    is_on_ = true;
    later_from_ = later_from_.value_or(rows_);
  } else if (kind == "stop" || kind == "end") {
    is_on_ = false;
  } else if (kind == "lost") {
    TakeLost(fields, time);
  } else if (kind == "values") {
    TakeValues(fields);
  } else if (kind == "drained") {
    TakeDrained(fields, when, time);
  } else if (kind == "counted") {
    TakeCounted(fields, when);
  }
}

void Ledger::TakeBegin(const JsonValue& fields) {
  has_begun_ = true;
  interval_ = std::max(SecondsIn(fields, "interval"), 1.0);
  clock_.emplace(interval_);
  began_late_ = fields.Find("why") != nullptr;
  is_on_ = began_late_ || fields.Find("before") != nullptr;
  segments_ = is_on_ ? 1 : 0;
  why_ = fields.Find("origin") != nullptr ? reason::kPart.English : "";
}

void Ledger::TakeAdopted(const JsonValue& fields, bool follows_late_begin) {
  const std::int64_t end = NumberIn(fields, "last") + 1;
  if (follows_late_begin) {
    unwatched_ = end;
  } else if (const std::int64_t rows = Unexplained(end - NumberIn(fields, "first")); rows > 0) {
    unwatched_ += rows;
    BeginSeries();
  }
}

// Behind the journal that a killed program leaves stand the rows since its last seal, and what it
// fetched meanwhile from a full buffer. Where there are more the journal could not be written.
std::int64_t Ledger::Unexplained(std::int64_t rows) const {
  constexpr double kBetweenSeals = 3600;  // s: three times as long as it should be
  const double most = kBufferSets + kBetweenSeals / std::max(interval_, 1.0) + 2;
  return static_cast<double>(rows) > most ? rows : 0;
}

void Ledger::TakeStart(std::int64_t rows) {
  CloseLosses();
  ++segments_;
  is_on_ = true;
  BeginSeries();
  later_from_.reset();
  if (question_from_) {
    questioned_.push_back({*std::exchange(question_from_, std::nullopt), rows - 1});
  }
}

// Series that were begun anew have another phase.
void Ledger::TakeLost(const JsonValue& fields, const std::string& time) {
  const bool has_count = HasNumber(fields, "sets");
  const SetBounds sets = BoundsIn(fields);
  const std::int64_t about = NumberIn(fields, "sets");
  losses_.push_back({NumberIn(fields, "before"), sets,
                     has_count && !sets.IsExact() ? std::optional(about) : std::nullopt, time,
                     TextIn(fields, "what")});
  if (TextIn(fields, "cause") == "restart") {
    BeginSeries();
  }
}

void Ledger::BeginSeries() {
  has_anchor_ = false;
  rows_of_new_series_ = rows_;
}

// Where values may stand in wrong rows the rows tell no sets any more; a series that the user has
// begun anew has another phase.
void Ledger::TakeValues(const JsonValue& fields) {
  const Span span{NumberIn(fields, "first"), NumberIn(fields, "last"), InputsIn(fields),
                  TextIn(fields, "what")};
  const bool is_filled = IsTrue(fields, "filled");
  if (!is_filled || IsTrue(fields, "anew")) {
    BeginSeries();
  }
  if (is_filled) {
    filled_.push_back(span);
    return;
  }
  questioned_.push_back(span);
  if (IsTrue(fields, "onward")) {
    question_from_ = std::min(question_from_.value_or(span.from), span.from);
  }
}

// ---- Expected and recorded are compared where the instrument has no more data.

void Ledger::TakeDrained(const JsonValue& fields, const LedgerMoment& when,
                         const std::string& time) {
  if (!clock_) {
    return;
  }
  has_drained_ = true;
  if (later_from_) {
    later_ += std::max<std::int64_t>(SetsOf(rows_) - SetsOf(*later_from_), 0);
    later_spans_.push_back({*later_from_, rows_ - 1});
    later_from_.reset();
  }
  const LedgerClock::Moment moment{when.Up - SecondsIn(fields, "took"), when.Up};
  const auto lost = GoesOn(when) ? Compare(moment, time) : std::nullopt;
  CloseLosses();
  position_ += SetsOf(rows_) - SetsOf(drained_rows_) + lost.value_or(0);
  if (!lost || !clock_->Learn(moment, position_)) {
    clock_->Begin(moment);
    position_ = 0;
  }
  // The first set of new series may come later than an interval after their beginning.
  has_anchor_ = rows_ > rows_of_new_series_;
  drained_ = when;
  drained_rows_ = rows_;
}

// True if what the clock knows holds up to that moment.
bool Ledger::GoesOn(const LedgerMoment& when) const {
  const bool is_clear = has_anchor_ && !question_from_;
  return is_clear && when.Boot == drained_.Boot && when.Up >= drained_.Up;
}

// Where the clock does not go on it begins with the oldest set that waits. Without one a series may
// not have begun yet.
void Ledger::TakeCounted(const JsonValue& fields, const LedgerMoment& when) {
  const std::int64_t least = std::min<std::int64_t>(NumberIn(fields, "least"), kBufferSets);
  const std::int64_t most = std::clamp<std::int64_t>(NumberIn(fields, "most"), least, kBufferSets);
  if (!clock_ || least == 0 || GoesOn(when)) {
    return;
  }
  CloseLosses();
  clock_->Begin({when.Up - SecondsIn(fields, "took"), when.Up}, {least, most});
  position_ = 0;
  has_anchor_ = true;
  drained_ = when;
  drained_rows_ = rows_;
}

// The sets that are lost since the last such moment, if their number is known. A set that the clock
// only allows to be missing is none.
std::optional<std::int64_t> Ledger::Compare(const LedgerClock::Moment& moment,
                                            const std::string& time) {
  const LedgerClock::Range made = clock_->MadeAt(moment);
  const std::int64_t taken = position_ + SetsOf(rows_) - SetsOf(drained_rows_);
  if (made.most < taken) {
    return std::nullopt;
  }
  const SetBounds missing{std::max<std::int64_t>(made.least - taken, 0), made.most - taken};
  if (open_ < losses_.size()) {
    Narrow(missing);
  } else if (missing.Least > 0) {
    losses_.push_back(
        {rows_, missing, std::nullopt, time, std::string(reason::kFewerCame.English)});
  }
  const SetBounds sum = open_sum_.value_or(OpenSum());
  return sum.IsExact() ? std::optional(sum.Least) : std::nullopt;
}

// What was told and what the clocks say hold both. Where they contradict, all between holds.
void Ledger::Narrow(const SetBounds& missing) {
  const SetBounds told = OpenSum();
  const std::int64_t most = missing.Most.value_or(0);
  const std::int64_t told_most = std::max(told.Most.value_or(most), told.Least);
  SetBounds both{std::max(told.Least, missing.Least), std::min(told_most, most)};
  if (both.Least > *both.Most) {
    both = {std::min(told.Least, missing.Least), std::max(told_most, most)};
  }
  open_sum_ = both;
  if (open_ + 1 == losses_.size()) {
    losses_.back().Sets = both;
  }
}

SetBounds Ledger::OpenSum() const {
  SetBounds sum;
  for (std::size_t place = open_; place < losses_.size(); ++place) {
    sum = sum + losses_[place].Sets;
  }
  return sum;
}

void Ledger::CloseLosses() {
  closed_ = closed_ + open_sum_.value_or(OpenSum());
  open_sum_.reset();
  open_ = losses_.size();
}

// ---- The figures.

std::optional<SetBounds> Ledger::WaitingAt(std::int64_t rows, const LedgerMoment& now) const {
  if (!is_on_) {
    return SetBounds();
  }
  if (!has_anchor_ || now.Boot != drained_.Boot || now.Up < drained_.Up) {
    return std::nullopt;
  }
  const LedgerClock::Range made = clock_->MadeAt({now.Up, now.Up});
  const SetBounds lost = OpenSum();
  const std::int64_t taken = position_ + SetsOf(rows) - SetsOf(drained_rows_);
  const std::int64_t least = lost.Most ? made.least - taken - *lost.Most : 0;
  const std::int64_t most = made.most - taken - lost.Least;
  return SetBounds{std::clamp<std::int64_t>(least, 0, kBufferSets),
                   std::clamp<std::int64_t>(most, 0, kBufferSets)};
}

LedgerFigures Ledger::Figures(std::int64_t rows, const std::optional<LedgerMoment>& now) const {
  LedgerFigures figures;
  figures.Rows = rows;
  figures.Why = WhyNone();
  figures.IsKnown = figures.Why.empty();
  if (!figures.IsKnown) {
    return figures;
  }
  const std::int64_t behind = now ? 0 : Unexplained(rows - rows_);
  figures.Unwatched = std::min(unwatched_ + behind, rows);
  figures.Recorded = SetsOf(rows);
  const std::int64_t since = later_from_ ? SetsOf(rows) - SetsOf(*later_from_) : 0;
  figures.Later = std::min(later_ + std::max<std::int64_t>(since, 0), figures.Recorded);
  figures.Live = figures.Recorded - figures.Later;
  figures.Filled = RowsIn(filled_, rows);
  std::vector<Span> questioned = questioned_;
  if (question_from_) {
    questioned.push_back({*question_from_, rows - 1});
  }
  figures.Questioned = RowsIn(std::move(questioned), rows);
  figures.Losses = losses_;
  std::erase_if(figures.Losses, [](const LedgerLoss& loss) { return loss.Sets.IsNone(); });
  figures.Lost = closed_ + OpenSum();
  figures.Waiting = WaitingAt(rows, now.value_or(last_));
  figures.Segments = segments_;
  return figures;
}

std::string Ledger::WhyNone() const {
  if (!has_begun_ || !why_.empty()) {
    return has_begun_ ? why_ : std::string(reason::kNoJournal.English);
  }
  return is_simulated_ && !has_drained_ ? std::string(reason::kSimulated.English) : "";
}

std::vector<ToldRows> Ledger::Told(std::int64_t rows) const {
  using Kind = ToldRows::Kind;
  std::vector<ToldRows> told;
  if (!WhyNone().empty()) {
    return told;
  }
  const auto add = [&](Kind kind, const Span& span) {
    const std::int64_t last = std::min(span.to, rows - 1);
    if (span.from <= last) {
      told.push_back({kind, span.from, last, {}, span.inputs, span.why});
    }
  };
  const auto add_all = [&](Kind kind, const std::vector<Span>& spans) {
    std::for_each(spans.begin(), spans.end(), [&](const Span& span) { add(kind, span); });
  };
  add_all(Kind::kLater, later_spans_);
  add_all(Kind::kFilled, filled_);
  add_all(Kind::kQuestioned, questioned_);
  if (later_from_) {
    add(Kind::kLater, {*later_from_, rows - 1});
  }
  if (question_from_) {
    add(Kind::kQuestioned, {*question_from_, rows - 1});
  }
  for (const LedgerLoss& loss : losses_) {
    if (!loss.Sets.IsNone() && loss.Before <= rows) {
      told.push_back({Kind::kMissing, loss.Before, loss.Before, loss.Sets, {}, loss.What});
    }
  }
  return told;
}

// ---- A whole journal.

LedgerFigures LedgerOf(const JournalReading& journal, std::int64_t rows) {
  Ledger ledger;
  for (const JournalEntry& entry : journal.Entries) {
    ledger.Take(entry);
  }
  return ledger.Figures(rows);
}

Ledger ReadLedger(std::string_view journal) {
  static constexpr std::array<std::string_view, 2> kSilentKinds = {R"("kind":"controller")",
                                                                   R"("kind":"seal")"};
  Ledger ledger;
  while (!journal.empty()) {
    const std::size_t end = std::min(journal.find('\n'), journal.size());
    const std::string_view line = journal.substr(0, end);
    journal.remove_prefix(std::min(end + 1, journal.size()));
    const bool is_silent = std::any_of(
        kSilentKinds.begin(), kSilentKinds.end(),
        [&](std::string_view kind) { return line.find(kind) != std::string_view::npos; });
    auto fields = is_silent ? std::nullopt : ReadJson(line);
    if (fields) {
      const std::string kind = TextIn(*fields, "kind");
      ledger.Take({kind, std::move(*fields)});
    }
  }
  return ledger;
}

}  // namespace tavrel
