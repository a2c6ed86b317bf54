#include "files/simulated_rows.h"

#include <gtest/gtest.h>

#include "tests/support/settings_bench.h"

namespace tavrel {
namespace {

constexpr const char* kFile = "M260314A.OVN";

// Recordings that are on while the instruments are simulated.
class SimulatedRows : public testing::Test, public SettingsBench {
 protected:
  SimulatedRows() {
    bench.state.ActiveView = View::kNone;
    bench.state.Settings.CommPort = "----";
    bench.events.on_rest = [this](std::chrono::milliseconds time) { bench.clock.Advance(time); };
  }
  void Install(int slot, int channels, const std::vector<std::int16_t>& words) {
    bench.Install(slot, NameOf(slot), BenchProgram::Header(2, 1, channels, true), words);
  }
  static std::string NameOf(int slot) {
    return slot == 1 ? kFile : "M2603" + std::to_string(15 + slot) + "A.OVN";
  }
  std::string Bytes(int slot) const { return bench.home.Read("tavdat/" + NameOf(slot)); }
  std::size_t Words(int slot) const { return bench.Samples(NameOf(slot)).size(); }
  std::vector<FakeDialogs::Question>& Questions() { return bench.dialogs.asked_beside; }

  // The settings dialog with that port and OK.
  void ChoosePort(int index) {
    bench.screens.on_show = [this, index](View view) {
      if (view == View::kTavSett) {
        Open().cboCom_Click(index);
        dialog.CmdOK_Click();
      }
    };
    bench.commands.MnuSettings();
  }
  const SheetRow& Row(int slot) const { return bench.Row(slot); }
};

class EachSlotSimulated : public SimulatedRows, public testing::WithParamInterface<int> {};

TEST_P(EachSlotSimulated, StandsStillBehindTheRowsOfAnInstrument) {
  const int slot = GetParam();
  const int channels = 1 + slot;
  Install(slot, channels, std::vector<std::int16_t>(static_cast<std::size_t>(2 * channels), 4001));
  const std::string before = Bytes(slot);
  bench.Start();
  bench.Run(30);
  EXPECT_EQ(Bytes(slot), before);
  EXPECT_EQ(Row(slot).lb_Rstat, "sim !");
  EXPECT_EQ(Row(slot).sh_Rstat, kOrange);
  EXPECT_NE(Row(slot).RstatNote, "");
  EXPECT_FALSE(bench.home.Exists("tavdat/." + NameOf(slot) + ".set"));
}

INSTANTIATE_TEST_SUITE_P(EverySlot, EachSlotSimulated, testing::Range(1, kSlots + 1));

TEST_F(SimulatedRows, AreAskedForOnceWithoutStoppingTheCycle) {
  Install(1, 2, {7, 8, 7, 8});
  Install(4, 1, {7, 7});
  bench.Start();
  bench.Run(30);
  ASSERT_EQ(Questions().size(), 1U);
  EXPECT_TRUE(bench.dialogs.boxes.empty());
  EXPECT_EQ(Questions()[0].notice.Text,
            "The instruments are simulated.\n\nThese files hold rows already:\n" + NameOf(1) +
                "\n" + NameOf(4) +
                "\n\nTheir recording stands still. Write simulated values behind their rows ?");
  EXPECT_TRUE(Questions()[0].notice.PresetIsNo);
}

TEST_F(SimulatedRows, FollowAfterAYes) {
  Install(1, 2, {7, 8, 7, 8});
  bench.Start();
  bench.Run(5);
  ASSERT_EQ(Questions().size(), 1U);
  Questions()[0].answer(true);
  bench.Run(15);
  const std::vector<std::int16_t> samples = bench.Samples(kFile);
  ASSERT_GE(samples.size(), 8U);
  EXPECT_EQ((std::vector<std::int16_t>{samples.begin(), samples.begin() + 6}),
            (std::vector<std::int16_t>{7, 8, 7, 8, 10, 20}));
  EXPECT_EQ(Row(1).lb_Rstat, "on");
}

TEST_F(SimulatedRows, DoNotFollowAfterANo) {
  Install(1, 2, {7, 8, 7, 8});
  bench.Start();
  bench.Run(5);
  Questions().at(0).answer(false);
  bench.Run(60);
  EXPECT_EQ(Words(1), 4U);
  EXPECT_EQ(Questions().size(), 1U);
  EXPECT_EQ(Row(1).lb_Rstat, "sim !");
}

TEST_F(SimulatedRows, AreAskedForAgainByTheSettings) {
  Install(1, 2, {7, 8, 7, 8});
  bench.Start();
  bench.Run(5);
  Questions().at(0).answer(false);
  bench.dialogs.yes = false;
  ChoosePort(0);
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_TRUE(bench.dialogs.boxes[0].PresetIsNo);
  bench.Run(20);
  EXPECT_EQ(Words(1), 4U);
  bench.dialogs.yes = true;
  ChoosePort(0);
  bench.Run(20);
  EXPECT_GT(Words(1), 4U);
}

TEST_F(SimulatedRows, DoNotFollowWhereThePortWasMissingAtTheStart) {
  bench.state.Settings.CommPort = "COM1";
  Install(1, 2, {7, 8, 7, 8});
  const std::string before = Bytes(1);
  bench.port.open_error = 2;
  bench.state.SettingsRead = true;
  bench.screens.on_show = [this](View view) {
    if (view == View::kTavSett) {
      Open().cboCom_Click(0);
      dialog.CmdOK_Click();
    }
  };
  ASSERT_TRUE(bench.start_up.MainFormLoad());
  bench.start_up.MainFormShow();
  ASSERT_TRUE(bench.link.Simulated);
  bench.Run(30);
  EXPECT_EQ(Bytes(1), before);
  EXPECT_EQ(Questions().size(), 1U);
}

TEST_F(SimulatedRows, DoNotFollowWhereTheSettingsNameNoNumber) {
  for (const char* port : {"", "COM", "COMX", "COM0", "COM-3"}) {
    bench.state.Settings.CommPort = port;
    bench.commands.LinkOpen();
    EXPECT_TRUE(bench.link.Simulated) << port;
  }
  Install(1, 2, {7, 8, 7, 8});
  bench.Start();
  bench.Run(30);
  EXPECT_EQ(Words(1), 4U);
}

TEST_F(SimulatedRows, FillAFileThatIsBegunWithThem) {
  Install(3, 2, {});
  bench.Start();
  bench.Run(30);
  EXPECT_GT(Words(3), 6U);
  EXPECT_TRUE(Questions().empty());
  EXPECT_EQ(Row(3).lb_Rstat, "on");
}

TEST_F(SimulatedRows, GoOnInTheNextFileOfAFullOne) {
  UnitRecord unit = BenchProgram::Header(2, 1, 2, true);
  unit.UnitInterval = 10;
  unit.UnitMaxMinutes = 10;  // six rows
  unit.UnitEndAction = 2;
  bench.Install(1, kFile, unit);
  bench.Start();
  bench.Run(60);
  EXPECT_EQ(bench.state.SlotFile[1].substr(0, 7), "M260314");
  EXPECT_NE(bench.state.SlotFile[1], kFile);
  EXPECT_GT(bench.state.SampleCount[1], 0);
}

TEST_F(SimulatedRows, DoNotEndARecordingThatIsFull) {
  UnitRecord unit = BenchProgram::Header(2, 1, 2, true);
  unit.UnitInterval = 10;
  unit.UnitMaxMinutes = 1;
  unit.UnitEndAction = 2;
  bench.Install(1, kFile, unit, {1, 2, 1, 2, 3, 4, 5, 6, 7, 8});
  const std::string before = Bytes(1);
  bench.Start();
  bench.Run(30);
  EXPECT_EQ(Bytes(1), before);
  EXPECT_EQ(bench.state.Settings.ActiveFiles[0], kFile);
}

TEST_F(SimulatedRows, AreNotReadOutAtTheEnd) {
  Install(1, 2, {7, 8, 7, 8});
  const std::string before = Bytes(1);
  bench.Start();
  bench.Run(5);
  const auto start = bench.clock.Elapsed();
  bench.events.on_repaint = [this] { bench.clock.Advance(std::chrono::milliseconds(10)); };
  bench.commands.Close();
  EXPECT_LT(bench.clock.Elapsed() - start, std::chrono::seconds(1));
  EXPECT_EQ(Bytes(1), before);
}

TEST_F(SimulatedRows, AreAskedForBeforeARecordingIsStarted) {
  bench.Install(1, kFile, BenchProgram::Header(2, 1, 2, false), {7, 8, 7, 8});
  bench.Start();
  bench.dialogs.ok = false;
  bench.engine.StartRecording(1);
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_TRUE(bench.dialogs.boxes[0].PresetIsNo);
  EXPECT_EQ(bench.state.Unit[1].UnitRecOn, 0);
  bench.dialogs.ok = true;
  bench.engine.StartRecording(1);
  bench.Run(20);
  EXPECT_GT(Words(1), 4U);
}

TEST_F(SimulatedRows, NeedAnotherWordAfterAnInstrumentWasOnTheLine) {
  Install(1, 2, {7, 8, 7, 8});
  bench.Start();
  bench.Run(5);
  Questions().at(0).answer(true);
  bench.Run(5);
  ChoosePort(1);
  ASSERT_FALSE(bench.link.Simulated);
  EXPECT_FALSE(bench.state.SimulatedRowsAllowed);
  bench.Run(1);
  const std::size_t words = Words(1);
  bench.state.Settings.CommPort = "----";
  bench.commands.LinkOpen();
  bench.Run(30);
  EXPECT_EQ(Words(1), words);
  EXPECT_EQ(Questions().size(), 2U);
}

TEST_F(SimulatedRows, DoNotFollowRowsThatAnInstrumentAddedToAFileBegunInSimulation) {
  Install(1, 2, {});
  bench.Start();
  bench.Run(5);
  ChoosePort(1);
  bench.line.buffers[{2, 1}] = {500};
  bench.line.buffers[{2, 2}] = {600};
  bench.Run(20);
  const std::vector<std::int16_t> samples = bench.Samples(kFile);
  EXPECT_EQ(samples.at(samples.size() - 2), 500);
  EXPECT_EQ(samples.back(), 600);
  bench.state.Settings.CommPort = "----";
  bench.commands.LinkOpen();
  bench.Run(30);
  EXPECT_EQ(Words(1), samples.size());
}

TEST_F(SimulatedRows, HaveAnAnswerThatComesTooLate) {
  Install(1, 2, {7, 8, 7, 8});
  bench.Start();
  bench.Run(5);
  ChoosePort(1);
  Questions().at(0).answer(true);
  EXPECT_FALSE(bench.state.SimulatedRowsAllowed);
}

// A set of an instrument of which one value has come, before and after a simulation.
class HalfReadSet : public SimulatedRows {
 protected:
  void StartWithHalfASet() {
    bench.state.Settings.CommPort = "COM1";
    Install(1, 2, {7, 8, 7, 8});
    bench.line.buffers[{2, 2}] = {502};
    bench.Start();
    bench.Run(2);
    ASSERT_TRUE(bench.state.SampleSeen[1][2]);
  }
  void ReturnToTheInstrument() {
    ChoosePort(1);
    ASSERT_FALSE(bench.link.Simulated);
    bench.line.buffers[{2, 1}] = {501, 511};
    bench.line.buffers[{2, 2}] = {512};
    bench.Run(30);
  }
};

TEST_F(HalfReadSet, StaysInHandWhileTheRecordingStandsStill) {
  StartWithHalfASet();
  bench.state.Settings.CommPort = "----";
  bench.commands.LinkOpen();
  bench.Run(30);
  ReturnToTheInstrument();
  EXPECT_EQ(bench.Samples(kFile), (std::vector<std::int16_t>{7, 8, 7, 8, 501, 502, 511, 512}));
}

TEST_F(HalfReadSet, IsNotCompletedBySimulatedValues) {
  StartWithHalfASet();
  ChoosePort(0);
  ASSERT_TRUE(bench.state.SimulatedRowsAllowed);
  bench.Run(15);
  ReturnToTheInstrument();
  const std::vector<std::int16_t> samples = bench.Samples(kFile);
  ASSERT_GE(samples.size(), 10U);
  EXPECT_EQ(samples[4], 10);
  EXPECT_EQ(samples[5], 20);
  EXPECT_EQ((std::vector<std::int16_t>{samples.end() - 4, samples.end()}),
            (std::vector<std::int16_t>{501, 502, 511, 512}));
}

}  // namespace
}  // namespace tavrel
