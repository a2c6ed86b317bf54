#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QTimer>
#include <algorithm>
#include <cmath>
#include <cstring>

#include "files/recording_engine.h"
#include "frame/main_cycle.h"
#include "frame/main_sheet.h"
#include "frame/settings_store.h"
#include "link/link.h"
#include "platform/qt/qt_serial_port.h"
#include "platform/system_clock.h"
#include "tests/e2e/process.h"
#include "tests/support/control_bench.h"
#include "work/program_editor.h"
#include "work/program_runner.h"

namespace tavrel {
namespace {

using std::chrono::seconds;

constexpr int kSpeedUp = 30;    // a minute of the instrument passes in two seconds
constexpr int kDegree = 20;     // steps of a degree
constexpr double kJitter = 12;  // seconds of the instrument that an exchange may take

// The machine's clock, so fast that the minutes of the cycle are those of the instrument.
class FastClock : public Clock {
 public:
  [[nodiscard]] double Timer() const override {
    return 36000 + kSpeedUp * std::chrono::duration<double>(clock_.Elapsed() - begin_).count();
  }
  [[nodiscard]] std::chrono::nanoseconds Elapsed() const override { return clock_.Elapsed(); }
  [[nodiscard]] WallTime Now() const override { return clock_.Now(); }

 private:
  SystemClock clock_;
  std::chrono::nanoseconds begin_ = clock_.Elapsed();
};

// What the instrument and the slot say right after the work of a minute.
struct Minute {
  double time = 0;  // seconds of the instrument
  bool answers = false;
  int state = 0;
  int setpoint = 0;
  int final_value = 0;
  int increment = 0;
  int step = 0;
  int wait = 0;
  bool runs = false;
};

class ProgramRun : public testing::Test {
 protected:
  void SetUp() override {
    const std::string directory = home.Path();
    instrument = Process({TAVREL_BUILD_DIRECTORY "/instrument/tavrel-instrument", "--link",
                          directory + "/COM1", "--control", directory + "/control", "--speedup",
                          std::to_string(kSpeedUp)});
    ASSERT_NE(instrument.ReadLine(seconds(20)).find("ready"), std::string::npos);
    link.LinkOpen({"COM1", 0, 4});
    ASSERT_EQ(link.PortError, 0);
    state.Unit[1] = BenchProgram::Header(1, 1, 2, false);
    state.SlotFile[1] = "M260314A.OVN";
    state.SlotPath[1] = directory;
    state.RecInterval[1] = 10;
    state.SampleLimit[1] = 1000;
    std::string header(sizeof(UnitRecord), '\0');
    std::memcpy(header.data(), &state.Unit[1], header.size());
    home.Write("M260314A.OVN", header);
    ASSERT_TRUE(state.SlotFileNo[1].Open(home.File("M260314A.OVN"), FileAccess::kUpdate));
    state.SelSlot = 1;
    state.ActiveView = View::kMainSheet;
    ASSERT_TRUE(Write("G", 0));
    ASSERT_TRUE(Write("H", 300 * kDegree));
  }

  [[nodiscard]] bool Tell(const std::string& command) const {
    return RunCommand({TAVREL_BUILD_DIRECTORY "/instrument/tavrel-instrument", "--send",
                       home.File("control"), command}) == 0;
  }

  bool Write(const char* letter, int value) {
    link.ComInet = 1;
    link.ComLetter = letter;
    link.ComIndex = 1;
    link.ComValue = static_cast<std::int16_t>(value);
    link.WriteReg();
    return link.IsGood(1);
  }
  int Read(const char* letter) {
    link.ComInet = 1;
    link.ComLetter = letter;
    link.ComIndex = 1;
    link.ReadReg();
    return link.IsGood(1) ? link.ComValue : kNoData;
  }

  // A program of five steps, typed into the editor and saved.
  void EditProgram() {
    constexpr std::array<std::array<const char*, 3>, 5> kNumbers = {{{"2", "60", ""},
                                                                     {"3", "140", "0.5"},
                                                                     {"2", "150", ""},
                                                                     {"3", "200", "0.25"},
                                                                     {"1", "20", ""}}};
    constexpr std::array kLines = {2, 3, 2, 3, 1};
    ProgramEditor editor({state, dialogs});
    const auto type = [&editor](int row, int column, const char* text) {
      editor.Grid_Click(row, column);
      editor.txtEdit_Change(text);
    };
    for (int row = 1; row <= 5; ++row) {
      const auto place = static_cast<std::size_t>(row - 1);
      type(row, kTimeColumn, kNumbers.at(place)[0]);
      type(row, kSetpointColumn, kNumbers.at(place)[1]);
      type(row, kIncrementColumn, kNumbers.at(place)[2]);
      editor.Grid_Click(row, kStatusColumn);
      editor.Cstat_Click(kLines.at(place));
    }
    dialogs.chosen_file = home.File("FIVE.PRG");
    editor.cmdSave_Click();
    editor.Quit();
    ASSERT_TRUE(dialogs.boxes.empty());
  }

  // The guest of the cycle: the step of the minute, and what came of it. The instrument goes
  // away after the sixth minute and comes back after the ninth.
  void StepAndLook(int slot) {
    runner.StepProgram(slot);
    if (slot != 1 || HasEnded()) {
      return;
    }
    const UnitRecord& unit = state.Unit[1];
    Minute now;
    now.time = fast.Timer();
    now.answers = link.IsGood(1);
    if (now.answers) {
      now.setpoint = Read("W");
      now.state = Read("Z");
      now.final_value = Read("M");
      now.increment = Read("I");
    }
    now.step = unit.UnitProgStep;
    now.wait = unit.UnitProgWait;
    now.runs = state.ProgRunning[1];
    minutes.push_back(now);
    if (minutes.size() == 6) {
      EXPECT_TRUE(Tell("fault 1 silence on"));
    } else if (minutes.size() == 9) {
      EXPECT_TRUE(Tell("fault 1 none"));
    }
  }
  [[nodiscard]] bool HasEnded() const { return !minutes.empty() && !minutes.back().runs; }

  // Runs the cycle on its timer until the program has ended.
  void RunToTheEnd() {
    QTimer timer_main;
    timer_main.callOnTimeout([this] { cycle.Tick(); });
    timer_main.start(kTickMilliseconds);
    const QDeadlineTimer limit(seconds(90));
    while (!HasEnded() && !limit.hasExpired()) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
  }

  // The setpoint of a ramp that began in minute `start`, as it must be in minute `now`.
  void ExpectOnRamp(std::size_t start, std::size_t now, int final_value, double degrees_a_second) {
    const Minute& first = minutes.at(start);
    const Minute& minute = minutes.at(now);
    const double slope = degrees_a_second * kDegree;
    const double straight = first.setpoint + slope * (minute.time - first.time);
    const double expected = std::min<double>(straight, final_value);
    EXPECT_NEAR(minute.setpoint, expected, slope * kJitter) << "minute " << now;
    EXPECT_EQ(minute.state, minute.setpoint == final_value ? 2 : 3) << "minute " << now;
    EXPECT_EQ(minute.final_value, final_value);
    EXPECT_EQ(minute.increment, std::lround(degrees_a_second * 100));
  }

  TemporaryDirectory home;
  Process instrument;
  RunState state;
  SystemClock clock;
  FastClock fast;
  QtSerialPort port{home.Path()};
  FakeDialogs dialogs;
  FakeScreens screens;
  FakeEvents events;
  Link link{port, clock};
  Messages messages{dialogs};
  RecordingFiles files{state, fast, messages};
  SettingsStore settings{state};
  RecordingEngine engine{{state, link, files, settings, messages, dialogs, screens, fast}};
  MainSheet sheet{{state, link, fast, screens, events, files}};
  MainCycle cycle{{state, link, engine, sheet, messages, fast}};
  ProgramRunner runner{{state, link, engine, dialogs, events, fast}};
  std::vector<Minute> minutes;
};

TEST_F(ProgramRun, DrivesAnOvenThroughFiveStepsWithAnInstrumentThatWasAway) {
  EditProgram();
  MainCycle::Guests guests;
  guests.step_program = [this](int slot) { StepAndLook(slot); };
  cycle.SetGuests(guests);
  ASSERT_GT(Read("Y"), kNoData);
  ASSERT_EQ(runner.Start(1), ProgramStart::kStarted);
  cycle.Start();
  RunToTheEnd();

  const std::vector<std::pair<int, int>> steps_and_waits = {{1, 2}, {1, 1}, {2, 3}, {2, 2}, {2, 1},
                                                            {3, 2}, {3, 2}, {3, 2}, {3, 2}, {3, 1},
                                                            {4, 3}, {4, 2}, {4, 1}, {5, 1}, {5, 0}};
  ASSERT_EQ(minutes.size(), steps_and_waits.size());
  for (std::size_t place = 0; place < minutes.size(); ++place) {
    const Minute& now = minutes.at(place);
    const bool away = place >= 6 && place <= 8;
    EXPECT_EQ(now.answers, !away) << place;
    EXPECT_EQ(now.step, steps_and_waits.at(place).first) << place;
    EXPECT_EQ(now.wait, steps_and_waits.at(place).second) << place;
    if (place > 0) {
      EXPECT_NEAR(now.time - minutes.at(place - 1).time, 60, 2 * kJitter) << place;
    }
  }
  for (const std::size_t place : {0, 1}) {
    EXPECT_EQ(minutes.at(place).setpoint, 60 * kDegree);
    EXPECT_EQ(minutes.at(place).state, 2);
  }
  EXPECT_LT(minutes.at(2).setpoint, 100 * kDegree) << "the ramp begins at the actual value";
  for (const std::size_t place : {2, 3, 4}) {
    ExpectOnRamp(2, place, 140 * kDegree, 0.5);
  }
  for (const std::size_t place : {5, 9}) {
    EXPECT_EQ(minutes.at(place).setpoint, 150 * kDegree);
    EXPECT_EQ(minutes.at(place).state, 2);
  }
  for (const std::size_t place : {10, 11, 12}) {
    ExpectOnRamp(10, place, 200 * kDegree, 0.25);
  }
  // The ramp of the step before is still on and moves the new setpoint for the moment between
  // the two telegrams, W and then Z, which the speed-up stretches.
  const double moment = 0.25 * kDegree * kJitter;
  for (const std::size_t place : {13, 14}) {
    EXPECT_NEAR(minutes.at(place).setpoint, 20 * kDegree, moment);
    EXPECT_EQ(minutes.at(place).state, 0);
  }
  EXPECT_TRUE(dialogs.boxes.empty());
  EXPECT_TRUE(dialogs.announced.empty());
}

}  // namespace
}  // namespace tavrel
