#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>

#include "tests/files/journal_fixture.h"
#include "tests/platform/calls_of_files.h"

// Journals on a medium that refuses them, for a while or for good.
namespace tavrel {
namespace {

TEST(RecordingJournals, ARefusedMediumCostsTheJournalAndTheUserIsToldOnce) {
  JournalFixture fixture;
  fixture.fixture.directory.Write("journal", "a file where the directory belongs");
  fixture.Begin();
  for (int row = 0; row < 4; ++row) {
    ASSERT_TRUE(fixture.Append(row));
    fixture.fixture.files.WriteHeader(fixture.slot);
    fixture.fixture.engine.FlushFiles();
  }
  fixture.fixture.files.CloseRecordingFile(fixture.slot);
  EXPECT_EQ(fixture.fixture.SamplesInFile(kName).size(), 4U * 6U);
  const std::vector<std::string> told = fixture.fixture.Announced();
  ASSERT_EQ(told.size(), 1U);
  EXPECT_NE(told.front().find("the journal cannot be written"), std::string::npos);
  EXPECT_TRUE(fixture.fixture.dialogs.boxes.empty());
}

// What happened meanwhile stands in no line, so nobody may call those rows complete.
TEST(RecordingJournals, AJournalThatWasRefusedForAWhileDoesNotSpeakForTheRowsOfThatTime) {
  for (const int rows_meanwhile : {0, 2}) {
    JournalFixture fixture;
    fixture.Begin();
    ASSERT_TRUE(fixture.Append(1));
    ASSERT_TRUE(fixture.Append(1));
    fixture.fixture.files.CloseRecordingFile(fixture.slot);
    const std::string directory = fixture.fixture.directory.File("journal");
    std::filesystem::rename(directory, directory + ".away");
    fixture.fixture.directory.Write("journal", "a file where the directory belongs");
    fixture.fixture.files.OpenRecordingFile(fixture.slot);
    for (int row = 0; row < rows_meanwhile; ++row) {
      ASSERT_TRUE(fixture.Append(2 + row));
    }
    std::filesystem::remove(directory);
    std::filesystem::rename(directory + ".away", directory);
    fixture.fixture.clock.Advance(std::chrono::seconds(61));
    ASSERT_TRUE(fixture.Append(9));
    fixture.fixture.engine.FlushFiles();
    EXPECT_EQ(fixture.Check().Verdict, Verdict::kIntact);
    const LedgerFigures figures = fixture.fixture.files.Journals().Figures(fixture.slot);
    EXPECT_TRUE(figures.IsKnown);
    EXPECT_EQ(figures.Unwatched, rows_meanwhile == 0 ? 0 : 2 + rows_meanwhile);
    const std::string why = fixture.Last("begin").Text("why");
    EXPECT_EQ(why, rows_meanwhile == 0 ? "there was none"
                                       : "the old one could not be written for a while");
  }
}

// As the pump does before each exchange, and the program when it ends.
void KeepHeldSet(JournalFixture& fixture, bool ends) {
  static_cast<void>(fixture.fixture.files.KeepHeldSet(fixture.slot, 0));
  if (ends) {
    fixture.fixture.files.ReleaseHeldSet(fixture.slot);
    fixture.fixture.files.CloseRecordingFile(fixture.slot);
  }
}

TEST(RecordingJournals, AJournalThatWasRefusedUntilTheEndDoesNotSpeakForThoseRowsInTheNextRun) {
  for (const int slot : {1, 7, 12}) {
    for (const bool ends : {false, true}) {
      JournalFixture fixture(slot);
      fixture.Begin();
      ASSERT_TRUE(fixture.Append(1));
      ASSERT_TRUE(fixture.Append(1));
      fixture.fixture.files.CloseRecordingFile(slot);
      const std::string old_text = fixture.Journal();
      const std::string directory = fixture.fixture.directory.File("journal");
      std::filesystem::rename(directory, directory + ".away");
      fixture.fixture.directory.Write("journal", "a file where the directory belongs");
      fixture.fixture.files.OpenRecordingFile(slot);
      fixture.fixture.files.Journals().Note(
          slot, "lost", {{"before", 2}, {"sets", 3}, {"least", 3}, {"most", 3}, {"cause", "full"}});
      ASSERT_TRUE(fixture.Append(2));
      KeepHeldSet(fixture, ends);
      std::filesystem::remove(directory);
      std::filesystem::rename(directory + ".away", directory);
      fixture.KillAndStart();
      EXPECT_EQ(fixture.Last("begin").Text("why"), "the old one could not be written for a while");
      EXPECT_EQ(fixture.fixture.directory.Read(std::string(kJournal) + ".1"), old_text);
      const LedgerFigures figures = LedgerOf(fixture.Reading(), 3);
      EXPECT_FALSE(figures.IsComplete()) << "slot " << slot << ", ends " << ends;
      EXPECT_EQ(figures.Unwatched, 3);
      const std::string id = fixture.Reading().Id();
      fixture.fixture.files.OpenRecordingFile(slot);
      KeepHeldSet(fixture, ends);
      fixture.KillAndStart();
      EXPECT_EQ(fixture.Reading().Id(), id) << "told once";
    }
  }
}

// Lines that wait for the disk go with a program that is killed; only some of them say how complete
// the recording is.
TEST(RecordingJournals, LinesThatWaitedForTheDiskAreMissedByTheNextRun) {
  for (const std::string kind : {"lost", "values", "back", "start", "refused", "controller"}) {
    JournalFixture fixture;
    fixture.Begin();
    ASSERT_TRUE(fixture.Append(1));
    fixture.fixture.engine.FlushFiles();
    const std::string id = fixture.Reading().Id();
    {
      const FullDisk disk(200);
      fixture.fixture.files.Journals().Note(fixture.slot, kind, {{"before", 1}, {"sets", 3}});
      KeepHeldSet(fixture, false);
    }
    fixture.KillAndStart();
    const bool is_of_ledger = kind != "refused" && kind != "controller";
    EXPECT_EQ(fixture.Reading().Id() != id, is_of_ledger) << kind;
    EXPECT_EQ(LedgerOf(fixture.Reading(), 1).IsComplete(), !is_of_ledger) << kind;
  }
}

TEST(RecordingJournals, LinesThatWaitedForTheDiskAndCameAreNotMissed) {
  JournalFixture fixture;
  fixture.Begin();
  ASSERT_TRUE(fixture.Append(1));
  const std::string id = fixture.Reading().Id();
  {
    const FullDisk disk(200);
    fixture.fixture.files.Journals().Note(fixture.slot, "back", {});
    KeepHeldSet(fixture, false);
  }
  fixture.fixture.files.Journals().Note(fixture.slot, "note", {});
  KeepHeldSet(fixture, true);
  fixture.KillAndStart();
  EXPECT_EQ(fixture.Reading().Id(), id);
  EXPECT_EQ(fixture.Last("back").Kind, "back");
}

TEST(RecordingJournals, WhatAFullDiskRefusesComesToTheJournalLater) {
  JournalFixture fixture;
  fixture.Begin();
  const std::size_t full = fixture.Journal().size() + 10;
  {
    const FullDisk disk(full < 1100 ? 1100 : full);
    for (int note = 0; note < 5; ++note) {
      fixture.fixture.files.Journals().Note(fixture.slot, "note",
                                            {{"text", std::string(300, 'x')}});
    }
    ASSERT_TRUE(fixture.Append(1));
  }
  fixture.fixture.engine.FlushFiles();
  EXPECT_EQ(fixture.Reading().Problem, "");
  EXPECT_FALSE(fixture.Reading().TornBytes);
  EXPECT_EQ(fixture.Kinds(), (Kinds{"begin", "note", "note", "note", "note", "note", "seal"}));
  EXPECT_EQ(fixture.Check().Verdict, Verdict::kIntact);
}

TEST(RecordingJournals, AJournalOnADiskThatStaysFullIsGivenUp) {
  JournalFixture fixture;
  fixture.Begin();
  {
    const FullDisk disk(1100);
    for (int note = 0; note < 1000; ++note) {
      fixture.fixture.files.Journals().Note(fixture.slot, "note",
                                            {{"text", std::string(300, 'x')}});
    }
  }
  EXPECT_TRUE(fixture.Append(1));
  fixture.fixture.engine.FlushFiles();
  EXPECT_LT(fixture.Journal().size(), 2000U);
  fixture.KillAndStart();
  EXPECT_EQ(fixture.Check().Verdict, Verdict::kIntact) << "taken up where it stood";
}

}  // namespace
}  // namespace tavrel
