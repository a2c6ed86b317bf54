#include <gmock/gmock.h>

#include "base/number.h"
#include "setup/adjustment_journal.h"
#include "tests/wire/channel_fixture.h"

namespace tavrel {
namespace {

using testing::IsEmpty;

using Telegrams = std::vector<std::string>;

// What TavChann sends to instrument 2 in each of its states, in the words of the wire.
class ChannelSteps : public testing::TestWithParam<bool>, public ChannelFixture {
 protected:
  ChannelSteps() : ChannelFixture(GetParam()) {}
  void SetUp() override { Connect(); }

  // The telegrams that the next step sends, as far as `count` of them.
  Telegrams OfStep(std::size_t count) {
    Count();
    Step();
    EXPECT_EQ(static_cast<std::size_t>(exchanges), count);
    return count == 0 ? Telegrams() : instrument.Telegrams(count);
  }
  static const Telegrams& Of(const Telegrams& direct, const Telegrams& plugin) {
    return GetParam() ? plugin : direct;
  }
  // Those of all steps up to that state.
  Telegrams UpTo(AdjState state, std::size_t count) {
    Count();
    EXPECT_TRUE(StepTo(state));
    EXPECT_EQ(static_cast<std::size_t>(exchanges), count);
    return instrument.Telegrams(count);
  }
  static Telegrams Ten(const Telegrams& telegrams) {
    Telegrams all;
    for (int time = 0; time < 10; ++time) {
      all.insert(all.end(), telegrams.begin(), telegrams.end());
    }
    return all;
  }
};

TEST_P(ChannelSteps, SheetIsReadColumnByColumn) {
  channels.Open();
  EXPECT_THAT(OfStep(0), IsEmpty());
  EXPECT_EQ(OfStep(17), Of({"L10?", "L11?", "L12?", "L13?", "L14?", "L15?", "L16?", "L17?", "L18?",
                            "L19?", "L1A?", "L1B?", "L1C?", "L1D?", "L1E?", "L1F?", "T10?"},
                           {"n1v50?", "n1v51?", "n1v52?", "n1v53?", "n1v54?", "n1v55?", "n1v56?",
                            "n1v57?", "n1v58?", "n1v59?", "n1v5A?", "n1v5B?", "n1v5C?", "n1v5D?",
                            "n1v5E?", "n1v5F?", "n1vD0?"}));
  EXPECT_EQ(OfStep(15),
            Of({"S11?", "S12?", "S13?", "S14?", "S15?", "S16?", "S17?", "S18?", "S19?", "S1A?",
                "S1B?", "S1C?", "S1D?", "S1E?", "S1F?"},
               {"n1vC1?", "n1vC2?", "n1vC3?", "n1vC4?", "n1vC5?", "n1vC6?", "n1vC7?", "n1vC8?",
                "n1vC9?", "n1vCA?", "n1vCB?", "n1vCC?", "n1vCD?", "n1vCE?", "n1vCF?"}));
  EXPECT_EQ(OfStep(16),
            Of({"O10?", "O11?", "O12?", "O13?", "O14?", "O15?", "O16?", "O17?", "O18?", "O19?",
                "O1A?", "O1B?", "O1C?", "O1D?", "O1E?", "O1F?"},
               {"n1v80?", "n1v81?", "n1v82?", "n1v83?", "n1v84?", "n1v85?", "n1v86?", "n1v87?",
                "n1v88?", "n1v89?", "n1v8A?", "n1v8B?", "n1v8C?", "n1v8D?", "n1v8E?", "n1v8F?"}));
  EXPECT_EQ(
      UpTo(AdjState::kReadActual, 32),
      Of({"J10?", "K10?", "J11?", "K11?", "J12?", "K12?", "J13?", "K13?", "J14?", "K14?", "J15?",
          "K15?", "J16?", "K16?", "J17?", "K17?", "J18?", "K18?", "J19?", "K19?", "J1A?", "K1A?",
          "J1B?", "K1B?", "J1C?", "K1C?", "J1D?", "K1D?", "J1E?", "K1E?", "J1F?", "K1F?"},
         {"n1v30?", "n1v40?", "n1v31?", "n1v41?", "n1v32?", "n1v42?", "n1v33?", "n1v43?",
          "n1v34?", "n1v44?", "n1v35?", "n1v45?", "n1v36?", "n1v46?", "n1v37?", "n1v47?",
          "n1v38?", "n1v48?", "n1v39?", "n1v49?", "n1v3A?", "n1v4A?", "n1v3B?", "n1v4B?",
          "n1v3C?", "n1v4C?", "n1v3D?", "n1v4D?", "n1v3E?", "n1v4E?", "n1v3F?", "n1v4F?"}));
  EXPECT_EQ(OfStep(16),
            Of({"Y10?", "Y11?", "Y12?", "Y13?", "Y14?", "Y15?", "Y16?", "Y17?", "Y18?", "Y19?",
                "Y1A?", "Y1B?", "Y1C?", "Y1D?", "Y1E?", "Y1F?"},
               {"n1p20?", "n1p21?", "n1p22?", "n1p23?", "n1p24?", "n1p25?", "n1p26?", "n1p27?",
                "n1p28?", "n1p29?", "n1p2A?", "n1p2B?", "n1p2C?", "n1p2D?", "n1p2E?", "n1p2F?"}));
  EXPECT_EQ(OfStep(15),
            Of({"R11?", "R12?", "R13?", "R14?", "R15?", "R16?", "R17?", "R18?", "R19?", "R1A?",
                "R1B?", "R1C?", "R1D?", "R1E?", "R1F?"},
               {"n1vB1?", "n1vB2?", "n1vB3?", "n1vB4?", "n1vB5?", "n1vB6?", "n1vB7?", "n1vB8?",
                "n1vB9?", "n1vBA?", "n1vBB?", "n1vBC?", "n1vBD?", "n1vBE?", "n1vBF?"}));
  EXPECT_EQ(channels.State(), AdjState::kIdle);
  EXPECT_THAT(OfStep(0), IsEmpty());
}

TEST_P(ChannelSteps, RunOfTwoInputs) {
  OpenIdle();
  EXPECT_TRUE(instrument.Tell("sensor 2.2 level 0"));
  EXPECT_TRUE(instrument.Tell("sensor 2.15 level 0"));
  channels.Mnu_Linear_Click();
  EXPECT_THAT(OfStep(0), IsEmpty());
  channels.Sheet_Click(15);
  channels.Sheet_Click(2);
  Count();
  channels.CmdOK_Click();
  EXPECT_EQ(instrument.Telegrams(1), Of({"Z12?"}, {"n1p32?"}));
  EXPECT_EQ(OfStep(2), Of({"L12=0\r", "L1F=0\r"}, {"n1v52=0\r", "n1v5F=0\r"}));
  channels.CmdOK_Click();
  Telegrams expected = Ten(Of({"Y12?", "Y1F?"}, {"n1p22?", "n1p2F?"}));
  Telegrams telegrams = UpTo(AdjState::kRaise, 22);
  const int offset_2 = Held('O', 2);
  const int offset_15 = Held('O', 15);
  const auto word = [](int value) { return Hex(static_cast<std::int16_t>(value)) + "\r"; };
  expected.push_back(Of({"O12="}, {"n1v82="})[0] + word(offset_2));
  expected.push_back(Of({"O1F="}, {"n1v8F="})[0] + word(offset_15));
  EXPECT_EQ(telegrams, expected);
  EXPECT_THAT(OfStep(0), IsEmpty());
  EXPECT_TRUE(instrument.Tell("sensor 2.2 level 4000"));
  EXPECT_TRUE(instrument.Tell("sensor 2.15 level 4000"));
  channels.CmdOK_Click();
  EXPECT_EQ(UpTo(AdjState::kAwaitFinal, 30),
            Ten(Of({"Y12?", "Y1F?", "Y10?"}, {"n1p22?", "n1p2F?", "n1p20?"})));
  channels.txt_Final_Change("200");
  channels.CmdOK_Click();
  telegrams = UpTo(AdjState::kEmptySheet, 6);
  EXPECT_EQ(telegrams, Of({"J12=1\r", "K12=" + word(Held('K', 2)), "L12=1\r", "J1F=1\r",
                           "K1F=" + word(Held('K', 15)), "L1F=1\r"},
                          {"n1v32=1\r", "n1v42=" + word(Held('K', 2)), "n1v52=1\r", "n1v3F=1\r",
                           "n1v4F=" + word(Held('K', 15)), "n1v5F=1\r"}));
  EXPECT_NEAR(Held('Y', 2), 4000, 2);
  EXPECT_NEAR(Held('Y', 15), 4000, 2);
}

TEST_P(ChannelSteps, RunOfTheReferenceSensor) {
  OpenIdle();
  EXPECT_TRUE(instrument.Tell("sensor 2.0 temp 0"));
  Count();
  channels.Mnu_RTD_Click();
  EXPECT_EQ(instrument.Telegrams(4),
            Of({"Z11?", "Z12?", "Z13?", "Z14?"}, {"n1p31?", "n1p32?", "n1p33?", "n1p34?"}));
  EXPECT_EQ(OfStep(1), Of({"L10=0\r"}, {"n1v50=0\r"}));
  channels.CmdOK_Click();
  Telegrams expected = Ten(Of({"Y10?"}, {"n1p20?"}));
  const Telegrams telegrams = UpTo(AdjState::kSetSpan, 11);
  const auto word = [](int value) { return Hex(static_cast<std::int16_t>(value)) + "\r"; };
  expected.push_back(Of({"O10="}, {"n1v80="})[0] + word(Held('O', 0)));
  EXPECT_EQ(telegrams, expected);
  EXPECT_THAT(OfStep(0), IsEmpty());
  EXPECT_TRUE(instrument.Tell("sensor 2.0 temp 100"));
  channels.CmdOK_Click();
  expected = Ten(Of({"Y10?"}, {"n1p20?"}));
  const Telegrams span = UpTo(AdjState::kEmptySheet, 13);
  const std::string parts = word(Held('K', 0));
  const Telegrams writes =
      Of({"J10=1\r", "K10=" + parts, "L10=2\r"}, {"n1v30=1\r", "n1v40=" + parts, "n1v50=2\r"});
  expected.insert(expected.end(), writes.begin(), writes.end());
  EXPECT_EQ(span, expected);
  EXPECT_NEAR(Held('Y', 0), 10000, 3);
}

INSTANTIATE_TEST_SUITE_P(Lines, ChannelSteps, testing::Bool(),
                         [](const auto& line) { return line.param ? "plugin" : "direct"; });

}  // namespace
}  // namespace tavrel
