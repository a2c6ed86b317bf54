#include <gtest/gtest.h>
#include <sys/stat.h>

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
      room.state.ProgRunning.Fill(true);
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
  room.engine.Orders().Drop(2, 3);
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

TEST(EndOfRecording, GoesOnWithTodaysDateWhenNoLetterIsLeft) {
  ShortFile room(2, "M011111~.NEW", 4);
  room.clock.wall = {2026, 3, 14, 9, 5, 0};
  room.directory.Write("m260314a.new", "old");
  room.Store(2, 1, {7});
  room.Pump(3);
  EXPECT_EQ(room.state.SlotFile[12], "M260314B.NEW");
  EXPECT_EQ(room.SamplesInFile("M260314B.NEW"), Words({7, 7}));
  EXPECT_EQ(room.RecordInFile("M011111~.NEW").UnitRecOn, 0);
  EXPECT_TRUE(room.Announced().empty());
}

TEST(EndOfRecording, WaitsForTheNextDayWhenTheDayHasNoLetterLeft) {
  ShortFile room(2, "M260314~.NEW", 4);
  room.clock.wall = {2026, 3, 14, 9, 5, 0};
  for (char letter = 'A'; letter <= '~'; ++letter) {
    room.state.Settings.ActiveFiles[3] = std::string("M260314") + letter + ".NEW";
    if (IsNameForNewFile(room.state.Settings.ActiveFiles[3]) && letter != '~') {
      room.directory.Write(room.state.Settings.ActiveFiles[3], "old");
    }
  }
  room.Store(2, 1, {7});
  for (int tick = 0; tick < 3; ++tick) {
    room.Pump(3);
    EXPECT_EQ(room.state.SlotFile[12], "M260314~.NEW");
    EXPECT_EQ(room.state.ReadState[12], ReadState::kWaiting);
    EXPECT_TRUE(room.state.WriteFailed[12]);
    room.engine.TenSecondTick();
  }
  EXPECT_EQ(room.RecordInFile("M260314~.NEW").UnitRecOn, 1);
  EXPECT_EQ(room.Announced(),
            (Texts{"Write  file | M260314~.NEW: no free name for the next file"}));
  room.clock.wall = {2026, 3, 15, 0, 5, 0};
  room.Pump(3);
  EXPECT_EQ(room.state.SlotFile[12], "M260315A.NEW");
  EXPECT_EQ(room.SamplesInFile("M260315A.NEW"), Words({7, 7}));
  EXPECT_FALSE(room.state.WriteFailed[12]);
}

TEST(EndOfRecording, StepsOverWhateverBearsTheNextName) {
  ShortFile room(2, kName, 4);
  std::filesystem::create_directory(room.directory.File(kNext));
  ASSERT_EQ(mkfifo(room.directory.File("M011111C.NEW").c_str(), 0600), 0);
  std::filesystem::create_symlink("nowhere", room.directory.File("m011111d.new"));
  std::filesystem::create_symlink("/dev/null", room.directory.File("M011111E.NEW"));
  room.Pump(1);
  EXPECT_EQ(room.state.SlotFile[12], "M011111F.NEW");
  EXPECT_EQ(room.state.ReadState[12], ReadState::kReading);
  EXPECT_TRUE(std::filesystem::is_symlink(room.directory.File("m011111d.new")));
  EXPECT_TRUE(room.Announced().empty());
}

// A disk that takes nothing for a while is tried on every ten-second tick; what the instrument
// stores meanwhile is all there afterwards.
TEST(EndOfRecording, TriesTheNextFileOnEveryTickWhileTheDiskIsFull) {
  for (const int inputs : {1, 2, 15}) {
    PumpRoom room;
    UnitRecord unit = Running(HeaderOf(inputs));
    unit.UnitMaxMinutes = 5;  // 3 rows at 100 seconds
    unit.UnitEndAction = 2;
    room.Open(7, kName, BytesOf(unit));
    for (int input = 1; input <= inputs; ++input) {
      room.Store(1, input, {1, 2, 3, 4, 5});
    }
    room.Pump(inputs * 3);
    ASSERT_EQ(room.state.SampleCount[7], 4);
    {
      const FullDisk disk(900);
      for (int tick = 0; tick < 4; ++tick) {
        room.Pump(40);
        EXPECT_EQ(room.state.SlotFile[7], kName);
        EXPECT_EQ(room.state.ReadState[7], ReadState::kWaiting);
        EXPECT_TRUE(room.state.WriteFailed[7]);
        EXPECT_EQ(room.state.Unit[7].UnitRecOn, 1);
        room.engine.TenSecondTick();
      }
      EXPECT_EQ(room.Announced(), (Texts{"Write  file | M011111B.NEW: File too large"}));
    }
    EXPECT_EQ(room.port.sent.size(), static_cast<std::size_t>(inputs * 3));
    EXPECT_EQ(room.RecordInFile(kName).UnitRecOn, 1);
    EXPECT_FALSE(room.directory.Exists(kNext));
    room.Pump(40);
    EXPECT_EQ(room.state.SlotFile[7], kNext);
    EXPECT_FALSE(room.state.WriteFailed[7]);
    EXPECT_EQ(room.state.SampleCount[7], 3);
    EXPECT_EQ(room.RecordInFile(kName).UnitRecOn, 0);
    EXPECT_EQ(room.RecordInFile(kNext).UnitRecOn, 1);
    EXPECT_EQ(room.SamplesInFile(kNext).size(), static_cast<std::size_t>(3 * inputs * 2));
  }
}

TEST(EndOfRecording, TriesTheNextFileWhileTheDirectoryIsAway) {
  ShortFile room(2, kName, 4);
  room.Store(2, 1, {7, 8});
  const std::string away = room.directory.Path() + "-away";
  std::filesystem::rename(room.directory.Path(), away);
  for (int tick = 0; tick < 3; ++tick) {
    room.Pump(3);
    room.engine.TenSecondTick();
    EXPECT_EQ(room.state.SlotFile[12], kName);
  }
  EXPECT_EQ(room.Announced().size(), 1U);
  std::filesystem::rename(away, room.directory.Path());
  room.Pump(4);
  EXPECT_EQ(room.state.SlotFile[12], kNext);
  EXPECT_EQ(room.SamplesInFile(kNext), Words({7, 7, 8}));
  EXPECT_EQ(room.SamplesInFile(kName), Words({0, 1, 2, 3}));
}

// The program of the second room is the one that is started again.
TEST(EndOfRecording, GoesOnTryingAfterARestart) {
  ShortFile room(2, kName, 4);
  std::string bytes;
  {
    const FullDisk disk(900);
    room.Pump(3);
  }
  room.files.CloseRecordingFile(12);
  bytes = room.directory.Read(kName);
  PumpRoom again;
  again.Open(12, kName, bytes);
  again.Store(2, 1, {7, 8});
  {
    const FullDisk disk(900);
    again.Pump(3);
    EXPECT_EQ(again.state.SlotFile[12], kName);
    again.engine.TenSecondTick();
    again.Pump(3);
  }
  again.engine.TenSecondTick();
  again.Pump(4);
  EXPECT_EQ(again.state.SlotFile[12], kNext);
  EXPECT_EQ(again.SamplesInFile(kNext), Words({7, 7, 8}));
}

// The user shortens the recording while one set is held: half of it, or the whole that the disk
// refused. It goes through the wait, a restart included, into the next file.
TEST(EndOfRecording, KeepsTheSetInHandThroughTheWaitAndARestart) {
  for (const bool is_whole : {false, true}) {
    PumpRoom room;
    UnitRecord unit = Running(HeaderOf(2, {1, 2}));
    unit.UnitEndAction = 2;
    room.Open(1, kName, BytesOf(unit) + Words({1, 2, 1, 2, 3, 4, 4, 4}));
    room.Store(2, 2, {6});
    if (is_whole) {
      room.Store(2, 1, {5});
    }
    {
      const FullDisk disk(950);
      room.Pump(3);
      room.state.Unit[1].UnitMaxMinutes = 5;
      room.state.SampleLimit[1] = 3;
      room.state.SlotDirty[1] = true;
      room.engine.TenSecondTick();
      room.Pump(3);
      EXPECT_TRUE(room.engine.HoldsSet(1));
      EXPECT_EQ(room.state.ReadState[1], ReadState::kWaiting);
    }
    room.files.WriteHeader(1);
    room.files.CloseRecordingFile(1);
    RunState after;
    after.Settings = room.state.Settings;
    after.DataHome = room.state.DataHome;
    after.SlotPath[1] = room.state.SlotPath[1];
    after.SlotFile[1] = kName;
    RecordingFiles files{after, room.clock, room.messages};
    SettingsStore settings{after};
    RecordingEngine engine{
        {after, room.link, files, settings, room.messages, room.dialogs, room.screens, room.clock}};
    after.PumpSlot = 1;
    after.PumpChannel = kInputs;
    files.OpenRecordingFile(1);
    room.line.buffers[{2, 1}].clear();
    room.Store(2, 1, {7});
    if (!is_whole) {
      room.line.buffers[{2, 1}].push_front(5);
    }
    room.Store(2, 2, {8});
    for (int step = 0; step < 12; ++step) {
      engine.PumpOnce();
      engine.TenSecondTick();
    }
    EXPECT_EQ(after.SlotFile[1], kNext);
    EXPECT_EQ(room.SamplesInFile(kNext), Words({5, 6, 5, 6, 7, 8}));
    EXPECT_EQ(room.SamplesInFile(kName), Words({1, 2, 1, 2, 3, 4, 4, 4}));
  }
}

TEST(EndOfRecording, MayBeStoppedByTheUserWhileTheNextFileWaits) {
  ShortFile room(2, kName, 4);
  {
    const FullDisk disk(900);
    room.Pump(3);
  }
  room.engine.StopRecording(12);
  room.engine.TenSecondTick();
  room.Pump(5);
  EXPECT_EQ(room.state.SlotFile[12], kName);
  EXPECT_FALSE(room.state.WriteFailed[12]);
  EXPECT_EQ(room.RecordInFile(kName).UnitRecOn, 0);
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

// Without the settings a restart comes back to the full file: it has to be marked as running, or
// the recording would be over then.
TEST(EndOfRecording, LeavesTheFullFileMarkedAsLongAsTheSettingsNameIt) {
  ShortFile room(2, kName, 4);
  room.state.DataHome = room.directory.Path() + "/gone/";
  room.Pump(1);
  EXPECT_EQ(room.state.SlotFile[12], kNext);
  EXPECT_EQ(room.RecordInFile(kName).UnitRecOn, 1);
  EXPECT_EQ(room.RecordInFile(kNext).UnitRecOn, 1);
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
