// What a run of the adjustment writes, and what becomes of writes that are not acknowledged.
#include <algorithm>
#include <utility>

#include "base/number.h"
#include "setup/adjustment_run.h"
#include "setup/setup_texts.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

// Two registers in turn without an acknowledge: the instrument is silent, the others are not tried.
constexpr Patience kPatienceOfWrites{3, 6};

// The register of `letter` among those of a row.
std::optional<std::int16_t>& WordOf(ChannelWords& words, const std::string& letter) {
  if (letter == reg::kDivisorWhole) {
    return words.J;
  }
  if (letter == reg::kDivisorFraction) {
    return words.K;
  }
  return letter == reg::kOffset ? words.O : words.L;
}

}  // namespace

void AdjustmentRun::BeginWrites(Items items) {
  not_acknowledged_.clear();
  writes_.Begin(std::move(items), kPatienceOfWrites);
  is_writing_ = true;
}

// True once all is written, or given up.
bool AdjustmentRun::StepWrites(const StepTime& time) {
  is_writing_ = !writes_.Step(
      parts_.link, inet_, time,
      [this](const RegisterOfRow& at, std::optional<std::int16_t> word) { TakeWritten(at, word); });
  return !is_writing_;
}

// Without its offset or divisor a row gets no sensor code.
void AdjustmentRun::TakeWritten(const RegisterOfRow& at, std::optional<std::int16_t> word) {
  tried_[at.row] = true;
  WordOf(after_[at.row], at.letter) = word;
  if (word) {
    return;
  }
  not_acknowledged_.push_back(at);
  writes_.DropRow(at.row);
}

void AdjustmentRun::WriteSensorNone(const char* instruction, AdjState next, const StepTime& time) {
  const AdjState from = parts_.adj_state;
  if (!is_writing_) {
    Say(instruction);
    collector_.Arm();
    Items items;
    for (const int row : rows_) {
      items.push_back({{reg::kSensorCode, row}, sensor::kNone});
    }
    BeginWrites(std::move(items));
  }
  const bool is_over = StepWrites(time);
  if (!not_acknowledged_.empty()) {
    EndWithLinearisedValues();
  } else if (is_over) {
    parts_.values.CmdOKShown = true;
    Change(from, next);
  }
}

void AdjustmentRun::EndWithLinearisedValues() {
  const Language language = UserLanguage(parts_.state);
  std::string text =
      setup_text::kStillLinear.Text(language, {RowName(not_acknowledged_.front().row)});
  std::string changed;
  for (const int row : rows_) {
    if (after_[row].L == sensor::kNone) {
      changed += " " + RowName(row);
    }
    journal_.AddAfter(row, after_[row]);
  }
  text += changed.empty() ? "" : setup_text::kWithoutSensor.Text(language, {changed});
  const AdjState from = parts_.adj_state;
  is_writing_ = false;
  writes_.Drop();
  journal_.End("not acknowledged");
  parts_.dialogs.Message({text, kTitle, BoxIcon::kWarning});
  if (parts_.adj_state == from) {
    End("");
  }
}

void AdjustmentRun::WriteOffsets(AdjState next, const StepTime& time) {
  const AdjState from = parts_.adj_state;
  if (!is_writing_) {
    JournalZero();
    Items items;
    for (const int row : rows_) {
      const float mean = MeanOf(adj_offset_[row]);
      items.push_back({{reg::kOffset, row}, ToWord(double{mean})});
    }
    BeginWrites(std::move(items));
  }
  if (!StepWrites(time)) {
    return;
  }
  if (!not_acknowledged_.empty()) {
    DropFailedRows();
  }
  Change(from, next);
}

// The run goes on with the other rows.
void AdjustmentRun::DropFailedRows() {
  const std::string text = FailedRowsText();
  for (const RegisterOfRow& at : not_acknowledged_) {
    journal_.AddAfter(at.row, after_[at.row]);
    parts_.sheet.Deselect(at.row);
    rows_.erase(std::remove(rows_.begin(), rows_.end(), at.row), rows_.end());
  }
  const AdjState from = parts_.adj_state;
  parts_.dialogs.Message({text, kTitle, BoxIcon::kWarning});
  if (rows_.empty() && parts_.adj_state == from) {
    End("not acknowledged");
  }
}

std::string AdjustmentRun::FailedRowsText() const {
  if (not_acknowledged_.empty()) {
    return "";
  }
  const Language language = UserLanguage(parts_.state);
  std::string rows;
  for (const RegisterOfRow& at : not_acknowledged_) {
    const std::string letter = at.letter;
    const BothLanguages& meaning =
        letter == reg::kSensorCode ? setup_text::kSensorUnknown : setup_text::kSensorMissing;
    rows += "\n    " + meaning.Text(language, {RowName(at.row), letter});
  }
  return setup_text::kNotAcknowledged.Text(language, {rows});
}

// The sensor code in any case, of the others what is not as it was.
std::string AdjustmentRun::ChangedRowText(int row) const {
  const Language language = UserLanguage(parts_.state);
  ChannelWords before = before_[row];
  ChannelWords after = after_[row];
  std::string text;
  for (const char* letter :
       {reg::kSensorCode, reg::kOffset, reg::kDivisorWhole, reg::kDivisorFraction}) {
    const auto& is = WordOf(after, letter);
    const auto& was = WordOf(before, letter);
    if (is != was || text.empty()) {
      text += (text.empty() ? "" : ",  ") +
              setup_text::kWord.Text(language, {letter, WordText(is), WordText(was)});
    }
  }
  return setup_text::kChangedRow.Text(language, {RowName(row), text});
}

std::string AdjustmentRun::ChangedText() const {
  std::string rows;
  for (const int row : rows_) {
    rows += tried_[row] ? "\n    " + ChangedRowText(row) : "";
  }
  if (rows.empty()) {
    return "";
  }
  const Language language = UserLanguage(parts_.state);
  const bool is_doubtful = rows.find('?') != std::string::npos;
  return setup_text::kDropped.Text(language, {rows}) +
         (is_doubtful ? setup_text::kUnknown.Text(language) : "") +
         setup_text::kAdjustAgain.Text(language) +
         (journal_.IsBegun() ? setup_text::kOldValues.Text(language, {journal_.Path()}) : "");
}

}  // namespace tavrel
