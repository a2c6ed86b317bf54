#include "tests/truth/comparison.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <sstream>
#include <utility>
#include <vector>

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
  EXPECT_TRUE(found.Agrees());
  EXPECT_EQ(found.rows, 4);
  EXPECT_EQ(found.excused, 0);
}

TEST(Comparison, CountsAWrongWordAndItsRowAsTorn) {
  const Findings found = Compare(ThreeSets(), kSlot, Bytes({11, 12, 11, 12, 21, 99, 31, 32}));
  EXPECT_EQ(found.wrong, 1);
  EXPECT_EQ(found.torn, 1);
  EXPECT_FALSE(found.Agrees());
}

Told Filled(int row, std::vector<int> inputs = {2}) {
  return {{{"A.OVN", ToldDoubt::Kind::kFilled, row, row, std::move(inputs)}}, {}};
}

Told Uncertain(int first_row, int last_row, int input = 2) {
  return {{{"A.OVN", ToldDoubt::Kind::kUncertain, first_row, last_row, {input}}}, {}};
}

TEST(Comparison, AWordWhoseReplyIsInDoubtMayStandThereOrNot) {
  const std::string filled = Bytes({11, 12, 11, 12, 21, 12, 31, 32});
  const std::string whole = Bytes({11, 12, 11, 12, 21, 22, 31, 32});
  EXPECT_EQ(Compare(ThreeSets("good"), kSlot, filled, Filled(2)).invented, 1);
  EXPECT_TRUE(Compare(ThreeSets("doubtful"), kSlot, filled, Filled(2)).Agrees());
  EXPECT_TRUE(Compare(ThreeSets("doubtful"), kSlot, whole).Agrees());
  EXPECT_FALSE(Compare(ThreeSets("doubtful"), kSlot, filled).Agrees());
}

TEST(Comparison, ExcusesAWordWhoseReplyWasLostIfTheUserWasTold) {
  const std::string bytes = Bytes({11, 12, 11, 12, 21, 12, 31, 32});
  const Findings found = Compare(ThreeSets("lost"), kSlot, bytes, Filled(2));
  EXPECT_TRUE(found.Agrees());
  EXPECT_EQ(found.excused, 1);
  EXPECT_EQ(found.told_filled, 1);
  EXPECT_EQ(found.losses, 1);
  EXPECT_EQ(found.in_doubt, 0);
  const Findings untold = Compare(ThreeSets("lost"), kSlot, bytes);
  EXPECT_FALSE(untold.HoldsTheTruth());
  EXPECT_FALSE(untold.Agrees());
  EXPECT_EQ(untold.wrong, 1);
}

TEST(Comparison, ExcusesNoOtherRowOrInputOrFileThanTheUserWasTold) {
  const std::string bytes = Bytes({11, 12, 11, 12, 21, 12, 31, 32});
  EXPECT_EQ(Compare(ThreeSets("lost"), kSlot, bytes, Filled(3)).wrong, 1);
  EXPECT_EQ(Compare(ThreeSets("lost"), kSlot, bytes, Filled(2, {1})).wrong, 1);
  EXPECT_EQ(Compare(ThreeSets("lost"), kSlot, bytes, Filled(2, {})).wrong, 0);
  Told other = Filled(2);
  other.doubts[0].file = "B.OVN";
  EXPECT_EQ(Compare(ThreeSets("lost"), kSlot, bytes, other).wrong, 1);
}

TEST(Comparison, CountsAValueThatWasFilledInAlthoughItHadArrivedAsInvented) {
  const Findings found =
      Compare(ThreeSets(), kSlot, Bytes({11, 12, 11, 12, 21, 12, 31, 32}), Filled(2));
  EXPECT_EQ(found.invented, 1);
  EXPECT_TRUE(found.HoldsTheTruth());
  EXPECT_FALSE(found.Agrees());
}

// The value of input 2 in set 2 is lost and its column runs one set ahead from there on.
TEST(Comparison, CountsALossThatEndedAsUncertain) {
  std::stringstream file(
      "sample 10 1 1 1 11\nsample 10 1 2 1 12\nsample 20 1 1 2 21\nsample 20 1 2 2 22\n"
      "sample 30 1 1 3 31\nsample 30 1 2 3 32\nhanded 40 1 1 1 11 good\n"
      "handed 40 1 2 1 12 good\nhanded 40 1 1 2 21 good\nhanded 40 1 2 2 22 lost\n"
      "handed 40 1 2 3 32 good\n");
  const LineTruth truth = ReadLineTruth(file, {});
  const std::string bytes = Bytes({11, 12, 11, 12, 21, 32});
  const Findings found = Compare(truth, kSlot, bytes, Uncertain(2, ToldDoubt::kOpen));
  EXPECT_TRUE(found.Agrees());
  EXPECT_EQ(found.excused, 1);
  EXPECT_EQ(found.losses, 1);
  EXPECT_EQ(found.in_doubt, 1);
  EXPECT_EQ(Compare(truth, kSlot, bytes).wrong, 1);
}

// Sets 1 to `sets` of inputs 1 and 2; the value of input 1 in set 2 is lost, and that of input 2 in
// set `second`, 0 for none.
LineTruth SetsWithLosses(int sets, int second) {
  std::stringstream file;
  for (int set = 1; set <= sets; ++set) {
    for (int input = 1; input <= 2; ++input) {
      const bool is_lost = set == (input == 1 ? 2 : second);
      const std::string place = " 1 " + std::to_string(input) + " " + std::to_string(set) + " " +
                                std::to_string(10 * set + input);
      file << "sample " << 10 * set << place << "\nhanded " << 10 * set << place
           << (is_lost ? " lost\n" : " good\n");
    }
  }
  return ReadLineTruth(file, {});
}

Told UncertainFrom(int first_row_of_1, int first_row_of_2) {
  const auto doubt = [](int row, int input) {
    return ToldDoubt{"A.OVN", ToldDoubt::Kind::kUncertain, row, ToldDoubt::kOpen, {input}};
  };
  return {{doubt(first_row_of_1, 1), doubt(first_row_of_2, 2)}, {}};
}

// From the second loss on all columns run one set ahead, and one set has no row.
TEST(Comparison, ExcusesASetThatAllColumnsHaveLeftBehindOneAfterTheOther) {
  const LineTruth truth = SetsWithLosses(8, 5);
  const std::string bytes = Bytes({11, 12, 11, 12, 31, 22, 41, 32, 51, 42, 61, 62, 71, 72, 81, 82});
  const Findings found = Compare(truth, kSlot, bytes, UncertainFrom(2, 5));
  EXPECT_TRUE(found.Agrees());
  EXPECT_EQ(found.lost, 0);
  EXPECT_EQ(found.losses, 2);
  EXPECT_EQ(found.in_doubt, 2);
  EXPECT_FALSE(Compare(truth, kSlot, bytes, UncertainFrom(2, 99)).Agrees());
  EXPECT_FALSE(Compare(SetsWithLosses(8, 0), kSlot, bytes, UncertainFrom(2, 5)).Agrees());
}

// Input 1 runs one set ahead: when its last value is in a row, input 2 of that set is in hand.
TEST(Comparison, ExcusesTheSetInHandBehindAColumnThatRunsAhead) {
  const LineTruth truth = SetsWithLosses(5, 0);
  const Told told = Uncertain(2, ToldDoubt::kOpen, 1);
  EXPECT_TRUE(
      Compare(truth, kSlot, Bytes({11, 12, 11, 12, 31, 22, 41, 32, 51, 42}), told).Agrees());
  const std::string cut = Bytes({11, 12, 11, 12, 31, 22, 41, 32});
  EXPECT_EQ(Compare(truth, kSlot, cut, told).lost, 1);
  EXPECT_FALSE(Compare(truth, kSlot, Bytes({11, 12, 11, 12, 31, 22, 41, 32, 51, 42})).Agrees());
}

// Input 2 runs one set behind: of the set of the last row its value still waits.
TEST(Comparison, ExcusesTheLastRowOfAColumnThatRunsBehind) {
  std::stringstream file;
  for (int set = 1; set <= 4; ++set) {
    for (int input = 1; input <= 2; ++input) {
      const std::string place = " 1 " + std::to_string(input) + " " + std::to_string(set) + " " +
                                std::to_string(10 * set + input);
      file << "sample " << 10 * set << place << '\n';
      if (set < 4 || input == 1) {
        file << "handed " << 10 * set << place << " good\n";
      }
    }
  }
  const LineTruth truth = ReadLineTruth(file, {});
  const std::string bytes = Bytes({11, 12, 11, 12, 21, 12, 31, 22, 41, 32});
  EXPECT_TRUE(Compare(truth, kSlot, bytes, Uncertain(2, ToldDoubt::kOpen)).Agrees());
  EXPECT_FALSE(Compare(truth, kSlot, bytes).Agrees());
  EXPECT_FALSE(Compare(truth, kSlot, Bytes({11, 12, 11, 12, 21, 12, 31, 22, 31, 32}),
                       Uncertain(2, ToldDoubt::kOpen))
                   .Agrees())
      << "the certain column has a row twice";
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
  EXPECT_FALSE(found.Agrees());
}

TEST(Comparison, CountsACutEndAsTorn) {
  EXPECT_EQ(Compare(ThreeSets(), kSlot, Bytes({11, 12, 11, 12, 21, 22, 31, 32, 5})).torn, 1);
}

TEST(Comparison, TakesTheLastWordBeforeACutForNoPromise) {
  std::stringstream file(
      "sample 10 1 1 1 11\nsample 10 1 2 1 12\n"
      "handed 21 1 1 1 11 good\nhanded 21 1 2 1 12 good\n");
  const Findings found = Compare(ReadLineTruth(file, {2}), kSlot, Bytes({11, 9, 11, 9}), Filled(1));
  EXPECT_TRUE(found.Agrees());
  EXPECT_EQ(found.excused, 1);
  EXPECT_EQ(found.losses, 1);
}

// One input whose second value is lost: the set is missing and all later ones stand one row early.
TEST(Comparison, CountsASingleColumnThatTheUserWasToldToBeUncertain) {
  const RecordedSlot slot{"A.OVN", 1, {2}};
  const Findings found =
      Compare(ThreeSets("lost"), slot, Bytes({12, 12, 32}), Uncertain(2, ToldDoubt::kOpen));
  EXPECT_TRUE(found.Agrees());
  EXPECT_EQ(found.losses, 1);
  EXPECT_EQ(found.in_doubt, 1);
  EXPECT_FALSE(Compare(ThreeSets("lost"), slot, Bytes({12, 12, 32})).Agrees());
  EXPECT_FALSE(Compare(ThreeSets(), slot, Bytes({12, 12, 32}), Uncertain(2, 2)).Agrees());
}

// Input 2 is sampled 7 s after input 1.
TEST(Comparison, KnowsTheSamplesOfASetThatLieApart) {
  std::stringstream file(
      "sample 10 1 1 1 11\nsample 17 1 2 1 12\nsample 20 1 1 2 21\nhanded 21 1 1 1 11 good\n"
      "handed 22 1 2 1 12 good\nhanded 23 1 1 2 21 good\nsample 27 1 2 2 22\n"
      "handed 28 1 2 2 22 good\nsample 30 1 1 3 31\nhanded 31 1 1 3 31 good\n");
  const Findings found = Compare(ReadLineTruth(file, {}), kSlot, Bytes({11, 12, 11, 12, 21, 22}));
  EXPECT_TRUE(found.Agrees());
}

// Four sets of inputs 1 and 2, of which a full buffer has lost the first for input 1 and the
// first two for input 2.
LineTruth Overrun() {
  std::stringstream file;
  for (int set = 1; set <= 5; ++set) {
    file << "sample " << set * 10 << " 1 1 " << set << ' ' << 10 * set + 1 << "\nsample "
         << set * 10 << " 1 2 " << set << ' ' << 10 * set + 2 << '\n';
  }
  file << "overrun 50 1 1 1\noverrun 50 1 2 1\noverrun 50 1 2 2\n";
  for (int set = 2; set <= 5; ++set) {
    file << "handed 60 1 1 " << set << ' ' << 10 * set + 1 << " good\n";
  }
  for (int set = 3; set <= 5; ++set) {
    file << "handed 60 1 2 " << set << ' ' << 10 * set + 2 << " good\n";
  }
  return ReadLineTruth(file, {});
}

Told Lost(int sets, bool is_about = false) {
  return {{}, {{"A.OVN", sets, is_about}}};
}

TEST(Comparison, WantsSetsThatAFullBufferLostToBeTold) {
  const std::string bytes = Bytes({31, 32, 31, 32, 41, 42, 51, 52});
  const Findings found = Compare(Overrun(), kSlot, bytes, Lost(2));
  EXPECT_TRUE(found.Agrees());
  EXPECT_EQ(found.lost, 2);
  EXPECT_EQ(found.told_lost, 2);
  EXPECT_FALSE(Compare(Overrun(), kSlot, bytes).Agrees());
  EXPECT_FALSE(Compare(Overrun(), kSlot, bytes, Lost(3)).Agrees());
  EXPECT_TRUE(Compare(Overrun(), kSlot, bytes, Lost(3, true)).Agrees());
  EXPECT_FALSE(Compare(Overrun(), kSlot, bytes, Lost(9, true)).Agrees());
}

TEST(Comparison, WantsSetsThatARestartedInstrumentForgotToBeTold) {
  std::stringstream file(
      "sample 10 1 1 1 11\nsample 10 1 2 1 12\nsample 20 1 1 2 21\nsample 20 1 2 2 22\n"
      "handed 21 1 1 1 11 good\nhanded 21 1 2 1 12 good\nrestart 22 1\n"
      "sample 30 1 1 1 31\nsample 30 1 2 1 32\n"
      "handed 31 1 1 1 31 good\nhanded 31 1 2 1 32 good\n");
  const LineTruth truth = ReadLineTruth(file, {});
  const std::string bytes = Bytes({11, 12, 11, 12, 31, 32});
  const Findings found = Compare(truth, kSlot, bytes, Lost(1, true));
  EXPECT_TRUE(found.Agrees());
  EXPECT_EQ(found.lost, 1);
  EXPECT_FALSE(Compare(truth, kSlot, bytes).Agrees());
}

// The user has stopped the recording and started it again.
TEST(Comparison, MissesNoSetOfABufferThatWasCleared) {
  std::stringstream file(
      "sample 10 1 1 1 11\nsample 10 1 2 1 12\nsample 20 1 1 2 21\nsample 20 1 2 2 22\n"
      "handed 11 1 1 1 11 good\nhanded 11 1 2 1 12 good\nclear 22 1 1\nclear 22 1 2\n"
      "sample 30 1 1 1 31\nsample 30 1 2 1 32\n"
      "handed 31 1 1 1 31 good\nhanded 31 1 2 1 32 good\n");
  const Findings found = Compare(ReadLineTruth(file, {}), kSlot, Bytes({11, 12, 11, 12, 31, 32}));
  EXPECT_TRUE(found.Agrees());
  EXPECT_EQ(found.lost, 0);
}

// The set was pushed out of the buffer but for the value of input 3; those that were filled in are
// by chance the ones of a set that came later.
TEST(Comparison, FindsTheSetOfARowByTheValuesThatWereNotFilledIn) {
  const RecordedSlot slot{"A.OVN", 1, {1, 2, 3}};
  std::stringstream file;
  for (int set = 1; set <= 5; ++set) {
    for (int input = 1; input <= 3; ++input) {
      const bool is_steady = input < 3 && set != 2;
      const int word = is_steady ? 7 : 10 * set + input;
      file << "sample " << set * 10 << " 1 " << input << ' ' << set << ' ' << word << '\n';
      if (set == 2 && input < 3) {
        file << "overrun 35 1 " << input << " 2\n";
      } else {
        file << "handed 60 1 " << input << ' ' << set << ' ' << word << " good\n";
      }
    }
  }
  const std::string bytes = Bytes({7, 7, 13, 7, 7, 13, 7, 7, 23, 7, 7, 33, 7, 7, 43, 7, 7, 53});
  const Findings found = Compare(ReadLineTruth(file, {}), slot, bytes, Filled(2, {1, 2}));
  EXPECT_TRUE(found.Agrees());
  EXPECT_EQ(found.invented, 0);
}

// Set 2 was given up to make room; then the buffer was full once more and has lost the value of
// input 2 of set 3.
TEST(Comparison, FindsTheSetOfARowBesideOneThatWasGivenUp) {
  std::stringstream file;
  for (int set = 1; set <= 4; ++set) {
    for (int input = 1; input <= 2; ++input) {
      const std::string place = " 1 " + std::to_string(input) + " " + std::to_string(set);
      file << "sample " << set * 10 << place << ' ' << 10 * set + input << '\n';
      if (set == 3 && input == 2) {
        file << "overrun 45" << place << '\n';
      } else {
        file << "handed 60" << place << ' ' << 10 * set + input << " good\n";
      }
    }
  }
  Told told = Lost(1);
  told.doubts = Filled(2).doubts;
  const Findings found =
      Compare(ReadLineTruth(file, {}), kSlot, Bytes({11, 12, 11, 12, 31, 12, 41, 42}), told);
  EXPECT_TRUE(found.Agrees());
  EXPECT_EQ(found.given_up, 1);
  EXPECT_EQ(found.wrong, 0);
}

TEST(Comparison, FindsAColumnThatAFullBufferShifted) {
  const Findings found =
      Compare(Overrun(), kSlot, Bytes({21, 32, 21, 32, 31, 42, 41, 52}), Lost(2));
  EXPECT_GT(found.wrong, 0);
  EXPECT_EQ(found.shifted, 1);
  EXPECT_FALSE(found.Agrees());
}

TEST(Comparison, FindsSeveralMissingSetsInOnePlace) {
  std::stringstream file;
  std::string bytes = Bytes({11, 12, 11, 12});
  for (int set = 1; set <= 9; ++set) {
    for (int input = 1; input <= 2; ++input) {
      file << "sample " << set * 10 << " 1 " << input << ' ' << set << ' ' << 10 * set + input
           << "\nhanded " << set * 10 << " 1 " << input << ' ' << set << ' ' << 10 * set + input
           << " good\n";
    }
    bytes += set == 1 || (set >= 4 && set <= 6) ? "" : Bytes({10 * set + 1, 10 * set + 2});
  }
  const Findings found = Compare(ReadLineTruth(file, {}), kSlot, bytes);
  EXPECT_EQ(found.lost, 3);
  EXPECT_EQ(found.wrong, 0);
  EXPECT_EQ(found.torn, 0);
}

}  // namespace
}  // namespace tavrel
