#ifndef TAVREL_TESTS_WIRE_WIRE_PROGRAM_H_
#define TAVREL_TESTS_WIRE_WIRE_PROGRAM_H_

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>
#include <functional>
#include <string>

#include "platform/qt/qt_serial_port.h"
#include "tests/support/bench_program.h"
#include "tests/support/fast_clock.h"

namespace tavrel {

inline constexpr const char* kOvenFile = "M260314A.OVN";  // of an oven, as tests record it

// The real serial port; before each command goes out it tells the test so, and which one it is.
class WatchedPort : public SerialPort {
 public:
  explicit WatchedPort(const std::string& directory) : port_(directory) {}

  std::function<void()> before_write = [] {};
  std::string command;

  [[nodiscard]] PortOpening Open(int number, std::string_view settings) override {
    return port_.Open(number, settings);
  }
  [[nodiscard]] PortOpening Reopen() override { return port_.Reopen(); }
  void Close() override { port_.Close(); }
  [[nodiscard]] bool IsOpen() const override { return port_.IsOpen(); }
  [[nodiscard]] std::string Settings() const override { return port_.Settings(); }
  bool Write(std::string_view bytes) override {
    command = bytes;
    before_write();
    return port_.Write(bytes);
  }
  [[nodiscard]] std::string ReadAll() override { return port_.ReadAll(); }
  void WaitForData(std::chrono::nanoseconds limit) override { port_.WaitForData(limit); }
  [[nodiscard]] int TakeEvent() override { return port_.TakeEvent(); }

 private:
  QtSerialPort port_;
};

struct WireMachine {
  explicit WireMachine(int speedup) : clock(speedup) {}

  TemporaryDirectory home;
  FastClock clock;
  WatchedPort port{home.Path()};
  FakeDialogs dialogs;
  FakeScreens screens;
  FakeEvents events;
  FakeShell shell;
  FakePrinter printer;
  FakeClipboard clipboard;
  FakeRegional regional;

  [[nodiscard]] Machine All() {
    return {port, clock, dialogs, screens, events, shell, printer, clipboard, regional};
  }
};

// The whole program on a real serial port, COM1 of its directory, with forms and boxes of the
// test. Its seconds of the day run `speedup` times faster.
class WireProgram : public WireMachine, public ProgramLogic {
 public:
  explicit WireProgram(int speedup) : WireMachine(speedup), ProgramLogic(All()) {
    home.Write(kGermanManual, "manual");
    std::filesystem::create_directory(home.File("tavdat"));
    state.AppPath = home.Path() + "/";
    state.DataHome = state.AppPath;
    state.Settings.CommPort = "COM1";
    state.Settings.TypeSel = 4;
    cycle.SetHandlers({[this] { worksheet.Refresh(); }, [this] { wait_bar.Advance(); },
                       [this](int slot) { runner.StepProgram(slot); },
                       [this] { return ReadBack(); }});
    timer_main.callOnTimeout([this] { cycle.Tick(); });
  }

  // From the settings to the running cycle, with that recording in slot 1.
  void Start(bool plugin, const std::string& name, const UnitRecord& unit) {
    PrepareStart(plugin, name, unit);
    ASSERT_TRUE(LoadMainForm());
    ASSERT_TRUE(link.PortOpen) << link.PortErrorText;
    start_up.MainFormShow();
  }
  // The same for a main form that takes the rest upon itself.
  void PrepareStart(bool plugin, const std::string& name, const UnitRecord& unit) {
    std::string bytes(sizeof unit, '\0');
    std::memcpy(bytes.data(), &unit, sizeof unit);
    home.Write("tavdat/" + name, bytes);
    state.Settings.ActiveFiles[0] = name;
    state.Settings.ComMode = plugin ? 2 : 0;
    state.SettingsRead = true;
  }

  // Runs the cycle on its timer, faster than in the program, until `is_over`; false after ten
  // seconds.
  bool RunUntil(const std::function<bool()>& is_over) {
    const QDeadlineTimer limit(std::chrono::seconds(10));
    timer_main.start(kShortTick);
    while (!is_over() && !limit.hasExpired()) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    }
    timer_main.stop();
    return is_over();
  }

  QTimer timer_main;

 private:
  static constexpr int kShortTick = 10;  // milliseconds
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_WIRE_WIRE_PROGRAM_H_
