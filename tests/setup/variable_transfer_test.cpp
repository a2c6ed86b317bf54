#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <string>

#include "setup/variable_file.h"
#include "tests/setup/channel_bench.h"
#include "tests/support/hindrance.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

// TavChann in its idle loop on an instrument with a value of its own in each register.
class TransferRoom : public ChannelBench {
 public:
  TransferRoom() {
    int number = 1;
    for (const char letter : kVariableLetters) {
      for (int row = 0; row < kRegistersPerLetter; ++row) {
        Register(letter, row) = Value(number++);
      }
    }
    for (int row = 0; row < kRegistersPerLetter; ++row) {
      Register('R', row) = 0;  // the line counts its buffers
      Register('Z', row) = 0;
    }
    Register('G', 0) = 0;
    Register('T', 0) = 10;
    OpenIdle();
    Choose("OVEN.VAR");
  }

  static std::int16_t Value(int number) {
    return static_cast<std::int16_t>(number % 2 == 0 ? number * 100 : -number);
  }
  void Choose(const std::string& name) { bench.dialogs.chosen_file = bench.home.File(name); }
  void Save() {
    dialog->Mnu_Save_Click([this] { shown.push_back(Values()); });
  }
  void Load() {
    dialog->Mnu_Load_Click([this] { shown.push_back(Values()); });
  }
  std::string File(const std::string& name = "OVEN.VAR") const { return bench.home.Read(name); }
  // The file that a save would make now.
  std::string ExpectedFile() {
    VariableWords words{};
    for (std::size_t group = 0; group < words.size(); ++group) {
      for (int row = 0; row < kRegistersPerLetter; ++row) {
        words[group][static_cast<std::size_t>(row)] = Register(kVariableLetters[group], row);
      }
    }
    return VariableFileBytes(words);
  }

  std::vector<ChannelValues> shown;
};

// A variable file whose registers all have `word`, but those of Z and G00.
std::string FileOf(std::int16_t word) {
  VariableWords words{};
  for (auto& group : words) {
    group.fill(word);
  }
  words.front()[0] = 0;
  words.back().fill(0);
  return VariableFileBytes(words);
}

TEST(VariableSave, WritesAllRegisters) {
  TransferRoom room;
  room.Save();
  EXPECT_EQ(room.File(), room.ExpectedFile());
  EXPECT_EQ(room.LastBox(), "OVEN.VAR: File written !");
  EXPECT_EQ(room.bench.dialogs.boxes.back().Icon, BoxIcon::kInformation);
  ASSERT_EQ(room.commands.size(), 272U);
  EXPECT_EQ(room.commands.front(), "G20?");
  EXPECT_EQ(room.commands[17], "H21?");
  EXPECT_EQ(room.commands.back(), "Z2F?");
  EXPECT_EQ(room.dialog->State(), AdjState::kIdle);
  EXPECT_TRUE(room.Values().MenusEnabled);
  EXPECT_FALSE(room.Values().Lbl_InstrShown);
  EXPECT_FALSE(room.Values().pBarShown);
}

TEST(VariableSave, AsksForAName) {
  TransferRoom room;
  room.Save();
  ASSERT_EQ(room.bench.dialogs.file_dialogs.size(), 1U);
  const FileChoice& choice = room.bench.dialogs.file_dialogs[0];
  EXPECT_EQ(choice.Mode, FileMode::kSave);
  EXPECT_EQ(choice.Title, "Save As");
  EXPECT_EQ(choice.Filter, "variables  (*.var)|*.var");
  EXPECT_EQ(choice.DefaultExtension, "var");
  EXPECT_EQ(choice.Directory, room.bench.state.AppPath);
}

TEST(VariableSave, CancelDoesNothing) {
  TransferRoom room;
  room.bench.dialogs.chosen_file.clear();
  room.Save();
  EXPECT_THAT(room.commands, IsEmpty());
  EXPECT_THAT(room.bench.dialogs.boxes, IsEmpty());
  EXPECT_TRUE(room.Values().MenusEnabled);
}

TEST(VariableSave, ShowsLetterRowAndProgress) {
  TransferRoom room;
  room.Save();
  ASSERT_EQ(room.shown.size(), 272U);
  EXPECT_EQ(room.shown[0].Lbl_Instr, "G00");
  EXPECT_EQ(room.shown[26].Lbl_Instr, "H10");
  EXPECT_EQ(room.shown[271].Lbl_Instr, "Z15");
  EXPECT_EQ(room.shown[0].pBar, 0);
  EXPECT_EQ(room.shown[136].pBar, 50);
  EXPECT_EQ(room.shown[271].pBar, 99);
  for (const ChannelValues& values : room.shown) {
    EXPECT_TRUE(values.Lbl_InstrShown);
    EXPECT_TRUE(values.pBarShown);
    EXPECT_FALSE(values.MenusEnabled);
  }
  EXPECT_EQ(room.bench.events.repaints, 272);
  EXPECT_EQ(room.bench.events.pumps, 0) << "no timer and no key between";
}

// What the link held last stands in the place of a register that was not told.
TEST(VariableSave, FailedReadLeavesTheStaleValueAndIsTold) {
  for (const LineFailure failure : kLineFailures) {
    TransferRoom room;
    room.failure = failure;
    room.FailNext("M2C?", 1);
    room.Save();
    EXPECT_EQ(room.LastBox(), "OVEN.VAR: Error in file !");
    EXPECT_EQ(room.bench.dialogs.boxes.back().Icon, BoxIcon::kWarning);
    room.Register('M', 12) = room.Register('M', 11);
    if (failure == LineFailure::kLateReply) {
      room.Register('M', 13) = room.Register('M', 11);  // the late reply spoils this one as well
    }
    EXPECT_EQ(room.File(), room.ExpectedFile()) << NameOf(failure);
    EXPECT_EQ(room.dialog->State(), AdjState::kIdle);
  }
}

TEST(VariableSave, EachFailedReadIsTold) {
  for (int at = 1; at <= kVariables; at += 9) {
    TransferRoom room;
    room.fails = [&room, at](const std::string&) {
      return static_cast<int>(room.commands.size()) == at;
    };
    room.Save();
    EXPECT_EQ(room.LastBox(), "OVEN.VAR: Error in file !") << at;
    EXPECT_EQ(room.commands.size(), 272U) << "the others are read all the same";
  }
}

TEST(VariableSave, SilentInstrumentIsAskedForOneRegisterOfAGroup) {
  TransferRoom room;
  room.fails = [&room](const std::string&) { return room.commands.size() > 20; };
  const auto begin = room.bench.clock.Elapsed();
  room.Save();
  EXPECT_LT(room.bench.clock.Elapsed() - begin, std::chrono::seconds(8));
  EXPECT_EQ(room.LastBox(), "OVEN.VAR: Error in file !");
  const std::string file = room.File();
  EXPECT_EQ(std::count(file.begin(), file.end(), '\n'), 34);
}

TEST(VariableSave, GoesOnWithAnInstrumentThatAnswersAgain) {
  TransferRoom room;
  room.fails = [](const std::string& command) { return command[0] >= 'K' && command[0] <= 'M'; };
  room.Save();
  const std::string file = room.File();
  EXPECT_EQ(file.substr(file.find("N\r\n")),
            room.ExpectedFile().substr(room.ExpectedFile().find("N\r\n")));
}

TEST(VariableSave, FileThatCannotBeWrittenIsCancelledAndStays) {
  TransferRoom room;
  room.bench.home.Write("OVEN.VAR", "mine");
  std::filesystem::permissions(room.bench.home.Path(), std::filesystem::perms(0755));
  {
    const WithoutRights without_rights;
    room.Save();
  }
  EXPECT_EQ(room.LastBox(), "OVEN.VAR: Cancelled !");
  EXPECT_EQ(room.bench.dialogs.boxes.back().Icon, BoxIcon::kWarning);
  EXPECT_EQ(room.File(), "mine");
  EXPECT_THAT(room.commands, IsEmpty());
  EXPECT_EQ(room.dialog->State(), AdjState::kIdle);
  EXPECT_TRUE(room.Values().MenusEnabled);
}

TEST(VariableSave, DirectoryThatIsAwayIsCancelled) {
  TransferRoom room;
  room.Choose("nowhere/OVEN.VAR");
  room.Save();
  EXPECT_EQ(room.LastBox(), "OVEN.VAR: Cancelled !");
}

TEST(VariableSave, TakesNoRecordingFile) {
  TransferRoom room;
  room.bench.home.Write("OVEN.VAR", "samples");
  room.bench.state.SlotFile[4] = "OVEN.VAR";
  room.bench.state.SlotPath[4] = room.bench.home.Path();
  room.Save();
  EXPECT_EQ(room.LastBox(), "OVEN.VAR: Cancelled !");
  EXPECT_EQ(room.File(), "samples");
}

// Until the last moment the old file is whole, and then it is the new one.
TEST(VariableSave, ReplacesTheOldFileAtOnce) {
  TransferRoom room;
  room.bench.home.Write("OVEN.VAR", "old");
  room.on_command = [&](const std::string&) { EXPECT_EQ(room.File(), "old"); };
  room.Save();
  EXPECT_EQ(room.File(), room.ExpectedFile());
  for (const auto& entry : std::filesystem::directory_iterator(room.bench.home.Path())) {
    EXPECT_THAT(entry.path().filename().string(),
                testing::AnyOf("OVEN.VAR", "tavdat", kGermanManual));
  }
}

TEST(VariableSave, DirectoryThatGoesAwayMeanwhileIsCancelled) {
  TransferRoom room;
  std::filesystem::create_directory(room.bench.home.File("stick"));
  room.Choose("stick/OVEN.VAR");
  room.on_command = [&](const std::string& command) {
    if (command == "Z2F?") {
      std::filesystem::remove_all(room.bench.home.File("stick"));
    }
  };
  room.Save();
  EXPECT_EQ(room.LastBox(), "OVEN.VAR: Cancelled !");
}

TEST(VariableSave, EscapeWithinItCancelsAndTheOldFileStays) {
  TransferRoom room;
  room.bench.home.Write("OVEN.VAR", "old");
  room.on_command = [&](const std::string& command) {
    if (command == "K23?") {
      room.dialog->Quit();
    }
  };
  room.Save();
  EXPECT_EQ(room.LastBox(), "OVEN.VAR: Cancelled !");
  EXPECT_EQ(room.File(), "old");
  EXPECT_TRUE(room.dialog->IsOpen());
  EXPECT_EQ(room.dialog->State(), AdjState::kIdle);
}

TEST(VariableSave, EndOfTheProgramEndsItWithoutABox) {
  TransferRoom room;
  room.on_command = [&](const std::string& command) {
    room.bench.events.end_is_wanted = command == "K23?";
  };
  room.Save();
  EXPECT_THAT(room.bench.dialogs.boxes, IsEmpty());
  EXPECT_EQ(room.commands.back(), "K23?");
  EXPECT_FALSE(room.bench.home.Exists("OVEN.VAR"));
}

TEST(VariableSave, NoStepRunsWithinIt) {
  TransferRoom room;
  room.on_command = [&](const std::string&) {
    room.dialog->Timer_chann();
    room.dialog->Mnu_FeCuNi_Click();
  };
  room.Save();
  EXPECT_EQ(room.commands.size(), 272U);
  EXPECT_EQ(room.File(), room.ExpectedFile());
}

TEST(VariableLoad, WritesAllButThirtyThreeRegisters) {
  TransferRoom room;
  room.bench.home.Write("OVEN.VAR", FileOf(1234));
  const std::int16_t before_s = room.Register('S', 5);
  const std::int16_t before_i = room.Register('I', 0);
  room.Forget();
  room.Load();
  std::vector<std::string> writes;
  for (const std::string& command : room.commands) {
    if (command.ends_with('\r')) {
      writes.push_back(command);
    }
  }
  ASSERT_EQ(writes.size(), 239U);
  EXPECT_EQ(writes.front(), "G20=0\r");
  EXPECT_EQ(writes[1], "G21=4D2\r");
  EXPECT_EQ(writes[32], "I21=4D2\r");
  EXPECT_EQ(writes.back(), "Z2F=0\r");
  EXPECT_EQ(room.Register('S', 5), before_s);
  EXPECT_EQ(room.Register('I', 0), before_i);
  EXPECT_EQ(room.Register('I', 1), 1234);
  EXPECT_EQ(room.Boxes(),
            (std::vector<std::string>{"Load: WARNING:  existing data will be overwritten",
                                      "OVEN.VAR: File loaded !"}));
  EXPECT_EQ(room.bench.dialogs.boxes.back().Icon, BoxIcon::kInformation);
  EXPECT_EQ(room.dialog->State(), AdjState::kReadSensors);
  ASSERT_TRUE(room.TickTo(AdjState::kIdle));
  EXPECT_EQ(room.Row(7).offset, "1234");
  EXPECT_TRUE(room.Values().MenusEnabled);
}

TEST(VariableLoad, AsksFirstAndForAFileThatIsThere) {
  TransferRoom room;
  room.bench.dialogs.ok = false;
  room.Load();
  EXPECT_EQ(room.LastBox(), "Load: WARNING:  existing data will be overwritten");
  EXPECT_THAT(room.bench.dialogs.file_dialogs, IsEmpty());
  EXPECT_THAT(room.commands, IsEmpty());
  EXPECT_EQ(room.dialog->State(), AdjState::kIdle);
  room.bench.dialogs.ok = true;
  room.bench.dialogs.chosen_file.clear();
  room.Load();
  ASSERT_EQ(room.bench.dialogs.file_dialogs.size(), 1U);
  EXPECT_EQ(room.bench.dialogs.file_dialogs[0].Mode, FileMode::kOpen);
  EXPECT_EQ(room.bench.dialogs.file_dialogs[0].Title, "Open");
  EXPECT_THAT(room.commands, IsEmpty());
  EXPECT_TRUE(room.Values().MenusEnabled);
}

TEST(VariableLoad, ShowsLetterRowAndProgressBehindTheHourglass) {
  TransferRoom room;
  room.bench.home.Write("OVEN.VAR", FileOf(1));
  room.bench.events.pointers.clear();
  room.Load();
  EXPECT_THAT(room.bench.events.pointers, ElementsAre(Pointer::kHourglass, Pointer::kNormal));
  ASSERT_EQ(room.shown.size(), 239U);
  EXPECT_EQ(room.shown[0].Lbl_Instr, "G00");
  EXPECT_EQ(room.shown[238].Lbl_Instr, "Z15");
  EXPECT_EQ(room.shown[238].pBar, 99);
  EXPECT_EQ(room.bench.events.pumps, 0);
  EXPECT_EQ(room.bench.events.repaints, 239);
}

TEST(VariableLoad, FileThatCannotBeReadIsAnError) {
  TransferRoom room;
  room.Load();
  EXPECT_EQ(room.LastBox(), "OVEN.VAR: Error");
  EXPECT_EQ(room.bench.dialogs.boxes.back().Icon, BoxIcon::kWarning);
  EXPECT_THAT(room.commands, IsEmpty());
  EXPECT_EQ(room.dialog->State(), AdjState::kReadSensors);
}

TEST(VariableLoad, TriesEachWriteTwice) {
  for (const LineFailure failure : kLineFailures) {
    for (const std::string at : {"G20=", "K25=", "P2F=", "Z20=", "Z2F="}) {
      TransferRoom room;
      room.failure = failure;
      room.bench.home.Write("OVEN.VAR", FileOf(77));
      room.FailNext(at, 1);
      room.Load();
      EXPECT_EQ(room.LastBox(), "OVEN.VAR: File loaded !") << at << NameOf(failure);
    }
  }
}

// The rest of the group goes on, the groups behind it do not.
TEST(VariableLoad, WriteThatFailsTwiceIsAnError) {
  TransferRoom room;
  room.bench.home.Write("OVEN.VAR", FileOf(77));
  room.FailNext("K25=", 2);
  const std::int16_t before = room.Register('L', 0);
  room.Load();
  EXPECT_EQ(room.LastBox(), "OVEN.VAR: Error");
  EXPECT_NE(room.Register('K', 5), 77);
  EXPECT_EQ(room.Register('K', 4), 77);
  EXPECT_EQ(room.Register('K', 15), 77);
  EXPECT_EQ(room.Register('L', 0), before);
}

TEST(VariableLoad, WriteThatFailsInGroupZIsAnErrorToo) {
  TransferRoom room;
  room.bench.home.Write("OVEN.VAR", FileOf(77));
  room.FailNext("Z2F=", 2);
  room.Load();
  EXPECT_EQ(room.LastBox(), "OVEN.VAR: Error");
}

TEST(VariableLoad, LetterInThePlaceOfANumberIsAnErrorAndWritesNothingThere) {
  TransferRoom room;
  std::string file = FileOf(77);
  file.replace(file.find("K\r\n77,77"), 8, "K\r\n77,x7");
  room.bench.home.Write("OVEN.VAR", file);
  const std::int16_t before = room.Register('K', 1);
  room.Load();
  EXPECT_EQ(room.LastBox(), "OVEN.VAR: Error");
  EXPECT_EQ(room.Register('K', 0), 77) << "what was written before stays";
  EXPECT_EQ(room.Register('K', 1), before);
}

TEST(VariableLoad, FileThatEndsBeforeGroupZIsAnError) {
  TransferRoom room;
  const std::string file = FileOf(77);
  room.bench.home.Write("OVEN.VAR", file.substr(0, file.find("Z\r\n")));
  room.Load();
  EXPECT_EQ(room.LastBox(), "OVEN.VAR: Error");
  EXPECT_EQ(room.Register('W', 15), 77);
}

TEST(VariableLoad, LargeFileIsRefused) {
  TransferRoom room;
  room.bench.home.Write("OVEN.VAR", std::string(1'000'000, '\n') + FileOf(77));
  room.Load();
  EXPECT_EQ(room.LastBox(), "OVEN.VAR: Error");
  EXPECT_THAT(room.commands, IsEmpty());
}

TEST(VariableLoad, AsksAboutWhatItAffects) {
  TransferRoom room;
  room.Register('Z', 3) = 2;
  room.bench.state.Unit[12] = BenchProgram::Header(3, 1, 1, true);
  room.bench.state.SlotFile[12] = "M260314A.OVN";
  std::string file = FileOf(77);
  file.replace(file.find("G\r\n0"), 4, "G\r\n6");
  file.replace(file.find("Z\r\n0,0,0"), 8, "Z\r\n5,2,0");
  room.bench.home.Write("OVEN.VAR", file);
  room.bench.dialogs.yes = false;
  room.Load();
  EXPECT_EQ(room.LastBox(),
            "OVEN.VAR: This affects:\n\n    controller 3, which is on (iso)\n    the recording "
            "M260314A.OVN of row 12\n    the file's G00 = 6, which is a command to the instrument\n"
            "    the file's Z01 = 2, which switches a controller\n\nGo on ?");
  EXPECT_TRUE(room.bench.dialogs.boxes.back().PresetIsNo);
  EXPECT_THAT(room.commands, ElementsAre("Z21?", "Z22?", "Z23?", "Z24?"));
  EXPECT_EQ(room.dialog->State(), AdjState::kIdle);
  EXPECT_TRUE(room.Values().MenusEnabled);
  room.bench.dialogs.yes = true;
  room.Load();
  EXPECT_EQ(room.LastBox(), "OVEN.VAR: File loaded !");
  EXPECT_EQ(room.Register('Z', 1), 2);
}

TEST(VariableLoad, SilentInstrumentIsGivenUpBehindTheGroup) {
  TransferRoom room;
  room.bench.home.Write("OVEN.VAR", FileOf(77));
  room.fails = [](const std::string& command) {
    return command.ends_with('\r') && command[0] >= 'K';
  };
  const auto begin = room.bench.clock.Elapsed();
  room.Load();
  EXPECT_LT(room.bench.clock.Elapsed() - begin, std::chrono::seconds(15));
  EXPECT_EQ(room.LastBox(), "OVEN.VAR: Error");
}

// Half a set of parameters is worse than none.
TEST(VariableLoad, IsFinishedWhenTheProgramIsToEnd) {
  TransferRoom room;
  room.bench.home.Write("OVEN.VAR", FileOf(77));
  room.on_command = [&](const std::string& command) {
    room.bench.events.end_is_wanted = room.bench.events.end_is_wanted || command == "K23=4D\r";
  };
  room.Load();
  EXPECT_EQ(room.Register('W', 15), 77);
  EXPECT_THAT(room.Boxes(), ElementsAre("Load: WARNING:  existing data will be overwritten"));
}

TEST(VariableLoad, IsNotFinishedForLongerThanTenSeconds) {
  TransferRoom room;
  room.bench.home.Write("OVEN.VAR", FileOf(77));
  room.takes = std::chrono::milliseconds(95);
  std::chrono::nanoseconds wanted{};
  room.on_command = [&](const std::string& command) {
    if (command == "H20=4D\r") {
      room.bench.events.end_is_wanted = true;
      wanted = room.bench.clock.Elapsed();
    }
  };
  room.Load();
  EXPECT_LE(room.bench.clock.Elapsed() - wanted, std::chrono::milliseconds(10300));
  EXPECT_NE(room.Register('W', 15), 77);
}

TEST(VariableTransfer, FileOfOneInstrumentSuitsAnother) {
  TransferRoom room;
  room.Save();
  ChannelBench other;
  other.Register('S', 3) = 44;
  other.Register('I', 0) = 115;
  other.OpenIdle();
  other.bench.dialogs.chosen_file = room.bench.home.File("OVEN.VAR");
  other.dialog->Mnu_Load_Click([] {});
  EXPECT_EQ(other.LastBox(), "OVEN.VAR: File loaded !");
  int equal = 0;
  for (const char letter : kVariableLetters) {
    for (int row = 0; row < kRegistersPerLetter; ++row) {
      const bool is_loaded = IsLoadable({letter, row, 0});
      equal += is_loaded && other.Register(letter, row) == room.Register(letter, row) ? 1 : 0;
    }
  }
  EXPECT_EQ(equal, 239);
  EXPECT_EQ(other.Register('S', 3), 44);
  EXPECT_EQ(other.Register('I', 0), 115);
}

TEST(VariableTransfer, NeedsTheIdleLoop) {
  TransferRoom room;
  room.dialog->Mnu_FeCuNi_Click();
  room.Tick();
  room.Save();
  room.Load();
  EXPECT_THAT(room.bench.dialogs.boxes, IsEmpty());
  EXPECT_THAT(room.bench.dialogs.file_dialogs, IsEmpty());
}

}  // namespace
}  // namespace tavrel
