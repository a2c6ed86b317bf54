#include <gmock/gmock.h>

#include <filesystem>

#include "tests/setup/channel_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

using Commands = std::vector<std::string>;

// Exchanges that fail.

TEST(AdjustmentRun, FailingReadIsTriedTwiceMoreAtOnce) {
  for (const LineFailure failure : kLineFailures) {
    for (const int times : {1, 2}) {
      // A late reply spoils the exchange behind it: two of them are three failures.
      if (failure == LineFailure::kLateReply && times == 2) {
        continue;
      }
      ChannelBench room;
      room.failure = failure;
      room.OpenIdle();
      room.dialog->Mnu_FeCuNi_Click();
      room.Tick();
      room.dialog->Sheet_Click(7);
      room.dialog->Sheet_Click(8);
      room.dialog->CmdOK_Click();
      ASSERT_TRUE(room.TickTo(AdjState::kAwaitShorted));
      room.dialog->CmdOK_Click();
      room.FailNext("Y27?", times);
      ASSERT_TRUE(room.TickTo(AdjState::kRaise));
      EXPECT_EQ(room.commands.back(), "O28=198\r");
      EXPECT_EQ(room.Register('O', 7), 407);
      EXPECT_EQ(room.Values().Lbl_Instr, "... collecting data for offset adjustments ...")
          << NameOf(failure) << times;
    }
  }
}

TEST(AdjustmentRun, FailedReadingTakesTheWordBeforeItAndIsCounted) {
  ChannelBench room;
  room.OpenIdle();
  room.dialog->Mnu_FeCuNi_Click();
  room.Tick();
  room.Register('Y', 7) = 100;
  room.Register('Y', 8) = 200;
  room.dialog->Sheet_Click(7);
  room.dialog->Sheet_Click(8);
  room.dialog->CmdOK_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kAwaitShorted));
  room.dialog->CmdOK_Click();
  room.Tick(15);  // one reading is over
  room.FailNext("Y28?", 3);
  ASSERT_TRUE(room.TickTo(AdjState::kRaise));
  EXPECT_EQ(room.Register('O', 7), 100);
  EXPECT_EQ(room.Register('O', 8), 190) << "one of ten is the 100 of the row before";
  EXPECT_EQ(room.Values().Lbl_Instr,
            "... collecting data for offset adjustments ...     (1 reading failed)");
  // Up to the end of the run.
  ASSERT_TRUE(room.TickTo(AdjState::kAwaitRaised));
  EXPECT_EQ(room.Values().Lbl_Instr,
            "raise thermocouples to a known temperature     (1 reading failed)");
  room.dialog->CmdOK_Click();
  room.FailNext("Y20?", 3);
  ASSERT_TRUE(room.TickTo(AdjState::kAwaitFinal));
  EXPECT_EQ(room.Values().Lbl_Instr,
            "enter the final value:  the known temperature     (2 readings failed)");
  room.dialog->Quit();
  ASSERT_TRUE(room.TickTo(AdjState::kIdle));
  room.dialog->Mnu_FeCuNi_Click();
  room.Tick();
  EXPECT_EQ(room.Values().Lbl_Instr, "Select channel(s):   click on row");
}

TEST(AdjustmentRun, NoValueIsAReadingThatFailed) {
  ChannelBench room;
  room.OpenIdle();
  room.dialog->Mnu_FeCuNi_Click();
  room.Tick();
  room.Register('Y', 7) = 100;
  room.dialog->Sheet_Click(7);
  room.dialog->CmdOK_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kAwaitShorted));
  room.dialog->CmdOK_Click();
  room.Tick(15);
  room.Register('Y', 7) = kNoData;
  room.Tick(10);
  room.Register('Y', 7) = 100;
  ASSERT_TRUE(room.TickTo(AdjState::kRaise));
  EXPECT_EQ(room.Register('O', 7), 100);
  EXPECT_THAT(room.Values().Lbl_Instr, HasSubstr("(1 reading failed)"));
}

TEST(AdjustmentRun, SilentInstrumentHoldsNoStepAndEndsTheReading) {
  ChannelBench room;
  room.OpenIdle();
  std::vector<int> rows;
  for (int row = 1; row < kChannelRows; ++row) {
    rows.push_back(row);
  }
  room.RunToRaised(sensor::kFeCuNi, rows);
  room.dialog->CmdOK_Click();
  room.fails = [](const std::string&) { return true; };
  room.Forget();
  for (int tick = 0; tick < 150; ++tick) {
    const auto begin = room.bench.clock.Elapsed();
    room.dialog->Timer_chann();
    EXPECT_LE(room.bench.clock.Elapsed() - begin, std::chrono::milliseconds(500));
    room.bench.clock.Advance(std::chrono::milliseconds(100));
  }
  EXPECT_EQ(room.commands.size(), 6U) << "two rows three times, the others not at all";
  EXPECT_THAT(room.Values().Lbl_Instr, HasSubstr("(16 readings failed)"));
  EXPECT_TRUE(room.Values().ComIcon);
}

// Each of the writes fails once and twice, in each way: it is repeated, and the run is as ever.
TEST(AdjustmentRun, WriteWithoutAcknowledgeIsRepeated) {
  const Commands writes = {"L27=", "L29=", "O27=", "O29=", "J27=", "K27=", "J29=", "K29="};
  for (const LineFailure failure : kLineFailures) {
    for (const std::string& write : writes) {
      ChannelBench room;
      room.failure = failure;
      room.OpenIdle();
      room.FailNext(write, failure == LineFailure::kLateReply ? 1 : 2);
      room.RunToFinal(sensor::kFeCuNi, {7, 9});
      room.dialog->txt_Final_Change("200");
      room.dialog->CmdOK_Click();
      ASSERT_TRUE(room.TickTo(AdjState::kEmptySheet));
      EXPECT_THAT(room.bench.dialogs.boxes, IsEmpty()) << write << NameOf(failure);
      for (const int row : {7, 9}) {
        EXPECT_EQ(room.Register('L', row), 3) << write << NameOf(failure);
        EXPECT_EQ(room.Register('O', row), 400 + row) << write << NameOf(failure);
        EXPECT_EQ(room.Register('J', row), 1) << write << NameOf(failure);
        EXPECT_EQ(room.Register('K', row), room.Register('K', 7)) << write << NameOf(failure);
        EXPECT_NE(room.Register('K', row), 13107) << write << NameOf(failure);
      }
    }
  }
}

TEST(AdjustmentRun, WithoutRawReadingsItEnds) {
  for (const LineFailure failure : {LineFailure::kRefusal, LineFailure::kLostRequest}) {
    ChannelBench room;
    room.failure = failure;
    room.OpenIdle();
    room.dialog->Mnu_FeCuNi_Click();
    room.Tick();
    for (const int row : {5, 7, 9}) {
      room.dialog->Sheet_Click(row);
    }
    room.dialog->CmdOK_Click();
    room.FailNext("L27=", 3);
    room.Forget();
    ASSERT_TRUE(room.TickTo(AdjState::kEmptySheet));
    EXPECT_THAT(room.commands, ElementsAre("L25=0\r", "L27=0\r", "L27=0\r", "L27=0\r"));
    EXPECT_EQ(room.LastBox(),
              "adjustment: The instrument did not acknowledge that row 7 gives raw readings (L = "
              "0).\nThe adjustment ends.\n\nThese rows have no sensor code now (L = 0): 5");
    EXPECT_EQ(room.Register('L', 9), 4);
    room.dialog->Quit();
    EXPECT_FALSE(room.dialog->IsOpen()) << "the run is over";
  }
}

TEST(ReferenceRun, WithoutRawReadingsItEnds) {
  ChannelBench room;
  room.OpenIdle();
  room.FailNext("L20=", 3);
  room.dialog->Mnu_RTD_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kEmptySheet));
  EXPECT_THAT(room.LastBox(), HasSubstr("row 0 gives raw readings"));
}

TEST(AdjustmentRun, RowWithoutItsOffsetLeavesTheRun) {
  ChannelBench room;
  room.OpenIdle();
  room.FailNext("O27=", 3);
  room.RunToFinal(sensor::kFeCuNi, {7, 9});
  EXPECT_EQ(
      room.LastBox(),
      "adjustment: The instrument did not acknowledge:\n\n    row 7, register O: the row stays "
      "without a sensor code (L = 0)\n\nAdjust these rows again.");
  EXPECT_FALSE(room.Row(7).selected);
  room.Forget();
  room.dialog->txt_Final_Change("200");
  room.dialog->CmdOK_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kEmptySheet));
  for (const std::string& command : room.commands) {
    EXPECT_EQ(command.substr(1, 2), "29");
  }
  EXPECT_EQ(room.Register('L', 7), 0);
  EXPECT_EQ(room.Register('L', 9), 3);
}

TEST(AdjustmentRun, WithoutAnyOffsetItEnds) {
  ChannelBench room;
  room.OpenIdle();
  room.dialog->Mnu_FeCuNi_Click();
  room.Tick();
  room.dialog->Sheet_Click(7);
  room.dialog->CmdOK_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kAwaitShorted));
  room.dialog->CmdOK_Click();
  room.FailNext("O27=", 3);
  ASSERT_TRUE(room.TickTo(AdjState::kEmptySheet));
  EXPECT_EQ(room.bench.dialogs.boxes.size(), 1U);
}

// O, J and K are acknowledged before L goes out.
TEST(AdjustmentRun, RowWithoutItsDivisorGetsNoSensorCode) {
  for (const std::string letter : {"J", "K"}) {
    ChannelBench room;
    room.OpenIdle();
    room.RunToFinal(sensor::kFeCuNi, {7, 9});
    room.FailNext(letter + "27=", 3);
    room.Forget();
    room.dialog->txt_Final_Change("200");
    room.dialog->CmdOK_Click();
    ASSERT_TRUE(room.TickTo(AdjState::kEmptySheet));
    EXPECT_EQ(room.Register('L', 7), 0);
    EXPECT_EQ(room.Register('L', 9), 3);
    EXPECT_THAT(room.commands, Not(testing::Contains("L27=3\r")));
    EXPECT_EQ(room.LastBox(),
              "adjustment: The instrument did not acknowledge:\n\n    row 7, "
              "register " +
                  letter +
                  ": the row stays without a sensor code (L = 0)\n\nAdjust these "
                  "rows again.");
  }
}

TEST(AdjustmentRun, SensorCodeWithoutAcknowledgeIsTold) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToFinal(sensor::kFeCuNi, {7});
  room.FailNext("L27=3", 3);
  room.dialog->txt_Final_Change("200");
  room.dialog->CmdOK_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kEmptySheet));
  EXPECT_THAT(room.LastBox(), HasSubstr("row 7, register L: it is not known whether the row has "
                                        "its sensor code"));
}

TEST(AdjustmentRun, SilentInstrumentIsGivenUpWithinSeconds) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToFinal(sensor::kFeCuNi, {1, 2, 3, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15});
  room.fails = [](const std::string&) { return true; };
  room.Forget();
  room.dialog->txt_Final_Change("200");
  room.dialog->CmdOK_Click();
  const auto begin = room.bench.clock.Elapsed();
  ASSERT_TRUE(room.TickTo(AdjState::kEmptySheet));
  EXPECT_LT(room.bench.clock.Elapsed() - begin, std::chrono::seconds(4));
  EXPECT_THAT(room.commands, testing::SizeIs(6));
  EXPECT_THAT(room.LastBox(), HasSubstr("row F, register J"));
}

TEST(AdjustmentRun, EscapeDropsWritesThatAreStillToBeRepeated) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToFinal(sensor::kFeCuNi, {7});
  room.FailNext("K27=", 100);
  room.dialog->txt_Final_Change("200");
  room.dialog->CmdOK_Click();
  room.Tick();
  EXPECT_EQ(room.dialog->State(), AdjState::kCompute);
  EXPECT_GT(room.bench.state.Unfinished, 0) << "the program does not end now";
  room.Forget();
  room.dialog->Quit();
  EXPECT_EQ(room.bench.state.Unfinished, 0);
  ASSERT_TRUE(room.TickTo(AdjState::kIdle));
  for (const std::string& command : room.commands) {
    EXPECT_TRUE(command.ends_with("?")) << command;
  }
}

// A dropped run.

constexpr const char* kDropped =
    "adjustment: The adjustment is dropped. What it has written stays:\n";

TEST(DroppedRun, TellsTheRowsThatHaveNoSensorCodeNow) {
  ChannelBench room;
  room.OpenIdle();
  room.dialog->Mnu_FeCuNi_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kSelect));
  room.dialog->Sheet_Click(5);
  room.dialog->Sheet_Click(15);
  room.dialog->CmdOK_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kAwaitShorted));
  room.dialog->Quit();
  EXPECT_EQ(
      room.LastBox(),
      kDropped +
          ("\n    row 5:  L = 0 (was 3)\n    row F:  L = 0 (was 4)\n\nWith L = 0 a row gives "
           "raw readings. Adjust these rows again, or load a variable file.\n\nThe old values "
           "stand in " +
           room.bench.home.File(kJournalFile)));
  EXPECT_EQ(room.bench.dialogs.boxes.size(), 1U);
  EXPECT_TRUE(room.dialog->IsOpen());
}

TEST(DroppedRun, TellsNewOffsets) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToRaised(sensor::kNiCrNi, {1, 9, 14});
  room.dialog->Quit();
  EXPECT_THAT(room.LastBox(), HasSubstr("\n    row 1:  L = 0 (was 3),  O = 401 (was 11)\n"
                                        "    row 9:  L = 0 (was 4),  O = 409 (was 19)\n"
                                        "    row E:  L = 0 (was 4),  O = 414 (was 24)\n\n"));
}

TEST(DroppedRun, OfTheReferenceSensorIsToldToo) {
  ChannelBench room;
  room.OpenIdle();
  room.dialog->Mnu_RTD_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kAwaitZero));
  room.dialog->Quit();
  EXPECT_THAT(room.LastBox(), HasSubstr("\n    row 0:  L = 0 (was 2)\n\n"));
}

// In the middle of the coefficients: what was tried and not acknowledged is not known.
TEST(DroppedRun, TellsWhatIsNotKnown) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToFinal(sensor::kFeCuNi, {7, 9});
  room.FailNext("K29=", 100);
  room.dialog->txt_Final_Change("200");
  room.dialog->CmdOK_Click();
  room.Tick();
  const std::string parts = std::to_string(room.Register('K', 7));
  ASSERT_EQ(room.Register('L', 7), 3);
  room.dialog->Quit();
  EXPECT_THAT(room.LastBox(),
              HasSubstr("\n    row 7:  L = 3 (was 3),  O = 407 (was 17),  K = " + parts +
                        " (was 13107)\n    row 9:  L = 0 (was 4),  O = 409 (was 19),  K = ? (was "
                        "13107)\n\n"));
  EXPECT_THAT(room.LastBox(),
              HasSubstr("\n\n? is not known, for the instrument did not answer.\n\n"));
  const std::string journal = room.bench.home.Read(kJournalFile);
  EXPECT_THAT(journal, HasSubstr("after 7 J 1 K " + parts +
                                 " L 3 O 407\r\n"
                                 "after 9 J 1 K ? L 0 O 409\r\nend 2026-03-14 10:00:00 dropped"));
}

TEST(DroppedRun, TellsOfTheFirstWriteThatWasTried) {
  for (const LineFailure failure : kLineFailures) {
    ChannelBench room;
    room.failure = failure;
    room.OpenIdle();
    room.dialog->Mnu_FeCuNi_Click();
    ASSERT_TRUE(room.TickTo(AdjState::kSelect));
    room.dialog->Sheet_Click(8);
    room.dialog->Sheet_Click(12);
    room.dialog->CmdOK_Click();
    room.FailNext("L28=", 1);
    room.Tick();
    ASSERT_EQ(room.dialog->State(), AdjState::kShort);
    room.dialog->Quit();
    EXPECT_THAT(room.LastBox(), HasSubstr("\n    row 8:  L = ? (was 3)\n\n")) << NameOf(failure);
    EXPECT_THAT(room.LastBox(), Not(HasSubstr("row C"))) << "it was not touched";
    EXPECT_THAT(room.bench.home.Read(kJournalFile),
                HasSubstr("after 8 J 1 K 13107 L ? O 18\r\nafter C J 1 K 13107 L 4 O 22\r\n"));
  }
}

TEST(DroppedRun, ThatHasWrittenNothingSaysNothing) {
  ChannelBench room;
  room.OpenIdle();
  room.dialog->Mnu_FeCuNi_Click();
  ASSERT_TRUE(room.TickTo(AdjState::kSelect));
  room.dialog->Sheet_Click(8);
  room.dialog->CmdOK_Click();
  room.dialog->Quit();
  EXPECT_THAT(room.bench.dialogs.boxes, IsEmpty());
  EXPECT_TRUE(room.dialog->IsOpen());
}

// The program ends: no box may hold it. The journal has it all.
TEST(DroppedRun, AtTheEndOfTheProgramIsInTheJournal) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToRaised(sensor::kFeCuNi, {11});
  room.dialog->CloseNow();
  EXPECT_THAT(room.bench.dialogs.boxes, IsEmpty());
  EXPECT_THAT(
      room.bench.home.Read(kJournalFile),
      HasSubstr(
          "after B J 1 K 13107 L 0 O 411\r\nend 2026-03-14 10:00:00 dropped with the program\r\n"));
}

TEST(DroppedRun, WithoutARecordNamesNone) {
  ChannelBench room;
  std::filesystem::create_directory(room.bench.home.File(kJournalFile));
  room.OpenIdle();
  room.RunToRaised(sensor::kFeCuNi, {7});
  room.dialog->Quit();
  EXPECT_THAT(room.LastBox(), HasSubstr("row 7:  L = 0 (was 3),  O = 407 (was 17)"));
  EXPECT_THAT(room.LastBox(), testing::EndsWith("or load a variable file."));
}

TEST(DroppedRun, NoStepBeginsWhileItIsTold) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToRaised(sensor::kFeCuNi, {7});
  room.Forget();
  room.bench.dialogs.on_box = [&] {
    room.Tick(30);
    EXPECT_THAT(room.commands, IsEmpty());
  };
  room.dialog->Quit();
  EXPECT_EQ(room.bench.dialogs.boxes.size(), 1U);
  ASSERT_TRUE(room.TickTo(AdjState::kIdle));
  EXPECT_EQ(room.Row(7).sensor, "------");
  EXPECT_EQ(room.Row(7).offset, "407");
}

// What cannot be finished must not keep the program from its end.
TEST(AdjustmentRun, PortThatIsAwayDoesNotHoldTheProgram) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToFinal(sensor::kFeCuNi, {7});
  room.FailNext("K27=", 1);
  room.dialog->txt_Final_Change("200");
  room.dialog->CmdOK_Click();
  room.Tick();
  EXPECT_EQ(room.bench.state.Unfinished, 1);
  room.bench.link.PortOpen = false;
  room.Tick();
  EXPECT_EQ(room.bench.state.Unfinished, 0);
  room.bench.link.PortOpen = true;
  ASSERT_TRUE(room.TickTo(AdjState::kEmptySheet));
  EXPECT_EQ(room.Register('L', 7), 3);
  EXPECT_EQ(room.bench.state.Unfinished, 0);
}

// Boxes.

TEST(AdjustmentRun, NoStepBeginsWhileABoxIsOpen) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToFinal(sensor::kFeCuNi, {7});
  room.Forget();
  room.bench.dialogs.on_box = [&] {
    room.Tick(30);
    room.dialog->CmdOK_Click();
    EXPECT_THAT(room.commands, IsEmpty());
    EXPECT_EQ(room.dialog->State(), AdjState::kCompute);
  };
  room.dialog->txt_Final_Change("1");
  room.dialog->CmdOK_Click();
  room.Tick();
  EXPECT_EQ(room.bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(room.dialog->State(), AdjState::kAwaitRaised);
}

TEST(AdjustmentRun, NextStateComesOnlyIfTheStateIsAsItWas) {
  ChannelBench room;
  room.OpenIdle();
  room.RunToFinal(sensor::kFeCuNi, {7});
  room.bench.dialogs.on_box = [&] { room.dialog->Quit(); };
  room.dialog->txt_Final_Change("1");
  room.dialog->CmdOK_Click();
  room.Tick();
  EXPECT_EQ(room.dialog->State(), AdjState::kEmptySheet) << "the run was dropped meanwhile";
}

}  // namespace
}  // namespace tavrel
