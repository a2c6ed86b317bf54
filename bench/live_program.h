#ifndef TAVREL_BENCH_LIVE_PROGRAM_H_
#define TAVREL_BENCH_LIVE_PROGRAM_H_

#include <string>

#include "common/messages.h"
#include "files/recording_engine.h"
#include "files/recording_file.h"
#include "frame/main_cycle.h"
#include "frame/main_sheet.h"
#include "frame/main_window.h"
#include "frame/run_state.h"
#include "frame/settings_store.h"
#include "frame/start_up.h"
#include "link/link.h"

namespace tavrel {

// What the machine does for the program. All outlive it.
struct Machine {
  SerialPort& port;
  const Clock& clock;
  Dialogs& dialogs;
  Screens& screens;
  Events& events;
  Shell& shell;
};

// The logic of the whole program, joined as it is when it runs, over settings and recordings in
// `home`.
struct LiveProgram {
  LiveProgram(const Machine& on, const std::string& home) : machine(on) {
    state.AppPath = home + "/";
    state.DataHome = state.AppPath;
    settings.SettingsLoad();
  }

  // From the loaded settings to the form that can be shown; false if the line did not open.
  [[nodiscard]] bool Load() { return start_up.MainFormLoad() && link.PortOpen; }

  Machine machine;
  RunState state;
  Link link{machine.port, machine.clock};
  Messages messages{machine.dialogs};
  SettingsStore settings{state};
  RecordingFiles files{state, machine.clock, messages};
  RecordingEngine engine{
      {state, link, files, settings, messages, machine.dialogs, machine.screens}};
  MainSheet sheet{{state, link, machine.clock, machine.screens, machine.events}};
  MainCycle cycle{{state, link, engine, sheet, messages, machine.clock}};
  MainWindow window{{state, link, files, engine, settings, sheet, cycle, machine.dialogs,
                     machine.screens, machine.events, machine.shell, machine.clock}};
  StartUp start_up{{state, link, files, settings, sheet, cycle, window, messages, machine.dialogs,
                    machine.screens, machine.events, machine.clock}};
};

}  // namespace tavrel

#endif  // TAVREL_BENCH_LIVE_PROGRAM_H_
