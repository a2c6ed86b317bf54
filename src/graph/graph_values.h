#ifndef TAVREL_GRAPH_GRAPH_VALUES_H_
#define TAVREL_GRAPH_GRAPH_VALUES_H_

#include <array>
#include <string>
#include <vector>

#include "base/language.h"
#include "base/numbered.h"
#include "graph/view_frame.h"

namespace tavrel {

// A curve in the legend.
struct LegendRow {
  std::string Name;    // number of the input and its whole name
  bool IsCut = false;  // the name has no room in the legend
  std::string Value;   // at the cursor, degrees; empty: there is none
};

// Tables by the button of the arrays PbEval and PbMark.
inline constexpr int kEvalTools = 2;
inline constexpr int kMarkTools = 3;
template <typename T>
using ByEvalTool = Numbered<T, 0, kEvalTools - 1>;
template <typename T>
using ByMarkTool = Numbered<T, 0, kMarkTools - 1>;

// What TavGraph shows beside its pictures. The form copies it to the widgets after each event.
struct GraphValues {
  std::string Caption;  // name of the apparatus
  Language TipLanguage = Language::kEnglish;
  int frCurve = kOverview;  // the view that is in front
  bool TimerOn = false;     // Timer_Graph, every 100 ms

  bool cmdPartShown = true;  // cmdPart and cmdOver replace each other in one place
  bool cmdOverShown = false;
  bool MnuOutputEnabled = false;

  // The tool buttons.
  bool PbSaveEnabled = false;
  bool PbCopyEnabled = false;
  bool PbPrintEnabled = false;
  ByEvalTool<bool> PbEvalEnabled;
  ByMarkTool<bool> PbMarkEnabled;

  bool CboXYShown = false;
  int CboXY = 0;  // index of kCboXYItems

  bool picXYShown = true;  // the panel of the cursor read-out
  std::string lbX;
  std::string lbY;
  std::string lblRes;           // "high" or "low"
  ByView<std::string> LblAxis;  // unit of the X axis

  // The prompts of the tools.
  bool Lbl_InstrShown = false;
  std::string Lbl_Instr;
  bool Up_ArrowShown = false;
  bool lbXYShown = false;  // the label that follows the mouse
  std::string lbXY;
  double lbXYLeft = 0;  // its upper left corner, in the resting scale of the part view
  double lbXYTop = 0;
  bool Txt_for_MarkShown = false;
  std::string Txt_for_Mark;
  bool Txt_for_MarkTaken = false;  // it has the colour of a button face
  int FocusCalls = 0;              // rises when Txt_for_Mark wants the keyboard

  std::vector<LegendRow> Legend;  // in the order of the curves
  int ChosenCurve = -1;           // in the legend, as its place in the list of curves; -1 none
  int StrongCurve = -1;           // the one that stands out now
  std::string Hint;               // what can be done, or what is not to be seen; empty: nothing

  int BandChanges = 0;  // rises when the band of the same view may be another one

  // The cursor that the keyboard moves; a move of the mouse takes it away.
  bool KeyCursorShown = false;
  double KeyCursorX = 0;  // resting scale
  double KeyCursorY = 0;

  void EnableTools(bool is_enabled) {
    PbSaveEnabled = PbCopyEnabled = PbPrintEnabled = is_enabled;
    PbEvalEnabled.Fill(is_enabled);
    PbMarkEnabled.Fill(is_enabled);
  }
};

inline constexpr std::array<const char*, 3> kCboXYItems = {
    " Y=absolute  /  X=time", " Y=relative    /  X=time", " Y=relative    /  X=reference"};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_GRAPH_VALUES_H_
