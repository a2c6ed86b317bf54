#ifndef TAVREL_TESTS_FILES_PUMP_FIXTURE_H_
#define TAVREL_TESTS_FILES_PUMP_FIXTURE_H_

#include <cstdint>
#include <initializer_list>
#include <string>
#include <vector>

#include "files/recording_engine.h"
#include "link/link.h"
#include "tests/files/recording_fixture.h"
#include "tests/support/direct_line.h"
#include "tests/support/fake_port.h"

namespace tavrel {

// A recording of the fixture's day, and the one that follows it.
inline constexpr const char* kNewFile = "M011111A.NEW";
inline constexpr const char* kNextNewFile = "M011111B.NEW";

// A header that records the given inputs of an instrument.
inline UnitRecord HeaderOf(int inet, std::initializer_list<int> inputs) {
  UnitRecord unit = HeaderOf(0);
  unit.UnitInet = static_cast<std::int16_t>(inet);
  unit.UnitChannels = static_cast<std::int16_t>(inputs.size());
  for (const int input : inputs) {
    unit.UnitRole[input] = 1;
  }
  return unit;
}

inline UnitRecord Running(UnitRecord unit) {
  unit.UnitRecOn = 1;
  return unit;
}

// The engine with everything about it, on a direct line to instruments.
struct PumpFixture : RecordingFixture {
  FakePort port{clock};
  DirectLine line;
  Link link{port, clock};
  SettingsStore settings{state};
  FakeScreens screens;
  RecordingEngine engine{{state, link, files, settings, messages, dialogs, screens, clock}};

  PumpFixture() {
    port.answer = [this](const std::string& command) { return line.Answer(command); };
    screens.built.insert(View::kTavWait);
    link.LinkOpen({"COM1", 0});
    state.DataHome = directory.Path() + "/";
    state.AppPath = state.DataHome;
    state.PumpSlot = kSlots;
    state.PumpChannel = kInputs;
  }

  // Samples that an input has in store, oldest first.
  void Store(int inet, int input, std::initializer_list<int> values) {
    auto& buffer = line.buffers[{inet, input}];
    for (const int value : values) {
      buffer.push_back(static_cast<std::int16_t>(value));
    }
  }

  void Pump(int times) {
    for (int time = 0; time < times; ++time) {
      engine.PumpOnce();
    }
  }

  // What the cycle has announced so far.
  [[nodiscard]] std::vector<std::string> Announced() {
    messages.ShowKept();
    std::vector<std::string> texts;
    for (const Notice& notice : dialogs.announced) {
      texts.push_back(notice.Title + " | " + notice.Text);
    }
    return texts;
  }
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_FILES_PUMP_FIXTURE_H_
