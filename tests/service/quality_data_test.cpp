#include "service/quality_data.h"

#include <gtest/gtest.h>

#include "tests/service/failed_exchange.h"
#include "tests/service/service_line.h"

namespace tavrel {
namespace {

constexpr std::array<int, 10> kFactory = {1, 4003, 103, 1203, 24, 7572, 406, 25, 6566, 0};

class TheQualityData : public ServiceLine {
 protected:
  void StartOn(int com_mode, int inet) {
    bench.regional.date.clear();
    bench.regional.form = "dd.MM.yyyy";
    ServiceLine::StartOn(com_mode, inet);
    Hold(inet, kFactory);
  }
  void Hold(int inet, const std::array<int, 10>& words) {
    for (std::size_t place = 0; place < words.size(); ++place) {
      Word(inet, 'Z', 6 + static_cast<int>(place)) = static_cast<std::int16_t>(words.at(place));
    }
  }
  [[nodiscard]] std::array<int, 10> Held(int inet) {
    std::array<int, 10> words{};
    for (std::size_t place = 0; place < words.size(); ++place) {
      words.at(place) = Word(inet, 'Z', 6 + static_cast<int>(place));
    }
    return words;
  }
  void OpenAndRead() {
    Open(*screen);
    bench.Run(1);
    ASSERT_TRUE(Now().IsEditable);
    bench.port.sent.clear();
  }
  void FirstSetup() {
    Hold(1, {});
    OpenAndRead();
  }
  [[nodiscard]] const QualityValues& Now() const { return screen->Values(); }
  [[nodiscard]] std::string Shown() const {
    const QualityValues& now = Now();
    return now.Text_Serial + " " + now.Text_Unit + " | " + now.setup.Text_Date + " " +
           now.setup.Text_Name + " | " + now.check.Text_Date + " " + now.check.Text_Name;
  }
  [[nodiscard]] Pointer LastPointer() const { return bench.events.pointers.back(); }
  // What the button tells, with the name of the box at fault.
  [[nodiscard]] std::string Refused() {
    bench.dialogs.boxes.clear();
    const std::string control = screen->Cmd_Update_Click();
    if (bench.dialogs.boxes.empty()) {
      return control;
    }
    const Notice& box = bench.dialogs.boxes.back();
    EXPECT_EQ(box.Title, "check");
    EXPECT_EQ(box.Icon, BoxIcon::kInformation);
    EXPECT_EQ(bench.dialogs.boxes.size(), 1U);
    return control + ": " + box.Text;
  }

  QualityData* screen = &bench.quality_data;
};

TEST_F(TheQualityData, ReadsTenRegistersOfADirectLineAndShowsThemAtOnce) {
  StartOn(0, 3);
  Open(*screen);
  EXPECT_EQ(screen->Caption(), " Tavrel-3:  QS");
  EXPECT_EQ(bench.state.ActiveView, View::kAllQs);
  EXPECT_FALSE(Now().Cmd_Update);
  EXPECT_FALSE(Now().IsEditable);
  EXPECT_EQ(Pulses(1), Texts{"G20=0\r"});
  EXPECT_EQ(LastPointer(), Pointer::kHourglass);
  EXPECT_EQ(Pulses(10), (Texts{"Z26?", "Z27?", "Z28?", "Z29?", "Z2A?", "Z2B?", "Z2C?", "Z2D?",
                               "Z2E?", "Z2F?"}));
  EXPECT_EQ(Shown(), "  |   |  ") << "nothing before the last";
  bench.Run(0.05);
  EXPECT_EQ(Shown(), "14003 103 | 12.03.2024 KH | 04.06.2025 AB");
  EXPECT_TRUE(Now().IsCheckShown);
  EXPECT_TRUE(Now().IsEditable);
  EXPECT_FALSE(Now().Cmd_Update);
  EXPECT_FALSE(Now().IsUpdateNext);
  EXPECT_EQ(LastPointer(), Pointer::kNormal);
  EXPECT_TRUE(Pulses(1).empty()) << "all is read";
}

TEST_F(TheQualityData, ClearsAPluginLineFirst) {
  StartOn(1, 6);
  Open(*screen);
  EXPECT_EQ(Pulses(11), (Texts{kEsc, "n5v0=0\r", "n5p36?", "n5p37?", "n5p38?", "n5p39?", "n5p3A?",
                               "n5p3B?", "n5p3C?", "n5p3D?", "n5p3E?", "n5p3F?"}));
}

TEST_F(TheQualityData, OffersTheFirstSetupOfAnInstrumentThatHasNone) {
  const std::array<std::array<int, 10>, 3> empty = {
      {{}, {-1, -1, -1, -1, -1, -1, -1, -1, -1, -1}, {0, 0, 7, 1203, 24, 7572, 0, 0, 0, 9}}};
  for (const std::array<int, 10>& words : empty) {
    StartOn(0, 1);
    Hold(1, words);
    OpenAndRead();
    EXPECT_EQ(Shown(), "14001  | 14.03.2026  | - ");
    EXPECT_FALSE(Now().IsCheckShown);
    EXPECT_TRUE(Now().Cmd_Update);
    EXPECT_TRUE(Now().IsUpdateNext);
    screen->Quit();
  }
}

TEST_F(TheQualityData, TakesTheLowestSerialNumberForThatOfAnInstrumentInUse) {
  StartOn(0, 1);
  Hold(1, {0, 1, 7, 1203, 24, 7572, 406, 25, 6566, 0});
  OpenAndRead();
  EXPECT_EQ(Shown(), "1 7 | 12.03.2024 KH | 04.06.2025 AB");
  EXPECT_TRUE(Now().IsCheckShown);
  EXPECT_FALSE(Now().Cmd_Update);
}

TEST_F(TheQualityData, WritesTheFirstSetupAndReadsItAgain) {
  StartOn(0, 1);
  FirstSetup();
  screen->Text_Unit_Change("7");
  screen->Text_Name_Change(1, "ab");
  EXPECT_EQ(Refused(), "");
  EXPECT_EQ(LastPointer(), Pointer::kHourglass);
  EXPECT_FALSE(Now().IsEditable);
  EXPECT_FALSE(Now().Cmd_Update);
  EXPECT_EQ(Pulses(10), (Texts{"Z06=1\r", "Z07=FA1\r", "Z08=7\r", "Z09=57B\r", "Z0A=1A\r",
                               "Z0B=19A6\r", "Z0C=0\r", "Z0D=0\r", "Z0E=CA0\r", "Z0F=0\r"}));
  EXPECT_EQ(Pulses(2), (Texts{"G00=0\r", "Z06?"}));
  EXPECT_EQ(LastPointer(), Pointer::kHourglass);
  bench.Run(1);
  EXPECT_EQ(Shown(), "14001 7 | 14.03.2026 AB | 14.03.2026 AB") << "the check is preset";
  EXPECT_TRUE(Now().IsCheckShown);
  EXPECT_FALSE(Now().Cmd_Update) << "the preset alone is no change";
  EXPECT_EQ(LastPointer(), Pointer::kNormal);
}

TEST_F(TheQualityData, WritesWhatWasTyped) {
  StartOn(1, 2);
  OpenAndRead();
  screen->Text_Serial_Change("999999");
  EXPECT_TRUE(Now().Cmd_Update);
  screen->Text_Unit_Change("9999");
  screen->Text_Date_Change(1, "31.12.1999");
  screen->Text_Name_Change(1, " x");
  screen->Text_Date_Change(2, "1.1.79");
  screen->Text_Name_Change(2, "z9");
  EXPECT_EQ(Refused(), "");
  Pulses(10);
  EXPECT_EQ(Held(2), (std::array<int, 10>{99, 9999, 9999, 3112, 99, 8832, 101, 79, 9057, 0}));
  bench.Run(1);
  EXPECT_EQ(Shown(), "999999 9999 | 31.12.1999  | 01.01.2079 Z9") << "one letter reads as empty";
}

TEST_F(TheQualityData, CutsWhatIsTooLongForItsPlace) {
  StartOn(0, 1);
  OpenAndRead();
  screen->Text_Serial_Change("1234567");
  screen->Text_Unit_Change("12345");
  screen->Text_Name_Change(1, "ÄÖÜ");
  EXPECT_EQ(Now().Text_Serial, "123456");
  EXPECT_EQ(Now().Text_Unit, "1234");
  EXPECT_EQ(Now().setup.Text_Name, "ÄÖ");
}

TEST_F(TheQualityData, TakesNothingThatIsTypedBeforeAllIsRead) {
  StartOn(0, 1);
  Open(*screen);
  Pulses(5);
  screen->Text_Serial_Change("5");
  EXPECT_FALSE(Now().Cmd_Update);
  EXPECT_EQ(Refused(), "");
  screen->Cmd_Today_Click();
  bench.Run(1);
  EXPECT_EQ(Shown(), "14003 103 | 12.03.2024 KH | 04.06.2025 AB");
  EXPECT_EQ(Held(1), kFactory);
}

TEST_F(TheQualityData, RefusesTheFirstFaultInTheOrderOfTheBoxes) {
  StartOn(0, 1);
  OpenAndRead();
  screen->Text_Serial_Change("");
  screen->Text_Unit_Change("x");
  screen->Text_Name_Change(1, "  ");
  screen->Text_Date_Change(1, "-");
  screen->Text_Name_Change(2, "");
  screen->Text_Date_Change(2, "30.02.24");
  EXPECT_EQ(Refused(), "Text_Serial: serial no  ...  ?  ");
  screen->Text_Serial_Change("1");
  EXPECT_EQ(Refused(), "Text_Unit: unit  ...  ?       ");
  screen->Text_Unit_Change("1");
  EXPECT_EQ(Refused(), "Text_Name_1: first setup by  ...  ?");
  screen->Text_Name_Change(1, "A");
  EXPECT_EQ(Refused(), "Text_Date_1: date of setup  ...  ?");
  screen->Text_Date_Change(1, "01.02.24");
  EXPECT_EQ(Refused(), "Text_Name_2: checked by  ...  ?");
  screen->Text_Name_Change(2, "B");
  EXPECT_EQ(Refused(), "Text_Date_2: date of calibration  ...  ?");
  EXPECT_EQ(Held(1), kFactory) << "nothing is written";
  EXPECT_TRUE(bench.port.sent.empty());
  screen->Text_Date_Change(2, "29.02.24");
  EXPECT_EQ(Refused(), "");
  Pulses(10);
  EXPECT_EQ(Held(1), (std::array<int, 10>{0, 1, 1, 102, 24, 6532, 2902, 24, 6632, 0}));
}

TEST_F(TheQualityData, RefusesNumbersThatTheInstrumentCannotKeep) {
  StartOn(0, 1);
  OpenAndRead();
  for (const char* text : {"0", "-5", "0.4", "1e9", "nan", "abc", ",", "1e6"}) {
    screen->Text_Serial_Change(text);
    EXPECT_EQ(Refused(), "Text_Serial: serial no  ...  ?  ") << text;
  }
  screen->Text_Serial_Change("14003");
  for (const char* text : {"0", "-1", "9e9", "1e4", ""}) {
    screen->Text_Unit_Change(text);
    EXPECT_EQ(Refused(), "Text_Unit: unit  ...  ?       ") << text;
  }
  screen->Text_Unit_Change("12,0");
  EXPECT_EQ(Refused(), "") << "a comma is a point";
  Pulses(10);
  EXPECT_EQ(Word(1, 'Z', 8), 12);
}

TEST_F(TheQualityData, RefusesANameOfOtherLettersAndSaysWhy) {
  StartOn(0, 1);
  OpenAndRead();
  for (const char* name : {"Ä", "äb", "é", "日本", "a}", "\xc3"}) {
    screen->Text_Name_Change(1, name);
    const std::string told = Refused();
    EXPECT_EQ(told.substr(0, told.find('\n')), "Text_Name_1: first setup by  ...  ?") << name;
    EXPECT_NE(told.find("Only letters A to Z"), std::string::npos) << name;
  }
  EXPECT_EQ(Held(1), kFactory);
}

TEST_F(TheQualityData, KeepsADateThatWasNotTouchedInWhateverFiguresItIsShown) {
  StartOn(0, 1);
  bench.regional.date = "١٢ مارس";
  OpenAndRead();
  EXPECT_EQ(Now().setup.Text_Date, "١٢ مارس");
  screen->Text_Unit_Change("104");
  EXPECT_EQ(Refused(), "");
  Pulses(10);
  std::array<int, 10> words = kFactory;
  words[2] = 104;
  EXPECT_EQ(Held(1), words);
}

TEST_F(TheQualityData, ReadsDatesInTheRegionsFormFirst) {
  StartOn(0, 1);
  bench.regional.form = "M/d/yy";
  OpenAndRead();
  EXPECT_EQ(Now().setup.Text_Date, "3/12/24");
  screen->Text_Date_Change(1, "2/1/26");
  screen->Text_Date_Change(2, "2.1.26");
  EXPECT_EQ(Refused(), "");
  Pulses(10);
  EXPECT_EQ(Word(1, 'Z', 9), 102) << "1 February";
  EXPECT_EQ(Word(1, 'Z', 12), 201) << "2 January";
}

TEST_F(TheQualityData, TakesTodayForTheCheck) {
  StartOn(0, 1);
  OpenAndRead();
  screen->Cmd_Today_Click();
  EXPECT_EQ(Now().check.Text_Date, "14.03.2026");
  EXPECT_EQ(Now().setup.Text_Date, "12.03.2024");
  EXPECT_TRUE(Now().Cmd_Update);
  EXPECT_EQ(Refused(), "");
  Pulses(10);
  EXPECT_EQ(Word(1, 'Z', 12), 1403);
  EXPECT_EQ(Word(1, 'Z', 13), 26);
}

TEST_F(TheQualityData, ShowsWhatItHoldsAlsoWhereThatMakesNoSense) {
  StartOn(0, 1);
  Hold(1, {32767, 32767, -1, 3102, -1, 1, 9999, 9999, -32768, 5});
  OpenAndRead();
  EXPECT_EQ(Shown(), "327702767 -1 | -  | - ");
  screen->Text_Name_Change(1, "A");
  EXPECT_EQ(Refused(), "Text_Serial: serial no  ...  ?  ");
  EXPECT_EQ(Now().Text_Serial, "327702767");
}

TEST_F(TheQualityData, SaysHowFarItIs) {
  StartOn(0, 1);
  bench.state.Settings.HelpLang = "German";
  Open(*screen);
  Pulses(4);
  EXPECT_EQ(Now().lbl_State, "lesen ...  3 / 10");
  bench.Run(1);
  EXPECT_EQ(Now().lbl_State, "");
  bench.state.Settings.HelpLang = "English";
  screen->Text_Unit_Change("1");
  screen->Cmd_Update_Click();
  Pulses(4);
  EXPECT_EQ(Now().lbl_State, "writing ...  4 / 10");
  bench.Run(2);
  EXPECT_EQ(Now().lbl_State, "");
}

class TheQualityDataAfterAFailure : public TheQualityData,
                                    public testing::WithParamInterface<FailedExchange> {};

// Exchanges 0 to 10 read, 11 to 20 write, 21 to 31 read again.
TEST_P(TheQualityDataAfterAFailure, RepeatsTheStepAndLosesNothing) {
  StartOn(GetParam().com_mode, 5);
  const bool is_first_reading = GetParam().exchange < 11;
  Open(*screen);
  if (is_first_reading) {
    FailExchange(GetParam().exchange, GetParam().failure);
  }
  bench.Run(1.5);
  EXPECT_EQ(Shown(), "14003 103 | 12.03.2024 KH | 04.06.2025 AB");
  if (!is_first_reading) {
    FailExchange(GetParam().exchange - 11, GetParam().failure);
  }
  screen->Text_Serial_Change("20007");
  screen->Text_Name_Change(2, "xy");
  EXPECT_EQ(Refused(), "");
  bench.Run(3);
  EXPECT_EQ(Held(5), (std::array<int, 10>{2, 7, 103, 1203, 24, 7572, 406, 25, 8889, 0}));
  EXPECT_EQ(Shown(), "20007 103 | 12.03.2024 KH | 04.06.2025 XY");
  EXPECT_FALSE(screen->ComIcon());
}

INSTANTIATE_TEST_SUITE_P(EachExchange, TheQualityDataAfterAFailure,
                         testing::ValuesIn(EachExchange({0, 2}, 32)), NameOfExchange);

// The reply to the first question for a register comes when the next register is asked for.
TEST_F(TheQualityData, DoesNotTakeALateReplyForTheNextRegister) {
  StartOn(0, 1);
  Open(*screen);
  Pulses(1);
  replies = {""};
  Pulses(1);
  bench.port.Arrive(std::chrono::milliseconds(200), "0001\r");
  bench.Run(2);
  EXPECT_EQ(Shown(), "14003 103 | 12.03.2024 KH | 04.06.2025 AB");
}

TEST_F(TheQualityData, StaysAtItsStepWhileThereIsNoConnection) {
  StartOn(1, 1);
  Open(*screen);
  Pulses(4);
  bench.line.silent = {1};
  EXPECT_EQ(Pulses(4), (Texts{"np39?", "np39?", "np39?", "np39?"}));
  EXPECT_TRUE(screen->ComIcon());
  EXPECT_EQ(bench.link_watch.LinkMisses, 2);
  EXPECT_EQ(LastPointer(), Pointer::kNormal);
  bench.line.silent.clear();
  EXPECT_EQ(Pulses(2), (Texts{"np39?", "np3A?"}));
  EXPECT_FALSE(screen->ComIcon());
}

TEST_F(TheQualityData, GoesOnWhenAPulledPortIsBack) {
  StartOn(0, 1);
  OpenAndRead();
  screen->Text_Unit_Change("55");
  screen->Cmd_Update_Click();
  Pulses(4);
  bench.port.Vanish();
  bench.Run(15);
  EXPECT_EQ(Shown(), "14003 55 | 12.03.2024 KH | 04.06.2025 AB");
  EXPECT_FALSE(Now().Cmd_Update);
}

TEST_F(TheQualityData, LeavesAPartOfTheNewDataAndSaysSo) {
  StartOn(0, 4);
  OpenAndRead();
  screen->Text_Serial_Change("30001");
  screen->Text_Unit_Change("9");
  screen->Text_Name_Change(1, "QQ");
  screen->Cmd_Update_Click();
  Pulses(3);
  bench.dialogs.boxes.clear();
  screen->Quit();
  EXPECT_FALSE(screen->IsOpen());
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
  EXPECT_EQ(LastPointer(), Pointer::kNormal);
  EXPECT_EQ(Held(4), (std::array<int, 10>{3, 1, 9, 1203, 24, 7572, 406, 25, 6566, 0}));
  ASSERT_EQ(bench.dialogs.boxes.size(), 1U);
  EXPECT_NE(bench.dialogs.boxes[0].Text.find("Tavrel-4 has acknowledged 3 of 10 values."),
            std::string::npos);
  OpenAndRead();
  EXPECT_EQ(Shown(), "30001 9 | 12.03.2024 KH | 04.06.2025 AB");
}

TEST_F(TheQualityData, IsLeftWithoutAWordElsewhere) {
  StartOn(0, 1);
  Open(*screen);
  Pulses(3);
  screen->Quit();
  EXPECT_EQ(LastPointer(), Pointer::kNormal);
  OpenAndRead();
  screen->Text_Unit_Change("9");
  screen->Cmd_Update_Click();
  screen->Quit();
  OpenAndRead();
  screen->Text_Unit_Change("9");
  screen->Cmd_Update_Click();
  Pulses(11);
  screen->Quit();
  OpenAndRead();
  screen->Text_Unit_Change("9");
  screen->Cmd_Update_Click();
  Pulses(4);
  screen->CloseNow();  // the program ends: nobody is there
  EXPECT_TRUE(bench.dialogs.boxes.empty());
}

TEST_F(TheQualityData, IsKeptInSimulation) {
  bench.state.Settings.CommPort = "----";
  StartOn(0, 3);
  Open(*screen);
  bench.Run(1);
  EXPECT_EQ(Shown(), "14001  | 14.03.2026  | - ");
  screen->Text_Unit_Change("3");
  screen->Text_Name_Change(1, "AB");
  EXPECT_EQ(Refused(), "");
  bench.Run(2);
  EXPECT_EQ(Shown(), "14001 3 | 14.03.2026 AB | 14.03.2026 AB");
}

TEST_F(TheQualityData, StepsWhileTheCycleStandsAtMidnight) {
  bench.clock.timer_at_start = 86310;
  StartOn(0, 1);
  OpenAndRead();
  EXPECT_EQ(Shown(), "14003 103 | 12.03.2024 KH | 04.06.2025 AB");
}

}  // namespace
}  // namespace tavrel
