#include "graph/forms/tav_graph.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <chrono>

#include "graph/forms/graph_glyphs.h"
#include "graph/graph_tips.h"
#include "state/unit_record.h"
#include "widgets/form_room.h"
#include "widgets/muted_label.h"

namespace tavrel {
namespace {

constexpr int kGap = 6;
constexpr int kGroupGap = 18;  // between groups of buttons
constexpr qreal kPromptSize = 1.15;
constexpr int kPromptMargin = 3;
constexpr QSize kFirstSize(1040, 680);
constexpr std::chrono::milliseconds kTimerGraph{100};
// After a change of size, until the pictures follow. A user who drags an edge sees them follow in
// steps.
constexpr std::chrono::milliseconds kFit{60};
constexpr int kLeastLegendHeight = 80;
constexpr int kLeastAxesCharacters = 9;  // of the list of axes, on a small screen
constexpr int kLeastCommentWidth = 160;
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
      frames_{new CurveFrame(kOverview, this), new CurveFrame(kPartView, this)},
      legend_(new GraphLegend(this)),
      surfaces_{{frames_[kOverview]->Surfaces(), frames_[kPartView]->Surfaces()},
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

// The keyboard goes back to the plot behind it.
GlyphButton* TavGraph::MakeTool(const char* name, const char* spoken, Glyph glyph, Press press) {
  return MakeGlyphButton(name, spoken, glyph, [this, press = std::move(press)] {
    press();
    AfterPress();
  });
}

void TavGraph::MakeTools() {
  pb_print_ = MakeTool("PbPrint", "print", DrawPrinterGlyph, [this] { output_.MnuPrint_Click(); });
  pb_save_ =
      MakeTool("PbSave", "sub-file", DrawSubFileGlyph, [this] { output_.MnuSubFile_Click(); });
  pb_copy_ = MakeTool("PbCopy", "copy to the clipboard", DrawClipboardGlyph,
                      [this] { output_.MnuGraph_Click(); });
  pb_eval_ = {
      MakeTool("PbEval_0", "measure a distance", DrawDistanceGlyph,
               [this] { graph_.PbEval_Click(0); }),
      MakeTool("PbEval_1", "integrate", DrawIntegralGlyph, [this] { graph_.PbEval_Click(1); })};
  pb_mark_ = {
      MakeTool("PbMark_0", "delete last mark", DrawDeleteMarkGlyph,
               [this] { graph_.PbMark_Click(0); }),
      MakeTool("PbMark_1", "add coordinates", DrawPointMarkGlyph,
               [this] { graph_.PbMark_Click(1); }),
      MakeTool("PbMark_2", "add a comment", DrawCommentGlyph, [this] { graph_.PbMark_Click(2); })};
  cmd_over_ =
      MakeTool("cmdOver", "overview", DrawOverviewGlyph, [this] { graph_.cmdOver_Click(); });
  cmd_part_ =
      MakeTool("cmdPart", "part view", DrawPartViewGlyph, [this] { graph_.cmdPart_Click(); });
  cmd_exit_ = MakeTool("cmdExit", "exit", DrawExitGlyph, [this] { graph_.cmdExit_Click(); });
  cbo_xy_ = new QComboBox(this);
  cbo_xy_->setObjectName("CboXY");
  cbo_xy_->setAccessibleName("axes of the part view");
  cbo_xy_->setMinimumWidth(fontMetrics().averageCharWidth() * kLeastAxesCharacters);
  for (const char* item : kCboXYItems) {
    cbo_xy_->addItem(item);
  }
  lbl_axes_ = new MutedLabel("", this);
  lbl_axes_->setBuddy(cbo_xy_);
  QSizePolicy keeps_its_place = cbo_xy_->sizePolicy();
  keeps_its_place.setRetainSizeWhenHidden(true);
  cbo_xy_->setSizePolicy(keeps_its_place);
  // The first that gives way on a small screen: the list tells itself what it is.
  keeps_its_place = QSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  keeps_its_place.setRetainSizeWhenHidden(true);
  lbl_axes_->setSizePolicy(keeps_its_place);
  connect(cbo_xy_, &QComboBox::activated, this, [this](int index) {
    graph_.CboXY_Click(index);
    axes_by_key_ ? AfterSwitch() : AfterPress();
  });
}

void TavGraph::MakePrompts() {
  pic_xy_ = new QWidget(this);
  pic_xy_->setObjectName("picXY");
  auto* read_out = new QHBoxLayout(pic_xy_);
  read_out->setContentsMargins(0, 0, 0, 0);
  for (QLabel** label : {&lb_x_, &lb_y_}) {
    *label = new QLabel(pic_xy_);
    (*label)->setTextFormat(Qt::PlainText);
    (*label)->setMinimumWidth(fontMetrics().horizontalAdvance("x = 00000.00 "));
    read_out->addWidget(*label);
  }
  lb_x_->setObjectName("lbX");
  lb_y_->setObjectName("lbY");
  txt_for_mark_ = new QLineEdit(this);
  txt_for_mark_->setObjectName("Txt_for_Mark");
  txt_for_mark_->setAccessibleName("comment");
  txt_for_mark_->setMaxLength(kTextLength);
  connect(txt_for_mark_, &QLineEdit::textEdited, this,
          [this](const QString& text) { graph_.Txt_for_Mark_Change(text.toStdString()); });
  lbl_instr_ = new QLabel(this);
  lbl_instr_->setObjectName("Lbl_Instr");
  lbl_instr_->setTextFormat(Qt::PlainText);
  lbl_instr_->setFont(Sized(lbl_instr_->font(), kPromptSize));
  lbl_instr_->setMargin(kPromptMargin);
  lbl_hint_ = new MutedLabel("", this);
  lbl_hint_->setObjectName("Lbl_Hint");
  lbl_hint_->setTextFormat(Qt::PlainText);
  lbl_hint_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  lbl_res_ = new QLabel(this);
  lbl_res_->setObjectName("lblRes");
  lbl_res_->setTextFormat(Qt::PlainText);
}

void TavGraph::MakeTimers() {
  timer_graph_.setInterval(kTimerGraph);
  timer_graph_.callOnTimeout(this, [this] { Tick(); });
  fit_.setSingleShot(true);
  fit_.setInterval(kFit);
  fit_.callOnTimeout(this, [this] { FitPictures(); });
}

void TavGraph::Arrange() {
  stack_ = new QStackedLayout;
  for (CurveFrame* frame : frames_) {
    stack_->addWidget(frame);
  }
  auto* middle = new QHBoxLayout;
  middle->setSpacing(kNarrowMargin);
  middle->addLayout(stack_, 1);
  // On a small screen the bar stands on the room behind the names.
  const QSize least_legend(legend_->minimumSizeHint().width(), kLeastLegendHeight);
  auto* legend = new ScrollingPart(legend_, least_legend, this);
  legend->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  middle->addWidget(legend);
  auto* all = new QVBoxLayout(this);
  all->setContentsMargins(kNarrowMargin, kNarrowMargin, kNarrowMargin, kNarrowMargin);
  all->setSpacing(kNarrowMargin);
  all->setMenuBar(menu_);
  all->addLayout(ArrangeTools());
  all->addLayout(middle, 1);
  all->addLayout(ArrangePrompts());
  resize(kFirstSize);
  OrderTabs();
}

// The plot first, then the tools as they stand, from left to right.
void TavGraph::OrderTabs() {
  const std::array<QWidget*, 14> way = {&frames_[kOverview]->Plot(),
                                        &frames_[kPartView]->Plot(),
                                        pb_print_,
                                        pb_save_,
                                        pb_copy_,
                                        pb_eval_[0],
                                        pb_eval_[1],
                                        pb_mark_[1],
                                        pb_mark_[2],
                                        pb_mark_[0],
                                        cbo_xy_,
                                        cmd_over_,
                                        cmd_part_,
                                        cmd_exit_};
  for (std::size_t place = 1; place < way.size(); ++place) {
    setTabOrder(way.at(place - 1), way.at(place));
  }
  setTabOrder(cmd_exit_, txt_for_mark_);
}

QHBoxLayout* TavGraph::ArrangeTools() {
  auto* line = new QHBoxLayout;
  line->setSpacing(kGap);
  const auto add = [line](QWidget* control) { line->addWidget(control); };
  add(pb_print_);
  add(pb_save_);
  add(pb_copy_);
  line->addSpacerItem(new QSpacerItem(kGroupGap, 0, QSizePolicy::Maximum));
  add(pb_eval_[0]);
  add(pb_eval_[1]);
  line->addSpacerItem(new QSpacerItem(kGroupGap, 0, QSizePolicy::Maximum));
  add(pb_mark_[1]);
  add(pb_mark_[2]);
  add(pb_mark_[0]);
  line->addSpacerItem(new QSpacerItem(kGroupGap, 0, QSizePolicy::Maximum));
  add(lbl_axes_);
  add(cbo_xy_);
  line->addStretch(1);
  add(cmd_over_);
  add(cmd_part_);
  line->addSpacerItem(new QSpacerItem(kGroupGap, 0, QSizePolicy::Maximum));
  add(cmd_exit_);
  return line;
}

QHBoxLayout* TavGraph::ArrangePrompts() {
  // Always as high as with the text field and a prompt in it, so that nothing moves when they come:
  // a plot that changes its size is painted anew, and that ends the tool. A label without a text
  // would tell less.
  auto* line = new QHBoxLayout;
  line->setSpacing(kNarrowMargin);
  const int prompt = QFontMetrics(lbl_instr_->font()).lineSpacing() + 2 * kPromptMargin;
  lbl_instr_->setFixedHeight(prompt);
  line->addStrut(std::max(txt_for_mark_->sizeHint().height(), prompt));
  auto* one_place = new QWidget(this);
  one_place->setFixedWidth(std::max(pic_xy_->sizeHint().width(), kLeastCommentWidth));
  auto* grid = new QGridLayout(one_place);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->addWidget(pic_xy_, 0, 0);
  grid->addWidget(txt_for_mark_, 0, 0);
  line->addWidget(one_place);
  line->addWidget(lbl_instr_);
  line->addWidget(lbl_hint_, 1);
  line->addWidget(new MutedLabel("resolution", this));
  line->addWidget(lbl_res_);
  return line;
}

void TavGraph::FitSoon() {
  if (!fit_.isActive()) {
    fit_.start();
  }
}

// The frame behind has the size of that in front when it comes there.
void TavGraph::FitPictures() {
  layout()->activate();
  const CurveFrame& front = *frames_.at(static_cast<std::size_t>(stack_->currentIndex()));
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
  return *frames_.at(static_cast<std::size_t>(graph_.Values().frCurve));
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
  for (std::size_t index = 0; index < pb_eval_.size(); ++index) {
    pb_eval_.at(index)->setEnabled(now.PbEvalEnabled.at(index));
  }
  for (std::size_t index = 0; index < pb_mark_.size(); ++index) {
    pb_mark_.at(index)->setEnabled(now.PbMarkEnabled.at(index));
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
  for (int index = 0; index < static_cast<int>(pb_eval_.size()); ++index) {
    pb_eval_.at(static_cast<std::size_t>(index))->SetLatched(pressed == ToolButton{false, index});
  }
  for (int index = 0; index < static_cast<int>(pb_mark_.size()); ++index) {
    pb_mark_.at(static_cast<std::size_t>(index))->SetLatched(pressed == ToolButton{true, index});
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
    const Colour ink = graph_.State().Curves.At(now.StrongCurve).CurveColor;
    stroke.Ink = QColor(ink.Red, ink.Green, ink.Blue);
    stroke.Pieces.emplace_back();
  }
  for (const std::optional<PlotPoint>& point : graph_.StrongPoints()) {
    if (point) {
      stroke.Pieces.back() << QPointF(point->X, point->Y);
    } else if (!stroke.Pieces.back().isEmpty()) {
      stroke.Pieces.emplace_back();
    }
  }
  for (CurveFrame* frame : frames_) {
    const bool is_shown = frame == frames_.at(static_cast<std::size_t>(wanted.View));
    frame->Plot().ShowStroke(is_shown ? stroke : PlotView::Stroke());
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
    lbl_axes_->setMaximumWidth(lbl_axes_->sizeHint().width());
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
