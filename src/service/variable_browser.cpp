#include "service/variable_browser.h"

namespace tavrel {
namespace {

constexpr int kHexColumn = 1;
constexpr int kDecColumn = 2;
constexpr RegisterSheet::Heads kHeads = {"addr", "hex", "dec", "designation"};

}  // namespace

void VariableBrowser::Open() {
  type_sel_ = Parts().link.Mode().TypeSel;
  layout_ = LayoutOfType(type_sel_);
  RegisterSheet::Open();
}

std::string VariableBrowser::Caption() const {
  const std::string name =
      layout_.Name.empty() ? InstrumentName() : " " + std::string(layout_.Name);
  return name + "   (" + std::to_string(Rows()) + ")";
}

const RegisterSheet::Heads& VariableBrowser::ColumnHeads() const {
  return kHeads;
}

bool VariableBrowser::IsEditable(int column) const {
  return column == kHexColumn || column == kDecColumn;
}

std::string VariableBrowser::TextOf(int row, int column) const {
  const SheetValue& value = ValueOf(row);
  switch (column) {
    case 0:
      return layout_.Key(row);
    case kHexColumn:
      return value.Digits;
    case kDecColumn:
      return value.Digits.empty() ? "" : std::to_string(value.Word);
    default:
      return std::string(DesignationOf(type_sel_, layout_.At(Inet(), row))) + value.Remark;
  }
}

LinkResult VariableBrowser::BeginReading() {
  Parts().link.LinkAbort();
  return LinkResult::kGood;
}

RowReading VariableBrowser::ReadRow(int row) {
  Link& link = Parts().link;
  const Reading reading = ReadAlone(link, layout_.At(Inet(), row));
  return {reading.status, reading.IsGood()
                              ? std::optional(SheetValue{link.ReplyText, reading.word, ""})
                              : std::nullopt};
}

LinkResult VariableBrowser::WriteRow(int row, std::int16_t word) {
  return tavrel::Write(Parts().link, layout_.At(Inet(), row), word);
}

std::optional<std::int16_t> VariableBrowser::WordOf(const std::string& text, int column) const {
  return column == kHexColumn ? WordOfHex(text) : WordOfDecimal(text);
}

}  // namespace tavrel
