#include <gmock/gmock.h>

#include "setup/variable_file.h"
#include "tests/wire/channel_fixture.h"

namespace tavrel {
namespace {

using testing::HasSubstr;

// Variable files with virtual instruments 1 and 2 on the line.
class VariablesOnTheWire : public testing::TestWithParam<bool>, public ChannelFixture {
 protected:
  VariablesOnTheWire() : ChannelFixture(GetParam()) {}
  void SetUp() override {
    Connect();
    Choose("OVEN.VAR");
  }
  void Choose(const std::string& name) { program.dialogs.chosen_file = program.home.File(name); }

  void OpenFor(int inet) {
    program.state.ActiveInet = inet;
    ASSERT_TRUE(ForSure('Y', 0, inet));
    channels.Open();
    ASSERT_TRUE(StepTo(AdjState::kIdle));
  }
  void Save() {
    channels.Mnu_Save_Click([] {});
  }
  void Load() {
    channels.Mnu_Load_Click([] {});
  }
  std::string LastBox() const { return program.dialogs.boxes.back().Text; }
  std::string File() const { return program.home.Read("OVEN.VAR"); }

  // All registers of a file as the instrument has them.
  VariableWords Held(int inet) {
    VariableWords words{};
    for (std::size_t group = 0; group < words.size(); ++group) {
      for (int row = 0; row < kRegistersPerLetter; ++row) {
        const auto word = ForSure(kVariableLetters[group], row, inet);
        EXPECT_TRUE(word.has_value());
        words[group][static_cast<std::size_t>(row)] = word.value_or(kNoData);
      }
    }
    return words;
  }
  // Those that a load writes and those that it leaves alone, as far as they are equal.
  struct Equal {
    int loaded = 0;
    int untouched = 0;
  };
  static Equal Compare(const VariableWords& left, const VariableWords& right) {
    Equal equal;
    for (std::size_t group = 0; group < left.size(); ++group) {
      for (std::size_t row = 0; row < left[group].size(); ++row) {
        const bool loads = IsLoadable({kVariableLetters[group], static_cast<int>(row), 0});
        const bool is_equal = left[group][row] == right[group][row];
        (loads ? equal.loaded : equal.untouched) += is_equal ? 1 : 0;
      }
    }
    return equal;
  }
};

TEST_P(VariablesOnTheWire, RoundTripRestoresAllButThirtyThree) {
  ASSERT_NO_FATAL_FAILURE(OpenFor(2));
  const VariableWords before = Held(2);
  Save();
  EXPECT_EQ(LastBox(), "File written !");
  EXPECT_EQ(File(), VariableFileBytes(before));
  for (const char letter : kVariableLetters) {
    const Register spoilt{2, std::string_view(&letter, 1), 6};
    if (letter != 'R' && letter != 'S') {
      EXPECT_TRUE(IsGood(Write(program.link, spoilt, 123))) << letter;
    }
  }
  EXPECT_LT(Compare(Held(2), before).loaded, 239 - 12);
  Load();
  EXPECT_EQ(LastBox(), "File loaded !");
  EXPECT_EQ(Compare(Held(2), before).loaded, 239);
  EXPECT_EQ(Compare(Held(2), before).untouched, 33);
}

// Where both kinds of line do the same.
class VariablesOnOneLine : public VariablesOnTheWire {};

TEST_P(VariablesOnOneLine, FileOfOneInstrumentSuitsAnother) {
  ASSERT_NO_FATAL_FAILURE(OpenFor(1));
  Save();
  const VariableWords first = Held(1);
  const VariableWords second = Held(2);
  EXPECT_LT(Compare(first, second).loaded, 239) << "their amplifiers differ";
  channels.CloseNow();
  ASSERT_NO_FATAL_FAILURE(OpenFor(2));
  Load();
  EXPECT_EQ(LastBox(), "File loaded !");
  const VariableWords after = Held(2);
  EXPECT_EQ(Compare(after, first).loaded, 239);
  EXPECT_EQ(Compare(after, second).untouched, 33) << "its own stay";
}

TEST_P(VariablesOnOneLine, LinePulledInTheMiddleOfASave) {
  ASSERT_NO_FATAL_FAILURE(OpenFor(2));
  const VariableWords before = Held(2);
  Count();
  program.port.before_write = [this] {
    if (++exchanges == 100) {
      EXPECT_TRUE(instrument.Tell("unplug"));
    }
  };
  Save();
  EXPECT_EQ(LastBox(), "Error in file !");
  const std::string whole = VariableFileBytes(before);
  const std::size_t told = whole.find("M\r\n");  // six groups are 96 registers
  EXPECT_EQ(File().substr(0, told), whole.substr(0, told));
  EXPECT_THAT(File(), HasSubstr("\r\nZ\r\n")) << "the file is as long as ever";
  EXPECT_EQ(channels.State(), AdjState::kIdle);
}

TEST_P(VariablesOnOneLine, LinePulledInTheMiddleOfALoad) {
  ASSERT_NO_FATAL_FAILURE(OpenFor(2));
  const VariableWords before = Held(2);
  Save();
  Count();
  program.port.before_write = [this] {
    if (++exchanges == 100) {
      EXPECT_TRUE(instrument.Tell("unplug"));
    }
  };
  Load();
  EXPECT_EQ(LastBox(), "Error");
  EXPECT_EQ(channels.State(), AdjState::kReadSensors);
  program.port.before_write = [] {};
  EXPECT_TRUE(instrument.Tell("plug"));
  program.link.LinkOpen({"COM1", GetParam() ? 2 : 0, 4});
  EXPECT_EQ(Compare(Held(2), before).loaded, 239) << "what was written is what was there";
}

INSTANTIATE_TEST_SUITE_P(Lines, VariablesOnTheWire, testing::Bool(),
                         [](const auto& line) { return line.param ? "plugin" : "direct"; });

INSTANTIATE_TEST_SUITE_P(Lines, VariablesOnOneLine, testing::Values(true),
                         [](const auto& line) { return line.param ? "plugin" : "direct"; });

}  // namespace
}  // namespace tavrel
