#include "work/forms/tav_pid.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "widgets/muted_label.h"

namespace tavrel {
namespace {

constexpr int kMargin = 20;
constexpr int kGap = 8;
constexpr int kGapOfGroups = 12;

}  // namespace

TavPid::TavPid(PidParameters& parameters)
    : ModalForm("TavPid", " PID  -  Parameters"), parameters_(parameters) {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(kGapOfGroups);
  grid->setVerticalSpacing(kGap);
  MakeList(*grid);
  for (int index = 1; index <= kPidBoxes; ++index) {
    AddBox(*grid, index);
  }
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  column->setSpacing(kMargin);
  column->addLayout(grid);
  column->addWidget(MakeOk(), 0, Qt::AlignRight);
  column->setSizeConstraint(QLayout::SetFixedSize);
  boxes_.front()->setFocus();
}

void TavPid::MakeList(QGridLayout& grid) {
  auto* label = new QLabel("recommended  for  ...", this);
  cbo_ = new QComboBox(this);
  cbo_->setObjectName("Cbo");
  cbo_->setAccessibleName("recommended for");
  label->setBuddy(cbo_);
  for (const PidPreset& preset : kPidPresets) {
    cbo_->addItem(preset.Text);
  }
  connect(cbo_, &QComboBox::activated, this, [this](int row) {
    parameters_.Cbo_Click(row);
    AfterEvent();
  });
  grid.addWidget(label, 0, 0);
  grid.addWidget(cbo_, 0, 1, 1, 2);
  grid.setRowMinimumHeight(1, kGapOfGroups);
}

void TavPid::AddBox(QGridLayout& grid, int index) {
  const PidParameter& parameter = kPidParameters.at(static_cast<std::size_t>(index - 1));
  const int row = grid.rowCount();
  auto* label = new QLabel(parameter.Label, this);
  label->setObjectName(QString("Label_%1").arg(index));
  label->setTextFormat(Qt::PlainText);
  auto* box = new NumberEdit(QString("TBox_%1").arg(index), this);
  box->setAccessibleName(label->text().simplified());
  label->setBuddy(box);
  connect(box, &QLineEdit::textEdited, this, [this, index](const QString& text) {
    parameters_.TBox_Change(index, text.toStdString());
    AfterEvent();
  });
  grid.addWidget(label, row, 0);
  grid.addWidget(box, row, 1);
  grid.addWidget(new MutedLabel(parameter.Unit, this), row, 2);
  boxes_.at(static_cast<std::size_t>(index - 1)) = box;
}

QPushButton* TavPid::MakeOk() {
  auto* ok = new QPushButton("OK", this);
  ok->setObjectName("CmdOK");
  ok->setAccessibleName("OK");
  ok->setDefault(true);
  connect(ok, &QPushButton::clicked, this, &TavPid::PressOk);
  return ok;
}

// The keyboard is where the user has to correct something.
void TavPid::PressOk() {
  parameters_.CmdOK_Click();
  AfterEvent();
  const int refused = parameters_.RefusedBox();
  if (parameters_.IsOpen() && refused >= 1) {
    NumberEdit* box = boxes_.at(static_cast<std::size_t>(refused - 1));
    box->setFocus();
    box->selectAll();
  }
}

void TavPid::Show() {
  cbo_->setCurrentIndex(parameters_.Cbo());
  for (int index = 1; index <= kPidBoxes; ++index) {
    boxes_.at(static_cast<std::size_t>(index - 1))->ShowText(parameters_.TBox(index));
  }
}

}  // namespace tavrel
