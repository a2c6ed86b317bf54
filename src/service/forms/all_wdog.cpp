#include "service/forms/all_wdog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>
#include <array>

#include "widgets/muted_label.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr int kResultGap = 6;
constexpr const char* kWidestPeriod = "> 3000000";
constexpr const char* kOutOfLimits = "out of limits !";

struct Limit {
  const char* caption;
  int milliseconds;
};
constexpr std::array kLimits = {Limit{"min.", WatchdogTest::kShortest},
                                Limit{"typ.", WatchdogTest::kTypical},
                                Limit{"max.", WatchdogTest::kLongest}};

}  // namespace

AllWdog::AllWdog(WatchdogTest& test, SteppedScreens& stepped)
    : ServiceForm(test, stepped, "All_Wdog"), test_(test) {
  const char* kWhat = "Watchdog timeout period  (ms)";
  lbl_delay_ = MakeValue("Lbl_delay", kWhat, kWidestPeriod);
  lbl_delay_->setFont(Sized(font(), 1.6));
  lbl_delay_->setMinimumWidth(lbl_delay_->fontMetrics().horizontalAdvance(kWidestPeriod));
  lbl_error_ = MakeValue("Lbl_error", "", kOutOfLimits);
  auto* results = new QVBoxLayout;
  results->setSpacing(kResultGap);
  results->addWidget(lbl_delay_);
  results->addWidget(lbl_error_);
  results->addStretch(1);
  auto* row = new QHBoxLayout;
  row->setSpacing(kWideMargin * 2);
  row->addLayout(results);
  row->addLayout(MakeLimits());
  cmd_again_ = MakeButton("Cmd_again", "repeat", [this] { test_.Cmd_again_Click(); });
  QBoxLayout* foot = MakeFoot();
  foot->addStretch(1);
  foot->addWidget(cmd_again_);
  QVBoxLayout* column = MakeFixedColumn(kWideMargin);
  column->addWidget(new MutedLabel(kWhat, this));
  column->addLayout(row);
  column->addLayout(foot);
}

QGridLayout* AllWdog::MakeLimits() {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(kNarrowMargin);
  grid->setVerticalSpacing(kResultGap);
  for (std::size_t place = 0; place < kLimits.size(); ++place) {
    const int row = static_cast<int>(place);
    auto* number = new MutedLabel(QString::number(kLimits.at(place).milliseconds), this);
    SpeakReading(*number, kLimits.at(place).caption);
    number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(new MutedLabel(kLimits.at(place).caption, this), row, 0);
    grid->addWidget(number, row, 1);
  }
  return grid;
}

void AllWdog::UpdateWidgets() {
  ServiceForm::UpdateWidgets();
  const WatchdogTestValues& now = test_.Values();
  ShowValue(*lbl_delay_, now.Lbl_delay);
  ShowIfAny(*lbl_error_, now.Lbl_error ? kOutOfLimits : "");
  const bool has_ended = now.Cmd_again && !cmd_again_->isEnabled();
  cmd_again_->setEnabled(now.Cmd_again);
  if (has_ended) {
    cmd_again_->setFocus();
  }
}

}  // namespace tavrel
