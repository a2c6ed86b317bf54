#include <gmock/gmock.h>

#include <algorithm>

#include "setup/unfinished_adjustment.h"
#include "tests/setup/channel_bench.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using Commands = std::vector<std::string>;

Commands LinesOf(const std::string& text) {
  Commands lines;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = text.find("\r\n", begin);
    lines.push_back(text.substr(begin, end - begin));
    begin = end + 2;
  }
  return lines;
}

TEST(AdjustmentJournal, HasWhatARunHasDone) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToFinal(sensor::kFeCuNi, {7, 10});
  fixture.dialog->txt_Final_Change("200,5");
  fixture.dialog->CmdOK_Click();
  fixture.bench.clock.wall = {2026, 3, 14, 10, 5, 7};
  ASSERT_TRUE(fixture.TickTo(AdjState::kEmptySheet));
  const std::string parts = std::to_string(fixture.Register('K', 7));
  EXPECT_THAT(
      LinesOf(fixture.bench.home.Read(kJournalFile)),
      ElementsAre(
          "begin 2026-03-14 10:00:00 inet 3 sensor FeCuNi rows 7 A",
          "before 7 J 1 K 13107 L 3 O 17", "before A J 1 K 13107 L 4 O 20",
          "zero 7 407 407 407 407 407 407 407 407 407 407 mean 407 spread 0",
          "zero A 410 410 410 410 410 410 410 410 410 410 mean 410 spread 0",
          "span 7 4007 4007 4007 4007 4007 4007 4007 4007 4007 4007 mean 4007 spread 0",
          "span A 4010 4010 4010 4010 4010 4010 4010 4010 4010 4010 mean 4010 spread 0",
          "reference 0 2512 2512 2512 2512 2512 2512 2512 2512 2512 2512 mean 2512 spread 0",
          "final 200.5", "after 7 J 1 K " + parts + " L 3 O 407",
          "after A J 1 K " + parts + " L 3 O 410", "end 2026-03-14 10:05:07 complete"));
}

TEST(AdjustmentJournal, IsOnTheDiskBeforeTheFirstWrite) {
  ChannelBench fixture;
  fixture.OpenIdle();
  bool was_there = false;
  fixture.on_command = [&](const std::string& command) {
    if (command == "L27=0\r") {
      was_there = fixture.bench.home.Read(kJournalFile).find("before 7 J 1 K 13107 L 3 O 17\r\n") !=
                  std::string::npos;
    }
  };
  fixture.RunToRaised(sensor::kFeCuNi, {7});
  EXPECT_TRUE(was_there);
}

TEST(AdjustmentJournal, TellsSpreadAndFailedReadings) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_FeCuNi_Click();
  fixture.Tick();
  fixture.dialog->Sheet_Click(7);
  fixture.dialog->CmdOK_Click();
  ASSERT_TRUE(fixture.TickTo(AdjState::kAwaitShorted));
  int number = 0;
  fixture.on_command = [&](const std::string& command) {
    fixture.Register('Y', 7) = static_cast<std::int16_t>(command == "Y27?" ? 100 + ++number : 0);
  };
  fixture.dialog->CmdOK_Click();
  fixture.Tick(97);
  fixture.FailNext("Y27?", 3);
  ASSERT_TRUE(fixture.TickTo(AdjState::kRaise));
  EXPECT_THAT(
      fixture.bench.home.Read(kJournalFile),
      HasSubstr("zero 7 101 102 103 104 105 106 107 108 108? 112 mean 105.6 spread 11\r\n"));
}

TEST(AdjustmentJournal, EndsTheRecordOfADroppedRun) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.RunToRaised(sensor::kNiCrNi, {7});
  fixture.dialog->Quit();
  EXPECT_EQ(LinesOf(fixture.bench.home.Read(kJournalFile)).back(),
            "end 2026-03-14 10:00:00 dropped");
  ASSERT_TRUE(fixture.TickTo(AdjState::kIdle));
  fixture.RunToRaised(sensor::kNiCrNi, {8});
  fixture.dialog->CloseNow();
  const Commands lines = LinesOf(fixture.bench.home.Read(kJournalFile));
  EXPECT_EQ(lines.back(), "end 2026-03-14 10:00:00 dropped with the program");
  EXPECT_EQ(std::count_if(lines.begin(), lines.end(),
                          [](const std::string& line) { return line.starts_with("begin"); }),
            2);
}

TEST(AdjustmentJournal, RunThatWasNeverBegunHasNone) {
  ChannelBench fixture;
  fixture.OpenIdle();
  fixture.dialog->Mnu_FeCuNi_Click();
  fixture.Tick();
  fixture.dialog->Sheet_Click(7);
  fixture.dialog->Quit();
  EXPECT_FALSE(fixture.bench.home.Exists(kJournalFile));
}

TEST(AdjustmentJournal, TellsHowARunEnded) {
  const std::vector<std::pair<std::string, std::string>> ends = {
      {"L27=0", "not acknowledged"}, {"O27=", "not acknowledged"}, {"J27=", "not acknowledged"}};
  for (const auto& [write, how] : ends) {
    ChannelBench fixture;
    fixture.OpenIdle();
    fixture.FailNext(write, 3);
    fixture.dialog->Mnu_FeCuNi_Click();
    fixture.Tick();
    fixture.dialog->Sheet_Click(7);
    for (int step = 0; step < 5 && fixture.dialog->State() != AdjState::kEmptySheet; ++step) {
      fixture.dialog->CmdOK_Click();
      fixture.Tick(115);
      if (fixture.Values().txt_FinalShown) {
        fixture.Register('Y', 7) = 4000;
        fixture.dialog->txt_Final_Change("300");
      }
      if (fixture.bench.dialogs.boxes.size() == 1) {
        break;
      }
    }
    const Commands lines = LinesOf(fixture.bench.home.Read(kJournalFile));
    EXPECT_EQ(lines.back(), "end 2026-03-14 10:00:00 " + how) << write;
    EXPECT_THAT(lines.at(lines.size() - 2), StartsWith("after 7 ")) << write;
    EXPECT_THAT(lines.at(lines.size() - 2), HasSubstr(std::string(1, write[0]) + " ?")) << write;
  }
}

TEST(AdjustmentJournal, UnknownWordsAreAQuestionMark) {
  ChannelBench fixture;
  fixture.Open();
  fixture.fails = [](const std::string& command) { return command == "K27?"; };
  ASSERT_TRUE(fixture.TickTo(AdjState::kIdle));
  fixture.RunToRaised(sensor::kFeCuNi, {7});
  EXPECT_THAT(fixture.bench.home.Read(kJournalFile), HasSubstr("before 7 J 1 K ? L 3 O 17\r\n"));
}

TEST(AdjustmentJournal, AsksWhereItCannotBeWritten) {
  for (const bool yes : {false, true}) {
    ChannelBench fixture;
    std::filesystem::create_directory(fixture.bench.home.File(kJournalFile));
    fixture.OpenIdle();
    fixture.bench.dialogs.yes = yes;
    fixture.dialog->Mnu_FeCuNi_Click();
    fixture.Tick();
    fixture.dialog->Sheet_Click(7);
    fixture.dialog->CmdOK_Click();
    EXPECT_THAT(fixture.LastBox(), StartsWith("adjustment: Cannot write file  ADJUST.TXT: "));
    EXPECT_TRUE(fixture.bench.dialogs.boxes.back().PresetIsNo);
    EXPECT_EQ(fixture.dialog->State(), yes ? AdjState::kShort : AdjState::kSelect);
  }
}

TEST(AdjustmentJournal, BeginsANewLineBehindOneThatWasCutOff) {
  ChannelBench fixture;
  fixture.bench.home.Write(kJournalFile, "begin 2026-03-13 10:00:00 inet 3 sen");
  fixture.OpenIdle();
  fixture.RunToRaised(sensor::kFeCuNi, {7});
  const Commands lines = LinesOf(fixture.bench.home.Read(kJournalFile));
  EXPECT_EQ(lines.at(0), "begin 2026-03-13 10:00:00 inet 3 sen");
  EXPECT_EQ(lines.at(1), "begin 2026-03-14 10:00:00 inet 3 sensor FeCuNi rows 7");
}

// The next start of the program after one that leaves `journal` behind; what it tells.
Commands ToldAfter(const std::string& journal, int starts = 1) {
  TemporaryDirectory home;
  home.Write(kJournalFile, journal);
  FakeClock clock;
  FakeDialogs dialogs;
  RunState state;
  state.DataHome = home.Path();
  for (int start = 0; start < starts; ++start) {
    Messages messages(dialogs);
    TellUnfinishedAdjustment(state, clock, messages);
  }
  Commands told;
  for (const Notice& box : dialogs.boxes) {
    told.push_back(box.Text);
  }
  return told;
}

constexpr const char* kBegun =
    "begin 2026-03-13 10:00:00 inet 3 sensor FeCuNi rows 7\r\n"
    "before 7 J 1 K 13107 L 3 O 17\r\n";

TEST(UnfinishedAdjustment, IsToldAtTheNextStartOnce) {
  const Commands told = ToldAfter(std::string(kBegun) + "zero 7 407 407 mean 407 spread 0\r\n", 3);
  ASSERT_EQ(told.size(), 1U);
  EXPECT_THAT(told[0], HasSubstr("2026-03-13 10:00:00 inet 3 sensor FeCuNi rows 7\n"));
  EXPECT_THAT(told[0], HasSubstr("\n    before 7 J 1 K 13107 L 3 O 17\n"));
  EXPECT_THAT(told[0], Not(HasSubstr("zero")));
}

TEST(UnfinishedAdjustment, IsAlsoOneThatEndedInGoodOrderWithTheProgram) {
  const Commands told = ToldAfter(std::string(kBegun) + "after 7 J 1 K 13107 L 0 O ?\r\n" +
                                  "end 2026-03-13 10:05:00 dropped with the program\r\n");
  ASSERT_EQ(told.size(), 1U);
  EXPECT_THAT(told[0], HasSubstr("\n    after 7 J 1 K 13107 L 0 O ?\n"));
}

TEST(UnfinishedAdjustment, IsTheLastOneOfTheFile) {
  std::string earlier;
  while (earlier.size() < 200'000) {
    earlier += std::string(kBegun) + "end 2026-03-13 10:05:00 complete\r\n";
  }
  EXPECT_TRUE(ToldAfter(earlier).empty());
  EXPECT_EQ(ToldAfter(earlier + kBegun).size(), 1U);
  EXPECT_TRUE(ToldAfter(std::string(kBegun) + earlier).empty());
}

TEST(UnfinishedAdjustment, IsNoneThatTheUserHasSeenTheEndOf) {
  for (const char* end : {"complete", "dropped", "divisor out of range", "not acknowledged", ""}) {
    EXPECT_TRUE(ToldAfter(std::string(kBegun) + "end 2026-03-13 10:05:00 " + end + "\r\n").empty())
        << end;
  }
}

TEST(UnfinishedAdjustment, HasWrittenNothingIfItsRecordWasCutOffAtOnce) {
  const std::string record = kBegun;
  for (std::size_t length = 0; length < record.find("before"); ++length) {
    EXPECT_TRUE(ToldAfter(record.substr(0, length)).empty()) << length;
  }
}

TEST(UnfinishedAdjustment, CanHaveAnyBytes) {
  EXPECT_TRUE(ToldAfter("").empty());
  EXPECT_TRUE(ToldAfter(std::string(100'000, '\0')).empty());
  EXPECT_TRUE(ToldAfter("begin\nbefore\n").empty());
  EXPECT_TRUE(ToldAfter("\n\n\r\r\nend").empty());
}

}  // namespace
}  // namespace tavrel
