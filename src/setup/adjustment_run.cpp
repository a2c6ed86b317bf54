#include "setup/adjustment_run.h"

#include <algorithm>
#include <utility>

#include "base/number.h"
#include "platform/file_system.h"
#include "setup/setup_texts.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

constexpr std::chrono::seconds kNoLead{0};
constexpr std::chrono::seconds kReferenceLead{11};  // a simulator takes its time to settle
constexpr const char* kCollectReference = "... collecting data ...  (2min)";

}  // namespace

AdjustmentRun::AdjustmentRun(const Parts& parts, int inet)
    : parts_(parts),
      inet_(inet),
      journal_(JoinPath(parts.state.DataHome, kJournalFile), parts.clock),
      collector_(parts.link, inet, parts.events, parts.clock) {}

AdjustmentRun::~AdjustmentRun() {
  journal_.End(kEndedWithProgram);
}

void AdjustmentRun::Reset() {
  adj_sensor_ = sensor::kNone;
  rows_.clear();
  collector_.Reset();
  writes_.Drop();
  is_writing_ = false;
  not_acknowledged_.clear();
  divisor_failed_ = false;
  tried_.Fill(false);
  unfinished_.reset();
  for (auto* readings : {&zero_readings_, &span_readings_}) {
    std::for_each(readings->begin(), readings->end(), [](auto& row) { row.clear(); });
  }
}

void AdjustmentRun::BeginInputs(std::int16_t sensor_code) {
  Reset();
  adj_sensor_ = sensor_code;
  parts_.values.txt_Final.clear();
  parts_.values.MenusEnabled = false;
  parts_.adj_state = AdjState::kBeginInputs;
}

void AdjustmentRun::TakeSelection() {
  rows_ = parts_.sheet.SelectedRows();
  if (!rows_.empty() && MayBegin()) {
    Change(AdjState::kSelect, AdjState::kShort);
  }
}

void AdjustmentRun::BeginReference() {
  Reset();
  rows_ = {kReferenceRow};
  if (MayBegin()) {
    adj_sensor_ = sensor::kRtd;
    parts_.values.MenusEnabled = false;
    parts_.adj_state = AdjState::kBeginReference;
  }
}

// The reference sensor serves all thermocouples. A row whose sensor is not known may have one.
Rows AdjustmentRun::TouchedRows() const {
  Rows touched{};
  for (const int row : rows_) {
    touched[row] = true;
  }
  if (!touched[kReferenceRow]) {
    return touched;
  }
  for (int row = 1; row < kChannelRows; ++row) {
    const int code = parts_.sheet.SensorCode(row).value_or(sensor::kFeCuNi);
    touched[row] = code >= sensor::kFeCuNi;
  }
  return touched;
}

// The record is on the disk before the first register is written.
bool AdjustmentRun::MayBegin() {
  const Rows touched = TouchedRows();
  const Language language = UserLanguage(parts_.state);
  std::vector<std::string> lines = ControllersAtWork(parts_.link, inet_, touched, language);
  const auto recordings = RecordingsAtWork(parts_.state, inet_, touched);
  lines.insert(lines.end(), recordings.begin(), recordings.end());
  if (!MayTouch(parts_.dialogs, lines, kTitle, language)) {
    return false;
  }
  before_ = parts_.sheet.Words();
  after_ = before_;
  const std::int16_t code = rows_.front() == kReferenceRow ? sensor::kRtd : adj_sensor_;
  const std::string problem = journal_.Begin(inet_, SensorName(code), rows_, before_);
  return problem.empty() ||
         parts_.dialogs.AskYes({setup_text::kNoRecord.Text(language, {kJournalFile, problem}),
                                kTitle, BoxIcon::kWarning, true});
}

void AdjustmentRun::Say(const std::string& instruction) {
  instruction_ = instruction;
  parts_.values.Lbl_InstrShown = true;
  ShowInstruction();
}

// The user must see, up to the end of the run, that the calibration failed.
void AdjustmentRun::ShowInstruction() {
  const int failed = collector_.FailedReadings();
  const BothLanguages& text =
      failed == 1 ? setup_text::kReadingFailed : setup_text::kReadingsFailed;
  const std::string told = text.Text(UserLanguage(parts_.state), {std::to_string(failed)});
  parts_.values.Lbl_Instr = instruction_ + (failed > 0 ? told : "");
}

void AdjustmentRun::Change(AdjState from, AdjState to) {
  if (parts_.adj_state == from) {
    parts_.adj_state = to;
  }
}

void AdjustmentRun::End(const std::string& how) {
  journal_.End(how);
  Reset();
  parts_.adj_state = AdjState::kEmptySheet;
}

std::string AdjustmentRun::Drop(const char* how) {
  const auto in_doubt = is_writing_ ? writes_.InDoubt() : std::nullopt;
  if (in_doubt) {
    TakeWritten(*in_doubt, std::nullopt);
  }
  for (const int row : rows_) {
    journal_.AddAfter(row, after_[row]);
  }
  std::string changed = ChangedText();
  End(how);
  return changed;
}

void AdjustmentRun::Step(const StepTime& time) {
  switch (parts_.adj_state) {
    case AdjState::kBeginInputs:
      AskFor("Select channel(s):   click on row", AdjState::kSelect);
      return;
    case AdjState::kShort:
      WriteSensorNone(IsLinear() ? "set input voltage equivalent to zero-position"
                                 : "short the input(s) using shorting jumpers",
                      AdjState::kAwaitShorted, time);
      return;
    case AdjState::kCollectOffset:
      StepCollectOffset(time);
      return;
    case AdjState::kRaise:
      parts_.values.CmdOKShown = true;
      AskFor(IsLinear() ? "set input voltage equivalent to final-position"
                        : "raise thermocouples to a known temperature",
             AdjState::kAwaitRaised);
      return;
    case AdjState::kCollectGain:
      StepCollectGain(time);
      return;
    case AdjState::kCompute:
      StepCompute(time);
      return;
    case AdjState::kBeginReference:
      WriteSensorNone("set rtd-simulator to 0°C", AdjState::kAwaitZero, time);
      return;
    case AdjState::kCollectZero:
      StepCollectZero(time);
      return;
    case AdjState::kSetSpan:
      parts_.values.CmdOKShown = true;
      AskFor("set rtd-simulator to 100°C", AdjState::kAwaitSpan);
      return;
    case AdjState::kCollectSpan:
      StepCollectSpan(time);
      return;
    default:
      return;  // the user's turn, or none of a run
  }
}

void AdjustmentRun::AskFor(const char* instruction, AdjState next) {
  parts_.values.pBarShown = false;
  Say(instruction);
  collector_.Arm();
  parts_.adj_state = next;
}

void AdjustmentRun::EnterCollecting(const char* text, std::optional<std::chrono::seconds> lead) {
  Say(text);
  parts_.values.pBar = 0;
  parts_.values.pBarShown = true;
  parts_.values.CmdOKShown = false;
  collector_.Begin(lead);
}

// True if this step ends the hundred counts of a collecting, or comes behind them.
bool AdjustmentRun::Collect(const std::vector<int>& rows, bool at_end_of_span,
                            const StepTime& time) {
  const bool is_counted = collector_.Step(
      rows, time, [this, at_end_of_span](int row, const AdjustmentReading& reading) {
        TakeReading(row, reading, at_end_of_span);
      });
  if (collector_.AdjCount() <= ReadingCollector::kCounts) {
    parts_.values.pBar = collector_.AdjCount();
  }
  ShowInstruction();
  return is_counted && collector_.AdjCount() >= ReadingCollector::kCounts;
}

void AdjustmentRun::TakeReading(int row, const AdjustmentReading& reading, bool at_end_of_span) {
  const bool is_reference = row == kReferenceRow && adj_sensor_ != sensor::kRtd;
  float& sum = at_end_of_span ? adj_gain_[row] : adj_offset_[row];
  (is_reference ? adj_ref_sum_ : sum) += static_cast<float>(reading.word);
  (at_end_of_span ? span_readings_ : zero_readings_)[row].push_back(reading);
}

void AdjustmentRun::StepCollectOffset(const StepTime& time) {
  if (!collector_.HasBegun()) {
    adj_ref_sum_ = 0;
    adj_offset_.Fill(0);
    adj_gain_.Fill(0);
    EnterCollecting("... collecting data for offset adjustments ...", kNoLead);
  }
  if (is_writing_ || Collect(rows_, false, time)) {
    WriteOffsets(AdjState::kRaise, time);
  }
}

void AdjustmentRun::StepCollectGain(const StepTime& time) {
  if (!collector_.HasBegun()) {
    EnterCollecting("... collecting data for gain adjustments ...", std::nullopt);
  }
  std::vector<int> rows = rows_;
  rows.push_back(kReferenceRow);
  if (Collect(rows, true, time)) {
    AskFinalValue();
  }
}

void AdjustmentRun::AskFinalValue() {
  if (parts_.adj_state != AdjState::kCollectGain) {
    return;
  }
  parts_.adj_state = AdjState::kAwaitFinal;
  parts_.values.CmdOKShown = true;
  parts_.values.pBarShown = false;
  Say(IsLinear() ? "enter the final value" : "enter the final value:  the known temperature");
  parts_.values.txt_FinalShown = true;
  ++parts_.values.FinalAsked;
}

void AdjustmentRun::StepCompute(const StepTime& time) {
  if (!is_writing_) {
    const auto final_value = TakeFinalValue();
    if (!final_value) {
      return;
    }
    JournalSpan();
    journal_.AddFinalValue(double{*final_value});
    parts_.values.CmdOKShown = false;
    unfinished_.emplace(parts_.state);
    BeginWrites(CoefficientsOfInputs(*final_value));
  }
  if (StepWrites(time)) {
    Finish(AdjState::kCompute);
  }
}

// Empty if the number was refused: one more count follows, and the user is asked again. What was
// typed becomes single precision first, as the bounds are.
std::optional<float> AdjustmentRun::TakeFinalValue() {
  const auto value = static_cast<float>(ReadNumber(parts_.values.txt_Final));
  const FinalRange range = FinalRangeOf(adj_sensor_, adj_ref_sum_);
  if (range.Holds(value)) {
    return value;
  }
  parts_.dialogs.Message(
      {"range: " + ShortestNumber(double{range.low}) + " ... " + ShortestNumber(double{range.high}),
       "final value", BoxIcon::kWarning});
  Change(AdjState::kCompute, AdjState::kAwaitRaised);
  return std::nullopt;
}

AdjustmentRun::Items AdjustmentRun::CoefficientsOfInputs(float final_value) {
  const LinearisedSpan span = LookUpSpan(adj_sensor_, MeanOf(adj_ref_sum_), final_value);
  Items items;
  for (const int row : rows_) {
    const auto divisor = DivisorOf(
        InputDivisor(adj_sensor_, MeanOf(adj_offset_[row]), MeanOf(adj_gain_[row]), span));
    if (!divisor) {
      divisor_failed_ = true;
      return items;
    }
    AddCoefficients(items, row, *divisor);
  }
  return items;
}

void AdjustmentRun::AddCoefficients(Items& items, int row, const Divisor& divisor) const {
  items.push_back({{reg::kDivisorWhole, row}, divisor.whole});
  items.push_back({{reg::kDivisorFraction, row}, divisor.fraction});
  items.push_back({{reg::kSensorCode, row}, adj_sensor_});
}

void AdjustmentRun::StepCollectZero(const StepTime& time) {
  if (!collector_.HasBegun()) {
    adj_offset_[kReferenceRow] = 0;
    adj_gain_[kReferenceRow] = 0;
    EnterCollecting(kCollectReference, kReferenceLead);
  }
  if (is_writing_ || Collect(rows_, false, time)) {
    WriteOffsets(AdjState::kSetSpan, time);
  }
}

void AdjustmentRun::StepCollectSpan(const StepTime& time) {
  if (!collector_.HasBegun()) {
    EnterCollecting(kCollectReference, kReferenceLead);
  }
  if (!is_writing_) {
    if (!Collect(rows_, true, time)) {
      return;
    }
    parts_.values.CmdOKShown = false;
    parts_.values.Lbl_InstrShown = false;
    JournalSpan();
    unfinished_.emplace(parts_.state);
    BeginWrites(CoefficientsOfReference());
  }
  if (StepWrites(time)) {
    Finish(AdjState::kCollectSpan);
  }
}

AdjustmentRun::Items AdjustmentRun::CoefficientsOfReference() {
  const auto divisor = DivisorOf(
      ReferenceDivisor(MeanOf(adj_offset_[kReferenceRow]), MeanOf(adj_gain_[kReferenceRow])));
  Items items;
  divisor_failed_ = !divisor;
  if (divisor) {
    AddCoefficients(items, kReferenceRow, *divisor);
  }
  return items;
}

void AdjustmentRun::Finish(AdjState from) {
  unfinished_.reset();
  for (const int row : rows_) {
    journal_.AddAfter(row, after_[row]);
  }
  const std::string failed = FailedRowsText();
  const char* const how =
      divisor_failed_ ? "divisor out of range" : (failed.empty() ? "complete" : "not acknowledged");
  journal_.End(how);
  if (divisor_failed_) {
    parts_.dialogs.Message({"error, check settings", kTitle, BoxIcon::kWarning});
  }
  if (!failed.empty()) {
    parts_.dialogs.Message({failed, kTitle, BoxIcon::kWarning});
  }
  if (!journal_.Problem().empty()) {
    parts_.dialogs.Message({setup_text::kNotRecorded.Text(UserLanguage(parts_.state),
                                                          {kJournalFile, journal_.Problem()}),
                            kTitle, BoxIcon::kWarning});
  }
  if (parts_.adj_state == from) {
    End("");
  }
}

void AdjustmentRun::JournalZero() {
  for (const int row : rows_) {
    journal_.AddReadings("zero", row, zero_readings_[row]);
  }
}

void AdjustmentRun::JournalSpan() {
  for (const int row : rows_) {
    journal_.AddReadings("span", row, span_readings_[row]);
  }
  if (adj_sensor_ != sensor::kRtd) {
    journal_.AddReadings("reference", kReferenceRow, span_readings_[kReferenceRow]);
  }
}

}  // namespace tavrel
