#include "files/stored_recording.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "files/file_index.h"
#include "files/recording_copy.h"
#include "tests/files/journal_fixture.h"
#include "tests/platform/calls_of_files.h"

namespace tavrel {
namespace {

// What the recording does while another reads it.
enum class Meanwhile { kRow, kRowAndSeal, kHeader };

void GoOn(JournalFixture& fixture, Meanwhile what) {
  if (what == Meanwhile::kHeader) {
    ++fixture.fixture.state.Unit[fixture.slot].UnitYmax;
    fixture.fixture.files.WriteHeader(fixture.slot);
    return;
  }
  ASSERT_TRUE(fixture.Append(77));
  if (what == Meanwhile::kRowAndSeal) {
    ASSERT_TRUE(fixture.fixture.state.SlotFileNo[fixture.slot].Sync());
    fixture.fixture.files.Journals().Synced(fixture.slot);
  }
}

// Whatever is written between two readings, of the file or of its journal: what was read is of one
// moment.
TEST(AStoredRecording, IsReadAtOneMomentWhileItGoesOn) {
  for (const Meanwhile what : {Meanwhile::kRow, Meanwhile::kRowAndSeal, Meanwhile::kHeader}) {
    for (int reading = 0; reading < 4; ++reading) {
      JournalFixture fixture;
      fixture.Begin();
      ASSERT_TRUE(fixture.Append(1));
      fixture.fixture.engine.FlushFiles();
      std::filesystem::create_directory(fixture.fixture.directory.File("copy"));
      const CallsOfFiles calls({});
      int readings = 0;
      bool has_gone_on = false;
      CallsOfFiles::BeforeRead([&] {
        if (readings++ == reading) {
          has_gone_on = true;
          GoOn(fixture, what);
        }
      });
      const RecordingCopy copy =
          CopyRecording(fixture.fixture.directory.File(kName),
                        fixture.fixture.directory.File("copy/" + std::string(kName)), {});
      CallsOfFiles::BeforeRead({});
      ASSERT_EQ(copy.Problem + copy.JournalProblem, "");
      EXPECT_TRUE(has_gone_on || reading >= 2);
      const StoredRecording read =
          ReadRecording(fixture.fixture.directory.File("copy/" + std::string(kName)));
      const RecordingCheck check = CheckRecording(read.File(), read.Journal);
      const bool is_sealed = !has_gone_on || what != Meanwhile::kRow;
      EXPECT_EQ(check.Verdict == Verdict::kIntact, is_sealed || check.Rows == 1)
          << static_cast<int>(what) << ", reading " << reading << ": "
          << testing::PrintToString(check.Findings);
      EXPECT_NE(check.Verdict, Verdict::kDamaged) << testing::PrintToString(check.Findings);
    }
  }
}

// One that grows faster than it can be read ends all the same.
TEST(AStoredRecording, IsReadThoughItsJournalGrowsAllTheTime) {
  JournalFixture fixture;
  fixture.Begin();
  fixture.fixture.engine.FlushFiles();
  const CallsOfFiles calls({});
  CallsOfFiles::BeforeRead([&] { GoOn(fixture, Meanwhile::kRowAndSeal); });
  const StoredRecording read = ReadRecording(fixture.fixture.directory.File(kName));
  CallsOfFiles::BeforeRead({});
  EXPECT_EQ(read.Problem, "");
  EXPECT_EQ(CheckRecording(read.File(), read.Journal).Verdict, Verdict::kNotCovered);
}

TEST(AStoredRecording, IsFoundWhateverTheCaseOfItsName) {
  JournalFixture fixture;
  fixture.Begin();
  ASSERT_TRUE(fixture.Append(1));
  fixture.fixture.files.CloseRecordingFile(fixture.slot);
  const TemporaryDirectory& directory = fixture.fixture.directory;
  for (const std::string place : {"", "journal/"}) {
    std::filesystem::rename(directory.File(place + kName), directory.File(place + "m260314a.ovn"));
  }
  FileFinder finder;
  EXPECT_EQ(ProofOf(directory.File(kName), Language::kEnglish, finder).Verdict,
            IndexVerdict::kIntact);
}

// A directory that holds many recordings without a journal beside some with one is listed once.
TEST(AStoredRecording, WithoutAJournalCostsNoListingOfItsOwn) {
  constexpr int kFiles = 300;
  const TemporaryDirectory directory;
  std::filesystem::create_directory(directory.File("journal"));
  for (int file = 0; file < kFiles; ++file) {
    directory.Write("M" + std::to_string(file) + ".OVN", std::string(1000, '\0'));
    directory.Write("journal/N" + std::to_string(file) + ".OVN", "{}\n");
  }
  const CallsOfFiles calls({});
  FileFinder finder;
  for (int file = 0; file < kFiles; ++file) {
    const std::string path = directory.File("M" + std::to_string(file) + ".OVN");
    EXPECT_EQ(ReadRecording(path, finder).Journal, std::nullopt);
  }
  EXPECT_GT(CallsOfFiles::NamesListed(), kFiles);
  EXPECT_LT(CallsOfFiles::NamesListed(), 2 * kFiles);
}

}  // namespace
}  // namespace tavrel
