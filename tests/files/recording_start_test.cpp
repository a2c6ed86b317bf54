#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/files/pump_room.h"

namespace tavrel {
namespace {

using Telegrams = std::vector<std::string>;

constexpr const char* kName = "M011111A.NEW";

void ExpectBox(const PumpRoom& room, const std::string& title, const std::string& text) {
  ASSERT_EQ(room.dialogs.boxes.size(), 1U);
  EXPECT_EQ(room.dialogs.boxes[0].Title, title);
  EXPECT_EQ(room.dialogs.boxes[0].Text, text);
}

TEST(StartRecording, GivesEachRecordedInputItsIntervalAndClearsItsSeries) {
  PumpRoom room;
  UnitRecord unit = HeaderOf(3, {2, 15});
  unit.UnitInterval = 3600;
  room.Open(4, kName, BytesOf(unit));
  room.engine.StartRecording(4);
  EXPECT_EQ(room.port.sent, (Telegrams{"T20?", "S22=E10\r", "R22=0\r", "S2F=E10\r", "R2F=0\r"}));
  EXPECT_EQ(room.screens.shown, (std::vector<View>{View::kTavWait}));
  EXPECT_EQ(room.state.Unit[4].UnitRecOn, 1);
  EXPECT_EQ(room.state.ReadState[4], ReadState::kReading);
  EXPECT_EQ(room.RecordInFile(kName).UnitRecOn, 1);
  EXPECT_TRUE(room.dialogs.boxes.empty());
}

TEST(StartRecording, MarksTheRecordingOnlyAfterTheWait) {
  PumpRoom room;
  room.Open(4, kName, BytesOf(HeaderOf(1, {1})));
  int during_wait = -1;
  room.screens.on_show = [&](View) { during_wait = room.state.Unit[4].UnitRecOn; };
  room.engine.StartRecording(4);
  EXPECT_EQ(during_wait, 0);
}

TEST(StartRecording, DropsAHalfReadSetOfAnEarlierRecording) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(HeaderOf(1, {1, 2})));
  room.state.SampleSeen[12][2] = true;
  room.state.SampleValue[12][2] = 999;
  room.engine.StartRecording(12);
  room.Store(1, 1, {1});
  room.Store(1, 2, {2});
  room.Pump(4);
  EXPECT_EQ(room.SamplesInFile(kName), Words({1, 2, 1, 2}));
}

TEST(StartRecording, DoubtsNothingOfAnEarlierRecording) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(HeaderOf(1, {1, 2})));
  room.state.ColumnsInDoubt[12] = true;
  room.engine.StartRecording(12);
  EXPECT_FALSE(room.state.ColumnsInDoubt[12]);
}

TEST(StartRecording, DoesNothingWhenItIsOnAlready) {
  PumpRoom room;
  room.Open(4, kName, BytesOf(Running(HeaderOf(1, {1}))));
  room.engine.StartRecording(4);
  EXPECT_TRUE(room.port.sent.empty());
  EXPECT_TRUE(room.dialogs.boxes.empty());
}

TEST(StartRecording, RefusesAFullFile) {
  PumpRoom room;
  UnitRecord unit = HeaderOf(1, {1});
  unit.UnitMaxMinutes = 5;  // 3 rows at 100 seconds
  room.Open(4, kName, BytesOf(unit) + Words({1, 1, 2}));
  room.engine.StartRecording(4);
  ExpectBox(room, "Check:", "max. length of file");
  EXPECT_TRUE(room.port.sent.empty());
  EXPECT_EQ(room.state.Unit[4].UnitRecOn, 0);
}

TEST(StartRecording, RefusesAFileWhoseRolesAndChannelsDisagree) {
  PumpRoom room;
  UnitRecord unit = HeaderOf(1, {1, 2});
  unit.UnitChannels = 1;
  room.Open(4, kName, BytesOf(unit));
  room.engine.StartRecording(4);
  ExpectBox(room, "start recording",
            "This file has another number of columns than there are recorded inputs.");
  EXPECT_TRUE(room.port.sent.empty());
}

// A sampling value of 1 is 1 s in the file and 10 s in the instrument, or the other way round.
TEST(StartRecording, RefusesAFileWhoseTimeScaleIsNotTheInstruments) {
  for (const int slot : {1, 7, 12}) {
    for (const int is_fast : {0, 1}) {
      PumpRoom room;
      UnitRecord unit = HeaderOf(3, {1, 15});
      unit.UnitFast = static_cast<std::int16_t>(is_fast);
      unit.UnitInterval = 1;
      room.line.registers[{3, 'T', 0}] = static_cast<std::int16_t>(1 - is_fast);
      room.Open(slot, kName, BytesOf(unit) + Words({1, 2, 1, 2}));
      room.engine.StartRecording(slot);
      ExpectBox(room, "start recording",
                is_fast == 1 ? "This file counts its sampling time in seconds, the instrument in "
                               "tens of seconds."
                             : "This file counts its sampling time in tens of seconds, the "
                               "instrument in seconds.");
      ASSERT_EQ(room.dialogs.boxes.size(), 1U);
      EXPECT_EQ(room.dialogs.boxes[0].Icon, BoxIcon::kWarning);
      EXPECT_EQ(room.port.sent, Telegrams{"T20?"});
      EXPECT_EQ(room.RecordInFile(kName).UnitRecOn, 0);
      EXPECT_EQ(room.state.ReadState[slot], ReadState::kIdle);
      EXPECT_TRUE(room.screens.shown.empty());
    }
  }
}

// In the memory of a simulated line stands no kind of instrument.
TEST(StartRecording, TakesAFileOfEitherTimeScaleOnASimulatedLine) {
  for (const int slot : {1, 7, 12}) {
    for (const int is_fast : {0, 1}) {
      PumpRoom room;
      room.link.LinkOpen({"----", 0, 4});
      UnitRecord unit = HeaderOf(3, {1, 15});
      unit.UnitFast = static_cast<std::int16_t>(is_fast);
      room.Open(slot, kName, BytesOf(unit));
      room.engine.StartRecording(slot);
      EXPECT_TRUE(room.dialogs.boxes.empty()) << slot << " " << is_fast;
      EXPECT_EQ(room.state.Unit[slot].UnitRecOn, 1);
    }
  }
}

TEST(StartRecording, TakesAFastInstrumentForAFastFile) {
  PumpRoom room;
  UnitRecord unit = HeaderOf(3, {1});
  unit.UnitFast = 1;
  unit.UnitInterval = 1;
  room.line.registers[{3, 'T', 0}] = 1;
  room.Open(4, kName, BytesOf(unit));
  room.engine.StartRecording(4);
  EXPECT_TRUE(room.dialogs.boxes.empty());
  EXPECT_EQ(room.state.Unit[4].UnitRecOn, 1);
}

TEST(StartRecording, FailsWhereTheTimeScaleCannotBeRead) {
  for (const bool is_silent : {false, true}) {
    PumpRoom room;
    room.Open(4, kName, BytesOf(HeaderOf(1, {1})));
    if (is_silent) {
      room.line.silent.insert(1);
    } else {
      room.line.refused.insert('T');
    }
    room.engine.StartRecording(4);
    ExpectBox(room, "start recording", "failed");
    EXPECT_EQ(room.port.sent, Telegrams{"T00?"});
  }
}

TEST(StartRecording, StopsAtTheFirstWriteThatFails) {
  PumpRoom room;
  room.Open(4, kName, BytesOf(HeaderOf(1, {1, 2, 3})));
  room.line.refused.insert('R');
  room.engine.StartRecording(4);
  EXPECT_EQ(room.port.sent, (Telegrams{"T00?", "S01=A\r", "R01=0\r"}));
  ExpectBox(room, "start recording", "failed");
  EXPECT_EQ(room.dialogs.boxes[0].Icon, BoxIcon::kWarning);
  EXPECT_EQ(room.state.Unit[4].UnitRecOn, 0);
  EXPECT_EQ(room.state.ReadState[4], ReadState::kIdle);
  EXPECT_TRUE(room.screens.shown.empty());
}

TEST(StartRecording, WithoutAHeaderOnTheDiskLeavesTheSlotButNotItsEntry) {
  PumpRoom room;
  room.Open(4, kName, BytesOf(HeaderOf(1, {1})));
  std::filesystem::rename(room.directory.Path(), room.directory.Path() + "-away");
  room.engine.StartRecording(4);
  std::filesystem::rename(room.directory.Path() + "-away", room.directory.Path());
  EXPECT_EQ(room.state.SlotFile[4], "");
  EXPECT_EQ(room.state.ReadState[4], ReadState::kIdle);
  EXPECT_EQ(room.state.Settings.ActiveFiles[3], kName);
}

TEST(StartRecording, DoesNothingForASlotNotInUse) {
  PumpRoom room;
  room.engine.StartRecording(4);
  room.engine.StartRecording(0);
  room.engine.StartRecording(13);
  EXPECT_TRUE(room.port.sent.empty());
  EXPECT_TRUE(room.dialogs.boxes.empty());
}

TEST(StopRecording, AsksAndThenTellsTheFileButNotTheInstrument) {
  PumpRoom room;
  room.Open(4, kName, BytesOf(Running(HeaderOf(1, {1}))));
  room.engine.StopRecording(4);
  ExpectBox(room, " ", "stop acquisition");
  EXPECT_EQ(room.dialogs.boxes[0].Icon, BoxIcon::kQuestion);
  EXPECT_EQ(room.state.Unit[4].UnitRecOn, 0);
  EXPECT_EQ(room.state.ReadState[4], ReadState::kIdle);
  EXPECT_EQ(room.RecordInFile(kName).UnitRecOn, 0);
  EXPECT_TRUE(room.port.sent.empty());
}

TEST(StopRecording, GoesOnAfterCancel) {
  PumpRoom room;
  room.Open(4, kName, BytesOf(Running(HeaderOf(1, {1}))));
  room.dialogs.ok = false;
  room.engine.StopRecording(4);
  EXPECT_EQ(room.state.Unit[4].UnitRecOn, 1);
  EXPECT_EQ(room.state.ReadState[4], ReadState::kReading);
}

TEST(StopRecording, DoesNotAskWhenNothingIsOn) {
  PumpRoom room;
  room.Open(4, kName, BytesOf(HeaderOf(1, {1})));
  room.engine.StopRecording(4);
  room.engine.StopRecording(13);
  EXPECT_TRUE(room.dialogs.boxes.empty());
}

TEST(StopRecording, WritesASetThatWaitedForTheDisk) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1}))));
  room.Store(1, 1, {7});
  {
    const FullDisk disk(1000);
    room.Pump(1);
  }
  room.engine.StopRecording(12);
  EXPECT_EQ(room.SamplesInFile(kName), Words({7, 7}));
  EXPECT_FALSE(room.state.WriteFailed[12]);
}

TEST(StopRecording, HidesTheBacklogOfItsSlot) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1}))));
  room.state.BacklogSlot = 12;
  room.state.BacklogCount = 40;
  room.state.lbl_Info = "reading from Tavrel:  40";
  room.engine.StopRecording(12);
  EXPECT_EQ(room.state.lbl_Info, "");
  EXPECT_EQ(room.state.BacklogCount, 0);
}

TEST(StopRecording, StopsTheNextFileIfTheFullOneWasLeftBehindTheQuestion) {
  PumpRoom room;
  UnitRecord unit = Running(HeaderOf(1, {1}));
  unit.UnitEndAction = 2;
  room.Open(12, kName, BytesOf(unit));
  room.dialogs.on_box = [&] { room.engine.EndOfRecording(12); };
  room.engine.StopRecording(12);
  EXPECT_EQ(room.RecordInFile("M011111B.NEW").UnitRecOn, 0);
  EXPECT_EQ(room.state.ReadState[12], ReadState::kIdle);
}

TEST(StopRecording, KeepsAllRowsForAStartInTheSameFile) {
  PumpRoom room;
  room.Open(12, kName, BytesOf(Running(HeaderOf(1, {1}))));
  room.Store(1, 1, {1, 2});
  room.Pump(4);
  room.engine.StopRecording(12);
  room.engine.StartRecording(12);
  room.Store(1, 1, {3});
  room.Pump(4);
  EXPECT_EQ(room.SamplesInFile(kName), Words({1, 1, 2, 3}));
}

}  // namespace
}  // namespace tavrel
