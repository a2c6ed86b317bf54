#include <gmock/gmock.h>

#include "setup/adjustment_journal.h"
#include "tests/support/bench_program.h"

namespace tavrel {
namespace {

TEST(AStart, TellsOfAnAdjustmentThatEndedWithTheProgram) {
  BenchProgram bench;
  bench.home.Write(kJournalFile,
                   "begin 2026-03-13 10:00:00 inet 3 sensor FeCuNi rows 7\r\n"
                   "before 7 J 1 K 13107 L 3 O 17\r\n");
  bench.Install(4, "M260304A.OVN", BenchProgram::Header(3, 1, 1, true));
  bench.Start();
  EXPECT_TRUE(bench.dialogs.boxes.empty()) << "the cycle is not held up";
  ASSERT_EQ(bench.dialogs.announced.size(), 1U);
  EXPECT_THAT(bench.dialogs.announced[0].Text, testing::HasSubstr("inet 3 sensor FeCuNi rows 7"));
  EXPECT_TRUE(bench.cycle.IsEnabled());
}

}  // namespace
}  // namespace tavrel
