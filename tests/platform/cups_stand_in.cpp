// Stands in for the library of CUPS. It has the queue "Laser", which is idle, the same with a set
// of options called "draft", which is at work, and "Stopped", which says nothing of taking jobs.
#include <array>
#include <cstring>
#include <string>

extern "C" {

struct StandInOption {
  const char* name;
  const char* value;
};
struct StandInDestination {
  const char* name;
  const char* instance;
  int is_default;
  int option_count;
  const StandInOption* options;
};

// The destinations that were handed out and not taken back, for a test to look at.
int* StandInHeld() {
  static int held = 0;
  return &held;
}

// The state of the last answer, for a test to set.
int* StandInState() {
  static int state = 0;
  return &state;
}

const StandInDestination* cupsGetNamedDest(const void* server, const char* name,
                                           const char* instance) {
  static const std::array<StandInOption, 3> laser = {
      {{"copies", "1"}, {"printer-state", "3"}, {"printer-is-accepting-jobs", "true"}}};
  static const std::array<StandInOption, 2> draft = {
      {{"printer-state", "4"}, {"printer-is-accepting-jobs", "false"}}};
  static const std::array<StandInOption, 1> stopped = {{{"printer-state", "5"}}};
  static const std::array<StandInDestination, 3> all = {
      {{"Laser", nullptr, 1, 3, laser.data()},
       {"Laser", "draft", 0, 2, draft.data()},
       {"Stopped", nullptr, 0, 1, stopped.data()}}};
  const auto text = [](const char* characters) {
    return std::string(characters == nullptr ? "-" : characters);
  };
  for (const StandInDestination& each : all) {
    if (server == nullptr && text(each.name) == text(name) &&
        text(each.instance) == text(instance)) {
      ++*StandInHeld();
      return &each;
    }
  }
  return nullptr;
}

const char* cupsGetOption(const char* name, int count, const StandInOption* options) {
  for (int option = 0; option < count; ++option) {
    if (std::strcmp(options[option].name, name) == 0) {
      return options[option].value;
    }
  }
  return nullptr;
}

void cupsFreeDests(int count, const StandInDestination* destinations) {
  *StandInHeld() -= destinations == nullptr ? 0 : count;
}

int cupsLastError() {
  return *StandInState();
}

}  // extern "C"
