#ifndef TAVREL_GRAPH_FORMS_TAV_GRAPH_H_
#define TAVREL_GRAPH_FORMS_TAV_GRAPH_H_

#include <QLabel>
#include <QPointer>
#include <QTimer>
#include <array>

#include "graph/forms/curve_frame.h"
#include "graph/forms/graph_legend.h"
#include "graph/graph.h"
#include "graph/graph_output.h"
#include "widgets/glyph_button.h"
#include "widgets/modal_form.h"

class QComboBox;
class QHBoxLayout;
class QLineEdit;
class QMenuBar;
class QStackedLayout;

namespace tavrel {

// TavGraph, the curves of a slot. One instance, shown again for each slot; it owns the pictures
// that the graph paints on.
class TavGraph : public ModalForm {
  Q_OBJECT
 public:
  // Both outlive the form; `graph` is opened between the making of the form and each Run.
  TavGraph(Graph& graph, GraphOutput& output);
  ~TavGraph() override;
  TavGraph(const TavGraph&) = delete;
  TavGraph& operator=(const TavGraph&) = delete;

 protected:
  void UpdateWidgets() override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  using Command = void (GraphOutput::*)();

  // What a stroke over a curve depends on.
  struct StrongView {
    int View = kOverview;
    int Curve = -1;
    int First = 0;
    int Last = 0;
    int Drawn = 0;
    double Top = 0;
    double Bottom = 0;

    [[nodiscard]] bool operator==(const StrongView&) const = default;
  };

  // What the band beneath the plot depends on.
  struct BandSeen {
    int View = kOverview;
    int First = 0;
    int Last = 0;
    int Columns = 0;
    int Changes = -1;

    [[nodiscard]] bool operator==(const BandSeen&) const = default;
  };

  void MakeMenu();
  [[nodiscard]] GlyphButton* MakeTool(const char* name, const char* spoken, Glyph glyph,
                                      Press press);
  void MakeTools();
  void MakePrompts();
  void ConnectPictures();
  void MakeTimers();
  void Arrange();
  void OrderTabs();
  [[nodiscard]] QHBoxLayout* ArrangeTools();
  [[nodiscard]] QHBoxLayout* ArrangePrompts();
  void Execute(Command command);
  void WatchKeys();
  [[nodiscard]] CurveFrame& FrameInFront();
  bool TakeKey(const QKeyEvent& event);
  bool TakeCursorKey(const QKeyEvent& event);
  void FitSoon();
  void FitPictures();
  void Tick();
  void AfterSwitch();
  void AfterPress();
  void ShowTools(const GraphValues& now);
  void KeepKeyboard(QWidget* before);
  void ShowPrompts(const GraphValues& now);
  void ShowPressed();
  void ShowStrong(const GraphValues& now);
  void ShowBand(const GraphValues& now);
  void ShowComment(const GraphValues& now);

  Graph& graph_;
  GraphOutput& output_;
  ByView<CurveFrame*> frames_;
  GraphLegend* legend_;
  GraphSurfaces surfaces_;
  QStackedLayout* stack_ = nullptr;
  QMenuBar* menu_ = nullptr;
  QAction* mnu_output_ = nullptr;
  GlyphButton* pb_print_ = nullptr;
  GlyphButton* pb_save_ = nullptr;
  GlyphButton* pb_copy_ = nullptr;
  ByEvalTool<GlyphButton*> pb_eval_;
  ByMarkTool<GlyphButton*> pb_mark_;
  QLabel* lbl_axes_ = nullptr;
  QComboBox* cbo_xy_ = nullptr;
  GlyphButton* cmd_over_ = nullptr;
  GlyphButton* cmd_part_ = nullptr;
  GlyphButton* cmd_exit_ = nullptr;
  QWidget* pic_xy_ = nullptr;
  QLabel* lb_x_ = nullptr;
  QLabel* lb_y_ = nullptr;
  QLineEdit* txt_for_mark_ = nullptr;
  QLabel* lbl_instr_ = nullptr;
  QLabel* lbl_hint_ = nullptr;
  QLabel* lbl_res_ = nullptr;
  QTimer timer_graph_;
  QTimer fit_;
  StrongView strong_;                    // of which the stroke is shown
  BandSeen band_;                        // that is shown
  int focus_calls_ = 0;                  // of the graph, that have been followed
  bool axes_by_key_ = false;             // the axes were last touched by a key
  QPointer<QWidget> asleep_;             // had the keyboard until a drawing disabled it
  QPointer<QWidget> instead_of_asleep_;  // has the keyboard meanwhile
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_FORMS_TAV_GRAPH_H_
