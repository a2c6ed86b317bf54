#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/files/pump_room.h"

namespace tavrel {
namespace {

using Texts = std::vector<std::string>;

constexpr const char* kName = "M011111A.NEW";
constexpr const char* kNext = "M011111B.NEW";

// Slot 12 records input 1 of instrument 2 into a file of at most three rows.
struct ShortFile : PumpRoom {
  explicit ShortFile(int end_action, const std::string& name = kName, int rows = 0) {
    UnitRecord unit = Running(HeaderOf(2, {1}));
    unit.UnitMaxMinutes = 5;  // 3 rows at 100 seconds
    unit.UnitCtrl = 3;
    unit.UnitCtrlState = 2;
    unit.UnitMarks = 1;
    unit.UnitEndAction = static_cast<std::int16_t>(end_action);
    std::string samples;
    for (int row = 0; row < rows; ++row) {
      samples += Words({row});
    }
    Open(12, name, BytesOf(unit) + samples);
  }
};

TEST(EndOfRecording, ComesOneRowBeyondTheLimit) {
  ShortFile room(0);
  room.Store(2, 1, {1, 2, 3, 4, 5});
  room.Pump(20);
  EXPECT_EQ(room.state.SampleLimit[12], 3);
  EXPECT_EQ(room.state.SampleCount[12], 4);
  EXPECT_EQ(room.SamplesInFile(kName), Words({1, 1, 2, 3}));
  EXPECT_EQ(room.state.ReadState[12], ReadState::kIdle);
  EXPECT_EQ(room.RecordInFile(kName).UnitRecOn, 0);
  EXPECT_EQ(room.port.sent, (Texts{"X11?", "X11?", "X11?"}));
}

TEST(EndOfRecording, DoesNotComeAtTheLimitItself) {
  ShortFile room(0, kName, 3);
  room.Pump(1);
  EXPECT_EQ(room.state.Unit[12].UnitRecOn, 1);
}

TEST(EndOfRecording, GoesOnWithTheNextSlotInTheSameCall) {
  ShortFile room(0, kName, 4);
  room.Open(11, "M011111X.NEW", BytesOf(Running(HeaderOf(1, {9}))));
  room.Pump(1);
  EXPECT_EQ(room.port.sent, (Texts{"X09?"}));
}

TEST(EndOfRecording, HidesTheBacklogOfItsSlot) {
  ShortFile room(0, kName, 4);
  room.state.BacklogSlot = 12;
  room.state.BacklogCount = 40;
  room.state.lbl_Info = "reading from Tavrel:  40";
  room.Pump(1);
  EXPECT_EQ(room.state.BacklogCount, 0);
  EXPECT_EQ(room.state.lbl_Info, "");
}

TEST(EndOfRecording, SwitchesTheControllerOff) {
  ShortFile room(1, kName, 4);
  room.Pump(1);
  EXPECT_EQ(room.port.sent, (Texts{"Z13=0\r"}));
  EXPECT_FALSE(room.state.StopPending[12]);
  EXPECT_EQ(room.state.ReadState[12], ReadState::kIdle);
  EXPECT_EQ(room.RecordInFile(kName).UnitCtrlState, 0);
  EXPECT_EQ(room.state.SlotFile[12], kName);
}

TEST(EndOfRecording, EndsTheProgramOfItsSlotWhetherOrNotTheControllerAnswers) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    for (const bool is_silent : {false, true}) {
      PumpRoom room;
      UnitRecord unit = HeaderOf(2, {1});
      unit.UnitCtrl = 3;
      unit.UnitEndAction = 1;
      room.Open(slot, kName, BytesOf(unit));
      room.state.ProgRunning.fill(true);
      room.line.silent = is_silent ? std::set<int>{2} : std::set<int>{};
      room.engine.EndOfRecording(slot);
      for (int other = 1; other <= kSlots; ++other) {
        EXPECT_EQ(room.state.ProgRunning[other], other != slot) << slot << is_silent;
      }
    }
  }
}

TEST(EndOfRecording, LeavesAProgramAloneThatIsNotToBeSwitchedOff) {
  for (const int end_action : {0, 2, 3}) {
    ShortFile room(end_action, kName, 4);
    room.state.ProgRunning[12] = true;
    room.Pump(1);
    EXPECT_TRUE(room.state.ProgRunning[12]) << end_action;
  }
}

TEST(EndOfRecording, RepeatsTheStopOnceForEachTenSecondsUntilItIsAcknowledged) {
  ShortFile room(1, kName, 4);
  room.line.silent.insert(2);
  room.Pump(5);
  EXPECT_TRUE(room.state.StopPending[12]);
  EXPECT_EQ(room.port.sent, (Texts{"Z13=0\r"}));
  room.engine.TenSecondTick();
  room.Pump(5);
  EXPECT_EQ(room.port.sent.size(), 2U);
  room.line.silent.clear();
  room.engine.TenSecondTick();
  room.Pump(5);
  room.engine.TenSecondTick();
  room.Pump(5);
  EXPECT_EQ(room.port.sent, (Texts{"Z13=0\r", "Z13=0\r", "Z13=0\r"}));
  EXPECT_FALSE(room.state.StopPending[12]);
}

TEST(EndOfRecording, RepeatsTheStopToTheSameControllerWhateverTheSlotHoldsSince) {
  ShortFile room(1, kName, 4);
  room.line.silent.insert(2);
  room.Pump(1);
  room.Open(12, "M020202A.NEW", BytesOf(HeaderOf(5, {1})));
  room.engine.TenSecondTick();
  room.Pump(1);
  EXPECT_EQ(room.port.sent, (Texts{"Z13=0\r", "Z13=0\r"}));
  EXPECT_TRUE(room.state.StopPending[12]);
}

TEST(EndOfRecording, RepeatsTheStopsOfSeveralSilentInstrumentsOneAStep) {
  PumpRoom room;
  room.line.silent = {1, 2, 3};
  for (const int slot : {1, 2, 3}) {
    UnitRecord unit = HeaderOf(slot, {1});
    unit.UnitCtrl = 1;
    unit.UnitEndAction = 1;
    room.Open(slot, "M011111A.NE" + std::to_string(slot), BytesOf(unit));
    room.engine.EndOfRecording(slot);
  }
  room.port.sent.clear();
  room.engine.TenSecondTick();
  EXPECT_EQ(room.port.sent, Texts{});
  room.Pump(1);
  EXPECT_EQ(room.port.sent, (Texts{"Z01=0\r"}));
  room.Pump(1);
  EXPECT_EQ(room.port.sent, (Texts{"Z01=0\r", "Z11=0\r"}));
  room.Pump(3);
  EXPECT_EQ(room.port.sent, (Texts{"Z01=0\r", "Z11=0\r", "Z21=0\r"}));
}

TEST(EndOfRecording, DoesNotRepeatAStopThatTheUserHasMadeVoid) {
  ShortFile room(1, kName, 4);
  room.line.silent.insert(2);
  room.Pump(1);
  room.engine.TenSecondTick();
  room.engine.DropStopOrder(2, 3);
  room.Pump(2);
  EXPECT_EQ(room.port.sent, (Texts{"Z13=0\r"}));
}

TEST(EndOfRecording, SwitchesTheControllerOffEvenIfTheHeaderCannotBeWritten) {
  ShortFile room(1, kName, 4);
  std::filesystem::rename(room.directory.Path(), room.directory.Path() + "-away");
  room.Pump(1);
  std::filesystem::rename(room.directory.Path() + "-away", room.directory.Path());
  EXPECT_EQ(room.port.sent, (Texts{"Z13=0\r"}));
  EXPECT_EQ(room.state.SlotFile[12], "");
  EXPECT_EQ(room.state.Settings.ActiveFiles[11], kName);
  EXPECT_TRUE(room.dialogs.boxes.empty());  // the cycle never blocks
  EXPECT_EQ(room.Announced(), (Texts{"Write  file | M011111A.NEW: No such file or directory"}));
}

TEST(EndOfRecording, GoesOnInANextFile) {
  ShortFile room(2);
  room.Store(2, 1, {1, 2, 3, 4, 5});
  room.Pump(20);
  EXPECT_EQ(room.state.SlotFile[12], kNext);
  EXPECT_EQ(room.state.Settings.ActiveFiles[11], kNext);
  EXPECT_NE(room.directory.Read("TAVREL.USR").find(kNext), std::string::npos);
  EXPECT_EQ(room.SamplesInFile(kName), Words({1, 1, 2, 3}));
  EXPECT_EQ(room.SamplesInFile(kNext), Words({4, 4, 5}));
  EXPECT_EQ(room.RecordInFile(kName).UnitRecOn, 0);
  EXPECT_EQ(room.RecordInFile(kName).UnitMarks, 1);
  EXPECT_EQ(room.RecordInFile(kNext).UnitRecOn, 1);
  EXPECT_EQ(room.RecordInFile(kNext).UnitMarks, 0);
  EXPECT_EQ(room.RecordInFile(kNext).UnitDate.Get(), "11-11-2001 / 00:00");
  EXPECT_EQ(room.state.SampleCount[12], 3);
  EXPECT_TRUE(room.Announced().empty());
}

TEST(EndOfRecording, FollowsZWithABracket) {
  ShortFile room(2, "M011111Z.NEW", 4);
  room.Pump(1);
  EXPECT_EQ(room.state.SlotFile[12], "M011111[.NEW");
}

TEST(EndOfRecording, NeverTakesANameThatIsTaken) {
  ShortFile room(2, kName, 4);
  room.directory.Write("m011111b.new", "old");
  room.state.Settings.ActiveFiles[3] = "M011111C.NEW";
  room.Pump(1);
  EXPECT_EQ(room.state.SlotFile[12], "M011111D.NEW");
  EXPECT_EQ(room.directory.Read("m011111b.new"), "old");
}

TEST(EndOfRecording, StopsInTheFullFileWhenNoLetterIsLeft) {
  ShortFile room(2, "M011111~.NEW", 4);
  room.Pump(3);
  EXPECT_EQ(room.state.SlotFile[12], "M011111~.NEW");
  EXPECT_EQ(room.state.ReadState[12], ReadState::kIdle);
  EXPECT_EQ(room.RecordInFile("M011111~.NEW").UnitRecOn, 0);
  EXPECT_EQ(room.Announced(),
            (Texts{"Write  file | M011111~.NEW: no free name for the next file"}));
}

TEST(EndOfRecording, KeepsTheFullFileNamedAndShownWhenTheNextOneCannotBeMade) {
  ShortFile room(2, kName, 4);
  std::filesystem::create_directory(room.directory.File(kNext));
  room.Pump(1);
  EXPECT_EQ(room.state.SlotFile[12], kName);
  EXPECT_EQ(room.state.Settings.ActiveFiles[11], kName);
  EXPECT_EQ(room.state.SampleCount[12], 4);
  EXPECT_EQ(room.RecordInFile(kName).UnitRecOn, 0);
  EXPECT_EQ(room.Announced().size(), 1U);
}

TEST(EndOfRecording, GoesOnAlthoughTheSettingsCannotBeWritten) {
  ShortFile room(2, kName, 4);
  room.state.DataHome = room.directory.Path() + "/gone/";
  room.Pump(1);
  EXPECT_EQ(room.state.SlotFile[12], kNext);
  EXPECT_EQ(room.state.ReadState[12], ReadState::kReading);
  EXPECT_TRUE(room.state.SettingsChanged);
  EXPECT_EQ(room.Announced(), (Texts{"TAVREL.USR | Cannot write file."}));
}

TEST(EndOfRecording, ClosesTheGraphOfItsSlotOnly) {
  ShortFile room(2, kName, 4);
  room.state.ActiveView = View::kTavGraph;
  room.state.SelSlot = 3;
  room.state.OverPrepared = true;
  room.Pump(1);
  EXPECT_FALSE(room.state.GraphMustClose);
  EXPECT_TRUE(room.state.OverPrepared);
  ShortFile other(2, kName, 4);
  other.state.ActiveView = View::kTavGraph;
  other.state.SelSlot = 12;
  other.state.OverPrepared = other.state.PartPrepared = other.state.WorkReset = true;
  other.Pump(1);
  EXPECT_TRUE(other.state.GraphMustClose);
  EXPECT_FALSE(other.state.OverPrepared || other.state.PartPrepared || other.state.WorkReset);
}

TEST(EndOfRecording, TakesAHalfReadSetAlongIntoTheNextFile) {
  PumpRoom room;
  UnitRecord unit = Running(HeaderOf(2, {1, 2}));
  unit.UnitEndAction = 2;
  room.Open(12, kName, BytesOf(unit) + Words({1, 2, 1, 2, 3, 4}));
  room.Store(2, 2, {6, 8});
  room.Pump(1);                    // channel 2 has arrived, channel 1 has not
  room.state.SampleLimit[12] = 2;  // the user shortens the recording
  room.Store(2, 1, {5, 7});
  room.Pump(9);
  EXPECT_EQ(room.SamplesInFile(kNext), Words({5, 6, 5, 6, 7, 8}));
}

TEST(EndOfRecording, KeepsToOneLastSetInTheNextFile) {
  ShortFile room(2, kName, 4);
  room.state.ReadState[12] = ReadState::kLastSet;
  room.Store(2, 1, {4, 5});
  room.Pump(9);
  EXPECT_EQ(room.SamplesInFile(kNext), Words({4, 4}));
  EXPECT_EQ(room.state.ReadState[12], ReadState::kIdle);
}

TEST(EndOfRecording, IgnoresSlotsThatDoNotExist) {
  PumpRoom room;
  room.engine.EndOfRecording(0);
  room.engine.EndOfRecording(13);
  EXPECT_TRUE(room.port.sent.empty());
}

}  // namespace
}  // namespace tavrel
