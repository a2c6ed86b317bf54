#include "setup/variable_file.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <vector>

namespace tavrel {
namespace {

// What a file gives, and how it ends.
struct Content {
  std::vector<Variable> variables;
  VariableReader::Place end = VariableReader::Place::kReading;
};

Content Read(const std::string& bytes) {
  VariableReader reader(bytes);
  Content content;
  Variable variable;
  while ((content.end = reader.Next(variable)) == VariableReader::Place::kReading) {
    content.variables.push_back(variable);
  }
  EXPECT_EQ(reader.Next(variable), content.end) << "the end stays the end";
  return content;
}

constexpr auto kWhole = VariableReader::Place::kWhole;
constexpr auto kBroken = VariableReader::Place::kBroken;

const std::string kSixteen = "0,1,2,3,4,5,6,7,8,9,10,11,12,13,14,15";

VariableWords SomeWords() {
  VariableWords words{};
  int number = -32768;
  for (auto& group : words) {
    for (std::int16_t& word : group) {
      word = static_cast<std::int16_t>(number);
      number += 241;  // up to 32543
    }
  }
  words.back().back() = std::numeric_limits<std::int16_t>::max();
  return words;
}

TEST(VariableFile, HasAPairOfLinesForEachGroup) {
  VariableWords words{};
  words[0] = {0, 1, -1, 32767, -32768};
  const std::string bytes = VariableFileBytes(words);
  EXPECT_EQ(bytes.substr(0, 55), "G\r\n0,1,-1,32767,-32768,0,0,0,0,0,0,0,0,0,0,0\r\nH\r\n0,0,0,");
  std::string letters;
  int lines = 0;
  for (std::size_t begin = 0; begin < bytes.size(); ++lines) {
    const std::size_t end = bytes.find("\r\n", begin);
    ASSERT_NE(end, std::string::npos);
    letters += lines % 2 == 0 ? bytes.substr(begin, end - begin) : "";
    begin = end + 2;
  }
  EXPECT_EQ(lines, 34);
  EXPECT_EQ(letters, "GHIJKLMNOPQRSTVWZ");
}

TEST(VariableFile, IsReadAsItWasWritten) {
  const VariableWords words = SomeWords();
  const Content content = Read(VariableFileBytes(words));
  EXPECT_EQ(content.end, kWhole);
  ASSERT_EQ(content.variables.size(), 272U);
  for (std::size_t place = 0; place < content.variables.size(); ++place) {
    const Variable expected{kVariableLetters[place / 16], static_cast<int>(place % 16),
                            words.at(place / 16).at(place % 16)};
    EXPECT_EQ(content.variables[place], expected) << place;
  }
}

TEST(VariableFile, LoadsAllButThirtyThreeRegisters) {
  int loaded = 0;
  for (const char letter : kVariableLetters) {
    for (int row = 0; row < kRegistersPerLetter; ++row) {
      const bool is_loaded = IsLoadable({letter, row, 0});
      loaded += is_loaded ? 1 : 0;
      EXPECT_EQ(is_loaded, letter != 'R' && letter != 'S' && (letter != 'I' || row != 0))
          << letter << row;
    }
  }
  EXPECT_EQ(loaded, 239);
}

TEST(VariableFile, NamesARegisterByItsLetterAndTwoDigits) {
  EXPECT_EQ(VariableName('G', 0), "G00");
  EXPECT_EQ(VariableName('K', 9), "K09");
  EXPECT_EQ(VariableName('Z', 10), "Z10");
  EXPECT_EQ(VariableName('Z', 15), "Z15");
}

TEST(VariableFile, TakesEachKindOfLineEnd) {
  for (const std::string end : {"\r\n", "\n", "\r"}) {
    const Content content = Read("G" + end + kSixteen + end + "Z" + end + kSixteen + end);
    EXPECT_EQ(content.end, kWhole);
    EXPECT_EQ(content.variables.size(), 32U);
  }
}

TEST(VariableFile, NeedsNoLineEndBehindItsLastItem) {
  EXPECT_EQ(Read("Z\n" + kSixteen).end, kWhole);
}

TEST(VariableFile, TrimsBlanks) {
  const Content content = Read(" Z \r\n 0 ,\t1,2 , 3,4,5,6,7,8,9,10,11,12,13,14,  -15  ");
  EXPECT_EQ(content.end, kWhole);
  ASSERT_EQ(content.variables.size(), 16U);
  EXPECT_EQ(content.variables[15], (Variable{'Z', 15, -15}));
}

TEST(VariableFile, TakesLinesThatAreCutAnywhereBetweenTwoItems) {
  EXPECT_EQ(Read("Z,0,1,2,3\n4,5,6,7\n8\n9,10,11,12,13,14,15").variables.size(), 16U);
}

TEST(VariableFile, PassesOverWhatIsNoGroup) {
  const Content content =
      Read("remark\r\n\r\nU\r\n" + kSixteen + "\r\ng\r\nGH\r\nZ\r\n" + kSixteen);
  EXPECT_EQ(content.end, kWhole);
  ASSERT_EQ(content.variables.size(), 16U);
  EXPECT_EQ(content.variables[0].letter, 'Z');
}

TEST(VariableFile, MarkOfAnEditorDoesNotHideTheFirstGroup) {
  EXPECT_EQ(Read("\xEF\xBB\xBFG\r\n" + kSixteen + "\r\nZ\r\n" + kSixteen).variables.size(), 32U);
}

TEST(VariableFile, SeventeenthNumberIsPassedOver) {
  const Content content = Read("G\r\n" + kSixteen + ",16\r\nZ\r\n" + kSixteen);
  EXPECT_EQ(content.end, kWhole);
  EXPECT_EQ(content.variables.size(), 32U);
}

TEST(VariableFile, EndsWithGroupZ) {
  const Content content = Read("Z\r\n" + kSixteen + "\r\nG\r\nnonsense");
  EXPECT_EQ(content.end, kWhole);
  EXPECT_EQ(content.variables.size(), 16U);
}

TEST(VariableFile, ReadsGroupsInAnyOrderAndTwice) {
  const Content content =
      Read("W\n" + kSixteen + "\nG\n" + kSixteen + "\nW\n" + kSixteen + "\nZ\n" + kSixteen);
  EXPECT_EQ(content.end, kWhole);
  EXPECT_EQ(content.variables.size(), 64U);
}

TEST(VariableFile, IsBrokenWithoutGroupZ) {
  EXPECT_EQ(Read("").end, kBroken);
  EXPECT_EQ(Read("\r\n").end, kBroken);
  const Content content = Read("G\r\n" + kSixteen + "\r\n");
  EXPECT_EQ(content.end, kBroken);
  EXPECT_EQ(content.variables.size(), 16U);
}

// Each text in the place of the sixth number.
TEST(VariableFile, IsBrokenWhereANumberShouldBe) {
  for (const std::string item : {"H", "x1", "1x", "", " ", "1.5", "1e3", "0x10", "32768", "-32769",
                                 "99999999999999999999", "--1", "+-1", "-", "+", "1 2", "\"1\""}) {
    const Content content = Read("G\n0,1,2,3,4," + item + ",6,7\nZ\n" + kSixteen);
    EXPECT_EQ(content.end, kBroken) << item;
    EXPECT_EQ(content.variables.size(), 5U) << item;
  }
  EXPECT_EQ(Read("Z\n0,1,2,3,4,+5,6,7,8,9,10,11,12,13,14,-32768").end, kWhole);
}

TEST(VariableFile, LineOfFifteenNumbersTakesNoLetterForTheSixteenth) {
  const Content content = Read("G\n0,1,2,3,4,5,6,7,8,9,10,11,12,13,14\nH\n" + kSixteen);
  EXPECT_EQ(content.end, kBroken);
  EXPECT_EQ(content.variables.size(), 15U);
}

// A file that was cut off anywhere gives the registers before the cut, and is never whole.
TEST(VariableFile, IsReadUpToWhereItIsCut) {
  const std::string bytes = VariableFileBytes(SomeWords());
  const Content whole = Read(bytes);
  const std::size_t last_digit = bytes.size() - 2;
  for (std::size_t length = 0; length < last_digit; ++length) {
    const Content content = Read(bytes.substr(0, length));
    ASSERT_LE(content.variables.size(), whole.variables.size());
    // The last number may have lost digits; those before it are as they were.
    for (std::size_t place = 0; place + 1 < content.variables.size(); ++place) {
      ASSERT_EQ(content.variables[place], whole.variables[place]) << length;
    }
    if (length < last_digit - 4) {
      ASSERT_EQ(content.end, kBroken) << length;
    }
  }
}

}  // namespace
}  // namespace tavrel
