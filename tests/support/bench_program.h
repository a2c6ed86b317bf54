#ifndef TAVREL_TESTS_SUPPORT_BENCH_PROGRAM_H_
#define TAVREL_TESTS_SUPPORT_BENCH_PROGRAM_H_

#include <cstring>
#include <string>
#include <vector>

#include "app/program_logic.h"
#include "dialogs/help.h"
#include "tests/support/direct_line.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_output.h"
#include "tests/support/fake_port.h"
#include "tests/support/fake_screen.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {

class FakeShell : public Shell {
 public:
  std::vector<std::string> opened;
  bool has_programs = true;  // lever: false: nothing is registered for what is opened
  void OpenDocument(const std::string& path, std::function<void()> failed) override {
    opened.push_back(path);
    if (!has_programs) {
      failed();
    }
  }
};

// What a test gives the program for a machine: a directory of its own, a scripted line, boxes
// that answer at once, a clock that the test moves.
struct BenchMachine {
  TemporaryDirectory home;
  FakeClock clock;
  FakePort port{clock};
  DirectLine line;
  FakeDialogs dialogs;
  FakeScreens screens;
  FakeEvents events;
  FakeShell shell;
  FakePrinter printer;
  FakeClipboard clipboard;
  FakeRegional regional;
  std::vector<Place> places{{"computer  (/)", "/"}};  // where the lists of directories begin

  [[nodiscard]] Machine All() {
    return {port,  clock,   dialogs,   screens,  events,
            shell, printer, clipboard, regional, [this] { return places; }};
  }
};

// The whole program without its forms, on a bench: real logic and real files.
class BenchProgram : public BenchMachine, public ProgramLogic {
 public:
  BenchProgram() : ProgramLogic(All()) {
    port.answer = [this](const std::string& command) { return line.Answer(command); };
    home.Write(kGermanManual, "manual");
    std::filesystem::create_directory(home.File("tavdat"));
    state.AppPath = home.Path() + "/";
    state.DataHome = state.AppPath;
    state.Settings.CommPort = "COM1";
    state.Settings.TypeSel = 4;
  }

  // A header of a recording with inputs 1..`channels`, controller `ctrl`, reference 2.
  static UnitRecord Header(int inet, int ctrl, int channels, bool rec_on) {
    UnitRecord unit = DefaultUnitRecord();
    unit.UnitInet = static_cast<std::int16_t>(inet);
    unit.UnitCtrl = static_cast<std::int16_t>(ctrl);
    unit.UnitChannels = static_cast<std::int16_t>(channels);
    unit.UnitRecOn = rec_on ? 1 : 0;
    for (int input = 1; input <= kInputs; ++input) {
      unit.UnitRole[input] = input <= channels ? 1 : 0;
    }
    return unit;
  }

  // Puts a recording file into the data directory and its name into the settings.
  void Install(int slot, const std::string& name, const UnitRecord& unit,
               const std::vector<std::int16_t>& samples = {}) {
    std::string bytes(sizeof unit + 2 * samples.size(), '\0');
    std::memcpy(bytes.data(), &unit, sizeof unit);
    if (!samples.empty()) {
      std::memcpy(bytes.data() + sizeof unit, samples.data(), 2 * samples.size());
    }
    home.Write("tavdat/" + name, bytes);
    state.Settings.ActiveFiles.at(static_cast<std::size_t>(slot - 1)) = name;
  }

  // From the loaded settings to the running cycle.
  void Start() {
    state.SettingsRead = true;
    ASSERT_TRUE(LoadMainForm());
    start_up.MainFormShow();
  }

  // Runs the cycle for a while, a tick each 50 ms.
  void Run(double seconds) {
    for (const auto end = clock.Elapsed() + std::chrono::duration<double>(seconds);
         clock.Elapsed() < end; clock.Advance(std::chrono::milliseconds(kTickMilliseconds))) {
      cycle.Tick();
    }
  }

  const SheetRow& Row(int slot) const { return sheet.Values().Rows[slot]; }
  std::vector<std::int16_t> Samples(const std::string& name) const {
    const std::string bytes = home.Read("tavdat/" + name);
    std::vector<std::int16_t> words((bytes.size() - sizeof(UnitRecord)) / 2);
    if (!words.empty()) {
      std::memcpy(words.data(), bytes.data() + sizeof(UnitRecord), words.size() * 2);
    }
    return words;
  }
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_BENCH_PROGRAM_H_
