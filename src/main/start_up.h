#ifndef TAVREL_MAIN_START_UP_H_
#define TAVREL_MAIN_START_UP_H_

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include "files/recording_engine.h"
#include "files/recording_file.h"
#include "link/link.h"
#include "main/attachment.h"
#include "main/main_commands.h"
#include "main/main_cycle.h"
#include "main/main_sheet.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "platform/screens.h"
#include "state/run_state.h"
#include "state/settings_store.h"

namespace tavrel {

inline constexpr int kSplashSeconds = 60;  // after that the splash leaves by itself

// What came of taking the lock that keeps a second copy from running. Not taken and no problem:
// another copy runs.
struct LockTaking {
  // NOLINTNEXTLINE(google-explicit-constructor): a start without a problem says yes or no
  LockTaking(bool is_taken, std::string problem = "")
      : IsTaken(is_taken), Problem(std::move(problem)) {}

  bool IsTaken = false;
  std::string Problem;  // why nobody can tell whether another copy runs
  // The copy that runs has taken over what this one was started for: nothing is to be told.
  bool IsHandedOver = false;
};

// The way from the start of the process to the running cycle, in three steps that the forms
// call when they come up.
class StartUp {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    Link& link;
    RecordingFiles& files;
    RecordingEngine& engine;
    SettingsStore& settings;
    Attachment& attachment;
    MainSheet& sheet;
    MainCycle& cycle;
    MainCommands& commands;
    Messages& messages;
    Dialogs& dialogs;
    Screens& screens;
    Events& events;
    const Clock& clock;
  };
  explicit StartUp(const Parts& parts) : parts_(parts) {}

  // Takes the file of that path for this process, and keeps it until the process ends. Two copies
  // that share settings and recordings must not run.
  using TakeLock = std::function<LockTaking(const std::string& path)>;

  // Splash form, on load: guards against a second copy and a broken installation. `program_path`
  // is the program's directory, in which the process works from here on. False: a message has been
  // shown and the process ends. Whether that directory can be written must be sure, for it decides
  // which settings are in force.
  [[nodiscard]] bool SplashLoad(const std::string& program_path, const TakeLock& take_lock);

  // Splash form, on first display: loads the settings. Empty: they cannot be read and the user
  // has chosen to leave; the process ends, and nothing is saved.
  [[nodiscard]] std::optional<SplashValues> SplashShow();

  // Main form, on load: opens the link. False: the user or somebody outside wants the end instead.
  [[nodiscard]] bool MainFormLoad();

  // Main form, on first display: attaches the files, sends what end actions of before have still to
  // switch off, looks what the instruments hold, switches off controllers that no slot knows,
  // starts the cycle. Later calls do nothing. If somebody outside wants the end meanwhile it
  // returns behind the exchange that is on, and the cycle does not start.
  void MainFormShow();

 private:
  [[nodiscard]] std::optional<std::string> HomeOf(const std::string& program_path) const;
  [[nodiscard]] bool IsFirst(const TakeLock& take_lock);
  void OpenLine();
  void FinishStopOrders();
  void TellUntold();
  void TellStopOrder(const StopOrder& order);
  [[nodiscard]] bool IsInUse(std::int16_t inet) const;
  void ReadBacklog();
  void SweepControllers();
  void SweepControllersOf(std::int16_t inet);
  void ShowSheet();
  [[nodiscard]] bool IsEnding() const {
    return parts_.commands.HasEnded() || parts_.events.EndIsWanted();
  }

  Parts parts_;
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_START_UP_H_
