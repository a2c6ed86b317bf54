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
      ChannelBench fixture;
      fixture.failure = failure;
      fixture.OpenIdle();
      fixture.dialog->Mnu_FeCuNi_Click();
      fixture.Tick();
      fixture.dialog->Sheet_Click(7);
      fixture.dialog->Sheet_Click(8);
      fixture.dialog->CmdOK_Click();
      ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitShorted));
      fixture.dialog->CmdOK_Click();
      fixture.FailNext("Y27?", times);
      ASSERT_TRUE(fixture.TickTo(AdjState::kRaise));
      EXPECT_EQ(fixture.commands.back(), "O28=198\r");
      EXPECT_EQ(fixture.Register('O', 7), 407);
      EXPECT_EQ(fixture.Values().Lbl_Instr, "... collecting data for offset adjustments ...")
          << NameOf(failure) << times;
    }
  }
}

TEST(AdjustmentRun, FailedReadingTakesTheWordBeforeItAndIsCounted) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_FeCuNi_Click();
  fixture.Tick();
  fixture.Register('Y', 7) = 100;
  fixture.Register('Y', 8) = 200;
  fixture.dialog->Sheet_Click(7);
  fixture.dialog->Sheet_Click(8);
  fixture.dialog->CmdOK_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitShorted));
  fixture.dialog->CmdOK_Click();
  fixture.Tick(15);  // one reading is over
  fixture.FailNext("Y28?", 3);
  ASSERT_TRUE(fixture.TickTo(AdjState::kRaise));
  EXPECT_EQ(fixture.Register('O', 7), 100);
  EXPECT_EQ(fixture.Register('O', 8), 190) << "one of ten is the 100 of the row before";
  EXPECT_EQ(fixture.Values().Lbl_Instr,
            "... collecting data for offset adjustments ...     (1 reading failed)");
  // Up to the end of the run.
  ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitRaised));
  EXPECT_EQ(fixture.Values().Lbl_Instr,
            "raise thermocouples to a known temperature     (1 reading failed)");
  fixture.dialog->CmdOK_Click();
  fixture.FailNext("Y20?", 3);
  ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitFinal));
  EXPECT_EQ(fixture.Values().Lbl_Instr,
            "enter the final value:  the known temperature     (2 readings failed)");
  fixture.dialog->Quit();
  ASSERT_TRUE(fixture.TickTo(AdjState::kIdle));
  fixture.dialog->Mnu_FeCuNi_Click();
  fixture.Tick();
  EXPECT_EQ(fixture.Values().Lbl_Instr, "Select channel(s):   click on row");
}

TEST(AdjustmentRun, NoValueIsAReadingThatFailed) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_FeCuNi_Click();
  fixture.Tick();
  fixture.Register('Y', 7) = 100;
  fixture.dialog->Sheet_Click(7);
  fixture.dialog->CmdOK_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitShorted));
  fixture.dialog->CmdOK_Click();
  fixture.Tick(15);
  fixture.Register('Y', 7) = kNoData;
  fixture.Tick(10);
  fixture.Register('Y', 7) = 100;
  ASSERT_TRUE(fixture.TickTo(AdjState::kRaise));
  EXPECT_EQ(fixture.Register('O', 7), 100);
  EXPECT_THAT(fixture.Values().Lbl_Instr, HasSubstr("(1 reading failed)"));
}

TEST(AdjustmentRun, SilentInstrumentHoldsNoStepAndEndsTheReading) {
  ChannelBench fixture;
  fixture.OpenIdle();
  std::vector<int> rows;
  for (int row = 1; row < kChannelRows; ++row) {
    rows.push_back(row);
  }
  fixture.RunToRaised(sensor::kFeCuNi, rows);
  fixture.dialog->CmdOK_Click();
  fixture.fails = [](const std::string&) { return true; };
  fixture.Forget();
  for (int tick = 0; tick < 150; ++tick) {
    const auto begin = fixture.bench.clock.Elapsed();
    fixture.dialog->Timer_chann();
    EXPECT_LE(fixture.bench.clock.Elapsed() - begin, std::chrono::milliseconds(500));
    fixture.bench.clock.Advance(std::chrono::milliseconds(100));
  }
  EXPECT_EQ(fixture.commands.size(), 6U) << "two rows three times, the others not at all";
  EXPECT_THAT(fixture.Values().Lbl_Instr, HasSubstr("(16 readings failed)"));
  EXPECT_TRUE(fixture.Values().ComIcon);
}

// Each of the writes fails once and twice, in each way: it is repeated, and the run is as ever.
TEST(AdjustmentRun, WriteWithoutAcknowledgeIsRepeated) {
  const Commands writes = {"L27=", "L29=", "O27=", "O29=", "J27=", "K27=", "J29=", "K29="};
  for (const LineFailure failure : kLineFailures) {
    for (const std::string& write : writes) {
      ChannelBench fixture;
      fixture.failure = failure;
      fixture.OpenIdle();
      fixture.FailNext(write, failure == LineFailure::kLateReply ? 1 : 2);
      fixture.RunToFinal(sensor::kFeCuNi, {7, 9});
      fixture.dialog->txt_Final_Change("200");
      fixture.dialog->CmdOK_Click();
      ASSERT_TRUE(fixture.TickTo(AdjState::kEmptySheet));
      EXPECT_THAT(fixture.bench.dialogs.boxes, IsEmpty()) << write << NameOf(failure);
      for (const int row : {7, 9}) {
        EXPECT_EQ(fixture.Register('L', row), 3) << write << NameOf(failure);
        EXPECT_EQ(fixture.Register('O', row), 400 + row) << write << NameOf(failure);
        EXPECT_EQ(fixture.Register('J', row), 1) << write << NameOf(failure);
        EXPECT_EQ(fixture.Register('K', row), fixture.Register('K', 7)) << write << NameOf(failure);
        EXPECT_NE(fixture.Register('K', row), 13107) << write << NameOf(failure);
      }
    }
  }
}

TEST(AdjustmentRun, WithoutRawReadingsItEnds) {
  for (const LineFailure failure : {LineFailure::kRefusal, LineFailure::kLostRequest}) {
    ChannelBench fixture;
    fixture.failure = failure;
    fixture.OpenIdle();
    fixture.dialog->Mnu_FeCuNi_Click();
    fixture.Tick();
    for (const int row : {5, 7, 9}) {
      fixture.dialog->Sheet_Click(row);
    }
    fixture.dialog->CmdOK_Click();
    fixture.FailNext("L27=", 3);
    fixture.Forget();
    ASSERT_TRUE(fixture.TickTo(AdjState::kEmptySheet));
    EXPECT_THAT(fixture.commands, ElementsAre("L25=0\r", "L27=0\r", "L27=0\r", "L27=0\r"));
    EXPECT_EQ(fixture.LastBox(),
              "adjustment: The instrument did not acknowledge that row 7 gives raw readings (L = "
              "0).\nThe adjustment ends.\n\nThese rows have no sensor code now (L = 0): 5");
    EXPECT_EQ(fixture.Register('L', 9), 4);
    fixture.dialog->Quit();
    EXPECT_FALSE(fixture.dialog->IsOpen()) << "the run is over";
  }
}

TEST(ReferenceRun, WithoutRawReadingsItEnds) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.FailNext("L20=", 3);
  fixture.dialog->Mnu_RTD_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kEmptySheet));
  EXPECT_THAT(fixture.LastBox(), HasSubstr("row 0 gives raw readings"));
}

TEST(AdjustmentRun, RowWithoutItsOffsetLeavesTheRun) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.FailNext("O27=", 3);
  fixture.RunToFinal(sensor::kFeCuNi, {7, 9});
  EXPECT_EQ(
      fixture.LastBox(),
      "adjustment: The instrument did not acknowledge:\n\n    row 7, register O: the row stays "
      "without a sensor code (L = 0)\n\nAdjust these rows again.");
  EXPECT_FALSE(fixture.Row(7).selected);
  fixture.Forget();
  fixture.dialog->txt_Final_Change("200");
  fixture.dialog->CmdOK_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kEmptySheet));
  for (const std::string& command : fixture.commands) {
    EXPECT_EQ(command.substr(1, 2), "29");
  }
  EXPECT_EQ(fixture.Register('L', 7), 0);
  EXPECT_EQ(fixture.Register('L', 9), 3);
}

TEST(AdjustmentRun, WithoutAnyOffsetItEnds) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_FeCuNi_Click();
  fixture.Tick();
  fixture.dialog->Sheet_Click(7);
  fixture.dialog->CmdOK_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitShorted));
  fixture.dialog->CmdOK_Click();
  fixture.FailNext("O27=", 3);
  ASSERT_TRUE(fixture.TickTo(AdjState::kEmptySheet));
  EXPECT_EQ(fixture.bench.dialogs.boxes.size(), 1U);
}

// O, J and K are acknowledged before L goes out.
TEST(AdjustmentRun, RowWithoutItsDivisorGetsNoSensorCode) {
  for (const std::string letter : {"J", "K"}) {
    ChannelBench fixture;
    fixture.OpenIdle();
    fixture.RunToFinal(sensor::kFeCuNi, {7, 9});
    fixture.FailNext(letter + "27=", 3);
    fixture.Forget();
    fixture.dialog->txt_Final_Change("200");
    fixture.dialog->CmdOK_Click();
    ASSERT_TRUE(fixture.TickTo(AdjState::kEmptySheet));
    EXPECT_EQ(fixture.Register('L', 7), 0);
    EXPECT_EQ(fixture.Register('L', 9), 3);
    EXPECT_THAT(fixture.commands, Not(testing::Contains("L27=3\r")));
    EXPECT_EQ(fixture.LastBox(),
              "adjustment: The instrument did not acknowledge:\n\n    row 7, "
              "register " +
                  letter +
                  ": the row stays without a sensor code (L = 0)\n\nAdjust these "
                  "rows again.");
  }
}

TEST(AdjustmentRun, SensorCodeWithoutAcknowledgeIsTold) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToFinal(sensor::kFeCuNi, {7});
  fixture.FailNext("L27=3", 3);
  fixture.dialog->txt_Final_Change("200");
  fixture.dialog->CmdOK_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kEmptySheet));
  EXPECT_THAT(fixture.LastBox(), HasSubstr("row 7, register L: it is not known whether the row has "
                                           "its sensor code"));
}

TEST(AdjustmentRun, SilentInstrumentIsGivenUpWithinSeconds) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToFinal(sensor::kFeCuNi, {1, 2, 3, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15});
  fixture.fails = [](const std::string&) { return true; };
  fixture.Forget();
  fixture.dialog->txt_Final_Change("200");
  fixture.dialog->CmdOK_Click();
  const auto begin = fixture.bench.clock.Elapsed();
  ASSERT_TRUE(fixture.TickTo(AdjState::kEmptySheet));
  EXPECT_LT(fixture.bench.clock.Elapsed() - begin, std::chrono::seconds(4));
  EXPECT_THAT(fixture.commands, testing::SizeIs(6));
  EXPECT_THAT(fixture.LastBox(), HasSubstr("row F, register J"));
}

TEST(AdjustmentRun, EscapeDropsWritesThatAreStillToBeRepeated) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToFinal(sensor::kFeCuNi, {7});
  fixture.FailNext("K27=", 100);
  fixture.dialog->txt_Final_Change("200");
  fixture.dialog->CmdOK_Click();
  fixture.Tick();
  EXPECT_EQ(fixture.dialog->State(), AdjState::kCompute);
  EXPECT_GT(fixture.bench.state.Unfinished, 0) << "the program does not end now";
  fixture.Forget();
  fixture.dialog->Quit();
  EXPECT_EQ(fixture.bench.state.Unfinished, 0);
  ASSERT_TRUE(fixture.TickTo(AdjState::kIdle));
  for (const std::string& command : fixture.commands) {
    EXPECT_TRUE(command.ends_with("?")) << command;
  }
}

// A dropped run.

constexpr const char* kDropped =
    "adjustment: The adjustment is dropped. What it has written stays:\n";

TEST(DroppedRun, TellsTheRowsThatHaveNoSensorCodeNow) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_FeCuNi_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kSelect));
  fixture.dialog->Sheet_Click(5);
  fixture.dialog->Sheet_Click(15);
  fixture.dialog->CmdOK_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitShorted));
  fixture.dialog->Quit();
  EXPECT_EQ(
      fixture.LastBox(),
      kDropped +
          ("\n    row 5:  L = 0 (was 3)\n    row F:  L = 0 (was 4)\n\nWith L = 0 a row gives "
           "raw readings. Adjust these rows again, or load a variable file.\n\nThe old values "
           "stand in " +
           fixture.bench.home.File(kJournalFile)));
  EXPECT_EQ(fixture.bench.dialogs.boxes.size(), 1U);
  EXPECT_TRUE(fixture.dialog->IsOpen());
}

TEST(DroppedRun, TellsNewOffsets) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToRaised(sensor::kNiCrNi, {1, 9, 14});
  fixture.dialog->Quit();
  EXPECT_THAT(fixture.LastBox(), HasSubstr("\n    row 1:  L = 0 (was 3),  O = 401 (was 11)\n"
                                           "    row 9:  L = 0 (was 4),  O = 409 (was 19)\n"
                                           "    row E:  L = 0 (was 4),  O = 414 (was 24)\n\n"));
}

TEST(DroppedRun, OfTheReferenceSensorIsToldToo) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_RTD_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitZero));
  fixture.dialog->Quit();
  EXPECT_THAT(fixture.LastBox(), HasSubstr("\n    row 0:  L = 0 (was 2)\n\n"));
}

// In the middle of the coefficients: what was tried and not acknowledged is not known.
TEST(DroppedRun, TellsWhatIsNotKnown) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToFinal(sensor::kFeCuNi, {7, 9});
  fixture.FailNext("K29=", 100);
  fixture.dialog->txt_Final_Change("200");
  fixture.dialog->CmdOK_Click();
  fixture.Tick();
  const std::string parts = std::to_string(fixture.Register('K', 7));
  ASSERT_EQ(fixture.Register('L', 7), 3);
  fixture.dialog->Quit();
  EXPECT_THAT(fixture.LastBox(),
              HasSubstr("\n    row 7:  L = 3 (was 3),  O = 407 (was 17),  K = " + parts +
                        " (was 13107)\n    row 9:  L = 0 (was 4),  O = 409 (was 19),  K = ? (was "
                        "13107)\n\n"));
  EXPECT_THAT(fixture.LastBox(),
              HasSubstr("\n\n? is not known, for the instrument did not answer.\n\n"));
  const std::string journal = fixture.bench.home.Read(kJournalFile);
  EXPECT_THAT(journal, HasSubstr("after 7 J 1 K " + parts +
                                 " L 3 O 407\r\n"
                                 "after 9 J 1 K ? L 0 O 409\r\nend 2026-03-14 10:00:00 dropped"));
}

TEST(DroppedRun, TellsOfTheFirstWriteThatWasTried) {
  for (const LineFailure failure : kLineFailures) {
    ChannelBench fixture;
    fixture.failure = failure;
    fixture.OpenIdle();
    fixture.dialog->Mnu_FeCuNi_Click();
    ASSERT_TRUE(fixture.TickTo(AdjState::kSelect));
    fixture.dialog->Sheet_Click(8);
    fixture.dialog->Sheet_Click(12);
    fixture.dialog->CmdOK_Click();
    fixture.FailNext("L28=", 1);
    fixture.Tick();
    ASSERT_EQ(fixture.dialog->State(), AdjState::kShort);
    fixture.dialog->Quit();
    EXPECT_THAT(fixture.LastBox(), HasSubstr("\n    row 8:  L = ? (was 3)\n\n")) << NameOf(failure);
    EXPECT_THAT(fixture.LastBox(), Not(HasSubstr("row C"))) << "it was not touched";
    EXPECT_THAT(fixture.bench.home.Read(kJournalFile),
                HasSubstr("after 8 J 1 K 13107 L ? O 18\r\nafter C J 1 K 13107 L 4 O 22\r\n"));
  }
}

TEST(DroppedRun, ThatHasWrittenNothingSaysNothing) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_FeCuNi_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kSelect));
  fixture.dialog->Sheet_Click(8);
  fixture.dialog->CmdOK_Click();
  fixture.dialog->Quit();
  EXPECT_THAT(fixture.bench.dialogs.boxes, IsEmpty());
  EXPECT_TRUE(fixture.dialog->IsOpen());
}

// The program ends: no box may hold it. The journal has it all.
TEST(DroppedRun, AtTheEndOfTheProgramIsInTheJournal) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToRaised(sensor::kFeCuNi, {11});
  fixture.dialog->CloseNow();
  EXPECT_THAT(fixture.bench.dialogs.boxes, IsEmpty());
  EXPECT_THAT(
      fixture.bench.home.Read(kJournalFile),
      HasSubstr(
          "after B J 1 K 13107 L 0 O 411\r\nend 2026-03-14 10:00:00 dropped with the program\r\n"));
}

TEST(DroppedRun, WithoutARecordNamesNone) {
  ChannelBench fixture;
  std::filesystem::create_directory(fixture.bench.home.File(kJournalFile));
  fixture.OpenIdle();
  fixture.RunToRaised(sensor::kFeCuNi, {7});
  fixture.dialog->Quit();
  EXPECT_THAT(fixture.LastBox(), HasSubstr("row 7:  L = 0 (was 3),  O = 407 (was 17)"));
  EXPECT_THAT(fixture.LastBox(), testing::EndsWith("or load a variable file."));
}

TEST(DroppedRun, NoStepBeginsWhileItIsTold) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToRaised(sensor::kFeCuNi, {7});
  fixture.Forget();
  fixture.bench.dialogs.on_box = [&] {
    fixture.Tick(30);
    EXPECT_THAT(fixture.commands, IsEmpty());
  };
  fixture.dialog->Quit();
  EXPECT_EQ(fixture.bench.dialogs.boxes.size(), 1U);
  ASSERT_TRUE(fixture.TickTo(AdjState::kIdle));
  EXPECT_EQ(fixture.Row(7).sensor, "------");
  EXPECT_EQ(fixture.Row(7).offset, "407");
}

// What cannot be finished must not keep the program from its end.
TEST(AdjustmentRun, PortThatIsAwayDoesNotHoldTheProgram) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToFinal(sensor::kFeCuNi, {7});
  fixture.FailNext("K27=", 1);
  fixture.dialog->txt_Final_Change("200");
  fixture.dialog->CmdOK_Click();
  fixture.Tick();
  EXPECT_EQ(fixture.bench.state.Unfinished, 1);
  fixture.bench.link.PortOpen = false;
  fixture.Tick();
  EXPECT_EQ(fixture.bench.state.Unfinished, 0);
  fixture.bench.link.PortOpen = true;
  ASSERT_TRUE(fixture.TickTo(AdjState::kEmptySheet));
  EXPECT_EQ(fixture.Register('L', 7), 3);
  EXPECT_EQ(fixture.bench.state.Unfinished, 0);
}

// Boxes.

TEST(AdjustmentRun, NoStepBeginsWhileABoxIsOpen) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToFinal(sensor::kFeCuNi, {7});
  fixture.Forget();
  fixture.bench.dialogs.on_box = [&] {
    fixture.Tick(30);
    fixture.dialog->CmdOK_Click();
    EXPECT_THAT(fixture.commands, IsEmpty());
    EXPECT_EQ(fixture.dialog->State(), AdjState::kCompute);
  };
  fixture.dialog->txt_Final_Change("1");
  fixture.dialog->CmdOK_Click();
  fixture.Tick();
  EXPECT_EQ(fixture.bench.dialogs.boxes.size(), 1U);
  EXPECT_EQ(fixture.dialog->State(), AdjState::kAwaitRaised);
}

TEST(AdjustmentRun, NextStateComesOnlyIfTheStateIsAsItWas) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToFinal(sensor::kFeCuNi, {7});
  fixture.bench.dialogs.on_box = [&] { fixture.dialog->Quit(); };
  fixture.dialog->txt_Final_Change("1");
  fixture.dialog->CmdOK_Click();
  fixture.Tick();
  EXPECT_EQ(fixture.dialog->State(), AdjState::kEmptySheet) << "the run was dropped meanwhile";
}

}  // namespace
}  // namespace tavrel
