#include "service/forms/all_com.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/muted_label.h"

namespace tavrel {
namespace {

constexpr const char* kWidestCount = "4294967295";
constexpr int kRowGap = 8;
constexpr int kGap = 1;  // column between writes and reads

std::string Decimal(std::uint32_t count) {
  return std::to_string(count);
}

}  // namespace

AllCom::AllCom(CommunicationTest& test, SteppedScreens& stepped)
    : ServiceForm(test, stepped, "ALL_COM"), test_(test) {
  QPushButton* reset = MakeButton("CmdReset", "Reset", [this] { test_.CmdReset_Click(); });
  QBoxLayout* foot = MakeFoot();
  foot->addStretch(1);
  foot->addWidget(reset);
  QVBoxLayout* column = MakeFixedColumn(kWideMargin);
  column->addLayout(MakeCounters());
  column->addLayout(foot);
  ShowTips(kCommunicationTips, test_.TipLanguage());
  reset->setFocus();
}

// The captions in one column, the values in the next one.
void AllCom::AddCounters(QGridLayout& grid, int column, const char* name,
                         std::span<const char* const> captions, std::span<QLabel*> values) {
  for (std::size_t place = 0; place < values.size(); ++place) {
    const int row = static_cast<int>(place);
    const QString spoken =
        row == 0 ? QString(captions[0]) : QString("%1 %2").arg(captions[0], captions[place]);
    values[place] = MakeValue(QString("%1_%2").arg(name).arg(row), spoken, kWidestCount);
    grid.addWidget(new MutedLabel(captions[place], this), row, column);
    grid.addWidget(values[place], row, column + 1);
  }
}

QGridLayout* AllCom::MakeCounters() {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(kNarrowMargin);
  grid->setVerticalSpacing(kRowGap);
  AddCounters(*grid, 0, "Lbl_W", kWriteCaptions, lbl_w_);
  AddCounters(*grid, kGap + 2, "Lbl_R", kReadCaptions, lbl_r_);
  grid->setColumnMinimumWidth(kGap + 1, kWideMargin);
  const int last = static_cast<int>(kReadCaptions.size()) - 1;
  lbl_f_ = AddValue(*grid, last, 0, "Lbl_F", "Failures:");
  grid->setRowMinimumHeight(last + 1, kRowGap);
  AddFaults(*grid, last + 2);
  return grid;
}

QLabel* AllCom::AddValue(QGridLayout& grid, int row, int column, const char* name,
                         const char* caption) {
  QLabel* value = MakeValue(name, caption, kWidestCount);
  grid.addWidget(new MutedLabel(caption, this), row, column);
  grid.addWidget(value, row, column + 1);
  return value;
}

// The last faults, which keep their place while there is none.
void AllCom::AddFaults(QGridLayout& grid, int row) {
  lbl_is_ = AddValue(grid, row, 0, "Lbl_is", "is:");
  lbl_should_ = AddValue(grid, row, kGap + 2, "Lbl_should", "should be:");
  lbl_reply_ = MakeValue("Lbl_reply", "reply:", "");
  grid.addWidget(new MutedLabel("reply:", this), row + 1, 0);
  grid.addWidget(lbl_reply_, row + 1, 1, 1, -1);
}

void AllCom::UpdateWidgets() {
  ServiceForm::UpdateWidgets();
  const CommunicationValues& now = test_.Values();
  for (std::size_t place = 0; place < lbl_w_.size(); ++place) {
    ShowValue(*lbl_w_.at(place), Decimal(now.Lbl_W.at(place)));
  }
  for (std::size_t place = 0; place < lbl_r_.size(); ++place) {
    ShowValue(*lbl_r_.at(place), Decimal(now.Lbl_R.at(place)));
  }
  ShowValue(*lbl_f_, Decimal(now.Lbl_F));
  ShowIfAny(*lbl_is_, now.Lbl_is);
  ShowIfAny(*lbl_should_, now.Lbl_should);
  ShowValue(*lbl_reply_, now.Lbl_reply);
}

}  // namespace tavrel
