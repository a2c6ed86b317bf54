#include "work/pid_parameters.h"

#include <algorithm>

#include "base/element.h"
#include "base/number.h"
#include "dialogs/checks.h"
#include "link/register_access.h"
#include "link/registers.h"
#include "state/unfinished_work.h"
#include "state/user_language.h"
#include "work/work_texts.h"

namespace tavrel {
namespace {

constexpr const char* kControllerTitle = "controller";
constexpr int kTries = 2;
constexpr int kMostAttempts = 2 * kTries;

std::string TextOf(const PidParameter& parameter, std::int16_t raw) {
  return FormatMask(raw / parameter.PerUnit, parameter.Mask);
}

}  // namespace

void PidParameters::Open() {
  CloseNow();
  slot_ = parts_.state.SelSlot;
  cbo_ = 0;
  refused_ = 0;
  kept_.reset();
  boxes_ = {};
  if (!IsSlot(slot_)) {
    return;
  }
  OpenScreen();
  for (int box = 1; box <= kPidBoxes; ++box) {
    const PidParameter& parameter = kPidParameters[box];
    // Behind a time-out each further question would cost another one.
    const bool is_silent = box > 1 && parts_.link.ComResult == LinkResult::kTimeOut;
    const auto raw = is_silent ? std::nullopt : ReadParameter(parameter.Letter);
    if (raw) {
      parts_.unsure.Settle(Unit().UnitInet, parameter.Letter, Unit().UnitCtrl);
    }
    boxes_[box] = {raw ? TextOf(parameter, *raw) : kUnknownText, raw};
  }
}

const std::string& PidParameters::TBox(int index) const {
  return boxes_[index].Text();
}

void PidParameters::TBox_Change(int index, const std::string& text) {
  boxes_[index].SetText(text);
}

void PidParameters::Cbo_Click(int row) {
  const PidPreset* preset = ElementAt(kPidPresets, row);
  if (preset == nullptr) {
    return;
  }
  cbo_ = row;
  if (row == 0) {
    return;
  }
  for (int box = 1; box <= kPidBoxes; ++box) {
    boxes_[box].SetText(TextOf(kPidParameters[box], preset->Raw[box]));
  }
}

void PidParameters::CmdOK_Click() {
  refused_ = 0;
  if (!CheckAnswers(parts_.dialogs, parts_.link, Unit().UnitInet) || !CheckBoxes()) {
    return;
  }
  const bool to_send = AnyChanged() && parts_.dialogs.AskOk({"new parameters", kControllerTitle,
                                                             BoxIcon::kQuestion});
  if (!to_send || Transfer()) {
    Quit();
  }
}

bool PidParameters::CheckBoxes() {
  for (int box = 1; box <= kPidBoxes; ++box) {
    const PidParameter& parameter = kPidParameters[box];
    const double value = boxes_[box].Value(parameter.PerUnit);
    if (!CheckRange(parts_.dialogs, parameter.Name, value, parameter.Lower, parameter.Upper)) {
      refused_ = box;
      return false;
    }
  }
  return true;
}

bool PidParameters::IsChanged(int box) const {
  const auto told = boxes_[box].Acknowledged();
  return !told || *told != boxes_[box].Raw(kPidParameters[box].PerUnit);
}

bool PidParameters::AnyChanged() const {
  for (int box = 1; box <= kPidBoxes; ++box) {
    if (IsChanged(box)) {
      return true;
    }
  }
  return false;
}

// True if the instrument has all parameters. The instrument needs the wait to take them in
// before its controller starts again. What was not acknowledged may have arrived all the same,
// so the controller's state is brought back however far the exchange went.
bool PidParameters::Transfer() {
  if (!KeepState()) {
    ShowNotConnected(parts_.dialogs);
    return false;
  }
  const bool was_to_be_off = IsToBeOff();
  const UnfinishedWork change(parts_.state);
  const bool is_off = WriteParameter(reg::kControllerState, controller::kOff);
  const bool is_sent = is_off && SendChanged();
  if (is_off) {
    parts_.screens.Show(View::kTavWait);
  }
  if (was_to_be_off || IsToBeOff() || BringBack(kept_->controller_state)) {
    kept_.reset();
  }
  if (!is_sent) {
    ShowNotConnected(parts_.dialogs);
  }
  return is_sent;
}

// False if the state is not known. A controller that could not be brought back is off by this
// dialog alone: what it did before is still owed to it.
bool PidParameters::KeepState() {
  const auto state = ReadParameter(reg::kControllerState);
  if (!state || *state == kNoData) {
    return false;
  }
  if (!kept_ || *state != controller::kOff) {
    kept_ = Kept{*state, Unit().UnitRecOn == 1};
  }
  return true;
}

// The recording has come to its end while the form was open, and with it the controller's work.
bool PidParameters::IsToBeOff() const {
  const UnitRecord& unit = Unit();
  const bool has_ended = kept_ && kept_->is_recording && unit.UnitRecOn == 0 &&
                         unit.UnitEndAction == kSwitchControllerOff;
  return has_ended || parts_.stop_orders.IsWaiting(unit.UnitInet, unit.UnitCtrl);
}

bool PidParameters::SendChanged() {
  for (int box = 1; box <= kPidBoxes; ++box) {
    const PidParameter& parameter = kPidParameters[box];
    const std::int16_t raw = boxes_[box].Raw(parameter.PerUnit);
    if (!IsChanged(box)) {
      continue;
    }
    if (!WriteParameter(parameter.Letter, raw)) {
      Doubt(box, raw);
      return false;
    }
    parts_.unsure.Settle(Unit().UnitInet, parameter.Letter, Unit().UnitCtrl);
    boxes_[box].Acknowledge(raw);
  }
  return true;
}

void PidParameters::Doubt(int box, std::int16_t sent) {
  const PidParameter& parameter = kPidParameters[box];
  UnsureRegister unsure;
  unsure.Slot = slot_;
  unsure.Inet = Unit().UnitInet;
  unsure.Index = Unit().UnitCtrl;
  unsure.Letter = parameter.Letter;
  unsure.Name = parameter.Name;
  unsure.PerUnit = parameter.PerUnit;
  unsure.Mask = parameter.Mask;
  unsure.Sent = sent;
  unsure.Before = boxes_[box].Acknowledged();
  unsure.Box = &boxes_[box];
  parts_.unsure.Add(unsure);
  boxes_[box].Forget();
}

// True if it is in that state again.
bool PidParameters::BringBack(std::int16_t controller_state) {
  if (SwitchBack(controller_state) || controller_state == controller::kOff) {
    return true;
  }
  const Language language = UserLanguage(parts_.state);
  parts_.dialogs.Message(
      {work_text::kIsOff.Text(language), work_text::kController.Text(language), BoxIcon::kWarning});
  return false;
}

// Tries it twice. A try that the late reply to another one kept off the line does not count.
bool PidParameters::SwitchBack(std::int16_t controller_state) {
  int sent = 0;
  for (int attempt = 0; attempt < kMostAttempts && sent < kTries; ++attempt) {
    if (WriteParameter(reg::kControllerState, controller_state)) {
      return true;
    }
    sent += parts_.link.ComResult == LinkResult::kLength ? 0 : 1;
  }
  return false;
}

std::optional<std::int16_t> PidParameters::ReadParameter(const char* letter) {
  return Read(parts_.link, Register{Unit().UnitInet, letter, Unit().UnitCtrl}).Word();
}

bool PidParameters::WriteParameter(const char* letter, std::int16_t value) {
  const Register to{Unit().UnitInet, letter, Unit().UnitCtrl};
  return IsGood(Write(parts_.link, to, value));
}

void PidParameters::CloseNow() {
  parts_.unsure.Leave(boxes_.Values);
  CloseScreen();
}

}  // namespace tavrel
