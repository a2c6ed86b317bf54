#include "graph/forms/tav_graph.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QStackedLayout>
#include <algorithm>
#include <chrono>

#include "graph/graph_tips.h"
#include "widgets/muted_label.h"

namespace tavrel {
namespace {

constexpr std::chrono::milliseconds kTimerGraph{100};
// After a change of size, until the pictures follow. A user who drags an edge sees them follow in
// steps.
constexpr std::chrono::milliseconds kFit{60};
constexpr int kManySteps = 10;  // of the cursor, with Shift

constexpr BothLanguages kAxes{"axes", "Achsen"};

// An entry of the menu "Output".
struct Entry {
  const char* name;
  const char* caption;
  void (GraphOutput::*command)();
};

constexpr std::array<Entry, 5> kEntries = {
    {{"MnuPrint", "Printer", &GraphOutput::MnuPrint_Click},
     {"MnuSubFile", "Sub - file", &GraphOutput::MnuSubFile_Click},
     {"MnuASCII", "ASCII - file", &GraphOutput::MnuASCII_Click},
     {"MnuData", "Clipboard:  Data", &GraphOutput::MnuData_Click},
     {"MnuGraph", "Clipboard:  Graphics ", &GraphOutput::MnuGraph_Click}}};

PlotPoint PointOf(QPointF user) {
  return {user.x(), user.y()};
}

bool IsEnter(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool IsEnterOrEscape(const QKeyEvent& event) {
  return IsEnter(event) || event.key() == Qt::Key_Escape;
}

}  // namespace

TavGraph::TavGraph(Graph& graph, GraphOutput& output)
    : ModalForm(graph, "TavGraph", ""),
      graph_(graph),
      output_(output),
      frames_{{new CurveFrame(kOverview, this), new CurveFrame(kPartView, this)}},
      legend_(new GraphLegend(this)),
      surfaces_{{{frames_[kOverview]->Surfaces(), frames_[kPartView]->Surfaces()}},
                legend_->Samples(),
                legend_->Names()} {
  setWindowFlag(Qt::WindowMaximizeButtonHint);
  MakeMenu();
  MakeTools();
  MakePrompts();
  ConnectPictures();
  MakeTimers();
  Arrange();
  WatchKeys();
  graph_.Attach(&surfaces_);
}

TavGraph::~TavGraph() {
  graph_.CloseNow();
  graph_.Attach(nullptr);
}

void TavGraph::ConnectPictures() {
  for (CurveFrame* frame : frames_) {
    connect(frame, &CurveFrame::SizeChanged, this, &TavGraph::FitSoon);
    frame->AskForTip([this](int column, int columns) { return graph_.BandTipAt(column, columns); });
    PlotView* plot = &frame->Plot();
    connect(plot, &PlotView::Pressed, this, [this](QPointF at) {
      graph_.PicC_MouseDown(PointOf(at));
      AfterEvent();
    });
    connect(plot, &PlotView::Moved, this, [this](QPointF at) {
      graph_.PicC_MouseMove(PointOf(at));
      AfterEvent();
    });
    connect(plot, &PlotView::Released, this, [this](QPointF at) {
      graph_.PicC_MouseUp(PointOf(at));
      AfterEvent();
    });
    connect(plot, &PlotView::Left, this, [this] {
      graph_.PicC_MouseLeave();
      AfterEvent();
    });
  }
  connect(legend_, &GraphLegend::SizeChanged, this, &TavGraph::FitSoon);
  connect(legend_, &GraphLegend::Clicked, this, [this](double height) {
    graph_.PicColor_MouseUp(height);
    AfterEvent();
  });
}

void TavGraph::MakeMenu() {
  menu_ = new QMenuBar(this);
  QMenu* output = menu_->addMenu("Output  ");
  mnu_output_ = output->menuAction();
  mnu_output_->setObjectName("MnuOutput");
  for (const Entry& entry : kEntries) {
    QAction* action = output->addAction(entry.caption);
    action->setObjectName(entry.name);
    connect(action, &QAction::triggered, this, [this, &entry] { Execute(entry.command); });
  }
  output->actions().front()->setShortcut(QKeySequence::Print);
  QAction* help = menu_->addAction("Help");
  help->setObjectName("MnuHelp");
  help->setShortcut(QKeySequence::HelpContents);
  connect(help, &QAction::triggered, this, [this] {
    graph_.MnuHelp_Click();
    AfterEvent();
  });
}

void TavGraph::Execute(Command command) {
  (output_.*command)();
  AfterPress();
}

void TavGraph::MakeTimers() {
  timer_graph_.setInterval(kTimerGraph);
  timer_graph_.callOnTimeout(this, [this] { Tick(); });
  fit_.setSingleShot(true);
  fit_.setInterval(kFit);
  fit_.callOnTimeout(this, [this] { FitPictures(); });
}

void TavGraph::FitSoon() {
  if (!fit_.isActive()) {
    fit_.start();
  }
}

// The frame behind has the size of that in front when it comes there.
void TavGraph::FitPictures() {
  layout()->activate();
  const CurveFrame& front = *frames_[stack_->currentIndex()];
  const bool fit =
      legend_->Fits() && frames_[kOverview]->FitsTo(front) && frames_[kPartView]->FitsTo(front);
  if (fit || !isVisible()) {
    return;
  }
  if (!graph_.MayResize()) {
    FitSoon();
    return;
  }
  legend_->Fit();
  for (CurveFrame* frame : frames_) {
    frame->FitTo(front);
  }
  graph_.Resized();
  Tick();
}

CurveFrame& TavGraph::FrameInFront() {
  return *frames_[graph_.Values().frCurve];
}

void TavGraph::Tick() {
  graph_.Timer_Graph_Timer();
  if (isVisible()) {
    AfterEvent();
  }
}

// A view that has just come to the front is drawn without waiting for the next tick, so that it
// does not flash white and the mouse meets its scale.
void TavGraph::AfterSwitch() {
  if (graph_.Values().frCurve != graph_.State().ViewShown) {
    Tick();
  } else {
    AfterEvent();
  }
}

// The keyboard goes on with the plot.
void TavGraph::AfterPress() {
  AfterSwitch();
  if (!txt_for_mark_->hasFocus()) {
    FrameInFront().Plot().setFocus();
  }
}

void TavGraph::UpdateWidgets() {
  const GraphValues& now = graph_.Values();
  if (windowTitle() != QtText(now.Caption)) {
    setWindowTitle(QtText(now.Caption));
  }
  stack_->setCurrentIndex(now.frCurve);
  for (CurveFrame* frame : frames_) {
    frame->UpdateWidgets(now);
    if (graph_.MayResize()) {
      frame->ShowPlaces(now);
    }
  }
  legend_->ShowArrow(now.Up_ArrowShown);
  legend_->ShowRows(now);
  if (graph_.MayResize()) {
    ShowStrong(now);
    ShowBand(now);
  }
  QWidget* const before = focusWidget();
  ShowTools(now);
  KeepKeyboard(before);
  ShowPrompts(now);
  if (now.TimerOn != timer_graph_.isActive()) {
    now.TimerOn ? timer_graph_.start() : timer_graph_.stop();
  }
}

void TavGraph::ShowTools(const GraphValues& now) {
  mnu_output_->setEnabled(now.MnuOutputEnabled);
  pb_print_->setEnabled(now.PbPrintEnabled);
  pb_save_->setEnabled(now.PbSaveEnabled);
  pb_copy_->setEnabled(now.PbCopyEnabled);
  for (int index = 0; index < kEvalTools; ++index) {
    pb_eval_[index]->setEnabled(now.PbEvalEnabled[index]);
  }
  for (int index = 0; index < kMarkTools; ++index) {
    pb_mark_[index]->setEnabled(now.PbMarkEnabled[index]);
  }
  cbo_xy_->setVisible(now.CboXYShown);
  lbl_axes_->setVisible(now.CboXYShown);
  cbo_xy_->setCurrentIndex(now.CboXY);
  // The one that goes first: a window that shows both for a moment would stay wider.
  if (!now.cmdPartShown) {
    cmd_part_->hide();
  }
  cmd_over_->setVisible(now.cmdOverShown);
  cmd_part_->setVisible(now.cmdPartShown);
}

// A control that a drawing hides or disables loses the keyboard to another one. Behind the drawing
// it has it again, unless the user went elsewhere meanwhile.
void TavGraph::KeepKeyboard(QWidget* before) {
  if (graph_.State().GraphBusy) {
    if (before != focusWidget()) {
      asleep_ = before;
      instead_of_asleep_ = focusWidget();
    }
    return;
  }
  const bool is_awake = asleep_ != nullptr && asleep_->isVisible() && asleep_->isEnabled();
  if (is_awake && focusWidget() == instead_of_asleep_) {
    asleep_->setFocus();
  }
  asleep_ = nullptr;
}

void TavGraph::ShowPrompts(const GraphValues& now) {
  pic_xy_->setVisible(now.picXYShown);
  ShowText(*lb_x_, now.lbX);
  ShowText(*lb_y_, now.lbY);
  lbl_instr_->setVisible(now.Lbl_InstrShown);
  ShowText(*lbl_instr_, now.Lbl_Instr);
  const bool has_hint = !now.Lbl_InstrShown && !now.Hint.empty();
  ShowText(*lbl_hint_, has_hint ? now.Hint : "");
  lbl_hint_->setToolTip(lbl_hint_->text());
  ShowPressed();
  ShowText(*lbl_res_, now.lblRes);
  ShowComment(now);
}

// The button of the tool that is at work is down, and what it asks for stands on the accent of the
// desktop; a result stands on the form.
void TavGraph::ShowPressed() {
  const auto pressed = PressedTool(graph_.State().ToolState);
  for (int index = 0; index < kEvalTools; ++index) {
    pb_eval_[index]->SetLatched(pressed == ToolButton{false, index});
  }
  for (int index = 0; index < kMarkTools; ++index) {
    pb_mark_[index]->SetLatched(pressed == ToolButton{true, index});
  }
  if (pressed.has_value() != lbl_instr_->autoFillBackground()) {
    lbl_instr_->setAutoFillBackground(pressed.has_value());
    lbl_instr_->setBackgroundRole(pressed ? QPalette::Highlight : QPalette::NoRole);
    lbl_instr_->setForegroundRole(pressed ? QPalette::HighlightedText : QPalette::NoRole);
  }
}

// The points are read anew only if the curve, its view or its length is another one.
void TavGraph::ShowStrong(const GraphValues& now) {
  const ViewFrame& view = graph_.State().Shown();
  const StrongView wanted{graph_.State().ViewShown,
                          now.StrongCurve,
                          view.RecFirst,
                          view.RecLast,
                          view.RecDrawn,
                          view.YTop,
                          view.YBottom};
  if (wanted == strong_) {
    return;
  }
  strong_ = wanted;
  PlotView::Stroke stroke;
  if (now.StrongCurve >= 0) {
    stroke.Ink = graph_.State().Curves.At(now.StrongCurve).CurveColor;
    stroke.Pieces.emplace_back();
  }
  for (const std::optional<PlotPoint>& point : graph_.StrongPoints()) {
    if (point) {
      stroke.Pieces.back().push_back({point->X, point->Y});
    } else if (!stroke.Pieces.back().empty()) {
      stroke.Pieces.emplace_back();
    }
  }
  for (CurveFrame* frame : frames_) {
    const bool is_shown = frame == frames_[wanted.View];
    frame->Plot().ShowStroke(is_shown ? stroke : PlotView::Stroke());
  }
}

void TavGraph::ShowBand(const GraphValues& now) {
  const ViewFrame& view = graph_.State().Shown();
  CurveFrame& frame = *frames_[graph_.State().ViewShown];
  const BandSeen wanted{graph_.State().ViewShown, view.RecFirst, view.RecLast, frame.BandColumns(),
                        now.BandChanges};
  if (wanted != band_) {
    band_ = wanted;
    frame.ShowBand(graph_.Band(wanted.Columns));
  }
}

// While its place is chosen the text stands there as on a button.
void TavGraph::ShowComment(const GraphValues& now) {
  if (!now.Txt_for_MarkShown && txt_for_mark_->hasFocus()) {
    FrameInFront().Plot().setFocus();
  }
  txt_for_mark_->setVisible(now.Txt_for_MarkShown);
  if (txt_for_mark_->text() != QtText(now.Txt_for_Mark)) {
    txt_for_mark_->setText(QtText(now.Txt_for_Mark));
  }
  if (txt_for_mark_->isReadOnly() != now.Txt_for_MarkTaken) {
    txt_for_mark_->setReadOnly(now.Txt_for_MarkTaken);
    QPalette look = palette();
    look.setColor(QPalette::Base,
                  look.color(now.Txt_for_MarkTaken ? QPalette::Button : QPalette::Base));
    txt_for_mark_->setPalette(look);
    FrameInFront().Plot().setFocus();
  }
  if (now.FocusCalls != focus_calls_) {
    focus_calls_ = now.FocusCalls;
    txt_for_mark_->setFocus();
  }
}

// The form is shown again for another slot: it begins as a new one would.
void TavGraph::showEvent(QShowEvent* event) {
  ModalForm::showEvent(event);
  if (!event->spontaneous()) {
    ShowTips(kGraphTips, graph_.Values().TipLanguage);
    lbl_axes_->setText(QtText(kAxes.In(graph_.Values().TipLanguage)));
    FrameInFront().Plot().setFocus();
    layout()->activate();
    FitPictures();
  }
}

// Enter and Escape belong to the form, whichever control has the keyboard.
void TavGraph::WatchKeys() {
  for (QWidget* control : findChildren<QWidget*>()) {
    if (control->focusPolicy() != Qt::NoFocus) {
      control->installEventFilter(this);
    }
  }
}

bool TavGraph::eventFilter(QObject* watched, QEvent* event) {
  if (watched == cbo_xy_) {
    const bool is_mouse =
        event->type() == QEvent::MouseButtonPress || event->type() == QEvent::Wheel;
    axes_by_key_ = (axes_by_key_ || event->type() == QEvent::KeyPress) && !is_mouse;
  }
  const bool is_key = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
  if (!is_key || !IsEnterOrEscape(*static_cast<QKeyEvent*>(event))) {
    return ModalForm::eventFilter(watched, event);
  }
  if (event->type() == QEvent::KeyPress) {
    keyPressEvent(static_cast<QKeyEvent*>(event));
  }
  return true;
}

void TavGraph::keyPressEvent(QKeyEvent* event) {
  if (!TakeKey(*event)) {
    ModalForm::keyPressEvent(event);
    return;
  }
  event->accept();
  AfterSwitch();
}

void TavGraph::keyReleaseEvent(QKeyEvent* event) {
  if (IsEnterOrEscape(*event)) {
    event->accept();
    return;
  }
  ModalForm::keyReleaseEvent(event);
}

// A key that is still held down from the window before does nothing here.
bool TavGraph::TakeKey(const QKeyEvent& event) {
  if (IsEnterOrEscape(event)) {
    if (!event.isAutoRepeat()) {
      IsEnter(event) ? graph_.KeyEnter() : graph_.KeyEscape();
    }
    return true;
  }
  return !txt_for_mark_->hasFocus() && TakeCursorKey(event);
}

bool TavGraph::TakeCursorKey(const QKeyEvent& event) {
  const int times = (event.modifiers() & Qt::ShiftModifier) != 0 ? kManySteps : 1;
  switch (event.key()) {
    case Qt::Key_Left:
      graph_.MoveCursor(CursorMove::kLeft, times);
      return true;
    case Qt::Key_Right:
      graph_.MoveCursor(CursorMove::kRight, times);
      return true;
    case Qt::Key_Up:
      graph_.MoveCursor(CursorMove::kUp, times);
      return true;
    case Qt::Key_Down:
      graph_.MoveCursor(CursorMove::kDown, times);
      return true;
    case Qt::Key_Home:
      graph_.MoveCursor(CursorMove::kToStart, 1);
      return true;
    case Qt::Key_End:
      graph_.MoveCursor(CursorMove::kToEnd, 1);
      return true;
    case Qt::Key_Space:
      if (!event.isAutoRepeat()) {
        graph_.PressCursor();
      }
      return true;
    default:
      return false;
  }
}

}  // namespace tavrel
