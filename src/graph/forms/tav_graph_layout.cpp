// How the form of the graph is laid out; what it does stands in tav_graph.cpp.
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QMenuBar>
#include <QStackedLayout>
#include <QVBoxLayout>
#include <algorithm>
#include <array>

#include "graph/forms/graph_glyphs.h"
#include "graph/forms/tav_graph.h"
#include "state/unit_record.h"
#include "widgets/form_room.h"
#include "widgets/muted_label.h"
#include "widgets/one_line.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr int kGap = 6;
constexpr int kGroupGap = 18;  // between groups of buttons
constexpr qreal kPromptSize = 1.15;
constexpr int kPromptMargin = 3;
constexpr QSize kFirstSize(1040, 680);
constexpr int kLeastLegendHeight = 80;
constexpr int kLeastAxesCharacters = 9;  // of the list of axes, on a small screen
constexpr int kLeastCommentWidth = 160;

}  // namespace

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
  lbl_axes_->setMinimumWidth(1);
  keeps_its_place = lbl_axes_->sizePolicy();
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
  lbl_hint_ = new OneLine<MutedLabel>(this);
  lbl_hint_->setObjectName("Lbl_Hint");
  lbl_res_ = new QLabel(this);
  lbl_res_->setObjectName("lblRes");
  lbl_res_->setTextFormat(Qt::PlainText);
  SpeakReading(*lbl_res_, "resolution");
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
  const int text = QFontMetrics(lbl_instr_->font()).size(0, "X").height();
  const int prompt = text + 2 * kPromptMargin;
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

}  // namespace tavrel
