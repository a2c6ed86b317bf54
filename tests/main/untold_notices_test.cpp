#include "main/untold_notices.h"

#include <gmock/gmock.h>

#include <chrono>
#include <filesystem>

#include "tests/support/bench_program.h"
#include "tests/support/set_line.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

constexpr WallTime kNight{.Year = 2026, .Month = 3, .Day = 4, .Hour = 2, .Minute = 5};

class UntoldNotices : public testing::Test {
 protected:
  std::string Keep(const std::vector<Notice>& notices) const {
    return KeepUntold(home.Path(), notices, kNight);
  }
  std::vector<Notice> Take(Language language = Language::kEnglish) const {
    return TakeUntold(home.Path(), language);
  }
  TemporaryDirectory home;
};

TEST_F(UntoldNotices, AreTakenOnceInTheirOrderWithTheirTime) {
  EXPECT_EQ(Keep({{"row 7: \"Ä\"\nlost", "Read  Tavrel", BoxIcon::kCritical}}), "");
  EXPECT_EQ(Keep({{"second", "Write  file"}}), "") << "the program has ended twice";
  const auto notices = Take();
  ASSERT_THAT(notices, SizeIs(2));
  EXPECT_EQ(notices[0].Text, "When the program ended, 2026-03-04 02:05:\nrow 7: \"Ä\"\nlost");
  EXPECT_EQ(notices[0].Title, "Read  Tavrel");
  EXPECT_EQ(notices[0].Icon, BoxIcon::kCritical);
  EXPECT_THAT(notices[1].Text, HasSubstr("second"));
  EXPECT_THAT(Take(), IsEmpty());
  EXPECT_FALSE(home.Exists(kUntoldFile));
}

TEST_F(UntoldNotices, SpeakTheLanguageOfTheUser) {
  EXPECT_EQ(Keep({{"row 7", "Read  Tavrel"}}), "");
  EXPECT_THAT(Take(Language::kGerman),
              ElementsAre(Field(&Notice::Text, StartsWith("Beim Ende des Programms, "))));
}

TEST_F(UntoldNotices, OfTooManyTheOldestGo) {
  for (int end = 0; end < 3; ++end) {
    std::vector<Notice> notices;
    for (int number = 0; number < 100; ++number) {
      notices.push_back({"row " + std::to_string(100 * end + number), "Read  Tavrel"});
    }
    ASSERT_EQ(Keep(notices), "");
  }
  const auto notices = Take();
  ASSERT_THAT(notices, SizeIs(200));
  EXPECT_THAT(notices.front().Text, testing::EndsWith("row 100"));
  EXPECT_THAT(notices.back().Text, testing::EndsWith("row 299"));
}

TEST_F(UntoldNotices, ALineThatIsNoneIsTold) {
  for (const char* line : {"{\"time\":\"2026", "17", "{}", "{\"text\":7}", "{\"text\":\"\"}"}) {
    ASSERT_EQ(Keep({{"row 7", "Read  Tavrel"}}), "");
    home.Write(kUntoldFile, home.Read(kUntoldFile) + line);
    EXPECT_THAT(Take(), ElementsAre(Field(&Notice::Text, HasSubstr("row 7")),
                                    Field(&Notice::Text, "TAVREL.MSG  is damaged !")))
        << line;
  }
}

TEST_F(UntoldNotices, AnIconThatIsNoneIsAWarning) {
  for (const char* icon : {"-1", "5", "1e9", "\"x\"", "null"}) {
    home.Write(kUntoldFile, std::string(R"({"text":"row 7","icon":)") + icon + "}\n");
    EXPECT_THAT(Take(), ElementsAre(Field(&Notice::Icon, BoxIcon::kWarning))) << icon;
  }
}

TEST_F(UntoldNotices, WhatCannotBeKeptIsSaid) {
  std::filesystem::create_directory(home.File(kUntoldFile));
  EXPECT_NE(Keep({{"row 7", "Read  Tavrel"}}), "");
  EXPECT_THAT(Take(), IsEmpty());
}

// A value is lost on the line, and the program is ended before it knows which one.
class LostBeforeTheEnd : public testing::Test {
 protected:
  LostBeforeTheEnd() {
    UnitRecord unit = BenchProgram::Header(1, 1, 2, true);
    unit.UnitFast = 1;
    unit.UnitInterval = 3;
    line.interval = std::chrono::seconds(unit.UnitInterval);
    line.places = {{1, {}}, {2, {}}};
    line.Begin(line.interval);
    bench.Install(1, kName, unit);
    bench.events.on_rest = [this](std::chrono::milliseconds time) { bench.clock.Advance(time); };
    bench.Start();
    bench.Run(30);
  }
  [[nodiscard]] bool IsCounting() const {
    return bench.state.ColumnsInDoubt[1] && bench.link.IsGood(1) &&
           bench.state.ReadState[1] == ReadState::kReading;
  }
  void LoseAValue() {
    line.swallowed = {"X01?"};
    for (int tick = 0; tick < 400 && !IsCounting(); ++tick) {
      bench.Run(0.05);
    }
    ASSERT_TRUE(IsCounting());
    ASSERT_THAT(bench.dialogs.announced, IsEmpty());
  }

  static constexpr const char* kName = "M260314A.OVN";
  BenchProgram bench;
  SetLine line{bench.clock, bench.port};
};

TEST_F(LostBeforeTheEnd, IsToldByTheNextStart) {
  ASSERT_NO_FATAL_FAILURE(LoseAValue());
  bench.commands.Close();
  EXPECT_EQ(bench.Samples(kName).at(14), bench.Samples(kName).at(12)) << "row 7 is filled in";
  EXPECT_THAT(bench.dialogs.announced, IsEmpty());
  EXPECT_THAT(bench.dialogs.boxes, IsEmpty());
  BenchProgram next;
  next.state.DataHome = bench.state.DataHome;
  next.Start();
  EXPECT_THAT(next.dialogs.announced,
              ElementsAre(Field(&Notice::Text,
                                "When the program ended, 2026-03-14 10:00:\n"
                                "M260314A.OVN: row 7, input 1: lost on the line; "
                                "the value before it stands in its place")));
  EXPECT_FALSE(bench.home.Exists(kUntoldFile));
}

// Where the file cannot be written a box says it, though the window is about to close.
TEST_F(LostBeforeTheEnd, IsToldAtOnceIfItCannotBeKept) {
  ASSERT_NO_FATAL_FAILURE(LoseAValue());
  std::filesystem::create_directory(bench.home.File(kUntoldFile));
  bench.commands.Close();
  EXPECT_THAT(bench.dialogs.boxes,
              ElementsAre(Field(&Notice::Text, HasSubstr("row 7, input 1: lost on the line"))));
}

}  // namespace
}  // namespace tavrel
