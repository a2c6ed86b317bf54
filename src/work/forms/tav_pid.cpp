#include "work/forms/tav_pid.h"

#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "dialogs/checks.h"
#include "widgets/list_search.h"
#include "widgets/muted_label.h"

namespace tavrel {
namespace {

constexpr int kLineGap = 8;
constexpr int kPidGroupGap = 12;

}  // namespace

TavPid::TavPid(PidParameters& parameters)
    : ModalForm(parameters, "TavPid", " PID  -  Parameters"), parameters_(parameters) {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(kPidGroupGap);
  grid->setVerticalSpacing(kLineGap);
  MakeList(*grid);
  for (int index = 1; index <= kPidBoxes; ++index) {
    AddBox(*grid, index);
  }
  QVBoxLayout* column = MakeFixedColumn(kWideMargin);
  column->addLayout(grid);
  column->addLayout(MakeOkAndCancel([this] { PressOk(); }));
  boxes_[1]->setFocus();
}

void TavPid::MakeList(QGridLayout& grid) {
  auto* label = new QLabel("recommended  for  ...", this);
  cbo_ = new QComboBox(this);
  SearchBehindBlanks(*cbo_);
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
  grid.setRowMinimumHeight(1, kPidGroupGap);
}

void TavPid::AddBox(QGridLayout& grid, int index) {
  const PidParameter& parameter = kPidParameters[index];
  NumberEdit* box = AddNumberBox(
      grid, index, parameter.Label, Qt::AlignLeft,
      [this, index](const std::string& text) { parameters_.TBox_Change(index, text); });
  box->setToolTip(QtText(RangeText({parameter.Lower, parameter.Upper})));
  boxes_[index] = box;
  grid.addWidget(new MutedLabel(parameter.Unit, this), grid.rowCount() - 1, 2);
}

// The keyboard is where the user has to correct something.
void TavPid::PressOk() {
  parameters_.CmdOK_Click();
  UpdateWidgets();
  const int refused = parameters_.RefusedBox();
  if (parameters_.IsOpen() && refused >= 1) {
    NumberEdit* box = boxes_[refused];
    box->setFocus();
    box->selectAll();
  }
}

void TavPid::UpdateWidgets() {
  cbo_->setCurrentIndex(parameters_.Cbo());
  for (int index = 1; index <= kPidBoxes; ++index) {
    ShowText(*boxes_[index], parameters_.TBox(index));
  }
}

}  // namespace tavrel
