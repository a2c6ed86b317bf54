#include "main/main_commands.h"

#include <chrono>
#include <string>
#include <vector>

#include "base/text.h"
#include "dialogs/help.h"
#include "files/simulated_rows.h"
#include "main/untold_notices.h"
#include "state/box_titles.h"

namespace tavrel {
namespace {

constexpr std::chrono::seconds kReadOutLimit{10};
constexpr std::chrono::seconds kRetryHeldSet{1};
constexpr std::chrono::seconds kRetryStop{1};

Notice ExitQuestion() {
  return {"Exit", "TAVREL", BoxIcon::kQuestion};
}

}  // namespace

bool MainCommands::IsEnabled(const MenuEntry& entry) const {
  return entry.Opens == View::kNone || parts_.screens.Has(entry.Opens);
}

void MainCommands::Choose(const MenuEntry& entry) {
  switch (entry.Action) {
    case MenuAction::kHeading:
      return;
    case MenuAction::kShow:
    case MenuAction::kKeys:
      ShowForm(entry);
      return;
    case MenuAction::kSettings:
      MnuSettings();
      return;
    case MenuAction::kHelp:
      ShowHelp(parts_.dialogs, parts_.shell, parts_.state.AppPath, parts_.state.Settings.HelpLang);
      return;
    case MenuAction::kExit:
      MnuExit();
      return;
  }
}

void MainCommands::ShowForm(const MenuEntry& entry) {
  parts_.events.SetPointer(Pointer::kHourglass);
  if (entry.HidesCommands) {
    parts_.sheet.ShowCommands(false);
  }
  if (entry.StopsCycle) {
    const MainCycle::Pause pause(parts_.cycle);
    parts_.screens.Show(entry.Opens);
  } else {
    parts_.screens.Show(entry.Opens);
  }
  parts_.sheet.ShowCommands(true);
  parts_.events.SetPointer(Pointer::kNormal);
}

void MainCommands::LinkOpen() {
  const SettingsValues& settings = parts_.state.Settings;
  const bool was_simulated = parts_.link.Simulated;
  parts_.link.LinkOpen({settings.CommPort, settings.ComMode, settings.TypeSel});
  parts_.engine.LineOpened(was_simulated);
  parts_.sheet.SetCaptionAndTips();
}

Notice MainCommands::PortErrorNotice(BoxIcon icon) const {
  return {parts_.link.PortErrorText, "Open " + Trim(parts_.state.Settings.CommPort), icon};
}

void MainCommands::MnuSettings() {
  if (IsEnding()) {
    return;  // at the box before this
  }
  parts_.sheet.ShowCommands(false);
  do {
    parts_.events.SetPointer(Pointer::kHourglass);
    parts_.screens.Show(View::kTavSett);
    parts_.events.SetPointer(Pointer::kNormal);
    if (IsEnding()) {
      return;
    }
    LinkOpen();
    if (parts_.link.PortError != 0 &&
        !parts_.dialogs.AskRetry(PortErrorNotice(BoxIcon::kCritical)) && !IsEnding()) {
      MnuExit();
    }
  } while (parts_.link.PortError != 0 && !IsEnding());
  parts_.sheet.ShowCommands(true);
}

void MainCommands::MnuExit() {
  if (parts_.dialogs.AskOk(ExitQuestion())) {
    Close();
  }
}

void MainCommands::Close() {
  if (ended_ || parts_.state.Unfinished > 0) {
    return;
  }
  ended_ = true;
  ShutDown();
}

void MainCommands::ShutDown() {
  parts_.cycle.Stop();
  parts_.events.SetPointer(Pointer::kHourglass);
  MarkLastSets();
  DrainInstruments();
  SaveEverything();
  KeepUntoldNotices();
  parts_.events.SetPointer(Pointer::kNormal);
}

void MainCommands::MarkLastSets() {
  RunState& state = parts_.state;
  for (int slot = 1; slot <= kSlots; ++slot) {
    const bool reads = state.ReadState[slot] >= ReadState::kReading;
    const bool answers = parts_.link.IsGood(state.Unit[slot].UnitInet) &&
                         !NeedsConsentToSimulate(state, parts_.link, slot);
    state.ReadState[slot] = reads && answers ? ReadState::kLastSet : ReadState::kIdle;
  }
}

// Takes what the instruments hold for the set in hand, and sends what is still to be switched off,
// at most 10 s. Where only waiting slots are left, nothing can change any more, unless a set is
// held or a controller has not acknowledged that it is off: these are worth waiting for.
void MainCommands::DrainInstruments() {
  const auto begin = parts_.clock.Elapsed();
  next_stop_ = begin + kRetryStop;
  bool is_first = true;
  while (parts_.clock.Elapsed() < begin + kReadOutLimit) {
    const bool reads = AnyKeepsReading() && !AllWait();
    RepeatStopOrders(is_first && !reads);
    is_first = is_first && reads;
    if (!reads && !parts_.engine.Orders().HasDue()) {
      if (!WaitForMore()) {
        return;
      }
      continue;
    }
    LetLineSettle();
    PumpOrRest();
    parts_.sheet.RefreshInfo();
    parts_.events.Repaint();
  }
}

// A comparison of columns waits for its next look without an exchange, for up to an interval.
void MainCommands::PumpOrRest() {
  const auto before = parts_.link.Exchanges();
  parts_.engine.PumpOnce();
  if (parts_.link.Exchanges() == before) {
    parts_.events.Rest(std::chrono::milliseconds(kTickMilliseconds));
  }
}

// Once a second, and only after an exchange for the sets, if there are any to read.
void MainCommands::RepeatStopOrders(bool at_once) {
  const auto now = parts_.clock.Elapsed();
  if (parts_.engine.Orders().CanSend() && (at_once || now >= next_stop_)) {
    parts_.engine.Orders().Repeat();
    next_stop_ = now + kRetryStop;
  }
}

// False if there is nothing to wait for.
bool MainCommands::WaitForMore() {
  if (ReviveHeldSets()) {
    return true;
  }
  const bool waits = parts_.engine.Orders().CanSend();
  if (waits) {
    parts_.events.Rest(kRetryStop);
  }
  return waits;
}

void MainCommands::LetLineSettle() {
  const std::chrono::milliseconds time = parts_.link.SettleTime();
  if (time.count() > 0) {
    parts_.events.Rest(time);
  }
}

bool MainCommands::AnyKeepsReading() {
  RunState& state = parts_.state;
  bool any = false;
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (state.ReadState[slot] == ReadState::kIdle) {
      continue;
    }
    if (!parts_.link.IsGood(state.Unit[slot].UnitInet)) {
      state.ReadState[slot] = ReadState::kIdle;
      continue;
    }
    any = true;
  }
  return any;
}

bool MainCommands::AllWait() const {
  for (const ReadState read_state : parts_.state.ReadState) {
    if (read_state >= ReadState::kReading) {
      return false;
    }
  }
  return true;
}

// Waits a second and lets the slots with a set in hand try again; false if there are none.
bool MainCommands::ReviveHeldSets() {
  RunState& state = parts_.state;
  bool any = false;
  for (int slot = 1; slot <= kSlots; ++slot) {
    ReadState& read_state = state.ReadState[slot];
    if (read_state == ReadState::kWaiting && parts_.engine.HoldsSet(slot)) {
      read_state = ReadState::kLastSet;
      any = true;
    }
  }
  if (any) {
    parts_.events.Rest(kRetryHeldSet);
  }
  return any;
}

void MainCommands::SaveEverything() {
  RunState& state = parts_.state;
  std::vector<std::string> unsaved;
  for (int slot = 1; slot <= kSlots; ++slot) {
    unsaved.push_back(parts_.engine.SaveSetInHand(slot));
  }
  const bool failed = state.SettingsChanged && !parts_.settings.SettingsSave().empty();
  const bool stops_failed = !parts_.engine.Orders().Save().empty();
  for (int slot = 0; slot <= kSlots; ++slot) {
    if (!state.SlotFile[slot].empty() && state.SlotDirty[slot]) {
      parts_.files.WriteHeader(slot);
    }
    if (IsSlot(slot)) {
      parts_.files.ReleaseHeldSet(slot);
    }
    parts_.files.CloseRecordingFile(slot);
  }
  parts_.link.LinkClose();
  if (failed) {
    parts_.dialogs.Message({"Cannot write file.", kSettingsFile, BoxIcon::kWarning});
  }
  if (stops_failed) {
    parts_.dialogs.Message({"Cannot write file.", kStopOrdersFile, BoxIcon::kWarning});
  }
  for (const std::string& text : unsaved) {
    if (!text.empty()) {
      parts_.dialogs.Message({text, kWriteTitle, BoxIcon::kWarning});
    }
  }
}

// No tick comes any more that announces what the last sets have brought to light.
void MainCommands::KeepUntoldNotices() {
  const std::vector<Notice> untold = parts_.messages.TakeKept();
  if (untold.empty() || KeepUntold(parts_.state.DataHome, untold, parts_.clock.Now()).empty()) {
    return;
  }
  for (const Notice& notice : untold) {
    parts_.dialogs.Message(notice);
  }
}

}  // namespace tavrel
