#ifndef TAVREL_SETUP_CHANNEL_SHEET_H_
#define TAVREL_SETUP_CHANNEL_SHEET_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "link/link.h"
#include "setup/adjustment_journal.h"
#include "setup/channel_values.h"
#include "setup/exchange_pass.h"

namespace tavrel {

// What a sensor code is called on the sheet: "------" for 0, "?" for a code that this program does
// not adjust.
[[nodiscard]] std::string SensorName(int code);

// The sheet of TavChann: sixteen rows read from an instrument, one column in a step where the line
// is quick enough. A cell whose register was not answered is empty; a register that does not change
// by itself and was not answered is read again once the instrument answers.
class ChannelSheet {
 public:
  // All outlive this.
  ChannelSheet(Link& link, int inet, ChannelValues& values)
      : link_(link), inet_(inet), values_(values) {}

  // Empties the cells and takes the selections back.
  void Clear();

  // Each reads its registers, in one step or in several; true once they are read.
  bool ReadSensors(const StepTime& time);
  bool ReadSampling(const StepTime& time);
  bool ReadOffsets(const StepTime& time);
  bool ReadDivisors(const StepTime& time);
  bool ReadActual(const StepTime& time);
  bool ReadBuffers(const StepTime& time);

  // Between two refreshes: reads again what was not answered, one register at a time.
  void ReadMissing(const StepTime& time);

  // Ends a reading that is under way: another part of the dialog needs the line.
  void Drop() { pass_.Drop(), is_reading_ = false; }

  void Select(int row, int sensor_code);
  // Takes the selection of the row back.
  void Deselect(int row);
  [[nodiscard]] std::vector<int> SelectedRows() const;

  // The calibration registers as they were read last.
  [[nodiscard]] ByRow<ChannelWords> Words() const;
  [[nodiscard]] std::optional<std::int16_t> SensorCode(int row) const;

 private:
  // The words of one letter by row; empty where the instrument did not answer.
  using Column = ByRow<std::optional<std::int16_t>>;

  bool ReadColumns(const std::vector<RegisterOfRow>& registers, const StepTime& time);
  void BeginSensors();
  [[nodiscard]] Column* ColumnOf(const std::string& letter);
  void Take(const RegisterOfRow& at, std::optional<std::int16_t> word);
  void ShowRow(int row);
  void TakeActual(int row, std::int16_t word);
  void TakeBuffered(int row, std::int16_t word);
  [[nodiscard]] ChannelRow& Row(int row) { return values_.Sheet[row]; }
  [[nodiscard]] std::vector<RegisterOfRow> Missing();

  Link& link_;
  int inet_;
  ChannelValues& values_;
  ExchangePass pass_;
  bool is_reading_ = false;
  Column sensors_;
  Column sampling_;
  Column offsets_;
  Column wholes_;
  Column parts_;
  std::optional<std::int16_t> adj_min_sampling_;  // register T of row 0: 1 for a fast instrument
  ByRow<std::int16_t> adj_shown_y_{};
  ByRow<std::int16_t> adj_shown_r_{};
  std::vector<RegisterOfRow> missing_;  // that are still to be asked in this round
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_CHANNEL_SHEET_H_
