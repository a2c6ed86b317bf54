#include "setup/forms/tav_chann.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QStyleOptionFocusRect>
#include <QStylePainter>
#include <QVBoxLayout>
#include <utility>

#include "setup/channel_tips.h"
#include "widgets/connection_sign.h"
#include "widgets/number_edit.h"

namespace tavrel {
namespace {

constexpr int kGap = 8;
constexpr int kFinalCharacters = 12;
constexpr int kFullBar = 100;

// A menu bar takes the keyboard at the key Alt although none of its menus can be opened; this one
// does not while it is disabled, and it shows where the keyboard is.
class MenuBar : public QMenuBar {
 public:
  using QMenuBar::QMenuBar;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override {
    return isEnabled() && QMenuBar::eventFilter(object, event);
  }
  // While the keyboard is here the style shows nothing before a menu opens.
  void paintEvent(QPaintEvent* event) override {
    QMenuBar::paintEvent(event);
    if (hasFocus() && activeAction() != nullptr) {
      QStylePainter painter(this);
      QStyleOptionFocusRect frame;
      frame.initFrom(this);
      frame.state |= QStyle::State_KeyboardFocusChange;
      frame.rect = actionGeometry(activeAction()).adjusted(1, 1, -1, -1);
      painter.drawPrimitive(QStyle::PE_FrameFocusRect, frame);
    }
  }
};

// What stands in brackets at the end is not torn apart where the text is broken into lines.
std::string WithBracketsWhole(std::string text) {
  constexpr std::string_view kBlankWithoutBreak = "\u00A0";
  const std::size_t bracket = text.rfind('(');
  if (bracket == std::string::npos || text.back() != ')') {
    return text;
  }
  for (std::size_t at = text.find(' ', bracket); at != std::string::npos; at = text.find(' ', at)) {
    text.replace(at, 1, kBlankWithoutBreak);
  }
  return text;
}

// What is shown at times keeps its place, so that nothing jumps.
void KeepPlace(QWidget& widget) {
  QSizePolicy policy = widget.sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  widget.setSizePolicy(policy);
  widget.hide();
}

}  // namespace

TavChann::TavChann(ChannelAdjustment& channels)
    : ModalForm(channels, "TavChann", channels.Values().Caption), channels_(channels) {
  MakeParts();
  QVBoxLayout* column = MakeColumn(kNarrowMargin);
  column->setMenuBar(MakeMenus());
  column->addWidget(sheet_, 1);
  column->addWidget(p_bar_);
  column->addLayout(ArrangeFoot());
  ShowTips(kChannelTips, channels.TipLanguage());
  final_asked_ = channels.Values().FinalAsked;
  sheet_->setFocus();
  timer_chann_.setObjectName("Timer_chann");
  connect(&timer_chann_, &QTimer::timeout, this, [this] {
    channels_.Timer_chann();
    AfterEvent();
  });
  timer_chann_.start(std::chrono::milliseconds(ChannelAdjustment::kTickMilliseconds));
}

QMenuBar* TavChann::MakeMenus() {
  auto* bar = new MenuBar(this);
  menus_ = bar;
  bar->setObjectName("Menus");
  mnu_adjust_ = bar->addMenu("Adjust   ");
  mnu_adjust_->menuAction()->setObjectName("Mnu_Adjust");
  AddAdjustment("Mnu_FeCuNi", "FeCuNi  -  thermocouple", [this] { channels_.Mnu_FeCuNi_Click(); });
  AddAdjustment("Mnu_NiCrNi", "NiCrNi   -  thermocouple", [this] { channels_.Mnu_NiCrNi_Click(); });
  AddAdjustment("Mnu_Linear", "Linear   -  input", [this] { channels_.Mnu_Linear_Click(); });
  AddAdjustment("Mnu_RTD", "RTD  -  reference", [this] { channels_.Mnu_RTD_Click(); });
  mnu_var_ = bar->addMenu("Variables  ");
  mnu_var_->menuAction()->setObjectName("Mnu_Var");
  // This key leads to the menus without a letter, and the arrow keys go on.
  const auto* to_menus = new QShortcut(Qt::Key_F10, this);
  connect(to_menus, &QShortcut::activated, this, [this, bar] {
    if (mnu_adjust_->isEnabled()) {
      bar->setActiveAction(mnu_adjust_->menuAction());
    }
  });
  const auto show = [this] { UpdateWidgets(); };
  AddEntry(
      *mnu_var_, "Mnu_Save", "Save  as ...", [this, show] { channels_.Mnu_Save_Click(show); },
      QKeySequence::Save);
  AddEntry(
      *mnu_var_, "Mnu_Load", "Load  ...", [this, show] { channels_.Mnu_Load_Click(show); },
      QKeySequence::Open);
  return bar;
}

// Behind the menu the keyboard belongs to the rows.
void TavChann::AddAdjustment(const char* name, const char* caption, Press press) {
  AddEntry(*mnu_adjust_, name, caption, [this, press = std::move(press)] {
    press();
    sheet_->setFocus();
  });
}

void TavChann::MakeParts() {
  sheet_ = new ChannelGrid(this);
  connect(sheet_, &ChannelGrid::RowChosen, this, [this](int row) {
    channels_.Sheet_Click(row);
    AfterEvent();
  });
  p_bar_ = new QProgressBar(this);
  p_bar_->setObjectName("pBar");
  p_bar_->setAccessibleName("progress");
  p_bar_->setRange(0, kFullBar);
  p_bar_->setTextVisible(false);
  com_icon_ = new ConnectionSign(this);
  com_icon_->setAccessibleName("no connection");
  lbl_instr_ = new QLabel(this);
  lbl_instr_->setObjectName("Lbl_Instr");
  lbl_instr_->setTextFormat(Qt::PlainText);
  lbl_instr_->setWordWrap(true);
  txt_final_ = new NumberEdit("txt_Final", this);
  txt_final_->setAccessibleName("final value");
  txt_final_->setFixedWidth(fontMetrics().averageCharWidth() * kFinalCharacters);
  connect(txt_final_, &QLineEdit::textEdited, this,
          [this](const QString& text) { channels_.txt_Final_Change(text.toStdString()); });
  cmd_ok_ = MakeOk([this] { channels_.CmdOK_Click(); });
  cmd_ok_->setText(" ok  (enter-key)  ");
}

QLayout* TavChann::ArrangeFoot() {
  auto* foot = new QHBoxLayout;
  foot->setSpacing(kGap);
  for (QWidget* part : {static_cast<QWidget*>(lbl_instr_), static_cast<QWidget*>(com_icon_),
                        static_cast<QWidget*>(txt_final_), static_cast<QWidget*>(cmd_ok_)}) {
    foot->addWidget(part, part == lbl_instr_ ? 1 : 0);
    KeepPlace(*part);
  }
  foot->addWidget(MakeCancel());
  KeepPlace(*p_bar_);
  lbl_instr_->setMinimumHeight(2 * fontMetrics().lineSpacing());  // the longest takes two lines
  return foot;
}

void TavChann::UpdateWidgets() {
  const ChannelValues& now = channels_.Values();
  sheet_->Show(now.Sheet);
  menus_->setEnabled(now.MenusEnabled);
  mnu_adjust_->setEnabled(now.MenusEnabled);
  mnu_var_->setEnabled(now.MenusEnabled);
  com_icon_->setVisible(now.ComIcon);
  ShowText(*lbl_instr_, WithBracketsWhole(now.Lbl_Instr));
  lbl_instr_->setVisible(now.Lbl_InstrShown);
  ShowText(*txt_final_, now.txt_Final);
  txt_final_->setVisible(now.txt_FinalShown);
  p_bar_->setValue(now.pBar);
  p_bar_->setVisible(now.pBarShown);
  cmd_ok_->setVisible(now.CmdOKShown);
  FocusFinalValue();
}

void TavChann::FocusFinalValue() {
  const ChannelValues& now = channels_.Values();
  if (now.FinalAsked != final_asked_) {
    final_asked_ = now.FinalAsked;
    txt_final_->setFocus();
  }
}

}  // namespace tavrel
