#ifndef TAVREL_TESTS_FILES_PUMP_ROOM_H_
#define TAVREL_TESTS_FILES_PUMP_ROOM_H_

#include <cstdio>
#include <cstdlib>
#include <deque>
#include <initializer_list>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "files/recording_engine.h"
#include "link/link.h"
#include "tests/files/recording_room.h"
#include "tests/support/fake_port.h"

namespace tavrel {

// The instruments of a direct line: each input has a queue of stored samples, which reading X
// hands over, oldest first.
// Levers: Store() fills a queue; silent, refused: instruments and registers that do not answer.
class FakeInstruments {
 public:
  std::set<int> silent;           // numbers of instruments that say nothing
  std::set<std::string> refused;  // beginnings of commands that are answered by "?"

  void Store(int inet, int input, std::initializer_list<int> values) {
    auto& queue = queues_[{inet, input}];
    queue.insert(queue.end(), values.begin(), values.end());
  }

  // Direct frames: letter, INET - 1, index, then "?" or "=" value CR.
  [[nodiscard]] std::string Answer(const std::string& command) {
    const int inet = std::stoi(command.substr(1, 1), nullptr, 16) + 1;
    const int index = std::stoi(command.substr(2, 1), nullptr, 16);
    if (silent.count(inet) != 0) {
      return "";
    }
    if (refused.count(command.substr(0, 3)) != 0) {
      return "?";
    }
    if (command[3] == '=') {
      return ".";
    }
    return command[0] == 'X' ? Word(TakeSample(inet, index)) : Word(0);
  }

 private:
  static std::string Word(int value) {
    char text[8];
    std::snprintf(text, sizeof text, "%04X\r", static_cast<unsigned>(value) & 0xFFFFU);
    return text;
  }
  int TakeSample(int inet, int input) {
    auto& queue = queues_[{inet, input}];
    if (queue.empty()) {
      return kNoData;
    }
    const int value = queue.front();
    queue.pop_front();
    return value;
  }

  std::map<std::pair<int, int>, std::deque<int>> queues_;
};

// A header that records the given inputs of an instrument.
inline UnitRecord HeaderOf(int inet, std::initializer_list<int> inputs) {
  UnitRecord unit = HeaderOf(0);
  unit.UnitInet = static_cast<std::int16_t>(inet);
  unit.UnitChannels = static_cast<std::int16_t>(inputs.size());
  for (const int input : inputs) {
    unit.UnitRole.at(static_cast<std::size_t>(input - 1)) = 1;
  }
  return unit;
}

inline UnitRecord Running(UnitRecord unit) {
  unit.UnitRecOn = 1;
  return unit;
}

// The engine with everything about it, on a direct line to instruments.
struct PumpRoom : RecordingRoom {
  FakePort port{clock};
  FakeInstruments instruments;
  Link link{port, clock};
  SettingsStore settings{state};
  FakeScreens screens;
  RecordingEngine engine{{state, link, files, settings, messages, dialogs, screens}};

  PumpRoom() {
    port.answer = [this](const std::string& command) { return instruments.Answer(command); };
    screens.built.insert(View::kTavWait);
    link.LinkOpen({"COM1", 0});
    state.DataHome = directory.Path() + "/";
    state.AppPath = state.DataHome;
    state.PumpSlot = kSlots;
    state.PumpChannel = kInputs;
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

#endif  // TAVREL_TESTS_FILES_PUMP_ROOM_H_
