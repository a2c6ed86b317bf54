#include "platform/random_file.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>
#include <string_view>
#include <utility>

#include "platform/file_system.h"
#include "tests/platform/calls_of_files.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

std::span<const std::byte> Bytes(std::string_view text) {
  return std::as_bytes(std::span(text));
}

// While it lives no file of this process can grow beyond `bytes`, as if the disk were full.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : old_handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_limit_);
    const rlimit limit{bytes, old_limit_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &old_limit_);
    std::signal(SIGXFSZ, old_handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit old_limit_{};
  void (*old_handler_)(int);
};

class RandomFileTest : public testing::Test {
 protected:
  TemporaryDirectory directory_;
  RandomFile file_;

  std::string ReadText(std::int64_t offset, std::size_t length) {
    std::string text(length, '.');
    const std::int64_t got = file_.ReadAt(offset, std::as_writable_bytes(std::span(text)));
    return got < 0 ? "failed" : text.substr(0, static_cast<std::size_t>(got));
  }
};

// The system may move fewer bytes than it is asked to, and says so.
TEST_F(RandomFileTest, GoesOnWhereAShortCallHasStopped) {
  const std::string text = "0123456789abcdef";
  for (std::size_t longest = 1; longest <= text.size(); ++longest) {
    const std::string name = "A" + std::to_string(longest);
    const CallsOfFiles calls({.longest = longest});
    ASSERT_TRUE(file_.Open(directory_.File(name), FileAccess::kCreate));
    EXPECT_TRUE(file_.WriteAt(3, Bytes(text))) << longest;
    EXPECT_EQ(ReadText(3, text.size()), text) << longest;
    EXPECT_EQ(ReadText(5, text.size()), text.substr(2)) << longest;
    EXPECT_EQ(file_.Size(), 19) << longest;
    EXPECT_EQ(directory_.Read(name).substr(3), text) << longest;
  }
}

TEST_F(RandomFileTest, TakesAWriteThatMovesNothingForAFullDisk) {
  ASSERT_TRUE(file_.Open(directory_.File("A"), FileAccess::kCreate));
  const CallsOfFiles calls({.longest = 0});
  EXPECT_FALSE(file_.WriteAt(0, Bytes("abc")));
  EXPECT_EQ(file_.Error(), "No space left on device");
}

TEST_F(RandomFileTest, WritesAndReadsAtAnyPlace) {
  ASSERT_TRUE(file_.Open(directory_.File("A"), FileAccess::kCreate));
  EXPECT_TRUE(file_.WriteAt(0, Bytes("0123456789")));
  EXPECT_TRUE(file_.WriteAt(4, Bytes("ab")));
  EXPECT_EQ(ReadText(3, 4), "3ab6");
  EXPECT_EQ(file_.Size(), 10);
  EXPECT_TRUE(file_.Sync());
  EXPECT_EQ(directory_.Read("A"), "0123ab6789");
}

TEST_F(RandomFileTest, FillsTheGapWithZerosWhenWritingBehindTheEnd) {
  ASSERT_TRUE(file_.Open(directory_.File("A"), FileAccess::kCreate));
  EXPECT_TRUE(file_.WriteAt(3, Bytes("x")));
  EXPECT_EQ(directory_.Read("A"), std::string("\0\0\0x", 4));
}

TEST_F(RandomFileTest, ReadsFewerBytesAtTheEndOfTheFile) {
  directory_.Write("A", "abc");
  ASSERT_TRUE(file_.Open(directory_.File("A"), FileAccess::kRead));
  EXPECT_EQ(ReadText(2, 10), "c");
  EXPECT_EQ(ReadText(3, 10), "");
  EXPECT_EQ(ReadText(1000, 10), "");
}

TEST_F(RandomFileTest, NeverCutsAnExistingFile) {
  directory_.Write("A", "abc");
  ASSERT_TRUE(file_.Open(directory_.File("A"), FileAccess::kCreate));
  ASSERT_TRUE(file_.Open(directory_.File("A"), FileAccess::kUpdate));
  EXPECT_EQ(file_.Size(), 3);
}

TEST_F(RandomFileTest, RefusesAMissingFileForReadingAndUpdating) {
  EXPECT_FALSE(file_.Open(directory_.File("A"), FileAccess::kRead));
  EXPECT_EQ(file_.Error(), "No such file or directory");
  EXPECT_FALSE(file_.Open(directory_.File("A"), FileAccess::kUpdate));
  EXPECT_FALSE(directory_.Exists("A"));
}

TEST_F(RandomFileTest, RefusesAnExistingFileWhereItShallBeNew) {
  EXPECT_TRUE(file_.Open(directory_.File("A"), FileAccess::kCreateNew));
  EXPECT_FALSE(file_.Open(directory_.File("A"), FileAccess::kCreateNew));
  EXPECT_EQ(file_.Error(), "File exists");
  EXPECT_FALSE(file_.IsOpen());
}

TEST_F(RandomFileTest, RefusesToWriteAFileOpenedForReading) {
  directory_.Write("A", "abc");
  ASSERT_TRUE(file_.Open(directory_.File("A"), FileAccess::kRead));
  EXPECT_FALSE(file_.WriteAt(0, Bytes("x")));
  EXPECT_EQ(directory_.Read("A"), "abc");
}

TEST_F(RandomFileTest, RefusesADirectory) {
  for (const FileAccess access : {FileAccess::kRead, FileAccess::kUpdate, FileAccess::kCreate}) {
    EXPECT_FALSE(file_.Open(directory_.Path(), access));
    EXPECT_EQ(file_.Error(), "Is a directory");
    EXPECT_FALSE(file_.IsOpen());
  }
}

TEST_F(RandomFileTest, RefusesAPipeWithoutWaitingForItsOtherEnd) {
  ASSERT_EQ(mkfifo(directory_.File("PIPE").c_str(), 0600), 0);
  for (const FileAccess access : {FileAccess::kRead, FileAccess::kUpdate, FileAccess::kCreate}) {
    EXPECT_FALSE(file_.Open(directory_.File("PIPE"), access));
    EXPECT_EQ(file_.Error(), "Operation not supported");
  }
}

TEST_F(RandomFileTest, RefusesADevice) {
  EXPECT_FALSE(file_.Open("/dev/full", FileAccess::kUpdate));
  EXPECT_FALSE(file_.Open("/dev/null", FileAccess::kRead));
  EXPECT_FALSE(file_.IsOpen());
}

TEST_F(RandomFileTest, RefusesAPathThroughAFile) {
  directory_.Write("A", "");
  EXPECT_FALSE(file_.Open(directory_.File("A") + "/B", FileAccess::kCreate));
  EXPECT_EQ(file_.Error(), "Not a directory");
}

TEST_F(RandomFileTest, RefusesAPathWithAZeroByteInsteadOfOpeningAnother) {
  directory_.Write("A", "");
  EXPECT_FALSE(file_.Open(directory_.File("A") + std::string("\0x", 2), FileAccess::kRead));
}

TEST_F(RandomFileTest, ClosesTheOldFileAlsoWhenTheNewOneCannotBeOpened) {
  directory_.Write("A", "abc");
  ASSERT_TRUE(file_.Open(directory_.File("A"), FileAccess::kRead));
  EXPECT_FALSE(file_.Open(directory_.File("B"), FileAccess::kRead));
  EXPECT_FALSE(file_.IsOpen());
}

TEST_F(RandomFileTest, AnswersEveryOperationOfAClosedFileWithFailure) {
  std::byte byte{};
  EXPECT_EQ(file_.Size(), -1);
  EXPECT_EQ(file_.Error(), "Bad file descriptor");
  EXPECT_EQ(file_.ReadAt(0, {&byte, 1}), -1);
  EXPECT_EQ(file_.ReadAt(0, {}), -1);
  EXPECT_FALSE(file_.WriteAt(0, {&byte, 1}));
  EXPECT_FALSE(file_.WriteAt(0, {}));
  EXPECT_FALSE(file_.Sync());
  file_.Close();
}

TEST_F(RandomFileTest, RefusesAPlaceBeforeTheFile) {
  ASSERT_TRUE(file_.Open(directory_.File("A"), FileAccess::kCreate));
  std::byte byte{};
  EXPECT_EQ(file_.ReadAt(-1, {&byte, 1}), -1);
  EXPECT_FALSE(file_.WriteAt(-1, {&byte, 1}));
  EXPECT_EQ(file_.Error(), "Invalid argument");
}

TEST_F(RandomFileTest, ReportsAFullDiskAndKeepsWhatWasWritten) {
  ASSERT_TRUE(file_.Open(directory_.File("A"), FileAccess::kCreate));
  ASSERT_TRUE(file_.WriteAt(0, Bytes("first")));
  {
    const FileSizeLimit limit(8);
    EXPECT_FALSE(file_.WriteAt(5, Bytes("second")));
    EXPECT_EQ(file_.Error(), "File too large");
  }
  EXPECT_EQ(directory_.Read("A"), "firstsec");
  EXPECT_TRUE(file_.WriteAt(5, Bytes("second")));
  EXPECT_EQ(directory_.Read("A"), "firstsecond");
}

TEST_F(RandomFileTest, HandsItsFileOverWhenMoved) {
  ASSERT_TRUE(file_.Open(directory_.File("A"), FileAccess::kCreate));
  RandomFile other(std::move(file_));
  EXPECT_TRUE(other.WriteAt(0, Bytes("abc")));
  RandomFile third;
  ASSERT_TRUE(third.Open(directory_.File("B"), FileAccess::kCreate));
  third = std::move(other);
  EXPECT_EQ(third.Size(), 3);
}

TEST_F(RandomFileTest, OpensAFileThroughALink) {
  directory_.Write("A", "abc");
  std::filesystem::create_symlink("A", directory_.File("L"));
  ASSERT_TRUE(file_.Open(directory_.File("L"), FileAccess::kRead));
  EXPECT_EQ(ReadText(0, 3), "abc");
}

TEST_F(RandomFileTest, TakesNamesWithUmlauts) {
  ASSERT_TRUE(file_.Open(directory_.File("Öfen.OVE"), FileAccess::kCreateNew));
  EXPECT_TRUE(directory_.Exists("Öfen.OVE"));
}

TEST_F(RandomFileTest, HasOneIdentityUnderAllItsNames) {
  directory_.Write("A", "abc");
  directory_.Write("B", "abc");
  std::filesystem::create_symlink("A", directory_.File("L"));
  EXPECT_EQ(file_.Identity(), std::nullopt);
  ASSERT_TRUE(file_.Open(directory_.File("A"), FileAccess::kRead));
  RandomFile other;
  ASSERT_TRUE(other.Open(directory_.File("L"), FileAccess::kRead));
  EXPECT_EQ(file_.Identity(), other.Identity());
  EXPECT_EQ(file_.Identity(), IdentityOf(directory_.File("A")));
  EXPECT_NE(file_.Identity(), IdentityOf(directory_.File("B")));
  EXPECT_EQ(IdentityOf(directory_.File("missing")), std::nullopt);
}

TEST_F(RandomFileTest, KnowsThatItsLastNameWasDeleted) {
  directory_.Write("A", "abc");
  EXPECT_FALSE(file_.IsNameless());
  ASSERT_TRUE(file_.Open(directory_.File("A"), FileAccess::kRead));
  std::filesystem::create_hard_link(directory_.File("A"), directory_.File("B"));
  std::filesystem::remove(directory_.File("A"));
  EXPECT_FALSE(file_.IsNameless());
  std::filesystem::remove(directory_.File("B"));
  EXPECT_TRUE(file_.IsNameless());
}

TEST_F(RandomFileTest, MakesNoFileThroughALink) {
  std::filesystem::create_symlink("B", directory_.File("L"));
  EXPECT_FALSE(file_.Open(directory_.File("L"), FileAccess::kCreate));
  EXPECT_FALSE(directory_.Exists("B"));
}

}  // namespace
}  // namespace tavrel
