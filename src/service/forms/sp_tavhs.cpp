#include "service/forms/sp_tavhs.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace tavrel {
namespace {

constexpr const char* kNotes =
    "notes:\n\n"
    "a)   after switching on the Tavrel\n"
    "      wait for a startup-delay of 25s \n"
    "b)   inputs 1..4 must be closed by\n"
    "      short-circuit  or  thermocouple\n"
    "c)   common supply  (watchdog)\n"
    "      must always be switched on";

constexpr int kFrameGap = 8;  // four frames beside each other fit a screen of 640 points
constexpr const char* kPleaseWait = "Please wait ...";

Lamp::State StateOf(OutputLamp lamp) {
  switch (lamp) {
    case OutputLamp::kOn:
      return Lamp::State::kOn;
    case OutputLamp::kOff:
      return Lamp::State::kOff;
    case OutputLamp::kUnknown:
      break;
  }
  return Lamp::State::kUnknown;
}

}  // namespace

SpTavHs::SpTavHs(OutputTest& test, SteppedScreens& stepped)
    : ServiceForm(test, stepped, "SP_TavHS"), test_(test) {
  auto* frames = new QHBoxLayout;
  frames->setSpacing(kFrameGap);
  for (int ctrl = 1; ctrl <= kControllers; ++ctrl) {
    frames->addWidget(MakeChannel(ctrl));
  }
  auto* below = new QHBoxLayout;
  below->setSpacing(kNarrowMargin);
  below->addWidget(MakeNotes(), 1);
  below->addWidget(MakeWatchdog(), 0, Qt::AlignTop);
  lb_wait_ = new QLabel(this);
  lb_wait_->setObjectName("lbWait");
  lb_wait_->setMinimumWidth(fontMetrics().horizontalAdvance(kPleaseWait) + kNarrowMargin);
  auto* instrument = new QLabel(QtText(test_.Instrument()), this);
  instrument->setObjectName("LblInstrument");
  QBoxLayout* foot = MakeFoot();
  foot->addWidget(lb_wait_);
  foot->addStretch();
  foot->addWidget(instrument);
  QVBoxLayout* column = MakeFixedColumn(kListMargin);
  column->addLayout(frames);
  column->addLayout(below);
  column->addLayout(foot);
  channels_[1].options[int(OutputOption::kOff)]->setFocus();
}

QWidget* SpTavHs::MakeChannel(int ctrl) {
  Channel& channel = channels_[ctrl];
  channel.frame = new QGroupBox(QString(" %1 ").arg(ctrl), this);
  channel.frame->setObjectName(QString("Opt%1").arg(ctrl));
  channel.heater = MakeLamp(ctrl, OutputOption::kHeater);
  channel.safety = MakeLamp(ctrl, OutputOption::kSafety);
  auto* grid = new QGridLayout(channel.frame);
  grid->setHorizontalSpacing(kFrameGap);
  for (int index = 0; index < kOutputOptions; ++index) {
    const char* caption = kOutputOptionNames[index];
    auto* option = new QRadioButton(caption, channel.frame);
    option->setObjectName(QString("Opt%1_%2").arg(ctrl).arg(index));
    option->setAccessibleName(QString("output %1 %2").arg(ctrl).arg(caption));
    connect(option, &QRadioButton::clicked, this, [this, ctrl, index] {
      test_.Opt_Click(ctrl, static_cast<OutputOption>(index));
      AfterEvent();
    });
    channel.options[index] = option;
    grid->addWidget(option, index, 0);
  }
  grid->addWidget(channel.heater, int(OutputOption::kHeater), 1);
  grid->addWidget(channel.safety, int(OutputOption::kSafety), 1);
  return channel.frame;
}

Lamp* SpTavHs::MakeLamp(int ctrl, OutputOption option) {
  const int index = static_cast<int>(option);
  const char* what = kOutputOptionNames[index];
  return new Lamp(QString("LedOn%1_%2").arg(ctrl).arg(index),
                  QString("lamp %1 %2").arg(ctrl).arg(what), channels_[ctrl].frame);
}

// The common supply is always on.
QWidget* SpTavHs::MakeWatchdog() {
  auto* frame = new QGroupBox("Watchdog", this);
  auto* lamp = new Lamp("LedOnW", "lamp Watchdog", frame);
  lamp->Show(Lamp::State::kOn);
  auto* column = new QVBoxLayout(frame);
  column->addWidget(lamp, 0, Qt::AlignHCenter);
  return frame;
}

QWidget* SpTavHs::MakeNotes() {
  auto* notes = new QLabel(kNotes, this);
  notes->setObjectName("LblNotes");
  notes->setTextFormat(Qt::PlainText);
  return notes;
}

void SpTavHs::UpdateWidgets() {
  ServiceForm::UpdateWidgets();
  for (int ctrl = 1; ctrl <= kControllers; ++ctrl) {
    const Channel& channel = channels_[ctrl];
    channel.options[int(test_.Chosen(ctrl))]->setChecked(true);
    channel.heater->Show(StateOf(test_.HeaterLamp(ctrl)));
    channel.safety->Show(StateOf(test_.SafetyLamp(ctrl)));
  }
  ShowText(*lb_wait_, test_.lbWait() ? kPleaseWait : "");
}

}  // namespace tavrel
