#include "tests/truth/comparison.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <sstream>

namespace tavrel {
namespace {

const RecordedSlot kSlot{"A.OVN", 1, {1, 2}};

std::string Bytes(std::initializer_list<int> words) {
  std::string bytes;
  for (const int word : words) {
    bytes += static_cast<char>(word & 0xFF);
    bytes += static_cast<char>((word >> 8) & 0xFF);
  }
  return bytes;
}

// Three sets of inputs 1 and 2, all handed over; the words of input k are 10 s + k. The reply of
// input 2 of set 2 has the given fate.
LineTruth ThreeSets(const std::string& fate = "good") {
  std::stringstream file;
  for (int set = 1; set <= 3; ++set) {
    for (int input = 1; input <= 2; ++input) {
      file << "sample " << set * 10 << " 1 " << input << ' ' << set << ' ' << 10 * set + input
           << '\n';
    }
  }
  for (int set = 1; set <= 3; ++set) {
    for (int input = 1; input <= 2; ++input) {
      file << "handed 40 1 " << input << ' ' << set << ' ' << 10 * set + input << ' '
           << (set == 2 && input == 2 ? fate : "good") << '\n';
    }
  }
  return ReadLineTruth(file, {});
}

TEST(Comparison, FindsNothingInATrueRecording) {
  const Findings found = Compare(ThreeSets(), kSlot, Bytes({11, 12, 11, 12, 21, 22, 31, 32}));
  EXPECT_TRUE(found.IsTrue());
  EXPECT_EQ(found.rows, 4);
  EXPECT_EQ(found.excused, 0);
}

TEST(Comparison, CountsAWrongWordAndItsRowAsTorn) {
  const Findings found = Compare(ThreeSets(), kSlot, Bytes({11, 12, 11, 12, 21, 99, 31, 32}));
  EXPECT_EQ(found.wrong, 1);
  EXPECT_EQ(found.torn, 1);
  EXPECT_FALSE(found.IsTrue());
}

TEST(Comparison, ExcusesAWordWhoseReplyWasLost) {
  const Findings found = Compare(ThreeSets("lost"), kSlot, Bytes({11, 12, 11, 12, 21, 12, 31, 32}));
  EXPECT_TRUE(found.IsTrue());
  EXPECT_EQ(found.excused, 1);
}

TEST(Comparison, CountsASetThatIsMissingInTheMiddle) {
  const Findings found = Compare(ThreeSets(), kSlot, Bytes({11, 12, 11, 12, 31, 32}));
  EXPECT_EQ(found.lost, 1);
  EXPECT_EQ(found.wrong, 0);
}

TEST(Comparison, CountsASetThatIsMissingAtTheEnd) {
  EXPECT_EQ(Compare(ThreeSets(), kSlot, Bytes({11, 12, 11, 12, 21, 22})).lost, 1);
}

TEST(Comparison, CountsARowThatStandsThereTwice) {
  const Findings found =
      Compare(ThreeSets(), kSlot, Bytes({11, 12, 11, 12, 21, 22, 21, 22, 31, 32}));
  EXPECT_EQ(found.doubled, 1);
  EXPECT_EQ(found.wrong, 0);
}

TEST(Comparison, CountsAColumnThatRunsAhead) {
  const Findings found = Compare(ThreeSets(), kSlot, Bytes({11, 22, 11, 22, 21, 32}));
  EXPECT_EQ(found.shifted, 1);
  EXPECT_FALSE(found.IsTrue());
}

TEST(Comparison, CountsACutEndAsTorn) {
  EXPECT_EQ(Compare(ThreeSets(), kSlot, Bytes({11, 12, 11, 12, 21, 22, 31, 32, 5})).torn, 1);
}

TEST(Comparison, ExpectsNoSetThatARestartedInstrumentForgot) {
  std::stringstream file(
      "sample 10 1 1 1 11\nsample 10 1 2 1 12\nsample 20 1 1 2 21\nsample 20 1 2 2 22\n"
      "handed 21 1 1 1 11 good\nhanded 21 1 2 1 12 good\nrestart 22 1\n"
      "sample 30 1 1 1 31\nsample 30 1 2 1 32\n"
      "handed 31 1 1 1 31 good\nhanded 31 1 2 1 32 good\n");
  const Findings found = Compare(ReadLineTruth(file, {}), kSlot, Bytes({11, 12, 11, 12, 31, 32}));
  EXPECT_TRUE(found.IsTrue());
}

TEST(Comparison, TakesTheLastWordBeforeACutForNoPromise) {
  std::stringstream file(
      "sample 10 1 1 1 11\nsample 10 1 2 1 12\n"
      "handed 21 1 1 1 11 good\nhanded 21 1 2 1 12 good\n");
  const Findings found = Compare(ReadLineTruth(file, {2}), kSlot, Bytes({11, 9, 11, 9}));
  EXPECT_TRUE(found.IsTrue());
  EXPECT_EQ(found.excused, 1);
}

}  // namespace
}  // namespace tavrel
