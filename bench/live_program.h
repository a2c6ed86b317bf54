#ifndef TAVREL_BENCH_LIVE_PROGRAM_H_
#define TAVREL_BENCH_LIVE_PROGRAM_H_

#include <string>

#include "app/program_logic.h"

namespace tavrel {

// The logic of the program over settings and recordings in `home`.
struct LiveProgram : public ProgramLogic {
  LiveProgram(const Machine& on, const std::string& home) : ProgramLogic(on) {
    state.AppPath = home + "/";
    state.DataHome = state.AppPath;
    settings.SettingsLoad();
  }

  // From the loaded settings to the form that can be shown; false if the line did not open.
  [[nodiscard]] bool Load() { return start_up.MainFormLoad() && link.PortOpen; }
};

}  // namespace tavrel

#endif  // TAVREL_BENCH_LIVE_PROGRAM_H_
