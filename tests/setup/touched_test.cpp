#include <gmock/gmock.h>

#include "tests/setup/channel_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// What a run affects.

TEST(AdjustmentRun, AsksAboutControllersThatUseAChosenRow) {
  ChannelBench room;
  room.Register('Z', 1) = 2;
  room.Register('Z', 2) = 3;
  room.Register('Z', 4) = 0;
  room.OpenIdle();
  room.bench.dialogs.yes = false;
  room.dialog->Mnu_FeCuNi_Click();
  room.Tick();
  for (const int row : {2, 4, 5}) {
    room.dialog->Sheet_Click(row);
  }
  room.dialog->CmdOK_Click();
  EXPECT_THAT(room.commands, ElementsAre("Z22?", "Z24?"));
  EXPECT_EQ(room.LastBox(),
            "adjustment: This affects:\n\n    controller 2, which is on (dyn)\n\nGo on ?");
  EXPECT_TRUE(room.bench.dialogs.boxes.back().PresetIsNo);
  EXPECT_EQ(room.dialog->State(), AdjState::kSelect);
  EXPECT_FALSE(room.bench.home.Exists(kJournalFile));
  room.bench.dialogs.yes = true;
  room.dialog->CmdOK_Click();
  EXPECT_EQ(room.dialog->State(), AdjState::kShort);
}

TEST(AdjustmentRun, ControllerThatIsOffOrHasFailedIsNotAskedAbout) {
  for (const std::int16_t status : {controller::kOff, controller::kFail, controller::kUnknown}) {
    ChannelBench room;
    room.Register('Z', 3) = status;
    room.OpenIdle();
    room.dialog->Mnu_FeCuNi_Click();
    room.Tick();
    room.dialog->Sheet_Click(3);
    room.dialog->CmdOK_Click();
    EXPECT_THAT(room.bench.dialogs.boxes, IsEmpty()) << status;
    EXPECT_EQ(room.dialog->State(), AdjState::kShort);
  }
}

TEST(AdjustmentRun, ControllerThatDoesNotAnswerMayBeOn) {
  ChannelBench room;
  room.OpenIdle();
  room.dialog->Mnu_FeCuNi_Click();
  room.Tick();
  for (const int row : {1, 2, 3}) {
    room.dialog->Sheet_Click(row);
  }
  room.fails = [](const std::string& command) { return command != "Z21?"; };
  room.dialog->CmdOK_Click();
  EXPECT_THAT(room.commands, ElementsAre("Z21?", "Z22?"));
  EXPECT_EQ(
      room.LastBox(),
      "adjustment: This affects:\n\n    controller 2, which may be on: it did not answer\n    "
      "controller 3, which may be on: it did not answer\n\nGo on ?");
}

TEST(AdjustmentRun, AsksAboutRecordingsOfAChosenRow) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    ChannelBench room;
    room.bench.state.Unit[slot] = BenchProgram::Header(3, 1, 15, true);
    room.bench.state.SlotFile[slot] = "M260314A.OVN";
    const std::size_t other = slot == 1 ? 2 : 1;
    room.bench.state.Unit[other] = BenchProgram::Header(2, 1, 15, true);
    room.bench.state.SlotFile[other] = "M260314B.OVN";
    room.OpenIdle();
    room.dialog->Mnu_FeCuNi_Click();
    room.Tick();
    room.dialog->Sheet_Click(15);
    room.dialog->CmdOK_Click();
    EXPECT_EQ(room.LastBox(),
              "adjustment: This affects:\n\n    the recording M260314A.OVN of row " +
                  std::to_string(slot) + "\n\nGo on ?");
  }
}

TEST(AdjustmentRun, RecordingsThatAreOffOrTakeOtherInputsAreNotAskedAbout) {
  ChannelBench room;
  room.bench.state.Unit[1] = BenchProgram::Header(3, 1, 15, false);
  room.bench.state.SlotFile[1] = "M260314A.OVN";
  room.bench.state.Unit[2] = BenchProgram::Header(3, 1, 8, true);
  room.bench.state.SlotFile[2] = "M260314B.OVN";
  room.bench.state.Unit[3] = BenchProgram::Header(3, 1, 15, true);
  room.bench.state.SlotFile[3] = "";
  room.OpenIdle();
  room.dialog->Mnu_FeCuNi_Click();
  room.Tick();
  room.dialog->Sheet_Click(9);
  room.dialog->CmdOK_Click();
  EXPECT_THAT(room.bench.dialogs.boxes, IsEmpty());
  EXPECT_EQ(room.dialog->State(), AdjState::kShort);
}

TEST(ReferenceRun, AsksAboutAllThatHaveAThermocouple) {
  ChannelBench room;
  room.Register('L', 1) = 1;
  room.Register('L', 2) = 5;
  for (int ctrl = 1; ctrl <= 4; ++ctrl) {
    room.Register('Z', ctrl) = 2;
  }
  room.bench.state.Unit[12] = BenchProgram::Header(3, 1, 1, true);
  room.bench.state.SlotFile[12] = "M260314A.OVN";
  room.bench.state.Unit[11] = BenchProgram::Header(3, 1, 2, true);
  room.bench.state.SlotFile[11] = "M260314B.OVN";
  room.OpenIdle();
  room.dialog->Mnu_RTD_Click();
  EXPECT_EQ(
      room.LastBox(),
      "adjustment: This affects:\n\n    controller 2, which is on (iso)\n    controller 3, "
      "which is on (iso)\n    controller 4, which is on (iso)\n    the recording M260314B.OVN "
      "of row 11\n\nGo on ?");
  EXPECT_THAT(room.commands, ElementsAre("Z22?", "Z23?", "Z24?"));
}

}  // namespace
}  // namespace tavrel
