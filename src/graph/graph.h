#ifndef TAVREL_GRAPH_GRAPH_H_
#define TAVREL_GRAPH_GRAPH_H_

#include <optional>
#include <string>
#include <vector>

#include "files/recording_file.h"
#include "graph/curve_reading.h"
#include "graph/graph_marks.h"
#include "graph/graph_plotter.h"
#include "graph/graph_state.h"
#include "graph/graph_tools.h"
#include "graph/graph_values.h"
#include "graph/told_band.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "platform/shell.h"
#include "state/modal_screen.h"
#include "state/run_state.h"

namespace tavrel {

// How the keyboard moves the cursor of the read-out.
enum class CursorMove { kLeft, kRight, kUp, kDown, kToStart, kToEnd };

// TavGraph, the form of the curves of SelSlot: the overview, whose extent stands in the header,
// and the part view, a rectangle that the user drew on it. One instance for the life of the
// program. The pictures grow with the recording at every tick of Timer_Graph.
class Graph : public ModalScreen {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    RecordingFiles& files;
    Dialogs& dialogs;
    Events& events;
    Shell& shell;
  };
  explicit Graph(const Parts& parts);

  // The pictures to paint on, before Open; they live until Attach(nullptr).
  void Attach(GraphSurfaces* surfaces) { plotter_.Attach(surfaces); }

  // Before the form is shown. No effect while the graph is in front.
  void Open();

  // Closes at once, with the header written: the program ends, or the form is gone.
  void CloseNow() override;

  // What the form shows now. The form reads it after every event.
  [[nodiscard]] const GraphValues& Values() const { return values_; }
  [[nodiscard]] const GraphState& State() const { return graph_; }

  // Every 100 ms while TimerOn. Draws what is new; serves events meanwhile.
  void Timer_Graph_Timer();

  // The pictures may get another size or resolution now; never in the middle of a drawing. They
  // are white afterwards, and Resized has all painted anew.
  [[nodiscard]] bool MayResize() const { return !graph_.GraphBusy; }
  void Resized();

  void cmdPart_Click();
  void cmdOver_Click();
  void cmdExit_Click();  // the next tick closes the form
  void Quit() override { cmdExit_Click(); }
  void CboXY_Click(int index);
  void KeyEnter();
  void KeyEscape();
  void MnuHelp_Click();

  // The mouse on PicC of the view in front, in its resting scale, and on the legend.
  void PicC_MouseDown(PlotPoint at);
  void PicC_MouseMove(PlotPoint at);
  void PicC_MouseUp(PlotPoint at);
  void PicC_MouseLeave();
  void PicColor_MouseUp(double height);  // 0 top, 1 bottom

  // What is drawn of the curve that stands out, for a stroke over it (CurveReading).
  [[nodiscard]] std::vector<std::optional<PlotPoint>> StrongPoints() const {
    return IsLive() ? reading_.StrongPoints() : std::vector<std::optional<PlotPoint>>();
  }

  // The band beneath the plot of the view in front, in so many columns of dots, and what it says of
  // one of them (told_band.h).
  [[nodiscard]] std::vector<BandRun> Band(int columns) const;
  [[nodiscard]] std::string BandTipAt(int column, int columns) const;

  // The keyboard instead of the mouse: a cursor that moves by drawn points (left, right) or by
  // hundredths of the height (up, down), `times` of them.
  void MoveCursor(CursorMove move, int times);
  // Takes a point, or begins and ends a drag, or chooses the curve that is next to the cursor.
  void PressCursor();

  void PbEval_Click(int index);  // 0 difference, 1 integral
  void PbMark_Click(int index);  // 0 delete the last mark, 1 coordinates, 2 comment
  void Txt_for_Mark_Change(const std::string& text) { values_.Txt_for_Mark = text; }

  // For the outputs of the part view (GraphOutput). False: the part view is not in front, or it is
  // being drawn.
  [[nodiscard]] bool HasOutput() const {
    return IsLive() && graph_.ViewShown == kPartView && graph_.ViewWanted == kPartView;
  }
  [[nodiscard]] GraphValues& ValuesForOutput() { return values_; }
  void CancelTool() { tools_.CancelTool(); }

 private:
  void ResetValues();
  void BuildCurves();
  void BringToFront(int view);
  void Leave();
  [[nodiscard]] bool CanBeShown() const;
  void PlaceCursor();
  void ShowHint();
  void ReadTold();
  [[nodiscard]] std::string ToldAtCursor() const;
  [[nodiscard]] BandView BandOf(int columns) const;
  [[nodiscard]] BothLanguages HintOfPart() const;
  [[nodiscard]] bool GoesBeyondAxis() const;
  [[nodiscard]] bool IsLive() const { return IsOpen() && graph_.GraphLoaded && !graph_.GraphBusy; }
  [[nodiscard]] UnitRecord& Unit() const;

  Parts parts_;
  GraphState graph_;
  GraphValues values_;
  GraphPlotter plotter_;
  GraphMarks marks_;
  GraphTools tools_;
  CurveReading reading_;
  std::vector<ToldRows> told_;   // by the journal of the recording
  std::int32_t told_rows_ = -1;  // in the file when it was asked
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_GRAPH_H_
