#include "service/terminal.h"

#include <gtest/gtest.h>

#include "files/journal_text.h"
#include "link/register_access.h"
#include "tests/service/service_bench.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;

class ATerminal : public ServiceBench {
 protected:
  using Texts = std::vector<std::string>;

  void OpenTerminal() {
    Start();
    pause.emplace(bench.cycle);
    bench.port.answer = [this](const std::string& text) {
      return answers ? bench.line.Answer(text) : std::string();
    };
    terminal.Open();
    bench.port.sent.clear();
  }
  void Type(std::string_view keys) {
    for (const char key : keys) {
      terminal.KeyPress(key);
    }
  }
  void Come(const std::string& text) {
    bench.port.Arrive({}, text);
    terminal.Poll();
  }
  void Polls(milliseconds time) {
    for (const auto end = bench.clock.Elapsed() + time; bench.clock.Elapsed() < end;
         bench.clock.Advance(milliseconds(50))) {
      terminal.Poll();
    }
  }
  const Texts& Sent() const { return bench.port.sent; }

  Terminal& terminal = bench.terminal;
  std::optional<MainCycle::Pause> pause;
  bool answers = false;
};

TEST_F(ATerminal, OpensWithItsEchoAndTheNameOfThePort) {
  OpenTerminal();
  EXPECT_EQ(bench.state.ActiveView, View::kAllTerm);
  EXPECT_TRUE(terminal.Chk_Echo());
  EXPECT_EQ(terminal.Label1(), "COM1: 4800,n,8,2");
  EXPECT_EQ(terminal.Term(), "");
  terminal.Quit();
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(ATerminal, SendsALineWithEachOfItsLastCharacters) {
  for (const char* line : {"Y21?", "W21=3E8\r", "8000<", "1F@", "abc[", "012Z", "01z"}) {
    OpenTerminal();
    Type(std::string_view(line).substr(0, std::string_view(line).size() - 1));
    EXPECT_TRUE(Sent().empty()) << line;
    Type(std::string_view(line).substr(std::string_view(line).size() - 1));
    EXPECT_EQ(Sent(), Texts{line});
    terminal.Quit();
  }
}

TEST_F(ATerminal, SendsAnEscapeAloneAndShowsItAsTheEndOfALine) {
  OpenTerminal();
  Type(
      "Y2\x1B"
      "1?");
  EXPECT_EQ(Sent(), (Texts{"\x1B", "1?"}));
  EXPECT_EQ(terminal.Term(), "Y2\r\n1?");
}

TEST_F(ATerminal, WipesOutWhatWasTypedWrong) {
  OpenTerminal();
  Type("\bY3\b21?");
  EXPECT_EQ(Sent(), Texts{"Y21?"});
  EXPECT_EQ(terminal.Term(), "Y21?");
}

TEST_F(ATerminal, ShowsWhatIsTypedOnlyWithEcho) {
  OpenTerminal();
  terminal.Chk_Echo_Click(false);
  Type("Y21?");
  EXPECT_EQ(terminal.Term(), "");
  EXPECT_EQ(Sent(), Texts{"Y21?"});
  terminal.Chk_Echo_Click(true);
  Type("A\r");
  EXPECT_EQ(terminal.Term(), "A\r\n");
}

TEST_F(ATerminal, ShowsWhatComes) {
  OpenTerminal();
  Come("00FA\r");
  EXPECT_EQ(terminal.Term(), "00FA\r\n");
  Come("A\nB\r\nC");
  EXPECT_EQ(terminal.Term(), "00FA\r\nAB\r\nC") << "a line feed is only behind each return";
}

TEST_F(ATerminal, TakesABackspaceFromWhatStandsBeforeIt) {
  OpenTerminal();
  Come("AB\bC");
  EXPECT_EQ(terminal.Term(), "AC");
  Come("\b\bX");
  EXPECT_EQ(terminal.Term(), "X") << "at the very start it takes from the text before";
  Come("\b\b\b");
  EXPECT_EQ(terminal.Term(), "");
  Come("A\r\bB\n\bC");
  EXPECT_EQ(terminal.Term(), "ABC") << "before returns and line feeds are looked at";
}

TEST_F(ATerminal, DropsTheFirst4096CharactersOnceItHolds16384) {
  OpenTerminal();
  Come(std::string(16383, 'a'));
  Come("b");
  EXPECT_EQ(terminal.Term().size(), 16384U);
  Come("c");
  EXPECT_EQ(terminal.Term(), std::string(16383 - 4096, 'a') + "bc");
}

TEST_F(ATerminal, SendsAPastedTextLineByLine) {
  OpenTerminal();
  answers = true;
  bench.line.registers[{3, 'Y', 1}] = 250;
  terminal.Paste("W21=3E8\nY21?Y22?\r\nZ");
  EXPECT_EQ(Sent(), Texts{"W21=3E8\r"}) << "two commands at once would spoil each other's answer";
  Polls(milliseconds(500));
  EXPECT_EQ(Sent(), (Texts{"W21=3E8\r", "Y21?", "Y22?", "\r", "Z"}));
}

TEST_F(ATerminal, GoesOnWithAPastedTextWhereNothingAnswers) {
  OpenTerminal();
  terminal.Paste("Y21?Y22?Y23?");
  Polls(milliseconds(200));
  EXPECT_EQ(Sent().size(), 1U);
  Polls(milliseconds(600));
  EXPECT_EQ(Sent(), (Texts{"Y21?", "Y22?", "Y23?"}));
}

TEST_F(ATerminal, SendsNothingToASimulatedInstrument) {
  bench.state.Settings.CommPort = "----";
  OpenTerminal();
  Type("Y21?\r\x1B");
  terminal.Paste("X21?");
  Polls(milliseconds(500));
  EXPECT_TRUE(Sent().empty());
  EXPECT_TRUE(bench.dialogs.boxes.empty());
  EXPECT_EQ(terminal.Label1(), "(simulated)");
}

TEST_F(ATerminal, OpensALostPortAgain) {
  OpenTerminal();
  bench.port.Vanish();
  bench.port.open_error = 2;
  Polls(milliseconds(500));
  EXPECT_EQ(terminal.Label1(), "COM1: (lost)");
  const int tried = bench.port.reopened;
  bench.port.open_error = 0;
  Polls(milliseconds(9000));
  EXPECT_EQ(bench.port.reopened, tried);
  Polls(milliseconds(1500));
  EXPECT_EQ(terminal.Label1(), "COM1: 4800,n,8,2");
  Type("Y21?");
  EXPECT_EQ(Sent(), Texts{"Y21?"});
}

// Behind the terminal.
TEST_F(ATerminal, LeavesNoAnswerToAnExchange) {
  OpenTerminal();
  Type("Y21?");
  bench.port.Arrive(milliseconds(200), "0BAD\r");
  terminal.Quit();
  EXPECT_TRUE(bench.link.IsSettled());
  bench.port.answer = [this](const std::string& text) { return bench.line.Answer(text); };
  bench.line.registers[{3, 'Y', 2}] = 77;
  const Reading reading = Read(bench.link, Register{3, "Y", 2});
  EXPECT_TRUE(reading.IsGood());
  EXPECT_EQ(reading.word, 77);
}

TEST_F(ATerminal, WaitsForATextWithoutAnEndASecondAtMost) {
  OpenTerminal();
  Type("Y21?");
  for (int piece = 0; piece < 200; ++piece) {
    bench.port.Arrive(milliseconds(20 * piece), "0");
  }
  const auto before = bench.clock.Elapsed();
  terminal.Quit();
  EXPECT_LE(bench.clock.Elapsed() - before, milliseconds(1050));
}

TEST_F(ATerminal, EndsACommandThatWasOnlyBegun) {
  OpenTerminal();
  Type("Z");
  terminal.Quit();
  EXPECT_EQ(Sent(), (Texts{"Z", "\x1B"}));
  OpenTerminal();
  Type("Z21?");
  terminal.Quit();
  EXPECT_EQ(Sent(), (Texts{"Z", "21?"}));
}

// A recording of inputs 1 and 2 of instrument 3.
class ATerminalBesideARecording : public ATerminal {
 protected:
  void OpenBeside(int slot = 12) {
    bench.Install(slot, "M260301A.OVN", BenchProgram::Header(3, 1, 2, true), {1, 2, 1, 2});
    OpenTerminal();
    bench.state.Unit[slot].SetApparatusName("Oven");
    bench.dialogs.boxes.clear();
  }
};

TEST_F(ATerminalBesideARecording, AsksBeforeACommandThatTakesItsSamples) {
  OpenBeside();
  bench.dialogs.ok = false;
  for (const char* line : {"X21?", "x22?", "n2p11?", "R21=0\r", "S22=1\r", "n2vB2=0\r"}) {
    Type(line);
    ASSERT_EQ(bench.dialogs.boxes.size(), 1U) << line;
    EXPECT_NE(bench.dialogs.boxes[0].Text.find("row 12:  Oven,  input "), std::string::npos);
    EXPECT_TRUE(bench.dialogs.boxes[0].PresetIsNo);
    EXPECT_TRUE(Sent().empty()) << line;
    EXPECT_FALSE(bench.state.ColumnsInDoubt[12]);
    bench.dialogs.boxes.clear();
  }
  for (const char* line : {"X23?", "X11?", "R21?", "Y21?", "n2p13?"}) {
    Type(line);
    Polls(milliseconds(400));
    EXPECT_TRUE(bench.dialogs.boxes.empty()) << line;
  }
}

TEST_F(ATerminalBesideARecording, AsksAboutACommandThatWasSentInPieces) {
  OpenBeside();
  bench.dialogs.ok = false;
  Type("ZX21?");
  EXPECT_EQ(bench.dialogs.boxes.size(), 1U);
  Type("R21=Z0\r");
  EXPECT_EQ(bench.dialogs.boxes.size(), 2U);
  EXPECT_EQ(Sent(), (Texts{"Z", "R21=Z"}));
}

TEST_F(ATerminalBesideARecording, MakesThePumpCompareTheColumnsAfterwards) {
  OpenBeside();
  bench.dialogs.ok = true;
  Type("X22?");
  EXPECT_EQ(Sent(), Texts{"X22?"});
  EXPECT_TRUE(bench.state.ColumnsInDoubt[12]);
  EXPECT_EQ(bench.state.AskedInput[12], 2);
}

// As those of the other screens.
TEST_F(ATerminalBesideARecording, WritesIntoTheJournalWhatItDoesToTheController) {
  OpenBeside();
  answers = true;
  const auto lines = [this] {
    std::vector<JournalEntry> found;
    for (JournalEntry& each : ReadJournal(bench.home.Read("tavdat/journal/M260301A.OVN")).Entries) {
      if (each.Kind == "controller") {
        found.push_back(std::move(each));
      }
    }
    return found;
  };
  const std::size_t before = lines().size();
  Type("W21=3E8\rY21?");
  Polls(milliseconds(1000));
  answers = false;
  Type("Z21=1\r");
  Come(".");
  ASSERT_EQ(lines().size(), before + 2);
  const JournalEntry setpoint = lines().at(before);
  EXPECT_EQ(setpoint.Text("what"), "setpoint");
  EXPECT_EQ(setpoint.Text("by"), "user");
  EXPECT_EQ(setpoint.Number("new"), 1000);
  EXPECT_EQ(setpoint.Fields.Find("acknowledged")->Truth(), true);
  EXPECT_EQ(lines().back().Text("what"), "status") << "sent in two pieces";
  EXPECT_EQ(lines().back().Fields.Find("acknowledged")->Truth(), true);
  Type("W21=7D0\r");
  EXPECT_EQ(lines().size(), before + 2) << "not answered yet";
  Polls(milliseconds(400));
  ASSERT_EQ(lines().size(), before + 3);
  EXPECT_EQ(lines().back().Number("old"), 1000);
  EXPECT_EQ(lines().back().Fields.Find("acknowledged")->Truth(), false);
  Type("W21=1\r");
  Come("?");
  EXPECT_EQ(lines().size(), before + 4) << "refused";
  Type("W21=2\r");
  terminal.Quit();
  EXPECT_EQ(lines().size(), before + 5) << "closed before an answer came";
  EXPECT_TRUE(lines().back().Fields.Find("old")->IsNull());
  Type("W22=1\rW11=1\rR23=0\r");
  EXPECT_EQ(lines().size(), before + 5) << "not of this test";
}

TEST_F(ATerminalBesideARecording, SaysThatTheCycleWaitsAndForHowLongItMay) {
  OpenBeside();
  EXPECT_EQ(terminal.lbl_State(),
            "The measuring cycle leaves the line alone meanwhile.\n"
            "recordings wait in the instruments, at least for:  24 h");
  bench.state.ProgRunning[12] = true;
  EXPECT_EQ(terminal.lbl_State(),
            "The measuring cycle leaves the line alone meanwhile.\n"
            "recordings wait in the instruments, at least for:  24 h\n"
            "controller programs that wait:  row 12:  Oven");
  bench.state.Settings.HelpLang = "German";
  EXPECT_EQ(terminal.lbl_State().substr(0, 15), "Der Messzyklus ");
}

// What the instrument has stored meanwhile is read when the terminal has closed.
TEST_F(ATerminalBesideARecording, LosesNoSet) {
  OpenBeside();
  answers = true;
  bench.Run(5);
  for (std::int16_t set = 1; set <= 12; ++set) {
    for (const int input : {1, 2}) {
      bench.line.buffers[{3, input}].push_back(static_cast<std::int16_t>(set * 10 + input));
    }
    Type("Y21?");
    Polls(milliseconds(10'000));
  }
  EXPECT_EQ(bench.line.buffers[(std::pair{3, 1})].size(), 12U) << "the cycle leaves the line alone";
  terminal.Quit();
  pause.reset();
  bench.Run(30);
  std::vector<std::int16_t> expected = {1, 2, 1, 2};
  for (std::int16_t set = 1; set <= 12; ++set) {
    expected.push_back(static_cast<std::int16_t>(set * 10 + 1));
    expected.push_back(static_cast<std::int16_t>(set * 10 + 2));
  }
  EXPECT_EQ(bench.Samples("M260301A.OVN"), expected);
  EXPECT_TRUE(bench.dialogs.announced.empty());
}

}  // namespace
}  // namespace tavrel
