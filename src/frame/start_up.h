#ifndef TAVREL_FRAME_START_UP_H_
#define TAVREL_FRAME_START_UP_H_

#include <functional>
#include <string>

#include "files/recording_engine.h"
#include "files/recording_file.h"
#include "frame/main_cycle.h"
#include "frame/main_sheet.h"
#include "frame/main_window.h"
#include "frame/run_state.h"
#include "frame/settings_store.h"
#include "link/link.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "platform/screens.h"

namespace tavrel {

inline constexpr int kSplashSeconds = 60;  // after that the splash leaves by itself

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
    MainSheet& sheet;
    MainCycle& cycle;
    MainWindow& window;
    Messages& messages;
    Dialogs& dialogs;
    Screens& screens;
    Events& events;
    const Clock& clock;
  };
  explicit StartUp(const Parts& parts) : parts_(parts) {}

  // Takes the file of that path for this process, and keeps it until the process ends; false if
  // another live process has it. Two copies that share settings and recordings must not run.
  using TakeLock = std::function<bool(const std::string& path)>;

  // Splash form, on load: guards against a second copy and a broken installation. `program_path`
  // is the program's directory. False: a message has been shown and the process ends.
  [[nodiscard]] bool SplashLoad(const std::string& program_path, const TakeLock& take_lock);

  // Splash form, on first display: loads the settings.
  [[nodiscard]] SplashValues SplashShow();

  // Main form, on load: opens the link. False: the user chose to leave instead.
  [[nodiscard]] bool MainFormLoad();

  // Main form, on first display: attaches the files, looks what the instruments hold, switches
  // off controllers that no slot knows, starts the cycle. Later calls do nothing.
  void MainFormShow();

 private:
  void OpenLine();
  void AttachFiles();
  void AttachSlot(int slot);
  void MakeDefaultSlot();
  void ReadBacklog();
  void SweepControllers();
  void Exchange(void (Link::*access)());

  Parts parts_;
};

}  // namespace tavrel

#endif  // TAVREL_FRAME_START_UP_H_
