#include "platform/file_reservation.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

class Reserving : public testing::Test {
 protected:
  Reserving() {
    directory.Write("A", "a");
    directory.Write("B", "b");
  }
  [[nodiscard]] bool IsFree(const char* name) { return FileReservation().Take(Path(name)); }
  [[nodiscard]] std::string Path(const char* name) const { return directory.File(name); }

  TemporaryDirectory directory;
  FileReservation mine;
};

TEST_F(Reserving, KeepsAFileForOneUntilItIsReleased) {
  EXPECT_TRUE(mine.Take(Path("A")));
  FileReservation other;
  EXPECT_FALSE(other.Take(Path("A")));
  EXPECT_EQ(other.Error(), "") << "somebody else has it";
  EXPECT_TRUE(other.Take(Path("B")));
  mine.Release();
  EXPECT_TRUE(other.Take(Path("A")));
}

TEST_F(Reserving, AgainKeepsIt) {
  EXPECT_TRUE(mine.Take(Path("A")));
  std::filesystem::create_hard_link(Path("A"), Path("C"));
  EXPECT_TRUE(mine.Take(Path("C"))) << "the same file";
  EXPECT_FALSE(IsFree("A"));
}

TEST_F(Reserving, StandsWhateverIsDoneThroughOtherHandles) {
  EXPECT_TRUE(mine.Take(Path("A")));
  {
    RandomFile file;
    ASSERT_TRUE(file.Open(Path("A"), FileAccess::kUpdate));
  }
  EXPECT_FALSE(IsFree("A"));
}

TEST_F(Reserving, OfAnotherFileReleasesTheOneBefore) {
  EXPECT_TRUE(mine.Take(Path("A")));
  EXPECT_TRUE(mine.Take(Path("B")));
  EXPECT_TRUE(IsFree("A"));
  EXPECT_FALSE(IsFree("B"));
}

TEST_F(Reserving, ThatFailsChangesNothing) {
  EXPECT_TRUE(mine.Take(Path("A")));
  EXPECT_FALSE(mine.Take(Path("missing")));
  EXPECT_EQ(mine.Error(), "No such file or directory");
  FileReservation other;
  ASSERT_TRUE(other.Take(Path("B")));
  EXPECT_FALSE(mine.Take(Path("B")));
  EXPECT_EQ(mine.Error(), "");
  EXPECT_FALSE(IsFree("A"));
}

TEST_F(Reserving, TakesTheFileThatHasTheNameNow) {
  EXPECT_TRUE(mine.Take(Path("A")));
  std::filesystem::rename(Path("B"), Path("A"));
  EXPECT_TRUE(IsFree("A"));
  EXPECT_TRUE(mine.Take(Path("A")));
  EXPECT_FALSE(IsFree("A"));
}

}  // namespace
}  // namespace tavrel
