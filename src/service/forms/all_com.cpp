#include "service/forms/all_com.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/muted_label.h"

namespace tavrel {
namespace {

constexpr const char* kWidestCount = "4294967295";
constexpr const char* kWidestWord = "DDDD";
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
  column->addLayout(MakeFaults());
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
  AddCounters(*grid, 0, "Lbl_W", kWriteCaptions, lbl_w_);
  AddCounters(*grid, kGap + 2, "Lbl_R", kReadCaptions, lbl_r_);
  grid->setColumnMinimumWidth(kGap + 1, kWideMargin);
  const int last = static_cast<int>(kReadCaptions.size()) - 1;
  lbl_f_ = MakeValue("Lbl_F", "Failures:", kWidestCount);
  grid->addWidget(new MutedLabel("Failures:", this), last, 0);
  grid->addWidget(lbl_f_, last, 1);
  return grid;
}

// The last faults, which keep their place while there is none.
QGridLayout* AllCom::MakeFaults() {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(kNarrowMargin);
  lbl_is_ = MakeValue("Lbl_is", "is:", kWidestWord);
  lbl_should_ = MakeValue("Lbl_should", "should be:", kWidestWord);
  lbl_reply_ = MakeValue("Lbl_reply", "reply:", "");
  lbl_reply_->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  grid->addWidget(new MutedLabel("is:", this), 0, 0);
  grid->addWidget(lbl_is_, 0, 1);
  grid->addWidget(new MutedLabel("should be:", this), 0, 3);
  grid->addWidget(lbl_should_, 0, 4);
  grid->addWidget(new MutedLabel("reply:", this), 1, 0);
  grid->addWidget(lbl_reply_, 1, 1, 1, 5);
  grid->setColumnMinimumWidth(2, kWideMargin);
  grid->setColumnStretch(5, 1);
  return grid;
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
