#include "work/forms/tav_ctrl.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace tavrel {
namespace {

constexpr int kMargin = 20;
constexpr int kGap = 8;
constexpr int kGapOfGroups = 12;

}  // namespace

TavCtrl::TavCtrl(ControllerSettings& settings)
    : ModalForm("TavCtrl", " Controller"), settings_(settings) {
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
  QPushButton* pid = MakeButton("cmdPID", "PID", &ControllerSettings::cmdPID_Click);
  pid->setAccessibleName("PID parameters");
  pid->setEnabled(settings.HasPid());
  buttons->addWidget(pid);
  buttons->addStretch(1);
  QPushButton* ok = MakeButton("CmdOK", "OK", &ControllerSettings::CmdOK_Click);
  ok->setDefault(true);
  buttons->addWidget(ok);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  column->setSpacing(kMargin);
  column->addLayout(grid);
  column->addLayout(buttons);
  column->setSizeConstraint(QLayout::SetFixedSize);
  boxes_.front()->setFocus();
}

void TavCtrl::AddBox(QGridLayout& grid, int index, const QString& caption) {
  const int row = grid.rowCount();
  auto* label = new QLabel(caption, this);
  label->setObjectName(QString("Label_%1").arg(index));
  label->setTextFormat(Qt::PlainText);
  auto* box = new NumberEdit(QString("TBox_%1").arg(index), this);
  box->setAccessibleName(caption.simplified());
  label->setBuddy(box);
  connect(box, &QLineEdit::textEdited, this, [this, index](const QString& text) {
    settings_.TBox_Change(index, text.toStdString());
    AfterEvent();
  });
  connect(box, &NumberEdit::Left, this, [this, index] {
    settings_.TBox_LostFocus(index);
    AfterEvent();
  });
  grid.addWidget(label, row, 0, Qt::AlignRight | Qt::AlignVCenter);
  grid.addWidget(box, row, 1);
  boxes_.at(static_cast<std::size_t>(index)) = box;
}

QPushButton* TavCtrl::MakeButton(const char* name, const char* caption,
                                 void (ControllerSettings::*press)()) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(name);
  button->setAccessibleName(caption);
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, [this, press] {
    (settings_.*press)();
    AfterEvent();
    GoToRefused();
  });
  return button;
}

// The keyboard is where the user has to correct something.
void TavCtrl::GoToRefused() {
  if (settings_.IsOpen() && settings_.RefusedBox() >= 0) {
    NumberEdit* box = boxes_.at(static_cast<std::size_t>(settings_.RefusedBox()));
    box->setFocus();
    box->selectAll();
  }
}

void TavCtrl::Show() {
  for (int index = 0; index < kControllerBoxes; ++index) {
    boxes_.at(static_cast<std::size_t>(index))->ShowText(settings_.TBox(index));
  }
}

}  // namespace tavrel
