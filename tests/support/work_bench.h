#ifndef TAVREL_TESTS_SUPPORT_WORK_BENCH_H_
#define TAVREL_TESTS_SUPPORT_WORK_BENCH_H_

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "tests/support/bench_program.h"
#include "tests/support/line_failure.h"
#include "tests/support/plugin_line.h"

namespace tavrel {

// The program on the bench with the worksheet of slot 1: instrument 2, controller 3, reference 2,
// two inputs, rows of 10 s, not recording.
// Levers: fail_at (the exchange, counted from 1 since Forget(), that fails), failure (how),
// dialog (what a user does in a dialog, by its number).
class WorkBench {
 public:
  static constexpr int kInet = 2;
  static constexpr const char* kName = "M260314A.OVN";

  WorkBench() {
    bench.screens.built = {View::kTavWork, View::kTavRec,  View::kTavCoord,
                           View::kTavWait, View::kTavCtrl, View::kTavColor};
    bench.screens.on_show = [this](View view) { RunDialog(view); };
    bench.cycle.SetHandlers({[this] { worksheet.Refresh(); }, [this] { wait_bar.Advance(); },
                             [this](int slot) { programs.StepProgram(slot); },
                             [this] { return bench.ReadBack(); }});
    header.UnitInterval = 1;
    header.UnitDesignation.Set("OVN:Furnace");
  }

  void StartProgram(const std::vector<std::int16_t>& samples = {}, int com_mode = 0) {
    bench.state.Settings.ComMode = com_mode;
    bench.port.answer = [this, com_mode](const std::string& command) {
      const std::string words = com_mode == 0 ? command : InDirectWords(command);
      if (++exchanges == fail_at) {
        return FailedReply(failure, bench.port, [&] { return bench.line.Answer(words); });
      }
      return bench.line.Answer(words);
    };
    bench.Install(1, kName, header, samples);
    bench.Start();
    bench.state.SelSlot = 1;
  }
  // With the first refresh.
  void OpenSheet() {
    worksheet.Open();
    Refresh();
  }
  void StartAndOpen(const std::vector<std::int16_t>& samples = {}) {
    StartProgram(samples);
    OpenSheet();
  }
  // One whole refresh, however many ticks it takes: after an exchange that fails the line needs
  // some time to settle. Returns the ticks.
  int Refresh() {
    bench.state.TickRefresh.At = 0;
    int ticks = 0;
    do {
      bench.cycle.Tick();
      bench.clock.Advance(std::chrono::milliseconds(kTickMilliseconds));
      ++ticks;
    } while (bench.state.TickRefresh.At == 0 && ticks < 100);
    return ticks;
  }
  void Forget() {
    bench.port.sent.clear();
    bench.dialogs.boxes.clear();
    exchanges = 0;
  }
  std::vector<std::string> BoxTexts() const {
    std::vector<std::string> texts;
    for (const Notice& box : bench.dialogs.boxes) {
      texts.push_back(box.Title + "|" + box.Text);
    }
    return texts;
  }
  std::int16_t& Register(char letter, int index) {
    return bench.line.registers[{kInet, letter, index}];
  }
  const WorksheetValues& Shown() const { return worksheet.Values(); }
  const WorksheetRow& Row(int input) const { return Shown().Rows[input]; }
  UnitRecord& Unit() { return bench.state.Unit[1]; }
  UnitRecord FileHeader(const std::string& name) const {
    UnitRecord unit{};
    const std::string bytes = bench.home.Read("tavdat/" + name);
    std::memcpy(&unit, bytes.data(), std::min(sizeof unit, bytes.size()));
    return unit;
  }
  bool HasFile(const std::string& name) const {
    return std::filesystem::exists(bench.home.File("tavdat/" + name));
  }

  BenchProgram bench;
  UnitRecord header = BenchProgram::Header(kInet, 3, 2, false);
  ProgramRunner& programs = bench.runner;
  RecordingSettings& recording = bench.recording_settings;
  Coordinates& coordinates = bench.coordinates;
  ColourChoice& colours = bench.colours;
  WaitBar& wait_bar = bench.wait_bar;
  Worksheet& worksheet = bench.worksheet;
  std::map<View, std::function<void()>> dialog;
  int exchanges = 0;
  int fail_at = 0;
  LineFailure failure = LineFailure::kLostRequest;

 private:
  void RunDialog(View view) {
    if (view == View::kTavWait) {
      wait_bar.Open();
      while (wait_bar.IsOpen()) {
        bench.Run(0.05);
      }
    }
    if (dialog.count(view) != 0) {
      dialog[view]();
    }
  }
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_WORK_BENCH_H_
