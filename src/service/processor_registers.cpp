#include "service/processor_registers.h"

#include <array>

#include "base/element.h"

namespace tavrel {
namespace {

constexpr int kBits = 8;
constexpr int kMiddle = 4;

// By address; a row for each sixteen.
constexpr std::array<std::string_view, kProcessorRegisters> kSymbols = {
    // clang-format off
    "CNTLA0", "CNTLA1", "CNTLB0", "CNTLB1", "STAT0", "STAT1", "TDR0", "TDR1",
    "TSR0", "TSR1", "CNTR", "TRDR", "TMDR0L", "TMDR0H", "RLDR0L", "RLDR0H",

    "TCR", "", "", "", "TMDR1L", "TMDR1H", "RLDR1L", "RLDR1H",
    "FRC", "", "", "", "", "", "", "",

    "SAR0L", "SAR0H", "SAR0B", "DAR0L", "DAR0H", "DAR0B", "BCR0L", "BCR0H",
    "MAR1L", "MAR1H", "MAR1B", "IAR1L", "IAR1H", "", "BCR1L", "BCR1H",

    "DSTAT", "DMODE", "DCNTL", "IL", "ITC", "", "RCR", "",
    "CBR", "BBR", "CBAR", "", "", "", "OMCR", "ICR",

    "T2FRCL", "T2FRCH", "T2OCR1L", "T2OCR1H", "T2OCR2L", "T2OCR2H", "T2ICRL", "T2ICRH",
    "T2CSR1", "T2CSR2", "", "", "", "", "", "",

    "CCSR", "RMCR", "", "DERA", "", "", "", "",
    "", "", "", "", "", "", "", "",

    "I/ODRA", "I/ODRB", "I/ODRC", "I/ODRD", "I/ODRE", "I/ODRF", "IDRG", "",
    "", "", "", "", "", "", "", "",

    "DDRA", "DDRB", "DDRC", "DDRD", "DDRE", "DDRF", "", "",
    "", "", "", "", "", "", "", "",
    // clang-format on
};

}  // namespace

std::string_view SymbolOf(int address) {
  const std::string_view* symbol = ElementAt(kSymbols, address);
  return symbol != nullptr ? *symbol : "";
}

std::string BitsOf(std::int16_t word) {
  const auto value = static_cast<std::uint16_t>(word);
  std::string bits;
  for (int bit = kBits - 1; bit >= 0; --bit) {
    const bool is_set = ((value >> bit) & 1U) != 0;
    bits += is_set ? " 1 " : " 0 ";
    bits += bit == kMiddle ? "   " : "";
  }
  return bits;
}

}  // namespace tavrel
