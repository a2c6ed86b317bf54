#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>
#include <vector>

#include "tests/files/pump_fixture.h"

namespace tavrel {
namespace {

using Texts = std::vector<std::string>;

// Slot 12 records input 1 of instrument 2 into a file of at most three rows.
struct ShortFile : PumpFixture {
  explicit ShortFile(int end_action, const std::string& name = kNewFile, int rows = 0) {
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
  ShortFile fixture(0);
  fixture.Store(2, 1, {1, 2, 3, 4, 5});
  fixture.Pump(20);
  EXPECT_EQ(fixture.state.SampleLimit[12], 3);
  EXPECT_EQ(fixture.state.SampleCount[12], 4);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({1, 1, 2, 3}));
  EXPECT_EQ(fixture.state.ReadState[12], ReadState::kIdle);
  EXPECT_EQ(fixture.RecordInFile(kNewFile).UnitRecOn, 0);
  EXPECT_EQ(fixture.port.sent, (Texts{"X11?", "X11?", "X11?"}));
}

TEST(EndOfRecording, DoesNotComeAtTheLimitItself) {
  ShortFile fixture(0, kNewFile, 3);
  fixture.Pump(1);
  EXPECT_EQ(fixture.state.Unit[12].UnitRecOn, 1);
}

TEST(EndOfRecording, GoesOnWithTheNextSlotInTheSameCall) {
  ShortFile fixture(0, kNewFile, 4);
  fixture.Open(11, "M011111X.NEW", BytesOf(Running(HeaderOf(1, {9}))));
  fixture.Pump(1);
  EXPECT_EQ(fixture.port.sent, (Texts{"X09?"}));
}

TEST(EndOfRecording, HidesTheBacklogOfItsSlot) {
  ShortFile fixture(0, kNewFile, 4);
  fixture.state.BacklogSlot = 12;
  fixture.state.BacklogCount = 40;
  fixture.state.lbl_Info = "reading from Tavrel:  40";
  fixture.Pump(1);
  EXPECT_EQ(fixture.state.BacklogCount, 0);
  EXPECT_EQ(fixture.state.lbl_Info, "");
}

TEST(EndOfRecording, SwitchesTheControllerOff) {
  ShortFile fixture(1, kNewFile, 4);
  fixture.Pump(1);
  EXPECT_EQ(fixture.port.sent, (Texts{"Z13=0\r"}));
  EXPECT_FALSE(fixture.state.StopPending[12]);
  EXPECT_EQ(fixture.state.ReadState[12], ReadState::kIdle);
  EXPECT_EQ(fixture.RecordInFile(kNewFile).UnitCtrlState, 0);
  EXPECT_EQ(fixture.state.SlotFile[12], kNewFile);
}

TEST(EndOfRecording, EndsTheProgramOfItsSlotWhetherOrNotTheControllerAnswers) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    for (const bool is_silent : {false, true}) {
      PumpFixture fixture;
      UnitRecord unit = HeaderOf(2, {1});
      unit.UnitCtrl = 3;
      unit.UnitEndAction = 1;
      fixture.Open(slot, kNewFile, BytesOf(unit));
      fixture.state.ProgRunning.Fill(true);
      fixture.line.silent = is_silent ? std::set<int>{2} : std::set<int>{};
      fixture.engine.EndOfRecording(slot);
      for (int other = 1; other <= kSlots; ++other) {
        EXPECT_EQ(fixture.state.ProgRunning[other], other != slot) << slot << is_silent;
      }
    }
  }
}

TEST(EndOfRecording, LeavesAProgramAloneThatIsNotToBeSwitchedOff) {
  for (const int end_action : {0, 2, 3}) {
    ShortFile fixture(end_action, kNewFile, 4);
    fixture.state.ProgRunning[12] = true;
    fixture.Pump(1);
    EXPECT_TRUE(fixture.state.ProgRunning[12]) << end_action;
  }
}

TEST(EndOfRecording, RepeatsTheStopOnceForEachTenSecondsUntilItIsAcknowledged) {
  ShortFile fixture(1, kNewFile, 4);
  fixture.line.silent.insert(2);
  fixture.Pump(5);
  EXPECT_TRUE(fixture.state.StopPending[12]);
  EXPECT_EQ(fixture.port.sent, (Texts{"Z13=0\r"}));
  fixture.engine.TenSecondTick();
  fixture.Pump(5);
  EXPECT_EQ(fixture.port.sent.size(), 2U);
  fixture.line.silent.clear();
  fixture.engine.TenSecondTick();
  fixture.Pump(5);
  fixture.engine.TenSecondTick();
  fixture.Pump(5);
  EXPECT_EQ(fixture.port.sent, (Texts{"Z13=0\r", "Z13=0\r", "Z13=0\r"}));
  EXPECT_FALSE(fixture.state.StopPending[12]);
}

TEST(EndOfRecording, RepeatsTheStopToTheSameControllerWhateverTheSlotHoldsSince) {
  ShortFile fixture(1, kNewFile, 4);
  fixture.line.silent.insert(2);
  fixture.Pump(1);
  fixture.Open(12, "M020202A.NEW", BytesOf(HeaderOf(5, {1})));
  fixture.engine.TenSecondTick();
  fixture.Pump(1);
  EXPECT_EQ(fixture.port.sent, (Texts{"Z13=0\r", "Z13=0\r"}));
  EXPECT_TRUE(fixture.state.StopPending[12]);
}

TEST(EndOfRecording, RepeatsTheStopsOfSeveralSilentInstrumentsOneAStep) {
  PumpFixture fixture;
  fixture.line.silent = {1, 2, 3};
  for (const int slot : {1, 2, 3}) {
    UnitRecord unit = HeaderOf(slot, {1});
    unit.UnitCtrl = 1;
    unit.UnitEndAction = 1;
    fixture.Open(slot, "M011111A.NE" + std::to_string(slot), BytesOf(unit));
    fixture.engine.EndOfRecording(slot);
  }
  fixture.port.sent.clear();
  fixture.engine.TenSecondTick();
  EXPECT_EQ(fixture.port.sent, Texts{});
  fixture.Pump(1);
  EXPECT_EQ(fixture.port.sent, (Texts{"Z01=0\r"}));
  fixture.Pump(1);
  EXPECT_EQ(fixture.port.sent, (Texts{"Z01=0\r", "Z11=0\r"}));
  fixture.Pump(3);
  EXPECT_EQ(fixture.port.sent, (Texts{"Z01=0\r", "Z11=0\r", "Z21=0\r"}));
}

TEST(EndOfRecording, DoesNotRepeatAStopThatTheUserHasMadeVoid) {
  ShortFile fixture(1, kNewFile, 4);
  fixture.line.silent.insert(2);
  fixture.Pump(1);
  fixture.engine.TenSecondTick();
  fixture.engine.Orders().Drop(2, 3);
  fixture.Pump(2);
  EXPECT_EQ(fixture.port.sent, (Texts{"Z13=0\r"}));
}

TEST(EndOfRecording, SwitchesTheControllerOffEvenIfTheHeaderCannotBeWritten) {
  ShortFile fixture(1, kNewFile, 4);
  std::filesystem::rename(fixture.directory.Path(), fixture.directory.Path() + "-away");
  fixture.Pump(1);
  std::filesystem::rename(fixture.directory.Path() + "-away", fixture.directory.Path());
  EXPECT_EQ(fixture.port.sent, (Texts{"Z13=0\r"}));
  EXPECT_EQ(fixture.state.SlotFile[12], "");
  EXPECT_EQ(fixture.state.Settings.ActiveFiles[11], kNewFile);
  EXPECT_TRUE(fixture.dialogs.boxes.empty());  // the cycle never blocks
  EXPECT_EQ(fixture.Announced(), (Texts{"Write  file | M011111A.NEW: No such file or directory"}));
}

TEST(EndOfRecording, GoesOnInANextFile) {
  ShortFile fixture(2);
  fixture.Store(2, 1, {1, 2, 3, 4, 5});
  fixture.Pump(20);
  EXPECT_EQ(fixture.state.SlotFile[12], kNextNewFile);
  EXPECT_EQ(fixture.state.Settings.ActiveFiles[11], kNextNewFile);
  EXPECT_NE(fixture.directory.Read("TAVREL.USR").find(kNextNewFile), std::string::npos);
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({1, 1, 2, 3}));
  EXPECT_EQ(fixture.SamplesInFile(kNextNewFile), Words({4, 4, 5}));
  EXPECT_EQ(fixture.RecordInFile(kNewFile).UnitRecOn, 0);
  EXPECT_EQ(fixture.RecordInFile(kNewFile).UnitMarks, 1);
  EXPECT_EQ(fixture.RecordInFile(kNextNewFile).UnitRecOn, 1);
  EXPECT_EQ(fixture.RecordInFile(kNextNewFile).UnitMarks, 0);
  EXPECT_EQ(fixture.RecordInFile(kNextNewFile).UnitDate.Get(), "11-11-2001 / 00:00");
  EXPECT_EQ(fixture.state.SampleCount[12], 3);
  EXPECT_TRUE(fixture.Announced().empty());
}

TEST(EndOfRecording, FollowsZWithABracket) {
  ShortFile fixture(2, "M011111Z.NEW", 4);
  fixture.Pump(1);
  EXPECT_EQ(fixture.state.SlotFile[12], "M011111[.NEW");
}

TEST(EndOfRecording, NeverTakesANameThatIsTaken) {
  ShortFile fixture(2, kNewFile, 4);
  fixture.directory.Write("m011111b.new", "old");
  fixture.state.Settings.ActiveFiles[3] = "M011111C.NEW";
  fixture.Pump(1);
  EXPECT_EQ(fixture.state.SlotFile[12], "M011111D.NEW");
  EXPECT_EQ(fixture.directory.Read("m011111b.new"), "old");
}

TEST(EndOfRecording, GoesOnWithTodaysDateWhenNoLetterIsLeft) {
  ShortFile fixture(2, "M011111~.NEW", 4);
  fixture.clock.wall = {2026, 3, 14, 9, 5, 0};
  fixture.directory.Write("m260314a.new", "old");
  fixture.Store(2, 1, {7});
  fixture.Pump(3);
  EXPECT_EQ(fixture.state.SlotFile[12], "M260314B.NEW");
  EXPECT_EQ(fixture.SamplesInFile("M260314B.NEW"), Words({7, 7}));
  EXPECT_EQ(fixture.RecordInFile("M011111~.NEW").UnitRecOn, 0);
  EXPECT_TRUE(fixture.Announced().empty());
}

TEST(EndOfRecording, WaitsForTheNextDayWhenTheDayHasNoLetterLeft) {
  ShortFile fixture(2, "M260314~.NEW", 4);
  fixture.clock.wall = {2026, 3, 14, 9, 5, 0};
  for (char letter = 'A'; letter <= '~'; ++letter) {
    fixture.state.Settings.ActiveFiles[3] = std::string("M260314") + letter + ".NEW";
    if (IsNameForNewFile(fixture.state.Settings.ActiveFiles[3]) && letter != '~') {
      fixture.directory.Write(fixture.state.Settings.ActiveFiles[3], "old");
    }
  }
  fixture.Store(2, 1, {7});
  for (int tick = 0; tick < 3; ++tick) {
    fixture.Pump(3);
    EXPECT_EQ(fixture.state.SlotFile[12], "M260314~.NEW");
    EXPECT_EQ(fixture.state.ReadState[12], ReadState::kWaiting);
    EXPECT_TRUE(fixture.state.WriteFailed[12]);
    fixture.engine.TenSecondTick();
  }
  EXPECT_EQ(fixture.RecordInFile("M260314~.NEW").UnitRecOn, 1);
  EXPECT_EQ(fixture.Announced(),
            (Texts{"Write  file | M260314~.NEW: no free name for the next file"}));
  fixture.clock.wall = {2026, 3, 15, 0, 5, 0};
  fixture.Pump(3);
  EXPECT_EQ(fixture.state.SlotFile[12], "M260315A.NEW");
  EXPECT_EQ(fixture.SamplesInFile("M260315A.NEW"), Words({7, 7}));
  EXPECT_FALSE(fixture.state.WriteFailed[12]);
}

TEST(EndOfRecording, StepsOverWhateverBearsTheNextName) {
  ShortFile fixture(2, kNewFile, 4);
  std::filesystem::create_directory(fixture.directory.File(kNextNewFile));
  ASSERT_EQ(mkfifo(fixture.directory.File("M011111C.NEW").c_str(), 0600), 0);
  std::filesystem::create_symlink("nowhere", fixture.directory.File("m011111d.new"));
  std::filesystem::create_symlink("/dev/null", fixture.directory.File("M011111E.NEW"));
  fixture.Pump(1);
  EXPECT_EQ(fixture.state.SlotFile[12], "M011111F.NEW");
  EXPECT_EQ(fixture.state.ReadState[12], ReadState::kReading);
  EXPECT_TRUE(std::filesystem::is_symlink(fixture.directory.File("m011111d.new")));
  EXPECT_TRUE(fixture.Announced().empty());
}

// A disk that takes nothing for a while is tried on every ten-second tick; what the instrument
// stores meanwhile is all there afterwards.
TEST(EndOfRecording, TriesTheNextFileOnEveryTickWhileTheDiskIsFull) {
  for (const int inputs : {1, 2, 15}) {
    PumpFixture fixture;
    UnitRecord unit = Running(HeaderOf(inputs));
    unit.UnitMaxMinutes = 5;  // 3 rows at 100 seconds
    unit.UnitEndAction = 2;
    fixture.Open(7, kNewFile, BytesOf(unit));
    for (int input = 1; input <= inputs; ++input) {
      fixture.Store(1, input, {1, 2, 3, 4, 5});
    }
    fixture.Pump(inputs * 3);
    ASSERT_EQ(fixture.state.SampleCount[7], 4);
    {
      const FullDisk disk(900);
      for (int tick = 0; tick < 4; ++tick) {
        fixture.Pump(40);
        EXPECT_EQ(fixture.state.SlotFile[7], kNewFile);
        EXPECT_EQ(fixture.state.ReadState[7], ReadState::kWaiting);
        EXPECT_TRUE(fixture.state.WriteFailed[7]);
        EXPECT_EQ(fixture.state.Unit[7].UnitRecOn, 1);
        fixture.engine.TenSecondTick();
      }
      EXPECT_EQ(fixture.Announced(), (Texts{"Write  file | M011111B.NEW: File too large"}));
    }
    EXPECT_EQ(fixture.port.sent.size(), static_cast<std::size_t>(inputs * 3));
    EXPECT_EQ(fixture.RecordInFile(kNewFile).UnitRecOn, 1);
    EXPECT_FALSE(fixture.directory.Exists(kNextNewFile));
    fixture.Pump(40);
    EXPECT_EQ(fixture.state.SlotFile[7], kNextNewFile);
    EXPECT_FALSE(fixture.state.WriteFailed[7]);
    EXPECT_EQ(fixture.state.SampleCount[7], 3);
    EXPECT_EQ(fixture.RecordInFile(kNewFile).UnitRecOn, 0);
    EXPECT_EQ(fixture.RecordInFile(kNextNewFile).UnitRecOn, 1);
    EXPECT_EQ(fixture.SamplesInFile(kNextNewFile).size(), static_cast<std::size_t>(3 * inputs * 2));
  }
}

TEST(EndOfRecording, TriesTheNextFileWhileTheDirectoryIsAway) {
  ShortFile fixture(2, kNewFile, 4);
  fixture.Store(2, 1, {7, 8});
  const std::string away = fixture.directory.Path() + "-away";
  std::filesystem::rename(fixture.directory.Path(), away);
  for (int tick = 0; tick < 3; ++tick) {
    fixture.Pump(3);
    fixture.engine.TenSecondTick();
    EXPECT_EQ(fixture.state.SlotFile[12], kNewFile);
  }
  EXPECT_EQ(fixture.Announced().size(), 1U);
  std::filesystem::rename(away, fixture.directory.Path());
  fixture.Pump(4);
  EXPECT_EQ(fixture.state.SlotFile[12], kNextNewFile);
  EXPECT_EQ(fixture.SamplesInFile(kNextNewFile), Words({7, 7, 8}));
  EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({0, 1, 2, 3}));
}

// The program of the second fixture is the one that is started again.
TEST(EndOfRecording, GoesOnTryingAfterARestart) {
  ShortFile fixture(2, kNewFile, 4);
  std::string bytes;
  {
    const FullDisk disk(900);
    fixture.Pump(3);
  }
  fixture.files.CloseRecordingFile(12);
  bytes = fixture.directory.Read(kNewFile);
  PumpFixture again;
  again.Open(12, kNewFile, bytes);
  again.Store(2, 1, {7, 8});
  {
    const FullDisk disk(900);
    again.Pump(3);
    EXPECT_EQ(again.state.SlotFile[12], kNewFile);
    again.engine.TenSecondTick();
    again.Pump(3);
  }
  again.engine.TenSecondTick();
  again.Pump(4);
  EXPECT_EQ(again.state.SlotFile[12], kNextNewFile);
  EXPECT_EQ(again.SamplesInFile(kNextNewFile), Words({7, 7, 8}));
}

// The user shortens the recording while one set is held: half of it, or the whole that the disk
// refused. It goes through the wait, a restart included, into the next file.
TEST(EndOfRecording, KeepsTheSetInHandThroughTheWaitAndARestart) {
  for (const bool is_whole : {false, true}) {
    PumpFixture fixture;
    UnitRecord unit = Running(HeaderOf(2, {1, 2}));
    unit.UnitEndAction = 2;
    fixture.Open(1, kNewFile, BytesOf(unit) + Words({1, 2, 1, 2, 3, 4, 4, 4}));
    fixture.Store(2, 2, {6});
    if (is_whole) {
      fixture.Store(2, 1, {5});
    }
    {
      const FullDisk disk(950);
      fixture.Pump(3);
      fixture.state.Unit[1].UnitMaxMinutes = 5;
      fixture.state.SampleLimit[1] = 3;
      fixture.state.SlotDirty[1] = true;
      fixture.engine.TenSecondTick();
      fixture.Pump(3);
      EXPECT_TRUE(fixture.engine.HoldsSet(1));
      EXPECT_EQ(fixture.state.ReadState[1], ReadState::kWaiting);
    }
    fixture.files.WriteHeader(1);
    fixture.files.CloseRecordingFile(1);
    RunState after;
    after.Settings = fixture.state.Settings;
    after.DataHome = fixture.state.DataHome;
    after.SlotPath[1] = fixture.state.SlotPath[1];
    after.SlotFile[1] = kNewFile;
    RecordingFiles files{after, fixture.clock, fixture.messages};
    SettingsStore settings{after};
    RecordingEngine engine{{after, fixture.link, files, settings, fixture.messages, fixture.dialogs,
                            fixture.screens, fixture.clock}};
    after.PumpSlot = 1;
    after.PumpChannel = kInputs;
    files.OpenRecordingFile(1);
    fixture.line.buffers[{2, 1}].clear();
    fixture.Store(2, 1, {7});
    if (!is_whole) {
      fixture.line.buffers[{2, 1}].push_front(5);
    }
    fixture.Store(2, 2, {8});
    for (int step = 0; step < 12; ++step) {
      engine.PumpOnce();
      engine.TenSecondTick();
    }
    EXPECT_EQ(after.SlotFile[1], kNextNewFile);
    EXPECT_EQ(fixture.SamplesInFile(kNextNewFile), Words({5, 6, 5, 6, 7, 8}));
    EXPECT_EQ(fixture.SamplesInFile(kNewFile), Words({1, 2, 1, 2, 3, 4, 4, 4}));
  }
}

TEST(EndOfRecording, MayBeStoppedByTheUserWhileTheNextFileWaits) {
  ShortFile fixture(2, kNewFile, 4);
  {
    const FullDisk disk(900);
    fixture.Pump(3);
  }
  fixture.engine.StopRecording(12);
  fixture.engine.TenSecondTick();
  fixture.Pump(5);
  EXPECT_EQ(fixture.state.SlotFile[12], kNewFile);
  EXPECT_FALSE(fixture.state.WriteFailed[12]);
  EXPECT_EQ(fixture.RecordInFile(kNewFile).UnitRecOn, 0);
}

TEST(EndOfRecording, GoesOnAlthoughTheSettingsCannotBeWritten) {
  ShortFile fixture(2, kNewFile, 4);
  fixture.state.DataHome = fixture.directory.Path() + "/gone/";
  fixture.Pump(1);
  EXPECT_EQ(fixture.state.SlotFile[12], kNextNewFile);
  EXPECT_EQ(fixture.state.ReadState[12], ReadState::kReading);
  EXPECT_TRUE(fixture.state.SettingsChanged);
  EXPECT_EQ(fixture.Announced(), (Texts{"TAVREL.USR | Cannot write file."}));
}

// Without the settings a restart comes back to the full file: it has to be marked as running, or
// the recording would be over then.
TEST(EndOfRecording, LeavesTheFullFileMarkedAsLongAsTheSettingsNameIt) {
  ShortFile fixture(2, kNewFile, 4);
  fixture.state.DataHome = fixture.directory.Path() + "/gone/";
  fixture.Pump(1);
  EXPECT_EQ(fixture.state.SlotFile[12], kNextNewFile);
  EXPECT_EQ(fixture.RecordInFile(kNewFile).UnitRecOn, 1);
  EXPECT_EQ(fixture.RecordInFile(kNextNewFile).UnitRecOn, 1);
}

TEST(EndOfRecording, ClosesTheGraphOfItsSlotOnly) {
  ShortFile fixture(2, kNewFile, 4);
  fixture.state.ActiveView = View::kTavGraph;
  fixture.state.SelSlot = 3;
  fixture.state.OverPrepared = true;
  fixture.Pump(1);
  EXPECT_FALSE(fixture.state.GraphMustClose);
  EXPECT_TRUE(fixture.state.OverPrepared);
  ShortFile other(2, kNewFile, 4);
  other.state.ActiveView = View::kTavGraph;
  other.state.SelSlot = 12;
  other.state.OverPrepared = other.state.PartPrepared = other.state.WorkReset = true;
  other.Pump(1);
  EXPECT_TRUE(other.state.GraphMustClose);
  EXPECT_FALSE(other.state.OverPrepared || other.state.PartPrepared || other.state.WorkReset);
}

TEST(EndOfRecording, TakesAHalfReadSetAlongIntoTheNextFile) {
  PumpFixture fixture;
  UnitRecord unit = Running(HeaderOf(2, {1, 2}));
  unit.UnitEndAction = 2;
  fixture.Open(12, kNewFile, BytesOf(unit) + Words({1, 2, 1, 2, 3, 4}));
  fixture.Store(2, 2, {6, 8});
  fixture.Pump(1);                    // channel 2 has arrived, channel 1 has not
  fixture.state.SampleLimit[12] = 2;  // the user shortens the recording
  fixture.Store(2, 1, {5, 7});
  fixture.Pump(9);
  EXPECT_EQ(fixture.SamplesInFile(kNextNewFile), Words({5, 6, 5, 6, 7, 8}));
}

TEST(EndOfRecording, KeepsToOneLastSetInTheNextFile) {
  ShortFile fixture(2, kNewFile, 4);
  fixture.state.ReadState[12] = ReadState::kLastSet;
  fixture.Store(2, 1, {4, 5});
  fixture.Pump(9);
  EXPECT_EQ(fixture.SamplesInFile(kNextNewFile), Words({4, 4}));
  EXPECT_EQ(fixture.state.ReadState[12], ReadState::kIdle);
}

TEST(EndOfRecording, IgnoresSlotsThatDoNotExist) {
  PumpFixture fixture;
  fixture.engine.EndOfRecording(0);
  fixture.engine.EndOfRecording(13);
  EXPECT_TRUE(fixture.port.sent.empty());
}

}  // namespace
}  // namespace tavrel
