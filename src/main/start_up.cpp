#include "main/start_up.h"

#include <array>
#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "base/language.h"
#include "dialogs/help.h"
#include "link/register_access.h"
#include "link/registers.h"
#include "main/main_texts.h"
#include "main/untold_notices.h"
#include "platform/file_system.h"
#include "platform/system_language.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

constexpr const char* kLockFile = "TAVREL.LCK";
constexpr int kBacklogWorthTelling = 3;  // sets; fewer are read before a user could look
constexpr std::chrono::milliseconds kPortInUseRetry{100};
constexpr int kPortInUseRetries = 20;  // 20 x 100 ms = 2 s until the user is told

constexpr BothLanguages kStartCaption{" ... to start hit any key ... ",
                                      " Start  (beliebige Taste) "};

// If the directory cannot be made, whatever is to be written there later says so.
std::string MakeOwnDirectory() {
  const std::string own = UserDataDirectory();
  static_cast<void>(MakeDirectory(own));
  return AddSeparator(own);
}

}  // namespace

// Settings and data stand beside the program, or, where nothing can be written there or a package
// has installed it, in the user's own directory. A probe that fails for another reason says nothing
// about that: the program would come up with other settings and without its tests.
std::optional<std::string> StartUp::HomeOf(const std::string& program_path) const {
  if (IsInstalledByPackage(program_path)) {
    return MakeOwnDirectory();
  }
  NoAnswer no_answer;
  bool is_writable = IsWritable(program_path, no_answer);
  while (no_answer.Why != Failure::kNone) {
    const Notice question{
        main_text::kUnknownDirectory.Text(SystemLanguage(), {program_path, no_answer.Text}),
        "TAVREL", BoxIcon::kCritical};
    if (!parts_.dialogs.AskRetryOrExit(question)) {
      return std::nullopt;
    }
    is_writable = IsWritable(program_path, no_answer);
  }
  return is_writable ? AddSeparator(program_path) : MakeOwnDirectory();
}

bool StartUp::SplashLoad(const std::string& program_path, const TakeLock& take_lock) {
  RunState& state = parts_.state;
  state.AppPath = AddSeparator(program_path);
  WorkIn(program_path);
  const auto home = HomeOf(program_path);
  if (!home) {
    return false;
  }
  state.DataHome = *home;
  if (!IsFirst(take_lock)) {
    return false;
  }
  if (!FindFile(program_path, kGermanManual)) {
    parts_.dialogs.Message({"Installation is incomplete !", "TAVREL", BoxIcon::kWarning});
    return false;
  }
  RemoveLeftovers(state.DataHome);
  RemoveLeftovers(JoinPath(state.DataHome, kDataDirectory));
  return true;
}

// Where nobody can tell whether another copy runs, the user can try to make it possible.
bool StartUp::IsFirst(const TakeLock& take_lock) {
  const std::string path = parts_.state.DataHome + kLockFile;
  LockTaking taking = take_lock(path);
  while (!taking.Problem.empty()) {
    const Notice question{main_text::kUnknownCopy.Text(SystemLanguage(), {path, taking.Problem}),
                          "TAVREL", BoxIcon::kCritical};
    if (!parts_.dialogs.AskRetryOrExit(question)) {
      return false;
    }
    taking = take_lock(path);
  }
  if (!taking.IsTaken && !taking.IsHandedOver) {
    parts_.dialogs.Message({"Program is already running !", "TAVREL", BoxIcon::kInformation});
  }
  return taking.IsTaken;
}

std::optional<SplashValues> StartUp::SplashShow() {
  parts_.state.FirstRun = false;
  parts_.settings.SettingsLoad();
  while (!parts_.settings.ReadError().empty()) {
    const Notice question{
        main_text::kUnreadSettings.Text(SystemLanguage(), {parts_.settings.ReadError()}),
        kSettingsFile, BoxIcon::kCritical};
    if (!parts_.dialogs.AskRetryOrExit(question)) {
      return std::nullopt;
    }
    parts_.settings.SettingsLoad();
  }
  const Language language = UserLanguage(parts_.state);
  return SplashValues{std::string(kStartCaption.In(language)), "release   2446"};
}

bool StartUp::MainFormLoad() {
  RunState& state = parts_.state;
  state.Settings.TypeSel = 4;
  if (state.FirstRun || !state.SettingsRead) {
    parts_.events.SetPointer(Pointer::kNormal);
    parts_.screens.Show(View::kTavSett);
  }
  if (IsEnding()) {
    return false;
  }
  OpenLine();
  if (parts_.link.PortError != 0 && !IsEnding()) {
    parts_.dialogs.Message(parts_.commands.PortErrorNotice(BoxIcon::kInformation));
    parts_.commands.MnuSettings();
  }
  parts_.sheet.SetCaptionAndTips();
  state.ActiveInet = 0;
  return !IsEnding();
}

// A program that was killed just now may keep its port for a moment.
void StartUp::OpenLine() {
  parts_.commands.LinkOpen();
  for (int retry = 0; parts_.link.PortInUse && retry < kPortInUseRetries && !IsEnding(); ++retry) {
    parts_.events.Rest(kPortInUseRetry);
    parts_.commands.LinkOpen();
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
    parts_.attachment.AttachAll();
    FinishStopOrders();
    TellUntold();
  }
  ReadBacklog();
  SweepControllers();
  if (!IsEnding()) {
    ShowSheet();
  }
}

void StartUp::ShowSheet() {
  RunState& state = parts_.state;
  state.ActiveView = View::kMainSheet;
  parts_.sheet.ShowPanel();
  parts_.sheet.RefreshInfo();
  state.TickFlush.SetIn(kFlushSeconds, parts_.clock);
  parts_.cycle.Start();
  parts_.events.SetPointer(Pointer::kNormal);
  parts_.messages.ShowKept();
}

// An oven that should be off comes before everything else on the line. Where no line is, the orders
// wait.
void StartUp::FinishStopOrders() {
  StopOrders& orders = parts_.engine.Orders();
  orders.Load();
  const std::vector<StopOrder> left = orders.All();
  for (std::size_t sent = 0; sent < left.size() && orders.CanSend() && !IsEnding(); ++sent) {
    parts_.commands.LetLineSettle();
    static_cast<void>(orders.SendDue());
    parts_.events.Repaint();
  }
  for (const StopOrder& order : left) {
    TellStopOrder(order);
  }
}

void StartUp::TellUntold() {
  for (const Notice& notice : TakeUntold(parts_.state.DataHome, UserLanguage(parts_.state))) {
    parts_.messages.Report(0, notice);
  }
}

void StartUp::TellStopOrder(const StopOrder& order) {
  const bool waits = parts_.engine.Orders().IsWaiting(order.Inet, order.Controller);
  const BothLanguages& text = waits ? main_text::kStopWaits : main_text::kStopIsDone;
  const Language language = UserLanguage(parts_.state);
  parts_.messages.Report(
      order.Slot,
      {text.Text(language, {std::to_string(order.Controller), std::to_string(order.Inet)}),
       main_text::kControllerTitle.Text(language)});
}

void StartUp::ReadBacklog() {
  RunState& state = parts_.state;
  state.BacklogCount = 0;
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (state.SlotFile[slot].empty() || IsEnding()) {
      continue;
    }
    const UnitRecord& unit = state.Unit[slot];
    parts_.commands.LetLineSettle();
    const auto asked = parts_.clock.Elapsed();
    const Reading count = Read(parts_.link, Register{unit.UnitInet, reg::kBuffered, unit.UnitRef});
    parts_.events.Repaint();
    if (state.ReadState[slot] < ReadState::kReading) {
      continue;
    }
    parts_.engine.TakeUp(slot, count.Word(), asked);
    if (count.IsGood() && count.word > state.BacklogCount) {
      state.BacklogCount = count.word;
      state.BacklogSlot = slot;
    }
  }
  if (state.BacklogCount > kBacklogWorthTelling) {
    state.lbl_Info = "reading from Tavrel:  " + std::to_string(state.BacklogCount);
  }
}

bool StartUp::IsInUse(std::int16_t inet) const {
  const RunState& state = parts_.state;
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (!state.SlotFile[slot].empty() && state.Unit[slot].UnitInet == inet) {
      return true;
    }
  }
  return false;
}

// A controller that was left running without a file is switched off. An instrument that the
// backlog did not reach, since it does not answer or has no slot, is left alone, and so is one
// whose controllers a test may use that waits for its file.
void StartUp::SweepControllers() {
  const auto waiting = parts_.attachment.WaitingInstruments();
  if (!waiting) {
    return;
  }
  for (std::int16_t inet = 1; inet <= kInets; ++inet) {
    if (IsInUse(inet) && parts_.link.IsGood(inet) && !waiting->contains(inet)) {
      SweepControllersOf(inet);
    }
  }
}

void StartUp::SweepControllersOf(std::int16_t inet) {
  const RunState& state = parts_.state;
  std::array<bool, kControllers + 1> is_used{};
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (!state.SlotFile[slot].empty() && state.Unit[slot].UnitInet == inet) {
      is_used.at(state.Unit[slot].UnitCtrl) = true;
    }
  }
  for (std::int16_t ctrl = 1; ctrl <= kControllers; ++ctrl) {
    if (is_used.at(ctrl) || IsEnding()) {
      continue;
    }
    parts_.commands.LetLineSettle();
    const LinkResult switched_off =
        Write(parts_.link, {inet, reg::kControllerState, ctrl}, controller::kOff);
    parts_.events.Repaint();
    if (IsGood(switched_off)) {
      parts_.engine.Orders().Drop(inet, ctrl);
    }
  }
}

}  // namespace tavrel
