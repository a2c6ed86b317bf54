#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "instrument/truth_log.h"
#include "instrument/wire_log.h"

namespace instrument {
namespace {

class LogFile : public testing::Test {
 protected:
  ~LogFile() override { std::filesystem::remove(path); }
  [[nodiscard]] std::string Content() const {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  const std::string path = std::filesystem::temp_directory_path() /
                           ("instrument_log_" + std::to_string(::getpid()) + "_" +
                            testing::UnitTest::GetInstance()->current_test_info()->name());
};

TEST_F(LogFile, TruthHasOneRowForEachEvent) {
  TruthFile truth;
  ASSERT_TRUE(truth.Open(path));
  truth.Clear(0.25, 1, 2);
  truth.Sample(10.0, {1, 2, 1}, -440);
  truth.Overrun(20.5, {1, 2, 1});
  truth.Handed({30.0, {1, 2, 2}, 441, Fate::kGood});
  truth.Handed({30.0, {1, 2, 3}, 441, Fate::kLost});
  truth.Handed({30.0, {1, 2, 4}, 441, Fate::kSpoiled});
  truth.Handed({30.0, {1, 2, 5}, 441, Fate::kLate});
  truth.Restart(123456.75, 1);
  truth.Renumber(0.0, 1, 2);
  truth.Flush();
  EXPECT_EQ(Content(),
            "clear 0.25 1 2\n"
            "sample 10.00 1 2 1 -440\n"
            "overrun 20.50 1 2 1\n"
            "handed 30.00 1 2 2 441 good\n"
            "handed 30.00 1 2 3 441 lost\n"
            "handed 30.00 1 2 4 441 spoiled\n"
            "handed 30.00 1 2 5 441 late\n"
            "restart 123456.75 1\n"
            "renumber 0.00 1 2\n");
}

TEST_F(LogFile, WireRowsEndWithATelegramAPauseOrATurn) {
  WireLog log;
  const Moment start{};
  const auto at = [start](int ms) { return start + std::chrono::milliseconds(ms); };
  ASSERT_TRUE(log.Open(path, start));
  using Direction = WireLog::Direction;
  log.Byte(Direction::kToInstrument, {at(1), 'Y'});
  log.Byte(Direction::kToInstrument, {at(3), '?'});
  log.Byte(Direction::kToHost, {at(5), '1'});
  log.Byte(Direction::kToHost, {at(7), '\r'});
  log.Byte(Direction::kToHost, {at(9), 'A'});
  log.Byte(Direction::kToInstrument, {at(10), '\\'});
  log.EndStaleRow(at(60));
  log.Byte(Direction::kToInstrument, {at(61), 'B'});
  log.EndRow();
  EXPECT_EQ(Content(),
            "0.001000 > Y? 59+0 3F+2000\n"
            "0.005000 < 1\\0D 31+0 0D+2000\n"
            "0.009000 < A 41+0\n"
            "0.010000 > \\5C 5C+0\n"
            "0.061000 > B 42+0\n");
}

TEST(Logs, WithoutAFileForgetEverything) {
  TruthFile truth;
  ASSERT_TRUE(truth.Open(""));
  truth.Sample(1.0, {1, 1, 1}, 1);
  WireLog log;
  ASSERT_TRUE(log.Open("", Moment{}));
  log.Byte(WireLog::Direction::kToHost, {Moment{}, 'A'});
  EXPECT_FALSE(log.NextDue());
}

// Nothing can be made below a plain file, whoever runs the test.
TEST_F(LogFile, TellsWhenItCannotBeWritten) {
  std::ofstream(path) << "plain";
  ASSERT_EQ(Content(), "plain");
  TruthFile truth;
  EXPECT_FALSE(truth.Open(path + "/truth"));
  WireLog log;
  EXPECT_FALSE(log.Open(path + "/log", Moment{}));
  EXPECT_EQ(Content(), "plain");
}

}  // namespace
}  // namespace instrument
