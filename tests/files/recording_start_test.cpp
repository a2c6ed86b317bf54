#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/files/pump_fixture.h"

namespace tavrel {
namespace {

using Telegrams = std::vector<std::string>;

void ExpectBox(const PumpFixture& fixture, const std::string& title, const std::string& text) {
  ASSERT_EQ(fixture.dialogs.boxes.size(), 1U);
  EXPECT_EQ(fixture.dialogs.boxes[0].Title, title);
  EXPECT_EQ(fixture.dialogs.boxes[0].Text, text);
}

TEST(StartRecording, GivesEachRecordedInputItsIntervalAndClearsItsSeries) {
  PumpFixture fixture;
  UnitRecord unit = HeaderOf(3, {2, 15});
  unit.UnitInterval = 3600;
  fixture.Open(4, kNewFile, BytesOf(unit));
  fixture.engine.StartRecording(4);
  EXPECT_EQ(fixture.port.sent, (Telegrams{"T20?", "S22=E10\r", "R22=0\r", "S2F=E10\r", "R2F=0\r"}));
  EXPECT_EQ(fixture.screens.shown, (std::vector<View>{View::kTavWait}));
  EXPECT_EQ(fixture.state.Unit[4].UnitRecOn, 1);
  EXPECT_EQ(fixture.state.ReadState[4], ReadState::kReading);
  EXPECT_EQ(fixture.RecordInFile(kNewFile).UnitRecOn, 1);
  EXPECT_TRUE(fixture.dialogs.boxes.empty());
}

TEST(StartRecording, MarksTheRecordingOnlyAfterTheWait) {
  PumpFixture fixture;
  fixture.Open(4, kNewFile, BytesOf(HeaderOf(1, {1})));
  int during_wait = -1;
  fixture.screens.on_show = [&](View) { during_wait = fixture.state.Unit[4].UnitRecOn; };
  fixture.engine.StartRecording(4);
  EXPECT_EQ(during_wait, 0);
}

TEST(StartRecording, DropsAHalfReadSetOfAnEarlierRecording) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(HeaderOf(1, {1, 2})));
  fixture.state.SampleSeen[12][2] = true;
  fixture.state.SampleValue[12][2] = 999;
  fixture.engine.StartRecording(12);
  fixture.Store(1, 1, {1});
  fixture.Store(1, 2, {2});
  fixture.Pump(4);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({1, 2, 1, 2}));
}

TEST(StartRecording, DoubtsNothingOfAnEarlierRecording) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(HeaderOf(1, {1, 2})));
  fixture.state.ColumnsInDoubt[12] = true;
  fixture.engine.StartRecording(12);
  EXPECT_FALSE(fixture.state.ColumnsInDoubt[12]);
}

TEST(StartRecording, DoesNothingWhenItIsOnAlready) {
  PumpFixture fixture;
  fixture.Open(4, kNewFile, BytesOf(Running(HeaderOf(1, {1}))));
  fixture.engine.StartRecording(4);
  EXPECT_TRUE(fixture.port.sent.empty());
  EXPECT_TRUE(fixture.dialogs.boxes.empty());
}

TEST(StartRecording, RefusesAFullFile) {
  PumpFixture fixture;
  UnitRecord unit = HeaderOf(1, {1});
  unit.UnitMaxMinutes = 5;  // 3 rows at 100 seconds
  fixture.Open(4, kNewFile, BytesOf(unit) + Words({1, 1, 2}));
  fixture.engine.StartRecording(4);
  ExpectBox(fixture, "Check:", "max. length of file");
  EXPECT_TRUE(fixture.port.sent.empty());
  EXPECT_EQ(fixture.state.Unit[4].UnitRecOn, 0);
}

TEST(StartRecording, RefusesAFileWhoseRolesAndChannelsDisagree) {
  PumpFixture fixture;
  UnitRecord unit = HeaderOf(1, {1, 2});
  unit.UnitChannels = 1;
  fixture.Open(4, kNewFile, BytesOf(unit));
  fixture.engine.StartRecording(4);
  ExpectBox(fixture, "start recording",
            "This file has another number of columns than there are recorded inputs.");
  EXPECT_TRUE(fixture.port.sent.empty());
}

// A sampling value of 1 is 1 s in the file and 10 s in the instrument, or the other way round.
TEST(StartRecording, RefusesAFileWhoseTimeScaleIsNotTheInstruments) {
  for (const int slot : {1, 7, 12}) {
    for (const int is_fast : {0, 1}) {
      PumpFixture fixture;
      UnitRecord unit = HeaderOf(3, {1, 15});
      unit.UnitFast = static_cast<std::int16_t>(is_fast);
      unit.UnitInterval = 1;
      fixture.line.registers[{3, 'T', 0}] = static_cast<std::int16_t>(1 - is_fast);
      fixture.Open(slot, kNewFile, BytesOf(unit) + Words({1, 2, 1, 2}));
      fixture.engine.StartRecording(slot);
      ExpectBox(fixture, "start recording",
                is_fast == 1 ? "This file counts its sampling time in seconds, the instrument in "
                               "tens of seconds."
                             : "This file counts its sampling time in tens of seconds, the "
                               "instrument in seconds.");
      ASSERT_EQ(fixture.dialogs.boxes.size(), 1U);
      EXPECT_EQ(fixture.dialogs.boxes[0].Icon, BoxIcon::kWarning);
      EXPECT_EQ(fixture.port.sent, Telegrams{"T20?"});
      EXPECT_EQ(fixture.RecordInFile(kNewFile).UnitRecOn, 0);
      EXPECT_EQ(fixture.state.ReadState[slot], ReadState::kIdle);
      EXPECT_TRUE(fixture.screens.shown.empty());
    }
  }
}

// In the memory of a simulated line stands no kind of instrument.
TEST(StartRecording, TakesAFileOfEitherTimeScaleOnASimulatedLine) {
  for (const int slot : {1, 7, 12}) {
    for (const int is_fast : {0, 1}) {
      PumpFixture fixture;
      fixture.link.LinkOpen({"----", 0, 4});
      UnitRecord unit = HeaderOf(3, {1, 15});
      unit.UnitFast = static_cast<std::int16_t>(is_fast);
      fixture.Open(slot, kNewFile, BytesOf(unit));
      fixture.engine.StartRecording(slot);
      EXPECT_TRUE(fixture.dialogs.boxes.empty()) << slot << " " << is_fast;
      EXPECT_EQ(fixture.state.Unit[slot].UnitRecOn, 1);
    }
  }
}

TEST(StartRecording, TakesAFastInstrumentForAFastFile) {
  PumpFixture fixture;
  UnitRecord unit = HeaderOf(3, {1});
  unit.UnitFast = 1;
  unit.UnitInterval = 1;
  fixture.line.registers[{3, 'T', 0}] = 1;
  fixture.Open(4, kNewFile, BytesOf(unit));
  fixture.engine.StartRecording(4);
  EXPECT_TRUE(fixture.dialogs.boxes.empty());
  EXPECT_EQ(fixture.state.Unit[4].UnitRecOn, 1);
}

TEST(StartRecording, FailsWhereTheTimeScaleCannotBeRead) {
  for (const bool is_silent : {false, true}) {
    PumpFixture fixture;
    fixture.Open(4, kNewFile, BytesOf(HeaderOf(1, {1})));
    if (is_silent) {
      fixture.line.silent.insert(1);
    } else {
      fixture.line.refused.insert('T');
    }
    fixture.engine.StartRecording(4);
    ExpectBox(fixture, "start recording", "failed");
    EXPECT_EQ(fixture.port.sent, Telegrams{"T00?"});
  }
}

TEST(StartRecording, StopsAtTheFirstWriteThatFails) {
  PumpFixture fixture;
  fixture.Open(4, kNewFile, BytesOf(HeaderOf(1, {1, 2, 3})));
  fixture.line.refused.insert('R');
  fixture.engine.StartRecording(4);
  EXPECT_EQ(fixture.port.sent, (Telegrams{"T00?", "S01=A\r", "R01=0\r"}));
  ExpectBox(fixture, "start recording", "failed");
  EXPECT_EQ(fixture.dialogs.boxes[0].Icon, BoxIcon::kWarning);
  EXPECT_EQ(fixture.state.Unit[4].UnitRecOn, 0);
  EXPECT_EQ(fixture.state.ReadState[4], ReadState::kIdle);
  EXPECT_TRUE(fixture.screens.shown.empty());
}

TEST(StartRecording, WithoutAHeaderOnTheDiskLeavesTheSlotButNotItsEntry) {
  PumpFixture fixture;
  fixture.Open(4, kNewFile, BytesOf(HeaderOf(1, {1})));
  std::filesystem::rename(fixture.directory.Path(), fixture.directory.Path() + "-away");
  fixture.engine.StartRecording(4);
  std::filesystem::rename(fixture.directory.Path() + "-away", fixture.directory.Path());
  EXPECT_EQ(fixture.state.SlotFile[4], "");
  EXPECT_EQ(fixture.state.ReadState[4], ReadState::kIdle);
  EXPECT_EQ(fixture.state.Settings.ActiveFiles[3], kNewFile);
}

TEST(StartRecording, DoesNothingForASlotNotInUse) {
  PumpFixture fixture;
  fixture.engine.StartRecording(4);
  fixture.engine.StartRecording(0);
  fixture.engine.StartRecording(13);
  EXPECT_TRUE(fixture.port.sent.empty());
  EXPECT_TRUE(fixture.dialogs.boxes.empty());
}

TEST(StopRecording, AsksAndThenTellsTheFileButNotTheInstrument) {
  PumpFixture fixture;
  fixture.Open(4, kNewFile, BytesOf(Running(HeaderOf(1, {1}))));
  fixture.engine.StopRecording(4);
  ExpectBox(fixture, " ", "stop acquisition");
  EXPECT_EQ(fixture.dialogs.boxes[0].Icon, BoxIcon::kQuestion);
  EXPECT_EQ(fixture.state.Unit[4].UnitRecOn, 0);
  EXPECT_EQ(fixture.state.ReadState[4], ReadState::kIdle);
  EXPECT_EQ(fixture.RecordInFile(kNewFile).UnitRecOn, 0);
  EXPECT_TRUE(fixture.port.sent.empty());
}

TEST(StopRecording, GoesOnAfterCancel) {
  PumpFixture fixture;
  fixture.Open(4, kNewFile, BytesOf(Running(HeaderOf(1, {1}))));
  fixture.dialogs.ok = false;
  fixture.engine.StopRecording(4);
  EXPECT_EQ(fixture.state.Unit[4].UnitRecOn, 1);
  EXPECT_EQ(fixture.state.ReadState[4], ReadState::kReading);
}

TEST(StopRecording, DoesNotAskWhenNothingIsOn) {
  PumpFixture fixture;
  fixture.Open(4, kNewFile, BytesOf(HeaderOf(1, {1})));
  fixture.engine.StopRecording(4);
  fixture.engine.StopRecording(13);
  EXPECT_TRUE(fixture.dialogs.boxes.empty());
}

TEST(StopRecording, WritesASetThatWaitedForTheDisk) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1}))));
  fixture.Store(1, 1, {7});
  {
    const FullDisk disk(1000);
    fixture.Pump(1);
  }
  fixture.engine.StopRecording(12);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({7, 7}));
  EXPECT_FALSE(fixture.state.WriteFailed[12]);
}

TEST(StopRecording, HidesTheBacklogOfItsSlot) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1}))));
  fixture.state.BacklogSlot = 12;
  fixture.state.BacklogCount = 40;
  fixture.state.lbl_Info = "reading from Tavrel:  40";
  fixture.engine.StopRecording(12);
  EXPECT_EQ(fixture.state.lbl_Info, "");
  EXPECT_EQ(fixture.state.BacklogCount, 0);
}

TEST(StopRecording, StopsTheNextFileIfTheFullOneWasLeftBehindTheQuestion) {
  PumpFixture fixture;
  UnitRecord unit = Running(HeaderOf(1, {1}));
  unit.UnitEndAction = 2;
  fixture.Open(12, kNewFile, BytesOf(unit));
  fixture.dialogs.on_box = [&] { fixture.engine.EndOfRecording(12); };
  fixture.engine.StopRecording(12);
  EXPECT_EQ(fixture.RecordInFile("M011111B.NEW").UnitRecOn, 0);
  EXPECT_EQ(fixture.state.ReadState[12], ReadState::kIdle);
}

TEST(StopRecording, KeepsAllRowsForAStartInTheSameFile) {
  PumpFixture fixture;
  fixture.Open(12, kNewFile, BytesOf(Running(HeaderOf(1, {1}))));
  fixture.Store(1, 1, {1, 2});
  fixture.Pump(4);
  fixture.engine.StopRecording(12);
  fixture.engine.StartRecording(12);
  fixture.Store(1, 1, {3});
  fixture.Pump(4);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({1, 1, 2, 3}));
}

}  // namespace
}  // namespace tavrel
