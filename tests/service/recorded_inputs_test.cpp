#include <gtest/gtest.h>

#include <algorithm>

#include "service/variable_browser.h"
#include "tests/service/browser_bench.h"
#include "tests/service/service_bench.h"
#include "tests/support/line_failure.h"
#include "tests/support/sampling_line.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr int kInet = 3;
constexpr const char* kFile = "M260301A.OVN";

struct Scene {
  int slot = 3;
  int inputs = 5;
  int interval = 10;        // seconds
  milliseconds distance{};  // from one input to the next
};

// A recording on an instrument that samples by the clock, and the browser over it. The values of
// each input count up from 1, so that a value that is lost, doubled or in a wrong row shows.
class RecordedInputs : public ServiceBench {
 protected:
  void Begin(const Scene& scene) {
    now = scene;
    UnitRecord unit = BenchProgram::Header(kInet, 1, scene.inputs, true);
    unit.UnitFast = scene.interval < 10 ? 1 : 0;
    unit.UnitInterval =
        static_cast<std::int16_t>(scene.interval < 10 ? scene.interval : scene.interval / 10);
    unit.SetApparatusName("Oven");
    bench.Install(scene.slot, kFile, unit);
    Start();
    bench.state.ActiveInet = kInet;
    for (int input = 1; input <= scene.inputs; ++input) {
      line.Sample(kInet, input, seconds(scene.interval), seconds(2) + (input - 1) * scene.distance,
                  0);
    }
  }
  void Load(double most_seconds) {
    const auto end = bench.clock.Elapsed() + std::chrono::duration<double>(most_seconds);
    while (!browser.IsLoaded() && bench.clock.Elapsed() < end) {
      bench.Run(0.05);
    }
    ASSERT_TRUE(browser.IsLoaded());
  }
  void OpenIt() { Open(browser); }
  std::string Dec(char letter, int index) { return browser.TextOf(RowOf(letter, index), kDec); }

  // The rows of the file behind the doubled first one.
  [[nodiscard]] std::vector<std::vector<int>> Sets(const char* file = kFile) const {
    const auto words = bench.Samples(file);
    const auto inputs = static_cast<std::size_t>(now.inputs);
    std::vector<std::vector<int>> sets;
    for (std::size_t place = inputs; place + inputs <= words.size(); place += inputs) {
      sets.emplace_back(words.begin() + static_cast<std::ptrdiff_t>(place),
                        words.begin() + static_cast<std::ptrdiff_t>(place + inputs));
    }
    return sets;
  }
  // Each row holds the values of one set, and the sets follow one another from 1 on.
  void ExpectNothingLostOrDoubled(std::size_t at_least) {
    const auto sets = Sets();
    ASSERT_GE(sets.size(), at_least);
    for (std::size_t row = 0; row < sets.size(); ++row) {
      EXPECT_EQ(sets[row],
                std::vector<int>(static_cast<std::size_t>(now.inputs), static_cast<int>(row) + 1))
          << "row " << row + 1;
    }
    EXPECT_TRUE(bench.dialogs.announced.empty()) << bench.dialogs.announced.front().Text;
  }
  void Fail(const std::string& command, LineFailure failure, int times) {
    auto answer = bench.port.answer;
    bench.port.answer = [=, this, left = times](const std::string& sent) mutable {
      if (sent != command || left-- <= 0) {
        return answer(sent);
      }
      return FailedReply(failure, bench.port, [&] { return line.Answer(sent); });
    };
  }

  Scene now;
  SamplingLine line{bench.clock, bench.port};
  VariableBrowser& browser = bench.variable_browser;
};

class EachRecording : public RecordedInputs, public testing::WithParamInterface<Scene> {};

INSTANTIATE_TEST_SUITE_P(OfAnyShape, EachRecording,
                         testing::Values(Scene{3, 5, 10, milliseconds(0)},
                                         Scene{12, 15, 10, milliseconds(500)},
                                         Scene{1, 15, 1, milliseconds(0)},
                                         Scene{7, 2, 1, milliseconds(300)},
                                         Scene{11, 1, 1, milliseconds(0)}),
                         [](const auto& each) {
                           return "slot" + std::to_string(each.param.slot) + "inputs" +
                                  std::to_string(each.param.inputs) + "interval" +
                                  std::to_string(each.param.interval);
                         });

TEST_P(EachRecording, LosesNothingToABrowserThatReadsAgainAndAgain) {
  Begin(GetParam());
  bench.Run(30);
  OpenIt();
  for (int pass = 0; pass < 4; ++pass) {
    Load(120);
    browser.CmdRefresh_Click();
  }
  browser.CloseNow();
  bench.Run(40);
  ExpectNothingLostOrDoubled(now.interval < 10 ? 60 : 10);
}

// The pump sleeps, so that it is the browser that takes the set out of the instrument.
TEST_F(RecordedInputs, GiveTheirValuesToTheFile) {
  Begin({3, 5, 10, milliseconds(0)});
  OpenIt();
  while (browser.RowsRead() < RowOf('X', 1)) {
    bench.Run(0.05);
  }
  while (line.Waiting(kInet, 1) == 0 || bench.state.ReadState[3] != ReadState::kWaiting) {
    bench.clock.Advance(milliseconds(50));
    bench.state.ReadState[3] = ReadState::kWaiting;
  }
  bench.state.TickTen.SetIn(9, bench.clock);
  const std::size_t before = Sets().size();
  Load(8);
  EXPECT_EQ(Dec('X', 1), std::to_string(before + 1));
  EXPECT_EQ(Dec('X', 5), std::to_string(before + 1));
  EXPECT_EQ(Dec('X', 6), "-32768") << "not recorded";
  EXPECT_EQ(Sets().size(), before + 1);
  bench.Run(30);
  ExpectNothingLostOrDoubled(before + 3);
}

// Where the inputs of a set come far apart the first ones are in hand for long.
TEST_F(RecordedInputs, ShowWhatThePumpHasInHandIfTheWaitIsLong) {
  Begin({12, 2, 60, std::chrono::seconds(40)});
  bench.Run(1);
  OpenIt();
  while (browser.RowsRead() < RowOf('X', 1)) {
    bench.Run(0.05);
  }
  while (!bench.state.SampleSeen[12][1]) {
    bench.clock.Advance(milliseconds(500));
    bench.engine.TenSecondTick();
    bench.engine.PumpOnce();
  }
  const auto begun = bench.clock.Elapsed();
  Load(12);
  EXPECT_LT(bench.clock.Elapsed() - begun, seconds(10)) << "it waits for 5 s at most";
  EXPECT_EQ(Dec('X', 1), "1");
  EXPECT_EQ(browser.TextOf(RowOf('X', 1), 1), "0001");
  EXPECT_EQ(browser.TextOf(RowOf('X', 1), kLegend), " *     (from buffer)   held for row 12");
  EXPECT_EQ(Dec('X', 2), "-32768");
  EXPECT_EQ(browser.TextOf(RowOf('X', 2), kLegend), " *");
  browser.CloseNow();
  bench.Run(200);
  ExpectNothingLostOrDoubled(3);
}

TEST_F(RecordedInputs, OfSeveralTestsGoToTheOneThatWouldReadNext) {
  now = {5, 1, 10, {}};
  for (const int slot : {5, 9}) {
    UnitRecord unit = BenchProgram::Header(kInet, 1, 1, true);
    unit.UnitInterval = 1;
    bench.Install(slot, "M26030" + std::to_string(slot) + "A.OVN", unit);
  }
  Start();
  bench.state.ActiveInet = kInet;
  line.Sample(kInet, 1, seconds(10), seconds(2), 0);
  bench.Run(60);
  OpenIt();
  for (int pass = 0; pass < 3; ++pass) {
    Load(60);
    browser.CmdRefresh_Click();
  }
  bench.Run(30);
  std::vector<int> all;
  for (const char* file : {"M260305A.OVN", "M260309A.OVN"}) {
    for (const auto& set : Sets(file)) {
      all.push_back(set[0]);
    }
  }
  std::sort(all.begin(), all.end());
  ASSERT_GE(all.size(), 10U);
  for (std::size_t place = 0; place < all.size(); ++place) {
    EXPECT_EQ(all[place], static_cast<int>(place) + 1) << "each value once";
  }
}

// A failure of the browser's own read raises the doubt of the pump, which finds out what became of
// the value.
class FailingReads : public RecordedInputs, public testing::WithParamInterface<LineFailure> {};

INSTANTIATE_TEST_SUITE_P(Each, FailingReads, testing::ValuesIn(kLineFailures),
                         [](const auto& each) { return NameOf(each.param); });

TEST_P(FailingReads, RaiseTheDoubtOfThePump) {
  Begin({3, 5, 10, milliseconds(0)});
  bench.Run(65);
  OpenIt();
  while (browser.RowsRead() < RowOf('X', 4)) {
    bench.Run(0.05);
  }
  while (line.Waiting(kInet, 4) == 0) {
    bench.clock.Advance(milliseconds(50));
  }
  const std::size_t before = Sets().size();
  Fail("X24?", GetParam(), 1);
  bench.cycle.Tick();
  EXPECT_EQ(bench.state.ColumnsInDoubt[3], GetParam() != LineFailure::kRefusal);
  Load(60);
  browser.CloseNow();
  bench.Run(60);
  const auto sets = Sets();
  ASSERT_GT(sets.size(), before + 4);
  for (std::size_t row = 0; row < sets.size(); ++row) {
    const int set = static_cast<int>(row) + 1;
    std::vector<int> wanted(5, set);
    if (IsCarriedOut(GetParam()) && row == before) {
      wanted[3] = set - 1;
    }
    EXPECT_EQ(sets[row], wanted) << row;
  }
  const auto& told = bench.dialogs.announced;
  ASSERT_EQ(told.size(), IsCarriedOut(GetParam()) ? 1U : 0U);
  if (!told.empty()) {
    EXPECT_EQ(told[0].Text, std::string(kFile) + ": row " + std::to_string(before + 1) +
                                ", input 4: lost on the line; the value before it stands in its "
                                "place");
  }
}

// ---- Writes.

TEST_F(RecordedInputs, AskBeforeTheirSeriesIsWritten) {
  Begin({12, 15, 10, milliseconds(0)});
  bench.Run(30);
  OpenIt();
  Load(120);
  bench.dialogs.ok = false;
  for (const char letter : {'R', 'S', 'X'}) {
    bench.dialogs.boxes.clear();
    browser.Grid_Click(RowOf(letter, 15), kDec);
    bench.port.sent.clear();
    EXPECT_FALSE(browser.Commit("0"));
    EXPECT_TRUE(bench.port.sent.empty()) << letter;
    EXPECT_TRUE(browser.IsEditing());
    ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
    EXPECT_TRUE(bench.dialogs.boxes[0].PresetIsNo);
    EXPECT_NE(bench.dialogs.boxes[0].Text.find("row 12:  Oven"), std::string::npos);
    EXPECT_TRUE(bench.dialogs.boxes[0].Text.starts_with(std::string(1, letter) + "0F of Tavrel-3:"))
        << bench.dialogs.boxes[0].Text;
  }
  bench.dialogs.boxes.clear();
  browser.Grid_Click(RowOf('R', 0), kDec);
  EXPECT_TRUE(browser.Commit("0"));
  browser.Grid_Click(RowOf('Y', 15), kDec);
  EXPECT_TRUE(browser.Commit("0"));
  EXPECT_TRUE(bench.dialogs.boxes.empty()) << "none of a recording";
}

// The values that a user clears are made up for: no later value of the input comes into the row of
// another set.
struct Clearing {
  int sets;     // that the pump has not read
  bool pauses;  // the series begins anew after a pause
};

class ClearedSeries : public RecordedInputs, public testing::WithParamInterface<Clearing> {
 protected:
  // Rows of a file that are told to be cleared by hand.
  struct Rows {
    std::size_t first = 0;
    std::size_t last = 0;
  };
  [[nodiscard]] std::vector<Rows> ToldRows(const std::string& file) const {
    std::vector<Rows> told;
    for (const Notice& notice : bench.dialogs.announced) {
      if (notice.Text.starts_with(file) && notice.Text.find(": cleared") != std::string::npos) {
        const std::string numbers = notice.Text.substr(notice.Text.find(": row") + 5);
        const std::size_t begin = numbers.find_first_of("0123456789");
        const std::string rest = numbers.substr(numbers.find_first_not_of("0123456789", begin));
        const std::size_t first = std::stoul(numbers.substr(begin));
        const bool is_one = rest.starts_with(",");
        const std::size_t last =
            is_one ? first : std::stoul(rest.substr(rest.find_first_of("0123456789")));
        told.push_back({first, last});
      }
    }
    return told;
  }
  // Of a file of one input: what is told to be made up is the value before it, or the next one
  // where there is none. Returns the other values; the first set of a file stands in it twice.
  [[nodiscard]] std::vector<int> RealValues(const std::string& file, std::size_t least) const {
    const auto words = bench.Samples(file);
    std::vector<int> values(words.begin(), words.end());
    const std::vector<Rows> told = ToldRows(file);
    EXPECT_EQ(told.size(), 1U) << file;
    const Rows rows = told.empty() ? Rows() : told.front();
    EXPECT_GE(rows.last - rows.first + 1, least + (rows.first == 0 ? 1 : 0)) << file;
    if (rows.last + 1 >= values.size()) {
      ADD_FAILURE() << file << ": no value behind row " << rows.last;
      return values;
    }
    const int wanted = rows.first == 0 ? values[rows.last + 1] : values[rows.first - 1];
    for (std::size_t row = rows.first; row <= rows.last; ++row) {
      EXPECT_EQ(values[row], wanted) << file << " " << row;
    }
    values.erase(values.begin() + static_cast<std::ptrdiff_t>(rows.first),
                 values.begin() + static_cast<std::ptrdiff_t>(rows.last) + 1);
    values.erase(values.begin(), values.begin() + (rows.first == 0 ? 0 : 1));
    return values;
  }
};

INSTANTIATE_TEST_SUITE_P(Holding, ClearedSeries,
                         testing::Values(Clearing{0, false}, Clearing{1, false}, Clearing{2, false},
                                         Clearing{7, false}, Clearing{40, false}, Clearing{0, true},
                                         Clearing{3, true}));

TEST_P(ClearedSeries, KeepTheirRows) {
  line.clearing_pauses = GetParam().pauses;
  Begin({9, 5, 10, milliseconds(0)});
  bench.Run(125);
  OpenIt();
  Load(60);
  bench.Run(25);
  bench.clock.AdvanceSeconds(10 * GetParam().sets);  // the machine sleeps
  bench.dialogs.boxes.clear();
  browser.Grid_Click(RowOf('R', 2), kDec);
  const std::size_t stored = line.Waiting(kInet, 2);
  EXPECT_GE(stored, static_cast<std::size_t>(GetParam().sets));
  EXPECT_TRUE(browser.Commit("0"));
  EXPECT_EQ(bench.dialogs.boxes.size(), 1U);
  const std::size_t before = Sets().size();
  const std::size_t gone = stored + (GetParam().pauses ? 1 : 0);
  browser.CloseNow();
  bench.Run(180);
  const auto sets = Sets();
  ASSERT_GT(sets.size(), before + gone + 5);
  for (std::size_t row = 0; row < sets.size(); ++row) {
    const int set = static_cast<int>(row) + 1;
    const bool is_filled = row >= before && row < before + gone;
    EXPECT_EQ(sets[row],
              (std::vector<int>{set, is_filled ? static_cast<int>(before) : set, set, set, set}))
        << row;
  }
  ASSERT_EQ(bench.dialogs.announced.size(), gone == 0 ? 0U : 1U);
  if (gone > 0) {
    const std::string first = std::to_string(before + 1);
    const std::string rows =
        gone == 1 ? "row " + first : "rows " + first + " to " + std::to_string(before + gone);
    EXPECT_EQ(bench.dialogs.announced[0].Text,
              std::string(kFile) + ": " + rows +
                  ", input 2: cleared by hand; the value before it stands in its place");
  }
}

// Two tests that have one and the same input by mistake share its values; nobody knows which of
// them would have had those that are cleared.
TEST_P(ClearedSeries, AreMadeUpForInEachTestOfTheInput) {
  line.clearing_pauses = GetParam().pauses;
  now = {5, 1, 10, {}};
  const std::vector<std::string> files = {"M260305A.OVN", "M260312A.OVN"};
  for (std::size_t place = 0; place < files.size(); ++place) {
    UnitRecord unit = BenchProgram::Header(kInet, 1, 1, true);
    unit.UnitInterval = 1;
    bench.Install(place == 0 ? 5 : 12, files[place].c_str(), unit);
  }
  Start();
  bench.state.ActiveInet = kInet;
  line.Sample(kInet, 1, seconds(10), seconds(2), 0);
  bench.Run(125);
  OpenIt();
  Load(60);
  bench.Run(25);
  bench.clock.AdvanceSeconds(10 * GetParam().sets);
  bench.dialogs.announced.clear();
  browser.Grid_Click(RowOf('R', 1), kDec);
  const std::size_t stored = line.Waiting(kInet, 1);
  EXPECT_TRUE(browser.Commit("0"));
  browser.CloseNow();
  bench.Run(300);
  std::vector<int> values;
  for (const std::string& file : files) {
    const auto real = RealValues(file, stored);
    EXPECT_TRUE(std::is_sorted(real.begin(), real.end())) << file;
    values.insert(values.end(), real.begin(), real.end());
  }
  std::sort(values.begin(), values.end());
  EXPECT_EQ(std::adjacent_find(values.begin(), values.end()), values.end()) << "each value once";
  for (const Notice& notice : bench.dialogs.announced) {
    EXPECT_EQ(notice.Text.find("on the line"), std::string::npos) << notice.Text;
  }
}

// The program is killed before it is found out what is gone: nothing comes into the row of another
// set without the user being told.
TEST_P(ClearedSeries, AreNeverShiftedUntoldByAKillInBetween) {
  line.clearing_pauses = GetParam().pauses;
  Begin({9, 5, 10, milliseconds(0)});
  bench.Run(125);
  OpenIt();
  Load(60);
  bench.Run(25);
  bench.clock.AdvanceSeconds(10 * GetParam().sets);
  browser.Grid_Click(RowOf('R', 2), kDec);
  EXPECT_TRUE(browser.Commit("0"));
  browser.CloseNow();
  ASSERT_TRUE(bench.state.ColumnsInDoubt[9]);
  bench.files.OpenRecordingFile(9);  // what the next program finds
  EXPECT_TRUE(bench.state.ColumnsInDoubt[9]);
  EXPECT_EQ(bench.state.AskedInput[9], 2);
  bench.Run(600);
  const auto sets = Sets();
  ASSERT_GT(sets.size(), 30U);
  std::string told;
  for (const Notice& notice : bench.dialogs.announced) {
    told += notice.Text + "\n";
  }
  for (std::size_t row = 0; row < sets.size(); ++row) {
    const std::vector<int> others = {sets[row][0], sets[row][2], sets[row][3], sets[row][4]};
    EXPECT_EQ(others, std::vector<int>(4, sets[row][0])) << row;
    if (sets[row][1] != sets[row][0]) {
      EXPECT_NE(told.find("input 2: "), std::string::npos) << row << "\n" << told;
    }
  }
}

// The set in hand has its value of the input already: what is gone belongs to the sets behind it.
TEST_F(RecordedInputs, KeepTheirRowsIfTheyAreClearedInTheMiddleOfASet) {
  line.clearing_pauses = true;
  Begin({12, 3, 10, seconds(2)});
  bench.Run(125);
  OpenIt();
  Load(60);
  while (line.Waiting(kInet, 1) != 1 || line.Waiting(kInet, 2) != 0 ||
         bench.state.SampleSeen[12][1]) {
    bench.Run(0.05);
  }
  ASSERT_TRUE(bench.engine.ReadSample({12}, 1));
  ASSERT_TRUE(bench.state.SampleSeen[12][1]);
  const std::size_t before = Sets().size();
  browser.Grid_Click(RowOf('R', 1), kDec);
  EXPECT_TRUE(browser.Commit("0"));
  browser.CloseNow();
  bench.Run(120);
  const auto sets = Sets();
  ASSERT_GT(sets.size(), before + 5);
  for (std::size_t row = 0; row < sets.size(); ++row) {
    const int set = static_cast<int>(row) + 1;
    EXPECT_EQ(sets[row], (std::vector<int>{row == before + 1 ? set - 1 : set, set, set})) << row;
  }
  ASSERT_EQ(bench.dialogs.announced.size(), 1U);
  EXPECT_EQ(bench.dialogs.announced[0].Text,
            std::string(kFile) + ": row " + std::to_string(before + 2) +
                ", input 1: cleared by hand; the value before it stands in its place");
}

TEST_P(FailingReads, OfTheClearingAreMadeUpForToo) {
  Begin({9, 5, 10, milliseconds(0)});
  bench.Run(125);
  OpenIt();
  Load(60);
  bench.Run(25);
  bench.clock.AdvanceSeconds(30);
  const std::size_t stored = line.Waiting(kInet, 2);
  const std::size_t before = Sets().size();
  Fail("R22=0\r", GetParam(), 1);
  browser.Grid_Click(RowOf('R', 2), kDec);
  EXPECT_TRUE(browser.Commit("0"));
  browser.CloseNow();
  bench.Run(180);
  const auto sets = Sets();
  ASSERT_GT(sets.size(), before + stored + 5);
  const std::size_t lost = IsCarriedOut(GetParam()) ? stored : 0;
  for (std::size_t row = 0; row < sets.size(); ++row) {
    const int set = static_cast<int>(row) + 1;
    const bool is_filled = row >= before && row < before + lost;
    EXPECT_EQ(sets[row],
              (std::vector<int>{set, is_filled ? static_cast<int>(before) : set, set, set, set}))
        << row;
  }
}

TEST_F(RecordedInputs, AreNotWrittenWhileTheRecordingIsInDoubtOrFarBehind) {
  Begin({9, 5, 10, milliseconds(0)});
  bench.Run(65);
  OpenIt();
  Load(60);
  bench.clock.AdvanceSeconds(3000);
  browser.Grid_Click(RowOf('R', 2), kDec);
  bench.port.sent.clear();
  EXPECT_TRUE(browser.Commit("0"));
  EXPECT_EQ(bench.port.sent, (Texts{"R22?"}));
  EXPECT_EQ(bench.dialogs.boxes.back().Text,
            "The recording has to read first what waits in the instrument, and what is in "
            "doubt.\nNothing was written. Try again later.");
  EXPECT_TRUE(browser.IsEditing());
  bench.state.ColumnsInDoubt[9] = true;
  browser.Grid_Click(RowOf('S', 2), kDec);
  bench.port.sent.clear();
  EXPECT_TRUE(browser.Commit("5"));
  EXPECT_TRUE(bench.port.sent.empty());
  bench.state.ColumnsInDoubt[9] = false;
}

TEST_F(RecordedInputs, AreToldToBeUncertainAfterAnotherSamplingTime) {
  Begin({2, 3, 10, milliseconds(0)});
  bench.Run(65);
  OpenIt();
  Load(60);
  browser.Grid_Click(RowOf('S', 3), kDec);
  EXPECT_TRUE(browser.Commit("2"));
  EXPECT_EQ(Dec('S', 3), "2");
  ASSERT_FALSE(bench.dialogs.boxes.empty());
  EXPECT_NE(bench.dialogs.boxes.back().Text.find(
                "input 3: its sampling time was changed by hand; from here on the values may "
                "stand in a wrong row"),
            std::string::npos)
      << bench.dialogs.boxes.back().Text;
  EXPECT_TRUE(bench.state.Columns[2].IsUncertain[3]);
}

// That the rows of the input are no longer those of its set is one thing, however its values come
// from then on.
class AnotherSamplingTime : public RecordedInputs, public testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Seconds, AnotherSamplingTime, testing::Values(5, 9, 11, 20, 70));

TEST_P(AnotherSamplingTime, IsToldOnce) {
  Begin({12, 5, 10, milliseconds(0)});
  bench.Run(65);
  OpenIt();
  Load(60);
  bench.dialogs.boxes.clear();
  browser.Grid_Click(RowOf('S', 3), kDec);
  EXPECT_TRUE(browser.Commit(std::to_string(GetParam())));
  line.SampleEvery(kInet, 3, seconds(GetParam()));
  browser.CloseNow();
  const std::size_t before = Sets().size();
  bench.Run(900);
  EXPECT_GT(Sets().size(), before + 10);
  std::vector<std::string> told;
  for (const auto* texts : {&bench.dialogs.boxes, &bench.dialogs.announced}) {
    for (const Notice& notice : *texts) {
      if (notice.Text.starts_with(kFile)) {
        told.push_back(notice.Text);
      }
    }
  }
  EXPECT_EQ(told, std::vector<std::string>{
                      std::string(kFile) + ": row " + std::to_string(before + 1) +
                      ", input 3: its sampling time was changed by hand; from here on the values "
                      "may stand in a wrong row"});
}

TEST_F(RecordedInputs, DropTheOrderToSwitchAControllerThatTheUserHasSwitched) {
  Begin({2, 3, 10, milliseconds(0)});
  OpenIt();
  Load(60);
  line.silent = {kInet};
  bench.engine.Orders().Give(2, kInet, 4);
  EXPECT_TRUE(bench.engine.Orders().IsWaiting(kInet, 4));
  line.silent = {};
  browser.Grid_Click(RowOf('Z', 4), kDec);
  EXPECT_TRUE(browser.Commit("0"));
  EXPECT_FALSE(bench.engine.Orders().IsWaiting(kInet, 4));
}

}  // namespace
}  // namespace tavrel
