#include "main/main_commands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/files/recording_fixture.h"
#include "tests/support/bench_program.h"

namespace tavrel {
namespace {

const MenuEntry& Entry(std::string_view control) {
  return *std::find_if(kMainMenu.begin(), kMainMenu.end(),
                       [control](const MenuEntry& entry) { return entry.Control == control; });
}

class MainCommandsTest : public testing::Test {
 protected:
  MainCommandsTest() {
    bench.events.on_rest = [this](std::chrono::milliseconds time) { bench.clock.Advance(time); };
  }
  void StartRecording(int slots) {
    for (int slot = 1; slot <= slots; ++slot) {
      const std::string name =
          "M260314" + std::string(1, static_cast<char>('A' + slot - 1)) + ".OVN";
      bench.Install(slot, name, BenchProgram::Header(slot, 1, 2, true), {7, 8, 7, 8});
    }
    bench.Start();
  }
  void Hold(int inet, int sets) {
    for (int set = 0; set < sets; ++set) {
      bench.line.buffers[{inet, 1}].push_back(static_cast<std::int16_t>(100 + set));
      bench.line.buffers[{inet, 2}].push_back(static_cast<std::int16_t>(200 + set));
    }
  }
  // The only set that the instrument holds is in hand, and the disk has no room for it.
  void RefuseSet() {
    StartRecording(1);
    Hold(1, 1);
    const FullDisk disk(1008);
    for (int tick = 0; tick < 40 && !bench.state.WriteFailed[1]; ++tick) {
      bench.Run(0.05);
    }
    ASSERT_TRUE(bench.state.WriteFailed[1]);
    bench.dialogs.announced.clear();
  }
  double CloseTakes() {
    const auto start = bench.clock.Elapsed();
    bench.commands.Close();
    return std::chrono::duration<double>(bench.clock.Elapsed() - start).count();
  }

  BenchProgram bench;
};

TEST_F(MainCommandsTest, ReadsOneLastWholeSetAtTheEndWithoutAQuestion) {
  StartRecording(1);
  Hold(1, 3);
  bench.Run(0.05);
  CloseTakes();
  EXPECT_TRUE(bench.dialogs.boxes.empty());
  EXPECT_TRUE(bench.commands.HasEnded());
  const std::vector<std::int16_t> samples = bench.Samples("M260314A.OVN");
  ASSERT_EQ(samples.size(), 6U);
  EXPECT_EQ(samples[4], 100);
  EXPECT_EQ(samples[5], 200);
}

TEST_F(MainCommandsTest, DoesNotWaitForAnInstrumentThatDoesNotAnswer) {
  StartRecording(2);
  bench.line.silent = {2};
  bench.Run(1);
  Hold(1, 1);
  bench.state.ReadState[1] = bench.state.ReadState[2] = ReadState::kReading;
  EXPECT_LT(CloseTakes(), 1.0);
  EXPECT_EQ(bench.Samples("M260314A.OVN").size(), 6U);
}

TEST_F(MainCommandsTest, DropsASlotWhoseInstrumentFallsSilentDuringTheReadOut) {
  StartRecording(1);
  bench.line.silent = {1};
  EXPECT_LT(CloseTakes(), 1.0);
}

TEST_F(MainCommandsTest, IsPaintedAgainWithinATenthOfASecondOrSoDuringTheReadOut) {
  StartRecording(3);
  Hold(1, 1);
  Hold(2, 1);
  Hold(3, 1);
  std::chrono::nanoseconds longest{0};
  auto painted = bench.clock.Elapsed();
  const auto paint = [&] {
    longest = std::max(longest, bench.clock.Elapsed() - painted);
    painted = bench.clock.Elapsed();
  };
  bench.events.on_repaint = paint;
  bench.events.on_rest = [&](std::chrono::milliseconds time) {
    paint();
    bench.clock.Advance(time);
    painted = bench.clock.Elapsed();
  };
  bench.line.silent = {2, 3};
  bench.commands.Close();
  EXPECT_EQ(bench.Samples("M260314A.OVN").size(), 6U);
  EXPECT_GE(longest, std::chrono::milliseconds(110));
  EXPECT_LE(longest, std::chrono::milliseconds(112));
}

TEST_F(MainCommandsTest, EndsAtOnceWhenNothingIsWaiting) {
  StartRecording(1);
  EXPECT_LT(CloseTakes(), 1.0);
  EXPECT_EQ(bench.Samples("M260314A.OVN").size(), 4U);
}

TEST_F(MainCommandsTest, WaitsTenSecondsAtMostForTheRestOfAHalfReadSet) {
  StartRecording(1);
  bench.line.buffers[{1, 2}] = {55};
  const double took = CloseTakes();
  EXPECT_GE(took, 9.0);
  EXPECT_LE(took, 11.5);
}

TEST_F(MainCommandsTest, CompletesAHalfReadSetWhoseRestComesInTime) {
  StartRecording(1);
  bench.line.buffers[{1, 2}] = {55};
  bench.events.on_rest = [this](std::chrono::milliseconds time) {
    bench.clock.Advance(time);
    bench.line.buffers[{1, 1}] = {44};
  };
  EXPECT_LT(CloseTakes(), 3.0);
  const std::vector<std::int16_t> samples = bench.Samples("M260314A.OVN");
  ASSERT_EQ(samples.size(), 6U);
  EXPECT_EQ(samples[4], 44);
  EXPECT_EQ(samples[5], 55);
}

// Two inputs of a set are in doubt, and the next look at them is not due for a while.
TEST_F(MainCommandsTest, RestsWhileAComparisonWaitsForItsNextLook) {
  StartRecording(1);
  Hold(1, 1);
  bench.Run(0.5);
  const auto answer = bench.port.answer;
  bool has_failed = false;
  bench.port.answer = [&](const std::string& command) {
    const bool fails = command == "X02?" && !has_failed;
    has_failed = has_failed || fails;
    return fails ? std::string() : answer(command);
  };
  Hold(1, 1);
  for (int tick = 0; tick < 600 && !bench.state.ColumnsInDoubt[1]; ++tick) {
    bench.Run(0.05);
  }
  bench.Run(10.5);
  ASSERT_TRUE(bench.state.ColumnsInDoubt[1]);
  ASSERT_EQ(bench.state.ReadState[1], ReadState::kReading);
  int rests = 0;
  int paints = 0;
  bench.events.on_rest = [&](std::chrono::milliseconds time) {
    ++rests;
    bench.clock.Advance(time);
  };
  bench.events.on_repaint = [&] {
    if (++paints > 100000) {
      bench.clock.AdvanceSeconds(1);
    }
  };
  const std::uint64_t before = bench.link.Exchanges();
  EXPECT_LE(CloseTakes(), 11);
  EXPECT_GT(rests, 0);
  EXPECT_LE(static_cast<std::uint64_t>(paints), 2 * rests + bench.link.Exchanges() - before);
}

// What the end of the program does for a slot it does for each of the twelve.
class SlotAtTheEnd : public testing::TestWithParam<int> {
 protected:
  SlotAtTheEnd() {
    bench.events.on_rest = [this](std::chrono::milliseconds time) { bench.clock.Advance(time); };
    bench.Install(slot, kName, BenchProgram::Header(inet, 1, 2, true), {7, 8, 7, 8});
    bench.Start();
  }
  void Hold(int input, int word) {
    bench.line.buffers[{inet, input}].push_back(static_cast<std::int16_t>(word));
  }
  [[nodiscard]] std::vector<std::int16_t> Samples() const { return bench.Samples(kName); }

  static constexpr const char* kName = "M260314A.OVN";
  const int slot = GetParam();
  const int inet = (slot + 1) / 2;
  BenchProgram bench;
};

TEST_P(SlotAtTheEnd, ReadsOneLastSet) {
  for (const int set : {0, 1, 2}) {
    Hold(1, 100 + set);
    Hold(2, 200 + set);
  }
  bench.commands.Close();
  EXPECT_EQ(Samples(), (std::vector<std::int16_t>{7, 8, 7, 8, 100, 200}));
}

TEST_P(SlotAtTheEnd, WaitsForTheRestOfItsSet) {
  Hold(2, 200);
  bench.events.on_rest = [this](std::chrono::milliseconds time) {
    bench.clock.Advance(time);
    Hold(1, 100);
  };
  bench.commands.Close();
  EXPECT_EQ(Samples(), (std::vector<std::int16_t>{7, 8, 7, 8, 100, 200}));
}

TEST_P(SlotAtTheEnd, KeepsASetThatTheDiskRefuses) {
  Hold(1, 100);
  Hold(2, 200);
  {
    const FullDisk disk(1008);
    bench.commands.Close();
  }
  EXPECT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_TRUE(bench.home.Exists("tavdat/.M260314A.OVN.set"));
}

TEST_P(SlotAtTheEnd, SavesItsEditedHeaderAndClosesItsFile) {
  bench.sheet.tx_Des_Change(slot, "Tube 7");
  bench.commands.Close();
  EXPECT_EQ(bench.home.Read("tavdat/M260314A.OVN").substr(200, 10), "NEW:Tube 7");
  EXPECT_FALSE(bench.state.SlotFileNo[slot].IsOpen());
}

INSTANTIATE_TEST_SUITE_P(EachSlot, SlotAtTheEnd, testing::Range(1, kSlots + 1));

class MainCommandsWithAnOrder : public MainCommandsTest {
 protected:
  // The recording of slot 2 has ended, and its controller has not acknowledged that it is off.
  void LeaveAnOrder() {
    StartRecording(2);
    bench.line.silent = {2};
    bench.state.Unit[2].UnitEndAction = 1;
    bench.engine.EndOfRecording(2);
    ASSERT_TRUE(bench.state.StopPending[2]);
    bench.clock.AdvanceSeconds(1);
    bench.port.sent.clear();
  }
  [[nodiscard]] long Tries() const {
    return std::count(bench.port.sent.begin(), bench.port.sent.end(), "Z11=0\r");
  }
};

TEST_F(MainCommandsWithAnOrder, SendsItAtTheEndBesideTheLastSets) {
  LeaveAnOrder();
  bench.line.silent.clear();
  Hold(1, 2);
  EXPECT_LT(CloseTakes(), 2.0);
  EXPECT_EQ(Tries(), 1);
  EXPECT_EQ((bench.line.registers[{2, 'Z', 1}]), 0);
  EXPECT_FALSE(bench.home.Exists(kStopOrdersFile));
  EXPECT_EQ(bench.Samples("M260314A.OVN").size(), 6U);
}

TEST_F(MainCommandsWithAnOrder, TriesItForTenSecondsAndLeavesItOnTheDisk) {
  LeaveAnOrder();
  const double took = CloseTakes();
  EXPECT_GE(took, 9.0);
  EXPECT_LE(took, 11.5);
  EXPECT_GE(Tries(), 5);
  EXPECT_EQ(bench.home.Read(kStopOrdersFile), "Z=0 slot 2 inet 2 controller 1\r\nend\r\n");
  EXPECT_TRUE(bench.dialogs.boxes.empty());
}

TEST_F(MainCommandsWithAnOrder, EndsAsSoonAsItIsAcknowledged) {
  LeaveAnOrder();
  bench.events.on_rest = [this](std::chrono::milliseconds time) {
    bench.clock.Advance(time);
    if (Tries() == 3) {
      bench.line.silent.clear();
    }
  };
  EXPECT_LT(CloseTakes(), 6.0);
  EXPECT_EQ(Tries(), 4);
  EXPECT_FALSE(bench.home.Exists(kStopOrdersFile));
}

TEST_F(MainCommandsWithAnOrder, SendsOneThatIsGivenDuringTheLastSets) {
  StartRecording(2);
  bench.state.Unit[2].UnitEndAction = 1;
  bench.state.SampleLimit[2] = 1;
  Hold(2, 1);
  bench.line.refused = {'Z'};
  bench.events.on_rest = [this](std::chrono::milliseconds time) {
    bench.clock.Advance(time);
    bench.line.refused.clear();
  };
  CloseTakes();
  EXPECT_GE(Tries(), 1);
  EXPECT_EQ(bench.home.Exists(kStopOrdersFile), false);
}

TEST_F(MainCommandsWithAnOrder, SaysThatTheDiskDoesNotTakeIt) {
  StartRecording(2);
  bench.line.silent = {2};
  bench.state.DataHome = bench.home.File("nowhere") + "/";
  bench.state.Unit[2].UnitEndAction = 1;
  {
    const Messages::Deferral deferral(bench.messages);
    bench.engine.EndOfRecording(2);
  }
  bench.messages.ShowKept();
  CloseTakes();
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Title, "TAVREL.OFF");
}

TEST_F(MainCommandsTest, WritesASetThatTheDiskRefusedOnceMoreAtTheEnd) {
  RefuseSet();
  bench.commands.Close();
  EXPECT_EQ(bench.Samples("M260314A.OVN"), (std::vector<std::int16_t>{7, 8, 7, 8, 100, 200}));
  EXPECT_FALSE(bench.home.Exists("tavdat/.M260314A.OVN.set"));
  EXPECT_TRUE(bench.dialogs.boxes.empty());
}

TEST_F(MainCommandsTest, WritesARefusedSetAlsoIfItsInstrumentIsSilent) {
  RefuseSet();
  bench.line.silent = {1};
  bench.Run(6);
  EXPECT_LT(CloseTakes(), 1.0);
  EXPECT_EQ(bench.Samples("M260314A.OVN"), (std::vector<std::int16_t>{7, 8, 7, 8, 100, 200}));
}

TEST_F(MainCommandsTest, LeavesASetThatTheDiskRefusesForTheNextStartAndTellsIt) {
  RefuseSet();
  {
    const FullDisk disk(1008);
    bench.dialogs.on_box = [this] {
      EXPECT_FALSE(bench.state.SlotFileNo[1].IsOpen()) << bench.dialogs.boxes.back().Text;
    };
    EXPECT_LT(CloseTakes(), 11.5);
  }
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Title, "Write  file");
  EXPECT_EQ(bench.dialogs.boxes[0].Text,
            "M260314A.OVN: the last set could not be written (File too large); it stays beside "
            "the file and is written when the file is opened again");
  EXPECT_TRUE(bench.home.Exists("tavdat/.M260314A.OVN.set"));
  bench.files.OpenRecordingFile(1);
  bench.engine.PumpOnce();
  EXPECT_EQ(bench.Samples("M260314A.OVN"), (std::vector<std::int16_t>{7, 8, 7, 8, 100, 200}));
}

TEST_F(MainCommandsTest, SaysThatASetIsLostWhereNothingCanBeKept) {
  RefuseSet();
  std::filesystem::rename(bench.home.File("tavdat"), bench.home.File("away"));
  bench.engine.FlushFiles();
  std::filesystem::remove_all(bench.home.File("away"));
  bench.commands.Close();
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Text,
            "M260314A.OVN: the last set could not be written (No such file or directory) and is "
            "lost");
}

TEST_F(MainCommandsTest, WritesAFileThatWasDeletedAgainAtTheEnd) {
  StartRecording(1);
  std::filesystem::remove(bench.home.File("tavdat/M260314A.OVN"));
  Hold(1, 1);
  bench.Run(0.05);
  bench.commands.Close();
  EXPECT_EQ(bench.Samples("M260314A.OVN"), (std::vector<std::int16_t>{7, 8, 7, 8, 100, 200}));
  EXPECT_EQ(bench.dialogs.boxes.size(), 1U);
}

TEST_F(MainCommandsTest, SavesSettingsAndEditedNamesAtTheEnd) {
  StartRecording(1);
  bench.sheet.tx_Des_Change(1, "Tube 7");
  bench.state.SettingsChanged = true;
  bench.commands.Close();
  EXPECT_EQ(bench.home.Read("tavdat/M260314A.OVN").substr(200, 20), "NEW:Tube 7          ");
  EXPECT_NE(bench.home.Read("TAVREL.USR").find("\"ACTIVE01:: M260314A.OVN\"\r\n"),
            std::string::npos);
}

TEST_F(MainCommandsTest, WritesHeadersEvenIfTheSettingsCannotBeSaved) {
  StartRecording(1);
  bench.sheet.tx_Des_Change(1, "Tube 7");
  bench.state.SettingsChanged = true;
  bench.state.DataHome = bench.home.File("nowhere") + "/";
  bench.commands.Close();
  EXPECT_EQ(bench.home.Read("tavdat/M260314A.OVN").substr(200, 10), "NEW:Tube 7");
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Text, "Cannot write file.");
  EXPECT_EQ(bench.dialogs.boxes[0].Title, "TAVREL.USR");
}

TEST_F(MainCommandsTest, AsksBeforeTheMenuLeaves) {
  StartRecording(1);
  bench.dialogs.ok = false;
  bench.commands.Choose(Entry("MnuExit"));
  EXPECT_FALSE(bench.commands.HasEnded());
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Text, "Exit");
  EXPECT_EQ(bench.dialogs.boxes[0].Title, "TAVREL");
  bench.dialogs.ok = true;
  bench.commands.Choose(Entry("MnuExit2"));
  EXPECT_TRUE(bench.commands.HasEnded());
  EXPECT_FALSE(bench.cycle.IsEnabled());
}

TEST_F(MainCommandsTest, OpensTheManualOfTheLanguage) {
  bench.home.Write(kEnglishManual, "manual");
  bench.Start();
  bench.commands.Choose(Entry("MnuHelp"));
  bench.state.Settings.HelpLang = "german";
  bench.commands.Choose(Entry("MnuHelp"));
  EXPECT_EQ(bench.shell.opened, (std::vector<std::string>{bench.home.File(kEnglishManual),
                                                          bench.home.File(kGermanManual)}));
}

TEST_F(MainCommandsTest, NamesTheManualThatIsMissing) {
  bench.Start();
  bench.commands.Choose(Entry("MnuHelp"));
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(bench.dialogs.boxes[0].Text,
            "Help-file not found:\n\n\"" + bench.home.File(kEnglishManual) + "\"");
}

TEST_F(MainCommandsTest, GreysEntriesWithoutAForm) {
  bench.Start();
  EXPECT_FALSE(bench.commands.IsEnabled(Entry("MnuSettings")));
  EXPECT_FALSE(bench.commands.IsEnabled(Entry("MnuTerminal")));
  EXPECT_TRUE(bench.commands.IsEnabled(Entry("MnuTools")));
  EXPECT_TRUE(bench.commands.IsEnabled(Entry("MnuHelp")));
  EXPECT_TRUE(bench.commands.IsEnabled(Entry("MnuExit")));
  bench.screens.built = {View::kAllTerm};
  EXPECT_TRUE(bench.commands.IsEnabled(Entry("MnuTerminal")));
}

TEST_F(MainCommandsTest, StopsTheCycleOnlyForFormsThatOwnTheLine) {
  bench.screens.built = {View::kAllTerm, View::kTavProg, View::kAllQs};
  bench.Start();
  bench.screens.on_show = [this](View view) {
    EXPECT_EQ(bench.cycle.IsEnabled(), view != View::kAllTerm);
    EXPECT_EQ(bench.sheet.Values().picCmds, view == View::kTavProg);
  };
  bench.commands.Choose(Entry("MnuTerminal"));
  bench.commands.Choose(Entry("MnuProg"));
  bench.commands.Choose(Entry("MnuQS"));
  EXPECT_EQ(bench.screens.shown.size(), 3U);
  EXPECT_TRUE(bench.cycle.IsEnabled());
  EXPECT_TRUE(bench.sheet.Values().picCmds);
}

// The hourglass is for the way to the form.
TEST_F(MainCommandsTest, LeavesTheNormalPointerBehindEachForm) {
  for (const MenuEntry& entry : kMainMenu) {
    if (entry.Action == MenuAction::kShow) {
      bench.screens.built.insert(entry.Opens);
    }
  }
  bench.Start();
  for (const MenuEntry& entry : kMainMenu) {
    if (entry.Action == MenuAction::kShow) {
      bench.commands.Choose(entry);
      EXPECT_EQ(bench.events.pointers.back(), Pointer::kNormal) << entry.Control;
    }
  }
}

TEST_F(MainCommandsTest, OpensThePortAnewUntilItOpens) {
  bench.screens.built = {View::kTavSett};
  bench.Start();
  bench.port.open_error = 5;
  bench.dialogs.retry = true;
  int shown = 0;
  bench.screens.on_show = [&](View) { bench.port.open_error = ++shown < 3 ? 5 : 0; };
  bench.commands.Choose(Entry("MnuSettings"));
  EXPECT_EQ(shown, 3);
  ASSERT_EQ(bench.dialogs.boxes.size(), 2U);
  EXPECT_EQ(bench.dialogs.boxes[0].Title, "Open COM1");
  EXPECT_EQ(bench.dialogs.boxes[0].Icon, BoxIcon::kCritical);
  EXPECT_TRUE(bench.link.PortOpen);
  EXPECT_TRUE(bench.sheet.Values().picCmds);
}

}  // namespace
}  // namespace tavrel
