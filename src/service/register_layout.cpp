#include "service/register_layout.h"

#include <array>

#include "base/number.h"
#include "link/registers.h"

namespace tavrel {
namespace {

constexpr int kTypeWithLegend = 4;

constexpr std::string_view kBanks = "VP";
constexpr RegisterLayout kLayout4{kRegisterLetters, 16, ""};
constexpr RegisterLayout kLayout3{kRegisterLetters, 8, "DREM 114"};
constexpr RegisterLayout kLayout2{kBanks, 64, "VELO 5"};
constexpr RegisterLayout kLayout1{kBanks, 64, ""};

// The registers `First` to `Last` of a letter.
struct Legend {
  char Letter;
  int First;
  int Last;
  std::string_view Text;
};

// " *" repeats the line above, for another controller or another input.
constexpr std::array kLegends = {
    Legend{'G', 0, 0, " command"},
    Legend{'G', 1, 1, " (1) lower limit"},
    Legend{'G', 2, 2, " (2) *"},
    Legend{'G', 3, 3, " (3) *"},
    Legend{'G', 4, 4, " (4) *"},
    Legend{'G', 8, 8, " command return"},
    Legend{'G', 9, 15, " *"},
    Legend{'H', 0, 0, " A/D zero conversion"},
    Legend{'H', 1, 1, " (1) upper limit"},
    Legend{'H', 2, 2, " (2) *"},
    Legend{'H', 3, 3, " (3) *"},
    Legend{'H', 4, 4, " (4) *"},
    Legend{'I', 0, 0, " date of firmware"},
    Legend{'I', 1, 1, " (1) increment"},
    Legend{'I', 2, 2, " (2) *"},
    Legend{'I', 3, 3, " (3) *"},
    Legend{'I', 4, 4, " (4) *"},
    Legend{'J', 0, 0, " Integer of divisor"},
    Legend{'J', 1, 1, " *      J = Int(JK)"},
    Legend{'J', 2, 15, " *"},
    Legend{'K', 0, 0, " Fraction of divisor"},
    Legend{'K', 1, 1, " * K = JK-Int(JK))*65536"},
    Legend{'K', 2, 15, " *"},
    Legend{'L', 0, 0, " linearization"},
    Legend{'L', 1, 1, " *  (0=none)"},
    Legend{'L', 2, 2, " *  (1=linear)"},
    Legend{'L', 3, 3, " *  (2=RTD)"},
    Legend{'L', 4, 4, " *  (3=FeCuNi)"},
    Legend{'L', 5, 5, " *  (4=NiCrNi)"},
    Legend{'L', 6, 6, " *  (5=NiSil)"},
    Legend{'L', 7, 15, " *"},
    Legend{'M', 1, 1, " (1) final value"},
    Legend{'M', 2, 2, " (2) *"},
    Legend{'M', 3, 3, " (3) *"},
    Legend{'M', 4, 4, " (4) *"},
    Legend{'N', 1, 1, " (1) integral"},
    Legend{'N', 2, 2, " (2) *"},
    Legend{'N', 3, 3, " (3) *"},
    Legend{'N', 4, 4, " (4) *"},
    Legend{'O', 0, 0, " offset (zero point)"},
    Legend{'O', 1, 15, " *"},
    Legend{'P', 1, 1, " (1) proportional"},
    Legend{'P', 2, 2, " (2) *"},
    Legend{'P', 3, 3, " (3) *"},
    Legend{'P', 4, 4, " (4) *"},
    Legend{'Q', 1, 1, " (1) output power (%)"},
    Legend{'Q', 2, 2, " (2) *  (at Z=5)"},
    Legend{'Q', 3, 3, " (3) *"},
    Legend{'Q', 4, 4, " (4) *"},
    Legend{'R', 0, 0, " buffer contents"},
    Legend{'R', 1, 15, " *"},
    Legend{'S', 0, 0, " sampling time"},
    Legend{'S', 1, 15, " *"},
    Legend{'T', 0, 0, " min. sampling of TAVREL"},
    Legend{'T', 1, 1, " (1) set filter"},
    Legend{'T', 2, 2, " (2) *"},
    Legend{'T', 3, 3, " (3) *"},
    Legend{'T', 4, 4, " (4) *"},
    Legend{'U', 1, 1, " (1) output power (%)"},
    Legend{'U', 2, 2, " (2) *"},
    Legend{'U', 3, 3, " (3) *"},
    Legend{'U', 4, 4, " (4) *"},
    Legend{'V', 1, 1, " (1) derivative time "},
    Legend{'V', 2, 2, " (2) *"},
    Legend{'V', 3, 3, " (3) *"},
    Legend{'V', 4, 4, " (4) *"},
    Legend{'V', 6, 7, " commtest"},
    Legend{'W', 1, 1, " (1) set point"},
    Legend{'W', 2, 2, " (2) *"},
    Legend{'W', 3, 3, " (3) *"},
    Legend{'W', 4, 4, " (4) *"},
    Legend{'X', 0, 0, " oldest actual value"},
    Legend{'X', 1, 1, " *     (from buffer)"},
    Legend{'X', 2, 15, " *"},
    Legend{'Y', 0, 0, " newest actual value"},
    Legend{'Y', 1, 15, " *"},
    Legend{'Z', 1, 1, " (1) controller status"},
    Legend{'Z', 2, 2, " (2) *"},
    Legend{'Z', 3, 3, " (3) *"},
    Legend{'Z', 4, 4, " (4) *"},
    Legend{'Z', 6, 6, " Serial No - high   "},
    Legend{'Z', 7, 7, " Serial No - low    "},
    Legend{'Z', 8, 8, " Unit No            "},
    Legend{'Z', 9, 9, " Setup:   Date dd,mm"},
    Legend{'Z', 10, 10, " Setup:   Date yy   "},
    Legend{'Z', 11, 11, " Setup:   Name      "},
    Legend{'Z', 12, 12, " Check:   Date dd,mm"},
    Legend{'Z', 13, 13, " Check:   Date yy   "},
    Legend{'Z', 14, 14, " Check:   Name      "},
    Legend{'Z', 15, 15, " Check:   Type      "},
};

}  // namespace

Register RegisterLayout::At(int inet, int row) const {
  const int letter = row / RowsOfLetter;
  return {inet, Letters.substr(static_cast<std::size_t>(letter), 1), row % RowsOfLetter};
}

std::string RegisterLayout::Key(int row) const {
  const Register which = At(0, row);
  return std::string(which.letter) + TwoHexDigits(which.index);
}

RegisterLayout LayoutOfType(int type_sel) {
  switch (type_sel) {
    case 1:
      return kLayout1;
    case 2:
      return kLayout2;
    case 3:
      return kLayout3;
    default:
      return kLayout4;
  }
}

std::string_view DesignationOf(int type_sel, const Register& which) {
  for (const Legend& legend : kLegends) {
    const bool is_there = which.letter == std::string_view(&legend.Letter, 1) &&
                          which.index >= legend.First && which.index <= legend.Last;
    if (is_there && type_sel == kTypeWithLegend) {
      return legend.Text;
    }
  }
  return "";
}

std::string TwoHexDigits(int number) {
  const std::string digits = Hex(static_cast<std::int16_t>(number));
  return digits.size() < 2 ? "0" + digits : digits;
}

}  // namespace tavrel
