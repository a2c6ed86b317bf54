#ifndef TAVREL_MAIN_MAIN_COMMANDS_H_
#define TAVREL_MAIN_MAIN_COMMANDS_H_

#include <chrono>

#include "files/recording_engine.h"
#include "link/link.h"
#include "main/main_cycle.h"
#include "main/main_menu.h"
#include "main/main_sheet.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "platform/screens.h"
#include "platform/shell.h"
#include "state/messages.h"
#include "state/run_state.h"
#include "state/settings_store.h"

namespace tavrel {

// The commands of the main form's menu and the way out of the program.
class MainCommands {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    Link& link;
    RecordingFiles& files;
    RecordingEngine& engine;
    SettingsStore& settings;
    MainSheet& sheet;
    MainCycle& cycle;
    Messages& messages;
    Dialogs& dialogs;
    Screens& screens;
    Events& events;
    Shell& shell;
    const Clock& clock;
  };
  explicit MainCommands(const Parts& parts) : parts_(parts) {}

  // False for an entry whose form this program does not have: it is greyed.
  [[nodiscard]] bool IsEnabled(const MenuEntry& entry) const;

  void Choose(const MenuEntry& entry);

  // Opens the line that the settings name, and says in the caption if it is simulated.
  void LinkOpen();

  // Waits until the next exchange can begin at once, and paints meanwhile. Without it the
  // exchange itself waits, with the user interface standing still.
  void LetLineSettle();

  // What to tell the user after a LinkOpen that failed.
  [[nodiscard]] Notice PortErrorNotice(BoxIcon icon) const;

  // Settings dialog and opening of the port, again and again until the port opens or the user
  // leaves the program.
  void MnuSettings();

  // Asks and shuts down; nothing happens on Cancel.
  void MnuExit();

  // The close box and the end of the session: shuts down without a question. While a rule has to
  // finish what it has begun on an instrument nothing happens; that takes as long as the wait bar,
  // and the end has to be asked for again.
  void Close();

  // The program has been shut down; the process may end.
  [[nodiscard]] bool HasEnded() const { return ended_; }

 private:
  // Nobody is left to answer: no box may be asked again.
  [[nodiscard]] bool IsEnding() const { return ended_ || parts_.events.EndIsWanted(); }
  void ShowForm(const MenuEntry& entry);
  void ShutDown();
  void MarkLastSets();
  void DrainInstruments();
  void PumpOrRest();
  void RepeatStopOrders(bool at_once);
  [[nodiscard]] bool WaitForMore();
  [[nodiscard]] bool AnyKeepsReading();
  [[nodiscard]] bool AllWait() const;
  [[nodiscard]] bool ReviveHeldSets();
  void SaveEverything();
  void KeepUntoldNotices();

  Parts parts_;
  bool ended_ = false;
  std::chrono::nanoseconds next_stop_{};  // during the shut-down: when orders are repeated
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_MAIN_COMMANDS_H_
