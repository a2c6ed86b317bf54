#include "graph/sample_reader.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

// Words 1, 2, 3 ... from record 1 on.
class SampleReaderTest : public testing::Test {
 protected:
  void Write(int words, const std::string& tail = {}) {
    std::string bytes(static_cast<std::size_t>(words) * 2, '\0');
    for (int n = 0; n < words; ++n) {
      const auto word = static_cast<std::int16_t>(n + 1);
      std::memcpy(bytes.data() + 2 * n, &word, sizeof word);
    }
    home.Write("words", bytes + tail);
    ASSERT_TRUE(file.Open(home.File("words"), FileAccess::kRead));
  }

  TemporaryDirectory home;
  RandomFile file;
};

TEST_F(SampleReaderTest, ReadsForwardsBackwardsAndAcrossItsWindow) {
  Write(20000);
  SampleReader reader(file);
  for (const int record : {1, 2, 501, 2048, 2049, 2050, 20000, 3, 19999, 5000}) {
    EXPECT_EQ(reader.Word(record), record);
  }
}

TEST_F(SampleReaderTest, GivesDegreesInStepsOfATwentieth) {
  Write(600);
  SampleReader reader(file);
  EXPECT_DOUBLE_EQ(reader.Degrees(503).value(), 25.15);
}

TEST_F(SampleReaderTest, HasNoValueWhereThereIsNoWord) {
  Write(600, "x");  // and half a word
  SampleReader reader(file);
  EXPECT_EQ(reader.Word(700), std::nullopt);
  EXPECT_EQ(reader.Word(600), 600);
  EXPECT_EQ(reader.Word(601), std::nullopt);
  EXPECT_EQ(reader.Degrees(601), std::nullopt);
  EXPECT_EQ(reader.Word(32700), std::nullopt);
  EXPECT_EQ(reader.Word(0), std::nullopt);
  EXPECT_EQ(reader.Word(-5), std::nullopt);
  EXPECT_EQ(reader.Word(7), 7);
}

TEST_F(SampleReaderTest, HasNoValueOfAClosedFile) {
  SampleReader reader(file);
  EXPECT_EQ(reader.Word(501), std::nullopt);
}

TEST_F(SampleReaderTest, SeesWhatTheFileGainsBehindItsEnd) {
  Write(600);
  SampleReader reader(file);
  EXPECT_EQ(reader.Word(601), std::nullopt);
  Write(700);
  EXPECT_EQ(reader.Word(601), 601);
}

}  // namespace
}  // namespace tavrel
