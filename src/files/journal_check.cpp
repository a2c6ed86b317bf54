#include "files/journal_check.h"

#include <algorithm>
#include <cstring>

#include "files/reasons.h"
#include "files/recording_format.h"

namespace tavrel {
namespace {

constexpr std::size_t kHeaderSize = kHeaderBytes;

UnitRecord HeaderIn(std::span<const std::byte> recording) {
  UnitRecord unit{};
  const std::size_t length = std::min(recording.size(), kHeaderSize);
  if (length > 0) {
    std::memcpy(&unit, recording.data(), length);
  }
  return unit;
}

// In English: the words of journals and of the command. ReasonIn gives them in German.
std::string Counted(std::int64_t count, const BothLanguages& one, const BothLanguages& many) {
  return (count == 1 ? one : many).Text(Language::kEnglish, {std::to_string(count)});
}

std::string Named(const RowRange& rows, const BothLanguages& one, const BothLanguages& many) {
  return (rows.First == rows.Last ? one : many)
      .Text(Language::kEnglish, {std::to_string(rows.First), std::to_string(rows.Last)});
}

// A seal that makes no sense is none; empty then.
std::optional<JournalSeal> SealIn(const JournalEntry& entry) {
  const std::int64_t rows = entry.Number("rows");
  const std::int64_t columns = entry.Number("columns");
  const bool makes_sense = entry.Kind == journal::kSeal && rows >= 0 && rows <= kMaxSampleCount &&
                           columns >= 1 && columns <= kInputs;
  if (!makes_sense) {
    return std::nullopt;
  }
  return JournalSeal{static_cast<std::int32_t>(rows), static_cast<int>(columns), entry.Text("data"),
                     entry.Text("header"), entry.Text("journal")};
}

// One check: what the seals say is held against the file, in the order of the journal.
class Checker {
 public:
  Checker(std::span<const std::byte> recording, RecordingCheck& check)
      : recording_(recording), check_(check) {}

  void Take(const JournalEntry& entry) {
    if (const auto seal = SealIn(entry)) {
      TakeSeal(*seal);
    } else if (entry.Kind == journal::kHeader) {
      TakeHeader(entry);
      ++lines_behind_;
    } else {
      ++lines_behind_;
    }
  }

  void End(const JournalReading& journal) {
    CheckHeader();
    CountRows();
    CheckRows();
    CheckEnd(journal);
  }

  void Find(Verdict verdict, std::string_view text) {
    check_.Verdict = std::max(check_.Verdict, verdict);
    check_.Findings.emplace_back(text);
  }

 private:
  // The bytes of the samples that are in the file, up to `rows` rows.
  [[nodiscard]] std::span<const std::byte> SampleBytes(std::size_t from, std::size_t to) const {
    const std::size_t length = recording_.size();
    const std::size_t first = std::min(kHeaderSize + from, length);
    const std::size_t last = std::min(kHeaderSize + to, length);
    return recording_.subspan(first, last - first);
  }

  void TakeSeal(const JournalSeal& seal) {
    headers_ = {seal.Header};
    lines_behind_ = 0;
    check_.LastSeal = seal;
    if (first_wrong_) {
      return;
    }
    const std::size_t end = static_cast<std::size_t>(seal.Rows) *
                            static_cast<std::size_t>(seal.Columns) * std::size_t{kWordBytes};
    const bool is_there = kHeaderSize + end <= recording_.size() || seal.Rows == 0;
    const bool goes_on = end >= hashed_;
    if (is_there && goes_on) {
      data_.Add(SampleBytes(hashed_, end));
      hashed_ = end;
    }
    if (is_there && goes_on && data_.Hex() == seal.Data) {
      check_.CoveredRows = seal.Rows;
    } else {
      first_wrong_ = seal;
      is_missing_ = !is_there;
    }
  }

  // Where there is no seal yet, the first such line tells which header it found.
  void TakeHeader(const JournalEntry& entry) {
    if (headers_.empty() && !entry.Text("old").empty()) {
      headers_.push_back(entry.Text("old"));
    }
    headers_.push_back(entry.Text("new"));
  }

  void CheckHeader() {
    if (!check_.LastSeal && headers_.empty()) {
      return;
    }
    const std::string hash = Sha256Of(recording_.first(std::min(recording_.size(), kHeaderSize)));
    check_.IsHeaderRight = std::find(headers_.begin(), headers_.end(), hash) != headers_.end();
    if (!check_.IsHeaderRight) {
      Find(Verdict::kDamaged, reason::kHeaderNotAsSealed.English);
    }
  }

  // A damaged header may have another number of columns.
  void CountRows() {
    const int columns =
        check_.LastSeal ? check_.LastSeal->Columns : HeaderIn(recording_).UnitChannels;
    check_.Rows = SampleCountOf(static_cast<std::int64_t>(recording_.size()), columns);
  }

  void CheckRows() {
    if (!first_wrong_) {
      return;
    }
    const std::int32_t covered = check_.CoveredRows;
    if (!is_missing_) {
      SayDamaged({covered, std::max(covered, first_wrong_->Rows - 1)}, reason::kRowNotAsSealed,
                 reason::kRowsNotAsSealed);
      return;
    }
    SayDamaged({std::min(check_.Rows, check_.LastSeal->Rows - 1), check_.LastSeal->Rows - 1},
               reason::kRowMissing, reason::kRowsMissing);
    if (covered < check_.Rows) {
      check_.Damaged->First = covered;
      Find(Verdict::kDamaged,
           Named({covered, check_.Rows - 1}, reason::kRowNotJudged, reason::kRowsNotJudged));
    }
  }

  void SayDamaged(const RowRange& rows, const BothLanguages& one, const BothLanguages& many) {
    check_.Damaged = rows;
    Find(Verdict::kDamaged, Named(rows, one, many));
  }

  void CheckEnd(const JournalReading& journal) {
    if (!check_.LastSeal) {
      Find(Verdict::kNotCovered, reason::kNoSeal.English);
    } else if (!first_wrong_ && check_.Rows > check_.CoveredRows) {
      Find(Verdict::kNotCovered, Named({check_.CoveredRows, check_.Rows - 1},
                                       reason::kRowBehindSeal, reason::kRowsBehindSeal));
    }
    CheckTornRow();
    if (journal.TornBytes) {
      Find(Verdict::kNotCovered, reason::kJournalTorn.English);
    } else if (check_.LastSeal && lines_behind_ > 0) {
      Find(Verdict::kNotCovered,
           Counted(lines_behind_, reason::kLineBehindSeal, reason::kLinesBehindSeal));
    }
  }

  void CheckTornRow() {
    const int columns = check_.LastSeal ? check_.LastSeal->Columns : 0;
    const auto whole = static_cast<std::size_t>(SampleByte(columns, check_.Rows, 1));
    if (columns > 0 && recording_.size() > whole) {
      Find(Verdict::kNotCovered, Counted(static_cast<std::int64_t>(recording_.size() - whole),
                                         reason::kTornByte, reason::kTornBytes));
    }
  }

  std::span<const std::byte> recording_;
  RecordingCheck& check_;
  Sha256 data_;
  std::size_t hashed_ = 0;            // sample bytes in data_
  std::vector<std::string> headers_;  // any of them is right
  std::int64_t lines_behind_ = 0;     // behind the last seal
  std::optional<JournalSeal> first_wrong_;
  bool is_missing_ = false;  // the file does not have the rows of first_wrong_
};

std::string_view FirstLine(std::string_view text) {
  return text.substr(0, text.find('\n'));
}

}  // namespace

std::string TextOf(const RowRange& rows) {
  return rows.First == rows.Last
             ? "row " + std::to_string(rows.First)
             : "rows " + std::to_string(rows.First) + " to " + std::to_string(rows.Last);
}

JsonValue::Members JournalSeal::Fields() const {
  return {{"rows", Rows},
          {"columns", Columns},
          {"data", Data},
          {"header", Header},
          {"journal", Journal}};
}

RecordingCheck CheckRecording(std::span<const std::byte> recording, const JournalReading& journal) {
  RecordingCheck check;
  check.Id = journal.Id();
  Checker checker(recording, check);
  for (const JournalEntry& entry : journal.Entries) {
    checker.Take(entry);
  }
  if (!journal.Problem.empty()) {
    checker.Find(Verdict::kDamaged, "the journal: " + journal.Problem);
  }
  checker.End(journal);
  return check;
}

RecordingCheck CheckRecording(std::span<const std::byte> recording,
                              const std::optional<std::string>& journal) {
  if (journal) {
    return CheckRecording(recording, ReadJournal(*journal));
  }
  RecordingCheck check;
  check.Verdict = Verdict::kNotCovered;
  check.Findings.emplace_back(reason::kNoJournal.English);
  check.Rows =
      SampleCountOf(static_cast<std::int64_t>(recording.size()), HeaderIn(recording).UnitChannels);
  return check;
}

Kinship KinshipOf(std::string_view left, std::string_view right) {
  if (left == right) {
    return Kinship::kSame;
  }
  if (left.starts_with(right) || right.starts_with(left)) {
    return Kinship::kEarlier;
  }
  return FirstLine(left) == FirstLine(right) ? Kinship::kForks : Kinship::kStrangers;
}

std::int64_t CommonLines(std::string_view left, std::string_view right) {
  const auto parts = std::mismatch(left.begin(), left.end(), right.begin(), right.end());
  return std::count(left.begin(), parts.first, '\n');
}

}  // namespace tavrel
