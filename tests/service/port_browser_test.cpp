#include "service/port_browser.h"

#include <gtest/gtest.h>

#include "tests/service/browser_bench.h"

namespace tavrel {
namespace {

constexpr int kSymbol = 1;
constexpr int kPortHex = 2;
constexpr int kBits = 3;
constexpr int kPortRows = 128;

class APortBrowser : public BrowserBench, public testing::WithParamInterface<bool> {
 protected:
  APortBrowser() { is_plugin = GetParam(); }

  void OpenIt() {
    Begin();
    Open(browser);
  }
  void LoadIt() {
    OpenIt();
    Load(browser, kPortRows);
    ASSERT_TRUE(browser.IsLoaded());
  }
  [[nodiscard]] Texts OnEither(const Texts& direct, const Texts& plugin) const {
    return is_plugin ? plugin : direct;
  }

  PortBrowser& browser = bench.port_browser;
};

INSTANTIATE_TEST_SUITE_P(OnEachLine, APortBrowser, testing::Values(false, true),
                         [](const auto& each) { return each.param ? "plugin" : "direct"; });

TEST_P(APortBrowser, OpensWithItsRows) {
  OpenIt();
  EXPECT_EQ(browser.Caption(), " Tavrel-3  /  Registers of HD647180");
  EXPECT_EQ(bench.state.ActiveView, View::kAllRegs);
  EXPECT_EQ(browser.TextOf(0, 0), "00");
  EXPECT_EQ(browser.TextOf(127, 0), "7F");
  EXPECT_EQ(browser.TextOf(0, kSymbol), "CNTLA0");
  EXPECT_EQ(browser.TextOf(0x11, kSymbol), " -      ");
  EXPECT_EQ(browser.TextOf(5, kPortHex), "");
  EXPECT_EQ(browser.TextOf(5, kBits), "");
  EXPECT_EQ(browser.Note(), is_plugin ? ""
                                      : "direct line:  the port access has no address, whatever "
                                        "instrument answers is read and written");
}

TEST_P(APortBrowser, SaysSoInGermanToo) {
  bench.state.Settings.HelpLang = "German";
  Begin();
  bench.state.Settings.HelpLang = "German";
  Open(browser);
  EXPECT_EQ(browser.Note(), is_plugin ? ""
                                      : "direkte Leitung:  der Portzugriff hat keine Adresse, es "
                                        "antwortet irgendein Gerät");
}

TEST_P(APortBrowser, WritesZeroToARegisterWithoutUseAndReadsOnePortATurn) {
  OpenIt();
  EXPECT_EQ(Pulses(2),
            OnEither({"V20=0\r", "0@", "1@"}, {kEscapeText, "n2vF0=0\r", "n2o0?", "n2o1?"}));
  EXPECT_EQ(browser.Cnt(), "1");
  EXPECT_EQ(bench.events.pointers.back(), Pointer::kHourglass);
  const Texts rest = Pulses(kPortRows - 2);
  EXPECT_EQ(rest.front(), is_plugin ? "n2o2?" : "2@");
  EXPECT_EQ(rest.at(8), is_plugin ? "n2oA?" : "A@");
  EXPECT_EQ(rest.back(), is_plugin ? "n2o7F?" : "7F@");
  EXPECT_EQ(rest.size(), 126U);
  EXPECT_TRUE(browser.IsLoaded());
  EXPECT_FALSE(browser.IsCntShown());
  EXPECT_EQ(bench.events.pointers.back(), Pointer::kNormal);
}

TEST_P(APortBrowser, ShowsNumberAndBits) {
  ports[0x60] = 0xA5;
  OpenIt();
  Pulses(kPortRows - 1);
  EXPECT_EQ(browser.TextOf(0x60, kPortHex), "");
  Pulses(1);
  EXPECT_EQ(browser.TextOf(0x60, kPortHex), "A5");
  EXPECT_EQ(browser.TextOf(0x60, kBits), " 1  0  1  0     0  1  0  1 ");
  EXPECT_EQ(browser.TextOf(0x61, kPortHex), "00");
  EXPECT_EQ(browser.SpokenOf(0x60, kPortHex), "60 hex: A5");
}

TEST_P(APortBrowser, ShowsWhatTheReadGivesAndNotWhatWasTyped) {
  masks[5] = 0x30;
  LoadIt();
  browser.Grid_Click(5, kPortHex);
  ASSERT_TRUE(browser.IsEditing());
  EXPECT_EQ(browser.Edit()->Text, "00");
  EXPECT_EQ(SentBy([&] { EXPECT_TRUE(browser.Commit("41")); }),
            OnEither({"05:41\r", "05@"}, {"n2o05=41\r", "n2o05?"}));
  EXPECT_FALSE(browser.IsEditing());
  EXPECT_EQ(browser.TextOf(5, kPortHex), "71");
  EXPECT_EQ(browser.TextOf(5, kBits), " 0  1  1  1     0  0  0  1 ");
}

TEST_P(APortBrowser, SendsMoreThanEightBitsAsTheyWereTyped) {
  LoadIt();
  browser.Grid_Click(0x7F, kPortHex);
  EXPECT_EQ(SentBy([&] { EXPECT_TRUE(browser.Commit("ffff")); }),
            OnEither({"7F:FFFF\r", "7F@"}, {"n2o7F=FFFF\r", "n2o7F?"}));
  EXPECT_EQ(browser.TextOf(0x7F, kPortHex), "FF");
}

TEST_P(APortBrowser, RefusesATextThatIsNoWordAndKeepsTheEdit) {
  LoadIt();
  browser.Grid_Click(9, kPortHex);
  for (const char* text : {"", "G1", "10000", "-1"}) {
    bench.dialogs.boxes.clear();
    EXPECT_TRUE(SentBy([&] { EXPECT_FALSE(browser.Commit(text)); }).empty()) << text;
    ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
    EXPECT_EQ(bench.dialogs.boxes[0].Text, "Input data ?");
    EXPECT_EQ(bench.dialogs.boxes[0].Title, "Check");
    EXPECT_TRUE(browser.IsEditing());
  }
}

TEST_P(APortBrowser, BeepsAtTheHeadAndBeforeAllHasCome) {
  OpenIt();
  browser.Grid_Click(3, kPortHex);
  EXPECT_EQ(bench.events.beeps, 1);
  Load(browser, kPortRows);
  browser.Grid_Click(3, kPortHex);
  EXPECT_TRUE(browser.IsEditing());
  browser.Grid_Click(RegisterSheet::kHeadRow, kPortHex);
  EXPECT_EQ(bench.events.beeps, 2);
  EXPECT_TRUE(browser.IsEditing()) << "refused";
  browser.Grid_Click(kPortRows, kPortHex);
  EXPECT_EQ(bench.events.beeps, 3);
  for (const int column : {0, kSymbol, kBits}) {
    browser.Grid_Click(3, kPortHex);
    browser.Grid_Click(3, column);
    EXPECT_FALSE(browser.IsEditing()) << column;
  }
}

// On a direct line nobody acknowledges a write to a port: it is read back, which tells.
TEST_P(APortBrowser, KeepsTheEditWhenTheWriteFails) {
  for (const LineFailure failure : kLineFailures) {
    LoadIt();
    const std::string write = is_plugin ? "n2o05=41\r" : "05:41\r";
    fails = [&](const std::string& command) {
      return command == write ? std::optional(failure) : std::nullopt;
    };
    browser.Grid_Click(5, kPortHex);
    EXPECT_TRUE(browser.Commit("41"));
    if (is_plugin) {
      EXPECT_TRUE(browser.IsEditing()) << NameOf(failure);
      EXPECT_EQ(browser.TextOf(5, kPortHex), "00");
      EXPECT_FALSE(browser.Note().empty());
      bench.Run(1);
      EXPECT_EQ(browser.TextOf(5, kPortHex), IsCarriedOut(failure) ? "41" : "00")
          << NameOf(failure);
      EXPECT_TRUE(browser.IsEditing());
    }
    fails = [](const std::string&) { return std::nullopt; };
    EXPECT_TRUE(browser.Commit("42"));
    if (is_plugin) {
      EXPECT_FALSE(browser.IsEditing());
      EXPECT_EQ(browser.TextOf(5, kPortHex), "42");
    }
    ports[5] = 0;
    browser.CloseNow();
  }
}

TEST_P(APortBrowser, DoesNotReadBeforeItsFirstWriteIsAnswered) {
  OpenIt();
  bench.line.silent = {3};
  EXPECT_EQ(Pulses(2),
            OnEither({"V20=0\r", "V20=0\r"}, {kEscapeText, "n2vF0=0\r", kEscapeText, "n2vF0=0\r"}));
  EXPECT_EQ(browser.RowsRead(), 0);
  bench.line.silent = {};
  bench.line.refused = {'V'};
  EXPECT_EQ(Pulses(1), OnEither({"V20=0\r", "0@"}, {kEscapeText, "n2vF0=0\r", "n2o0?"}))
      << "a refusal is an answer";
  EXPECT_EQ(browser.RowsRead(), 1);
}

TEST_P(APortBrowser, TriesARowAgainWhateverFails) {
  for (const LineFailure failure : kLineFailures) {
    ports[6] = 0x66;
    ports[7] = 0x77;
    OpenIt();
    int left = 2;
    const std::string read = is_plugin ? "n2o7?" : "7@";
    fails = [&](const std::string& command) {
      return command == read && left-- > 0 ? std::optional(failure) : std::nullopt;
    };
    Load(browser, kPortRows + 10);
    ASSERT_TRUE(browser.IsLoaded()) << NameOf(failure);
    EXPECT_EQ(browser.TextOf(6, kPortHex), "66");
    EXPECT_EQ(browser.TextOf(7, kPortHex), "77");
    EXPECT_EQ(browser.TextOf(8, kPortHex), "00");
    fails = [](const std::string&) { return std::nullopt; };
    browser.CloseNow();
  }
}

class ASimulatedPortBrowser : public BrowserBench {};

TEST_F(ASimulatedPortBrowser, Keeps128ValuesOfItsOwn) {
  bench.state.Settings.CommPort = "----";
  Begin();
  PortBrowser& browser = bench.port_browser;
  Open(browser);
  EXPECT_EQ(browser.Note(), "");
  for (int tick = 0; tick < kPortRows; ++tick) {
    bench.cycle.Tick();
  }
  ASSERT_TRUE(browser.IsLoaded());
  for (int row = 0; row < kPortRows; ++row) {
    browser.Grid_Click(row, kPortHex);
    EXPECT_TRUE(browser.Commit(row % 2 == 0 ? "1F" : "2"));
  }
  EXPECT_EQ(browser.TextOf(0, kPortHex), "1F");
  EXPECT_EQ(browser.TextOf(127, kPortHex), "2");
  EXPECT_EQ(browser.TextOf(127, kBits), " 0  0  0  0     0  0  1  0 ");
}

}  // namespace
}  // namespace tavrel
