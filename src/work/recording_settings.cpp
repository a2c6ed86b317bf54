#include "work/recording_settings.h"

#include <algorithm>
#include <cmath>

#include "base/number.h"
#include "base/units.h"
#include "dialogs/checks.h"
#include "files/recording_format.h"
#include "platform/file_system.h"
#include "state/box_titles.h"

namespace tavrel {
namespace {

constexpr std::array<std::string_view, 4> kFastSampling = {" 1", " 2", " 3", " 6"};
constexpr std::array<std::string_view, 9> kSampling = {" 10",  " 20",  " 30",   " 60",  " 120",
                                                       " 300", " 600", " 1800", " 3600"};

constexpr double kLongestSampling = 3600;  // seconds
constexpr double kNormalStep = 10;         // seconds; a normal instrument counts in tens of them
constexpr double kMostStopHours = 500;     // minutes of the limit are a word of the header
constexpr double kLeastStopHours = 0.01;
constexpr int kEndActions = static_cast<int>(kEndActionItems.size());

std::string HoursText(double hours) {
  return FormatAuto(static_cast<float>(std::clamp(hours, 0.0, 1e9)));
}

bool IsFast(const UnitRecord& unit) {
  return unit.UnitFast == 1;
}

}  // namespace

void RecordingSettings::RunNewFile() {
  Run(true);
}

void RecordingSettings::RunSettings() {
  Run(false);
}

void RecordingSettings::Run(bool new_mode) {
  const int slot = parts_.state.SelSlot;
  if (!IsSlot(slot)) {
    return;
  }
  slot_ = slot;
  values_ = RecordingSettingsValues();
  values_.RecNewMode = new_mode;
  if (new_mode) {
    ShowSampling();
  } else {
    ShowSettings();
  }
  OpenScreen();
  parts_.screens.Show(View::kTavRec);
  CloseScreen();
}

void RecordingSettings::ShowSampling() {
  values_.Caption = "new  file";
  if (IsFast(Unit())) {
    values_.SamplItems.assign(kFastSampling.begin(), kFastSampling.end());
  }
  values_.SamplItems.insert(values_.SamplItems.end(), kSampling.begin(), kSampling.end());
  values_.Cbo_Sampl = FormatMask(RecInterval(), "#####");
  ShowHours();
}

void RecordingSettings::ShowHours() {
  const double seconds = ReadNumber(values_.Cbo_Sampl);
  values_.Lbl_max = HoursText(MaxFileHours(Unit().UnitChannels, seconds));
  values_.Lbl_Auto = HoursText(AutonomyHours(seconds));
}

void RecordingSettings::ShowSettings() {
  values_.Caption = "data  acquisition";
  values_.Lbl_Auto = HoursText(AutonomyHours(RecInterval()));
  const int action = Unit().UnitEndAction;
  values_.Cbo_Func = action >= 0 && action < kEndActions ? action : 0;
  values_.Txt_Stop = HoursText(StopHours());
  stop_at_opening_ = values_.Txt_Stop;
  func_at_opening_ = values_.Cbo_Func;
}

// Without a limit a file takes all that it can hold.
double RecordingSettings::StopHours() const {
  const int minutes = Unit().UnitMaxMinutes;
  return minutes < 1 ? MaxFileHours(Unit().UnitChannels, RecInterval()) : minutes / kMinutesPerHour;
}

void RecordingSettings::Cbo_Sampl_Change(const std::string& text) {
  values_.Cbo_Sampl = text;
  ShowHours();
}

void RecordingSettings::Txt_Stop_Change(const std::string& text) {
  values_.Txt_Stop = text;
}

void RecordingSettings::Cbo_Func_Click(int index) {
  if (index >= 0 && index < kEndActions) {
    values_.Cbo_Func = index;
  }
}

Limits RecordingSettings::SamplingLimits() const {
  return {IsFast(Unit()) ? 1.0 : kNormalStep, kLongestSampling};
}

Limits RecordingSettings::StopLimits() const {
  const double longest = MaxFileHours(Unit().UnitChannels, RecInterval());
  return {kLeastStopHours, std::min(longest, kMostStopHours)};
}

std::string RecordingSettings::SamplingRange() const {
  return RangeText(SamplingLimits());
}

std::string RecordingSettings::StopRange() const {
  return RangeText(StopLimits());
}

void RecordingSettings::CmdOK_Click() {
  if (!IsOpen()) {
    return;
  }
  if (values_.RecNewMode) {
    NewFile();
  } else {
    TakeSettings();
  }
}

// As UnitInterval holds it; nothing, and a box has told it, for a value that the instrument
// cannot sample with.
std::optional<std::int16_t> RecordingSettings::TypedInterval() {
  const double seconds = ReadNumber(values_.Cbo_Sampl);
  const Limits limits = SamplingLimits();
  if (IsFast(Unit())) {
    const bool is_good =
        CheckRange(parts_.dialogs, "sampling", seconds, limits.Lower, limits.Upper);
    return is_good ? std::optional(ToWord(seconds)) : std::nullopt;
  }
  if (std::fmod(std::nearbyint(seconds), kNormalStep) != 0) {
    parts_.dialogs.Message({"enter a multiple of 10", "sampling rate", BoxIcon::kWarning});
    return std::nullopt;
  }
  if (!CheckRange(parts_.dialogs, "sampling", seconds, limits.Lower, limits.Upper)) {
    return std::nullopt;
  }
  return ToWord(std::nearbyint(seconds) / kNormalStep);
}

void RecordingSettings::NewFile() {
  const auto interval = TypedInterval();
  if (!interval || !parts_.dialogs.AskOk({"create a new file", "recording", BoxIcon::kQuestion})) {
    return;
  }
  BeginFile(*interval);
  CloseScreen();
}

// Beneath the question the measuring goes on: by now the recording may have ended, or gone on in
// another file. An empty old file goes only after the new one is there, so that a failure leaves
// the slot a file. A set that the old file refuses stays beside it.
void RecordingSettings::BeginFile(std::int16_t interval) {
  RunState& state = parts_.state;
  const int slot = slot_;
  const auto old_path = FindFile(state.SlotPath[slot_], state.SlotFile[slot_]);
  const std::string unsaved = parts_.files.SaveSetInHand(slot);
  const bool was_empty = state.SampleCount[slot_] == 0 && unsaved.empty();
  Unit().UnitRecOn = 0;
  state.ReadState[slot_] = ReadState::kIdle;
  state.WriteFailed[slot_] = false;
  state.SampleSeen[slot_].Fill(false);
  if (unsaved.empty()) {
    parts_.files.DropHeldSet(slot);
  }
  parts_.files.WriteHeader(slot);
  const bool is_written = !state.SlotFile[slot_].empty();
  if (parts_.files.CreateRecordingFile(slot, interval)) {
    SaveSettings();
    if (was_empty && is_written && old_path) {
      parts_.files.DropEmptyFile(*old_path);
    }
  }
  state.SheetReset = false;
  state.ForgetShownSlot();
  if (!unsaved.empty()) {
    parts_.messages.Report(slot, {unsaved, kWriteTitle});
  }
}

// A restart has to find the new name.
void RecordingSettings::SaveSettings() {
  if (!parts_.settings.SettingsSave().empty()) {
    parts_.state.SettingsChanged = true;
    parts_.messages.Report(slot_, {"Cannot write file.", kSettingsFile});
  }
}

void RecordingSettings::TakeSettings() {
  const bool is_stop_changed = values_.Txt_Stop != stop_at_opening_;
  const bool is_func_changed = values_.Cbo_Func != func_at_opening_;
  const double hours = ReadNumber(values_.Txt_Stop);
  const Limits limits = StopLimits();
  if (is_stop_changed &&
      !CheckRange(parts_.dialogs, "stop acquisition", hours, limits.Lower, limits.Upper)) {
    return;
  }
  if (is_stop_changed) {
    Unit().UnitMaxMinutes = ToWord(hours * kMinutesPerHour);
    const double rows =
        std::nearbyint(Unit().UnitMaxMinutes * kSecondsPerMinute / std::max(RecInterval(), 1));
    const int room = kMaxSampleWords / std::max<int>(Unit().UnitChannels, 1);
    parts_.state.SampleLimit[slot_] = static_cast<std::int32_t>(std::min<double>(rows, room));
  }
  if (is_func_changed) {
    Unit().UnitEndAction = static_cast<std::int16_t>(values_.Cbo_Func);
  }
  if (is_stop_changed || is_func_changed) {
    parts_.state.SlotDirty[slot_] = true;
  }
  CloseScreen();
}

}  // namespace tavrel
