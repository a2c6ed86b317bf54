// Each exchange of a run of the adjustment fails in turn, in each way: once, so that it is
// repeated, and as often as it is tried.
#include <gmock/gmock.h>

#include <map>
#include <sstream>

#include "setup/adjustment_journal.h"
#include "tests/wire/channel_fixture.h"

namespace tavrel {
namespace {

using testing::AnyOf;
using testing::ElementsAre;
using testing::Field;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

struct Failing {
  bool is_plugin;
  const char* fault;
  const char* name;
};

// Rows 2 and 15, linear, from 0 to 4000 steps; or the reference sensor.
class FailingRun : public testing::TestWithParam<Failing>, public ChannelFixture {
 protected:
  static constexpr int kLow = 2;
  static constexpr int kHigh = 15;

  FailingRun() : ChannelFixture(GetParam().is_plugin) {}
  void SetUp() override {
    Connect();
    fault = GetParam().fault;
  }

  void OpenAnew() {
    Greet();
    channels.CloseNow();
    program.dialogs.boxes.clear();
    OpenIdle();
  }
  // Each command fails when it goes out first, and not when it is repeated.
  void FailEachOnce() {
    fails = [this, failed = std::string()]() mutable {
      const bool is_repeated = program.port.command == failed && !program.link.IsGood(kInet);
      failed = program.port.command;
      return !is_repeated;
    };
  }
  // Behind a question that a failed read has led to.
  void GoOn() {
    Greet();
    program.dialogs.boxes.clear();
    Count();
    FailEachOnce();
  }
  // Exchange `number` from now on fails whenever it is tried.
  void GiveUp(int number) {
    Count();
    fails = [this, number, failed = std::string()]() mutable {
      if (exchanges == number) {
        failed = program.port.command;
      }
      return program.port.command == failed && (exchanges == number || !program.link.IsGood(kInet));
    };
  }
  // False if the run does not begin.
  bool ChooseRows() {
    for (const int row : {kLow, kHigh}) {
      EXPECT_TRUE(instrument.Tell("sensor 2." + std::to_string(row) + " level 0"));
      offsets_before[row] = Held('O', row);
      codes_before[row] = Held('L', row);
    }
    channels.Mnu_Linear_Click();
    if (!StepTo(AdjState::kSelect)) {
      return false;
    }
    channels.Sheet_Click(kLow);
    channels.Sheet_Click(kHigh);
    return true;
  }
  void Raise() {
    for (const int row : {kLow, kHigh}) {
      EXPECT_TRUE(instrument.Tell("sensor 2." + std::to_string(row) + " level 4000"));
    }
  }
  // Steps until one of the two states has come.
  bool Steps(AdjState state) {
    for (int step = 0; step < kPatience && channels.State() != state; ++step) {
      if (channels.State() == AdjState::kEmptySheet) {
        return false;
      }
      Step();
    }
    return channels.State() == state;
  }
  // A run in which that exchange is given up, counted from the click in that state.
  void RunGivingUp(AdjState at, int number) {
    ASSERT_TRUE(Undisturbed([this, at, number] { return RunOnceGivingUp(at, number); }));
  }
  bool RunOnceGivingUp(AdjState at, int number) {
    OpenAnew();
    if (!ChooseRows()) {
      return false;
    }
    const auto click = [&](AdjState state) {
      fails = [] { return false; };
      if (state == at) {
        GiveUp(number);
      }
      channels.CmdOK_Click();
    };
    click(AdjState::kSelect);
    if (!Steps(AdjState::kAwaitShorted)) {
      return channels.State() == AdjState::kEmptySheet;
    }
    click(AdjState::kAwaitShorted);
    if (!Steps(AdjState::kAwaitRaised)) {
      return channels.State() == AdjState::kEmptySheet;
    }
    Raise();
    click(AdjState::kAwaitRaised);
    if (!Steps(AdjState::kAwaitFinal)) {
      return false;
    }
    channels.txt_Final_Change("200");
    instruction = channels.Values().Lbl_Instr;
    click(AdjState::kAwaitFinal);
    return StepTo(AdjState::kEmptySheet);
  }

  // A run that stands at that exchange behind the final value, which fails.
  bool FailsAtCoefficient(int number) {
    OpenAnew();
    if (!ChooseRows()) {
      return false;
    }
    for (const AdjState next : {AdjState::kAwaitShorted, AdjState::kAwaitRaised}) {
      channels.CmdOK_Click();
      if (!Steps(next)) {
        return false;
      }
    }
    Raise();
    channels.CmdOK_Click();
    if (!Steps(AdjState::kAwaitFinal)) {
      return false;
    }
    channels.txt_Final_Change("200");
    GiveUp(number);
    channels.CmdOK_Click();
    Step();
    return true;
  }

  // A run in which each exchange fails once; true if it comes to its end.
  bool RunFailingOnce() {
    OpenAnew();
    if (!ChooseRows()) {
      return false;
    }
    Count();
    FailEachOnce();
    channels.CmdOK_Click();
    questions = program.dialogs.boxes;
    GoOn();
    if (!Steps(AdjState::kAwaitShorted)) {
      return false;
    }
    channels.CmdOK_Click();
    if (!Steps(AdjState::kAwaitRaised)) {
      return false;
    }
    Raise();
    channels.CmdOK_Click();
    if (!Steps(AdjState::kAwaitFinal)) {
      return false;
    }
    instruction = channels.Values().Lbl_Instr;
    channels.txt_Final_Change("200");
    channels.CmdOK_Click();
    return StepTo(AdjState::kEmptySheet);
  }
  bool RunReferenceFailingOnce() {
    OpenAnew();
    EXPECT_TRUE(instrument.Tell("sensor 2.0 temp 0"));
    Count();
    FailEachOnce();
    channels.Mnu_RTD_Click();
    questions = program.dialogs.boxes;
    GoOn();
    if (!Steps(AdjState::kAwaitZero)) {
      return false;
    }
    channels.CmdOK_Click();
    if (!Steps(AdjState::kAwaitSpan)) {
      return false;
    }
    EXPECT_TRUE(instrument.Tell("sensor 2.0 temp 100"));
    channels.CmdOK_Click();
    return StepTo(AdjState::kEmptySheet);
  }

  // What the last record of the journal says about a row afterwards; -1 stands for "?".
  std::map<std::string, std::string> After(int row) const {
    const std::string journal = program.home.Read(kJournalFile);
    std::istringstream lines(journal.substr(journal.rfind("begin ")));
    std::map<std::string, std::string> after;
    for (std::string line; std::getline(lines, line);) {
      std::istringstream words(line);
      std::string kind;
      std::string name;
      words >> kind >> name;
      if (kind == "after" && name == RowName(row)) {
        for (std::string letter, value; words >> letter >> value;) {
          after[letter] = value;
        }
      }
    }
    return after;
  }
  bool IsTold(int row) const {
    for (const Notice& box : program.dialogs.boxes) {
      if (box.Text.find("row " + RowName(row)) != std::string::npos ||
          box.Text.find("(L = 0): " + RowName(row)) != std::string::npos) {
        return true;
      }
    }
    return false;
  }
  // Nothing that the instrument does not have is told as good.
  void ExpectHonest() {
    Greet();
    for (const int row : {kLow, kHigh}) {
      for (const auto& [letter, value] : After(row)) {
        const std::string held = std::to_string(Held(letter[0], row));
        EXPECT_THAT(value, AnyOf(held, "?")) << letter << row;
      }
      const bool is_adjusted = Held('L', row) == 1;
      const bool is_untouched =
          Held('L', row) == codes_before[row] && Held('O', row) == offsets_before[row];
      EXPECT_TRUE(is_adjusted || is_untouched || IsTold(row)) << row;
      EXPECT_TRUE(!is_adjusted || IsRight(row)) << row;
    }
  }
  bool IsRight(int row) { return std::abs(Held('Y', row) - 4000) <= 3; }

  std::vector<Notice> questions;  // about controllers that did not answer
  std::map<int, int> offsets_before;
  std::map<int, int> codes_before;
  std::string instruction;  // when the final value is asked for
};

TEST_P(FailingRun, RepeatsEachExchange) {
  ASSERT_TRUE(Undisturbed([this] { return RunFailingOnce(); }));
  EXPECT_THAT(questions,
              ElementsAre(Field(&Notice::Text, HasSubstr("controller 2, which may be on"))));
  EXPECT_EQ(instruction, "enter the final value") << "no reading has failed";
  constexpr int kExchanges = 2 + 20 + 2 + 30 + 6;
  EXPECT_GE(exchanges, 2 * kExchanges) << "each is on the line twice";
  EXPECT_THAT(program.dialogs.boxes, IsEmpty());
  ExpectHonest();
  for (const int row : {kLow, kHigh}) {
    EXPECT_EQ(Held('L', row), 1);
    EXPECT_EQ(After(row)["K"], std::to_string(Held('K', row)));
  }
}

TEST_P(FailingRun, OfTheReferenceSensorRepeatsEachExchange) {
  ASSERT_TRUE(Undisturbed([this] { return RunReferenceFailingOnce(); }));
  ASSERT_THAT(questions, Not(IsEmpty()));
  EXPECT_THAT(questions.back().Text, HasSubstr("controller 1, which may be on"));
  EXPECT_THAT(channels.Values().Lbl_Instr, Not(HasSubstr("failed")));
  EXPECT_THAT(program.dialogs.boxes, IsEmpty());
  constexpr int kExchanges = 1 + 10 + 1 + 10 + 3;
  EXPECT_GE(exchanges, 2 * kExchanges);
  Greet();
  EXPECT_EQ(Held('L', 0), 2);
  EXPECT_NEAR(Held('Y', 0), 10000, 3);
}

// The user is asked about each controller of which nobody knows.
TEST_P(FailingRun, AsksAboutControllersThatDoNotAnswer) {
  OpenAnew();
  program.dialogs.yes = false;
  for (int ctrl = 1; ctrl <= kControllers; ++ctrl) {
    program.dialogs.on_box = [this] {
      program.dialogs.yes =
          program.dialogs.boxes.back().Text.find("are you sure") != std::string::npos;
    };
    ASSERT_TRUE(Undisturbed([this, ctrl] {
      Greet();
      program.dialogs.boxes.clear();
      GiveUp(ctrl);
      channels.Mnu_RTD_Click();
      return !program.dialogs.boxes.empty();
    }));
    EXPECT_EQ(exchanges, ctrl);
    for (int other = 1; other <= kControllers; ++other) {
      const std::string name = "controller " + std::to_string(other) + ", which may be on";
      EXPECT_EQ(program.dialogs.boxes.back().Text.find(name) != std::string::npos, other >= ctrl);
    }
    EXPECT_EQ(channels.State(), AdjState::kIdle);
  }
}

TEST_P(FailingRun, TellsWhichSensorCodeItCouldNotTakeAway) {
  for (const int row : {kLow, kHigh}) {
    const int number = row == kLow ? 2 : 3;  // behind the question after controller 2
    ASSERT_NO_FATAL_FAILURE(RunGivingUp(AdjState::kSelect, number));
    ASSERT_EQ(program.dialogs.boxes.size(), 1U);
    EXPECT_THAT(program.dialogs.boxes[0].Text, HasSubstr("row " + RowName(row) + " gives raw"));
    EXPECT_EQ(After(row)["L"], "?");
    ExpectHonest();
  }
}

TEST_P(FailingRun, CountsTheReadingsThatItCouldNotTake) {
  for (const auto& [at, number] : {std::pair{AdjState::kAwaitShorted, 1},
                                   {AdjState::kAwaitShorted, 20},
                                   {AdjState::kAwaitRaised, 14},
                                   {AdjState::kAwaitRaised, 30}}) {
    ASSERT_NO_FATAL_FAILURE(RunGivingUp(at, number));
    EXPECT_THAT(instruction, HasSubstr("(1 reading failed)")) << number;
    EXPECT_THAT(program.home.Read(kJournalFile), HasSubstr("?"));
    EXPECT_THAT(program.dialogs.boxes, IsEmpty());
    Greet();
    EXPECT_EQ(Held('L', kLow), 1);
    EXPECT_EQ(Held('L', kHigh), 1);
  }
}

TEST_P(FailingRun, TellsWhichOffsetItCouldNotWrite) {
  for (const int row : {kLow, kHigh}) {
    ASSERT_NO_FATAL_FAILURE(RunGivingUp(AdjState::kAwaitShorted, row == kLow ? 21 : 22));
    ASSERT_EQ(program.dialogs.boxes.size(), 1U);
    EXPECT_THAT(program.dialogs.boxes[0].Text,
                HasSubstr("row " + RowName(row) + ", register O: the row stays without"));
    EXPECT_EQ(After(row)["O"], "?");
    ExpectHonest();
    EXPECT_EQ(Held('L', row), 0);
    EXPECT_EQ(Held('L', kLow + kHigh - row), 1);
  }
}

// A row has both parts of its divisor, or no sensor code.
TEST_P(FailingRun, TellsWhichCoefficientItCouldNotWrite) {
  const std::string letters = "JKL";
  for (int number = 1; number <= 6; ++number) {
    const int row = number <= 3 ? kLow : kHigh;
    const char letter = letters[static_cast<std::size_t>((number - 1) % 3)];
    ASSERT_NO_FATAL_FAILURE(RunGivingUp(AdjState::kAwaitFinal, number));
    ASSERT_EQ(program.dialogs.boxes.size(), 1U) << number;
    EXPECT_THAT(program.dialogs.boxes[0].Text,
                HasSubstr("row " + RowName(row) + ", register " + letter));
    EXPECT_EQ(After(row)[std::string(1, letter)], "?");
    EXPECT_THAT(program.home.Read(kJournalFile), testing::EndsWith("not acknowledged\r\n"));
    ExpectHonest();
    EXPECT_TRUE(letter == 'L' || Held('L', row) == 0) << number;
    EXPECT_EQ(Held('L', kLow + kHigh - row), 1) << number;
  }
}

// Dropped while a coefficient is still to be repeated: what nobody knows is told as such.
TEST_P(FailingRun, ThatIsDroppedTellsWhatItHasWritten) {
  for (const int number : {1, 2, 3, 5}) {
    ASSERT_TRUE(Undisturbed([this, number] { return FailsAtCoefficient(number); }));
    ASSERT_EQ(exchanges, number);
    ASSERT_EQ(channels.State(), AdjState::kCompute);
    channels.Quit();
    ASSERT_EQ(program.dialogs.boxes.size(), 1U);
    const int row = number <= 3 ? kLow : kHigh;
    const char letter = "JKLJKL"[number - 1];
    const std::string& text = program.dialogs.boxes[0].Text;
    EXPECT_THAT(text, HasSubstr(std::string(1, letter) + " = ? (was "));
    EXPECT_THAT(text, HasSubstr("row 2:  L = "));
    EXPECT_THAT(text, HasSubstr("row F:  L = "));
    EXPECT_EQ(After(row)[std::string(1, letter)], "?");
    EXPECT_THAT(program.home.Read(kJournalFile), testing::EndsWith("dropped\r\n"));
    ExpectHonest();
  }
}

INSTANTIATE_TEST_SUITE_P(EachFailure, FailingRun,
                         testing::Values(Failing{false, "lost-request on", "lost_request"},
                                         Failing{true, "lost-reply on", "lost_reply"},
                                         Failing{true, "refusal on", "refusal"},
                                         Failing{false, "late-reply 185", "late_reply"}),
                         [](const auto& each) { return each.param.name; });

}  // namespace
}  // namespace tavrel
