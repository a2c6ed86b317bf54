#include "files/held_set.h"
#include "tests/files/recording_fixture.h"
#include "tests/setup/installation_bench.h"
#include "tests/support/hindrance.h"

// What an installation leaves behind and what it does where something fails.
namespace tavrel {
namespace {

using Lines = std::vector<std::string>;

// What an end action has still to switch off belongs to the instrument and its controller.
TEST_F(TavInst, LeavesTheOrdersToSwitchOff) {
  Start();
  bench.line.silent = {2};
  bench.engine.Orders().Give(5, 2, 2);
  Open();
  inst->PutNumber(5, 0);
  Press();
  EXPECT_TRUE(bench.engine.Orders().IsWaiting(2, 2));
  bench.line.silent.clear();
  bench.port.sent.clear();
  bench.Run(12);
  EXPECT_EQ(std::count(bench.port.sent.begin(), bench.port.sent.end(), "Z12=0\r"), 1);
}

TEST_F(TavInst, TellsAFileThatCannotBeMadeAndCommitsTheOtherSlots) {
  Start();
  Open();
  inst->Test_Des_Change(2, "Changed");
  inst->PutNumber(12, 0);
  Fill(9, 4, 1, 5);
  {
    const FullDisk disk(0);  // not even the settings
    Press();
  }
  EXPECT_FALSE(inst->IsOpen());
  EXPECT_GE(bench.dialogs.announced.size(), 3U);
  EXPECT_EQ(bench.dialogs.announced.front().Title, "Write  file");
  EXPECT_EQ(bench.dialogs.announced.back().Text, "Cannot write file.");
  EXPECT_TRUE(bench.state.SettingsChanged);
  EXPECT_EQ(bench.state.SlotFile[2], "");
  EXPECT_EQ(bench.state.Settings.ActiveFiles[1], "M260101A.OVN") << "it is tried again";
  EXPECT_EQ(bench.state.SlotFile[9], "");
  EXPECT_FALSE(bench.Row(9).Sheet);
  EXPECT_EQ(bench.state.SlotFile[12], "");
  EXPECT_TRUE(IsThere("M260314F.OVN")) << "the settings on the disk still name it";
  EXPECT_EQ(bench.state.Unit[5].UnitRecOn, 1);
  bench.Run(11);
  EXPECT_EQ(bench.state.SlotFile[2], "M260101A.OVN");
  EXPECT_EQ(bench.state.Unit[2].UnitChannels, 3);
}

TEST_F(TavInst, TellsTheSameFailureAgain) {
  Start();
  for (const int round : {1, 2}) {
    bench.dialogs.announced.clear();
    Open();
    Fill(9, 4, 1, 5);
    const FullDisk disk(0);
    Press();
    EXPECT_EQ(bench.dialogs.announced.size(), 2U) << round;
  }
}

TEST_F(TavInst, KeepsASetThatTheDiskRefusesBesideTheOldFile) {
  Start();
  bench.state.SampleSeen[5][2] = bench.state.SampleSeen[5][6] = true;
  bench.state.SampleValue[5][2] = 21;
  bench.state.SampleValue[5][6] = 61;
  Open();
  inst->PutNumber(5, 0);
  {
    const FullDisk disk(1008);
    Press();
  }
  EXPECT_TRUE(IsThere(HeldSetName("M260314C.OVN")));
  ASSERT_FALSE(bench.dialogs.announced.empty());
  EXPECT_NE(bench.dialogs.announced.front().Text.find("it stays beside the file"),
            std::string::npos);
  EXPECT_EQ(HeaderOf("M260314C.OVN").UnitRecOn, 0);
}

// A file without a row is no empty one while a set for it lies beside it.
TEST_F(TavInst, KeepsAnEmptyFileWhoseFirstSetLiesBesideIt) {
  Start();
  bench.state.Unit[12].UnitRecOn = 1;
  bench.state.SampleSeen[12][4] = bench.state.SampleSeen[12][15] = true;
  Open();
  inst->PutNumber(12, 0);
  EXPECT_EQ(inst->Values().lbl_Effect, Lines{"ends the recording:  row 12  m260314f.ovn"});
  {
    const FullDisk disk(1000);  // the header fits, the row and the settings do not
    Press();
  }
  ASSERT_EQ(bench.settings.SettingsSave(), "");
  EXPECT_TRUE(IsThere("M260314F.OVN"));
  EXPECT_TRUE(IsThere(HeldSetName("M260314F.OVN")));
}

TEST_F(TavInst, LeavesNothingOfASetInAFreeSlot) {
  Start();
  bench.state.SampleSeen[5][6] = true;
  bench.state.ColumnsInDoubt[5] = true;
  bench.state.AskedInput[5] = 2;
  Open();
  inst->PutNumber(5, 0);
  Press();
  EXPECT_FALSE(bench.state.SampleSeen[5][6]);
  EXPECT_FALSE(bench.state.ColumnsInDoubt[5]);
  EXPECT_EQ(bench.state.AskedInput[5], 0);
  EXPECT_FALSE(IsThere(HeldSetName("M260314C.OVN")));
}

// The directory of new files is another one by now, and nothing can be made there.
TEST_F(TavInst, GoesBackToTheDirectoryOfTheOldFile) {
  Start();
  bench.state.Settings.DefPath = bench.home.File("nowhere");
  Open();
  inst->Test_Des_Change(2, "Changed");
  Press();
  EXPECT_EQ(bench.state.SlotFile[2], "");
  bench.Run(11);
  EXPECT_EQ(bench.state.SlotFile[2], "M260101A.OVN");
  EXPECT_EQ(bench.state.SlotPath[2], bench.home.File("tavdat"));
}

TEST_F(TavInst, LeavesATestWhoseDirectoryIsGone) {
  Start();
  Open();
  Fill(9, 4, 1, 5);
  inst->Test_Des_Change(2, "Changed");
  std::filesystem::rename(bench.home.File("tavdat"), bench.home.File("away"));
  Press();
  EXPECT_FALSE(inst->IsOpen());
  EXPECT_EQ(bench.state.SlotFile[2], "");
  EXPECT_EQ(bench.state.Settings.ActiveFiles[1], "M260101A.OVN");
  std::filesystem::rename(bench.home.File("away"), bench.home.File("tavdat"));
  bench.Run(11);
  EXPECT_EQ(bench.state.SlotFile[2], "M260101A.OVN");
  EXPECT_EQ(bench.state.Unit[2].ApparatusName(), "Oven");
}

TEST_F(TavInst, IsReachedFromTheMenuWithoutStoppingTheCycle) {
  Start();
  bench.screens.built.insert(View::kTavInst);
  bool ran = false;
  bench.screens.on_show = [&](View view) {
    ran = view == View::kTavInst && bench.cycle.IsEnabled() && !bench.sheet.Values().picCmds;
  };
  const auto* entry = std::find_if(kMainMenu.begin(), kMainMenu.end(),
                                   [](const MenuEntry& each) { return each.Control == "MnuInst"; });
  bench.commands.Choose(*entry);
  EXPECT_TRUE(ran);
}

}  // namespace
}  // namespace tavrel
