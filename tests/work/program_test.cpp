#include "work/program.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

#include "tests/support/control_bench.h"

namespace tavrel {
namespace {

ProgramRows Rows(const std::vector<ProgramStep>& steps) {
  ProgramRows rows;
  std::copy(steps.begin(), steps.end(), rows.begin());
  return rows;
}

std::string Finding(const std::vector<ProgramStep>& steps) {
  return ProgramFinding(Rows(steps)).value_or("");
}

constexpr ProgramStep kIso{2, -1, 4000, 30};
constexpr ProgramStep kEmpty{};

TEST(ProgramCheck, FindsAnEmptyProgram) {
  EXPECT_EQ(Finding({}), "program is empty");
  EXPECT_EQ(Finding({{-1, 0, 0, 0}}), "program is empty");
  EXPECT_TRUE(IsEmptyProgram(Rows({})));
  EXPECT_FALSE(IsEmptyProgram(Rows({kIso})));
}

TEST(ProgramCheck, TellsTheFirstThingThatIsMissing) {
  EXPECT_EQ(Finding({kIso}), "");
  EXPECT_EQ(Finding({{3, 0, 4000, 30}}), "missing: increment on row 1");
  EXPECT_EQ(Finding({{3, -1, 0, 0}}), "missing: increment on row 1");
  EXPECT_EQ(Finding({{3, 1, 4000, 30}}), "");
  EXPECT_EQ(Finding({kIso, {2, -1, 0, 0}}), "missing: setpoint on row 2");
  EXPECT_EQ(Finding({kIso, {2, -1, 1, 0}}), "missing: time on row 2");
  EXPECT_EQ(Finding({{2, -1, 4000, -1}, {-1, -1, 1, 1}}), "missing: time on row 1");
  EXPECT_EQ(Finding({{0, -1, 1, 1}, {2, -1, 1, 1}, {3, 1, 1, 1}}), "") << "the least of each";
}

TEST(ProgramCheck, WantsSetpointAndTimeOfAStepThatSwitchesOff) {
  EXPECT_EQ(Finding({{0, -1, 4000, 30}}), "");
  EXPECT_EQ(Finding({{0, -1, 0, 30}}), "missing: setpoint on row 1");
  EXPECT_EQ(Finding({{0, -1, 1, -1}}), "missing: time on row 1");
}

TEST(ProgramCheck, CountsAGapAsAMissingStatus) {
  EXPECT_EQ(Finding({kIso, kEmpty, kIso}), "missing: status on row 2");
}

TEST(ProgramCheck, CountsARowWithOnlyAnIncrementAsUsed) {
  EXPECT_EQ(Finding({kIso, {-1, 5, -1, -1}}), "missing: status on row 2");
  EXPECT_EQ(Finding({kIso, {0, -1, -1, -1}}), "missing: setpoint on row 2");
}

TEST(ProgramCheck, LooksAtTheLastRow) {
  ProgramRows rows;
  rows.fill(kIso);
  EXPECT_EQ(ProgramFinding(rows), std::nullopt);
  rows.back().Time = 0;
  EXPECT_EQ(ProgramFinding(rows), "missing: time on row 50");
}

TEST(ProgramFileText, HoldsWordsWithTheLowByteFirst) {
  const std::string bytes = ProgramFileBytes(Rows({{3, 25, 6000, 300}, {0, -1, 20, 1}}));
  EXPECT_EQ(bytes, std::string("\0\0\0\0\0\0\0\0"
                               "\x03\0\x19\0\x70\x17\x2C\x01"
                               "\0\0\xFF\xFF\x14\0\x01\0",
                               24));
}

TEST(ProgramFileText, LeavesNoHoleForARowWithoutStatus) {
  EXPECT_EQ(ProgramFileBytes(Rows({kIso, {-1, 5, 5, 5}, kIso})),
            ProgramFileBytes(Rows({kIso, kIso})));
}

TEST(ProgramFileText, TakesAFullGridIn51Records) {
  ProgramRows rows;
  rows.fill(kIso);
  EXPECT_EQ(ProgramFileBytes(rows).size(), 408U);
}

TEST(ProgramRecords, AreRoundedToTheNearestAndTiesToEven) {
  const std::vector<std::pair<int, int>> lengths = {{0, 0},  {4, 0},    {5, 1},   {8, 1},
                                                    {12, 2}, {20, 2},   {21, 3},  {28, 4},
                                                    {36, 4}, {404, 50}, {405, 51}};
  for (const auto& [length, records] : lengths) {
    EXPECT_EQ(RecordsOf(length), records) << length;
  }
}

class ReadingAProgram : public testing::Test {
 protected:
  ProgramFile Read(const std::string& bytes) {
    home.Write("A.PRG", bytes);
    return ReadProgramFile(home.File("A.PRG"));
  }
  TemporaryDirectory home;
};

TEST_F(ReadingAProgram, GivesWhatWasWritten) {
  const std::vector<ProgramStep> steps = {{3, 25, 6000, 300}, kIso, {0, -1, 1, 30000}};
  const ProgramFile file = Read(ProgramFileBytes(Rows(steps)));
  EXPECT_EQ(file.Problem, "");
  EXPECT_EQ(file.Records, 4);
  EXPECT_EQ(file.Steps, steps);
}

TEST_F(ReadingAProgram, TellsTheSystemsErrorText) {
  EXPECT_EQ(ReadProgramFile(home.File("NONE.PRG")).Problem, "No such file or directory");
  EXPECT_NE(ReadProgramFile(home.Path()).Problem, "");
}

TEST_F(ReadingAProgram, HasEmptyWordsWhereALastRecordIsCutOff) {
  const std::string bytes = ProgramBytes({{2, 7, 400, 30}, {3, 25, 600, 10}});
  const ProgramFile file = Read(bytes.substr(0, 21));
  EXPECT_EQ(file.Records, 3);
  ASSERT_EQ(file.Steps.size(), 2U);
  EXPECT_EQ(file.Steps[1], (ProgramStep{3, 25, -1, -1}));
}

TEST_F(ReadingAProgram, TakesEveryTruncationForWhatItsLengthSays) {
  std::vector<std::vector<int>> words;
  for (int step = 1; step <= 49; ++step) {
    words.push_back({step % 4, step, 100 * step, 10 * step});
  }
  const std::string bytes = ProgramBytes(words);
  for (std::size_t length = 0; length <= bytes.size(); ++length) {
    const ProgramFile file = Read(bytes.substr(0, length));
    ASSERT_EQ(file.Problem, "");
    ASSERT_EQ(file.Records, RecordsOf(static_cast<std::int64_t>(length)));
    ASSERT_EQ(file.Steps.size(), static_cast<std::size_t>(std::max<long>(file.Records - 1, 0)));
    for (std::size_t step = 0; step + 2 <= length / 8; ++step) {
      ASSERT_EQ(file.Steps.at(step).Setpoint, words.at(step).at(2)) << length;
    }
  }
}

TEST_F(ReadingAProgram, TakesAnyBytesWhatever) {
  std::mt19937 random(20260314);
  // A sample; the fuzz target of program files goes on where this ends. One file is written over
  // and over: making each anew would wait for the disk.
  constexpr int kRandomFiles = 1000;
  home.Write("ANY.PRG", "");
  const std::string path = home.File("ANY.PRG");
  std::fstream disk(path, std::ios::in | std::ios::out | std::ios::binary);
  for (int round = 0; round < kRandomFiles; ++round) {
    std::string bytes(random() % 420, '\0');
    for (char& byte : bytes) {
      byte = static_cast<char>(random());
    }
    disk.seekp(0);
    disk.write(bytes.data(), static_cast<std::streamsize>(bytes.size())).flush();
    std::filesystem::resize_file(path, bytes.size());
    const ProgramFile file = ReadProgramFile(path);
    ASSERT_EQ(file.Problem, "");
    ASSERT_EQ(file.Records, RecordsOf(static_cast<std::int64_t>(bytes.size())));
    const bool fits = file.Records >= 1 && file.Records <= kProgramRecords;
    ASSERT_EQ(file.Steps.size(), fits ? static_cast<std::size_t>(file.Records - 1) : 0U);
    if (bytes.size() >= 16 && fits) {
      const auto low = static_cast<unsigned char>(bytes[8]);
      const auto high = static_cast<unsigned char>(bytes[9]);
      ASSERT_EQ(static_cast<std::uint16_t>(file.Steps[0].Status), low + 256 * high);
    }
  }
}

TEST_F(ReadingAProgram, DoesNotReadWhatIsTooBig) {
  const ProgramFile file = Read(std::string(1000000, '\1'));
  EXPECT_EQ(file.Records, 125000);
  EXPECT_TRUE(file.Steps.empty());
}

}  // namespace
}  // namespace tavrel
