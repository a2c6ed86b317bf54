#include "files/recording_journals.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>

#include "files/row_times.h"
#include "link/registers.h"
#include "tests/files/journal_fixture.h"
#include "tests/platform/calls_of_files.h"

namespace tavrel {
namespace {

TEST(RecordingJournals, ARecordingWithoutAJournalBeginsOne) {
  for (const int slot : {1, 7, 12}) {
    JournalFixture fixture(slot);
    fixture.Begin(slot);
    EXPECT_EQ(fixture.Kinds(), Kinds{"begin"});
    EXPECT_EQ(fixture.Check().Verdict, Verdict::kNotCovered) << "until the next flush";
    fixture.fixture.engine.FlushFiles();
    EXPECT_EQ(fixture.Kinds(), (Kinds{"begin", "seal"}));
    const JournalEntry begin = fixture.Last("begin");
    EXPECT_EQ(begin.Text("id").size(), 32U);
    EXPECT_EQ(begin.Text("file"), kName);
    EXPECT_EQ(begin.Text("why"), "there was none");
    EXPECT_EQ(begin.Text("line"), "direct");
    EXPECT_EQ(begin.Number("instrument"), 1);
    EXPECT_EQ(begin.Fields.Find("inputs")->Elements()->size(), static_cast<std::size_t>(slot));
    EXPECT_EQ(begin.Text("time"), "2026-03-14T10:00:00+01:00");
    EXPECT_EQ(fixture.Check().Verdict, Verdict::kIntact);
  }
}

TEST(RecordingJournals, AFileThatIsOnlyLookedAtOrEditedStaysWithoutOne) {
  JournalFixture fixture(kViewedFile);
  fixture.fixture.Open(kViewedFile, kName, BytesOf(HeaderOf(2)));
  fixture.fixture.state.Unit[kViewedFile].UnitYmax = 7;
  fixture.fixture.files.WriteHeader(kViewedFile);
  fixture.fixture.files.CloseRecordingFile(kViewedFile);
  EXPECT_FALSE(fixture.fixture.directory.Exists("journal"));
}

TEST(RecordingJournals, AFlushSealsTheRowsThatHaveCome) {
  JournalFixture fixture;
  fixture.Begin();
  for (int row = 0; row < 5; ++row) {
    ASSERT_TRUE(fixture.Append(row));
  }
  EXPECT_EQ(fixture.Check().Verdict, Verdict::kNotCovered);
  fixture.fixture.engine.FlushFiles();
  EXPECT_EQ(fixture.Check().Verdict, Verdict::kIntact);
  EXPECT_EQ(fixture.Check().CoveredRows, 5);
  const std::string journal = fixture.Journal();
  fixture.fixture.engine.FlushFiles();
  EXPECT_EQ(fixture.Journal(), journal) << "nothing new, no line";
}

TEST(RecordingJournals, OpeningAFileWaitsForNoDisk) {
  JournalFixture fixture;
  std::filesystem::create_directory(fixture.fixture.directory.File("journal"));
  const CallsOfFiles calls({});
  fixture.Begin();
  EXPECT_EQ(CallsOfFiles::Syncs(), 0) << "a new journal";
  fixture.fixture.files.CloseRecordingFile(fixture.slot);
  EXPECT_EQ(CallsOfFiles::Syncs(), 1) << "the recording; no row has come";
  fixture.fixture.Name(fixture.slot, kName);
  fixture.fixture.files.OpenRecordingFile(fixture.slot);
  EXPECT_EQ(CallsOfFiles::Syncs(), 1) << "one that goes on";
}

TEST(RecordingJournals, TheEndOfTheProgramSeals) {
  JournalFixture fixture;
  fixture.Begin();
  ASSERT_TRUE(fixture.Append(1));
  fixture.fixture.files.CloseRecordingFile(fixture.slot);
  EXPECT_EQ(fixture.Check().Verdict, Verdict::kIntact);
}

TEST(RecordingJournals, AHeaderIsAnnouncedWithWhatChanges) {
  for (const int input : {1, 15}) {
    JournalFixture fixture;
    fixture.Begin();
    UnitRecord& unit = fixture.fixture.state.Unit[fixture.slot];
    unit.UnitColour[input] = 9;
    unit.UnitInputName[input].Set("Öl");
    unit.UnitYmax = 300;
    fixture.fixture.files.WriteHeader(fixture.slot);
    EXPECT_EQ(fixture.Kinds(), (Kinds{"begin", "header", "seal"}));
    const JournalEntry header = fixture.Last("header");
    const JsonValue* const changes = header.Fields.Find("changes");
    ASSERT_NE(changes, nullptr);
    const std::string text = JsonText(*changes);
    EXPECT_NE(text.find("{\"field\":\"UnitColour\",\"index\":" + std::to_string(input)),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("\"new\":\"Öl\""), std::string::npos) << text;
    EXPECT_NE(text.find("\"field\":\"UnitYmax\",\"old\":"), std::string::npos) << text;
    EXPECT_EQ(fixture.Check().Verdict, Verdict::kIntact);
  }
}

TEST(RecordingJournals, TheViewersEditIsWrittenIntoAnExistingJournal) {
  JournalFixture fixture;
  fixture.Begin();
  fixture.fixture.files.CloseRecordingFile(fixture.slot);
  fixture.fixture.state.SlotFile[fixture.slot].clear();
  fixture.fixture.Name(kViewedFile, kName);
  fixture.fixture.files.OpenRecordingFile(kViewedFile);
  const std::string before = fixture.Journal();
  fixture.fixture.files.CloseRecordingFile(kViewedFile);
  EXPECT_EQ(fixture.Journal(), before) << "looking writes nothing";
  fixture.fixture.files.OpenRecordingFile(kViewedFile);
  fixture.fixture.state.Unit[kViewedFile].UnitYmax = 77;
  fixture.fixture.files.WriteHeader(kViewedFile);
  EXPECT_EQ(fixture.Kinds(), (Kinds{"begin", "seal", "open", "header", "seal"}));
  EXPECT_EQ(fixture.Check().Verdict, Verdict::kIntact);
}

TEST(RecordingJournals, RowsBeyondTheLastSealAreAdoptedByTheNextStart) {
  JournalFixture fixture;
  fixture.Begin();
  ASSERT_TRUE(fixture.Append(1));
  fixture.fixture.engine.FlushFiles();
  ASSERT_TRUE(fixture.Append(2));
  ASSERT_TRUE(fixture.Append(3));
  fixture.KillAndStart();
  EXPECT_EQ(fixture.Last("adopted").Number("first"), 1);
  EXPECT_EQ(fixture.Last("adopted").Number("last"), 2);
  EXPECT_EQ(fixture.Last("resume").Number("rows"), 3);
  EXPECT_EQ(fixture.Check().Verdict, Verdict::kIntact);
}

TEST(RecordingJournals, ATornLastLineIsEndedByTheNextStart) {
  JournalFixture fixture;
  fixture.Begin();
  fixture.fixture.files.CloseRecordingFile(fixture.slot);
  const std::string whole = fixture.Journal();
  for (const std::size_t cut : {std::size_t{1}, std::size_t{50}, whole.size() / 4}) {
    fixture.fixture.directory.Write(kJournal, whole + whole.substr(0, cut));
    fixture.KillAndStart();
    EXPECT_EQ(fixture.Journal().substr(0, whole.size() + cut + 1),
              whole + whole.substr(0, cut) + "\n");
    EXPECT_EQ(fixture.Last("torn").Number("bytes"), static_cast<std::int64_t>(cut));
    EXPECT_EQ(fixture.Check().Verdict, Verdict::kIntact);
    EXPECT_EQ(fixture.Reading().Problem, "");
  }
}

TEST(RecordingJournals, AJournalThatDoesNotFitIsPutAsideAndANewOneSaysWhy) {
  const std::map<std::string, std::function<void(const JournalFixture&)>> wrongs = {
      {"a sample",
       [](const JournalFixture& fixture) {
         std::string file = fixture.fixture.directory.Read(kName);
         file[1001] = static_cast<char>(file[1001] ^ 1);
         fixture.fixture.directory.Write(kName, file);
       }},
      {"a header",
       [](const JournalFixture& fixture) {
         std::string file = fixture.fixture.directory.Read(kName);
         file[900] = static_cast<char>(file[900] ^ 1);
         fixture.fixture.directory.Write(kName, file);
       }},
      {"a line",
       [](const JournalFixture& fixture) {
         std::string text = fixture.Journal();
         text[20] = static_cast<char>(text[20] ^ 1);
         fixture.fixture.directory.Write(kJournal, text);
       }},
      {"an empty one",
       [](const JournalFixture& fixture) { fixture.fixture.directory.Write(kJournal, ""); }},
  };
  for (const auto& [what, wrong] : wrongs) {
    JournalFixture fixture;
    fixture.Begin();
    ASSERT_TRUE(fixture.Append(1));
    fixture.fixture.files.CloseRecordingFile(fixture.slot);
    const std::string old_id = fixture.Reading().Id();
    wrong(fixture);
    const std::string old_text = fixture.Journal();
    fixture.KillAndStart();
    EXPECT_NE(fixture.Reading().Id(), old_id) << what;
    EXPECT_EQ(fixture.fixture.directory.Read(std::string(kJournal) + ".1"), old_text) << what;
    EXPECT_EQ(fixture.Last("begin").Text("aside"), std::string(kName) + ".1") << what;
    EXPECT_TRUE(fixture.Last("begin").Text("why").starts_with("the old one does not fit")) << what;
    EXPECT_EQ(fixture.Check().Verdict, Verdict::kIntact) << what;
  }
}

TEST(RecordingJournals, TwoFilesThatWentOnFromOneAreForks) {
  JournalFixture left;
  left.Begin();
  left.fixture.files.CloseRecordingFile(left.slot);
  JournalFixture right;
  right.fixture.directory.Write(kName, left.fixture.directory.Read(kName));
  std::filesystem::create_directory(right.fixture.directory.File("journal"));
  right.fixture.directory.Write(kJournal, left.Journal());
  left.KillAndStart();
  right.fixture.clock.AdvanceSeconds(5);
  right.KillAndStart();
  EXPECT_EQ(KinshipOf(left.Journal(), right.Journal()), Kinship::kForks);
  EXPECT_EQ(CommonLines(left.Journal(), right.Journal()), 2);
}

TEST(RecordingJournals, ANewFileHasItsJournalFromTheBeginning) {
  JournalFixture fixture;
  fixture.Begin();
  ASSERT_TRUE(fixture.fixture.files.CreateRecordingFile(fixture.slot, 2));
  const std::string name = fixture.fixture.state.SlotFile[fixture.slot];
  fixture.fixture.engine.FlushFiles();
  const std::string file = fixture.fixture.directory.Read(name);
  const std::string journal = fixture.fixture.directory.Read("journal/" + name);
  EXPECT_EQ(CheckRecording(std::as_bytes(std::span(file)), std::optional(journal)).Verdict,
            Verdict::kIntact);
  EXPECT_EQ(ReadJournal(journal).Entries.front().Text("file"), name);
  EXPECT_EQ(ReadJournal(journal).Entries.front().Fields.Find("why"), nullptr);
}

TEST(RecordingJournals, AJournalUnderTheNameOfANewFileIsPutAside) {
  JournalFixture fixture;
  fixture.Begin();
  std::filesystem::create_directories(fixture.fixture.directory.File("journal"));
  fixture.fixture.directory.Write("journal/M260314B.OVE", "of a deleted recording");
  fixture.fixture.state.Unit[fixture.slot].UnitDesignation.Set("OVE:Oven");
  ASSERT_TRUE(fixture.fixture.files.CreateRecordingFile(fixture.slot, 2));
  ASSERT_EQ(fixture.fixture.state.SlotFile[fixture.slot], "M260314B.OVE");
  EXPECT_EQ(fixture.fixture.directory.Read("journal/M260314B.OVE.1"), "of a deleted recording");
}

TEST(RecordingJournals, ANextFileAndTheOneBeforeNameEachOther) {
  JournalFixture fixture;
  UnitRecord unit = Running(HeaderOf(1, {3}));
  unit.UnitEndAction = kGoOnInNextFile;
  fixture.fixture.Open(fixture.slot, kName, BytesOf(unit));
  fixture.fixture.engine.EndOfRecording(fixture.slot);
  const std::string next = fixture.fixture.state.SlotFile[fixture.slot];
  ASSERT_NE(next, kName);
  EXPECT_EQ(fixture.Last("end").Text("next"), next);
  const JournalReading reading = ReadJournal(fixture.fixture.directory.Read("journal/" + next));
  const JournalEntry begin = reading.Entries.front();
  EXPECT_EQ(*begin.Fields.Find("before")->Find("file")->Text(), kName);
  EXPECT_EQ(*begin.Fields.Find("before")->Find("id")->Text(), fixture.Reading().Id());
  EXPECT_EQ(reading.Entries.at(2).Kind, "seal");
  EXPECT_EQ(fixture.Check().Verdict, Verdict::kIntact);
}

TEST(RecordingJournals, ANextFileHasTheTimeOfDayOfTheOneBefore) {
  for (const bool is_known : {true, false}) {
    RecordingBench bench({"together", 0}, {5}, 10);
    bench.Start();
    ASSERT_TRUE(bench.RunToRows(6));
    if (!is_known) {
      bench.fixture.files.Journals().Note(kSlot, "lost",
                                          {{"before", 5}, {"sets", JsonValue()}, {"exact", false}});
    }
    bench.fixture.state.Unit[kSlot].UnitEndAction = kGoOnInNextFile;
    const auto rows = bench.fixture.state.SampleCount[kSlot];
    const RowTimes times(ReadJournal(bench.fixture.directory.Read(kJournal)), 10);
    bench.fixture.engine.EndOfRecording(kSlot);
    const std::string next = bench.fixture.state.SlotFile[kSlot];
    ASSERT_NE(next, kName);
    const RowTimes after(ReadJournal(bench.fixture.directory.Read("journal/" + next)), 10);
    EXPECT_EQ(after.Utc(0).has_value(), is_known);
    EXPECT_EQ(after.Utc(0), times.Utc(rows)) << "the next set";
    EXPECT_EQ(after.Local(9), times.Local(rows + 8));
  }
}

TEST(RecordingJournals, NothingIsSyncedMoreOftenThanTheRecordingButBeforeAHeader) {
  JournalFixture fixture;
  fixture.Begin();
  ASSERT_TRUE(fixture.Append(0));
  fixture.fixture.engine.FlushFiles();
  const CallsOfFiles calls({});
  for (int row = 0; row < 200; ++row) {
    ASSERT_TRUE(fixture.Append(row));
    fixture.fixture.files.Journals().Note(fixture.slot, "note", {});
  }
  EXPECT_EQ(CallsOfFiles::Syncs(), 0);
  fixture.fixture.engine.FlushFiles();
  EXPECT_EQ(CallsOfFiles::Syncs(), 2) << "recording and journal";
  fixture.fixture.state.Unit[fixture.slot].UnitYmax = 1;
  fixture.fixture.files.WriteHeader(fixture.slot);
  EXPECT_EQ(CallsOfFiles::Syncs(), 5) << "journal, recording, journal";
}

// The lines of a kind in the journal of the recording of a bench.
std::vector<JournalEntry> LinesOf(const RecordingBench& bench, const std::string& kind) {
  std::vector<JournalEntry> lines;
  for (JournalEntry& entry : ReadJournal(bench.fixture.directory.Read(kJournal)).Entries) {
    if (entry.Kind == kind) {
      lines.push_back(std::move(entry));
    }
  }
  return lines;
}

TEST(RecordingJournals, StartAndStopAreWrittenDown) {
  RecordingBench bench;
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(3));
  bench.fixture.engine.StopRecording(kSlot);
  EXPECT_EQ(LinesOf(bench, "start").size(), 1U);
  ASSERT_EQ(LinesOf(bench, "stop").size(), 1U);
  EXPECT_EQ(LinesOf(bench, "stop").front().Text("by"), "user");
  const std::string file = bench.fixture.directory.Read(kName);
  EXPECT_EQ(CheckRecording(std::as_bytes(std::span(file)),
                           std::optional(bench.fixture.directory.Read(kJournal)))
                .Verdict,
            Verdict::kIntact);
}

TEST(RecordingJournals, AValueThatWasFilledInIsWrittenDownWithRowAndInput) {
  for (const int input : {1, 3}) {
    RecordingBench bench;
    bench.Start();
    ASSERT_TRUE(bench.RunToRows(6));
    bench.FailNext(input, true);
    ASSERT_TRUE(bench.RunToRows(9));
    const auto lines = LinesOf(bench, "values");
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines.front().Number("first"), 6);
    EXPECT_EQ(lines.front().Number("last"), 6);
    EXPECT_EQ(JsonText(*lines.front().Fields.Find("inputs")), "[" + std::to_string(input) + "]");
  }
}

TEST(RecordingJournals, SetsThatAFullBufferHasLostAreWrittenDown) {
  RecordingBench bench({"together", 0}, {5}, 10);
  bench.Start();
  ASSERT_TRUE(bench.RunToRows(6));
  bench.fixture.clock.Advance(std::chrono::seconds(10 * 1000));
  ASSERT_TRUE(bench.RunToRows(20));
  const auto lines = LinesOf(bench, "lost");
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines.front().Number("before"), 6);
  EXPECT_NEAR(static_cast<double>(lines.front().Number("sets")), 104, 1);
}

TEST(RecordingJournals, ASilentInstrumentAndItsReturnAreWrittenDown) {
  JournalFixture fixture;
  PumpFixture& pump = fixture.fixture;
  fixture.Begin(1);
  const auto live = [&](int seconds) {
    for (int tick = 0; tick < seconds * 4; ++tick) {
      pump.clock.Advance(std::chrono::milliseconds(250));
      if (tick % 40 == 0) {
        pump.engine.TenSecondTick();
      }
      pump.Pump(1);
    }
  };
  pump.Store(1, 1, {1, 2});
  live(20);
  EXPECT_EQ(fixture.Last("silent").Kind, "");
  pump.line.silent.insert(1);
  live(120);
  EXPECT_EQ(fixture.Last("silent").Number("rows"), 3);
  pump.Store(1, 1, {3, 4, 5});
  pump.line.silent.clear();
  live(60);
  EXPECT_EQ(fixture.Last("back").Kind, "back");
  EXPECT_EQ(fixture.Last("back").Number("rows"), 3);
  EXPECT_EQ(std::ranges::count(fixture.Kinds(), "silent"), 1);
  EXPECT_EQ(std::ranges::count(fixture.Kinds(), "back"), 1);
}

TEST(RecordingJournals, WhatTheDiskRefusesIsWrittenDown) {
  JournalFixture fixture;
  fixture.Begin(1);
  fixture.fixture.Store(1, 1, {1});
  {
    const FullDisk disk(1000);
    fixture.fixture.Pump(3);
  }
  EXPECT_TRUE(fixture.fixture.state.WriteFailed[fixture.slot]);
  fixture.fixture.engine.TenSecondTick();
  fixture.fixture.Pump(3);
  EXPECT_NE(fixture.Last("refused").Text("why"), "");
  EXPECT_EQ(fixture.Last("written again").Kind, "written again");
}

TEST(RecordingJournals, WhatIsDoneToTheControllerOfATestIsWrittenDown) {
  for (const int controller : {1, 4}) {
    JournalFixture fixture;
    UnitRecord unit = Running(HeaderOf(1));
    unit.UnitCtrl = static_cast<std::int16_t>(controller);
    fixture.fixture.Open(fixture.slot, kName, BytesOf(unit));
    Link& link = fixture.fixture.link;
    static_cast<void>(Write(link, Register{1, reg::kSetpoint, controller}, 2000));
    EXPECT_TRUE(fixture.Last("controller").Fields.Find("old")->IsNull());
    fixture.fixture.line.registers[{1, 'W', controller}] = 1800;
    static_cast<void>(Read(link, Register{1, reg::kSetpoint, controller}));
    static_cast<void>(Write(link, Register{1, reg::kSetpoint, controller}, 2400));
    JournalEntry line = fixture.Last("controller");
    EXPECT_EQ(line.Text("what"), "setpoint");
    EXPECT_EQ(line.Text("by"), "user");
    EXPECT_EQ(line.Number("old"), 1800);
    EXPECT_EQ(line.Number("new"), 2400);
    EXPECT_EQ(line.Fields.Find("acknowledged")->Truth(), true);
    fixture.fixture.line.refused.insert('W');
    {
      const ControllerJournal::Actor actor(fixture.fixture.engine.Controllers(), "program");
      static_cast<void>(Write(link, Register{1, reg::kSetpoint, controller}, 1));
    }
    line = fixture.Last("controller");
    EXPECT_EQ(line.Text("by"), "program");
    EXPECT_EQ(line.Number("old"), 2400);
    EXPECT_EQ(line.Fields.Find("acknowledged")->Truth(), false);
    const std::string before = fixture.Journal();
    static_cast<void>(Write(link, Register{1, reg::kSetpoint, 5 - controller}, 7));
    static_cast<void>(Write(link, Register{2, reg::kSetpoint, controller}, 7));
    static_cast<void>(Write(link, Register{1, reg::kBuffered, controller}, 0));
    static_cast<void>(Read(link, Register{1, reg::kControllerState, controller}));
    EXPECT_EQ(fixture.Journal(), before) << "not of this test, or no write";
  }
}

TEST(RecordingJournals, MinutesThatAProgramCatchesUpAreWrittenDown) {
  JournalFixture fixture;
  fixture.Begin(1);
  fixture.fixture.engine.Controllers().CaughtUp(7);
  EXPECT_EQ(fixture.Last("caught up").Kind, "");
  fixture.fixture.state.ProgRunning[fixture.slot] = true;
  fixture.fixture.engine.Controllers().CaughtUp(7);
  EXPECT_EQ(fixture.Last("caught up").Number("minutes"), 7);
}

// A day of the program in one process: begin, rows, headers, a next file, the end.
void LiveADay(JournalFixture& fixture) {
  fixture.fixture.Name(fixture.slot, kName);
  fixture.fixture.files.OpenRecordingFile(fixture.slot);
  for (int row = 0; row < 3; ++row) {
    static_cast<void>(fixture.Append(row));
    fixture.fixture.state.Unit[fixture.slot].UnitYmax = static_cast<std::int16_t>(row);
    fixture.fixture.files.WriteHeader(fixture.slot);
    static_cast<void>(fixture.Append(row));
    fixture.fixture.engine.FlushFiles();
  }
  fixture.fixture.files.CloseRecordingFile(fixture.slot);
}

TEST(RecordingJournals, AKillAtAnyWriteLeavesNothingDamaged) {
  int kills = 0;
  for (int write = 0; write < 400; ++write) {
    for (const int part : {0, 1, 2}) {
      JournalFixture fixture;
      fixture.fixture.directory.Write(kName, BytesOf(Running(HeaderOf(3))));
      const pid_t child = fork();
      if (child == 0) {
        const CallsOfFiles calls({.kill_at = write, .kill_after_parts = part});
        LiveADay(fixture);
        _exit(0);
      }
      int status = 0;
      ASSERT_EQ(waitpid(child, &status, 0), child);
      const bool was_killed = WEXITSTATUS(status) != 0;
      kills += was_killed ? 1 : 0;
      if (fixture.fixture.directory.Exists(kJournal)) {
        ASSERT_NE(
            fixture.Check().Verdict == Verdict::kDamaged && !fixture.Reading().Entries.empty(),
            true)
            << "write " << write << " part " << part << ": " << fixture.Check().Findings.front();
      }
      const std::string id = fixture.Reading().Id();
      fixture.KillAndStart();
      const RecordingCheck check = fixture.Check();
      // A torn row stays until the next row is written over it.
      const bool is_torn =
          check.Findings == std::vector<std::string>{"3 bytes of a torn row at the end"};
      ASSERT_TRUE(check.Verdict == Verdict::kIntact || is_torn)
          << "write " << write << " part " << part;
      if (!id.empty()) {
        ASSERT_EQ(fixture.Reading().Id(), id) << "the journal goes on; write " << write;
      }
      if (!was_killed) {
        EXPECT_GT(kills, 40);
        return;
      }
    }
  }
  FAIL() << "the day has no end";
}

}  // namespace
}  // namespace tavrel
