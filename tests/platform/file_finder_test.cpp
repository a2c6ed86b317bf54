#include "platform/file_finder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "tests/platform/calls_of_files.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

namespace fs = std::filesystem;

// Every answer is that of FindFile.
class AFileFinder : public testing::Test {
 protected:
  std::optional<std::string> Find(const std::string& name) {
    NoAnswer no_answer;
    auto found = finder.Find(directory.Path(), name, no_answer);
    EXPECT_EQ(found, FindFile(directory.Path(), name)) << name;
    EXPECT_EQ(no_answer.Why, Failure::kNone) << no_answer.Text;
    return found;
  }

  TemporaryDirectory directory;
  FileFinder finder;
};

TEST_F(AFileFinder, FindsANameWhateverItsCase) {
  directory.Write("abc.x", "");
  directory.Write("Abc.X", "");
  directory.Write("M260314A.\u00d6Fn", "");
  EXPECT_EQ(Find("abc.x"), directory.File("abc.x"));
  EXPECT_EQ(Find("ABC.X"), directory.File("Abc.X"));
  EXPECT_EQ(Find("m260314a.\u00f6fN"), directory.File("M260314A.\u00d6Fn"));
  EXPECT_EQ(Find("abd.x"), std::nullopt);
}

TEST_F(AFileFinder, SeesPlainFilesOfTheDirectoryOnly) {
  fs::create_directory(directory.File("A.X"));
  ASSERT_EQ(mkfifo(directory.File("B.X").c_str(), 0600), 0);
  directory.Write("C.X", "");
  fs::create_directory(directory.File("c.x"));
  for (const std::string name : {"A.X", "a.x", "B.X", "b.x", "", "../A.X", "./C.X", "."}) {
    EXPECT_EQ(Find(name), std::nullopt) << name;
  }
  EXPECT_EQ(Find(std::string("C.X\0", 4)), std::nullopt);
  EXPECT_EQ(Find("c.x"), directory.File("C.X"));
  NoAnswer no_answer;
  EXPECT_EQ(finder.Find(directory.File("missing"), "A.X", no_answer), std::nullopt);
  EXPECT_EQ(no_answer.Why, Failure::kNone);
}

TEST_F(AFileFinder, SeesWhatComesAndGoes) {
  EXPECT_EQ(Find("A.X"), std::nullopt);
  directory.Write("a.x", "");
  // As if some time had passed: what comes at once may be of the same moment for the system.
  const auto later = fs::last_write_time(directory.Path()) + std::chrono::seconds(2);
  fs::last_write_time(directory.Path(), later);
  EXPECT_EQ(Find("A.X"), directory.File("a.x"));
  fs::remove(directory.File("a.x"));
  EXPECT_EQ(Find("A.X"), std::nullopt);
}

TEST_F(AFileFinder, ListsADirectoryOnceForAllNamesThatItDoesNotHold) {
  constexpr int kNames = 500;
  for (int name = 0; name < kNames; ++name) {
    directory.Write("n" + std::to_string(name), "");
  }
  const CallsOfFiles calls({});
  NoAnswer no_answer;
  for (int name = 0; name < kNames; ++name) {
    EXPECT_FALSE(finder.Find(directory.Path(), "m" + std::to_string(name), no_answer));
    EXPECT_TRUE(finder.Find(directory.Path(), "N" + std::to_string(name), no_answer));
  }
  EXPECT_GE(CallsOfFiles::NamesListed(), kNames);
  EXPECT_LE(CallsOfFiles::NamesListed(), kNames + 3);
}

}  // namespace
}  // namespace tavrel
