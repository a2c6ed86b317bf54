#include "command/file_command.h"

#include <gtest/gtest.h>
#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "command/repair.h"
#include "tests/files/recording_fixture.h"

namespace tavrel {
namespace {

constexpr const char* kName = "M260314A.OVN";
constexpr const char* kJournal = "journal/M260314A.OVN";

// A recording of 20 rows, sealed behind the rows 3, 12 and 20, and the command over it.
struct CommandFixture {
  RecordingFixture fixture;
  int channels;

  explicit CommandFixture(int wanted_channels = 3) : channels(wanted_channels) {
    UnitRecord unit = HeaderOf(channels);
    unit.UnitRecOn = 1;
    unit.UnitInputName[1].Set("Öl");
    fixture.Open(1, kName, BytesOf(unit));
    for (int row = 1; row <= 20; ++row) {
      std::array<std::int16_t, kInputs> words{};
      words.fill(static_cast<std::int16_t>(row * 100));
      EXPECT_TRUE(fixture.files.AppendRow(
          1, std::span(words.data(), static_cast<std::size_t>(channels)), 1));
      if (row == 3 || row == 12) {
        EXPECT_TRUE(fixture.files.ReopenRecordingFile(1));
      }
    }
    fixture.files.CloseRecordingFile(1);
  }
  [[nodiscard]] std::string Path() const { return fixture.directory.File(kName); }
  [[nodiscard]] std::string File() const { return fixture.directory.Read(kName); }
  void Put(const std::string& bytes) const { fixture.directory.Write(kName, bytes); }
  [[nodiscard]] CommandResult Verify() const { return RunFileCommand({"verify", Path()}); }
  [[nodiscard]] CommandResult RepairTo(const std::string& name) const {
    return RunFileCommand({"repair", Path(), fixture.directory.File(name)});
  }
};

TEST(FileCommand, AnIntactRecordingIsStatusZero) {
  for (const int channels : {1, 3, 15}) {
    const CommandFixture fixture(channels);
    const CommandResult result = fixture.Verify();
    EXPECT_EQ(result.Status, 0);
    EXPECT_EQ(result.Output, fixture.Path() + ": intact, 20 rows\n");
    EXPECT_EQ(result.Errors, "");
  }
}

TEST(FileCommand, WithoutAJournalOrWithRowsBehindItsSealNothingIsCovered) {
  const CommandFixture fixture;
  fixture.Put(fixture.File() + "abcdef");
  EXPECT_EQ(fixture.Verify().Status, 1);
  EXPECT_EQ(fixture.Verify().Output,
            fixture.Path() + ": not covered, 21 rows: row 20 behind the last seal\n");
  std::filesystem::remove_all(fixture.fixture.directory.File("journal"));
  EXPECT_EQ(fixture.Verify().Output,
            fixture.Path() + ": not covered, 21 rows: there is no journal\n");
}

TEST(FileCommand, ADamagedRecordingSaysBetweenWhichRows) {
  const CommandFixture fixture;
  std::string file = fixture.File();
  file[kHeaderBytes + 6 * 7] = '\x77';
  fixture.Put(file);
  EXPECT_EQ(fixture.Verify().Status, 2);
  EXPECT_EQ(fixture.Verify().Output,
            fixture.Path() + ": damaged, 20 rows: between rows 3 to 11 not as sealed\n");
}

TEST(FileCommand, OfManyFilesTheHighestStatusCounts) {
  const CommandFixture intact;
  const CommandFixture damaged;
  damaged.Put(damaged.File().substr(0, 1050));
  const CommandResult two = RunFileCommand({"verify", damaged.Path(), intact.Path()});
  EXPECT_EQ(two.Status, 2);
  const CommandResult all = RunFileCommand({"verify", "/nowhere/at/all", damaged.Path()});
  EXPECT_EQ(all.Status, 3);
  EXPECT_EQ(all.Errors, "tavrel-file: /nowhere/at/all: No such file or directory\n");
}

TEST(FileCommand, TheLedgerIsToldInWordsAndAsJson) {
  const CommandFixture fixture;
  const std::string journal = fixture.fixture.directory.Read(kJournal);
  const CommandResult words = RunFileCommand({"ledger", fixture.Path()});
  EXPECT_EQ(words.Status, 0) << words.Errors;
  EXPECT_EQ(words.Output.find(fixture.Path() + ": 19 sets, complete\n  recorded live: 19\n"), 0U)
      << words.Output;
  const CommandResult json = RunFileCommand({"ledger", "--json", fixture.Path(), fixture.Path()});
  EXPECT_EQ(json.Status, 0);
  EXPECT_EQ(std::ranges::count(json.Output, '\n'), 2);
  const auto object = ReadJson(json.Output.substr(0, json.Output.find('\n')));
  ASSERT_TRUE(object);
  EXPECT_EQ(object->Find("sets")->Whole(), 19);
  EXPECT_EQ(object->Find("complete")->Truth(), true);
  EXPECT_EQ(object->Find("lost")->Find("most")->Whole(), 0);
}

TEST(FileCommand, WithoutAJournalThereIsNoLedger) {
  const CommandFixture fixture;
  std::string file = fixture.File();
  file[kHeaderBytes + 60] = '\x77';
  fixture.Put(file);
  EXPECT_EQ(RunFileCommand({"ledger", fixture.Path()}).Status, 2);
  EXPECT_NE(RunFileCommand({"ledger", "--json", fixture.Path()}).Output.find("\"damaged\""),
            std::string::npos);
  std::filesystem::remove_all(fixture.fixture.directory.File("journal"));
  const CommandResult none = RunFileCommand({"ledger", fixture.Path()});
  EXPECT_EQ(none.Status, 1);
  EXPECT_EQ(none.Output, fixture.Path() + ": no ledger: there is no journal\n");
  EXPECT_EQ(RunFileCommand({"ledger"}).Status, 3);
  EXPECT_EQ(RunFileCommand({"ledger", "--yaml", fixture.Path()}).Status, 3);
}

TEST(FileCommand, ForksAreTold) {
  const CommandFixture left;
  const CommandFixture right;
  right.Put(left.File());
  right.fixture.directory.Write(kJournal, left.fixture.directory.Read(kJournal));
  EXPECT_EQ(RunFileCommand({"verify", left.Path(), right.Path()}).Output.find("fork"),
            std::string::npos);
  for (const CommandFixture* each : {&left, &right}) {
    RecordingFixture again;
    again.clock.AdvanceSeconds(each == &left ? 1 : 2);
    again.state.SlotPath[1] = each->fixture.directory.Path();
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
  const CommandFixture fixture;
  const std::string whole = fixture.File();
  for (std::size_t length = 0; length < whole.size(); length += length < 990 ? 37 : 1) {
    fixture.Put(whole.substr(0, length));
    ASSERT_EQ(fixture.Verify().Status, 2) << length;
    const CommandResult repaired = fixture.RepairTo("OUT");
    ASSERT_EQ(repaired.Status, 0) << length << repaired.Output << repaired.Errors;
    const std::string out = fixture.fixture.directory.Read("OUT");
    const std::size_t rows = length < 1000 ? 0 : (length - 1000) / 6;
    ASSERT_EQ(out.size(), 1000 + rows * 6) << length;
    ASSERT_EQ(out.substr(1000), whole.substr(1000, rows * 6));
    std::filesystem::remove(fixture.fixture.directory.File("OUT"));
  }
}

TEST(FileCommand, OfEveryFlippedBitAllRowsAreKept) {
  const CommandFixture fixture;
  const std::string whole = fixture.File();
  StoredRecording recording = ReadRecording(fixture.Path());
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
  const CommandFixture fixture;
  fixture.fixture.directory.Write("OUT", "mine");
  EXPECT_EQ(fixture.RepairTo("OUT").Status, 3);
  EXPECT_EQ(fixture.RepairTo(kName).Status, 3);
  EXPECT_EQ(fixture.fixture.directory.Read("OUT"), "mine");
  EXPECT_EQ(fixture.Verify().Status, 0);
}

TEST(FileCommand, RepairTellsWhatWasLeftOut) {
  const CommandFixture fixture;
  fixture.Put(fixture.File() + "abc");
  const CommandResult result = fixture.RepairTo("OUT");
  EXPECT_NE(result.Output.find("left out: 3 bytes of a torn row at the end"), std::string::npos);
  EXPECT_NE(result.Output.find("rows kept: 20"), std::string::npos);
}

TEST(FileCommand, RepairWithoutJournalOrHeaderGivesUp) {
  const CommandFixture fixture;
  fixture.Put(std::string(3000, '\xFF'));
  fixture.fixture.directory.Write(kJournal, "no journal");
  EXPECT_EQ(fixture.RepairTo("OUT").Status, 2);
  EXPECT_FALSE(fixture.fixture.directory.Exists("OUT"));
}

TEST(FileCommand, AnyBytesAreToldClearly) {
  const RecordingFixture fixture;
  for (const std::string& bytes : {std::string(), std::string("x"), std::string(5000, '\xFF'),
                                   std::string(1000, '\0'), std::string("{\"n\":1}\n")}) {
    fixture.directory.Write("ANY", bytes);
    for (const char* command : {"info", "verify"}) {
      const CommandResult result = RunFileCommand({command, fixture.directory.File("ANY")});
      EXPECT_EQ(result.Status, 3);
      EXPECT_EQ(result.Errors,
                "tavrel-file: " + fixture.directory.File("ANY") + ": is no recording\n");
    }
  }
  EXPECT_EQ(RunFileCommand({"verify", fixture.directory.Path()}).Status, 3);
}

TEST(FileCommand, InfoSaysWhatTheHeaderAndTheJournalSay) {
  const CommandFixture fixture;
  const CommandResult result = RunFileCommand({"info", fixture.Path()});
  EXPECT_EQ(result.Status, 0);
  for (const char* text : {"rows: 20", "input 1: Öl", "last seal: 20 rows", "instrument: 1"}) {
    EXPECT_NE(result.Output.find(text), std::string::npos) << text << result.Output;
  }
}

TEST(FileCommand, ExportsATable) {
  for (const int channels : {1, 2, 15}) {
    const CommandFixture fixture(channels);
    const std::string text = RunFileCommand({"export", fixture.Path()}).Output;
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
    const std::string comma =
        RunFileCommand({"export", "--decimal", "comma", fixture.Path()}).Output;
    EXPECT_NE(comma.find("\n1;0" + values("10,00", ";") + "\n"), std::string::npos);
  }
}

TEST(FileCommand, ExportsSmallAndNegativeValuesAndLeavesOutWhatIsNone) {
  const CommandFixture fixture(3);
  std::string file =
      fixture.File().substr(0, kHeaderBytes) + Words({-1, -32768, 32767, 0, -19, 20});
  fixture.Put(file);
  const std::string text = RunFileCommand({"export", fixture.Path()}).Output;
  EXPECT_NE(text.find("\n0,0,-0.05,,1638.35\n1,0,0.00,-0.95,1.00\n"), std::string::npos) << text;
  const std::string json = RunFileCommand({"export", "--format", "json", fixture.Path()}).Output;
  EXPECT_NE(json.find("\"rows\":[[0,0,-0.05,null,1638.35],[1,0,0.0,-0.95,1.0]]}\n"),
            std::string::npos)
      << json;
}

TEST(FileCommand, ExportsJsonALineForEachFile) {
  const CommandFixture fixture(2);
  const std::string text =
      RunFileCommand({"export", "--format", "json", fixture.Path(), fixture.Path()}).Output;
  EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 2);
  const auto read = ReadJson(text.substr(0, text.find('\n')));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->Find("rows")->Elements()->size(), 20U);
  EXPECT_EQ(read->Find("columns")->Elements()->at(0).Find("input")->Whole(), 1);
}

TEST(FileCommand, ExportQuotesNamesThatWouldBreakTheTable) {
  const CommandFixture fixture(1);
  std::string file = fixture.File();
  file.replace(220, 5, "a,\"b\"");
  fixture.Put(file);
  const std::string text = RunFileCommand({"export", fixture.Path()}).Output;
  EXPECT_TRUE(text.starts_with("row,seconds,\"input 1 a,\"\"b\"\"")) << text;
}

TEST(FileCommand, ExportRefusesOptionsAndHeadersThatAreNone) {
  const CommandFixture fixture(1);
  for (const std::vector<std::string>& options :
       {std::vector<std::string>{"--format", "xml"}, {"--decimal"}, {"--loud", "x"}}) {
    std::vector<std::string> arguments{"export"};
    arguments.insert(arguments.end(), options.begin(), options.end());
    arguments.push_back(fixture.Path());
    EXPECT_EQ(RunFileCommand(arguments).Status, 3);
  }
  EXPECT_EQ(RunFileCommand({"export"}).Status, 3);
  fixture.Put(std::string(1100, '\xFF'));
  EXPECT_EQ(RunFileCommand({"export", fixture.Path()}).Status, 3);
}

// A journal whose lines have times of their own, over the rows of a fixture.
struct TimedJournal {
  JournalChain chain;
  std::string text;

  explicit TimedJournal(int interval = 10) { Add({}, "begin", {{"interval", interval}}); }
  void Add(const WallTime& time, const std::string& kind, const JsonValue::Members& fields) {
    text += chain.Line({time, 1, "boot"}, kind, fields);
  }
  void Start(const WallTime& time, int rows) { Add(time, "start", {{"rows", rows}}); }
};

// The fields of the second column, without its name.
std::vector<std::string> Times(const std::string& table, char separator = ',') {
  std::vector<std::string> times;
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t begin = line.find(separator) + 1;
    times.push_back(line.substr(begin, line.find(separator, begin) - begin));
  }
  return times;
}

// A fixture of 20 rows with an interval in tens of seconds.
struct TimeFixture : CommandFixture {
  explicit TimeFixture(int interval = 1) : CommandFixture(2) {
    std::string file = File();
    file.replace(44, 2, {static_cast<char>(interval), '\0'});
    file.replace(180, 2, 2, '\0');  // not a fast instrument
    Put(file);
  }
  [[nodiscard]] CommandResult Export(const TimedJournal& journal, const std::string& time) const {
    fixture.directory.Write(kJournal, journal.text);
    return RunFileCommand({"export", "--time", time, Path()});
  }
};

TEST(FileCommand, ExportsTheTimeOfDayThatTheJournalAnchors) {
  const TimeFixture fixture;
  TimedJournal journal;
  journal.Start({2026, 3, 14, 23, 59, 35, 60}, 0);
  const auto local = Times(fixture.Export(journal, "local").Output);
  ASSERT_EQ(local.size(), 21U);
  EXPECT_EQ(local[0], "local");
  EXPECT_EQ(local[1], "2026-03-14T23:59:35+01:00");
  EXPECT_EQ(local[2], "2026-03-14T23:59:35+01:00");
  EXPECT_EQ(local[3], "2026-03-14T23:59:45+01:00");
  EXPECT_EQ(local[5], "2026-03-15T00:00:05+01:00");
  EXPECT_EQ(local[20], "2026-03-15T00:02:35+01:00");
  const auto utc = Times(fixture.Export(journal, "utc").Output);
  EXPECT_EQ(utc[0], "utc");
  EXPECT_EQ(utc[20], "2026-03-14T23:02:35Z");
  EXPECT_EQ(Times(fixture.Export(journal, "seconds").Output)[20], "180");
}

TEST(FileCommand, ExportsTheTimeOfDayWithACommaAndInJson) {
  const TimeFixture fixture;
  TimedJournal journal;
  journal.Start({2026, 3, 14, 10, 0, 0, -210}, 0);
  fixture.fixture.directory.Write(kJournal, journal.text);
  const std::string comma =
      RunFileCommand({"export", "--time", "local", "--decimal", "comma", fixture.Path()}).Output;
  EXPECT_EQ(Times(comma, ';')[3], "2026-03-14T10:00:10-03:30");
  const std::string json =
      RunFileCommand({"export", "--time", "utc", "--format", "json", fixture.Path()}).Output;
  EXPECT_NE(json.find("\"rows\":[[0,\"2026-03-14T13:30:00Z\",5.0,5.0],"), std::string::npos)
      << json;
}

TEST(FileCommand, ExportFollowsAStopAndAStartAndSetsThatAreLost) {
  const TimeFixture fixture;
  TimedJournal journal;
  journal.Start({2026, 3, 14, 10, 0, 0, 60}, 0);
  journal.Add({2026, 3, 14, 10, 5, 0, 60}, "lost", {{"before", 5}, {"sets", 3}, {"exact", true}});
  journal.Start({2026, 3, 15, 8, 0, 0, 60}, 7);
  const auto times = Times(fixture.Export(journal, "local").Output);
  EXPECT_EQ(times.at(1 + 4), "2026-03-14T10:00:30+01:00");
  EXPECT_EQ(times.at(1 + 5), "2026-03-14T10:01:10+01:00");
  EXPECT_EQ(times.at(1 + 7), "2026-03-15T08:00:00+01:00");
  EXPECT_EQ(times.at(1 + 9), "2026-03-15T08:00:20+01:00");
}

TEST(FileCommand, ExportGoesOverAChangeOfSummerTime) {
  const TimeFixture fixture(36);
  TimedJournal journal(360);
  journal.Start({2026, 10, 25, 2, 50, 0, 120}, 0);
  journal.Add({2026, 10, 25, 2, 10, 0, 60}, "silent", {{"for", 5}});
  const auto times = Times(fixture.Export(journal, "local").Output);
  EXPECT_EQ(times.at(1 + 2), "2026-10-25T02:56:00+02:00");
  EXPECT_EQ(times.at(1 + 3), "2026-10-25T02:02:00+01:00");
  EXPECT_EQ(Times(fixture.Export(journal, "utc").Output).at(1 + 3), "2026-10-25T01:02:00Z");
  TimedJournal silent_for_hours(360);
  silent_for_hours.Start({2026, 3, 29, 1, 50, 0, 60}, 0);
  silent_for_hours.Add({2026, 3, 29, 4, 2, 0, 120}, "silent", {{"for", 5}});
  const auto late = Times(fixture.Export(silent_for_hours, "local").Output);
  EXPECT_EQ(late.at(1 + 12), "2026-03-29T02:56:00+01:00");
  EXPECT_EQ(late.at(1 + 13), "2026-03-29T04:02:00+02:00") << "nobody knows when it was changed";
}

TEST(FileCommand, AClockThatIsSetLaterMovesNoRow) {
  const TimeFixture fixture;
  TimedJournal journal;
  journal.Start({2026, 3, 14, 10, 0, 0, 60}, 0);
  journal.Add({2031, 7, 1, 0, 0, 0, 120}, "silent", {{"for", 5}});
  journal.Add({2019, 7, 1, 0, 0, 0, 60}, "back", {{"held", 0}});
  EXPECT_EQ(Times(fixture.Export(journal, "local").Output).at(1 + 19), "2026-03-14T10:03:00+01:00");
}

TEST(FileCommand, ExportRefusesATimeOfDayThatTheJournalDoesNotAnchor) {
  const TimeFixture fixture;
  const auto is_refused = [&](const TimedJournal& journal, const std::string& row) {
    for (const char* time : {"local", "utc"}) {
      const CommandResult result = fixture.Export(journal, time);
      EXPECT_EQ(result.Status, 3);
      EXPECT_EQ(result.Output, "");
      EXPECT_EQ(result.Errors, "tavrel-file: " + fixture.Path() +
                                   ": the journal does not say at which time row " + row +
                                   " was recorded\n");
    }
    EXPECT_EQ(fixture.Export(journal, "seconds").Status, 0);
  };
  is_refused(TimedJournal(), "0");
  TimedJournal late;
  late.Start({2026, 3, 14, 10, 0, 0, 60}, 5);
  is_refused(late, "0");
  TimedJournal lost;
  lost.Start({2026, 3, 14, 10, 0, 0, 60}, 0);
  lost.Add({}, "lost", {{"before", 12}, {"sets", 1}, {"exact", true}});
  EXPECT_EQ(fixture.Export(lost, "utc").Status, 0);
  lost.Add({}, "lost", {{"before", 15}, {"sets", JsonValue()}, {"exact", false}});
  is_refused(lost, "15");
  TimedJournal other_interval(20);
  other_interval.Start({2026, 3, 14, 10, 0, 0, 60}, 0);
  is_refused(other_interval, "0");
  TimedJournal damaged;
  damaged.Start({2026, 3, 14, 10, 0, 0, 60}, 0);
  damaged.text.replace(damaged.text.find("10:00"), 5, "11:00");
  is_refused(damaged, "0");
  std::filesystem::remove_all(fixture.fixture.directory.File("journal"));
  EXPECT_EQ(RunFileCommand({"export", "--time", "utc", fixture.Path()}).Status, 3);
  EXPECT_EQ(RunFileCommand({"export", "--time", "zulu", fixture.Path()}).Status, 3);
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

TEST(FileCommand, ThePythonReaderSaysTheSame) {
  for (const int channels : {1, 4, 15}) {
    const CommandFixture fixture(channels);
    const auto python = [&] {
      const std::string line = TAVREL_PYTHON " -B -m tavrel verify " + fixture.Path() + " > " +
                               fixture.fixture.directory.File("said");
      return WEXITSTATUS(std::system(line.c_str()));
    };
    EXPECT_EQ(python(), 0);
    EXPECT_EQ(fixture.fixture.directory.Read("said"), fixture.Path() + ": intact, 20 rows\n");
    std::string file = fixture.File();
    file[kHeaderBytes + 2 * static_cast<std::size_t>(channels) * 7] = '\x77';
    fixture.Put(file);
    EXPECT_EQ(python(), 2);
    EXPECT_EQ(fixture.fixture.directory.Read("said"),
              fixture.Path() + ": damaged, 20 rows: not as sealed between the rows 3 and 11\n");
  }
}

TEST(FileCommand, TheExecutableSaysTheSame) {
  const CommandFixture fixture;
  const auto status = [&](const std::string& arguments) {
    const std::string line = std::string(TAVREL_FILE_PROGRAM) + " " + arguments + " > " +
                             fixture.fixture.directory.File("said");
    return WEXITSTATUS(std::system(line.c_str()));
  };
  EXPECT_EQ(status("verify " + fixture.Path()), 0);
  EXPECT_EQ(fixture.fixture.directory.Read("said"), fixture.Path() + ": intact, 20 rows\n");
  fixture.Put(fixture.File().substr(0, 1030));
  EXPECT_EQ(status("verify " + fixture.Path()), 2);
  EXPECT_EQ(status("--help"), 0);
}

}  // namespace
}  // namespace tavrel
