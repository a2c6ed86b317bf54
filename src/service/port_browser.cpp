#include "service/port_browser.h"

#include "base/number.h"
#include "link/register_access.h"
#include "service/register_layout.h"

namespace tavrel {
namespace {

constexpr int kSymbolColumn = 1;
constexpr int kHexColumn = 2;
constexpr const char* kNoSymbol = " -      ";
constexpr RegisterSheet::Heads kPortHeads = {{"addr", "sym", "hex", "7  6  5  4     3  2  1  0"}};

// A register without a use. In instruments of other kinds it takes commands, and 0 ends one.
constexpr const char* kUnusedLetter = "V";

constexpr BothLanguages kDirectNote{
    "direct line:  the port access has no address, whatever instrument answers is read and written",
    "direkte Leitung:  der Portzugriff hat keine Adresse, es antwortet irgendein Gerät"};

}  // namespace

std::string PortBrowser::Caption() const {
  return InstrumentName() + "  /  Registers of HD647180";
}

const RegisterSheet::Heads& PortBrowser::ColumnHeads() const {
  return kPortHeads;
}

bool PortBrowser::IsEditable(int column) const {
  return column == kHexColumn;
}

std::string PortBrowser::TextOf(int row, int column) const {
  const SheetValue& value = ValueOf(row);
  switch (column) {
    case 0:
      return TwoHexDigits(row);
    case kSymbolColumn:
      return SymbolOf(row).empty() ? kNoSymbol : std::string(SymbolOf(row));
    case kHexColumn:
      return value.Digits;
    default:
      return value.Digits.empty() ? "" : BitsOf(value.Word);
  }
}

LinkResult PortBrowser::BeginReading() {
  Parts().link.LinkAbort();
  return tavrel::Write(Parts().link, Register{Inet(), kUnusedLetter, 0}, 0);
}

RowReading PortBrowser::ReadAt(const std::string& address) {
  Link& link = Parts().link;
  const Reading reading = ReadAlone(link, PortPlace{Inet(), address});
  return {reading.status, reading.IsGood()
                              ? std::optional(SheetValue{link.ReplyText, reading.word, ""})
                              : std::nullopt};
}

RowReading PortBrowser::ReadRow(int row) {
  return ReadAt(Hex(static_cast<std::int16_t>(row)));
}

RowReading PortBrowser::ReadBack(int row) {
  return ReadAt(TextOf(row, 0));
}

LinkResult PortBrowser::WriteRow(int row, std::int16_t word) {
  return tavrel::Write(Parts().link, PortPlace{Inet(), TextOf(row, 0)}, word);
}

std::optional<std::int16_t> PortBrowser::WordOf(const std::string& text, int /*column*/) const {
  return WordOfHex(text);
}

std::string PortBrowser::StandingNote() const {
  const Link& link = Parts().link;
  const bool is_direct = link.Mode().LinkDirect && !link.Simulated;
  return is_direct ? std::string(kDirectNote.In(TipLanguage())) : "";
}

}  // namespace tavrel
