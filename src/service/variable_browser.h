#ifndef TAVREL_SERVICE_VARIABLE_BROWSER_H_
#define TAVREL_SERVICE_VARIABLE_BROWSER_H_

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "service/register_layout.h"
#include "service/register_sheet.h"

namespace tavrel {

// ALL_RAM: every register of the instrument with its address, its value in hexadecimal and in
// decimal and what it means.
//
// X hands each value over only once. That of an input that a test records goes to its recording: it
// is read as the pump reads it, and while the pump has one in hand and waits for the other inputs
// of the set, the browser waits too, for some seconds, and shows then what the pump has.
class VariableBrowser : public RegisterSheet {
 public:
  explicit VariableBrowser(const ServiceParts& parts) : RegisterSheet(parts, View::kAllRam) {}

  void Open() override;
  [[nodiscard]] std::string Caption() const override;
  [[nodiscard]] const Heads& ColumnHeads() const override;
  [[nodiscard]] bool IsEditable(int column) const override;
  [[nodiscard]] int Rows() const override { return layout_.Rows(); }
  [[nodiscard]] std::string TextOf(int row, int column) const override;
  [[nodiscard]] int RoomForRemarks() const override { return 20; }

 protected:
  [[nodiscard]] LinkResult BeginReading() override;
  [[nodiscard]] RowReading ReadRow(int row) override;
  [[nodiscard]] LinkResult WriteRow(int row, std::int16_t word) override;
  [[nodiscard]] bool MayWrite(int row) override;
  [[nodiscard]] std::optional<std::int16_t> WordOf(const std::string& text,
                                                   int column) const override;
  [[nodiscard]] bool FailureEndsEdit() const override { return true; }
  [[nodiscard]] bool HeadRefusesClick() const override { return false; }

 private:
  [[nodiscard]] std::vector<int> SlotsOf(const Register& which) const;
  [[nodiscard]] RowReading RowOf(const Reading& reading) const;
  [[nodiscard]] RowReading ReadSample(const Register& which, const std::vector<int>& takers);
  [[nodiscard]] bool MayWaitLonger();
  [[nodiscard]] SheetValue ValueInHand(const std::vector<int>& takers, int input) const;
  [[nodiscard]] LinkResult WriteSeries(const Register& to, std::int16_t word,
                                       const std::vector<int>& takers);

  std::chrono::nanoseconds waited_{};  // for the pump, in this pass
  std::optional<std::chrono::nanoseconds> waits_since_;
  RegisterLayout layout_ = LayoutOfType(4);
  int type_sel_ = 4;
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_VARIABLE_BROWSER_H_
