#ifndef TAVREL_SETUP_INSTALLATION_EFFECT_H_
#define TAVREL_SETUP_INSTALLATION_EFFECT_H_

#include <functional>
#include <string>
#include <vector>

#include "base/language.h"
#include "setup/test_rows.h"
#include "state/run_state.h"

namespace tavrel {

// A controller of an instrument that no test uses any more.
struct LostController {
  int Slot = 0;  // whose test it was
  int Inet = 0;
  int Controller = 0;

  [[nodiscard]] bool operator==(const LostController&) const = default;
};

// What the installation of some rows would do now. Slots in ascending order.
struct InstallationEffect {
  std::vector<int> EndedRecordings;
  std::vector<int> EndedPrograms;
  std::vector<int> NewFiles;
  std::vector<int> RemovedFiles;            // without a sample
  std::vector<int> RemovedTests;            // of which none of the others tells
  std::vector<int> RowsWithoutNumber;       // something is typed into them, and left out
  std::vector<LostController> Controllers;  // that are on

  [[nodiscard]] bool operator==(const InstallationEffect&) const = default;
};

// `is_controller_on` says whether the controller of the slot's present test was on when it was read
// last.
[[nodiscard]] InstallationEffect EffectOf(const RunState& state, const TestRows& rows,
                                          const std::function<bool(int slot)>& is_controller_on);

// One line for each kind of effect, for the user.
[[nodiscard]] std::vector<std::string> EffectLines(const RunState& state, const TestRows& rows,
                                                   const InstallationEffect& effect,
                                                   Language language);

}  // namespace tavrel

#endif  // TAVREL_SETUP_INSTALLATION_EFFECT_H_
