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
class TransferFixture : public ChannelBench {
 public:
  TransferFixture() {
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
  TransferFixture fixture;
  fixture.Save();
  EXPECT_EQ(fixture.File(), fixture.ExpectedFile());
  EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: File written !");
  EXPECT_EQ(fixture.bench.dialogs.boxes.back().Icon, BoxIcon::kInformation);
  ASSERT_EQ(fixture.commands.size(), 272U);
  EXPECT_EQ(fixture.commands.front(), "G20?");
  EXPECT_EQ(fixture.commands[17], "H21?");
  EXPECT_EQ(fixture.commands.back(), "Z2F?");
  EXPECT_EQ(fixture.dialog->State(), AdjState::kIdle);
  EXPECT_TRUE(fixture.Values().MenusEnabled);
  EXPECT_FALSE(fixture.Values().Lbl_InstrShown);
  EXPECT_FALSE(fixture.Values().pBarShown);
}

TEST(VariableSave, AsksForAName) {
  TransferFixture fixture;
  fixture.Save();
  ASSERT_EQ(fixture.bench.dialogs.file_dialogs.size(), 1U);
  const FileChoice& choice = fixture.bench.dialogs.file_dialogs[0];
  EXPECT_EQ(choice.Mode, FileMode::kSave);
  EXPECT_EQ(choice.Title, "Save As");
  EXPECT_EQ(choice.Filter, "variables  (*.var)|*.var");
  EXPECT_EQ(choice.DefaultExtension, "var");
  EXPECT_EQ(choice.Directory, fixture.bench.state.AppPath);
}

TEST(VariableSave, CancelDoesNothing) {
  TransferFixture fixture;
  fixture.bench.dialogs.chosen_file.clear();
  fixture.Save();
  EXPECT_THAT(fixture.commands, IsEmpty());
  EXPECT_THAT(fixture.bench.dialogs.boxes, IsEmpty());
  EXPECT_TRUE(fixture.Values().MenusEnabled);
}

TEST(VariableSave, ShowsLetterRowAndProgress) {
  TransferFixture fixture;
  fixture.Save();
  ASSERT_EQ(fixture.shown.size(), 272U);
  EXPECT_EQ(fixture.shown[0].Lbl_Instr, "G00");
  EXPECT_EQ(fixture.shown[26].Lbl_Instr, "H10");
  EXPECT_EQ(fixture.shown[271].Lbl_Instr, "Z15");
  EXPECT_EQ(fixture.shown[0].pBar, 0);
  EXPECT_EQ(fixture.shown[136].pBar, 50);
  EXPECT_EQ(fixture.shown[271].pBar, 99);
  for (const ChannelValues& values : fixture.shown) {
    EXPECT_TRUE(values.Lbl_InstrShown);
    EXPECT_TRUE(values.pBarShown);
    EXPECT_FALSE(values.MenusEnabled);
  }
  EXPECT_EQ(fixture.bench.events.repaints, 272);
  EXPECT_EQ(fixture.bench.events.pumps, 0) << "no timer and no key between";
}

// What the link held last stands in the place of a register that was not told.
TEST(VariableSave, FailedReadLeavesTheStaleValueAndIsTold) {
  for (const LineFailure failure : kLineFailures) {
    TransferFixture fixture;
    fixture.failure = failure;
    fixture.FailNext("M2C?", 1);
    fixture.Save();
    EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: Error in file !");
    EXPECT_EQ(fixture.bench.dialogs.boxes.back().Icon, BoxIcon::kWarning);
    fixture.Register('M', 12) = fixture.Register('M', 11);
    if (failure == LineFailure::kLateReply) {
      fixture.Register('M', 13) =
          fixture.Register('M', 11);  // the late reply spoils this one as well
    }
    EXPECT_EQ(fixture.File(), fixture.ExpectedFile()) << NameOf(failure);
    EXPECT_EQ(fixture.dialog->State(), AdjState::kIdle);
  }
}

TEST(VariableSave, EachFailedReadIsTold) {
  for (int at = 1; at <= kVariables; at += 9) {
    TransferFixture fixture;
    fixture.fails = [&fixture, at](const std::string&) {
      return static_cast<int>(fixture.commands.size()) == at;
    };
    fixture.Save();
    EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: Error in file !") << at;
    EXPECT_EQ(fixture.commands.size(), 272U) << "the others are read all the same";
  }
}

TEST(VariableSave, SilentInstrumentIsAskedForOneRegisterOfAGroup) {
  TransferFixture fixture;
  fixture.fails = [&fixture](const std::string&) { return fixture.commands.size() > 20; };
  const auto begin = fixture.bench.clock.Elapsed();
  fixture.Save();
  EXPECT_LT(fixture.bench.clock.Elapsed() - begin, std::chrono::seconds(8));
  EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: Error in file !");
  const std::string file = fixture.File();
  EXPECT_EQ(std::count(file.begin(), file.end(), '\n'), 34);
}

TEST(VariableSave, GoesOnWithAnInstrumentThatAnswersAgain) {
  TransferFixture fixture;
  fixture.fails = [](const std::string& command) { return command[0] >= 'K' && command[0] <= 'M'; };
  fixture.Save();
  const std::string file = fixture.File();
  EXPECT_EQ(file.substr(file.find("N\r\n")),
            fixture.ExpectedFile().substr(fixture.ExpectedFile().find("N\r\n")));
}

TEST(VariableSave, FileThatCannotBeWrittenIsCancelledAndStays) {
  TransferFixture fixture;
  fixture.bench.home.Write("OVEN.VAR", "mine");
  std::filesystem::permissions(fixture.bench.home.Path(), std::filesystem::perms(0755));
  {
    const WithoutRights without_rights;
    fixture.Save();
  }
  EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: Cancelled !");
  EXPECT_EQ(fixture.bench.dialogs.boxes.back().Icon, BoxIcon::kWarning);
  EXPECT_EQ(fixture.File(), "mine");
  EXPECT_THAT(fixture.commands, IsEmpty());
  EXPECT_EQ(fixture.dialog->State(), AdjState::kIdle);
  EXPECT_TRUE(fixture.Values().MenusEnabled);
}

TEST(VariableSave, DirectoryThatIsAwayIsCancelled) {
  TransferFixture fixture;
  fixture.Choose("nowhere/OVEN.VAR");
  fixture.Save();
  EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: Cancelled !");
}

TEST(VariableSave, TakesNoRecordingFile) {
  TransferFixture fixture;
  fixture.bench.home.Write("OVEN.VAR", "samples");
  fixture.bench.state.SlotFile[4] = "OVEN.VAR";
  fixture.bench.state.SlotPath[4] = fixture.bench.home.Path();
  fixture.Save();
  EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: Cancelled !");
  EXPECT_EQ(fixture.File(), "samples");
}

// Until the last moment the old file is whole, and then it is the new one.
TEST(VariableSave, ReplacesTheOldFileAtOnce) {
  TransferFixture fixture;
  fixture.bench.home.Write("OVEN.VAR", "old");
  fixture.on_command = [&](const std::string&) { EXPECT_EQ(fixture.File(), "old"); };
  fixture.Save();
  EXPECT_EQ(fixture.File(), fixture.ExpectedFile());
  for (const auto& entry : std::filesystem::directory_iterator(fixture.bench.home.Path())) {
    EXPECT_THAT(entry.path().filename().string(),
                testing::AnyOf("OVEN.VAR", "tavdat", kGermanManual));
  }
}

TEST(VariableSave, DirectoryThatGoesAwayMeanwhileIsCancelled) {
  TransferFixture fixture;
  std::filesystem::create_directory(fixture.bench.home.File("stick"));
  fixture.Choose("stick/OVEN.VAR");
  fixture.on_command = [&](const std::string& command) {
    if (command == "Z2F?") {
      std::filesystem::remove_all(fixture.bench.home.File("stick"));
    }
  };
  fixture.Save();
  EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: Cancelled !");
}

TEST(VariableSave, EscapeWithinItCancelsAndTheOldFileStays) {
  TransferFixture fixture;
  fixture.bench.home.Write("OVEN.VAR", "old");
  fixture.on_command = [&](const std::string& command) {
    if (command == "K23?") {
      fixture.dialog->Quit();
    }
  };
  fixture.Save();
  EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: Cancelled !");
  EXPECT_EQ(fixture.File(), "old");
  EXPECT_TRUE(fixture.dialog->IsOpen());
  EXPECT_EQ(fixture.dialog->State(), AdjState::kIdle);
}

TEST(VariableSave, EndOfTheProgramEndsItWithoutABox) {
  TransferFixture fixture;
  fixture.on_command = [&](const std::string& command) {
    fixture.bench.events.end_is_wanted = command == "K23?";
  };
  fixture.Save();
  EXPECT_THAT(fixture.bench.dialogs.boxes, IsEmpty());
  EXPECT_EQ(fixture.commands.back(), "K23?");
  EXPECT_FALSE(fixture.bench.home.Exists("OVEN.VAR"));
}

TEST(VariableSave, NoStepRunsWithinIt) {
  TransferFixture fixture;
  fixture.on_command = [&](const std::string&) {
    fixture.dialog->Timer_chann();
    fixture.dialog->Mnu_FeCuNi_Click();
  };
  fixture.Save();
  EXPECT_EQ(fixture.commands.size(), 272U);
  EXPECT_EQ(fixture.File(), fixture.ExpectedFile());
}

TEST(VariableLoad, WritesAllButThirtyThreeRegisters) {
  TransferFixture fixture;
  fixture.bench.home.Write("OVEN.VAR", FileOf(1234));
  const std::int16_t before_s = fixture.Register('S', 5);
  const std::int16_t before_i = fixture.Register('I', 0);
  fixture.Forget();
  fixture.Load();
  std::vector<std::string> writes;
  for (const std::string& command : fixture.commands) {
    if (command.ends_with('\r')) {
      writes.push_back(command);
    }
  }
  ASSERT_EQ(writes.size(), 239U);
  EXPECT_EQ(writes.front(), "G20=0\r");
  EXPECT_EQ(writes[1], "G21=4D2\r");
  EXPECT_EQ(writes[32], "I21=4D2\r");
  EXPECT_EQ(writes.back(), "Z2F=0\r");
  EXPECT_EQ(fixture.Register('S', 5), before_s);
  EXPECT_EQ(fixture.Register('I', 0), before_i);
  EXPECT_EQ(fixture.Register('I', 1), 1234);
  EXPECT_EQ(fixture.Boxes(),
            (std::vector<std::string>{"Load: WARNING:  existing data will be overwritten",
                                      "OVEN.VAR: File loaded !"}));
  EXPECT_EQ(fixture.bench.dialogs.boxes.back().Icon, BoxIcon::kInformation);
  EXPECT_EQ(fixture.dialog->State(), AdjState::kReadSensors);
  ASSERT_TRUE(fixture.TickTo(AdjState::kIdle));
  EXPECT_EQ(fixture.Row(7).offset, "1234");
  EXPECT_TRUE(fixture.Values().MenusEnabled);
}

TEST(VariableLoad, AsksFirstAndForAFileThatIsThere) {
  TransferFixture fixture;
  fixture.bench.dialogs.ok = false;
  fixture.Load();
  EXPECT_EQ(fixture.LastBox(), "Load: WARNING:  existing data will be overwritten");
  EXPECT_THAT(fixture.bench.dialogs.file_dialogs, IsEmpty());
  EXPECT_THAT(fixture.commands, IsEmpty());
  EXPECT_EQ(fixture.dialog->State(), AdjState::kIdle);
  fixture.bench.dialogs.ok = true;
  fixture.bench.dialogs.chosen_file.clear();
  fixture.Load();
  ASSERT_EQ(fixture.bench.dialogs.file_dialogs.size(), 1U);
  EXPECT_EQ(fixture.bench.dialogs.file_dialogs[0].Mode, FileMode::kOpen);
  EXPECT_EQ(fixture.bench.dialogs.file_dialogs[0].Title, "Open");
  EXPECT_THAT(fixture.commands, IsEmpty());
  EXPECT_TRUE(fixture.Values().MenusEnabled);
}

TEST(VariableLoad, ShowsLetterRowAndProgressBehindTheHourglass) {
  TransferFixture fixture;
  fixture.bench.home.Write("OVEN.VAR", FileOf(1));
  fixture.bench.events.pointers.clear();
  fixture.Load();
  EXPECT_THAT(fixture.bench.events.pointers, ElementsAre(Pointer::kHourglass, Pointer::kNormal));
  ASSERT_EQ(fixture.shown.size(), 239U);
  EXPECT_EQ(fixture.shown[0].Lbl_Instr, "G00");
  EXPECT_EQ(fixture.shown[238].Lbl_Instr, "Z15");
  EXPECT_EQ(fixture.shown[238].pBar, 99);
  EXPECT_EQ(fixture.bench.events.pumps, 0);
  EXPECT_EQ(fixture.bench.events.repaints, 239);
}

TEST(VariableLoad, FileThatCannotBeReadIsAnError) {
  TransferFixture fixture;
  fixture.Load();
  EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: Error");
  EXPECT_EQ(fixture.bench.dialogs.boxes.back().Icon, BoxIcon::kWarning);
  EXPECT_THAT(fixture.commands, IsEmpty());
  EXPECT_EQ(fixture.dialog->State(), AdjState::kReadSensors);
}

TEST(VariableLoad, TriesEachWriteTwice) {
  for (const LineFailure failure : kLineFailures) {
    for (const std::string at : {"G20=", "K25=", "P2F=", "Z20=", "Z2F="}) {
      TransferFixture fixture;
      fixture.failure = failure;
      fixture.bench.home.Write("OVEN.VAR", FileOf(77));
      fixture.FailNext(at, 1);
      fixture.Load();
      EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: File loaded !") << at << NameOf(failure);
    }
  }
}

// The rest of the group goes on, the groups behind it do not.
TEST(VariableLoad, WriteThatFailsTwiceIsAnError) {
  TransferFixture fixture;
  fixture.bench.home.Write("OVEN.VAR", FileOf(77));
  fixture.FailNext("K25=", 2);
  const std::int16_t before = fixture.Register('L', 0);
  fixture.Load();
  EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: Error");
  EXPECT_NE(fixture.Register('K', 5), 77);
  EXPECT_EQ(fixture.Register('K', 4), 77);
  EXPECT_EQ(fixture.Register('K', 15), 77);
  EXPECT_EQ(fixture.Register('L', 0), before);
}

TEST(VariableLoad, WriteThatFailsInGroupZIsAnErrorToo) {
  TransferFixture fixture;
  fixture.bench.home.Write("OVEN.VAR", FileOf(77));
  fixture.FailNext("Z2F=", 2);
  fixture.Load();
  EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: Error");
}

TEST(VariableLoad, LetterInThePlaceOfANumberIsAnErrorAndWritesNothingThere) {
  TransferFixture fixture;
  std::string file = FileOf(77);
  file.replace(file.find("K\r\n77,77"), 8, "K\r\n77,x7");
  fixture.bench.home.Write("OVEN.VAR", file);
  const std::int16_t before = fixture.Register('K', 1);
  fixture.Load();
  EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: Error");
  EXPECT_EQ(fixture.Register('K', 0), 77) << "what was written before stays";
  EXPECT_EQ(fixture.Register('K', 1), before);
}

TEST(VariableLoad, FileThatEndsBeforeGroupZIsAnError) {
  TransferFixture fixture;
  const std::string file = FileOf(77);
  fixture.bench.home.Write("OVEN.VAR", file.substr(0, file.find("Z\r\n")));
  fixture.Load();
  EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: Error");
  EXPECT_EQ(fixture.Register('W', 15), 77);
}

TEST(VariableLoad, LargeFileIsRefused) {
  TransferFixture fixture;
  fixture.bench.home.Write("OVEN.VAR", std::string(1'000'000, '\n') + FileOf(77));
  fixture.Load();
  EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: Error");
  EXPECT_THAT(fixture.commands, IsEmpty());
}

TEST(VariableLoad, AsksAboutWhatItAffects) {
  TransferFixture fixture;
  fixture.Register('Z', 3) = 2;
  fixture.bench.state.Unit[12] = BenchProgram::Header(3, 1, 1, true);
  fixture.bench.state.SlotFile[12] = "M260314A.OVN";
  std::string file = FileOf(77);
  file.replace(file.find("G\r\n0"), 4, "G\r\n6");
  file.replace(file.find("Z\r\n0,0,0"), 8, "Z\r\n5,2,0");
  fixture.bench.home.Write("OVEN.VAR", file);
  fixture.bench.dialogs.yes = false;
  fixture.Load();
  EXPECT_EQ(fixture.LastBox(),
            "OVEN.VAR: This affects:\n\n    controller 3, which is on (iso)\n    the recording "
            "M260314A.OVN of row 12\n    the file's G00 = 6, which is a command to the instrument\n"
            "    the file's Z01 = 2, which switches a controller\n\nGo on ?");
  EXPECT_TRUE(fixture.bench.dialogs.boxes.back().PresetIsNo);
  EXPECT_THAT(fixture.commands, ElementsAre("Z21?", "Z22?", "Z23?", "Z24?"));
  EXPECT_EQ(fixture.dialog->State(), AdjState::kIdle);
  EXPECT_TRUE(fixture.Values().MenusEnabled);
  fixture.bench.dialogs.yes = true;
  fixture.Load();
  EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: File loaded !");
  EXPECT_EQ(fixture.Register('Z', 1), 2);
}

TEST(VariableLoad, SilentInstrumentIsGivenUpBehindTheGroup) {
  TransferFixture fixture;
  fixture.bench.home.Write("OVEN.VAR", FileOf(77));
  fixture.fails = [](const std::string& command) {
    return command.ends_with('\r') && command[0] >= 'K';
  };
  const auto begin = fixture.bench.clock.Elapsed();
  fixture.Load();
  EXPECT_LT(fixture.bench.clock.Elapsed() - begin, std::chrono::seconds(15));
  EXPECT_EQ(fixture.LastBox(), "OVEN.VAR: Error");
}

// Half a set of parameters is worse than none.
TEST(VariableLoad, IsFinishedWhenTheProgramIsToEnd) {
  TransferFixture fixture;
  fixture.bench.home.Write("OVEN.VAR", FileOf(77));
  fixture.on_command = [&](const std::string& command) {
    fixture.bench.events.end_is_wanted =
        fixture.bench.events.end_is_wanted || command == "K23=4D\r";
  };
  fixture.Load();
  EXPECT_EQ(fixture.Register('W', 15), 77);
  EXPECT_THAT(fixture.Boxes(), ElementsAre("Load: WARNING:  existing data will be overwritten"));
}

TEST(VariableLoad, IsNotFinishedForLongerThanTenSeconds) {
  TransferFixture fixture;
  fixture.bench.home.Write("OVEN.VAR", FileOf(77));
  fixture.takes = std::chrono::milliseconds(95);
  std::chrono::nanoseconds wanted{};
  fixture.on_command = [&](const std::string& command) {
    if (command == "H20=4D\r") {
      fixture.bench.events.end_is_wanted = true;
      wanted = fixture.bench.clock.Elapsed();
    }
  };
  fixture.Load();
  EXPECT_LE(fixture.bench.clock.Elapsed() - wanted, std::chrono::milliseconds(10300));
  EXPECT_NE(fixture.Register('W', 15), 77);
}

TEST(VariableTransfer, FileOfOneInstrumentSuitsAnother) {
  TransferFixture fixture;
  fixture.Save();
  ChannelBench other;
  other.Register('S', 3) = 44;
  other.Register('I', 0) = 115;
  other.OpenIdle();
  other.bench.dialogs.chosen_file = fixture.bench.home.File("OVEN.VAR");
  other.dialog->Mnu_Load_Click([] {});
  EXPECT_EQ(other.LastBox(), "OVEN.VAR: File loaded !");
  int equal = 0;
  for (const char letter : kVariableLetters) {
    for (int row = 0; row < kRegistersPerLetter; ++row) {
      const bool is_loaded = IsLoadable({letter, row, 0});
      equal += is_loaded && other.Register(letter, row) == fixture.Register(letter, row) ? 1 : 0;
    }
  }
  EXPECT_EQ(equal, 239);
  EXPECT_EQ(other.Register('S', 3), 44);
  EXPECT_EQ(other.Register('I', 0), 115);
}

TEST(VariableTransfer, NeedsTheIdleLoop) {
  TransferFixture fixture;
  fixture.dialog->Mnu_FeCuNi_Click();
  fixture.Tick();
  fixture.Save();
  fixture.Load();
  EXPECT_THAT(fixture.bench.dialogs.boxes, IsEmpty());
  EXPECT_THAT(fixture.bench.dialogs.file_dialogs, IsEmpty());
}

}  // namespace
}  // namespace tavrel
