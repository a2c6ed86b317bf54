#include "platform/file_system.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "tests/platform/calls_of_files.h"
#include "tests/support/hindrance.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

namespace fs = std::filesystem;

class FileSystemTest : public testing::Test {
 protected:
  TemporaryDirectory directory_;

  // All names in the directory, so that a leftover is seen.
  [[nodiscard]] std::size_t Names() const {
    const fs::directory_iterator names(directory_.Path());
    return static_cast<std::size_t>(std::distance(begin(names), end(names)));
  }
};

TEST(JoinPath, PutsExactlyOneSeparatorBetween) {
  EXPECT_EQ(JoinPath("/a", "b"), "/a/b");
  EXPECT_EQ(JoinPath("/a/", "b"), "/a/b");
  EXPECT_EQ(JoinPath("/a//", "/b"), "/a/b");
  EXPECT_EQ(JoinPath("/", "b"), "/b");
  EXPECT_EQ(JoinPath("", "b"), "b");
}

TEST(AddSeparator, AddsOneOnlyWhereItIsMissing) {
  EXPECT_EQ(AddSeparator(" /a/b "), "/a/b/");
  EXPECT_EQ(AddSeparator("/a/"), "/a/");
  EXPECT_EQ(AddSeparator("/"), "/");
  EXPECT_EQ(AddSeparator("  "), "");
}

TEST(StripSeparator, TakesItAwayButLeavesTheRoot) {
  EXPECT_EQ(StripSeparator(" /a/b/ "), "/a/b");
  EXPECT_EQ(StripSeparator("/a//"), "/a");
  EXPECT_EQ(StripSeparator("/"), "/");
  EXPECT_EQ(StripSeparator(""), "");
}

TEST_F(FileSystemTest, FindFileFindsANameWhateverItsCase) {
  directory_.Write("tavrel.Usr", "");
  EXPECT_EQ(FindFile(directory_.Path(), "TAVREL.USR"), directory_.File("tavrel.Usr"));
  EXPECT_EQ(FindFile(directory_.Path() + "/", "tavrel.usr"), directory_.File("tavrel.Usr"));
  EXPECT_EQ(FindPath(directory_.File("TAVREL.USR")), directory_.File("tavrel.Usr"));
  EXPECT_EQ(FindPath(directory_.File("other.usr")), std::nullopt);
}

TEST_F(FileSystemTest, FindFileComparesUmlautsWithoutCaseToo) {
  directory_.Write("M260314A.ÖFn", "");
  EXPECT_EQ(FindFile(directory_.Path(), "m260314a.öfN"), directory_.File("M260314A.ÖFn"));
}

TEST_F(FileSystemTest, FindFilePrefersTheExactSpelling) {
  directory_.Write("ABC.X", "");
  directory_.Write("Abc.X", "");
  directory_.Write("abc.x", "");
  EXPECT_EQ(FindFile(directory_.Path(), "abc.x"), directory_.File("abc.x"));
  EXPECT_EQ(FindFile(directory_.Path(), "aBC.x"), directory_.File("ABC.X"));
}

TEST_F(FileSystemTest, FindFileSeesPlainFilesOnly) {
  fs::create_directory(directory_.File("A.X"));
  ASSERT_EQ(mkfifo(directory_.File("B.X").c_str(), 0600), 0);
  EXPECT_EQ(FindFile(directory_.Path(), "A.X"), std::nullopt);
  EXPECT_EQ(FindFile(directory_.Path(), "a.x"), std::nullopt);
  EXPECT_EQ(FindFile(directory_.Path(), "B.X"), std::nullopt);
}

TEST_F(FileSystemTest, FindFileFindsNothingWhereThereIsNothing) {
  EXPECT_EQ(FindFile(directory_.Path(), "A.X"), std::nullopt);
  EXPECT_EQ(FindFile(directory_.Path(), ""), std::nullopt);
  EXPECT_EQ(FindFile(directory_.File("missing"), "A.X"), std::nullopt);
}

TEST_F(FileSystemTest, FindFileDoesNotLeaveTheDirectory) {
  fs::create_directory(directory_.File("sub"));
  directory_.Write("A.X", "");
  EXPECT_EQ(FindFile(directory_.File("sub"), "../A.X"), std::nullopt);
  EXPECT_EQ(FindFile(directory_.Path(), "/A.X"), std::nullopt);
}

TEST_F(FileSystemTest, HoldsNameSeesWhateverBearsTheName) {
  directory_.Write("file.new", "");
  fs::create_directory(directory_.File("DIR.NEW"));
  ASSERT_EQ(mkfifo(directory_.File("Pipe.New").c_str(), 0600), 0);
  fs::create_symlink("nowhere", directory_.File("link.new"));
  for (const char* const name : {"FILE.NEW", "DIR.NEW", "PIPE.NEW", "LINK.NEW", "link.new"}) {
    EXPECT_TRUE(HoldsName(directory_.Path(), name)) << name;
  }
  EXPECT_FALSE(HoldsName(directory_.Path(), "OTHER.NEW"));
  EXPECT_FALSE(HoldsName(directory_.File("missing"), "FILE.NEW"));
}

TEST_F(FileSystemTest, DeleteLinkSparesAllElse) {
  directory_.Write("A", "abc");
  fs::create_symlink("A", directory_.File("L"));
  DeleteLink(directory_.File("L"));
  DeleteLink(directory_.File("A"));
  DeleteLink(directory_.File("missing"));
  EXPECT_EQ(Names(), 1U);
  EXPECT_EQ(directory_.Read("A"), "abc");
}

TEST_F(FileSystemTest, HoldsAnyFileCountsPlainVisibleFiles) {
  EXPECT_FALSE(HoldsAnyFile(directory_.Path()));
  fs::create_directory(directory_.File("sub"));
  directory_.Write(".hidden", "");
  EXPECT_FALSE(HoldsAnyFile(directory_.Path()));
  directory_.Write("no_point", "");
  EXPECT_TRUE(HoldsAnyFile(directory_.Path()));
  EXPECT_FALSE(HoldsAnyFile(directory_.File("missing")));
  EXPECT_FALSE(HoldsAnyFile(directory_.File("no_point")));
}

TEST_F(FileSystemTest, MakeDirectoryMakesThoseAboveToo) {
  EXPECT_TRUE(MakeDirectory(directory_.File("a/b/c")));
  EXPECT_TRUE(DirectoryExists(directory_.File("a/b/c")));
  EXPECT_TRUE(MakeDirectory(directory_.File("a/b/c")));
}

TEST_F(FileSystemTest, MakeDirectoryFailsThroughAFile) {
  directory_.Write("A", "");
  EXPECT_FALSE(MakeDirectory(directory_.File("A/b")));
  EXPECT_FALSE(MakeDirectory(directory_.File("A")));
  EXPECT_FALSE(DirectoryExists(directory_.File("A")));
}

TEST_F(FileSystemTest, IsWritableTriesAndLeavesNothingBehind) {
  EXPECT_TRUE(IsWritable(directory_.Path()));
  EXPECT_EQ(Names(), 0U);
  EXPECT_FALSE(IsWritable(directory_.File("missing")));
  EXPECT_FALSE(IsWritable("/proc/self"));
}

TEST_F(FileSystemTest, QuestionsAreAnsweredWithNoWhereNothingIs) {
  NoAnswer no_answer{Failure::kOther, "old"};
  EXPECT_EQ(FindFile(directory_.File("missing"), "A.X", no_answer), std::nullopt);
  EXPECT_EQ(no_answer.Why, Failure::kNone);
  EXPECT_EQ(FindFile(directory_.Path(), std::string(300, 'A'), no_answer), std::nullopt);
  EXPECT_EQ(no_answer.Why, Failure::kNone) << "no file can have so long a name";
  EXPECT_FALSE(HoldsAnyFile(directory_.File("missing"), no_answer));
  EXPECT_EQ(no_answer.Why, Failure::kNone);
  EXPECT_EQ(ReadWholeFile(directory_.File("missing"), 5, no_answer), std::nullopt);
  EXPECT_EQ(no_answer.Why, Failure::kNone);
  EXPECT_EQ(ReadWholeFile(directory_.Path(), 5, no_answer), std::nullopt);
  EXPECT_EQ(no_answer.Why, Failure::kNone) << "a directory is no file";
  directory_.Write("LONG", "123456");
  EXPECT_EQ(ReadWholeFile(directory_.File("LONG"), 5, no_answer), std::nullopt);
  EXPECT_EQ(no_answer.Why, Failure::kNone);
}

TEST_F(FileSystemTest, QuestionsHaveNoAnswerWhereTheSystemFails) {
  directory_.Write("A.X", "1");
  NoAnswer no_answer;
  {
    const NoHandlesLeft none;
    EXPECT_EQ(FindFile(directory_.Path(), "a.x", no_answer), std::nullopt);
    EXPECT_EQ(no_answer.Why, Failure::kOther);
    EXPECT_EQ(no_answer.Text, "Too many open files");
    EXPECT_FALSE(HoldsAnyFile(directory_.Path(), no_answer));
    EXPECT_EQ(no_answer.Why, Failure::kOther);
    EXPECT_EQ(ReadWholeFile(directory_.File("A.X"), 5, no_answer), std::nullopt);
    EXPECT_EQ(no_answer.Why, Failure::kOther);
    EXPECT_FALSE(IsWritable(directory_.Path(), no_answer));
    EXPECT_EQ(no_answer.Why, Failure::kOther);
    EXPECT_EQ(FindFile(directory_.Path(), "A.X", no_answer), directory_.File("A.X"));
    EXPECT_EQ(no_answer.Why, Failure::kNone);
  }
  EXPECT_TRUE(IsWritable(directory_.Path(), no_answer));
  EXPECT_EQ(no_answer.Why, Failure::kNone);
  MakeUnreadable(directory_.File("B.X"));
  EXPECT_EQ(FindFile(directory_.Path(), "B.X", no_answer), std::nullopt);
  EXPECT_EQ(no_answer.Text, "Too many levels of symbolic links");
}

TEST_F(FileSystemTest, IsWritableIsSureOfWhatIsNotAllowed) {
  namespace fs = std::filesystem;
  fs::permissions(directory_.Path(), fs::perms(0555));
  NoAnswer no_answer{Failure::kOther, "old"};
  {
    const WithoutRights nobody;
    EXPECT_FALSE(IsWritable(directory_.Path(), no_answer));
  }
  fs::permissions(directory_.Path(), fs::perms(0755));
  EXPECT_EQ(no_answer.Why, Failure::kNone);
  EXPECT_FALSE(IsWritable(directory_.File("missing"), no_answer));
  EXPECT_EQ(no_answer.Why, Failure::kOther) << "the program's directory cannot be missing";
}

TEST_F(FileSystemTest, ReadWholeFileIsNotAllowedWhereTheUserHasNoRight) {
  namespace fs = std::filesystem;
  directory_.Write("A.X", "1");
  fs::permissions(directory_.Path(), fs::perms(0755));
  fs::permissions(directory_.File("A.X"), fs::perms(0));
  NoAnswer no_answer;
  const WithoutRights nobody;
  EXPECT_EQ(ReadWholeFile(directory_.File("A.X"), 5, no_answer), std::nullopt);
  EXPECT_EQ(no_answer.Why, Failure::kNotAllowed);
}

TEST_F(FileSystemTest, IsLinkSeesTheLinkAndNotItsTarget) {
  directory_.Write("A.X", "1");
  std::filesystem::create_symlink("A.X", directory_.File("B.X"));
  std::filesystem::create_symlink("nowhere", directory_.File("C.X"));
  EXPECT_FALSE(IsLink(directory_.File("A.X")));
  EXPECT_TRUE(IsLink(directory_.File("B.X")));
  EXPECT_TRUE(IsLink(directory_.File("C.X")));
  EXPECT_FALSE(IsLink(directory_.File("missing")));
}

TEST_F(FileSystemTest, ReadWholeFileGivesAllBytes) {
  const std::string bytes("a\0\r\n\xFF", 5);
  directory_.Write("A", bytes);
  EXPECT_EQ(ReadWholeFile(directory_.File("A"), 5), bytes);
  directory_.Write("EMPTY", "");
  EXPECT_EQ(ReadWholeFile(directory_.File("EMPTY"), 0), "");
}

TEST_F(FileSystemTest, ReadWholeFileRefusesAFileBeyondTheLimit) {
  directory_.Write("A", "123456");
  EXPECT_EQ(ReadWholeFile(directory_.File("A"), 5), std::nullopt);
  EXPECT_EQ(ReadWholeFile(directory_.File("missing"), 5), std::nullopt);
  EXPECT_EQ(ReadWholeFile(directory_.Path(), 5), std::nullopt);
}

TEST_F(FileSystemTest, ReplaceFileMakesAndReplaces) {
  EXPECT_EQ(ReplaceFile(directory_.File("A"), "old"), "");
  EXPECT_EQ(directory_.Read("A"), "old");
  EXPECT_EQ(ReplaceFile(directory_.File("A"), std::string_view("n\0w", 3)), "");
  EXPECT_EQ(directory_.Read("A"), std::string("n\0w", 3));
  EXPECT_EQ(Names(), 1U);
}

TEST_F(FileSystemTest, ReplaceFileKeepsTheOldFileWhenTheDiskIsFull) {
  directory_.Write("A", "old");
  const auto old_handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit old_limit{};
  getrlimit(RLIMIT_FSIZE, &old_limit);
  const rlimit limit{4, old_limit.rlim_max};
  setrlimit(RLIMIT_FSIZE, &limit);
  const std::string error = ReplaceFile(directory_.File("A"), "too long");
  setrlimit(RLIMIT_FSIZE, &old_limit);
  std::signal(SIGXFSZ, old_handler);

  EXPECT_EQ(error, "File too large");
  EXPECT_EQ(directory_.Read("A"), "old");
  EXPECT_EQ(Names(), 1U);
}

TEST_F(FileSystemTest, ReplaceFileSaysWhyItCannotWrite) {
  directory_.Write("A", "");
  fs::create_directory(directory_.File("D"));
  ASSERT_EQ(mkfifo(directory_.File("PIPE").c_str(), 0600), 0);
  EXPECT_EQ(ReplaceFile(directory_.File("missing/B"), "x"), "No such file or directory");
  EXPECT_EQ(ReplaceFile(directory_.File("A/B"), "x"), "Not a directory");
  EXPECT_EQ(ReplaceFile(directory_.File("D"), "x"), "Is a directory");
  EXPECT_EQ(ReplaceFile(directory_.File("PIPE"), "x"), "Operation not supported");
  EXPECT_EQ(ReplaceFile("", "x"), "No such file or directory");
  EXPECT_EQ(Names(), 3U);
}

TEST_F(FileSystemTest, ReplaceFileTakesNoPathWithAZeroByteForAShorterOne) {
  directory_.Write("A", "old");
  EXPECT_NE(ReplaceFile(directory_.File("A") + std::string("\0x", 2), "new"), "");
  EXPECT_EQ(directory_.Read("A"), "old");
}

TEST_F(FileSystemTest, ReplaceFileKeepsALinkAndReplacesItsFile) {
  fs::create_directory(directory_.File("real"));
  directory_.Write("real/A", "old");
  fs::create_symlink("real/A", directory_.File("L"));
  EXPECT_EQ(ReplaceFile(directory_.File("L"), "new"), "");
  EXPECT_TRUE(fs::is_symlink(directory_.File("L")));
  EXPECT_EQ(directory_.Read("real/A"), "new");
}

TEST_F(FileSystemTest, ReplaceFilePutsAFileInPlaceOfALinkThatLeadsNowhere) {
  fs::create_symlink("nowhere", directory_.File("L"));
  EXPECT_EQ(ReplaceFile(directory_.File("L"), "new"), "");
  EXPECT_FALSE(fs::is_symlink(directory_.File("L")));
  EXPECT_EQ(directory_.Read("L"), "new");
}

TEST_F(FileSystemTest, ReplaceFileKeepsThePermissions) {
  directory_.Write("A", "old");
  fs::permissions(directory_.File("A"), fs::perms(0640));
  EXPECT_EQ(ReplaceFile(directory_.File("A"), "new"), "");
  EXPECT_EQ(fs::status(directory_.File("A")).permissions(), fs::perms(0640));
}

TEST_F(FileSystemTest, ReplaceFileStepsOverLeftoversOfACrash) {
  const std::string leftover = ".tavrel-" + std::to_string(getpid()) + "-0.tmp";
  directory_.Write(leftover, "junk");
  EXPECT_EQ(ReplaceFile(directory_.File("A"), "new"), "");
  EXPECT_EQ(directory_.Read("A"), "new");
  EXPECT_EQ(directory_.Read(leftover), "junk");
}

TEST_F(FileSystemTest, CopyFileToCopiesFilesOfAnyLength) {
  const std::string bytes(200'000, '\xA5');
  directory_.Write("A", bytes);
  EXPECT_EQ(CopyFileTo(directory_.File("A"), directory_.File("B")), "");
  EXPECT_EQ(directory_.Read("B"), bytes);
  directory_.Write("EMPTY", "");
  EXPECT_EQ(CopyFileTo(directory_.File("EMPTY"), directory_.File("B")), "");
  EXPECT_EQ(directory_.Read("B"), "");
}

// A source that fails while it is read is no shorter file: the old target stays, and nothing is
// left beside it.
TEST_F(FileSystemTest, CopyFileToKeepsTheTargetIfTheSourceCannotBeReadToItsEnd) {
  constexpr int kBlocksRead = 2;
  for (int good = 0; good <= kBlocksRead; ++good) {
    directory_.Write("A", std::string(200'000, 'a'));
    directory_.Write("B", "old");
    std::string problem;
    {
      const CallsOfFiles calls({.good_reads = good});
      problem = CopyFileTo(directory_.File("A"), directory_.File("B"));
    }
    EXPECT_EQ(problem, "Input/output error") << good;
    EXPECT_EQ(directory_.Read("B"), "old") << good;
    EXPECT_EQ(Names(), 2U) << good;
  }
}

// A new content is on the disk before it takes the place of the old one, and its name behind it.
TEST_F(FileSystemTest, ReplaceFilePutsTheContentAndItsNameToTheDisk) {
  directory_.Write("A", "old");
  {
    const CallsOfFiles calls({.good_syncs = 0});
    EXPECT_EQ(ReplaceFile(directory_.File("A"), "new"), "Input/output error");
  }
  EXPECT_EQ(directory_.Read("A"), "old");
  EXPECT_EQ(Names(), 1U);
  const CallsOfFiles calls({});
  EXPECT_EQ(ReplaceFile(directory_.File("A"), "new"), "");
  EXPECT_EQ(directory_.Read("A"), "new");
  EXPECT_EQ(CallsOfFiles::Syncs(), 2);
}

TEST_F(FileSystemTest, HoldsAnyFileIsSureOnceItHasFoundOne) {
  for (char name = 'a'; name <= 'j'; ++name) {
    MakeUnreadable(directory_.File(std::string(1, name)));
  }
  NoAnswer no_answer;
  EXPECT_FALSE(HoldsAnyFile(directory_.Path(), no_answer));
  EXPECT_NE(no_answer.Why, Failure::kNone);
  directory_.Write("found", "");
  EXPECT_TRUE(HoldsAnyFile(directory_.Path(), no_answer));
  EXPECT_EQ(no_answer.Why, Failure::kNone);
}

TEST_F(FileSystemTest, CopyFileToRefusesTheFileItselfUnderAnotherName) {
  directory_.Write("A", "abc");
  fs::create_hard_link(directory_.File("A"), directory_.File("B"));
  EXPECT_EQ(CopyFileTo(directory_.File("A"), directory_.File("B")), "File exists");
  EXPECT_EQ(directory_.Read("A"), "abc");
}

TEST_F(FileSystemTest, CopyFileToReplacesALinkAndSparesWhatItLeadsTo) {
  directory_.Write("A", "abc");
  directory_.Write("kept", "kept");
  fs::permissions(directory_.File("kept"), fs::perms(0400));
  for (const char* const target : {"kept", "nowhere", "/dev/null"}) {
    fs::remove(directory_.File("L"));
    fs::create_symlink(target, directory_.File("L"));
    EXPECT_EQ(CopyFileTo(directory_.File("A"), directory_.File("L")), "") << target;
    EXPECT_FALSE(fs::is_symlink(directory_.File("L")));
    EXPECT_EQ(directory_.Read("L"), "abc");
    EXPECT_NE(fs::status(directory_.File("L")).permissions(), fs::perms(0400));
  }
  EXPECT_EQ(directory_.Read("kept"), "kept");
  EXPECT_FALSE(fs::exists(directory_.File("nowhere")));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST_F(FileSystemTest, CopyFileToLeavesALinkToADirectoryAlone) {
  directory_.Write("A", "abc");
  fs::create_directory(directory_.File("D"));
  fs::create_directory_symlink("D", directory_.File("L"));
  EXPECT_EQ(CopyFileTo(directory_.File("A"), directory_.File("L")), "Is a directory");
  EXPECT_TRUE(fs::is_symlink(directory_.File("L")));
  EXPECT_TRUE(fs::is_empty(directory_.File("D")));
}

TEST_F(FileSystemTest, CopyFileToSaysWhatIsMissing) {
  EXPECT_EQ(CopyFileTo(directory_.File("A"), directory_.File("B")), "No such file or directory");
  directory_.Write("A", "abc");
  EXPECT_EQ(CopyFileTo(directory_.File("A"), directory_.File("missing/B")),
            "No such file or directory");
  EXPECT_EQ(Names(), 1U);
}

TEST_F(FileSystemTest, DeleteFileTakesAMissingFileForDeleted) {
  directory_.Write("A", "");
  EXPECT_EQ(DeleteFile(directory_.File("A")), "");
  EXPECT_FALSE(directory_.Exists("A"));
  EXPECT_EQ(DeleteFile(directory_.File("A")), "");
}

TEST_F(FileSystemTest, DeleteFileLeavesDirectoriesAlone) {
  fs::create_directory(directory_.File("D"));
  EXPECT_EQ(DeleteFile(directory_.File("D")), "Is a directory");
  EXPECT_TRUE(directory_.Exists("D"));
}

TEST_F(FileSystemTest, IsSameFileLooksThroughLinksAndSpellings) {
  directory_.Write("A", "");
  directory_.Write("B", "");
  fs::create_symlink("A", directory_.File("L"));
  EXPECT_TRUE(IsSameFile(directory_.File("A"), directory_.File("L")));
  EXPECT_TRUE(IsSameFile(directory_.File("A"), directory_.Path() + "/./A"));
  EXPECT_FALSE(IsSameFile(directory_.File("A"), directory_.File("B")));
  EXPECT_FALSE(IsSameFile(directory_.File("missing"), directory_.File("missing")));
}

TEST(ProgramDirectory, HoldsTheRunningProgram) {
  EXPECT_TRUE(FindFile(ProgramDirectory(), "platform_tests").has_value());
  EXPECT_FALSE(ProgramDirectory().ends_with('/'));
}

TEST(ProgramDirectory, IsAPackagesIfItHoldsItsMark) {
  const TemporaryDirectory program;
  EXPECT_FALSE(IsInstalledByPackage(program.Path()));
  program.Write("installed-by-package", "");
  EXPECT_TRUE(IsInstalledByPackage(program.Path()));
  EXPECT_EQ(PortLinkDirectory(), ProgramDirectory()) << "this program is not installed by one";
}

TEST(UserDataDirectory, FollowsTheEnvironment) {
  const char* const home = std::getenv("HOME");
  const std::string old_home = home != nullptr ? home : "";
  unsetenv("XDG_DATA_HOME");
  setenv("HOME", "/somewhere", 1);
  EXPECT_EQ(UserDataDirectory(), "/somewhere/.local/share/tavrel");
  setenv("XDG_DATA_HOME", "/data/", 1);
  EXPECT_EQ(UserDataDirectory(), "/data/tavrel");
  setenv("XDG_DATA_HOME", "relative", 1);
  EXPECT_EQ(UserDataDirectory(), "/somewhere/.local/share/tavrel");
  unsetenv("XDG_DATA_HOME");
  unsetenv("HOME");
  EXPECT_TRUE(UserDataDirectory().starts_with('/'));
  setenv("HOME", old_home.c_str(), 1);
}

TEST(RemoveLeftovers, TakesThoseOfDeadProcessesOnly) {
  const TemporaryDirectory home;
  const pid_t dead = fork();
  if (dead == 0) {
    _exit(0);
  }
  waitpid(dead, nullptr, 0);
  const auto name = [](pid_t process, const std::string& rest) {
    return ".tavrel-" + std::to_string(process) + rest;
  };
  const std::vector<std::string> left = {name(dead, "-0.tmp"), name(dead, "-99.tmp"),
                                         name(getpid(), "-3.tmp")};
  const std::vector<std::string> others = {name(getppid(), "-0.tmp"),
                                           name(dead, "-0.tmp.bak"),
                                           name(dead, "-x.tmp"),
                                           name(dead, ".tmp"),
                                           ".tavrel--1-0.tmp",
                                           ".tavrel-0-0.tmp",
                                           ".tavrel-99999999999999999999-0.tmp",
                                           "tavrel-1-0.tmp",
                                           "M260314A.OVN"};
  for (const std::string& each : left) {
    home.Write(each, "half");
  }
  for (const std::string& each : others) {
    home.Write(each, "kept");
  }
  std::filesystem::create_symlink(home.File("M260314A.OVN"), home.File(name(dead, "-5.tmp")));
  RemoveLeftovers(home.Path());
  for (const std::string& each : left) {
    EXPECT_FALSE(std::filesystem::exists(home.File(each))) << each;
  }
  for (const std::string& each : others) {
    EXPECT_EQ(home.Read(each), "kept") << each;
  }
  EXPECT_TRUE(IsLink(home.File(name(dead, "-5.tmp"))));
  RemoveLeftovers(home.File("nowhere"));
}

TEST(CopyFileTo, AsksBetweenThePartsOfALargeFileWhetherToGoOn) {
  const TemporaryDirectory home;
  std::string bytes(5 * 1024 * 1024 + 17, 'x');
  bytes.back() = 'y';
  home.Write("large", bytes);
  int asked = 0;
  EXPECT_EQ(CopyFileTo(home.File("large"), home.File("copy"), [&] { return ++asked > 0; }), "");
  EXPECT_EQ(asked, 5);
  EXPECT_EQ(home.Read("copy"), bytes);
  home.Write("copy", "old");
  asked = 0;
  EXPECT_NE(CopyFileTo(home.File("large"), home.File("copy"), [&] { return ++asked < 3; }), "");
  EXPECT_EQ(asked, 3);
  EXPECT_EQ(home.Read("copy"), "old");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(home.Path()),
                          std::filesystem::directory_iterator()),
            2);
}

TEST(CopyFileTo, AsksNothingForASmallFile) {
  const TemporaryDirectory home;
  home.Write("small", std::string(65000, 'x'));
  int asked = 0;
  EXPECT_EQ(CopyFileTo(home.File("small"), home.File("copy"), [&] { return ++asked < 1; }), "");
  EXPECT_EQ(asked, 0);
}

}  // namespace
}  // namespace tavrel
