#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "tests/files/recording_fixture.h"
#include "tests/main/start_bench.h"

// What the start makes of the slots, their files and their controllers.
namespace tavrel {
namespace {

TEST_F(Start, MakesADefaultSlotWhenNoneIsInUse) {
  bench.Start();
  EXPECT_EQ(bench.state.SlotFile[1], "M011111A.NEW");
  EXPECT_EQ(bench.state.Settings.ActiveFiles[0], "M011111A.NEW");
  EXPECT_TRUE(bench.state.SettingsChanged);
  EXPECT_TRUE(bench.Row(1).Sheet);
  EXPECT_EQ(bench.Row(1).tx_Des, "Default");
  EXPECT_FALSE(bench.Row(2).Sheet);
  const std::string bytes = bench.home.Read("tavdat/M011111A.NEW");
  EXPECT_EQ(bytes.size(), 1000U);
  EXPECT_EQ(bytes.substr(200, 20), "NEW: Default        ");
}

TEST_F(Start, AttachesADefaultFileThatIsThereAlready) {
  UnitRecord unit = BenchProgram::Header(3, 2, 2, false);
  unit.SetApparatusName("Old one");
  bench.Install(1, "m011111a.new", unit, {1, 2, 1, 2});
  bench.state.Settings.ActiveFiles = {};
  bench.Start();
  EXPECT_EQ(bench.Row(1).tx_Des, "Old one");
  EXPECT_EQ(bench.state.SampleCount[1], 2);
  EXPECT_EQ(bench.state.Unit[1].UnitInet, 3);
  EXPECT_FALSE(bench.home.Exists("tavdat/M011111A.NEW"));
}

TEST_F(Start, LeavesAForeignFileOfThatNameAlone) {
  const std::string foreign(3000, 'x');
  bench.home.Write("tavdat/M011111A.NEW", foreign);
  bench.Start();
  EXPECT_EQ(bench.home.Read("tavdat/M011111A.NEW"), foreign);
  EXPECT_EQ(bench.state.SlotFile[1], "M011111B.NEW");
}

TEST_F(Start, HidesARowWhoseFileDoesNotOpenAndGoesOn) {
  bench.Install(2, "M260314A.OVN", BenchProgram::Header(1, 1, 2, false));
  bench.state.Settings.ActiveFiles[4] = "M260101A.GON";
  bench.dialogs.on_box = [] { FAIL() << "a box that waits would hold up the start"; };
  bench.Start();
  EXPECT_TRUE(bench.Row(2).Sheet);
  EXPECT_FALSE(bench.Row(5).Sheet);
  EXPECT_EQ(bench.state.SlotFile[5], "");
  EXPECT_EQ(bench.state.Settings.ActiveFiles[4], "");
  ASSERT_EQ(bench.dialogs.announced.size(), 1U);
  EXPECT_EQ(bench.dialogs.announced[0].Text, "M260101A.GON  not found !");
  EXPECT_EQ(bench.dialogs.announced[0].Title, "Read  file");
  EXPECT_TRUE(bench.cycle.IsEnabled());
}

TEST_F(Start, KeepsRowsOnTheirPlaces) {
  bench.Install(6, "M260314A.OVN", BenchProgram::Header(1, 1, 2, false));
  bench.Start();
  EXPECT_FALSE(bench.Row(1).Sheet);
  EXPECT_FALSE(bench.Row(5).Sheet);
  EXPECT_TRUE(bench.Row(6).Sheet);
}

class Backlog : public Start {
 protected:
  void Hold(int inet, int input, int sets) {
    for (int set = 0; set < sets; ++set) {
      bench.line.buffers[{inet, input}].push_back(static_cast<std::int16_t>(set));
    }
  }
};

TEST_F(Backlog, IsShownAndCountsDownWhileThePumpReads) {
  bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
  Hold(1, 1, 500);
  Hold(1, 2, 500);
  bench.Start();
  EXPECT_EQ(bench.sheet.Values().lbl_Info, "reading from Tavrel:  500");
  bench.Run(20);
  const std::string info = bench.sheet.Values().lbl_Info;
  ASSERT_EQ(info.substr(0, 22), "reading from Tavrel:  ");
  EXPECT_LT(std::stoi(info.substr(22)), 500);
  bench.Run(90);
  EXPECT_EQ(bench.sheet.Values().lbl_Info, "");
  EXPECT_EQ(bench.state.SampleCount[1], 501);
}

TEST_F(Backlog, OfThreeOrLessShowsNothing) {
  bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
  Hold(1, 1, 3);
  Hold(1, 2, 3);
  bench.Start();
  EXPECT_EQ(bench.sheet.Values().lbl_Info, "");
  bench.Run(20);
  EXPECT_EQ(bench.state.SampleCount[1], 4);
}

TEST_F(Backlog, OfNothingIsNothing) {
  bench.Install(12, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
  bench.state.BacklogCount = 77;
  bench.Start();
  EXPECT_EQ(bench.state.BacklogCount, 0);
  EXPECT_EQ(bench.sheet.Values().lbl_Info, "");
}

TEST_F(Backlog, OfTwoSlotsWithAsManyIsThatOfTheFirst) {
  for (const auto& [first, last] : {std::pair(1, 12), std::pair(5, 6), std::pair(11, 12)}) {
    BenchProgram other;
    other.Install(first, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
    other.Install(last, "M260314B.OVN", BenchProgram::Header(2, 1, 2, true));
    for (const int inet : {1, 2}) {
      other.line.buffers[{inet, 2}].assign(40, 5);
    }
    other.Start();
    EXPECT_EQ(other.state.BacklogSlot, first);
    EXPECT_EQ(other.state.BacklogCount, 40);
  }
}

TEST_F(Backlog, IsThatOfTheRecordingSlotWithTheMost) {
  bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
  bench.Install(2, "M260314B.OVN", BenchProgram::Header(2, 1, 2, true));
  bench.Install(3, "M260314C.OVN", BenchProgram::Header(3, 1, 2, false));
  bench.Install(4, "M260314D.OVN", BenchProgram::Header(4, 1, 2, true));
  Hold(1, 2, 10);
  Hold(2, 2, 20);
  Hold(3, 2, 30);
  Hold(4, 2, 40);
  bench.line.silent = {4};
  bench.Start();
  EXPECT_EQ(bench.state.BacklogSlot, 2);
  EXPECT_EQ(bench.state.BacklogCount, 20);
}

class LeftOn : public Start {
 protected:
  // The program before has left orders; slot 2 has controller 3 of instrument 4.
  void Leave(const std::string& orders) {
    bench.home.Write(kStopOrdersFile, orders + "end\r\n");
    bench.Install(2, "M260314A.OVN", BenchProgram::Header(4, 3, 2, true));
    bench.line.registers[{4, 'Z', 3}] = 2;
  }
  std::vector<std::string> Announced() const {
    std::vector<std::string> texts;
    for (const Notice& notice : bench.dialogs.announced) {
      texts.push_back(notice.Title + "|" + notice.Text);
    }
    return texts;
  }
  static constexpr const char* kOrder = "Z=0 slot 2 inet 4 controller 3\r\n";
};

TEST_F(LeftOn, IsSwitchedOffBeforeAnythingElseAndTold) {
  Leave(kOrder);
  bench.Start();
  ASSERT_GE(bench.port.sent.size(), 2U);
  EXPECT_EQ(bench.port.sent[0], "Z33=0\r");
  EXPECT_EQ(bench.port.sent[1], "R32?");
  EXPECT_FALSE(bench.home.Exists(kStopOrdersFile));
  EXPECT_EQ(Announced(), std::vector<std::string>{
                             "controller|Controller 3 of Tavrel 4 was not switched off at the end "
                             "of its recording.\nIt is off now."});
}

TEST_F(LeftOn, IsTriedEveryTenSecondsWhileItDoesNotAnswer) {
  Leave(kOrder);
  bench.line.silent = {4};
  bench.Start();
  EXPECT_EQ(bench.port.sent.front(), "Z33=0\r");
  EXPECT_EQ(Announced(), std::vector<std::string>{
                             "controller|Controller 3 of Tavrel 4 was not switched off at the end "
                             "of its recording.\nTavrel does not acknowledge it yet; it is tried "
                             "again."});
  EXPECT_TRUE(bench.state.StopPending[2]);
  bench.Run(35);
  EXPECT_EQ(bench.Row(2).lb_Cstat, "off ?");
  const auto tries = std::count(bench.port.sent.begin(), bench.port.sent.end(), "Z33=0\r");
  EXPECT_GE(tries, 4);
  EXPECT_LE(tries, 5);
  bench.line.silent.clear();
  bench.Run(20);
  EXPECT_EQ((bench.line.registers[{4, 'Z', 3}]), 0);
  EXPECT_EQ(bench.Row(2).lb_Cstat, "off");
  EXPECT_FALSE(bench.home.Exists(kStopOrdersFile));
  EXPECT_EQ(Announced().size(), 1U);
}

TEST_F(LeftOn, IsNotSimulated) {
  Leave(kOrder);
  bench.state.Settings.CommPort = "----";
  bench.Start();
  bench.Run(15);
  EXPECT_TRUE(bench.home.Exists(kStopOrdersFile));
  EXPECT_EQ(Announced().size(), 1U);
}

// An instrument without a slot is left alone but for the one controller.
TEST_F(LeftOn, OfAnInstrumentWithoutASlotIsTheOnlyOneThatIsTouched) {
  Leave("Z=0 slot 9 inet 6 controller 2\r\n");
  bench.Start();
  for (const std::string& command : bench.port.sent) {
    EXPECT_TRUE(command[1] != '5' || command == "Z52=0\r") << command;
  }
  EXPECT_EQ(bench.port.sent.front(), "Z52=0\r");
  EXPECT_FALSE(bench.home.Exists(kStopOrdersFile));
}

TEST_F(LeftOn, IsNoLongerToldOnceTheSweepHasSwitchedIt) {
  Leave("Z=0 slot 2 inet 4 controller 1\r\n");
  int refusals = 1;
  const auto answer = bench.port.answer;
  bench.port.answer = [&, answer](const std::string& command) {
    return command == "Z31=0\r" && refusals-- > 0 ? std::string("?") : answer(command);
  };
  bench.Start();
  EXPECT_EQ(std::count(bench.port.sent.begin(), bench.port.sent.end(), "Z31=0\r"), 2);
  EXPECT_FALSE(bench.home.Exists(kStopOrdersFile));
  EXPECT_FALSE(bench.state.StopPending[2]);
}

TEST_F(Start, SwitchesOffControllersThatNoSlotKnows) {
  bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, false));
  bench.Install(2, "M260314B.OVN", BenchProgram::Header(1, 3, 2, false));
  bench.Install(3, "M260314C.OVN", BenchProgram::Header(3, 4, 2, false));
  bench.Install(4, "M260314D.OVN", BenchProgram::Header(4, 4, 2, false));
  bench.line.silent = {4};
  bench.Start();
  std::vector<std::string> writes;
  std::copy_if(bench.port.sent.begin(), bench.port.sent.end(), std::back_inserter(writes),
               [](const std::string& command) { return command.find('=') != std::string::npos; });
  EXPECT_EQ(writes,
            (std::vector<std::string>{"Z02=0\r", "Z04=0\r", "Z21=0\r", "Z22=0\r", "Z23=0\r"}));
}

TEST_F(Start, SimulatesARecordingWithoutALine) {
  bench.state.Settings.CommPort = "----";
  bench.Install(1, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true));
  bench.Start();
  bench.Run(2);
  EXPECT_EQ(bench.Row(1).sh_TavNo, kYellow);
  EXPECT_EQ(bench.Row(1).lb_Cstat, "off");
  EXPECT_EQ(bench.Row(1).lb_Ref, "0.0");
  const std::vector<std::int16_t> samples = bench.Samples("M260314A.OVN");
  ASSERT_GE(samples.size(), 6U);
  EXPECT_EQ(samples[4], 10);
  EXPECT_EQ(samples[5], 20);
  EXPECT_EQ(bench.sheet.Values().lbl_Info, "");
}

// The program was ended while the disk had no room for the next file, and has none yet.
TEST_F(Start, GoesOnTryingToMakeTheNextFile) {
  UnitRecord unit = BenchProgram::Header(1, 1, 2, true);
  unit.UnitMaxMinutes = 5;  // 3 rows at 100 seconds
  unit.UnitEndAction = 2;
  bench.Install(7, "M260314A.OVN", unit, {1, 2, 1, 2, 3, 4, 5, 6});
  bench.line.buffers[{1, 1}] = {11, 12};
  bench.line.buffers[{1, 2}] = {21, 22};
  {
    const FullDisk disk(900);
    bench.Start();
    bench.Run(35);
    EXPECT_EQ(bench.Row(7).lb_Rstat, "disk !");
    EXPECT_EQ(bench.state.SlotFile[7], "M260314A.OVN");
    EXPECT_EQ(bench.dialogs.announced.size(), 1U);
    EXPECT_TRUE(bench.dialogs.boxes.empty());
  }
  bench.Run(25);
  EXPECT_EQ(bench.Row(7).lb_Rstat, "on");
  EXPECT_EQ(bench.Samples("M260314B.OVN"), (std::vector<std::int16_t>{11, 21, 11, 21, 12, 22}));
  EXPECT_NE(bench.home.Read("TAVREL.USR").find("\"ACTIVE07:: M260314B.OVN\""), std::string::npos);
}

TEST_F(Start, TellsWithinTenSecondsThatARecordingWasDeleted) {
  bench.Install(7, "M260314A.OVN", BenchProgram::Header(1, 1, 2, true), {1, 2, 1, 2});
  bench.Start();
  bench.Run(1);
  std::filesystem::remove(bench.home.File("tavdat/M260314A.OVN"));
  bench.line.buffers[{1, 1}] = {11, 12};
  bench.line.buffers[{1, 2}] = {21, 22};
  bench.Run(10.5);
  ASSERT_EQ(bench.dialogs.announced.size(), 1U);
  EXPECT_NE(bench.dialogs.announced[0].Text.find("deleted or moved"), std::string::npos);
  bench.Run(20);
  EXPECT_EQ(bench.Samples("M260314A.OVN"), (std::vector<std::int16_t>{1, 2, 1, 2, 11, 21, 12, 22}));
}

}  // namespace
}  // namespace tavrel
