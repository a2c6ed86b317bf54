#include "command/file_command.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>

#include "command/repair.h"
#include "tests/files/recording_room.h"

namespace tavrel {
namespace {

constexpr const char* kName = "M260314A.OVN";
constexpr const char* kJournal = "journal/M260314A.OVN";

// A recording of 20 rows, sealed behind the rows 3, 12 and 20, and the command over it.
struct CommandRoom {
  RecordingRoom room;
  int channels;

  explicit CommandRoom(int wanted_channels = 3) : channels(wanted_channels) {
    UnitRecord unit = HeaderOf(channels);
    unit.UnitRecOn = 1;
    unit.UnitInputName[1].Set("Öl");
    room.Open(1, kName, BytesOf(unit));
    for (int row = 1; row <= 20; ++row) {
      std::array<std::int16_t, kInputs> words{};
      words.fill(static_cast<std::int16_t>(row * 100));
      EXPECT_TRUE(
          room.files.AppendRow(1, std::span(words.data(), static_cast<std::size_t>(channels)), 1));
      if (row == 3 || row == 12) {
        EXPECT_TRUE(room.files.ReopenRecordingFile(1));
      }
    }
    room.files.CloseRecordingFile(1);
  }
  [[nodiscard]] std::string Path() const { return room.directory.File(kName); }
  [[nodiscard]] std::string File() const { return room.directory.Read(kName); }
  void Put(const std::string& bytes) const { room.directory.Write(kName, bytes); }
  [[nodiscard]] CommandResult Verify() const { return RunFileCommand({"verify", Path()}); }
  [[nodiscard]] CommandResult RepairTo(const std::string& name) const {
    return RunFileCommand({"repair", Path(), room.directory.File(name)});
  }
};

TEST(FileCommand, AnIntactRecordingIsStatusZero) {
  for (const int channels : {1, 3, 15}) {
    const CommandRoom room(channels);
    const CommandResult result = room.Verify();
    EXPECT_EQ(result.Status, 0);
    EXPECT_EQ(result.Output, room.Path() + ": intact, 20 rows\n");
    EXPECT_EQ(result.Errors, "");
  }
}

TEST(FileCommand, WithoutAJournalOrWithRowsBehindItsSealNothingIsCovered) {
  const CommandRoom room;
  room.Put(room.File() + "abcdef");
  EXPECT_EQ(room.Verify().Status, 1);
  EXPECT_EQ(room.Verify().Output,
            room.Path() + ": not covered, 21 rows: row 20 behind the last seal\n");
  std::filesystem::remove_all(room.room.directory.File("journal"));
  EXPECT_EQ(room.Verify().Output, room.Path() + ": not covered, 21 rows: there is no journal\n");
}

TEST(FileCommand, ADamagedRecordingSaysBetweenWhichRows) {
  const CommandRoom room;
  std::string file = room.File();
  file[kHeaderBytes + 6 * 7] = '\x77';
  room.Put(file);
  EXPECT_EQ(room.Verify().Status, 2);
  EXPECT_EQ(room.Verify().Output,
            room.Path() + ": damaged, 20 rows: between rows 3 to 11 not as sealed\n");
}

TEST(FileCommand, OfManyFilesTheHighestStatusCounts) {
  const CommandRoom intact;
  const CommandRoom damaged;
  damaged.Put(damaged.File().substr(0, 1050));
  const CommandResult two = RunFileCommand({"verify", damaged.Path(), intact.Path()});
  EXPECT_EQ(two.Status, 2);
  const CommandResult all = RunFileCommand({"verify", "/nowhere/at/all", damaged.Path()});
  EXPECT_EQ(all.Status, 3);
  EXPECT_EQ(all.Errors, "tavrel-file: /nowhere/at/all: No such file or directory\n");
}

TEST(FileCommand, TheLedgerIsToldInWordsAndAsJson) {
  const CommandRoom room;
  const std::string journal = room.room.directory.Read(kJournal);
  const CommandResult words = RunFileCommand({"ledger", room.Path()});
  EXPECT_EQ(words.Status, 0) << words.Errors;
  EXPECT_EQ(words.Output.find(room.Path() + ": 19 sets, complete\n  recorded live: 19\n"), 0U)
      << words.Output;
  const CommandResult json = RunFileCommand({"ledger", "--json", room.Path(), room.Path()});
  EXPECT_EQ(json.Status, 0);
  EXPECT_EQ(std::ranges::count(json.Output, '\n'), 2);
  const auto object = ReadJson(json.Output.substr(0, json.Output.find('\n')));
  ASSERT_TRUE(object);
  EXPECT_EQ(object->Find("sets")->Whole(), 19);
  EXPECT_EQ(object->Find("complete")->Truth(), true);
  EXPECT_EQ(object->Find("lost")->Find("most")->Whole(), 0);
}

TEST(FileCommand, WithoutAJournalThereIsNoLedger) {
  const CommandRoom room;
  std::string file = room.File();
  file[kHeaderBytes + 60] = '\x77';
  room.Put(file);
  EXPECT_EQ(RunFileCommand({"ledger", room.Path()}).Status, 2);
  EXPECT_NE(RunFileCommand({"ledger", "--json", room.Path()}).Output.find("\"damaged\""),
            std::string::npos);
  std::filesystem::remove_all(room.room.directory.File("journal"));
  const CommandResult none = RunFileCommand({"ledger", room.Path()});
  EXPECT_EQ(none.Status, 1);
  EXPECT_EQ(none.Output, room.Path() + ": no ledger: there is no journal\n");
  EXPECT_EQ(RunFileCommand({"ledger"}).Status, 3);
  EXPECT_EQ(RunFileCommand({"ledger", "--yaml", room.Path()}).Status, 3);
}

TEST(FileCommand, ForksAreTold) {
  const CommandRoom left;
  const CommandRoom right;
  right.Put(left.File());
  right.room.directory.Write(kJournal, left.room.directory.Read(kJournal));
  EXPECT_EQ(RunFileCommand({"verify", left.Path(), right.Path()}).Output.find("fork"),
            std::string::npos);
  for (const CommandRoom* each : {&left, &right}) {
    RecordingRoom again;
    again.clock.AdvanceSeconds(each == &left ? 1 : 2);
    again.state.SlotPath[1] = each->room.directory.Path();
    again.state.SlotFile[1] = kName;
    again.files.OpenRecordingFile(1);
    again.files.CloseRecordingFile(1);
  }
  const CommandResult result = RunFileCommand({"verify", left.Path(), right.Path()});
  EXPECT_EQ(result.Status, 0);
  EXPECT_NE(result.Output.find(right.Path() + ": fork: it and " + left.Path() +
                               " went on from one, behind line 4 of the journal"),
            std::string::npos)
      << result.Output;
}

TEST(FileCommand, ARecordingThatIsCutAnywhereIsDamagedAndItsWholeRowsAreKept) {
  const CommandRoom room;
  const std::string whole = room.File();
  for (std::size_t length = 0; length < whole.size(); length += length < 990 ? 37 : 1) {
    room.Put(whole.substr(0, length));
    ASSERT_EQ(room.Verify().Status, 2) << length;
    const CommandResult repaired = room.RepairTo("OUT");
    ASSERT_EQ(repaired.Status, 0) << length << repaired.Output << repaired.Errors;
    const std::string out = room.room.directory.Read("OUT");
    const std::size_t rows = length < 1000 ? 0 : (length - 1000) / 6;
    ASSERT_EQ(out.size(), 1000 + rows * 6) << length;
    ASSERT_EQ(out.substr(1000), whole.substr(1000, rows * 6));
    std::filesystem::remove(room.room.directory.File("OUT"));
  }
}

TEST(FileCommand, OfEveryFlippedBitAllRowsAreKept) {
  const CommandRoom room;
  const std::string whole = room.File();
  StoredRecording recording = ReadRecording(room.Path());
  for (std::size_t bit = 0; bit < whole.size() * 8; ++bit) {
    recording.Bytes = whole;
    recording.Bytes[bit / 8] = static_cast<char>(whole[bit / 8] ^ (1 << (bit % 8)));
    ASSERT_EQ(CheckRecording(recording.File(), recording.Journal).Verdict, Verdict::kDamaged);
    const RepairedRecording repaired = Repair(recording);
    ASSERT_TRUE(repaired.Bytes) << bit;
    ASSERT_EQ(repaired.Bytes->substr(1000), recording.Bytes.substr(1000)) << bit;
    UnitRecord unit{};
    std::memcpy(&unit, repaired.Bytes->data(), sizeof unit);
    ASSERT_TRUE(IsTavrelHeader(unit)) << bit;
    ASSERT_EQ(unit.UnitChannels, 3) << bit;
  }
}

TEST(FileCommand, RepairWritesOverNothing) {
  const CommandRoom room;
  room.room.directory.Write("OUT", "mine");
  EXPECT_EQ(room.RepairTo("OUT").Status, 3);
  EXPECT_EQ(room.RepairTo(kName).Status, 3);
  EXPECT_EQ(room.room.directory.Read("OUT"), "mine");
  EXPECT_EQ(room.Verify().Status, 0);
}

TEST(FileCommand, RepairTellsWhatWasLeftOut) {
  const CommandRoom room;
  room.Put(room.File() + "abc");
  const CommandResult result = room.RepairTo("OUT");
  EXPECT_NE(result.Output.find("left out: 3 bytes of a torn row at the end"), std::string::npos);
  EXPECT_NE(result.Output.find("rows kept: 20"), std::string::npos);
}

TEST(FileCommand, RepairWithoutJournalOrHeaderGivesUp) {
  const CommandRoom room;
  room.Put(std::string(3000, '\xFF'));
  room.room.directory.Write(kJournal, "no journal");
  EXPECT_EQ(room.RepairTo("OUT").Status, 2);
  EXPECT_FALSE(room.room.directory.Exists("OUT"));
}

TEST(FileCommand, AnyBytesAreToldClearly) {
  const RecordingRoom room;
  for (const std::string& bytes : {std::string(), std::string("x"), std::string(5000, '\xFF'),
                                   std::string(1000, '\0'), std::string("{\"n\":1}\n")}) {
    room.directory.Write("ANY", bytes);
    for (const char* command : {"info", "verify"}) {
      const CommandResult result = RunFileCommand({command, room.directory.File("ANY")});
      EXPECT_EQ(result.Status, 3);
      EXPECT_EQ(result.Errors,
                "tavrel-file: " + room.directory.File("ANY") + ": is no recording\n");
    }
  }
  EXPECT_EQ(RunFileCommand({"verify", room.directory.Path()}).Status, 3);
}

TEST(FileCommand, InfoSaysWhatTheHeaderAndTheJournalSay) {
  const CommandRoom room;
  const CommandResult result = RunFileCommand({"info", room.Path()});
  EXPECT_EQ(result.Status, 0);
  for (const char* text : {"rows: 20", "input 1: Öl", "last seal: 20 rows", "instrument: 1"}) {
    EXPECT_NE(result.Output.find(text), std::string::npos) << text << result.Output;
  }
}

TEST(FileCommand, ExportsATable) {
  for (const int channels : {1, 2, 15}) {
    const CommandRoom room(channels);
    const std::string text = RunFileCommand({"export", room.Path()}).Output;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 21);
    EXPECT_TRUE(text.starts_with("row,seconds,input 1 Öl")) << text;
    const auto values = [&](const std::string& value, const std::string& separator) {
      std::string all;
      for (int column = 0; column < channels; ++column) {
        all += separator + value;
      }
      return all;
    };
    EXPECT_NE(text.find("\n0,0" + values("5.00", ",") + "\n1,0" + values("10.00", ",") + "\n2,"),
              std::string::npos)
        << text;
    const std::string comma = RunFileCommand({"export", "--decimal", "comma", room.Path()}).Output;
    EXPECT_NE(comma.find("\n1;0" + values("10,00", ";") + "\n"), std::string::npos);
  }
}

TEST(FileCommand, ExportsSmallAndNegativeValuesAndLeavesOutWhatIsNone) {
  const CommandRoom room(3);
  std::string file = room.File().substr(0, kHeaderBytes) + Words({-1, -32768, 32767, 0, -19, 20});
  room.Put(file);
  const std::string text = RunFileCommand({"export", room.Path()}).Output;
  EXPECT_NE(text.find("\n0,0,-0.05,,1638.35\n1,0,0.00,-0.95,1.00\n"), std::string::npos) << text;
  const std::string json = RunFileCommand({"export", "--format", "json", room.Path()}).Output;
  EXPECT_NE(json.find("\"rows\":[[0,0,-0.05,null,1638.35],[1,0,0.0,-0.95,1.0]]}\n"),
            std::string::npos)
      << json;
}

TEST(FileCommand, ExportsJsonALineForEachFile) {
  const CommandRoom room(2);
  const std::string text =
      RunFileCommand({"export", "--format", "json", room.Path(), room.Path()}).Output;
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2);
  const auto read = ReadJson(text.substr(0, text.find('\n')));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->Find("rows")->Elements()->size(), 20U);
  EXPECT_EQ(read->Find("columns")->Elements()->at(0).Find("input")->Whole(), 1);
}

TEST(FileCommand, ExportQuotesNamesThatWouldBreakTheTable) {
  const CommandRoom room(1);
  std::string file = room.File();
  file.replace(220, 5, "a,\"b\"");
  room.Put(file);
  const std::string text = RunFileCommand({"export", room.Path()}).Output;
  EXPECT_TRUE(text.starts_with("row,seconds,\"input 1 a,\"\"b\"\"")) << text;
}

TEST(FileCommand, ExportRefusesOptionsAndHeadersThatAreNone) {
  const CommandRoom room(1);
  for (const std::vector<std::string>& options :
       {std::vector<std::string>{"--format", "xml"}, {"--decimal"}, {"--loud", "x"}}) {
    std::vector<std::string> arguments{"export"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.push_back(room.Path());
    EXPECT_EQ(RunFileCommand(arguments).Status, 3);
  }
  EXPECT_EQ(RunFileCommand({"export"}).Status, 3);
  room.Put(std::string(1100, '\xFF'));
  EXPECT_EQ(RunFileCommand({"export", room.Path()}).Status, 3);
}

TEST(FileCommand, WrongUsageIsStatusThreeAndSaysHow) {
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{},
                                                    {"sing"},
                                                    {"verify"},
                                                    {"verify", "--loud", "x"},
                                                    {"repair", "x"}}) {
    const CommandResult result = RunFileCommand(arguments);
    EXPECT_EQ(result.Status, 3);
    EXPECT_NE(result.Errors.find("usage: tavrel-file info FILE..."), std::string::npos);
  }
  EXPECT_EQ(RunFileCommand({"--version"}).Output, "tavrel-file 6.1\n");
  EXPECT_EQ(RunFileCommand({"--help"}).Status, 0);
}

TEST(FileCommand, TheExecutableSaysTheSame) {
  const CommandRoom room;
  const auto status = [&](const std::string& arguments) {
    const std::string line = std::string(TAVREL_FILE_PROGRAM) + " " + arguments + " > " +
                             room.room.directory.File("said");
    return WEXITSTATUS(std::system(line.c_str()));
  };
  EXPECT_EQ(status("verify " + room.Path()), 0);
  EXPECT_EQ(room.room.directory.Read("said"), room.Path() + ": intact, 20 rows\n");
  room.Put(room.File().substr(0, 1030));
  EXPECT_EQ(status("verify " + room.Path()), 2);
  EXPECT_EQ(status("--help"), 0);
}

}  // namespace
}  // namespace tavrel
