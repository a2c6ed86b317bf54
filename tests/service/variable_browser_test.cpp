#include "service/variable_browser.h"

#include <gtest/gtest.h>

#include "tests/service/browser_bench.h"

namespace tavrel {
namespace {

constexpr int kHex = 1;
constexpr int kRows = 320;

class AVariableBrowser : public BrowserBench, public testing::WithParamInterface<bool> {
 protected:
  AVariableBrowser() { is_plugin = GetParam(); }

  void OpenIt() {
    Begin();
    Open(browser);
  }
  void LoadIt() {
    OpenIt();
    Load(browser, kRows);
    ASSERT_TRUE(browser.IsLoaded());
  }
  // What goes on the line for a register of instrument 3.
  [[nodiscard]] Texts OnEither(const Texts& direct, const Texts& plugin) const {
    return is_plugin ? plugin : direct;
  }
  std::string Hex(char letter, int index) { return browser.TextOf(RowOf(letter, index), kHex); }
  std::string Dec(char letter, int index) { return browser.TextOf(RowOf(letter, index), kDec); }

  VariableBrowser& browser = bench.variable_browser;
};

INSTANTIATE_TEST_SUITE_P(OnEachLine, AVariableBrowser, testing::Values(false, true),
                         [](const auto& each) { return each.param ? "plugin" : "direct"; });

TEST_P(AVariableBrowser, OpensWithItsRowsAndWithoutValues) {
  OpenIt();
  EXPECT_EQ(browser.Caption(), " Tavrel-3   (320)");
  EXPECT_EQ(bench.state.ActiveView, View::kAllRam);
  EXPECT_FALSE(browser.IsLoaded());
  EXPECT_EQ(browser.Cnt(), "");
  EXPECT_TRUE(browser.IsCntShown());
  EXPECT_EQ(browser.TextOf(0, 0), "G00");
  EXPECT_EQ(browser.TextOf(319, 0), "Z0F");
  EXPECT_EQ(browser.TextOf(RowOf('X', 0), kLegend), " oldest actual value");
  EXPECT_EQ(browser.TextOf(0, kHex), "");
  EXPECT_EQ(browser.TextOf(0, kDec), "");
}

TEST_P(AVariableBrowser, ReadsOneRegisterAtEachTurnBehindAnEscape) {
  OpenIt();
  EXPECT_EQ(Pulses(3),
            OnEither({"G20?", "G21?", "G22?"}, {kEscapeText, "n2v0?", "n2v1?", "n2v2?"}));
  EXPECT_EQ(browser.Cnt(), "2");
  EXPECT_EQ(browser.RowsRead(), 3);
  EXPECT_EQ(bench.events.pointers.back(), Pointer::kHourglass);
}

TEST_P(AVariableBrowser, ReadsAll320InTheirOrder) {
  OpenIt();
  Texts wanted = OnEither({}, {kEscapeText});
  for (char letter = 'G'; letter <= 'Z'; ++letter) {
    for (int index = 0; index < 16; ++index) {
      const std::string digit(1, "0123456789ABCDEF"[index]);
      const int address = (letter - (letter < 'W' ? 'G' : 'W')) * 16 + index;
      char plugin[8];
      std::snprintf(plugin, sizeof plugin, "n2%c%X?", letter < 'W' ? 'v' : 'p', address);
      wanted.push_back(is_plugin ? std::string(plugin)
                                 : std::string(1, letter) + "2" + digit + "?");
    }
  }
  EXPECT_EQ(Pulses(kRows), wanted);
  EXPECT_TRUE(browser.IsLoaded());
  EXPECT_EQ(browser.Cnt(), "");
  EXPECT_FALSE(browser.IsCntShown());
  EXPECT_EQ(bench.events.pointers.back(), Pointer::kNormal);
  browser.CloseNow();
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_P(AVariableBrowser, ShowsTheValuesInOnePiece) {
  Set('G', 1, 500);
  Set('W', 4, -1);
  Set('Z', 15, -32768);
  OpenIt();
  const int empty = browser.Version();
  Pulses(kRows - 1);
  EXPECT_EQ(Hex('G', 1), "") << "never half of them";
  EXPECT_EQ(browser.Version(), empty);
  Pulses(1);
  EXPECT_EQ(Hex('G', 1), "01F4");
  EXPECT_EQ(Dec('G', 1), "500");
  EXPECT_EQ(Hex('W', 4), "FFFF");
  EXPECT_EQ(Dec('W', 4), "-1");
  EXPECT_EQ(Hex('Z', 15), "8000");
  EXPECT_EQ(Dec('Z', 15), "-32768");
  EXPECT_EQ(Hex('H', 7), "0000");
  EXPECT_EQ(Dec('H', 7), "0");
  EXPECT_NE(browser.Version(), empty);
  EXPECT_EQ(browser.SpokenOf(RowOf('G', 1), kHex), "G01 hex: 01F4");
  EXPECT_EQ(browser.SpokenOf(RowOf('G', 1), kLegend), "G01 designation: (1) lower limit");
  EXPECT_EQ(browser.SpokenOf(RowOf('G', 1), 0), "G01");
}

TEST_P(AVariableBrowser, BeepsAtAClickBeforeAllHasCome) {
  OpenIt();
  Pulses(kRows - 1);
  browser.Grid_Click(1, kHex);
  EXPECT_EQ(bench.events.beeps, 1);
  EXPECT_FALSE(browser.IsEditing());
  Pulses(1);
  browser.Grid_Click(1, kHex);
  EXPECT_EQ(bench.events.beeps, 1);
  EXPECT_TRUE(browser.IsEditing());
}

TEST_P(AVariableBrowser, WritesAnEditAndShowsWhatItReadsBack) {
  LoadIt();
  browser.Grid_Click(RowOf('W', 1), kHex);
  ASSERT_TRUE(browser.Edit());
  EXPECT_EQ(browser.Edit()->Text, "0000");
  EXPECT_EQ(SentBy([&] { EXPECT_TRUE(browser.Commit("3e8")); }),
            OnEither({"W21=3E8\r", "W21?"}, {"n2p1=3E8\r", "n2p1?"}));
  EXPECT_FALSE(browser.IsEditing());
  EXPECT_EQ(Hex('W', 1), "03E8");
  EXPECT_EQ(Dec('W', 1), "1000");
  browser.Grid_Click(RowOf('V', 15), kDec);
  EXPECT_EQ(browser.Edit()->Text, "0");
  EXPECT_EQ(SentBy([&] { EXPECT_TRUE(browser.Commit("-32768")); }),
            OnEither({"V2F=8000\r", "V2F?"}, {"n2vFF=8000\r", "n2vFF?"}));
  EXPECT_EQ(Hex('V', 15), "8000");
}

TEST_P(AVariableBrowser, RefusesATextThatIsNoWordAndKeepsTheEdit) {
  LoadIt();
  browser.Grid_Click(0, kHex);
  const Texts wrong = {"", " ", "10000", "G", "-1", "1.5", "0x10", "12 34", "FFFFFFFFFFFF"};
  for (const std::string& text : wrong) {
    bench.dialogs.boxes.clear();
    EXPECT_TRUE(SentBy([&] { EXPECT_FALSE(browser.Commit(text)); }).empty()) << text;
    ASSERT_EQ(bench.dialogs.boxes.size(), 1U) << text;
    EXPECT_EQ(bench.dialogs.boxes[0].Text, "Input data ?");
    EXPECT_EQ(bench.dialogs.boxes[0].Title, "Check");
    EXPECT_TRUE(browser.IsEditing()) << text;
  }
  browser.Grid_Click(0, kDec);
  for (const char* text : {"", "32768", "-32769", "1,5", "FF", "1e3", "--1", "99999999999"}) {
    EXPECT_TRUE(SentBy([&] { EXPECT_FALSE(browser.Commit(text)); }).empty()) << text;
    EXPECT_TRUE(browser.IsEditing()) << text;
  }
}

TEST_P(AVariableBrowser, TakesEachWordAtItsLimits) {
  EXPECT_EQ(WordOfHex("0"), 0);
  EXPECT_EQ(WordOfHex("7fff"), 32767);
  EXPECT_EQ(WordOfHex("8000"), -32768);
  EXPECT_EQ(WordOfHex(" FFFF "), -1);
  EXPECT_EQ(WordOfHex("00A"), 10);
  EXPECT_EQ(WordOfDecimal("32767"), 32767);
  EXPECT_EQ(WordOfDecimal(" -32768 "), -32768);
  EXPECT_EQ(WordOfDecimal("-0"), 0);
}

TEST_P(AVariableBrowser, CancelsByAClickElsewhereAndByEscape) {
  LoadIt();
  for (const auto& [row, column] :
       {std::pair{5, 0}, std::pair{5, 3}, std::pair{RegisterSheet::kHeadRow, 1}}) {
    browser.Grid_Click(4, kHex);
    ASSERT_TRUE(browser.IsEditing());
    browser.Grid_Click(row, column);
    EXPECT_FALSE(browser.IsEditing()) << row << " " << column;
  }
  EXPECT_EQ(bench.events.beeps, 0);
  browser.Grid_Click(4, kHex);
  browser.Quit();
  EXPECT_FALSE(browser.IsEditing());
  EXPECT_TRUE(browser.IsOpen());
  browser.Quit();
  EXPECT_FALSE(browser.IsOpen());
  EXPECT_TRUE(SentBy([&] { EXPECT_TRUE(browser.Commit("1")); }).empty()) << "there is no edit";
}

TEST_P(AVariableBrowser, BeginsTheEditOfAnotherCellWithItsText) {
  Set('G', 4, 17);
  LoadIt();
  browser.Grid_Click(4, kHex);
  const int first = browser.Edit()->Number;
  browser.Grid_Click(4, kDec);
  EXPECT_EQ(browser.Edit()->Text, "17");
  EXPECT_NE(browser.Edit()->Number, first);
}

TEST_P(AVariableBrowser, ReplacesTheValuesByARefreshAndLeavesAPendingEdit) {
  Set('H', 2, 7);
  LoadIt();
  browser.Grid_Click(RowOf('H', 2), kDec);
  Set('H', 2, 8);
  browser.CmdRefresh_Click();
  EXPECT_FALSE(browser.IsLoaded());
  EXPECT_TRUE(browser.IsCntShown());
  EXPECT_EQ(browser.Cnt(), "");
  EXPECT_EQ(Pulses(1), OnEither({"G20?"}, {kEscapeText, "n2v0?"}));
  EXPECT_EQ(Dec('H', 2), "7");
  Pulses(kRows - 1);
  EXPECT_EQ(Dec('H', 2), "8");
  ASSERT_TRUE(browser.IsEditing());
  EXPECT_EQ(browser.Edit()->Text, "7");
  EXPECT_TRUE(browser.Commit("9"));
  EXPECT_EQ(Dec('H', 2), "9");
}

TEST_P(AVariableBrowser, KeepsWhatWasWrittenWhileItReadsAgain) {
  LoadIt();
  browser.Grid_Click(RowOf('G', 2), kDec);
  browser.CmdRefresh_Click();
  Pulses(100);
  EXPECT_TRUE(browser.Commit("41"));
  EXPECT_EQ(Dec('G', 2), "41");
  Pulses(kRows - 100);
  ASSERT_TRUE(browser.IsLoaded());
  EXPECT_EQ(Dec('G', 2), "41") << "the pass has read the old value before";
}

TEST_P(AVariableBrowser, CanBeLeftInTheMiddleAndOpenedAnew) {
  OpenIt();
  Pulses(160);
  browser.Quit();
  EXPECT_FALSE(browser.IsOpen());
  EXPECT_EQ(bench.events.pointers.back(), Pointer::kNormal);
  bench.state.ActiveInet = 0;
  Open(browser);
  EXPECT_EQ(browser.Caption(), " Tavrel-1   (320)");
  EXPECT_EQ(Pulses(1), OnEither({"G00?"}, {kEscapeText, "nv0?"}));
  EXPECT_EQ(browser.RowsRead(), 1);
}

TEST_P(AVariableBrowser, ClosesTheEditWhenTheWriteFailsAndReadsTheRegisterAgain) {
  for (const LineFailure failure : kLineFailures) {
    Set('W', 1, 5);
    LoadIt();
    const std::string write = is_plugin ? "n2p1=9\r" : "W21=9\r";
    fails = [&](const std::string& command) {
      return command == write ? std::optional(failure) : std::nullopt;
    };
    browser.Grid_Click(RowOf('W', 1), kDec);
    EXPECT_EQ(SentBy([&] { EXPECT_TRUE(browser.Commit("9")); }), (Texts{write})) << NameOf(failure);
    EXPECT_FALSE(browser.IsEditing()) << NameOf(failure);
    EXPECT_EQ(Dec('W', 1), "5") << NameOf(failure);
    EXPECT_EQ(browser.Note(), failure == LineFailure::kRefusal
                                  ? "W01:  refused by the instrument"
                                  : "W01:  not acknowledged, it is read again");
    bench.Run(1);
    EXPECT_EQ(Dec('W', 1), IsCarriedOut(failure) ? "9" : "5") << NameOf(failure);
    EXPECT_EQ(browser.Note().empty(), failure != LineFailure::kRefusal);
    EXPECT_TRUE(bench.dialogs.boxes.empty());
    fails = [](const std::string&) { return std::nullopt; };
    browser.CloseNow();
  }
}

TEST_P(AVariableBrowser, ReadsAgainWhatCouldNotBeReadBack) {
  for (const LineFailure failure : kLineFailures) {
    LoadIt();
    int left = 1;
    const std::string read = is_plugin ? "n2p1?" : "W21?";
    fails = [&](const std::string& command) {
      return command == read && left-- > 0 ? std::optional(failure) : std::nullopt;
    };
    browser.Grid_Click(RowOf('W', 1), kDec);
    EXPECT_TRUE(browser.Commit("77"));
    EXPECT_FALSE(browser.IsEditing());
    EXPECT_EQ(Dec('W', 1), "0") << "it was not read";
    bench.Run(1);
    EXPECT_EQ(Dec('W', 1), "77") << NameOf(failure);
    Set('W', 1, 0);
    fails = [](const std::string&) { return std::nullopt; };
    browser.CloseNow();
  }
}

TEST_P(AVariableBrowser, TriesARowAgainWhateverFails) {
  for (const LineFailure failure : kLineFailures) {
    OpenIt();
    Set('G', 7, 1);
    Set('G', 8, 2);
    int left = 2;
    const std::string read = is_plugin ? "n2v7?" : "G27?";
    fails = [&](const std::string& command) {
      return command == read && left-- > 0 ? std::optional(failure) : std::nullopt;
    };
    for (int pulse = 0; pulse < kRows + 10 && !browser.IsLoaded(); ++pulse) {
      Pulses(1);
    }
    ASSERT_TRUE(browser.IsLoaded()) << NameOf(failure);
    EXPECT_EQ(Hex('G', 6), "0000") << NameOf(failure);
    EXPECT_EQ(Hex('G', 7), "0001") << NameOf(failure);
    EXPECT_EQ(Hex('G', 8), "0002") << NameOf(failure);
    fails = [](const std::string&) { return std::nullopt; };
    browser.CloseNow();
  }
}

TEST_P(AVariableBrowser, GoesOnWhereItWasWhenTheLineComesBack) {
  OpenIt();
  Pulses(150);
  bench.line.silent = {3};
  Pulses(2);
  EXPECT_FALSE(browser.ComIcon());
  Pulses(1);
  EXPECT_TRUE(browser.ComIcon());
  EXPECT_EQ(bench.events.pointers.back(), Pointer::kNormal);
  EXPECT_EQ(browser.RowsRead(), 150);
  EXPECT_EQ(browser.Cnt(), "149");
  bench.line.silent = {};
  Pulses(1);
  EXPECT_FALSE(browser.ComIcon());
  EXPECT_EQ(browser.RowsRead(), 151);
  Load(browser, kRows);
  EXPECT_TRUE(browser.IsLoaded());
}

TEST_P(AVariableBrowser, WaitsForAPortThatWasPulledOut) {
  OpenIt();
  Pulses(30);
  bench.port.Vanish();
  bench.port.open_error = 2;
  bench.Run(15);
  EXPECT_EQ(browser.RowsRead(), 30);
  bench.port.open_error = 0;
  bench.Run(60);
  EXPECT_TRUE(browser.IsLoaded());
}

// Results other than silence hide the sign.
TEST_P(AVariableBrowser, HidesTheSignAtEachAnswerEvenABadOne) {
  OpenIt();
  for (const std::string reply : {"0001\r", "?", "001\r", "00G1\r"}) {
    bench.line.silent = {3};
    Pulses(4);
    EXPECT_TRUE(browser.ComIcon());
    bench.port.answer = [&](const std::string&) { return reply; };
    Pulses(1);
    EXPECT_FALSE(browser.ComIcon()) << reply;
    EXPECT_EQ(bench.link_watch.LinkMisses, 0);
    bench.port.answer = [this](const std::string& command) { return Reply(command); };
  }
}

TEST_P(AVariableBrowser, HidesTheSignWhenThePortFailsInTheMiddleOfAnExchange) {
  OpenIt();
  bench.line.silent = {3};
  Pulses(4);
  EXPECT_TRUE(browser.ComIcon());
  bench.port.answer = [this](const std::string&) { return bench.port.Vanish(), ""; };
  Pulses(1);
  EXPECT_EQ(bench.link.ComResult, LinkResult::kPortError);
  EXPECT_FALSE(browser.ComIcon());
}

TEST_P(AVariableBrowser, TakesNoReplyOfAnotherRegisterForItsOwn) {
  OpenIt();
  Set('G', 0, 0x111);
  Set('G', 1, 0x222);
  // Two replies to one command: nobody can tell which is whose.
  int left = 1;
  bench.port.answer = [&](const std::string& command) {
    const bool is_doubled = command.ends_with("1?") && left-- > 0;
    if (is_doubled) {
      bench.port.Arrive(std::chrono::milliseconds(12), Answer(command));
      return std::string("0111\r");
    }
    return Reply(command);
  };
  for (int pulse = 0; pulse < kRows + 10 && !browser.IsLoaded(); ++pulse) {
    Pulses(1);
  }
  EXPECT_EQ(left < 1, true);
  EXPECT_EQ(Hex('G', 1), "0222");
}

class ASimulatedVariableBrowser : public BrowserBench {};

TEST_F(ASimulatedVariableBrowser, ShowsDigitsWithoutLeadingZeros) {
  bench.state.Settings.CommPort = "----";
  Begin();
  ASSERT_TRUE(bench.link.Simulated);
  VariableBrowser& browser = bench.variable_browser;
  Open(browser);
  for (int tick = 0; tick < kRows; ++tick) {
    bench.cycle.Tick();
  }
  ASSERT_TRUE(browser.IsLoaded());
  EXPECT_EQ(browser.TextOf(RowOf('W', 1), kHex), "0");
  browser.Grid_Click(RowOf('W', 1), kDec);
  EXPECT_TRUE(browser.Commit("500"));
  EXPECT_EQ(browser.TextOf(RowOf('W', 1), kHex), "1F4");
  EXPECT_EQ(browser.TextOf(RowOf('W', 1), kDec), "500");
  EXPECT_TRUE(bench.port.sent.empty());
}

}  // namespace
}  // namespace tavrel
