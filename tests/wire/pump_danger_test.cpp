// Twelve recordings with nearly full buffers, on a line at its true speed.
#include <fstream>

#include "main/forms/tavrel.h"
#include "platform/qt/qt_events.h"
#include "tests/truth/comparison.h"
#include "tests/wire/live_instrument.h"
#include "tests/wire/wire_program.h"

namespace tavrel {
namespace {

// The instruments' time runs faster, so that their buffers are full within the test: 24 inputs
// every 2 s are 12 exchanges a second, of some 36 that a line of 9600 baud can carry. The program
// does not know of it and trusts in its own clock; but for the length of the test the counts that
// it has read at the start are enough.
constexpr int kDangerSpeedUp = 5;
constexpr int kStored = 888;     // room for eight sets: 16 s
constexpr int kEnoughRows = 30;  // of each recording; takes longer than that
constexpr int kInstruments = 6;

const std::vector<int> kInputsOfEvenSlots = {1, 2};
const std::vector<int> kInputsOfOddSlots = {7, 15};

RecordedSlot RecordingOf(int slot) {
  return {std::string("M260314") + static_cast<char>('A' + slot - 1) + ".OVN", (slot + 1) / 2,
          slot % 2 == 0 ? kInputsOfEvenSlots : kInputsOfOddSlots};
}

UnitRecord HeaderOf(const RecordedSlot& recording, int ctrl) {
  UnitRecord unit = BenchProgram::Header(recording.inet, ctrl, 0, true);
  unit.UnitChannels = static_cast<std::int16_t>(recording.inputs.size());
  unit.UnitInterval = 1;
  for (const int input : recording.inputs) {
    unit.UnitRole[input] = 1;
  }
  return unit;
}

std::vector<std::string> Options() {
  std::vector<std::string> options = {"--instruments", std::to_string(kInstruments), "--speedup",
                                      std::to_string(kDangerSpeedUp), "--warm"};
  for (int inet = 1; inet <= kInstruments; ++inet) {
    options.insert(options.end(), {"--oven", std::to_string(inet) + ".1=ramp:450:0.1"});
    for (const int input : {1, 2, 7, 15}) {
      options.insert(options.end(),
                     {"--sample", std::to_string(inet) + "." + std::to_string(input) + "=10"});
    }
    options.insert(options.end(),
                   {"--backlog", std::to_string(inet) + "=" + std::to_string(kStored)});
  }
  return options;
}

// With the event loop of the program.
struct LoopMachine : WireMachine {
  LoopMachine() : WireMachine(1) {}

  QtEvents loop;

  [[nodiscard]] Machine All() {
    return {port, clock, dialogs, screens, loop, shell, printer, clipboard, regional};
  }
};

class PumpInDanger : public testing::Test, public LoopMachine {
 protected:
  void SetUp() override {
    ASSERT_TRUE(instrument.IsUp());
    home.Write(kGermanManual, "manual");
    std::filesystem::create_directory(home.File("tavdat"));
    RunState& state = program.state;
    state.AppPath = state.DataHome = home.Path() + "/";
    state.Settings.CommPort = "COM1";
    state.Settings.ComMode = 2;
    state.SettingsRead = true;
    for (int slot = 1; slot <= kSlots; ++slot) {
      const RecordedSlot recording = RecordingOf(slot);
      const UnitRecord unit = HeaderOf(recording, 2 - slot % 2);
      std::string bytes(sizeof unit, '\0');
      std::memcpy(bytes.data(), &unit, sizeof unit);
      home.Write("tavdat/" + recording.file, bytes);
      state.Settings.ActiveFiles.at(static_cast<std::size_t>(slot - 1)) = recording.file;
    }
    ASSERT_TRUE(program.start_up.MainFormLoad());
    ASSERT_TRUE(program.link.PortOpen) << program.link.PortErrorText;
  }

  [[nodiscard]] int FewestRows() const {
    return *std::min_element(program.state.SampleCount.begin() + 1,
                             program.state.SampleCount.end());
  }

  LiveInstrument instrument{home, true, Options()};
  ProgramLogic program{All()};
};

TEST_F(PumpInDanger, LosesNoSetOfTwelveRecordings) {
  Tavrel form({program.sheet, program.commands, program.cycle, program.start_up}, kSlots);
  form.show();
  const QDeadlineTimer limit(std::chrono::seconds(60));
  while (FewestRows() < kEnoughRows && !limit.hasExpired()) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
  }
  program.cycle.Stop();
  EXPECT_GE(FewestRows(), kEnoughRows);
  EXPECT_TRUE(program.engine.IsPressed());
  std::ifstream file(home.File("truth.txt"));
  const LineTruth truth = ReadLineTruth(file, {});
  EXPECT_EQ(truth.overruns, 0);
  EXPECT_EQ(truth.lost, 0);
  for (int slot = 1; slot <= kSlots; ++slot) {
    const RecordedSlot recording = RecordingOf(slot);
    const std::string bytes = home.Read("tavdat/" + recording.file);
    const Findings findings = Compare(truth, recording, bytes.substr(sizeof(UnitRecord)));
    EXPECT_TRUE(findings.Agrees()) << testing::PrintToString(findings);
  }
  program.commands.Close();
}

}  // namespace
}  // namespace tavrel
