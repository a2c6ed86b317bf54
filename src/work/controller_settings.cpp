#include "work/controller_settings.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "base/number.h"
#include "base/units.h"
#include "dialogs/checks.h"
#include "link/register_access.h"
#include "link/registers.h"

namespace tavrel {

// A register of the dialog, its copy in the header and the box that stands for it.
struct ControllerField {
  const char* letter;
  std::int16_t UnitRecord::*header;
  int box;
  const char* name;  // to the user
};

namespace {

constexpr ControllerField kUpper{reg::kUpperLimit, &UnitRecord::UnitUpper, kUpperBox,
                                 "upper limit"};
constexpr ControllerField kFinal{reg::kFinalValue, &UnitRecord::UnitFinal, kFinalBox,
                                 "final value"};
constexpr ControllerField kIncrementField{reg::kIncrement, &UnitRecord::UnitIncrement,
                                          kSecondIncrementBox, "increment"};
constexpr ControllerField kSetpointField{reg::kSetpoint, &UnitRecord::UnitSetpoint, kSetpointBox,
                                         "setpoint"};
constexpr ControllerField kLower{reg::kLowerLimit, &UnitRecord::UnitLower, kLowerBox,
                                 "lower limit"};

constexpr std::array kReadOrder = {kSetpointField, kUpper, kFinal, kIncrementField, kLower};
constexpr std::array kWriteOrder = {kUpper, kFinal, kIncrementField, kSetpointField, kLower};

constexpr double kGap = 10;  // degrees between a limit and what it limits
constexpr const char* kTemperatureMask = "####0.0";

template <typename T>
using ByIncrementBox = Numbered<T, kFirstIncrementBox, kSecondIncrementBox>;

// The two boxes of the increment, by the kind of the instruments. The register has `per_unit`
// steps in a unit of each box.
struct IncrementUnits {
  ByIncrementBox<double> per_unit;
  ByIncrementBox<const char*> mask;
  ByIncrementBox<const char*> caption;
  const char* name = nullptr;  // in the box of the range check
};

// Steps of 0.01 degrees per second: degrees per minute and per second.
constexpr IncrementUnits kPerSecond{{1 / 0.6, 100},
                                    {"####0.00", "####0.00"},
                                    {"increment     °C / min", "increment     °C / sec"},
                                    "increment (°C/sec)"};
// Steps of 0.1 degrees per hour: degrees per hour and per minute.
constexpr IncrementUnits kPerHour{{10, 600},
                                  {"####0.0", "####0.000"},
                                  {"increment     °C / h", "increment     °C / min"},
                                  "increment (°C/h)"};

const IncrementUnits& UnitsOf(bool hourly) {
  return hourly ? kPerHour : kPerSecond;
}

bool IsIncrementBox(int box) {
  return box == kFirstIncrementBox || box == kSecondIncrementBox;
}

double PerUnit(bool hourly, int box) {
  return IsIncrementBox(box) ? UnitsOf(hourly).per_unit[box] : kStepsPerDegree;
}

const char* MaskOf(bool hourly, int box) {
  return IsIncrementBox(box) ? UnitsOf(hourly).mask[box] : kTemperatureMask;
}

}  // namespace

void ControllerSettings::Open() {
  CloseNow();
  slot_ = parts_.state.SelSlot;
  hourly_ = parts_.state.Settings.VerType.starts_with('H');
  boxes_ = {};
  edited_increment_ = -1;
  refused_ = -1;
  ctrl_failed_ = false;
  if (!IsSlot(slot_)) {
    return;
  }
  OpenScreen();
  bool is_silent = false;
  for (const ControllerField& field : kReadOrder) {
    if (is_silent) {
      ShowUnknown(field);
    } else {
      is_silent = !ReadField(field);
    }
  }
}

// False if the instrument is silent: each further question would cost a time-out and the time that
// the line needs behind it. Other failures are those of one register.
bool ControllerSettings::ReadField(const ControllerField& field) {
  const Register from{Unit().UnitInet, field.letter, Unit().UnitCtrl};
  const Reading reading = Read(parts_.link, from);
  if (reading.IsGood()) {
    parts_.unsure.Settle(from.inet, field.letter, from.index);
    Unit().*field.header = reading.word;
    ShowField(field, reading.word);
    return true;
  }
  ShowUnknown(field);
  return reading.status != LinkResult::kTimeOut;
}

void ControllerSettings::ShowUnknown(const ControllerField& field) {
  ctrl_failed_ = true;
  boxes_[field.box] = {kUnknownText, std::nullopt};
  if (field.box == kSecondIncrementBox) {
    boxes_[kFirstIncrementBox] = {kUnknownText, std::nullopt};
  }
}

void ControllerSettings::ShowField(const ControllerField& field, std::int16_t raw) {
  const auto show = [this, raw](int box) {
    const double value = raw / PerUnit(hourly_, box);
    boxes_[box] = {FormatMask(value, MaskOf(hourly_, box)), raw};
  };
  show(field.box);
  if (field.box == kSecondIncrementBox) {
    show(kFirstIncrementBox);
  }
}

const std::string& ControllerSettings::TBox(int index) const {
  return boxes_[index].Text();
}

const char* ControllerSettings::IncrementCaption(int index) const {
  return UnitsOf(hourly_).caption[index];
}

void ControllerSettings::TBox_Change(int index, const std::string& text) {
  NumberBox& box = boxes_[index];
  if (text == box.Text()) {
    return;
  }
  box.SetText(text);
  if (IsIncrementBox(index)) {
    edited_increment_ = index;
  }
}

// Both boxes show one value. A box that shows what it showed at opening brings the other one
// back to that, too, so that nothing is lost by the fewer digits of the texts.
void ControllerSettings::TBox_LostFocus(int index) {
  if (index != edited_increment_ || !IsIncrementBox(index)) {
    return;
  }
  edited_increment_ = -1;
  const int other = index == kFirstIncrementBox ? kSecondIncrementBox : kFirstIncrementBox;
  const double value = Value(index);
  if (!std::isnan(value)) {
    const double shown = value * PerUnit(hourly_, index) / PerUnit(hourly_, other);
    boxes_[other].SetText(FormatMask(shown, MaskOf(hourly_, other)));
  }
}

double ControllerSettings::Value(int box) const {
  return boxes_[box].Value(PerUnit(hourly_, box));
}

// What another box is limited by. One without a number counts as 0, so that it is refused by its
// own name and not by that of its neighbour.
double ControllerSettings::Limit(int box) const {
  const double value = Value(box);
  return std::isnan(value) ? 0 : value;
}

bool ControllerSettings::Check(int box, const char* name) {
  const Limits limits = LimitsOf(box);
  if (CheckRange(parts_.dialogs, name, Value(box), limits.Lower, limits.Upper)) {
    return true;
  }
  refused_ = box;
  return false;
}

Limits ControllerSettings::LimitsOf(int box) const {
  // Sums of tenths of a degree: what is beyond the ninth digit is none of the user's.
  const auto tidy = [](double limit) { return std::round(limit * 1e6) / 1e6; };
  const ByIncrementBox<double>& per_unit = UnitsOf(hourly_).per_unit;
  switch (box) {
    case kUpperBox:
      return {tidy(Limit(kFinalBox) + kGap), 1100};
    case kFirstIncrementBox:  // the same in the other unit
      return {0, tidy(per_unit[kSecondIncrementBox] / per_unit[kFirstIncrementBox])};
    case kSecondIncrementBox:
      return {0, 1};
    case kLowerBox:
      return {-500, tidy(std::min(Limit(kSetpointBox) - kGap, 500.0))};
    default:
      return {tidy(Limit(kLowerBox) + kGap), tidy(std::min(Limit(kUpperBox) - kGap, 1000.0))};
  }
}

bool ControllerSettings::CheckBoxes() {
  return Check(kUpperBox, kUpper.name) && Check(kFinalBox, kFinal.name) &&
         Check(kSecondIncrementBox, UnitsOf(hourly_).name) &&
         Check(kSetpointBox, kSetpointField.name) && Check(kLowerBox, kLower.name);
}

void ControllerSettings::CmdOK_Click() {
  refused_ = -1;
  TBox_LostFocus(edited_increment_);
  if (!CheckAnswers(parts_.dialogs, parts_.link, Unit().UnitInet) || !CheckBoxes()) {
    return;
  }
  for (const ControllerField& field : kWriteOrder) {
    if (!SendField(field)) {
      static_cast<void>(CheckConnected(parts_.dialogs, parts_.link, Unit().UnitInet));
      return;
    }
  }
  parts_.state.SlotDirty[slot_] = true;
  Quit();
}

// True if the instrument has the value of the box. One that the instrument is not known to hold
// is sent in any case.
bool ControllerSettings::SendField(const ControllerField& field) {
  NumberBox& box = boxes_[field.box];
  const std::int16_t raw = box.Raw(PerUnit(hourly_, field.box));
  if (box.Acknowledged() == raw) {
    return true;
  }
  const Register to{Unit().UnitInet, field.letter, Unit().UnitCtrl};
  if (!IsGood(Write(parts_.link, to, raw))) {
    Doubt(field, raw);
    return false;
  }
  parts_.unsure.Settle(to.inet, field.letter, to.index);
  Unit().*field.header = raw;
  box.Acknowledge(raw);
  parts_.state.SlotDirty[slot_] = true;
  return true;
}

void ControllerSettings::Doubt(const ControllerField& field, std::int16_t sent) {
  NumberBox& box = boxes_[field.box];
  UnsureRegister unsure;
  unsure.Slot = slot_;
  unsure.Inet = Unit().UnitInet;
  unsure.Index = Unit().UnitCtrl;
  unsure.Letter = field.letter;
  unsure.Name = field.name;
  unsure.PerUnit = PerUnit(hourly_, field.box);
  unsure.Mask = MaskOf(hourly_, field.box);
  unsure.Sent = sent;
  unsure.Before = box.Acknowledged();
  unsure.HeaderCopy = field.header;
  unsure.Box = &box;
  parts_.unsure.Add(unsure);
  box.Forget();
}

void ControllerSettings::cmdPID_Click() {
  parts_.screens.Show(View::kTavPid);
}

void ControllerSettings::CloseNow() {
  parts_.unsure.Leave(boxes_.Values);
  CloseScreen();
}

}  // namespace tavrel
