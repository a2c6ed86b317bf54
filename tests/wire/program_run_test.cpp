#include <QComboBox>
#include <cmath>

#include "link/registers.h"
#include "tests/forms/modal_bench.h"
#include "tests/support/wait_until.h"
#include "tests/wire/live_instrument.h"
#include "tests/wire/wire_program.h"
#include "work/forms/tav_prog.h"

namespace tavrel {
namespace {

using Telegrams = std::vector<std::string>;

constexpr int kDegree = 20;  // steps of a degree
constexpr double kMinute = 60;
// Time passes in such steps, for the program and for the instrument alike, and nothing else moves
// the program's clock: however busy the machine is, a minute is a minute.
constexpr std::chrono::seconds kStep{20};
constexpr int kMostSteps = 60;
constexpr int kReplyPatience = 4;  // a reply may be put off for 0.4 s
// Seconds in which the instrument works on a telegram.
constexpr double kMoment = 3;

// What went out in a minute, and what the instrument and the slot say right after it.
struct Minute {
  double time = 0;        // seconds of the day
  double instrument = 0;  // that had passed at once for the instrument so far
  Telegrams telegrams;
  bool answers = false;
  int state = 0;
  int setpoint = 0;
  int final_value = 0;
  int increment = 0;
  int step = 0;
  int wait = 0;
  bool runs = false;
  // True seconds of the instrument.
  double setpoint_read = 0;
  double ramp_start = 0;    // when the telegram came that switches the ramp on
  std::string ramp_actual;  // what the instrument gave as the value to start from
};

// A program of five steps on the virtual oven 1 of instrument 1, from the editor to its end. The
// instrument goes away after the sixth minute and comes back after the ninth.
class ProgramRun : public ModalDeeds, public testing::WithParamInterface<bool> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(instrument.IsUp());
    program.clock.patience = kReplyPatience;
    program.Start(GetParam(), "M260314A.OVN", BenchProgram::Header(1, 1, 2, false));
    ASSERT_TRUE(Write("G", 0));
    ASSERT_TRUE(Write("H", 300 * kDegree));
    MainCycle::TickHandlers handlers;
    handlers.step_program = [this](int slot) { StepAndLook(slot); };
    program.cycle.SetHandlers(handlers);
  }

  bool Write(const char* letter, int value) {
    Address(letter);
    program.link.ComValue = static_cast<std::int16_t>(value);
    program.link.WriteReg();
    return program.link.IsGood(1);
  }
  int Read(const char* letter) {
    Address(letter);
    program.link.ReadReg();
    return program.link.IsGood(1) ? program.link.ComValue : kNoData;
  }
  void Address(const char* letter) {
    program.link.ComInet = 1;
    program.link.ComLetter = letter;
    program.link.ComIndex = 1;
  }

  // Types the program into the form by mouse and keys and saves it.
  void EditProgram() {
    program.dialogs.chosen_file = program.home.File("FIVE.PRG");
    Then("TavProg", [] {
      TypeStep(1, {"2", "60", ""}, 2);
      TypeStep(2, {"3", "140", "0.5"}, 3);
      TypeStep(3, {"2", "150", ""}, 2);
      TypeStep(4, {"3", "200", "0.25"}, 3);
      TypeStep(5, {"1", "20", ""}, 1);
      Click("cmdSave");
      Key(Qt::Key_Escape);
    });
    program.program_editor.Open();
    TavProg(program.program_editor).Run();
    ASSERT_TRUE(program.dialogs.boxes.empty());
  }
  // Time, setpoint and increment, and the line of the list of states.
  static void TypeStep(int row, const std::array<const char*, 3>& numbers, int line) {
    constexpr std::array kColumns = {kTimeColumn, kSetpointColumn, kIncrementColumn};
    for (std::size_t place = 0; place < numbers.size(); ++place) {
      ClickCell(row, kColumns.at(place));
      QTest::keyClicks(QApplication::focusWidget(), numbers.at(place));
    }
    ClickCell(row, kStatusColumn);
    Find<QComboBox>("Cstat")->setCurrentIndex(line);
    ClickCell(row, kStepColumn);
  }
  static void ClickCell(int row, int column) {
    auto* grid = Find<ProgramGrid>("Grid");
    const QModelIndex cell = grid->model()->index(row - 1, column);
    QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, grid->visualRect(cell).center());
  }

  // The handler of the cycle: the step of the minute, and what came of it.
  void StepAndLook(int slot) {
    if (slot != 1 || HasEnded()) {
      return;
    }
    Minute now;
    now.time = program.clock.Timer();
    now.instrument = passed;
    instrument.Forget();
    program.runner.StepProgram(slot);
    now.telegrams = instrument.Telegrams(0);
    if (now.telegrams.size() == 5) {
      now.ramp_actual = instrument.LastReply(now.telegrams.at(1));
      now.ramp_start = instrument.LastTime(now.telegrams.at(4));
    }
    if (now.telegrams.size() == 2) {
      setpoint_at = instrument.LastTime(now.telegrams.at(0));
      off_at = instrument.LastTime(now.telegrams.at(1));
    }
    now.answers = program.link.IsGood(1);
    if (now.answers) {
      Look(now);
    }
    now.step = program.state.Unit[1].UnitProgStep;
    now.wait = program.state.Unit[1].UnitProgWait;
    now.runs = program.state.ProgRunning[1];
    minutes.push_back(now);
    if (minutes.size() == 6) {
      EXPECT_TRUE(instrument.Tell("fault 1 silence on"));
    } else if (minutes.size() == 9) {
      EXPECT_TRUE(instrument.Tell("fault 1 none"));
    }
  }
  void Look(Minute& now) {
    now.setpoint = Read("W");
    now.state = Read("Z");
    now.final_value = Read("M");
    now.increment = Read("I");
    now.setpoint_read = instrument.LastTime(Of("W01?", "np1?"));
  }
  [[nodiscard]] bool HasEnded() const { return !minutes.empty() && !minutes.back().runs; }

  static std::string Of(const char* direct, const char* plugin) {
    return GetParam() ? plugin : direct;
  }
  static Telegrams Hold(const char* setpoint, const char* state) {
    return {Of("W01=", "np1=") + setpoint + "\r", Of("Z01=", "np31=") + state + "\r"};
  }
  static Telegrams Ramp(const char* final_value, const std::string& actual, const char* increment) {
    return {Of("M01=", "nv61=") + final_value + "\r", Of("Y01?", "np21?"),
            Of("W01=", "np1=") + WithoutZeros(actual) + "\r",
            Of("I01=", "nv21=") + increment + "\r", Of("Z01=", "np31=") + "3\r"};
  }
  static std::string WithoutZeros(const std::string& digits) {
    return digits.substr(std::min(digits.find_first_not_of('0'), digits.size()));
  }

  // The minutes `first` to `last` are those of one ramp.
  void ExpectRamp(std::size_t first, std::size_t last, int final_value, double degrees_a_second) {
    const Minute& start = minutes.at(first);
    ASSERT_FALSE(start.ramp_actual.empty());
    const int begin = std::stoi(start.ramp_actual, nullptr, 16);
    const double slope = degrees_a_second * kDegree;
    for (std::size_t place = first; place <= last; ++place) {
      const Minute& now = minutes.at(place);
      const double seconds =
          now.setpoint_read + now.instrument - start.ramp_start - start.instrument;
      const double expected = std::min<double>(begin + slope * seconds, final_value);
      EXPECT_NEAR(now.setpoint, expected, slope * kMoment) << "minute " << place;
      EXPECT_EQ(now.state, now.setpoint == final_value ? 2 : 3) << "minute " << place;
      EXPECT_EQ(now.final_value, final_value) << "minute " << place;
      EXPECT_EQ(now.increment, std::lround(degrees_a_second * 100)) << "minute " << place;
    }
  }
  void ExpectHold(std::size_t place, int degrees) const {
    EXPECT_EQ(minutes.at(place).setpoint, degrees * kDegree) << "minute " << place;
    EXPECT_EQ(minutes.at(place).state, 2) << "minute " << place;
  }

  // The ramp before is still on between the last two telegrams and moves the new setpoint for
  // as long; nothing moves it afterwards.
  void ExpectOffAt20() const {
    const Minute& off = minutes.at(13);
    const double moved = 0.25 * kDegree * (off_at - setpoint_at);
    EXPECT_NEAR(off.setpoint, 20 * kDegree + moved, 0.25 * kDegree * kMoment);
    EXPECT_EQ(off.state, 0);
    EXPECT_EQ(minutes.at(14).setpoint, off.setpoint);
    EXPECT_EQ(minutes.at(14).state, 0);
  }

  // Until the cycle has done what is due now: a pass of the sheet and the work of a minute.
  bool RunUntilIdle() {
    return program.RunUntil([this] {
      const double now = program.clock.Timer();
      return program.state.TickRefresh.At >= now && program.state.TickMinute.At >= now;
    });
  }
  void PassTime(std::chrono::seconds time) {
    program.clock.Advance(time);
    ASSERT_TRUE(instrument.Tell("pass 1 " + std::to_string(time.count())));
    passed += static_cast<double>(time.count());
  }

  WireProgram program{0};
  LiveInstrument instrument{program.home, GetParam(), {}};
  double passed = 0;  // seconds
  std::vector<Minute> minutes;
  // When the two telegrams of the last step without a ramp came, in true seconds.
  double setpoint_at = 0;
  double off_at = 0;
};

TEST_P(ProgramRun, DrivesAnOvenThroughFiveStepsWithAnInstrumentThatWasAway) {
  EditProgram();
  ASSERT_EQ(program.runner.Start(1), ProgramStart::kStarted);
  for (int step = 0; step < kMostSteps && !HasEnded(); ++step) {
    // What is due at a moment is done behind it.
    ASSERT_NO_FATAL_FAILURE(PassTime(step == 0 ? std::chrono::seconds(1) : kStep));
    ASSERT_TRUE(RunUntilIdle()) << step;
  }

  // The step that was sent last and the minutes that are left of it; the minutes in which the
  // instrument is away do not count.
  const std::vector<std::pair<int, int>> steps_and_waits = {{1, 2}, {1, 1}, {2, 3}, {2, 2}, {2, 1},
                                                            {3, 2}, {3, 2}, {3, 2}, {3, 2}, {3, 1},
                                                            {4, 3}, {4, 2}, {4, 1}, {5, 1}, {5, 0}};
  ASSERT_EQ(minutes.size(), steps_and_waits.size());
  std::vector<Telegrams> telegrams(minutes.size());
  telegrams[0] = Hold("4B0", "2");
  telegrams[2] = Ramp("AF0", minutes[2].ramp_actual, "32");
  telegrams[5] = Hold("BB8", "2");
  telegrams[10] = Ramp("FA0", minutes[10].ramp_actual, "19");
  telegrams[13] = Hold("190", "0");
  for (std::size_t place = 0; place < minutes.size(); ++place) {
    const Minute& now = minutes.at(place);
    EXPECT_EQ(now.telegrams, telegrams.at(place)) << place;
    EXPECT_EQ(now.answers, place < 6 || place > 8) << place;
    EXPECT_EQ(std::pair(now.step, now.wait), steps_and_waits.at(place)) << place;
    EXPECT_EQ(now.time, minutes.front().time + kMinute * static_cast<double>(place)) << place;
  }
  ExpectHold(0, 60);
  ExpectHold(1, 60);
  ExpectRamp(2, 4, 140 * kDegree, 0.5);
  ExpectHold(5, 150);
  ExpectHold(9, 150);
  ExpectRamp(10, 12, 200 * kDegree, 0.25);
  ExpectOffAt20();
  EXPECT_TRUE(program.dialogs.boxes.empty());
  EXPECT_TRUE(program.dialogs.announced.empty());
}

INSTANTIATE_TEST_SUITE_P(BothKindsOfLine, ProgramRun, testing::Bool(),
                         [](const auto& test) { return test.param ? "plugin" : "direct"; });

}  // namespace
}  // namespace tavrel
