// The browsers of registers and ports on a real serial port, beside a virtual instrument.
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "tests/truth/comparison.h"
#include "tests/truth/told_texts.h"
#include "tests/wire/live_instrument.h"
#include "tests/wire/wire_program.h"

namespace tavrel {
namespace {

using Telegrams = std::vector<std::string>;

constexpr int kHex = 1;
constexpr int kDec = 2;

int RowOf(char letter, int index) {
  return (letter - 'G') * 16 + index;
}

// A program with a browser open over it; `speedup` is that of the instrument too.
class WireBrowser : public testing::Test {
 protected:
  void Begin(bool plugin, int speedup, const std::vector<std::string>& more = {}) {
    program = std::make_unique<WireProgram>(speedup);
    std::vector<std::string> options = {"--speedup", std::to_string(speedup), "--line-speed",
                                        "none", "--warm"};
    for (const char* oven :
         {"1.1=ramp:450:0.1", "1.2=ramp:400:0.1", "1.3=ramp:450:0.1", "1.4=ramp:350:0.1"}) {
      options.insert(options.end(), {"--oven", oven});
    }
    options.insert(options.end(), more.begin(), more.end());
    instrument = std::make_unique<LiveInstrument>(program->home, plugin, options);
    ASSERT_TRUE(instrument->IsUp());
    program->screens.built.insert(View::kTavWait);
    program->screens.on_show = [this](View) {
      program->wait_bar.Open();
      EXPECT_TRUE(RunUntil([this] { return !program->wait_bar.IsOpen(); }, 3));
    };
  }
  void Start(bool plugin, const UnitRecord& unit) {
    program->Start(plugin, kOvenFile, unit);
    program->state.ActiveInet = 1;
  }
  void Open(RegisterSheet& sheet) {
    turn.reset();
    sheet.Open();
    turn = std::make_unique<SteppedScreens::Turn>(program->stepped, sheet.Number(),
                                                  [&sheet] { sheet.Step(); });
  }
  bool RunUntil(const std::function<bool()>& is_over, int tens_of_seconds) {
    for (int turn_of_ten = 0; turn_of_ten < tens_of_seconds && !is_over(); ++turn_of_ten) {
      static_cast<void>(program->RunUntil(is_over));
    }
    return is_over();
  }
  bool Load(RegisterSheet& sheet) {
    return RunUntil([&] { return sheet.IsLoaded(); }, 8);
  }
  void TearDown() override { turn.reset(); }

  std::unique_ptr<WireProgram> program;
  std::unique_ptr<LiveInstrument> instrument;
  std::unique_ptr<SteppedScreens::Turn> turn;
};

class EachLine : public WireBrowser, public testing::WithParamInterface<bool> {
 protected:
  [[nodiscard]] static Telegrams OnEither(const Telegrams& direct, const Telegrams& plugin) {
    return GetParam() ? plugin : direct;
  }
  Telegrams SentBy(const std::function<void()>& action, std::size_t count) {
    instrument->Forget();
    action();
    return instrument->Telegrams(count);
  }
};

INSTANTIATE_TEST_SUITE_P(Kinds, EachLine, testing::Values(false, true),
                         [](const auto& each) { return each.param ? "plugin" : "direct"; });

TEST_P(EachLine, ReadsAndWritesRegistersAndGoesOnBehindAPulledPlug) {
  Begin(GetParam(), 20);
  UnitRecord unit = BenchProgram::Header(1, 1, 3, false);
  Start(GetParam(), unit);
  RegisterSheet& browser = program->variable_browser;
  instrument->Forget();
  Open(browser);
  ASSERT_TRUE(RunUntil([&] { return browser.RowsRead() >= 40; }, 2));
  Telegrams first = instrument->Telegrams(3);
  first.resize(3);
  EXPECT_EQ(first, OnEither({"G00?", "G01?", "G02?"}, {"\x1bnv0?", "nv1?", "nv2?"}));
  ASSERT_TRUE(instrument->Tell("unplug"));
  ASSERT_TRUE(RunUntil([&] { return !program->link.PortOpen; }, 1));
  const int read = browser.RowsRead();
  EXPECT_LT(read, 320);
  ASSERT_TRUE(instrument->Tell("plug"));
  ASSERT_TRUE(Load(browser));
  EXPECT_EQ(browser.TextOf(RowOf('T', 0), kDec), "10");
  EXPECT_EQ(browser.TextOf(RowOf('X', 1), kHex), "8000");
  EXPECT_EQ(browser.TextOf(RowOf('Z', 1), kDec), "3");
  browser.Grid_Click(RowOf('V', 15), kHex);
  EXPECT_EQ(SentBy([&] { EXPECT_TRUE(browser.Commit("fffe")); }, 2),
            OnEither({"V0F=FFFE\r", "V0F?"}, {"nvFF=FFFE\r", "nvFF?"}));
  EXPECT_EQ(browser.TextOf(RowOf('V', 15), kDec), "-2");
  browser.Grid_Click(RowOf('T', 0), kDec);
  EXPECT_TRUE(browser.Commit("1"));
  EXPECT_EQ(browser.TextOf(RowOf('T', 0), kDec), "10") << "it cannot be written";
  // Each way in which a write can fail; afterwards the cell tells what the instrument holds.
  int word = 1;
  for (const char* fault :
       {"refusal on", "lost-request on", "lost-reply on", "late-reply 185", "late-reply 300"}) {
    ASSERT_TRUE(instrument->Tell(std::string("fault 1 ") + fault + " times 1"));
    ++word;
    browser.Grid_Click(RowOf('V', 15), kDec);
    EXPECT_TRUE(browser.Commit(std::to_string(word)));
    EXPECT_FALSE(browser.IsEditing()) << fault;
    static_cast<void>(RunUntil([&] { return browser.Note().empty(); }, 1));
    const std::string holds = instrument->LastReply(GetParam() ? "nvFF?" : "V0F?");
    EXPECT_EQ(browser.TextOf(RowOf('V', 15), kHex), holds) << fault;
    EXPECT_EQ(holds == browser.TextOf(RowOf('V', 14), kHex), false) << fault;
  }
  browser.CloseNow();
}

TEST_P(EachLine, ReadsAndWritesPorts) {
  Begin(GetParam(), 20);
  UnitRecord unit = BenchProgram::Header(1, 1, 3, false);
  Start(GetParam(), unit);
  RegisterSheet& browser = program->port_browser;
  instrument->Forget();
  Open(browser);
  ASSERT_TRUE(Load(browser));
  const Telegrams all = instrument->Telegrams(129);
  EXPECT_EQ(Telegrams(all.begin(), all.begin() + 3),
            OnEither({"V00=0\r", "0@", "1@"}, {"\x1bnvF0=0\r", "no0?", "no1?"}));
  EXPECT_EQ(all.back(), GetParam() ? "no7F?" : "7F@");
  browser.Grid_Click(5, 2);
  EXPECT_EQ(SentBy([&] { EXPECT_TRUE(browser.Commit("1a5")); }, 2),
            OnEither({"05:1A5\r", "05@"}, {"no05=1A5\r", "no05?"}));
  EXPECT_EQ(browser.TextOf(5, 2), "A5") << "a port has eight bits";
  EXPECT_EQ(browser.TextOf(5, 3), " 1  0  1  0     0  1  0  1 ");
  ASSERT_TRUE(instrument->Tell("fault 1 lost-request on times 1"));
  browser.Grid_Click(6, 2);
  EXPECT_TRUE(browser.Commit("11"));
  // On a direct line nobody acknowledges: what was read back tells that nothing has arrived.
  EXPECT_EQ(browser.IsEditing(), GetParam());
  EXPECT_EQ(browser.TextOf(6, 2), "00");
  browser.CloseNow();
}

// The shortest interval: a set a second. Few inputs that are sampled together, and all of them one
// after another.
TEST_P(EachLine, CostsARecordingNothing) {
  const int inputs = GetParam() ? 15 : 4;
  std::vector<std::string> options = {"--fast", "1"};
  if (GetParam()) {
    options.insert(options.end(), {"--sampling-order", "descending", "--sampling-distance", "60"});
  }
  Begin(GetParam(), 1, options);
  UnitRecord unit = BenchProgram::Header(1, 1, inputs, false);
  unit.UnitFast = 1;
  unit.UnitInterval = 1;
  Start(GetParam(), unit);
  program->engine.StartRecording(1);
  ASSERT_EQ(program->state.Unit[1].UnitRecOn, 1);
  RegisterSheet& browser = program->variable_browser;
  Open(browser);
  int read_by_hand = 0;
  for (int pass = 0; pass < 4; ++pass) {
    ASSERT_TRUE(Load(browser));
    for (int input = 1; input <= inputs; ++input) {
      read_by_hand += browser.TextOf(RowOf('X', input), kDec) != "-32768" ? 1 : 0;
    }
    browser.CmdRefresh_Click();
  }
  browser.CloseNow();
  const int rows = program->state.SampleCount[1];
  ASSERT_TRUE(RunUntil([&] { return program->state.SampleCount[1] > rows + 2; }, 2));
  std::ifstream file(program->home.File("truth.txt"));
  const LineTruth truth = ReadLineTruth(file, {});
  const std::string bytes = program->home.Read("tavdat/" + std::string(kOvenFile));
  RecordedSlot slot{kOvenFile, 1, {}};
  for (int input = 1; input <= inputs; ++input) {
    slot.inputs.push_back(input);
  }
  const Findings findings = Compare(truth, slot, bytes.substr(sizeof(UnitRecord)));
  EXPECT_TRUE(findings.Agrees()) << testing::PrintToString(findings);
  EXPECT_EQ(findings.excused, 0);
  EXPECT_GT(findings.rows, 20);
  RecordProperty("rows", findings.rows);
  RecordProperty("values_read_by_the_browser", read_by_hand);
  program->messages.ShowKept();
  EXPECT_TRUE(program->dialogs.announced.empty()) << program->dialogs.announced.front().Text;
}

// Values that are lost on the line while the browser reads them are filled in and told.
TEST_P(EachLine, ShiftsNothingOnABadLine) {
  Begin(GetParam(), 10);
  UnitRecord unit = BenchProgram::Header(1, 1, 4, false);
  unit.UnitInterval = 1;
  Start(GetParam(), unit);
  program->engine.StartRecording(1);
  ASSERT_EQ(program->state.Unit[1].UnitRecOn, 1);
  ASSERT_TRUE(RunUntil([&] { return program->state.SampleCount[1] >= 6; }, 2));
  RegisterSheet& browser = program->variable_browser;
  Open(browser);
  ASSERT_TRUE(instrument->Tell("fault all lost-reply 0.04"));
  ASSERT_TRUE(Load(browser));
  ASSERT_TRUE(instrument->Tell("fault all none"));
  browser.CloseNow();
  const int rows = program->state.SampleCount[1];
  ASSERT_TRUE(RunUntil([&] { return program->state.SampleCount[1] > rows + 5; }, 3));
  program->messages.ShowKept();
  std::vector<std::string> told;
  for (const Notice& notice : program->dialogs.announced) {
    told.push_back(notice.Text);
  }
  std::ifstream file(program->home.File("truth.txt"));
  const LineTruth truth = ReadLineTruth(file, {});
  const std::string bytes = program->home.Read("tavdat/" + std::string(kOvenFile));
  const Findings findings = Compare(truth, {kOvenFile, 1, {1, 2, 3, 4}},
                                    bytes.substr(sizeof(UnitRecord)), ReadTold(told));
  EXPECT_TRUE(findings.Agrees()) << testing::PrintToString(findings);
}

// ---- A series that the user clears.

// The words of the truth by the instant at which they were sampled, and which of them were cleared.
struct SampledWords {
  std::map<int, std::map<std::string, int>> words;  // by input and time
  std::vector<std::string> instants;                // of input 1
};

SampledWords ReadSampled(const std::string& path) {
  SampledWords sampled;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    std::istringstream fields(line);
    std::string kind;
    std::string time;
    int inet = 0;
    int input = 0;
    int number = 0;
    int word = 0;
    fields >> kind >> time >> inet >> input >> number >> word;
    if (kind == "sample") {
      sampled.words[input][time] = word;
      if (input == 1) {
        sampled.instants.push_back(time);
      }
    } else if (kind == "clear" && input == 1) {
      sampled.instants.clear();
    }
  }
  return sampled;
}

TEST_P(EachLine, KeepsTheRowsOfASeriesThatIsCleared) {
  Begin(GetParam(), 10);
  UnitRecord unit = BenchProgram::Header(1, 1, 4, false);
  unit.UnitInterval = 1;
  Start(GetParam(), unit);
  program->engine.StartRecording(1);
  ASSERT_TRUE(RunUntil([&] { return program->state.SampleCount[1] >= 5; }, 2));
  RegisterSheet& browser = program->variable_browser;
  Open(browser);
  ASSERT_TRUE(Load(browser));
  browser.Grid_Click(RowOf('R', 3), kDec);
  EXPECT_TRUE(browser.Commit("0"));
  EXPECT_EQ(program->dialogs.boxes.size(), 1U);
  browser.CloseNow();
  const int rows = program->state.SampleCount[1];
  ASSERT_TRUE(RunUntil([&] { return program->state.SampleCount[1] > rows + 8; }, 4));
  program->messages.ShowKept();
  std::vector<std::string> told;
  for (const Notice& notice : program->dialogs.announced) {
    told.push_back(notice.Text);
  }
  const Told doubts = ReadTold(told);
  const SampledWords sampled = ReadSampled(program->home.File("truth.txt"));
  const std::string bytes = program->home.Read("tavdat/" + std::string(kOvenFile));
  std::vector<std::int16_t> words((bytes.size() - sizeof(UnitRecord)) / 2);
  std::memcpy(words.data(), bytes.data() + sizeof(UnitRecord), words.size() * 2);
  int filled = 0;
  for (std::size_t row = 1; (row + 1) * 4 <= words.size(); ++row) {
    const std::string& instant = sampled.instants.at(row - 1);
    for (int input = 1; input <= 4; ++input) {
      const auto& column = sampled.words.at(input);
      const bool is_told =
          std::any_of(doubts.doubts.begin(), doubts.doubts.end(), [&](const ToldDoubt& doubt) {
            return doubt.inputs == std::vector<int>{input} &&
                   doubt.kind == ToldDoubt::Kind::kFilled &&
                   static_cast<int>(row) >= doubt.first_row &&
                   static_cast<int>(row) <= doubt.last_row;
          });
      filled += is_told ? 1 : 0;
      const auto word = column.find(instant);
      const bool is_right = word != column.end() &&
                            word->second == words.at(row * 4 + static_cast<std::size_t>(input) - 1);
      EXPECT_TRUE(is_right || is_told) << "row " << row << ", input " << input;
    }
  }
  EXPECT_GE(filled, 1) << "the series pauses for a set at least";
  EXPECT_LE(filled, 4);
  EXPECT_EQ(doubts.doubts.size(), 1U) << testing::PrintToString(told);
}

}  // namespace
}  // namespace tavrel
