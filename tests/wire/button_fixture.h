#ifndef TAVREL_TESTS_WIRE_BUTTON_FIXTURE_H_
#define TAVREL_TESTS_WIRE_BUTTON_FIXTURE_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <ostream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "link/registers.h"
#include "tests/support/start_telegrams.h"
#include "tests/wire/live_instrument.h"
#include "tests/wire/wire_program.h"

namespace tavrel {

using Telegrams = std::vector<std::string>;

inline constexpr int kSpeedUp = 100;  // the bar of eleven seconds goes by in a moment
constexpr int kInet = 2;
constexpr int kCtrl = 3;
constexpr const char* kName = "M260314A.OVN";

// How an exchange fails, in the words of the instrument's faults.
struct FailingExchange {
  const char* name;
  const char* level;
  bool is_carried_out;  // the instrument has done what it was told
};

inline constexpr FailingExchange kNone{"none", "", true};
inline constexpr FailingExchange kLostRequest{"lost-request", "on", false};
inline constexpr FailingExchange kLostReply{"lost-reply", "on", true};
inline constexpr FailingExchange kRefusal{"refusal", "on", false};
// In the middle between the limit of a reply, 110 ms, and the end of the time in which a late one
// is thrown away, 260 ms: a machine that stands still for a moment must not change what it is.
inline constexpr FailingExchange kLateReply{"late-reply", "185", true};
// The exchange goes well, but what is read is no value.
inline constexpr FailingExchange kNoValueToRead{"no-value", "on", true};

inline std::ostream& operator<<(std::ostream& out, const FailingExchange& failure) {
  return out << failure.name;
}

// Each failure once, on one kind of line or the other. All of them on both, at each exchange, are
// tried on a scripted port, where no time passes.
inline std::vector<std::tuple<bool, FailingExchange>> EachFailureOnce() {
  return {{false, kLostRequest}, {true, kLostReply}, {true, kRefusal}, {false, kLateReply}};
}

inline std::string NameOf(const std::tuple<bool, FailingExchange>& parameter) {
  std::string name = std::get<1>(parameter).name;
  std::replace(name.begin(), name.end(), '-', '_');
  return (std::get<0>(parameter) ? "plugin_" : "direct_") + name;
}

// The worksheet of slot 1 with the buttons of its dialogs, on a virtual instrument: instrument 2,
// controller 3, reference 2, two inputs, rows of 10 s, not recording.
class ButtonsOnTheWire : public testing::TestWithParam<std::tuple<bool, FailingExchange>> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(instrument.IsUp());
    program.screens.built = {View::kTavWork, View::kTavRec,   View::kTavCoord, View::kTavWait,
                             View::kTavCtrl, View::kTavColor, View::kTavPid};
    program.screens.on_show = [this](View view) { RunDialog(view); };
    program.port.before_write = [this] { CountExchange(); };
    UnitRecord header = BenchProgram::Header(kInet, kCtrl, 2, false);
    header.UnitInterval = 1;
    header.UnitIncrement = 5;
    header.UnitFinal = 2000;
    program.Start(IsPlugin(), kName, header);
    program.state.SelSlot = 1;
    Give(kSettings);
    Give({{"Z", 2}});
    OpenSheet();
  }

  static bool IsPlugin() { return std::get<0>(GetParam()); }
  static const FailingExchange& HowItFails() { return std::get<1>(GetParam()); }
  static bool Fails() { return *HowItFails().level != '\0'; }

  // Opens it, or opens it once more, with the first refresh.
  void OpenSheet() {
    program.worksheet.cmdExit_Click();
    program.worksheet.Open();
    ASSERT_TRUE(program.RunUntil([this] { return program.state.TickRefresh.At > 0; }));
    Forget();
  }

  // From now on exchanges are counted; number `fail_at` of them fails as this test is for. The
  // instrument answers again, and nothing of before is on the line any more.
  void Forget() {
    Greet();
    program.dialogs.boxes.clear();
    exchanges = 0;
    instrument.Forget();
  }
  void Greet() {
    fail_at = 0;
    EXPECT_TRUE(instrument.Tell("fault all none"));
    EXPECT_TRUE(ExchangeForSure("Y", 0, false));
  }
  void CountExchange() {
    if (++exchanges == fail_at) {
      EXPECT_TRUE(instrument.Tell("fault " + std::to_string(kInet) + " " + HowItFails().name + " " +
                                  HowItFails().level + (for_good ? "" : " times 1")));
    }
  }

  // What a user does in a dialog; the wait bar runs to its end.
  void RunDialog(View view) {
    if (view == View::kTavWait) {
      telegrams_before_wait = exchanges;
      program.wait_bar.Open();
      EXPECT_TRUE(program.RunUntil([this] { return !program.wait_bar.IsOpen(); }));
    } else if (dialog) {
      dialog();
    }
  }

  bool Exchange(const char* letter, int value, bool write) {
    Link& link = program.link;
    link.ComInet = kInet;
    link.ComLetter = letter;
    link.ComIndex = kCtrl;
    link.ComValue = static_cast<std::int16_t>(value);
    write ? link.WriteReg() : link.ReadReg();
    return link.IsGood(kInet);
  }
  // For what a test prepares and looks up: a late reply spoils the exchange behind it, and on a
  // busy machine any one may fail.
  bool ExchangeForSure(const char* letter, int value, bool write) {
    constexpr int kAttempts = 5;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
      if (Exchange(letter, value, write)) {
        return true;
      }
    }
    return false;
  }
  using Registers = std::vector<std::pair<const char*, int>>;
  inline static const Registers kSettings = {
      {"H", 6000}, {"M", 2000}, {"I", 5}, {"W", 1600}, {"G", 100}};
  // Puts values into the registers of the controller.
  void Give(const Registers& registers) {
    for (const auto& [letter, value] : registers) {
      EXPECT_TRUE(ExchangeForSure(letter, value, true)) << letter;
    }
  }

  // What the instrument really has. Ends the count.
  int Register(const char* letter) {
    Greet();
    return ExchangeForSure(letter, 0, false) ? program.link.ComValue : kNoData;
  }

  // Those of this kind of line.
  static const Telegrams& Of(const Telegrams& direct, const Telegrams& plugin) {
    return IsPlugin() ? plugin : direct;
  }
  static Telegrams First(const Telegrams& all, int count) {
    return {all.begin(), all.begin() + count};
  }
  void ExpectTelegrams(const Telegrams& expected) const {
    EXPECT_EQ(instrument.Telegrams(expected.size()), expected) << HowItFails() << " at " << fail_at;
  }
  void ExpectTelegramsOfAStart(const Telegrams& expected) const {
    EXPECT_EQ(WithoutCounts(instrument.Telegrams(expected.size())), expected)
        << HowItFails() << " at " << fail_at;
  }
  std::vector<std::string> Boxes() const {
    std::vector<std::string> texts;
    for (const Notice& box : program.dialogs.boxes) {
      texts.push_back(box.Title + ": " + box.Text);
    }
    return texts;
  }
  const WorksheetValues& Shown() const { return program.worksheet.Values(); }
  UnitRecord& Unit() { return program.state.Unit[1]; }
  UnitRecord FileHeader(const std::string& name) const {
    UnitRecord unit{};
    const std::string bytes = program.home.Read("tavdat/" + name);
    std::memcpy(&unit, bytes.data(), std::min(sizeof unit, bytes.size()));
    return unit;
  }

  WireProgram program{kSpeedUp};
  LiveInstrument instrument{program.home, IsPlugin(), {"--instruments", "2"}};
  std::function<void()> dialog;
  int exchanges = 0;
  int fail_at = 0;
  bool for_good = false;  // and all exchanges behind it fail, too
  int telegrams_before_wait = 0;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_WIRE_BUTTON_FIXTURE_H_
