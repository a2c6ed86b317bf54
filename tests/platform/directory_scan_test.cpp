#include "platform/directory_scan.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <map>

#include "tests/files/recording_fixture.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

namespace fs = std::filesystem;

class ScanTest : public testing::Test {
 protected:
  // What the scan finds, by name.
  std::map<std::string, std::string> Scan(std::int64_t offset, std::size_t bytes,
                                          std::int64_t least_bytes = 10) {
    std::map<std::string, std::string> found;
    ScanRequest request;
    request.Directory = directory_.Path();
    request.LeastBytes = least_bytes;
    request.Offset = offset;
    request.Bytes = bytes;
    request.Found = [&](std::string_view name, std::string_view piece, std::int64_t) {
      found.emplace(name, piece);
    };
    EXPECT_EQ(ScanDirectory(request), "");
    return found;
  }

  TemporaryDirectory directory_;
};

TEST_F(ScanTest, ReadsOnePieceOfEachFileThatIsLongEnough) {
  directory_.Write("long", "0123456789abcdef");
  directory_.Write("exact", "0123456789");
  directory_.Write("short", "012345678");
  directory_.Write("empty", "");
  EXPECT_EQ(Scan(2, 4), (std::map<std::string, std::string>{{"exact", "2345"}, {"long", "2345"}}));
}

TEST_F(ScanTest, GivesAShorterPieceWhereTheFileEnds) {
  directory_.Write("file", "0123456789");
  EXPECT_EQ(Scan(8, 4).at("file"), "89");
  EXPECT_EQ(Scan(20, 4).at("file"), "");
  EXPECT_EQ(Scan(0, 1000).at("file"), "0123456789");
}

TEST_F(ScanTest, PassesOverWhatIsNoReadablePlainFile) {
  fs::create_directory(directory_.File("directory"));
  ASSERT_EQ(mkfifo(directory_.File("pipe").c_str(), 0600), 0);
  fs::create_symlink("pipe", directory_.File("link-to-pipe"));
  fs::create_symlink("nowhere", directory_.File("link-to-nowhere"));
  fs::create_symlink("loop-b", directory_.File("loop-a"));
  fs::create_symlink("loop-a", directory_.File("loop-b"));
  fs::create_symlink("directory", directory_.File("link-to-directory"));
  fs::create_symlink("/dev/zero", directory_.File("link-to-device"));
  directory_.Write(".hidden", "0123456789");
  directory_.Write("file", "0123456789");
  fs::create_symlink("file", directory_.File("link-to-file"));
  EXPECT_EQ(Scan(0, 2, 0),
            (std::map<std::string, std::string>{{"file", "01"}, {"link-to-file", "01"}}));
}

TEST_F(ScanTest, PassesOverAFileWithoutTheRightToReadIt) {
  directory_.Write("closed", "0123456789");
  directory_.Write("open", "0123456789");
  fs::permissions(directory_.File("closed"), fs::perms::none);
  const ReadOnlyMedium as_nobody(directory_.Path(), directory_.File("open"));
  const auto found = Scan(0, 2);
  EXPECT_TRUE(found.contains("open"));
  EXPECT_FALSE(found.contains("closed"));
}

TEST_F(ScanTest, OpensOnlyWhatIsWanted) {
  directory_.Write("yes", "0123456789");
  directory_.Write("no", "0123456789");
  std::vector<std::string> found;
  std::vector<std::int64_t> lengths;
  std::vector<std::pair<std::size_t, std::size_t>> progress;
  ScanRequest request;
  request.Directory = directory_.Path();
  request.Wants = [](std::string_view name) { return name == "yes"; };
  request.Found = [&](std::string_view name, std::string_view, std::int64_t length) {
    found.emplace_back(name);
    lengths.push_back(length);
  };
  request.Progress = [&](std::size_t done, std::size_t of) { progress.emplace_back(done, of); };
  EXPECT_EQ(ScanDirectory(request), "");
  EXPECT_EQ(found, std::vector<std::string>{"yes"});
  ASSERT_EQ(lengths.size(), 1U);
  EXPECT_EQ(lengths[0], static_cast<std::int64_t>(directory_.Read("yes").size()));
  EXPECT_EQ(progress, (std::vector<std::pair<std::size_t, std::size_t>>{{1, 1}}));
}

TEST_F(ScanTest, TellsWhyADirectoryCannotBeListed) {
  ScanRequest request;
  request.Found = [](std::string_view, std::string_view, std::int64_t) {};
  request.Directory = directory_.File("missing");
  EXPECT_EQ(ScanDirectory(request), "No such file or directory");
  directory_.Write("file", "");
  request.Directory = directory_.File("file");
  EXPECT_EQ(ScanDirectory(request), "Not a directory");
  request.Directory = directory_.Path() + std::string("\0x", 2);
  EXPECT_EQ(ScanDirectory(request), "No such file or directory");
}

}  // namespace
}  // namespace tavrel
