// Each exchange of a variable file fails in turn on the line.
#include <gmock/gmock.h>

#include "setup/variable_file.h"
#include "tests/wire/channel_fixture.h"

namespace tavrel {
namespace {

constexpr int kWays = 4;
constexpr int kLate = 3;
constexpr int kFreeRow = 6;  // takes any word in each of the groups
constexpr std::array<const char*, kWays> kFaults = {"lost-request on", "lost-reply on",
                                                    "refusal on", "late-reply 185"};

// The instrument has the word all the same.
bool IsCarriedOut(int way) {
  return way == 1 || way == kLate;
}

// Registers in the order of a file.
int RowOf(int place) {
  return place % kRegistersPerLetter;
}
std::size_t GroupOf(int place) {
  return static_cast<std::size_t>(place / kRegistersPerLetter);
}

class FailingTransfer : public ChannelFixture {
 protected:
  explicit FailingTransfer(bool plugin) : ChannelFixture(plugin) {}

  void Prepare() {
    Connect();
    program.dialogs.chosen_file = program.home.File("OVEN.VAR");
    OpenIdle();
  }
  void Save() {
    channels.Mnu_Save_Click([] {});
  }
  void Load() {
    channels.Mnu_Load_Click([] {});
  }
  [[nodiscard]] std::string LastBox() const { return program.dialogs.boxes.back().Text; }
  std::int16_t WordAt(int place) {
    return ForSure(kVariableLetters[GroupOf(place)], RowOf(place)).value_or(kNoData);
  }
  VariableWords AllWords() {
    VariableWords words{};
    for (int place = 0; place < kVariables; ++place) {
      At(words, place) = WordAt(place);
    }
    return words;
  }
  static std::int16_t& At(VariableWords& words, int place) {
    return words[GroupOf(place)][static_cast<std::size_t>(RowOf(place))];
  }
  static int PlaceOf(char letter, int row) {
    const std::size_t group = kVariableLetters.find(letter);
    return static_cast<int>(group) * kRegistersPerLetter + row;
  }
  // Of the register that the label shows, which is the one in hand.
  [[nodiscard]] int PlaceShown() const {
    const std::string& label = channels.Values().Lbl_Instr;
    return PlaceOf(label.at(0), std::stoi(label.substr(1)));
  }
  [[nodiscard]] bool IsWrite() const { return program.port.command.back() == '\r'; }
};

// A quarter of the registers fails in one way; the four parameters together are all of them.
class QuarterOfTransfer : public testing::TestWithParam<int>, public FailingTransfer {
 protected:
  QuarterOfTransfer() : FailingTransfer(GetParam() % 2 == 1) {}
  void SetUp() override {
    Prepare();
    fault = kFaults.at(static_cast<std::size_t>(GetParam()));
  }
  // In each group they are other rows.
  [[nodiscard]] static bool IsMine(int place) {
    return (RowOf(place) + static_cast<int>(GroupOf(place))) % kWays == GetParam();
  }
};

// The place of a register that was not told has the word before it, and the user is told that the
// file has errors.
TEST_P(QuarterOfTransfer, SaveTellsOfReadsThatFail) {
  const VariableWords before = AllWords();
  VariableWords expected = before;
  const std::int16_t last_read = ForSure('J', 0).value_or(kNoData);
  std::int16_t last = last_read;
  for (int place = 0; place < kVariables; ++place) {
    // A late reply is met by the command behind it, which does not go out.
    const bool is_spoilt = GetParam() == kLate && place > 0 && IsMine(place - 1);
    last = IsMine(place) || is_spoilt ? last : At(expected, place);
    At(expected, place) = last;
  }
  EXPECT_TRUE(Undisturbed([this, last_read] {
    Greet();
    EXPECT_EQ(ForSure('J', 0), last_read) << "it is what the link holds last";
    Count();
    fails = [this] { return IsMine(PlaceShown()); };
    Save();
    return true;
  }));
  EXPECT_EQ(LastBox(), "Error in file !");
  EXPECT_EQ(program.home.Read("OVEN.VAR"), VariableFileBytes(expected));
  EXPECT_EQ(channels.State(), AdjState::kIdle);
}

// A write that fails once is repeated.
TEST_P(QuarterOfTransfer, LoadRepeatsWritesThatFail) {
  VariableWords words = AllWords();
  for (const char letter : kVariableLetters) {
    if (letter != 'R' && letter != 'S') {
      At(words, PlaceOf(letter, kFreeRow)) = 123;
    }
  }
  program.home.Write("OVEN.VAR", VariableFileBytes(words));
  EXPECT_TRUE(Undisturbed([this] {
    Greet();
    EXPECT_TRUE(StepTo(AdjState::kIdle));
    Count();
    fails = [this, failed = -1]() mutable {
      const bool is_first = IsWrite() && PlaceShown() != failed;
      failed = IsWrite() ? PlaceShown() : failed;
      return is_first && IsMine(failed);
    };
    Load();
    return true;
  }));
  EXPECT_EQ(LastBox(), "File loaded !");
  Greet();
  EXPECT_EQ(VariableFileBytes(AllWords()), VariableFileBytes(words));
}

INSTANTIATE_TEST_SUITE_P(All, QuarterOfTransfer, testing::Range(0, kWays));

// A write that fails as often as it is tried: in each of the groups, in each of the ways.
class LoadGivenUp : public testing::TestWithParam<int>, public FailingTransfer {
 protected:
  LoadGivenUp() : FailingTransfer(GetParam() % 2 == 1) {}
  void SetUp() override { Prepare(); }

  // All groups have a new word in their free row.
  void LoadWithout(int lost, std::int16_t word) {
    for (const char letter : kVariableLetters) {
      At(words, PlaceOf(letter, kFreeRow)) = word;
    }
    program.home.Write("OVEN.VAR", VariableFileBytes(words));
    fails = [this, lost] { return IsWrite() && PlaceShown() == lost; };
    Load();
    Greet();
  }

  VariableWords words{};
};

TEST_P(LoadGivenUp, IsToldAndNothingBehindTheGroupIsWritten) {
  words = AllWords();
  std::int16_t word = 100;
  for (std::size_t group = 0; group < kVariableLetters.size(); ++group) {
    const char letter = kVariableLetters[group];
    if (letter == 'R' || letter == 'S') {
      continue;
    }
    const int way = (GetParam() + static_cast<int>(group)) % kWays;
    const int row = static_cast<int>(group * 5 + 1) % kRegistersPerLetter;
    fault = kFaults.at(static_cast<std::size_t>(way));
    SCOPED_TRACE(VariableName(letter, row) + " " + fault);
    const std::int16_t old = ++word;
    ASSERT_TRUE(IsGood(Write(program.link, {kInet, "Z", kFreeRow}, old)));
    ASSERT_TRUE(StepTo(AdjState::kIdle));
    LoadWithout(PlaceOf(letter, row), ++word);
    EXPECT_EQ(LastBox(), "Error");
    EXPECT_EQ(channels.State(), AdjState::kReadSensors);
    const bool is_lost = row == kFreeRow && !IsCarriedOut(way);
    EXPECT_EQ(WordAt(PlaceOf(letter, kFreeRow)) == word, !is_lost) << "the group goes on";
    EXPECT_EQ(WordAt(PlaceOf('Z', kFreeRow)), letter == 'Z' && !is_lost ? word : old);
  }
}

INSTANTIATE_TEST_SUITE_P(Lines, LoadGivenUp, testing::Range(0, 2));

}  // namespace
}  // namespace tavrel
