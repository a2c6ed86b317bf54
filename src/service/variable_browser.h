#ifndef TAVREL_SERVICE_VARIABLE_BROWSER_H_
#define TAVREL_SERVICE_VARIABLE_BROWSER_H_

#include <optional>
#include <string>

#include "service/register_layout.h"
#include "service/register_sheet.h"

namespace tavrel {

// ALL_RAM: every register of the instrument with its address, its value in hexadecimal and in
// decimal and what it means.
class VariableBrowser : public RegisterSheet {
 public:
  explicit VariableBrowser(const ServiceParts& parts) : RegisterSheet(parts, View::kAllRam) {}

  void Open() override;
  [[nodiscard]] std::string Caption() const override;
  [[nodiscard]] const Heads& ColumnHeads() const override;
  [[nodiscard]] bool IsEditable(int column) const override;
  [[nodiscard]] int Rows() const override { return layout_.Rows(); }
  [[nodiscard]] std::string TextOf(int row, int column) const override;

 protected:
  [[nodiscard]] LinkResult BeginReading() override;
  [[nodiscard]] RowReading ReadRow(int row) override;
  [[nodiscard]] LinkResult WriteRow(int row, std::int16_t word) override;
  [[nodiscard]] std::optional<std::int16_t> WordOf(const std::string& text,
                                                   int column) const override;
  [[nodiscard]] bool FailureEndsEdit() const override { return true; }
  [[nodiscard]] bool HeadRefusesClick() const override { return false; }

 private:
  RegisterLayout layout_ = LayoutOfType(4);
  int type_sel_ = 4;
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_VARIABLE_BROWSER_H_
