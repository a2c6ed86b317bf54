#include "setup/forms/tav_num.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include "widgets/connection_sign.h"
#include "widgets/list_search.h"
#include "widgets/muted_label.h"

namespace tavrel {
namespace {

constexpr BothLanguages kActual{"actual number", "aktuelle Nummer"};
constexpr BothLanguages kNew{"new number", "neue Nummer"};
constexpr int kButtonGap = 4;
constexpr int kLineCharacters = 92;  // the longest note

}  // namespace

TavNum::TavNum(Numbering& numbering, SteppedScreens& stepped)
    : ModalForm(numbering, "TavNum", kNumberingCaption),
      numbering_(numbering),
      turn_(stepped, View::kTavNum, [this] {
        numbering_.Step();
        AfterEvent();
      }) {
  Arrange();
  ShowTips(kNumberingTips, numbering_.TipLanguage());
  com_icon_->setAccessibleName(com_icon_->toolTip().trimmed());
  cbo_tav_no_->setFocus();
}

QLabel* TavNum::MakeLine(const char* name) {
  auto* line = new QLabel(this);
  line->setObjectName(name);
  line->setTextFormat(Qt::PlainText);
  line->setWordWrap(true);
  line->setMinimumWidth(fontMetrics().averageCharWidth() * kLineCharacters);
  line->setMinimumHeight(fontMetrics().height());
  return line;
}

void TavNum::Arrange() {
  const Language language = numbering_.TipLanguage();
  cbo_tav_no_ = new QComboBox(this);
  SearchBehindBlanks(*cbo_tav_no_);
  cbo_tav_no_->setObjectName("cboTavNo");
  cbo_tav_no_->setAccessibleName(QtText(kActual.In(language)));
  cbo_tav_no_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  cbo_tav_no_->setMinimumContentsLength(6);
  connect(cbo_tav_no_, &QComboBox::currentIndexChanged, this, [this](int line) {
    numbering_.cboTavNo_Click(line);
    AfterEvent();
  });
  com_icon_ = new ConnectionSign(this);
  lbl_state_ = MakeLine("lbl_State");
  lbl_buffer_ = MakeLine("lbl_Buffer");
  lbl_note_ = MakeLine("lbl_Note");
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(kWideMargin);
  grid->setVerticalSpacing(10);
  auto* actual = new MutedLabel(QtText(kActual.In(language)), this);
  actual->setBuddy(cbo_tav_no_);
  grid->addWidget(actual, 0, 0);
  grid->addWidget(cbo_tav_no_, 0, 1);
  grid->addWidget(com_icon_, 0, 2);
  grid->addWidget(new MutedLabel(QtText(kNew.In(language)), this), 1, 0);
  auto* buttons = new QHBoxLayout;
  for (int number = 1; number <= kInets; ++number) {
    const std::string name = "cmd_TavNo_" + std::to_string(number);
    QPushButton* button = MakeButton(name.c_str(), std::to_string(number).c_str(),
                                     [this, number] { numbering_.cmd_TavNo_Click(number); });
    button->setAccessibleName(QtText(kNew.In(language)) + " " + QString::number(number));
    button->setFixedWidth(fontMetrics().averageCharWidth() * 6);
    cmd_tav_no_[number] = button;
    buttons->addWidget(button);
  }
  buttons->setSpacing(kButtonGap);
  grid->addLayout(buttons, 1, 1);
  // The sign has a size of its own: what is left of the width goes behind it.
  grid->setColumnStretch(3, 1);
  QVBoxLayout* column = MakeFixedColumn(kWideMargin);
  column->addLayout(grid);
  for (QLabel* line : {lbl_state_, lbl_buffer_, lbl_note_}) {
    column->addWidget(line);
  }
}

// A list that has not changed is not filled anew: it may be open.
void TavNum::UpdateWidgets() {
  const NumberingValues& now = numbering_.Values();
  QStringList lines;
  for (const int number : now.cboTavNo) {
    lines << QString::number(number) + "   ";
  }
  QStringList shown;
  for (int line = 0; line < cbo_tav_no_->count(); ++line) {
    shown << cbo_tav_no_->itemText(line);
  }
  {
    const QSignalBlocker quiet(cbo_tav_no_);
    if (shown != lines) {
      cbo_tav_no_->clear();
      cbo_tav_no_->addItems(lines);
    }
    cbo_tav_no_->setCurrentIndex(now.Selected);
  }
  cbo_tav_no_->setEnabled(now.IsListEnabled);
  for (int number = 1; number <= kInets; ++number) {
    cmd_tav_no_[number]->setEnabled(now.cmd_TavNo[number]);
  }
  com_icon_->setVisible(now.ComIcon);
  ShowText(*lbl_state_, now.lbl_State);
  ShowText(*lbl_buffer_, now.lbl_Buffer);
  ShowText(*lbl_note_, now.lbl_Note);
}

}  // namespace tavrel
