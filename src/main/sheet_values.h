#ifndef TAVREL_MAIN_SHEET_VALUES_H_
#define TAVREL_MAIN_SHEET_VALUES_H_

#include <array>
#include <string>

#include "base/colour.h"
#include "base/language.h"
#include "state/run_state.h"

// Everything that the main form shows, as plain values. The rules of the main form write them, the
// form copies them to its widgets, and a test reads what the user sees. All texts are UTF-8.
namespace tavrel {

// One row of the sheet. A status is a colour and a word on it.
struct SheetRow {
  bool Sheet = false;  // the row is in use and shown
  std::string tx_Des;  // name of the apparatus, editable; the user's own text while he types
  bool tx_DesEnabled = false;
  std::string lb_TavNo;  // number of the instrument
  Colour sh_TavNo = kGrey;
  std::string TavNoNote;   // how long the buffer of a silent instrument lasts, for the tool tip
  bool imgTavSel = false;  // the instrument is the selected one
  std::string lb_File;
  std::string lb_Rec;  // hours
  std::string lb_Rstat;
  Colour sh_Rstat = kGrey;
  std::string RstatNote;  // what keeps the row from being written, for the tool tip; else empty
  std::string lb_Ref;     // degrees
  std::string lb_Ctrl;    // degrees
  std::string lb_Cstat;
  Colour sh_Cstat = kGrey;
  std::string CstatNote;  // what keeps the controller from being off, for the tool tip; else empty
  bool cmd_WorkEnabled = false;
};

// The whole form.
struct SheetValues {
  std::string Caption;
  BySlot<SheetRow> Rows;   // 0 is the viewed file
  std::string lbl_Info;    // empty: hidden
  std::string lbl_State;   // the line to the instruments, in words
  bool Indicator = false;  // a pass over the rows is going on
  bool picActual = false;  // the table is shown
  bool picCmds = true;     // the commands are shown
  bool cmd_OpenEnabled = false;
  Language TipLanguage = Language::kEnglish;
};

// What the splash form shows.
struct SplashValues {
  std::string cmdStart;  // caption of the button
  std::string lbRelease;
};

// The column heads, in the order of the columns.
struct SheetHeads {
  static constexpr std::array<const char*, 6> head = {"tavrel",   "apparatus",     "controller",
                                                      "filename", "recorded  [h]", "reference"};
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_SHEET_VALUES_H_
