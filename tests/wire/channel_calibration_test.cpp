#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <cmath>

#include "setup/forms/tav_chann.h"
#include "tests/support/wait_until.h"
#include "tests/wire/channel_fixture.h"

namespace tavrel {
namespace {

const std::vector<std::string> kDrifted = {"--instruments", "2",   "--line-speed", "none",
                                           "--speedup",     "200", "--drift",      "20",
                                           "--seed",        "5"};

// The form of the channels on an instrument whose amplifiers have drifted. A second goes by with
// each tick of its timer.
class Calibration : public testing::TestWithParam<bool>, public ChannelFixture {
 protected:
  Calibration() : ChannelFixture(GetParam(), kDrifted) {}
  void SetUp() override { Connect(); }

  void OpenForm() {
    channels.Open();
    form = std::make_unique<TavChann>(channels);
    auto* timer = form->findChild<QTimer*>("Timer_chann");
    ASSERT_NE(timer, nullptr);
    timer->setInterval(5);
    QObject::connect(timer, &QTimer::timeout, form.get(),
                     [this] { clock.Leap(std::chrono::seconds(1)); });
    form->show();
    ASSERT_TRUE(WaitFor(AdjState::kIdle));
  }
  bool WaitFor(AdjState state) {
    return QTest::qWaitFor([this, state] { return channels.State() == state; }, 60000);
  }
  // Readings need the instrument's seconds to differ.
  void Choose(const char* entry) {
    ASSERT_TRUE(QTest::qWaitFor([this] { return channels.Values().MenusEnabled; }, 20000));
    form->findChild<QAction*>(entry)->trigger();
  }
  void Enter() { QTest::keyClick(form->findChild<QWidget*>("Sheet"), Qt::Key_Return); }
  void ChooseRow(int row) {
    auto* sheet = form->findChild<ChannelGrid*>("Sheet");
    sheet->setCurrentCell(row, 1);
    QTest::keyClick(sheet, Qt::Key_Space);
  }
  void Sensor(int row, const std::string& how) {
    EXPECT_TRUE(instrument.Tell("sensor 2." + std::to_string(row) + " " + how));
  }
  [[nodiscard]] bool IsSpoilt() const {
    return channels.Values().Lbl_Instr.find("failed") != std::string::npos;
  }

  // A run of `rows` with the sensors brought to both ends of the span. One whose readings have
  // failed is begun anew, as an operator does who sees it.
  void RunInputs(const char* entry, const std::vector<int>& rows, const std::string& zero,
                 const std::string& span, const char* final_value) {
    constexpr int kAttempts = 5;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
      ASSERT_NO_FATAL_FAILURE(RunToFinal(entry, rows, zero, span));
      if (!IsSpoilt()) {
        break;
      }
      QTest::keyClick(form->findChild<QWidget*>("Sheet"), Qt::Key_Escape);
      ASSERT_TRUE(WaitFor(AdjState::kIdle));
    }
    auto* box = form->findChild<QLineEdit*>("txt_Final");
    QTest::keyClicks(box, final_value);
    QTest::keyClick(box, Qt::Key_Return);
    ASSERT_TRUE(WaitFor(AdjState::kIdle));
  }
  void RunToFinal(const char* entry, const std::vector<int>& rows, const std::string& zero,
                  const std::string& span) {
    Choose(entry);
    ASSERT_TRUE(WaitFor(AdjState::kSelect));
    for (const int row : rows) {
      ChooseRow(row);
      Sensor(row, zero);
    }
    Enter();
    ASSERT_TRUE(WaitFor(AdjState::kAwaitShorted));
    Enter();
    ASSERT_TRUE(WaitFor(AdjState::kAwaitRaised));
    for (const int row : rows) {
      Sensor(row, span);
    }
    Enter();
    ASSERT_TRUE(WaitFor(AdjState::kAwaitFinal));
  }
  void RunReference() {
    Sensor(0, "temp 0");
    Choose("Mnu_RTD");
    ASSERT_TRUE(WaitFor(AdjState::kAwaitZero));
    Enter();
    ASSERT_TRUE(WaitFor(AdjState::kAwaitSpan));
    Sensor(0, "temp 100");
    Enter();
    ASSERT_TRUE(WaitFor(AdjState::kIdle));
  }

  // The mean of Y over some of the instrument's seconds, which takes its noise out.
  double MeanOfY(int row) {
    constexpr int kReadings = 16;
    double sum = 0;
    for (int reading = 0; reading < kReadings; ++reading) {
      sum += Held('Y', row);
      EXPECT_TRUE(instrument.Tell("pass 2 2"));
    }
    return sum / kReadings;
  }
  // How many steps Y is off where it is worst.
  double WorstError(const std::vector<int>& rows, const std::string& how,
                    const std::vector<int>& values, int steps_per_unit) {
    double worst = 0;
    for (const int value : values) {
      for (const int row : rows) {
        const int in_steps = value * steps_per_unit;
        Sensor(row, how + " " + std::to_string(how == "level" ? in_steps : value));
        const double error = MeanOfY(row) - in_steps;
        worst = std::max(worst, std::abs(error));
      }
    }
    return worst;
  }

  std::unique_ptr<TavChann> form;
};

const std::vector<int> kFeCuNiRows = {3, 8};
const std::vector<int> kNiCrNiRows = {9, 15};
const std::vector<int> kLinearRows = {12};
const std::vector<int> kTemperatures = {50, 150, 250, 350, 450};

class DriftedInstrument : public Calibration {
 protected:
  void Calibrate() {
    ASSERT_NO_FATAL_FAILURE(OpenForm());
    ASSERT_NO_FATAL_FAILURE(RunReference());
    Sensor(0, "oven");
    ASSERT_NO_FATAL_FAILURE(RunInputs("Mnu_FeCuNi", kFeCuNiRows, "short", "temp 480", "480"));
    ASSERT_NO_FATAL_FAILURE(RunInputs("Mnu_NiCrNi", kNiCrNiRows, "short", "temp 480", "480"));
    ASSERT_NO_FATAL_FAILURE(RunInputs("Mnu_Linear", kLinearRows, "level 0", "level 9600", "480"));
    channels.CloseNow();
    form->hide();
    EXPECT_TRUE(instrument.Tell("fault all none"));
  }
  void ExpectRight() {
    EXPECT_LE(WorstError(kFeCuNiRows, "temp", kTemperatures, 20), 2);
    EXPECT_LE(WorstError(kNiCrNiRows, "temp", kTemperatures, 20), 2);
    EXPECT_LE(WorstError(kLinearRows, "level", kTemperatures, 20), 2);
    EXPECT_LE(WorstError({0}, "temp", {0, 25, 50, 75, 100}, 100), 2);
  }
};

TEST_P(DriftedInstrument, IsRightAfterItsCalibration) {
  EXPECT_GE(WorstError(kFeCuNiRows, "temp", {50}, 20), 20) << "wrong at first";
  EXPECT_GE(WorstError(kNiCrNiRows, "temp", {50}, 20), 20);
  EXPECT_GE(WorstError({0}, "temp", {50}, 100), 20);
  ASSERT_NO_FATAL_FAILURE(Calibrate());
  ExpectRight();
  EXPECT_TRUE(program.dialogs.boxes.size() == 2U) << "those of the reference sensor alone";
}

TEST_P(DriftedInstrument, IsRightAfterItsCalibrationWithLostReplies) {
  EXPECT_TRUE(instrument.Tell("fault 2 lost-reply 0.05"));
  ASSERT_NO_FATAL_FAILURE(Calibrate());
  ExpectRight();
}

INSTANTIATE_TEST_SUITE_P(Lines, DriftedInstrument, testing::Bool(),
                         [](const auto& line) { return line.param ? "plugin" : "direct"; });

}  // namespace
}  // namespace tavrel
