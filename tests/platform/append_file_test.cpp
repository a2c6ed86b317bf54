#include "platform/append_file.h"

#include <gtest/gtest.h>

#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

constexpr std::int64_t kNoLimit = 1 << 20;

struct Content {
  std::string bytes;
  bool ends_inside_line;
};

TEST(AppendFile, KnowsWhetherItsLastLineIsWhole) {
  const TemporaryDirectory home;
  for (const auto& [bytes, ends_inside_line] :
       {Content{"", false}, {"\n", false}, {"one\n", false}, {"one\ntw", true}, {"o", true}}) {
    home.Write("lines", bytes);
    AppendFile file;
    ASSERT_TRUE(file.Open(home.File("lines")));
    EXPECT_EQ(file.EndsInsideLine(), ends_inside_line) << bytes;
    EXPECT_EQ(file.Size(), static_cast<std::int64_t>(bytes.size()));
  }
}

TEST(AppendFile, AddsBehindWhatThereIs) {
  const TemporaryDirectory home;
  home.Write("lines", "one\n");
  AppendFile file;
  ASSERT_TRUE(file.Open(home.File("lines")));
  EXPECT_TRUE(file.Append("two\n"));
  EXPECT_TRUE(file.Append("three\n"));
  EXPECT_EQ(file.Size(), 14);
  EXPECT_EQ(file.ReadAll(kNoLimit), "one\ntwo\nthree\n");
  EXPECT_TRUE(file.Sync());
  EXPECT_EQ(home.Read("lines"), "one\ntwo\nthree\n");
}

TEST(AppendFile, ReadsNothingThatIsLongerThanWanted) {
  const TemporaryDirectory home;
  home.Write("lines", "12345");
  AppendFile file;
  ASSERT_TRUE(file.Open(home.File("lines")));
  EXPECT_EQ(file.ReadAll(5), "12345");
  EXPECT_EQ(file.ReadAll(4), std::nullopt);
}

TEST(AppendFile, IsMadeWithItsNameOnTheDisk) {
  const TemporaryDirectory home;
  AppendFile file;
  ASSERT_TRUE(file.Open(home.File("new")));
  EXPECT_EQ(file.ReadAll(0), "");
  EXPECT_TRUE(file.Append("one\n"));
  EXPECT_TRUE(file.Sync());
  EXPECT_TRUE(file.Sync());
  EXPECT_EQ(home.Read("new"), "one\n");
}

TEST(AppendFile, SaysWhyItCannotBeOpened) {
  const TemporaryDirectory home;
  AppendFile file;
  EXPECT_FALSE(file.Open(home.File("missing/lines")));
  EXPECT_FALSE(file.IsOpen());
  EXPECT_EQ(file.Error(), "No such file or directory");
}

}  // namespace
}  // namespace tavrel
