#include "frame/start_up.h"

#include <array>
#include <chrono>
#include <optional>
#include <string>

#include "common/help.h"
#include "common/language.h"
#include "link/registers.h"
#include "platform/file_system.h"

namespace tavrel {
namespace {

constexpr const char* kLockFile = "TAVREL.LCK";
constexpr const char* kDefaultFile = "M011111A.NEW";
constexpr int kBacklogWorthTelling = 3;  // sets; fewer are read before a user could look
constexpr float kFlushSeconds = 1200;
constexpr std::chrono::milliseconds kPortInUseRetry{100};
constexpr int kPortInUseRetries = 20;  // 20 x 100 ms = 2 s until the user is told

constexpr BothLanguages kStartCaption{" ... to start hit any key ... ",
                                      " Start  (beliebige Taste) "};

// Settings and data stand beside the program, or, where nothing can be written there, in the
// user's own directory.
std::string HomeOf(const std::string& program_path) {
  if (IsWritable(program_path)) {
    return AddSeparator(program_path);
  }
  const std::string own = UserDataDirectory();
  static_cast<void>(MakeDirectory(own));  // what cannot be written later says so itself
  return AddSeparator(own);
}

}  // namespace

bool StartUp::SplashLoad(const std::string& program_path, const TakeLock& take_lock) {
  RunState& state = parts_.state;
  state.AppPath = AddSeparator(program_path);
  state.DataHome = HomeOf(program_path);
  if (!take_lock(state.DataHome + kLockFile)) {
    parts_.dialogs.Message({"Program is already running !", "TAVREL", BoxIcon::kInformation});
    return false;
  }
  if (!FindFile(program_path, kGermanManual)) {
    parts_.dialogs.Message({"Installation is incomplete !", "TAVREL", BoxIcon::kWarning});
    return false;
  }
  return true;
}

SplashValues StartUp::SplashShow() {
  parts_.state.FirstRun = false;
  parts_.settings.SettingsLoad();
  const Language language = LanguageOf(parts_.state.Settings.HelpLang);
  return {std::string(kStartCaption.In(language)), "release   2446"};
}

bool StartUp::MainFormLoad() {
  RunState& state = parts_.state;
  state.Settings.TypeSel = 4;
  if (state.FirstRun || !state.SettingsRead) {
    parts_.events.SetPointer(Pointer::kNormal);
    parts_.screens.Show(View::kTavSett);
  }
  if (parts_.window.HasEnded()) {
    return false;
  }
  OpenLine();
  if (parts_.link.PortError != 0) {
    parts_.dialogs.Message(parts_.window.PortErrorNotice(BoxIcon::kInformation));
    parts_.window.MnuSettings();
  }
  parts_.sheet.SetCaptionAndTips();
  state.ActiveInet = 0;
  return !parts_.window.HasEnded();
}

// A program that was killed just now may keep its port for a moment.
void StartUp::OpenLine() {
  parts_.window.LinkOpen();
  for (int retry = 0; parts_.link.PortInUse && retry < kPortInUseRetries; ++retry) {
    parts_.events.Rest(kPortInUseRetry);
    parts_.window.LinkOpen();
  }
}

void StartUp::MainFormShow() {
  RunState& state = parts_.state;
  if (state.ActiveView == View::kMainSheet) {
    return;
  }
  parts_.events.SetPointer(Pointer::kHourglass);
  parts_.events.Repaint();
  state.PendingFile = state.Settings.OpenFile;
  {
    const Messages::Deferral deferral(parts_.messages);
    AttachFiles();
  }
  ReadBacklog();
  SweepControllers();
  if (parts_.window.HasEnded()) {
    return;  // closed while the sweep painted
  }
  state.ActiveView = View::kMainSheet;
  parts_.sheet.ShowPanel();
  parts_.sheet.RefreshInfo();
  state.TickFlush = static_cast<float>(parts_.clock.Timer()) + kFlushSeconds;
  parts_.cycle.Start();
  parts_.events.SetPointer(Pointer::kNormal);
  parts_.messages.ShowKept();
}

void StartUp::AttachFiles() {
  bool any_in_use = false;
  for (int slot = 1; slot <= kSlots; ++slot) {
    AttachSlot(slot);
    any_in_use = any_in_use || !parts_.state.SlotFile[slot].empty();
  }
  if (!any_in_use) {
    MakeDefaultSlot();
  }
}

void StartUp::AttachSlot(int slot) {
  RunState& state = parts_.state;
  std::string& active_file = state.Settings.ActiveFiles[slot - 1];
  state.SelSlot = slot;
  if (!active_file.empty()) {
    state.SlotFile[slot] = active_file;
    state.SlotPath[slot] = DataDirectory(state);
    parts_.files.OpenRecordingFile(slot);
  }
  if (state.SlotFile[slot].empty()) {
    active_file.clear();
    parts_.sheet.HideRow(slot);
    return;
  }
  parts_.sheet.ShowRow(slot);
}

// The first start of all. A file of that name that is there already and valid is taken as it
// is; anything else of that name is left alone and the new file gets the next letter.
void StartUp::MakeDefaultSlot() {
  constexpr int kFirst = 1;
  RunState& state = parts_.state;
  state.SlotPath[kFirst] = DataDirectory(state);
  if (FindFile(state.SlotPath[kFirst], kDefaultFile)) {
    state.SlotFile[kFirst] = kDefaultFile;
    parts_.files.OpenRecordingFile(kFirst);
  }
  if (state.SlotFile[kFirst].empty()) {
    state.SlotFile[kFirst] = parts_.files.FreeName(kFirst, kDefaultFile);
    state.Unit[kFirst] = DefaultUnitRecord();
    parts_.files.WriteHeader(kFirst);
    parts_.files.CloseRecordingFile(kFirst);
    if (state.SlotFile[kFirst].empty()) {
      return;
    }
    parts_.files.OpenRecordingFile(kFirst);
  }
  state.Settings.ActiveFiles[kFirst - 1] = state.SlotFile[kFirst];
  state.SettingsChanged = true;
  parts_.sheet.ShowRow(kFirst);
}

void StartUp::ReadBacklog() {
  RunState& state = parts_.state;
  Link& link = parts_.link;
  state.BacklogCount = 0;
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (state.SlotFile[slot].empty()) {
      continue;
    }
    const UnitRecord& unit = state.Unit[slot];
    link.ComInet = unit.UnitInet;
    link.ComLetter = reg::kBuffered;
    link.ComIndex = unit.UnitRef;
    Exchange(&Link::ReadReg);
    if (state.ReadState[slot] < ReadState::kReading) {
      continue;
    }
    const bool answers = link.IsGood(unit.UnitInet);
    parts_.engine.TakeUp(slot, answers ? std::optional(link.ComValue) : std::nullopt);
    if (answers && link.ComValue > state.BacklogCount) {
      state.BacklogCount = link.ComValue;
      state.BacklogSlot = slot;
    }
  }
  if (state.BacklogCount > kBacklogWorthTelling) {
    state.lbl_Info = "reading from Tavrel:  " + std::to_string(state.BacklogCount);
  }
}

// A controller that was left running without a file is switched off. An instrument that the
// backlog did not reach has no good status yet and is left alone.
void StartUp::SweepControllers() {
  const RunState& state = parts_.state;
  Link& link = parts_.link;
  for (std::int16_t inet = 1; inet <= kInets; ++inet) {
    if (!link.IsGood(inet)) {
      continue;
    }
    std::array<bool, kControllers + 1> is_used{};
    for (int slot = 1; slot <= kSlots; ++slot) {
      if (!state.SlotFile[slot].empty() && state.Unit[slot].UnitInet == inet) {
        is_used.at(state.Unit[slot].UnitCtrl) = true;
      }
    }
    for (std::int16_t ctrl = 1; ctrl <= kControllers; ++ctrl) {
      if (is_used.at(ctrl)) {
        continue;
      }
      link.ComInet = inet;
      link.ComLetter = reg::kControllerState;
      link.ComIndex = ctrl;
      link.ComValue = controller::kOff;
      Exchange(&Link::WriteReg);
    }
  }
}

// Each silent instrument costs a good tenth of a second and a pause behind it: the form is
// painted in between.
void StartUp::Exchange(void (Link::*access)()) {
  parts_.window.LetLineSettle();
  (parts_.link.*access)();
  parts_.events.Repaint();
}

}  // namespace tavrel
