#ifndef TAVREL_WORK_WORKSHEET_VALUES_H_
#define TAVREL_WORK_WORKSHEET_VALUES_H_

#include <array>
#include <string>

#include "base/language.h"
#include "state/unit_record.h"
#include "work/controller_switch.h"

namespace tavrel {

// What a row of the worksheet's table shows, the row of one input.
struct WorksheetRow {
  bool Recorded = false;  // false: the row is empty and locked
  std::string Actual;     // degrees
  std::string Prod;
  std::string Comments;
  int ColourCode = 0;  // of the curve, as the header holds it
};

// What the worksheet shows, as plain values named after its controls.
struct WorksheetValues {
  std::string Caption;  // the apparatus
  std::string TavcNo;   // "Tavrel-2F"
  bool NoAnswer = false;
  std::string TavFile;

  // False for the viewed file: frController, frProg, the head "actual", cmd_New, cmd_Rec and
  // cmd_SetRec are hidden.
  bool OfSlot = false;

  // frRecording. A picture is down while what its button brings about is the case.
  bool RecOnDown = false;   // cmd_Rec(1)
  bool RecOffDown = false;  // cmd_Rec(2)
  std::string RecState;     // "end" of a full file, or that a set cannot be written
  std::string Lbl_rec;      // recorded time
  std::string RecUnit;      // its caption
  std::string Lbl_sampl;    // seconds
  std::string BufferText;   // how long the buffer of a silent instrument lasts; else empty
  std::string LedgerText;   // "2134 sets, complete"; empty if nothing is known

  // frController.
  CtrlButton CtrlDown = CtrlButton::kNone;  // cmd_Ctrl
  bool cmd_setCtrlEnabled = false;
  bool ProgDown = false;  // cmd_ProgOn
  std::string Lbl_setpoint;

  // frProg.
  bool frProg = false;
  std::string frProgCaption;
  std::string Lbl_Step;
  std::string Lbl_Time;       // minutes
  std::string ProgText;       // where the program is and when it goes on
  int ProgOffFocusCalls = 0;  // goes up each time the keyboard is to go to cmd_ProgOff

  bool cmd_CoordEnabled = false;
  bool CmdOKEnabled = false;

  ByInput<WorksheetRow> Rows;
  Language TipLanguage = Language::kEnglish;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_WORKSHEET_VALUES_H_
