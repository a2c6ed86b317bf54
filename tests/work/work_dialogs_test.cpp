#include <gtest/gtest.h>

#include "files/held_set.h"
#include "state/curve_colours.h"
#include "tests/files/recording_fixture.h"
#include "tests/support/work_bench.h"

namespace tavrel {
namespace {

using Texts = std::vector<std::string>;

class RecordingDialog : public testing::Test, public WorkBench {
 protected:
  // What the user does in the face of a new file, or of the settings.
  void NewFile(const std::function<void()>& actions) {
    dialog[View::kTavRec] = actions;
    recording.RunNewFile();
  }
  void Settings(const std::function<void()>& actions) {
    dialog[View::kTavRec] = actions;
    recording.RunSettings();
  }
  void Type(const std::string& text) {
    recording.Cbo_Sampl_Change(text);
    Forget();
    recording.CmdOK_Click();
  }
  void RefuseSet() {
    bench.state.SampleSeen[1][1] = bench.state.SampleSeen[1][2] = true;
    bench.state.SampleValue[1][1] = 5;
    bench.state.SampleValue[1][2] = 6;
    bench.state.ReadState[1] = ReadState::kWaiting;
    bench.state.WriteFailed[1] = true;
    bench.files.KeepHeldSet(1, 0);
  }
};

TEST_F(RecordingDialog, OffersTheSamplingTimesOfTheInstrument) {
  StartProgram();
  NewFile([this] {
    EXPECT_EQ(recording.Values().Caption, "new  file");
    EXPECT_EQ(recording.Values().SamplItems,
              (Texts{" 10", " 20", " 30", " 60", " 120", " 300", " 600", " 1800", " 3600"}));
    EXPECT_EQ(recording.Values().Cbo_Sampl, "10");
  });
  Unit().UnitFast = 1;
  NewFile([this] {
    EXPECT_EQ(recording.Values().SamplItems.size(), 13U);
    EXPECT_EQ(recording.Values().SamplItems.front(), " 1");
  });
}

TEST_F(RecordingDialog, TellsTheHoursOfWhatIsTyped) {
  StartProgram();
  NewFile([this] {
    EXPECT_EQ(recording.Values().Lbl_max, "44.4");  // 16000 rows of 10 s
    EXPECT_EQ(recording.Values().Lbl_Auto, "2.49");
    recording.Cbo_Sampl_Change(" 3600");
    EXPECT_EQ(recording.Values().Lbl_max, "16000");
    EXPECT_EQ(recording.Values().Lbl_Auto, "896");
    recording.Cbo_Sampl_Change("1e999");
    EXPECT_FALSE(recording.Values().Lbl_max.empty());
    recording.Cbo_Sampl_Change("-5");
    EXPECT_EQ(recording.Values().Lbl_max, "0.00");
  });
}

TEST_F(RecordingDialog, RefusesWhatTheInstrumentCannotSampleWith) {
  StartProgram();
  NewFile([this] {
    Type("25");
    EXPECT_EQ(BoxTexts(), Texts{"sampling rate|enter a multiple of 10"});
    Type("3610");
    EXPECT_EQ(BoxTexts(), Texts{"check|sampling:\n10 ... 3600"});
    Type("0");
    EXPECT_EQ(BoxTexts(), Texts{"check|sampling:\n10 ... 3600"});
    Type("abc");
    EXPECT_EQ(BoxTexts(), Texts{"check|sampling:\n10 ... 3600"});
    Unit().UnitFast = 1;
    Type("3601");
    EXPECT_EQ(BoxTexts(), Texts{"check|sampling:\n1 ... 3600"});
    EXPECT_TRUE(recording.IsOpen());
  });
  EXPECT_EQ(bench.state.SlotFile[1], kName);
}

TEST_F(RecordingDialog, TakesTwentyFiveSecondsOnAFastInstrument) {
  header.UnitFast = 1;
  StartProgram({1, 2, 1, 2});
  NewFile([this] { Type("25"); });
  EXPECT_EQ(Unit().UnitInterval, 25);
  EXPECT_EQ(bench.state.RecInterval[1], 25);
}

TEST_F(RecordingDialog, BeginsANewFileAndKeepsTheOldOne) {
  header.UnitRecOn = 1;
  StartProgram({1, 2, 1, 2, 3, 4});
  bench.state.OverPrepared = true;
  NewFile([this] {
    Type("60");
    EXPECT_EQ(BoxTexts(), Texts{"recording|create a new file"});
    EXPECT_FALSE(recording.IsOpen());
  });
  EXPECT_EQ(bench.state.SlotFile[1], "M260314B.OVN");
  EXPECT_EQ(bench.state.Settings.ActiveFiles[0], "M260314B.OVN");
  EXPECT_NE(bench.home.Read("TAVREL.USR").find("M260314B.OVN"), std::string::npos);
  EXPECT_EQ(Unit().UnitInterval, 6);
  EXPECT_EQ(Unit().UnitRecOn, 0);
  EXPECT_EQ(bench.state.ReadState[1], ReadState::kIdle);
  EXPECT_EQ(bench.state.SampleCount[1], 0);
  EXPECT_EQ(FileHeader(kName).UnitRecOn, 0);
  EXPECT_EQ(bench.Samples(kName).size(), 6U);
  EXPECT_FALSE(bench.state.OverPrepared);
  EXPECT_TRUE(bench.port.sent.empty());
}

TEST_F(RecordingDialog, DropsAnOldFileWithoutASample) {
  StartProgram();
  NewFile([this] { Type("10"); });
  EXPECT_TRUE(HasFile("M260314B.OVN"));
  EXPECT_FALSE(HasFile(kName));
}

TEST_F(RecordingDialog, KeepsAnEmptyFileThatIsBeingViewed) {
  StartProgram();
  bench.state.SlotPath[0] = bench.state.SlotPath[1];
  bench.state.SlotFile[0] = kName;
  NewFile([this] { Type("10"); });
  EXPECT_TRUE(HasFile(kName));
}

TEST_F(RecordingDialog, KeepsAnEmptyFileThatIsBeingViewedUnderAnotherName) {
  StartProgram();
  std::filesystem::create_hard_link(bench.home.File(std::string("tavdat/") + kName),
                                    bench.home.File("tavdat/seen.ovn"));
  bench.state.SlotPath[0] = bench.home.File("tavdat/../tavdat");
  bench.state.SlotFile[0] = "SEEN.OVN";
  NewFile([this] { Type("10"); });
  EXPECT_TRUE(HasFile(kName));
}

// A set that the disk refused is complete in hand when the user begins a new file.
TEST_F(RecordingDialog, WritesARefusedSetIntoTheOldFileFirst) {
  header.UnitRecOn = 1;
  StartProgram({1, 2, 1, 2});
  RefuseSet();
  NewFile([this] { Type("10"); });
  EXPECT_EQ(bench.Samples(kName), (std::vector<std::int16_t>{1, 2, 1, 2, 5, 6}));
  EXPECT_FALSE(HasFile(HeldSetName(kName)));
  EXPECT_EQ(bench.state.SlotFile[1], "M260314B.OVN");
}

// The new file has its own series: the rest of the old set will never come.
TEST_F(RecordingDialog, DropsAHalfReadSetWithTheOldFile) {
  header.UnitRecOn = 1;
  StartProgram({1, 2, 1, 2});
  bench.state.SampleSeen[1][2] = true;
  bench.state.SampleValue[1][2] = 6;
  bench.files.KeepHeldSet(1, 0);
  ASSERT_TRUE(HasFile(HeldSetName(kName)));
  NewFile([this] { Type("10"); });
  EXPECT_EQ(bench.state.SlotFile[1], "M260314B.OVN");
  EXPECT_FALSE(HasFile(HeldSetName(kName)));
  EXPECT_FALSE(bench.state.SampleSeen[1][2]);
  EXPECT_EQ(bench.Samples(kName).size(), 4U);
}

TEST_F(RecordingDialog, LeavesARefusedSetBesideTheOldFileForItsNextOpening) {
  header.UnitRecOn = 1;
  const std::vector<std::int16_t> rows(1000, 3);
  StartProgram(rows);
  RefuseSet();
  {
    const FullDisk disk(3000);
    NewFile([this] {
      Type("10");
      EXPECT_EQ(BoxTexts(),
                (Texts{"recording|create a new file",
                       "Write  file|M260314A.OVN: the last set could not be written (File too "
                       "large); it stays beside the file and is written when the file is opened "
                       "again"}));
    });
  }
  EXPECT_EQ(bench.state.SlotFile[1], "M260314B.OVN");
  EXPECT_EQ(bench.Samples(kName), rows);
  EXPECT_TRUE(HasFile(HeldSetName(kName)));
  EXPECT_FALSE(bench.state.SampleSeen[1][1]);
  bench.state.SlotPath[2] = bench.state.SlotPath[1];
  bench.state.SlotFile[2] = kName;
  bench.files.OpenRecordingFile(2);
  EXPECT_EQ(bench.Samples(kName).size(), 1002U);
  EXPECT_EQ(bench.Samples(kName)[1000], 5);
  EXPECT_EQ(bench.Samples(kName)[1001], 6);
  EXPECT_FALSE(HasFile(HeldSetName(kName)));
}

TEST_F(RecordingDialog, LeavesAnEmptyFileWhoseOnlySetWasRefused) {
  header.UnitRecOn = 1;
  StartProgram();
  RefuseSet();
  {
    const FullDisk disk(1000);
    bench.state.Settings = SettingsValues();  // few enough to be written
    bench.state.Settings.ActiveFiles[0] = kName;
    NewFile([this] { Type("10"); });
  }
  EXPECT_TRUE(HasFile(kName));
  EXPECT_TRUE(HasFile(HeldSetName(kName)));
}

TEST_F(RecordingDialog, ChangesNothingWithoutTheUsersYes) {
  header.UnitRecOn = 1;
  StartProgram();
  bench.dialogs.ok = false;
  NewFile([this] {
    Type("10");
    EXPECT_TRUE(recording.IsOpen());
    recording.Quit();
  });
  EXPECT_EQ(Unit().UnitRecOn, 1);
  EXPECT_EQ(bench.state.SlotFile[1], kName);
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(RecordingDialog, KeepsTheSlotsFileWhenNoNameIsLeft) {
  StartProgram();
  for (char letter = 'B'; letter <= '~'; ++letter) {
    bench.home.Write(std::string("tavdat/M260314") + letter + ".OVN", "x");
  }
  bench.state.SheetReset = bench.state.OverPrepared = bench.state.PartPrepared = true;
  bench.state.WorkReset = true;
  NewFile([this] { Type("10"); });
  EXPECT_EQ(bench.state.SlotFile[1], kName);
  EXPECT_TRUE(HasFile(kName));
  EXPECT_TRUE(bench.state.SlotFileNo[1].IsOpen());
  EXPECT_FALSE(bench.state.SheetReset || bench.state.OverPrepared || bench.state.PartPrepared);
  EXPECT_FALSE(bench.state.WorkReset);
}

TEST_F(RecordingDialog, ShowsTheLimitOrAllThatTheFileCanHold) {
  header.UnitMaxMinutes = 90;
  header.UnitEndAction = 7;
  StartProgram();
  Settings([this] {
    EXPECT_EQ(recording.Values().Caption, "data  acquisition");
    EXPECT_EQ(recording.Values().Txt_Stop, "1.50");
    EXPECT_EQ(recording.Values().Lbl_Auto, "2.49");
    EXPECT_EQ(recording.Values().Cbo_Func, 0);
  });
  Unit().UnitMaxMinutes = 0;
  Unit().UnitEndAction = 2;
  Settings([this] {
    EXPECT_EQ(recording.Values().Txt_Stop, "44.4");
    EXPECT_EQ(recording.Values().Cbo_Func, 2);
    recording.CmdOK_Click();
    EXPECT_FALSE(recording.IsOpen());
  });
  EXPECT_EQ(Unit().UnitMaxMinutes, 0);
  EXPECT_EQ(Unit().UnitEndAction, 2);
  EXPECT_FALSE(bench.state.SlotDirty[1]);
}

TEST_F(RecordingDialog, TakesHoursWithACommaAndTheEndAction) {
  StartProgram();
  Settings([this] {
    recording.Txt_Stop_Change("2,5");
    recording.Cbo_Func_Click(1);
    recording.Cbo_Func_Click(3);
    recording.CmdOK_Click();
  });
  EXPECT_EQ(Unit().UnitMaxMinutes, 150);
  EXPECT_EQ(bench.state.SampleLimit[1], 900);
  EXPECT_EQ(Unit().UnitEndAction, 1);
  EXPECT_TRUE(bench.state.SlotDirty[1]);
}

TEST_F(RecordingDialog, RefusesMoreThanTheFileHoldsAndMoreThanFiveHundredHours) {
  header.UnitChannels = 1;
  header.UnitRole[2] = 0;
  StartProgram();
  Settings([this] {
    recording.Cbo_Func_Click(2);
    recording.Txt_Stop_Change("89");
    recording.CmdOK_Click();
    EXPECT_EQ(BoxTexts(), Texts{"check|stop acquisition:\n0.01 ... 88.88889"});
    EXPECT_TRUE(recording.IsOpen());
  });
  EXPECT_EQ(Unit().UnitEndAction, 0);
  bench.state.RecInterval[1] = 3600;
  Settings([this] {
    EXPECT_EQ(recording.Values().Txt_Stop, "32000");
    recording.Txt_Stop_Change("501");
    Forget();
    recording.CmdOK_Click();
    EXPECT_EQ(BoxTexts(), Texts{"check|stop acquisition:\n0.01 ... 500"});
    recording.Txt_Stop_Change("500");
    recording.CmdOK_Click();
  });
  EXPECT_EQ(Unit().UnitMaxMinutes, 30000);
  EXPECT_EQ(bench.state.SampleLimit[1], 500);
}

// Whole minutes may be a little more than the file holds.
TEST_F(RecordingDialog, HoldsTheLimitToWhatTheFileHolds) {
  for (int channels = 1; channels <= kInputs; ++channels) {
    WorkBench fixture;
    fixture.header = BenchProgram::Header(WorkBench::kInet, 3, channels, false);
    fixture.header.UnitInterval = 1;
    fixture.StartProgram();
    const int most = 32000 / channels;
    const double longest = most * 10 / 3600.0;  // hours
    fixture.dialog[View::kTavRec] = [&fixture, longest] {
      fixture.recording.Txt_Stop_Change(std::to_string(longest - 1e-5));
      fixture.recording.CmdOK_Click();
    };
    fixture.recording.RunSettings();
    EXPECT_LE(fixture.bench.state.SampleLimit[1], most) << channels;
    EXPECT_GE(fixture.bench.state.SampleLimit[1], most - 3) << channels;
  }
}

class CoordinatesDialog : public testing::Test, public WorkBench {
 protected:
  CoordinatesDialog() {
    header.UnitYmax = 500;
    header.UnitYmin = -20;
    header.UnitXmax = 100;
    header.UnitMarks = 3;
  }
  void Run(const std::function<void()>& actions) {
    bench.state.SlotDirty[1] = false;
    bench.state.OverPrepared = true;
    bench.state.PartPrepared = true;
    Forget();
    dialog[View::kTavCoord] = actions;
    coordinates.Run();
  }
};

TEST_F(CoordinatesDialog, ShowsTheHeaderAndAnUntouchedFormChangesNothing) {
  StartProgram();
  Run([this] {
    EXPECT_EQ(bench.state.ActiveView, View::kTavCoord);
    EXPECT_EQ(coordinates.TBox(0), "500");
    EXPECT_EQ(coordinates.TBox(1), "-20");
    EXPECT_EQ(coordinates.TBox(2), "1.67");
    EXPECT_EQ(coordinates.CboRes(), 0);
    coordinates.CmdOK_Click();
    EXPECT_FALSE(coordinates.IsOpen());
  });
  EXPECT_EQ(Unit().UnitXmax, 100);  // 1.67 h would be 100.2 minutes
  EXPECT_EQ(Unit().UnitMarks, 3);
  EXPECT_FALSE(bench.state.SlotDirty[1]);
  EXPECT_TRUE(bench.state.OverPrepared);
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(CoordinatesDialog, TakesAllValuesAndForgetsMarksAndPlots) {
  StartProgram();
  Run([this] {
    coordinates.TBox_Change(0, "800,4");
    coordinates.TBox_Change(1, "-100");
    coordinates.TBox_Change(2, "2,5");
    coordinates.CboRes_Click(1);
    coordinates.CmdOK_Click();
  });
  EXPECT_EQ(Unit().UnitYmax, 800);
  EXPECT_EQ(Unit().UnitYmin, -100);
  EXPECT_EQ(Unit().UnitXmax, 150);
  EXPECT_EQ(Unit().UnitRes, 54);
  EXPECT_EQ(Unit().UnitMarks, 0);
  EXPECT_TRUE(bench.state.SlotDirty[1]);
  EXPECT_FALSE(bench.state.OverPrepared);
  EXPECT_FALSE(bench.state.PartPrepared);
  Run([this] {
    EXPECT_EQ(coordinates.CboRes(), 1);
    coordinates.CboRes_Click(0);
    coordinates.CmdOK_Click();
  });
  EXPECT_EQ(Unit().UnitRes, 0);
}

TEST_F(CoordinatesDialog, TellsTheFirstBadValueAndTakesNone) {
  StartProgram();
  Run([this] {
    coordinates.TBox_Change(0, "800");
    coordinates.TBox_Change(1, "-10001");
    coordinates.TBox_Change(2, "999");
    coordinates.CmdOK_Click();
    EXPECT_EQ(BoxTexts(), Texts{"check|Ymin:\n-10000 ... 30000"});
    coordinates.TBox_Change(1, "-10000");
    coordinates.CmdOK_Click();
    EXPECT_EQ(BoxTexts().back(), "check|Xmax:\n0.1 ... 45");
    coordinates.TBox_Change(0, "0.9");
    coordinates.CmdOK_Click();
    EXPECT_EQ(BoxTexts().back(), "check|Ymax:\n1 ... 30000");
    EXPECT_TRUE(coordinates.IsOpen());
    coordinates.Quit();
  });
  EXPECT_EQ(Unit().UnitYmax, 500);
  EXPECT_EQ(Unit().UnitMarks, 3);
  EXPECT_FALSE(bench.state.SlotDirty[1]);
}

TEST(LongestXmax, IsCountedInWholeTenthsOfAnHour) {
  EXPECT_EQ(LongestXmaxHours(10, 15), 6.0);
  EXPECT_EQ(LongestXmaxHours(1, 15), 0.6);
  EXPECT_EQ(LongestXmaxHours(1, 1), 9.0);
  EXPECT_EQ(LongestXmaxHours(10, 7), 12.8);
  EXPECT_EQ(LongestXmaxHours(36000, 1), 533.3);  // the minutes are a word
  EXPECT_EQ(LongestXmaxHours(10, 0), 90.0);
}

class TheWaitBar : public testing::Test, public WorkBench {};

TEST_F(TheWaitBar, RisesOnceASecondAndGoesWhenItHasBeenFull) {
  StartProgram();
  const View before = bench.state.ActiveView;
  wait_bar.Open();
  EXPECT_EQ(bench.state.ActiveView, View::kTavWait);
  EXPECT_EQ(wait_bar.prgWait(), 0);
  bench.Run(0.5);
  EXPECT_EQ(wait_bar.prgWait(), 10);
  bench.Run(8);
  EXPECT_EQ(wait_bar.prgWait(), 90);
  bench.Run(1.2);
  EXPECT_EQ(wait_bar.prgWait(), 100);
  EXPECT_TRUE(wait_bar.IsOpen());
  bench.Run(1.2);
  EXPECT_FALSE(wait_bar.IsOpen());
  EXPECT_EQ(bench.state.ActiveView, before);
  EXPECT_EQ(bench.events.pointers.back(), Pointer::kNormal);
}

// A controller is off while it is shown.
TEST_F(TheWaitBar, GoesOnAtMidnight) {
  StartProgram();
  for (const double begin : {86301.0, 86395.0}) {
    bench.clock.timer_at_start = 0;
    bench.clock.timer_at_start = begin - bench.clock.Timer();
    bench.Run(0.1);
    wait_bar.Open();
    const std::size_t sent = bench.port.sent.size();
    bench.Run(4.5);
    EXPECT_EQ(wait_bar.prgWait(), 50) << begin;
    EXPECT_EQ(bench.port.sent.size(), sent) << "the rest of the cycle stands";
    bench.Run(7.5);
    EXPECT_FALSE(wait_bar.IsOpen()) << begin;
  }
}

class TheColourChoice : public testing::Test, public WorkBench {
 protected:
  std::optional<int> Click(double y) {
    dialog[View::kTavColor] = [this, y] { colours.PicColor_Click(y); };
    return colours.Ask(1, 4);
  }
};

TEST_F(TheColourChoice, CountsRowsFromOneAndTheEmptyOneIsNone) {
  EXPECT_EQ(Click(0), 1);
  EXPECT_EQ(Click(0.99), 1);
  EXPECT_EQ(Click(1), 2);
  EXPECT_EQ(Click(13.5), 14);
  EXPECT_EQ(Click(14), 0);
  EXPECT_EQ(Click(14.99), 0);
  EXPECT_EQ(Click(15), std::nullopt);
  EXPECT_EQ(Click(-0.01), std::nullopt);
}

TEST(CurveColours, MapCodesToTheStandardPalette) {
  const std::vector<int> numbers = {0, 12, 10, 9, 14, 11, 13, 8, 4, 2, 1, 6, 3, 5};
  for (int code = 1; code <= kColourCodes; ++code) {
    EXPECT_EQ(PaletteNumberOf(code), numbers.at(static_cast<std::size_t>(code - 1))) << code;
  }
  EXPECT_EQ(PaletteNumberOf(0), -1);
  EXPECT_EQ(PaletteNumberOf(15), -1);
  EXPECT_EQ(PaletteNumberOf(-32768), -1);
  EXPECT_EQ(CurveColourOf(13)->Rgb, (Colour{0x00, 0x80, 0x80}));
}

}  // namespace
}  // namespace tavrel
