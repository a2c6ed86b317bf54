#ifndef TAVREL_SERVICE_REGISTER_LAYOUT_H_
#define TAVREL_SERVICE_REGISTER_LAYOUT_H_

#include <string>
#include <string_view>

#include "link/register_access.h"

namespace tavrel {

// How the registers of a kind of instrument follow one another, as a list of rows: groups of the
// same size, each under its letter.
struct RegisterLayout {
  std::string_view Letters;  // one for each group
  int RowsOfLetter = 0;
  std::string_view Name;  // of the kind; empty: the instrument is named by its number

  [[nodiscard]] int Rows() const { return static_cast<int>(Letters.size()) * RowsOfLetter; }

  // `row` from 0 to Rows() - 1.
  [[nodiscard]] Register At(int inet, int row) const;

  // The register as a technician names it: its letter and two hexadecimal digits, "Z0F".
  [[nodiscard]] std::string Key(int row) const;
};

// That of the link variant `type_sel`, 1..4; 4 is in force in this system.
[[nodiscard]] RegisterLayout LayoutOfType(int type_sel);

// What the registers of variant 4 mean; empty for those without a meaning and for other variants.
[[nodiscard]] std::string_view DesignationOf(int type_sel, const Register& which);

// "05": two hexadecimal digits at least.
[[nodiscard]] std::string TwoHexDigits(int number);

}  // namespace tavrel

#endif  // TAVREL_SERVICE_REGISTER_LAYOUT_H_
