#include "files/simulated_rows.h"

#include <algorithm>

#include "files/file_texts.h"
#include "state/user_language.h"

namespace tavrel {

bool NeedsConsentToSimulate(const RunState& state, const Link& link, int slot) {
  if (!link.Simulated || state.SimulatedRowsAllowed || !IsSlot(slot) ||
      state.SlotFile[slot].empty() || state.BegunInSimulation[slot]) {
    return false;
  }
  const auto& seen = state.SampleSeen[slot];
  return state.SampleCount[slot] > 0 || std::find(seen.begin(), seen.end(), true) != seen.end();
}

bool StandsStillInSimulation(const RunState& state, const Link& link, int slot) {
  return NeedsConsentToSimulate(state, link, slot) && state.Unit[slot].UnitRecOn == 1;
}

Notice ConsentQuestion(const RunState& state, const Link& link) {
  std::string files;
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (NeedsConsentToSimulate(state, link, slot)) {
      files += state.SlotFile[slot] + "\n";
    }
  }
  return {file_text::kConsent.Text(UserLanguage(state), {files}), "Simulation", BoxIcon::kWarning,
          true};
}

}  // namespace tavrel
