#include "work/forms/tav_ctrl.h"

#include <QGridLayout>
#include <QPushButton>

namespace tavrel {
namespace {

constexpr int kGap = 8;
constexpr int kGapOfGroups = 12;

}  // namespace

TavCtrl::TavCtrl(ControllerSettings& settings)
    : ModalForm(settings, "TavCtrl", " Controller"), settings_(settings) {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(kGapOfGroups);
  grid->setVerticalSpacing(kGap);
  AddBox(*grid, kUpperBox, "upper limit     °C");
  AddBox(*grid, kFinalBox, "final value     °C");
  for (const int index : {kFirstIncrementBox, kSecondIncrementBox}) {
    AddBox(*grid, index, QtText(settings.IncrementCaption(index)));
  }
  AddBox(*grid, kSetpointBox, "setpoint     °C");
  AddBox(*grid, kLowerBox, "lower limit     °C");
  auto* buttons = new QHBoxLayout;
  QPushButton* pid = MakeButton("cmdPID", "PID", [this] { settings_.cmdPID_Click(); });
  pid->setAccessibleName("PID parameters");
  pid->setEnabled(settings.HasPid());
  buttons->addWidget(pid);
  buttons->addStretch(1);
  buttons->addLayout(MakeOkAndCancel([this] {
    settings_.CmdOK_Click();
    UpdateWidgets();
    GoToRefused();
  }));
  QVBoxLayout* column = MakeFixedColumn(kWideMargin);
  column->addLayout(grid);
  column->addLayout(buttons);
  boxes_[kUpperBox]->setFocus();
}

void TavCtrl::AddBox(QGridLayout& grid, int index, const QString& caption) {
  NumberEdit* box =
      AddNumberBox(grid, index, caption, Qt::AlignRight,
                   [this, index](const std::string& text) { settings_.TBox_Change(index, text); });
  connect(box, &NumberEdit::Left, this, [this, index] {
    settings_.TBox_LostFocus(index);
    AfterEvent();
  });
  boxes_[index] = box;
}

// The keyboard is where the user has to correct something.
void TavCtrl::GoToRefused() {
  if (settings_.IsOpen() && settings_.RefusedBox() >= 0) {
    NumberEdit* box = boxes_[settings_.RefusedBox()];
    box->setFocus();
    box->selectAll();
  }
}

void TavCtrl::UpdateWidgets() {
  for (int index = 0; index < kControllerBoxes; ++index) {
    ShowText(*boxes_[index], settings_.TBox(index));
    boxes_[index]->setToolTip(QtText(RangeText(settings_.LimitsOf(index))));
  }
}

}  // namespace tavrel
