#include <gmock/gmock.h>

#include "tests/setup/channel_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// What a run affects.

TEST(AdjustmentRun, AsksAboutControllersThatUseAChosenRow) {
  ChannelBench fixture;
  fixture.Register('Z', 1) = 2;
  fixture.Register('Z', 2) = 3;
  fixture.Register('Z', 4) = 0;
  fixture.OpenIdle();
  fixture.bench.dialogs.yes = false;
  fixture.dialog->Mnu_FeCuNi_Click();
  fixture.Tick();
  for (const int row : {2, 4, 5}) {
    fixture.dialog->Sheet_Click(row);
  }
  fixture.dialog->CmdOK_Click();
  EXPECT_THAT(fixture.commands, ElementsAre("Z22?", "Z24?"));
  EXPECT_EQ(fixture.LastBox(),
            "adjustment: This affects:\n\n    controller 2, which is on (dyn)\n\nGo on ?");
  EXPECT_TRUE(fixture.bench.dialogs.boxes.back().PresetIsNo);
  EXPECT_EQ(fixture.dialog->State(), AdjState::kSelect);
  EXPECT_FALSE(fixture.bench.home.Exists(kJournalFile));
  fixture.bench.dialogs.yes = true;
  fixture.dialog->CmdOK_Click();
  EXPECT_EQ(fixture.dialog->State(), AdjState::kShort);
}

TEST(AdjustmentRun, AsksInGermanIfTheUserIsGerman) {
  ChannelBench fixture;
  fixture.Register('Z', 2) = 3;
  fixture.bench.state.Unit[5] = BenchProgram::Header(3, 1, 2, true);
  fixture.bench.state.SlotFile[5] = "M260314A.OVN";
  fixture.bench.state.Settings.HelpLang = "German";
  fixture.OpenIdle();
  fixture.bench.dialogs.yes = false;
  fixture.dialog->Mnu_FeCuNi_Click();
  fixture.Tick();
  fixture.dialog->Sheet_Click(2);
  fixture.dialog->CmdOK_Click();
  EXPECT_EQ(fixture.LastBox(),
            "adjustment: Das betrifft:\n\n    Regler 2, der ein ist (dyn)\n    die Aufzeichnung "
            "M260314A.OVN der Zeile 5\n\nWeiter ?");
}

TEST(AdjustmentRun, ControllerThatIsOffOrHasFailedIsNotAskedAbout) {
  for (const std::int16_t status : {controller::kOff, controller::kFail, controller::kUnknown}) {
    ChannelBench fixture;
    fixture.Register('Z', 3) = status;
    fixture.OpenIdle();
    fixture.dialog->Mnu_FeCuNi_Click();
    fixture.Tick();
    fixture.dialog->Sheet_Click(3);
    fixture.dialog->CmdOK_Click();
    EXPECT_THAT(fixture.bench.dialogs.boxes, IsEmpty()) << status;
    EXPECT_EQ(fixture.dialog->State(), AdjState::kShort);
  }
}

TEST(AdjustmentRun, ControllerThatDoesNotAnswerMayBeOn) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_FeCuNi_Click();
  fixture.Tick();
  for (const int row : {1, 2, 3}) {
    fixture.dialog->Sheet_Click(row);
  }
  fixture.fails = [](const std::string& command) { return command != "Z21?"; };
  fixture.dialog->CmdOK_Click();
  EXPECT_THAT(fixture.commands, ElementsAre("Z21?", "Z22?"));
  EXPECT_EQ(
      fixture.LastBox(),
      "adjustment: This affects:\n\n    controller 2, which may be on: it did not answer\n    "
      "controller 3, which may be on: it did not answer\n\nGo on ?");
}

TEST(AdjustmentRun, AsksAboutRecordingsOfAChosenRow) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    ChannelBench fixture;
    fixture.bench.state.Unit[slot] = BenchProgram::Header(3, 1, 15, true);
    fixture.bench.state.SlotFile[slot] = "M260314A.OVN";
    const std::size_t other = slot == 1 ? 2 : 1;
    fixture.bench.state.Unit[other] = BenchProgram::Header(2, 1, 15, true);
    fixture.bench.state.SlotFile[other] = "M260314B.OVN";
    fixture.OpenIdle();
    fixture.dialog->Mnu_FeCuNi_Click();
    fixture.Tick();
    fixture.dialog->Sheet_Click(15);
    fixture.dialog->CmdOK_Click();
    EXPECT_EQ(fixture.LastBox(),
              "adjustment: This affects:\n\n    the recording M260314A.OVN of row " +
                  std::to_string(slot) + "\n\nGo on ?");
  }
}

TEST(AdjustmentRun, RecordingsThatAreOffOrTakeOtherInputsAreNotAskedAbout) {
  ChannelBench fixture;
  fixture.bench.state.Unit[1] = BenchProgram::Header(3, 1, 15, false);
  fixture.bench.state.SlotFile[1] = "M260314A.OVN";
  fixture.bench.state.Unit[2] = BenchProgram::Header(3, 1, 8, true);
  fixture.bench.state.SlotFile[2] = "M260314B.OVN";
  fixture.bench.state.Unit[3] = BenchProgram::Header(3, 1, 15, true);
  fixture.bench.state.SlotFile[3] = "";
  fixture.OpenIdle();
  fixture.dialog->Mnu_FeCuNi_Click();
  fixture.Tick();
  fixture.dialog->Sheet_Click(9);
  fixture.dialog->CmdOK_Click();
  EXPECT_THAT(fixture.bench.dialogs.boxes, IsEmpty());
  EXPECT_EQ(fixture.dialog->State(), AdjState::kShort);
}

TEST(ReferenceRun, AsksAboutAllThatHaveAThermocouple) {
  ChannelBench fixture;
  fixture.Register('L', 1) = 1;
  fixture.Register('L', 2) = 5;
  for (int ctrl = 1; ctrl <= 4; ++ctrl) {
    fixture.Register('Z', ctrl) = 2;
  }
  fixture.bench.state.Unit[12] = BenchProgram::Header(3, 1, 1, true);
  fixture.bench.state.SlotFile[12] = "M260314A.OVN";
  fixture.bench.state.Unit[11] = BenchProgram::Header(3, 1, 2, true);
  fixture.bench.state.SlotFile[11] = "M260314B.OVN";
  fixture.OpenIdle();
  fixture.dialog->Mnu_RTD_Click();
  EXPECT_EQ(
      fixture.LastBox(),
      "adjustment: This affects:\n\n    controller 2, which is on (iso)\n    controller 3, "
      "which is on (iso)\n    controller 4, which is on (iso)\n    the recording M260314B.OVN "
      "of row 11\n\nGo on ?");
  EXPECT_THAT(fixture.commands, ElementsAre("Z22?", "Z23?", "Z24?"));
}

}  // namespace
}  // namespace tavrel
