#include <array>

#include "tests/wire/button_fixture.h"

namespace tavrel {
namespace {

// The buttons of a recording and of the dialogs that need no instrument: what goes out is the
// start alone. No exchange of the others can fail, for they make none.
class RecordingOnTheWire : public ButtonsOnTheWire {
 protected:
  // The user asks for a new file with that sampling time.
  void NewFile(const char* seconds) {
    dialog = [this, seconds] {
      program.recording_settings.Cbo_Sampl_Change(seconds);
      program.recording_settings.CmdOK_Click();
    };
    program.worksheet.cmd_New_Click();
    dialog = nullptr;
  }
};

TEST_P(RecordingOnTheWire, StartsInANewFileWithItsSamplingTime) {
  NewFile("20");
  EXPECT_TRUE(instrument.Telegrams(0).empty());
  EXPECT_EQ(Boxes(), Telegrams{"recording: create a new file"});
  const std::string name = program.state.SlotFile[1];
  EXPECT_NE(name, kName);
  program.worksheet.cmd_Rec_Click(1);
  ExpectTelegramsOfAStart(Of({"T10?", "S11=2\r", "R11=0\r", "S12=2\r", "R12=0\r"},
                             {"n1vD0?", "n1vC1=2\r", "n1vB1=0\r", "n1vC2=2\r", "n1vB2=0\r"}));
  EXPECT_EQ(FileHeader(name).UnitRecOn, 1);
  EXPECT_EQ(FileHeader(name).UnitInterval, 2);
}

// The file was begun on a fast instrument, one set a second; this one would take the same sampling
// value for ten seconds.
TEST_P(RecordingOnTheWire, DoesNotGoOnAtAnotherTimeScale) {
  Unit().UnitFast = 1;
  Unit().UnitInterval = 1;
  program.state.RecInterval[1] = 1;
  const std::array<std::int16_t, 2> row = {400, 500};
  ASSERT_TRUE(program.files.AppendRow(1, row, 2));
  OpenSheet();
  ASSERT_EQ(Unit().UnitFast, 1);
  program.worksheet.cmd_Rec_Click(1);
  EXPECT_EQ(Boxes(), Telegrams{"start recording: This file counts its sampling time in seconds, "
                               "the instrument in tens of seconds."});
  ExpectTelegrams(Of({"T10?"}, {"n1vD0?"}));
  EXPECT_EQ(Unit().UnitRecOn, 0);
  EXPECT_TRUE(Shown().RecOffDown);
}

TEST_P(RecordingOnTheWire, StopsWithoutTellingTheInstrument) {
  program.worksheet.cmd_Rec_Click(1);
  ASSERT_EQ(FileHeader(kName).UnitRecOn, 1);
  Forget();
  program.worksheet.cmd_Rec_Click(2);
  EXPECT_EQ(Boxes(), Telegrams{" : stop acquisition"});
  EXPECT_EQ(FileHeader(kName).UnitRecOn, 0);
  EXPECT_TRUE(Shown().RecOffDown);
  EXPECT_TRUE(instrument.Telegrams(0).empty());
}

TEST_P(RecordingOnTheWire, SetsItsEndWithoutTheInstrument) {
  dialog = [this] {
    program.recording_settings.Txt_Stop_Change("1,5");
    program.recording_settings.Cbo_Func_Click(2);
    program.recording_settings.CmdOK_Click();
  };
  program.worksheet.cmd_SetRec_Click();
  EXPECT_EQ(Unit().UnitMaxMinutes, 90);
  EXPECT_EQ(Unit().UnitEndAction, 2);
  EXPECT_TRUE(instrument.Telegrams(0).empty());
}

TEST_P(RecordingOnTheWire, SetsTheCoordinatesWithoutTheInstrument) {
  dialog = [this] {
    program.coordinates.TBox_Change(0, "700");
    program.coordinates.CboRes_Click(1);
    program.coordinates.CmdOK_Click();
  };
  program.worksheet.cmd_Coord_Click();
  EXPECT_EQ(Unit().UnitYmax, 700);
  EXPECT_EQ(Unit().UnitRes, 54);
  EXPECT_TRUE(instrument.Telegrams(0).empty());
}

INSTANTIATE_TEST_SUITE_P(BothKindsOfLine, RecordingOnTheWire,
                         testing::Combine(testing::Bool(), testing::Values(kNone)),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
}  // namespace tavrel
