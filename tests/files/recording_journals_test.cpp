#include "files/recording_journals.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>

#include "link/registers.h"
#include "tests/files/recording_bench.h"
#include "tests/platform/calls_of_files.h"

namespace tavrel {
namespace {

constexpr const char* kJournal = "journal/M260314A.OVN";

// A slot with a recording, as one start of the program after the other has it.
struct JournalRoom {
  PumpRoom room;
  int slot;

  explicit JournalRoom(int of_slot = 12) : slot(of_slot) {
    room.clock.wall.ZoneMinutes = 60;
    room.state.Settings.CommPort = "COM1";
  }
  void Begin(int channels = 3) { room.Open(slot, kName, BytesOf(Running(HeaderOf(channels)))); }
  bool Append(int value) {
    std::array<std::int16_t, kInputs> words{};
    words.fill(static_cast<std::int16_t>(value));
    const auto channels = static_cast<std::size_t>(room.state.Unit[slot].UnitChannels);
    return room.files.AppendRow(slot, std::span(words.data(), channels), 1);
  }
  [[nodiscard]] std::string Journal() const { return room.directory.Read(kJournal); }
  [[nodiscard]] JournalReading Reading() const { return ReadJournal(Journal()); }
  [[nodiscard]] std::vector<std::string> Kinds() const {
    std::vector<std::string> kinds;
    for (const JournalEntry& entry : Reading().Entries) {
      kinds.push_back(entry.Kind);
    }
    return kinds;
  }
  [[nodiscard]] RecordingCheck Check() const {
    const std::string file = room.directory.Read(kName);
    return CheckRecording(std::as_bytes(std::span(file)), std::optional(Journal()));
  }
  [[nodiscard]] JournalEntry Last(const std::string& kind) const {
    JournalEntry last;
    for (const JournalEntry& entry : Reading().Entries) {
      last = entry.Kind == kind ? entry : last;
    }
    return last;
  }
  // As a kill: nothing is synced, nothing sealed.
  void KillAndStart() {
    room.state.SlotFileNo[slot].Close();
    room.Name(slot, kName);
    RecordingFiles again(room.state, room.clock, room.messages);
    again.OpenRecordingFile(slot);
    again.CloseRecordingFile(slot);
  }
};

using Kinds = std::vector<std::string>;

TEST(RecordingJournals, ARecordingWithoutAJournalBeginsOne) {
  for (const int slot : {1, 7, 12}) {
    JournalRoom room(slot);
    room.Begin(slot);
    EXPECT_EQ(room.Kinds(), Kinds{"begin"});
    EXPECT_EQ(room.Check().Verdict, Verdict::kNotCovered) << "until the next flush";
    room.room.engine.FlushFiles();
    EXPECT_EQ(room.Kinds(), (Kinds{"begin", "seal"}));
    const JournalEntry begin = room.Last("begin");
    EXPECT_EQ(begin.Text("id").size(), 32U);
    EXPECT_EQ(begin.Text("file"), kName);
    EXPECT_EQ(begin.Text("why"), "there was none");
    EXPECT_EQ(begin.Text("line"), "direct");
    EXPECT_EQ(begin.Number("instrument"), 1);
    EXPECT_EQ(begin.Fields.Find("inputs")->Elements()->size(), static_cast<std::size_t>(slot));
    EXPECT_EQ(begin.Text("time"), "2026-03-14T10:00:00+01:00");
    EXPECT_EQ(room.Check().Verdict, Verdict::kIntact);
  }
}

TEST(RecordingJournals, AFileThatIsOnlyLookedAtOrEditedStaysWithoutOne) {
  JournalRoom room(kViewedFile);
  room.room.Open(kViewedFile, kName, BytesOf(HeaderOf(2)));
  room.room.state.Unit[kViewedFile].UnitYmax = 7;
  room.room.files.WriteHeader(kViewedFile);
  room.room.files.CloseRecordingFile(kViewedFile);
  EXPECT_FALSE(room.room.directory.Exists("journal"));
}

TEST(RecordingJournals, AFlushSealsTheRowsThatHaveCome) {
  JournalRoom room;
  room.Begin();
  for (int row = 0; row < 5; ++row) {
    ASSERT_TRUE(room.Append(row));
  }
  EXPECT_EQ(room.Check().Verdict, Verdict::kNotCovered);
  room.room.engine.FlushFiles();
  EXPECT_EQ(room.Check().Verdict, Verdict::kIntact);
  EXPECT_EQ(room.Check().CoveredRows, 5);
  const std::string journal = room.Journal();
  room.room.engine.FlushFiles();
  EXPECT_EQ(room.Journal(), journal) << "nothing new, no line";
}

TEST(RecordingJournals, OpeningAFileWaitsForNoDisk) {
  JournalRoom room;
  std::filesystem::create_directory(room.room.directory.File("journal"));
  const CallsOfFiles calls({});
  room.Begin();
  EXPECT_EQ(CallsOfFiles::Syncs(), 0) << "a new journal";
  room.room.files.CloseRecordingFile(room.slot);
  EXPECT_EQ(CallsOfFiles::Syncs(), 1) << "the recording; no row has come";
  room.room.Name(room.slot, kName);
  room.room.files.OpenRecordingFile(room.slot);
  EXPECT_EQ(CallsOfFiles::Syncs(), 1) << "one that goes on";
}

TEST(RecordingJournals, TheEndOfTheProgramSeals) {
  JournalRoom room;
  room.Begin();
  ASSERT_TRUE(room.Append(1));
  room.room.files.CloseRecordingFile(room.slot);
  EXPECT_EQ(room.Check().Verdict, Verdict::kIntact);
}

TEST(RecordingJournals, AHeaderIsAnnouncedWithWhatChanges) {
  for (const int input : {1, 15}) {
    JournalRoom room;
    room.Begin();
    UnitRecord& unit = room.room.state.Unit[room.slot];
    unit.UnitColour[input] = 9;
    unit.UnitInputName[input].Set("Öl");
    unit.UnitYmax = 300;
    room.room.files.WriteHeader(room.slot);
    EXPECT_EQ(room.Kinds(), (Kinds{"begin", "header", "seal"}));
    const JournalEntry header = room.Last("header");
    const JsonValue* const changes = header.Fields.Find("changes");
    ASSERT_NE(changes, nullptr);
    const std::string text = JsonText(*changes);
    EXPECT_NE(text.find("{\"field\":\"UnitColour\",\"index\":" + std::to_string(input)),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("\"new\":\"Öl\""), std::string::npos) << text;
    EXPECT_NE(text.find("\"field\":\"UnitYmax\",\"old\":"), std::string::npos) << text;
    EXPECT_EQ(room.Check().Verdict, Verdict::kIntact);
  }
}

TEST(RecordingJournals, TheViewersEditIsWrittenIntoAnExistingJournal) {
  JournalRoom room;
  room.Begin();
  room.room.files.CloseRecordingFile(room.slot);
  room.room.state.SlotFile[room.slot].clear();
  room.room.Name(kViewedFile, kName);
  room.room.files.OpenRecordingFile(kViewedFile);
  const std::string before = room.Journal();
  room.room.files.CloseRecordingFile(kViewedFile);
  EXPECT_EQ(room.Journal(), before) << "looking writes nothing";
  room.room.files.OpenRecordingFile(kViewedFile);
  room.room.state.Unit[kViewedFile].UnitYmax = 77;
  room.room.files.WriteHeader(kViewedFile);
  EXPECT_EQ(room.Kinds(), (Kinds{"begin", "seal", "open", "header", "seal"}));
  EXPECT_EQ(room.Check().Verdict, Verdict::kIntact);
}

TEST(RecordingJournals, RowsBeyondTheLastSealAreAdoptedByTheNextStart) {
  JournalRoom room;
  room.Begin();
  ASSERT_TRUE(room.Append(1));
  room.room.engine.FlushFiles();
  ASSERT_TRUE(room.Append(2));
  ASSERT_TRUE(room.Append(3));
  room.KillAndStart();
  EXPECT_EQ(room.Last("adopted").Number("first"), 1);
  EXPECT_EQ(room.Last("adopted").Number("last"), 2);
  EXPECT_EQ(room.Last("resume").Number("rows"), 3);
  EXPECT_EQ(room.Check().Verdict, Verdict::kIntact);
}

TEST(RecordingJournals, ATornLastLineIsEndedByTheNextStart) {
  JournalRoom room;
  room.Begin();
  room.room.files.CloseRecordingFile(room.slot);
  const std::string whole = room.Journal();
  for (const std::size_t cut : {std::size_t{1}, std::size_t{50}, whole.size() / 4}) {
    room.room.directory.Write(kJournal, whole + whole.substr(0, cut));
    room.KillAndStart();
    EXPECT_EQ(room.Journal().substr(0, whole.size() + cut + 1),
              whole + whole.substr(0, cut) + "\n");
    EXPECT_EQ(room.Last("torn").Number("bytes"), static_cast<std::int64_t>(cut));
    EXPECT_EQ(room.Check().Verdict, Verdict::kIntact);
    EXPECT_EQ(room.Reading().Problem, "");
  }
}

TEST(RecordingJournals, AJournalThatDoesNotFitIsPutAsideAndANewOneSaysWhy) {
  const std::map<std::string, std::function<void(const JournalRoom&)>> wrongs = {
      {"a sample",
       [](const JournalRoom& room) {
         std::string file = room.room.directory.Read(kName);
         file[1001] = static_cast<char>(file[1001] ^ 1);
         room.room.directory.Write(kName, file);
       }},
      {"a header",
       [](const JournalRoom& room) {
         std::string file = room.room.directory.Read(kName);
         file[900] = static_cast<char>(file[900] ^ 1);
         room.room.directory.Write(kName, file);
       }},
      {"a line",
       [](const JournalRoom& room) {
         std::string text = room.Journal();
         text[20] = static_cast<char>(text[20] ^ 1);
         room.room.directory.Write(kJournal, text);
       }},
      {"an empty one", [](const JournalRoom& room) { room.room.directory.Write(kJournal, ""); }},
  };
  for (const auto& [what, wrong] : wrongs) {
    JournalRoom room;
    room.Begin();
    ASSERT_TRUE(room.Append(1));
    room.room.files.CloseRecordingFile(room.slot);
    const std::string old_id = room.Reading().Id();
    wrong(room);
    const std::string old_text = room.Journal();
    room.KillAndStart();
    EXPECT_NE(room.Reading().Id(), old_id) << what;
    EXPECT_EQ(room.room.directory.Read(std::string(kJournal) + ".1"), old_text) << what;
    EXPECT_EQ(room.Last("begin").Text("aside"), std::string(kName) + ".1") << what;
    EXPECT_TRUE(room.Last("begin").Text("why").starts_with("the old one does not fit")) << what;
    EXPECT_EQ(room.Check().Verdict, Verdict::kIntact) << what;
  }
}

TEST(RecordingJournals, TwoFilesThatWentOnFromOneAreForks) {
  JournalRoom left;
  left.Begin();
  left.room.files.CloseRecordingFile(left.slot);
  JournalRoom right;
  right.room.directory.Write(kName, left.room.directory.Read(kName));
  std::filesystem::create_directory(right.room.directory.File("journal"));
  right.room.directory.Write(kJournal, left.Journal());
  left.KillAndStart();
  right.room.clock.AdvanceSeconds(5);
  right.KillAndStart();
  EXPECT_EQ(KinshipOf(left.Journal(), right.Journal()), Kinship::kForks);
  EXPECT_EQ(CommonLines(left.Journal(), right.Journal()), 2);
}

TEST(RecordingJournals, ARefusedMediumCostsTheJournalAndTheUserIsToldOnce) {
  JournalRoom room;
  room.room.directory.Write("journal", "a file where the directory belongs");
  room.Begin();
  for (int row = 0; row < 4; ++row) {
    ASSERT_TRUE(room.Append(row));
    room.room.files.WriteHeader(room.slot);
    room.room.engine.FlushFiles();
  }
  room.room.files.CloseRecordingFile(room.slot);
  EXPECT_EQ(room.room.SamplesInFile(kName).size(), 4U * 6U);
  const std::vector<std::string> told = room.room.Announced();
  ASSERT_EQ(told.size(), 1U);
  EXPECT_NE(told.front().find("the journal cannot be written"), std::string::npos);
  EXPECT_TRUE(room.room.dialogs.boxes.empty());
}

// What happened meanwhile stands in no line, so nobody may call those rows complete.
TEST(RecordingJournals, AJournalThatWasRefusedForAWhileDoesNotSpeakForTheRowsOfThatTime) {
  for (const int rows_meanwhile : {0, 2}) {
    JournalRoom room;
    room.Begin();
    ASSERT_TRUE(room.Append(1));
    ASSERT_TRUE(room.Append(1));
    room.room.files.CloseRecordingFile(room.slot);
    const std::string directory = room.room.directory.File("journal");
    std::filesystem::rename(directory, directory + ".away");
    room.room.directory.Write("journal", "a file where the directory belongs");
    room.room.files.OpenRecordingFile(room.slot);
    for (int row = 0; row < rows_meanwhile; ++row) {
      ASSERT_TRUE(room.Append(2 + row));
    }
    std::filesystem::remove(directory);
    std::filesystem::rename(directory + ".away", directory);
    room.room.clock.Advance(std::chrono::seconds(61));
    ASSERT_TRUE(room.Append(9));
    room.room.engine.FlushFiles();
    EXPECT_EQ(room.Check().Verdict, Verdict::kIntact);
    const LedgerFigures figures = room.room.files.Journals().Figures(room.slot);
    EXPECT_TRUE(figures.IsKnown);
    EXPECT_EQ(figures.Unwatched, rows_meanwhile == 0 ? 0 : 2 + rows_meanwhile);
    const std::string why = room.Last("begin").Text("why");
    EXPECT_EQ(why, rows_meanwhile == 0 ? "there was none"
                                       : "the old one could not be written for a while");
  }
}

TEST(RecordingJournals, WhatAFullDiskRefusesComesToTheJournalLater) {
  JournalRoom room;
  room.Begin();
  const std::size_t full = room.Journal().size() + 10;
  {
    const FullDisk disk(full < 1100 ? 1100 : full);
    for (int note = 0; note < 5; ++note) {
      room.room.files.Journals().Note(room.slot, "note", {{"text", std::string(300, 'x')}});
    }
    ASSERT_TRUE(room.Append(1));
  }
  room.room.engine.FlushFiles();
  EXPECT_EQ(room.Reading().Problem, "");
  EXPECT_FALSE(room.Reading().TornBytes);
  EXPECT_EQ(room.Kinds(), (Kinds{"begin", "note", "note", "note", "note", "note", "seal"}));
  EXPECT_EQ(room.Check().Verdict, Verdict::kIntact);
}

TEST(RecordingJournals, AJournalOnADiskThatStaysFullIsGivenUp) {
  JournalRoom room;
  room.Begin();
  {
    const FullDisk disk(1100);
    for (int note = 0; note < 1000; ++note) {
      room.room.files.Journals().Note(room.slot, "note", {{"text", std::string(300, 'x')}});
    }
  }
  EXPECT_TRUE(room.Append(1));
  room.room.engine.FlushFiles();
  EXPECT_LT(room.Journal().size(), 2000U);
  room.KillAndStart();
  EXPECT_EQ(room.Check().Verdict, Verdict::kIntact) << "taken up where it stood";
}

TEST(RecordingJournals, ANewFileHasItsJournalFromTheBeginning) {
  JournalRoom room;
  room.Begin();
  ASSERT_TRUE(room.room.files.CreateRecordingFile(room.slot, 2));
  const std::string name = room.room.state.SlotFile[room.slot];
  room.room.engine.FlushFiles();
  const std::string file = room.room.directory.Read(name);
  const std::string journal = room.room.directory.Read("journal/" + name);
  EXPECT_EQ(CheckRecording(std::as_bytes(std::span(file)), std::optional(journal)).Verdict,
            Verdict::kIntact);
  EXPECT_EQ(ReadJournal(journal).Entries.front().Text("file"), name);
  EXPECT_EQ(ReadJournal(journal).Entries.front().Fields.Find("why"), nullptr);
}

TEST(RecordingJournals, AJournalUnderTheNameOfANewFileIsPutAside) {
  JournalRoom room;
  room.Begin();
  std::filesystem::create_directories(room.room.directory.File("journal"));
  room.room.directory.Write("journal/M260314B.OVE", "of a deleted recording");
  room.room.state.Unit[room.slot].UnitDesignation.Set("OVE:Oven");
  ASSERT_TRUE(room.room.files.CreateRecordingFile(room.slot, 2));
  ASSERT_EQ(room.room.state.SlotFile[room.slot], "M260314B.OVE");
  EXPECT_EQ(room.room.directory.Read("journal/M260314B.OVE.1"), "of a deleted recording");
}

TEST(RecordingJournals, ANextFileAndTheOneBeforeNameEachOther) {
  JournalRoom room;
  UnitRecord unit = Running(HeaderOf(1, {3}));
  unit.UnitEndAction = kGoOnInNextFile;
  room.room.Open(room.slot, kName, BytesOf(unit));
  room.room.engine.EndOfRecording(room.slot);
  const std::string next = room.room.state.SlotFile[room.slot];
  ASSERT_NE(next, kName);
  EXPECT_EQ(room.Last("end").Text("next"), next);
  const JournalReading reading = ReadJournal(room.room.directory.Read("journal/" + next));
  const JournalEntry begin = reading.Entries.front();
  EXPECT_EQ(*begin.Fields.Find("before")->Find("file")->Text(), kName);
  EXPECT_EQ(*begin.Fields.Find("before")->Find("id")->Text(), room.Reading().Id());
  EXPECT_EQ(reading.Entries.at(2).Kind, "seal");
  EXPECT_EQ(room.Check().Verdict, Verdict::kIntact);
}

TEST(RecordingJournals, NothingIsSyncedMoreOftenThanTheRecordingButBeforeAHeader) {
  JournalRoom room;
  room.Begin();
  ASSERT_TRUE(room.Append(0));
  room.room.engine.FlushFiles();
  const CallsOfFiles calls({});
  for (int row = 0; row < 200; ++row) {
    ASSERT_TRUE(room.Append(row));
    room.room.files.Journals().Note(room.slot, "note", {});
  }
  EXPECT_EQ(CallsOfFiles::Syncs(), 0);
  room.room.engine.FlushFiles();
  EXPECT_EQ(CallsOfFiles::Syncs(), 2) << "recording and journal";
  room.room.state.Unit[room.slot].UnitYmax = 1;
  room.room.files.WriteHeader(room.slot);
  EXPECT_EQ(CallsOfFiles::Syncs(), 5) << "journal, recording, journal";
}

// The lines of a kind in the journal of the recording of a bench.
std::vector<JournalEntry> LinesOf(const RecordingBench& bench, const std::string& kind) {
  std::vector<JournalEntry> lines;
  for (JournalEntry& entry : ReadJournal(bench.room.directory.Read(kJournal)).Entries) {
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
  bench.room.engine.StopRecording(kSlot);
  EXPECT_EQ(LinesOf(bench, "start").size(), 1U);
  ASSERT_EQ(LinesOf(bench, "stop").size(), 1U);
  EXPECT_EQ(LinesOf(bench, "stop").front().Text("by"), "user");
  const std::string file = bench.room.directory.Read(kName);
  EXPECT_EQ(CheckRecording(std::as_bytes(std::span(file)),
                           std::optional(bench.room.directory.Read(kJournal)))
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
  bench.room.clock.Advance(std::chrono::seconds(10 * 1000));
  ASSERT_TRUE(bench.RunToRows(20));
  const auto lines = LinesOf(bench, "lost");
  ASSERT_EQ(lines.size(), 1U);
  EXPECT_EQ(lines.front().Number("before"), 6);
  EXPECT_NEAR(static_cast<double>(lines.front().Number("sets")), 104, 1);
}

TEST(RecordingJournals, ASilentInstrumentAndItsReturnAreWrittenDown) {
  JournalRoom room;
  PumpRoom& pump = room.room;
  room.Begin(1);
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
  EXPECT_EQ(room.Last("silent").Kind, "");
  pump.line.silent.insert(1);
  live(120);
  EXPECT_EQ(room.Last("silent").Number("rows"), 3);
  pump.Store(1, 1, {3, 4, 5});
  pump.line.silent.clear();
  live(60);
  EXPECT_EQ(room.Last("back").Kind, "back");
  EXPECT_EQ(room.Last("back").Number("rows"), 3);
  EXPECT_EQ(std::ranges::count(room.Kinds(), "silent"), 1);
  EXPECT_EQ(std::ranges::count(room.Kinds(), "back"), 1);
}

TEST(RecordingJournals, WhatTheDiskRefusesIsWrittenDown) {
  JournalRoom room;
  room.Begin(1);
  room.room.Store(1, 1, {1});
  {
    const FullDisk disk(1000);
    room.room.Pump(3);
  }
  EXPECT_TRUE(room.room.state.WriteFailed[room.slot]);
  room.room.engine.TenSecondTick();
  room.room.Pump(3);
  EXPECT_NE(room.Last("refused").Text("why"), "");
  EXPECT_EQ(room.Last("written again").Kind, "written again");
}

TEST(RecordingJournals, WhatIsDoneToTheControllerOfATestIsWrittenDown) {
  for (const int controller : {1, 4}) {
    JournalRoom room;
    UnitRecord unit = Running(HeaderOf(1));
    unit.UnitCtrl = static_cast<std::int16_t>(controller);
    room.room.Open(room.slot, kName, BytesOf(unit));
    Link& link = room.room.link;
    static_cast<void>(Write(link, Register{1, reg::kSetpoint, controller}, 2000));
    EXPECT_TRUE(room.Last("controller").Fields.Find("old")->IsNull());
    room.room.line.registers[{1, 'W', controller}] = 1800;
    static_cast<void>(Read(link, Register{1, reg::kSetpoint, controller}));
    static_cast<void>(Write(link, Register{1, reg::kSetpoint, controller}, 2400));
    JournalEntry line = room.Last("controller");
    EXPECT_EQ(line.Text("what"), "setpoint");
    EXPECT_EQ(line.Text("by"), "user");
    EXPECT_EQ(line.Number("old"), 1800);
    EXPECT_EQ(line.Number("new"), 2400);
    EXPECT_EQ(line.Fields.Find("acknowledged")->Truth(), true);
    room.room.line.refused.insert('W');
    {
      const ControllerJournal::Actor actor(room.room.engine.Controllers(), "program");
      static_cast<void>(Write(link, Register{1, reg::kSetpoint, controller}, 1));
    }
    line = room.Last("controller");
    EXPECT_EQ(line.Text("by"), "program");
    EXPECT_EQ(line.Number("old"), 2400);
    EXPECT_EQ(line.Fields.Find("acknowledged")->Truth(), false);
    const std::string before = room.Journal();
    static_cast<void>(Write(link, Register{1, reg::kSetpoint, 5 - controller}, 7));
    static_cast<void>(Write(link, Register{2, reg::kSetpoint, controller}, 7));
    static_cast<void>(Write(link, Register{1, reg::kBuffered, controller}, 0));
    static_cast<void>(Read(link, Register{1, reg::kControllerState, controller}));
    EXPECT_EQ(room.Journal(), before) << "not of this test, or no write";
  }
}

TEST(RecordingJournals, MinutesThatAProgramCatchesUpAreWrittenDown) {
  JournalRoom room;
  room.Begin(1);
  room.room.engine.Controllers().CaughtUp(7);
  EXPECT_EQ(room.Last("caught up").Kind, "");
  room.room.state.ProgRunning[room.slot] = true;
  room.room.engine.Controllers().CaughtUp(7);
  EXPECT_EQ(room.Last("caught up").Number("minutes"), 7);
}

// A day of the program in one process: begin, rows, headers, a next file, the end.
void LiveADay(JournalRoom& room) {
  room.room.Name(room.slot, kName);
  room.room.files.OpenRecordingFile(room.slot);
  for (int row = 0; row < 3; ++row) {
    static_cast<void>(room.Append(row));
    room.room.state.Unit[room.slot].UnitYmax = static_cast<std::int16_t>(row);
    room.room.files.WriteHeader(room.slot);
    static_cast<void>(room.Append(row));
    room.room.engine.FlushFiles();
  }
  room.room.files.CloseRecordingFile(room.slot);
}

TEST(RecordingJournals, AKillAtAnyWriteLeavesNothingDamaged) {
  int kills = 0;
  for (int write = 0; write < 400; ++write) {
    for (const int part : {0, 1, 2}) {
      JournalRoom room;
      room.room.directory.Write(kName, BytesOf(Running(HeaderOf(3))));
      const pid_t child = fork();
      if (child == 0) {
        const CallsOfFiles calls({.kill_at = write, .kill_after_parts = part});
        LiveADay(room);
        _exit(0);
      }
      int status = 0;
      ASSERT_EQ(waitpid(child, &status, 0), child);
      const bool was_killed = WEXITSTATUS(status) != 0;
      kills += was_killed ? 1 : 0;
      if (room.room.directory.Exists(kJournal)) {
        ASSERT_NE(room.Check().Verdict == Verdict::kDamaged && !room.Reading().Entries.empty(),
                  true)
            << "write " << write << " part " << part << ": " << room.Check().Findings.front();
      }
      const std::string id = room.Reading().Id();
      room.KillAndStart();
      const RecordingCheck check = room.Check();
      // A torn row stays until the next row is written over it.
      const bool is_torn =
          check.Findings == std::vector<std::string>{"3 bytes of a torn row at the end"};
      ASSERT_TRUE(check.Verdict == Verdict::kIntact || is_torn)
          << "write " << write << " part " << part;
      if (!id.empty()) {
        ASSERT_EQ(room.Reading().Id(), id) << "the journal goes on; write " << write;
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
