#ifndef TAVREL_SETUP_ADJUSTMENT_RUN_H_
#define TAVREL_SETUP_ADJUSTMENT_RUN_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "link/link.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "setup/adjustment_journal.h"
#include "setup/calibration.h"
#include "setup/channel_sheet.h"
#include "setup/channel_values.h"
#include "setup/exchange_pass.h"
#include "setup/reading_collector.h"
#include "setup/touched.h"
#include "state/run_state.h"
#include "state/unfinished_work.h"

namespace tavrel {

// A run of the adjustment, of inputs or of the reference sensor: collects raw readings at both ends
// of a span, computes offset and divisor and writes them. One step a call, none longer than half a
// second. A write that is not acknowledged is repeated up to twice, in the next steps. A row whose
// offset or divisor is not acknowledged stays without a sensor code; and where sensor code 0 itself
// is not, the run ends, for it would take linearised values for raw ones.
class AdjustmentRun {
 public:
  struct Parts {  // all outlive the run
    RunState& state;
    Link& link;
    Dialogs& dialogs;
    Events& events;
    const Clock& clock;
    ChannelSheet& sheet;
    ChannelValues& values;
    AdjState& adj_state;
  };
  AdjustmentRun(const Parts& parts, int inet);
  // A run that is open is dropped.
  ~AdjustmentRun();
  AdjustmentRun(const AdjustmentRun&) = delete;
  AdjustmentRun& operator=(const AdjustmentRun&) = delete;

  // Begins a run of inputs, which are still to be chosen.
  void BeginInputs(std::int16_t sensor_code);

  // The rows are chosen on the sheet. Nothing happens if the user wants to leave alone what the run
  // affects.
  void TakeSelection();

  // Begins a run of the reference sensor, likewise.
  void BeginReference();

  // A step of the states 30 to 45.
  void Step(const StepTime& time);

  // Nothing can be finished on the instrument now: the program may end.
  void PortIsAway() { unfinished_.reset(); }

  // Drops the run; `how` is what the journal says of its end. What is written stays: the rows keep
  // sensor code 0. Returns what the user is to be told of that; empty if nothing was written.
  [[nodiscard]] std::string Drop(const char* how);

  // The sensor code of the run, 0 when none runs.
  [[nodiscard]] std::int16_t AdjSensor() const { return adj_sensor_; }

 private:
  void Say(const std::string& instruction);
  void ShowInstruction();
  void Change(AdjState from, AdjState to);
  [[nodiscard]] bool MayBegin();
  [[nodiscard]] Rows TouchedRows() const;
  void Reset();
  void End(const std::string& how);

  // Writes (adjustment_writes.cpp).
  using Items = std::vector<ExchangePass::Item>;
  void BeginWrites(Items items);
  [[nodiscard]] bool StepWrites(const StepTime& time);
  void TakeWritten(const RegisterOfRow& at, std::optional<std::int16_t> word);
  void WriteSensorNone(const char* instruction, AdjState next, const StepTime& time);
  void EndWithLinearisedValues();
  void WriteOffsets(AdjState next, const StepTime& time);
  void DropFailedRows();
  [[nodiscard]] std::string FailedRowsText() const;
  [[nodiscard]] std::string ChangedRowText(int row) const;
  [[nodiscard]] std::string ChangedText() const;

  void AskFor(const char* instruction, AdjState next);
  void EnterCollecting(const char* text, std::optional<std::chrono::seconds> lead);
  [[nodiscard]] bool Collect(const std::vector<int>& rows, bool at_end_of_span,
                             const StepTime& time);
  void TakeReading(int row, const AdjustmentReading& reading, bool at_end_of_span);
  void StepCollectOffset(const StepTime& time);
  void StepCollectGain(const StepTime& time);
  void AskFinalValue();
  void StepCompute(const StepTime& time);
  [[nodiscard]] std::optional<float> TakeFinalValue();
  [[nodiscard]] Items CoefficientsOfInputs(float final_value);
  void StepCollectZero(const StepTime& time);
  void StepCollectSpan(const StepTime& time);
  [[nodiscard]] Items CoefficientsOfReference();
  void AddCoefficients(Items& items, int row, const Divisor& divisor) const;
  void Finish(AdjState from);
  void JournalZero();
  void JournalSpan();

  [[nodiscard]] bool IsLinear() const { return adj_sensor_ == sensor::kLinear; }

  static constexpr const char* kTitle = "adjustment";  // of its boxes

  Parts parts_;
  int inet_;
  AdjustmentJournal journal_;
  std::int16_t adj_sensor_ = 0;
  std::vector<int> rows_;  // of the run, ascending
  std::string instruction_;
  ReadingCollector collector_;
  ByRow<float> adj_offset_{};  // sums of readings
  ByRow<float> adj_gain_{};
  float adj_ref_sum_ = 0;
  ByRow<std::vector<AdjustmentReading>> zero_readings_;
  ByRow<std::vector<AdjustmentReading>> span_readings_;

  ExchangePass writes_;
  bool is_writing_ = false;
  std::vector<RegisterOfRow> not_acknowledged_;
  ByRow<ChannelWords> before_{};              // what the rows had, as far as it was known
  ByRow<ChannelWords> after_{};               // what they have
  Rows tried_{};                              // of which a register was written, or may have been
  bool divisor_failed_ = false;               // of one row: those behind it are not computed
  std::optional<UnfinishedWork> unfinished_;  // coefficients without their sensor code
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_ADJUSTMENT_RUN_H_
