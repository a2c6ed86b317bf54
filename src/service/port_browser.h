#ifndef TAVREL_SERVICE_PORT_BROWSER_H_
#define TAVREL_SERVICE_PORT_BROWSER_H_

#include <optional>
#include <string>

#include "service/processor_registers.h"
#include "service/register_sheet.h"

namespace tavrel {

// ALL_REGS: the input/output registers of the instrument's processor, as a number and bit by bit.
class PortBrowser : public RegisterSheet {
 public:
  explicit PortBrowser(const ServiceParts& parts) : RegisterSheet(parts, View::kAllRegs) {}

  [[nodiscard]] std::string Caption() const override;
  [[nodiscard]] const Heads& ColumnHeads() const override;
  [[nodiscard]] bool IsEditable(int column) const override;
  [[nodiscard]] int Rows() const override { return kProcessorRegisters; }
  [[nodiscard]] std::string TextOf(int row, int column) const override;
  [[nodiscard]] int RoomForRemarks() const override { return 4; }  // bits are longer than the head

 protected:
  [[nodiscard]] LinkResult BeginReading() override;
  [[nodiscard]] RowReading ReadRow(int row) override;
  [[nodiscard]] RowReading ReadBack(int row) override;
  [[nodiscard]] LinkResult WriteRow(int row, std::int16_t word) override;
  [[nodiscard]] std::optional<std::int16_t> WordOf(const std::string& text,
                                                   int column) const override;
  [[nodiscard]] bool FailureEndsEdit() const override { return false; }
  [[nodiscard]] bool HeadRefusesClick() const override { return true; }
  [[nodiscard]] std::string StandingNote() const override;

 private:
  [[nodiscard]] RowReading ReadAt(const std::string& address);
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_PORT_BROWSER_H_
