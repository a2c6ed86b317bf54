#include "setup/test_rows.h"

#include <gtest/gtest.h>

#include <cstring>

namespace tavrel {
namespace {

using Fault = std::optional<InstallationFault>;

// A row of that instrument with a controller, a reference and measuring inputs.
TestRow Row(int inet, int controller, int reference, std::initializer_list<int> measuring = {}) {
  TestRow row;
  row.Unit.UnitInet = static_cast<std::int16_t>(inet);
  row.Test_Ext = "OVN";
  row.Test_Des = "Oven";
  if (controller != 0) {
    SetRole(row.Unit, controller, Role::kController);
  }
  if (reference != 0) {
    SetRole(row.Unit, reference, Role::kReference);
  }
  for (const int input : measuring) {
    SetRole(row.Unit, input, Role::kMeasuring);
  }
  return row;
}

UnitRecord Named(const std::string& designation) {
  UnitRecord unit = Row(3, 1, 2).Unit;
  unit.UnitDesignation.Set(designation);
  return unit;
}

TEST(TestRows, WithoutAFaultMayBeInstalled) {
  TestRows rows;
  rows[1] = Row(1, 1, 5, {9});
  rows[12] = Row(6, 4, 15);
  EXPECT_EQ(FindFault(rows), Fault());
}

TEST(TestRows, NeedAnExtensionThatCanStandInAFileName) {
  for (const char* extension :
       {"",   "   ", "bas", "VAR", "var", "Exe", "a/b",  "a\\b", "a:b",  "*",        "a?", "\"a\"",
        "'a", "<a",  ">a",  "a|b", "a.b", "a b", "a\tb", "\x01", "\x7f", "\xC2\x81", "Ω",  "asc"}) {
    TestRows rows;
    rows[7] = Row(2, 1, 5);
    rows[7].Test_Ext = extension;
    EXPECT_EQ(FindFault(rows), (InstallationFault{7, "extension ?"})) << extension;
  }
  for (const char* extension : {"OVN", "ovn", " ab ", "x", "ÄÖÜ", "1-2", "a_b"}) {
    TestRows rows;
    rows[7] = Row(2, 1, 5);
    rows[7].Test_Ext = extension;
    EXPECT_EQ(FindFault(rows), Fault()) << extension;
  }
}

TEST(TestRows, NeedOneControllerAmongTheFirstFourInputs) {
  for (const int row : {1, 6, 12}) {
    TestRows rows;
    rows[row] = Row(row > 6 ? 6 : row, 0, 15, {4});
    const InstallationFault fault{row, "one input must be defined as controller"};
    EXPECT_EQ(FindFault(rows), fault);
    SetRole(rows[row].Unit, 5, Role::kController);  // not one of the four
    EXPECT_EQ(FindFault(rows), fault);
    SetRole(rows[row].Unit, 4, Role::kController);
    EXPECT_EQ(FindFault(rows), Fault());
    SetRole(rows[row].Unit, 1, Role::kController);  // two
    EXPECT_EQ(FindFault(rows), fault);
  }
}

TEST(TestRows, NeedOneReferenceAmongAllInputs) {
  for (const int input : {2, 5, 15}) {
    TestRows rows;
    rows[4] = Row(5, 1, 0, {3});
    const InstallationFault fault{4, "one input must be defined as reference"};
    EXPECT_EQ(FindFault(rows), fault);
    SetRole(rows[4].Unit, input, Role::kReference);
    EXPECT_EQ(FindFault(rows), Fault());
    SetRole(rows[4].Unit, 14, Role::kReference);
    EXPECT_EQ(FindFault(rows), fault);
  }
}

TEST(TestRows, MayShareAnInstrumentButNoInput) {
  TestRows rows;
  rows[2] = Row(4, 1, 5, {9});
  rows[9] = Row(4, 2, 6, {10});
  EXPECT_EQ(FindFault(rows), Fault());
  SetRole(rows[9].Unit, 9, Role::kMeasuring);
  EXPECT_EQ(FindFault(rows), (InstallationFault{9, "one input is defined more than once"}));
  rows[9].Unit.UnitInet = 5;
  EXPECT_EQ(FindFault(rows), Fault());
}

// The passes go over the rows and then over the instruments; the last finding is the one told.
TEST(TestRows, TellTheLastFaultOfAll) {
  TestRows rows;
  rows[3] = Row(1, 0, 0);
  rows[3].Test_Ext = "";
  EXPECT_EQ(FindFault(rows)->Text, "one input must be defined as reference");
  rows[8] = Row(2, 1, 5);
  rows[8].Test_Ext = "";
  EXPECT_EQ(FindFault(rows), (InstallationFault{3, "one input must be defined as reference"}));
  rows[3] = Row(1, 0, 5);
  rows[3].Test_Ext = "";
  EXPECT_EQ(FindFault(rows), (InstallationFault{3, "one input must be defined as controller"}));
  rows[3] = Row(1, 1, 5);
  EXPECT_EQ(FindFault(rows), (InstallationFault{8, "extension ?"}));
  rows[3].Test_Ext = "";
  EXPECT_EQ(FindFault(rows), (InstallationFault{8, "extension ?"}));
  // Instrument 2 comes after instrument 1, whatever the rows.
  rows[11] = Row(1, 2, 5);
  rows[5] = Row(2, 2, 5);
  EXPECT_EQ(FindFault(rows), (InstallationFault{8, "one input is defined more than once"}));
}

TEST(TestRows, WithoutANumberAreNoTestsWhateverTheyHold) {
  TestRows rows;
  EXPECT_EQ(FindFault(rows), (InstallationFault{12, "nothing to install ?"}));
  rows[1] = Row(0, 1, 1, {1, 2, 3});
  rows[1].Test_Ext = "var";
  EXPECT_EQ(FindFault(rows), (InstallationFault{12, "nothing to install ?"}));
  rows[2] = Row(1, 1, 5);
  EXPECT_EQ(FindFault(rows), Fault());
  rows[2] = TestRow();
  rows[2].AwaitedFile = "M260314A.OVN";
  EXPECT_EQ(FindFault(rows), Fault()) << "a test that waits for its file is one";
}

TEST(TestRows, CollectTheirTextsInCapitalsAndPadded) {
  TestRow row = Row(1, 1, 2);
  row.Test_Ext = " ab";
  row.Test_Des = "  Tube oven ";
  CollectTexts(row);
  EXPECT_EQ(row.Unit.UnitDesignation.Get(), "AB :Tube oven");
  row.Test_Ext = "öfn";
  row.Test_Des = "0123456789ABCDEF";
  CollectTexts(row);
  EXPECT_EQ(row.Unit.UnitDesignation.Get(), "ÖFN:0123456789ABCDEF");
}

// Texts that were padded with blanks, or read from a file of another hand, are no change.
TEST(TestRows, AreOtherTestsOnlyIfTheyReadDifferently) {
  for (const char* designation : {"NEW: Default", "NEW:Default", "new:  Default  ", "NEWxDefault",
                                  "Abc:", "AB :x", "A", ""}) {
    const UnitRecord unit = Named(designation);
    TestRow row = RowOf(unit);
    EXPECT_FALSE(IsOtherTest(unit, row.Unit)) << designation;
    CollectTexts(row);
    EXPECT_FALSE(IsOtherTest(unit, row.Unit)) << designation;
  }
  EXPECT_TRUE(IsOtherTest(Named("NEW: Default"), Named("NEW:Defaults")));
  EXPECT_TRUE(IsOtherTest(Named("NEW: Default"), Named("NEV: Default")));
  UnitRecord other = Named("NEW: Default");
  other.UnitInet = 4;
  EXPECT_TRUE(IsOtherTest(Named("NEW: Default"), other));
  for (int input = 1; input <= kInputs; ++input) {
    other = Named("NEW: Default");
    SetRole(other, input, input > 2 ? Role::kMeasuring : Role::kNotUsed);
    EXPECT_TRUE(IsOtherTest(Named("NEW: Default"), other)) << input;
  }
}

TEST(TestRows, BecomeTheRecordOfANewTest) {
  UnitRecord unit{};
  std::memset(static_cast<void*>(&unit), 0x11, sizeof unit);  // any test before, none of it valid
  TestRow row = Row(6, 3, 15, {7, 1});
  CollectTexts(row);
  RebuildRecord(unit, row.Unit, Language::kEnglish);
  EXPECT_TRUE(IsTavrelHeader(unit));
  EXPECT_EQ(unit.UnitInet, 6);
  EXPECT_EQ(unit.UnitChannels, 4);
  EXPECT_EQ(unit.UnitCtrl, 3);
  EXPECT_EQ(unit.UnitRef, 15);
  EXPECT_EQ(unit.UnitColour[1], 2);
  EXPECT_EQ(unit.UnitColour[2], 0x1111) << "an input without a role keeps its colour";
  EXPECT_EQ(unit.UnitColour[3], 3);
  EXPECT_EQ(unit.UnitColour[7], 4);
  EXPECT_EQ(unit.UnitColour[15], 5);
  EXPECT_EQ(unit.UnitInputName[1].Get(), "Measuring input");
  EXPECT_EQ(unit.UnitInputName[3].Get(), "Controller");
  EXPECT_EQ(unit.UnitInputName[15].Get(), "Reference");
  for (const HeaderText& note : unit.UnitInputNote) {
    EXPECT_EQ(note.Get(), "");
  }
  EXPECT_EQ(unit.UnitRole, row.Unit.UnitRole);
  // Words 20, 21, 30, 31, 47, 75, 76, 89, 90, 98, 99.
  EXPECT_EQ(unit.UnitRecOn, 0);
  EXPECT_EQ(unit.UnitMaxMinutes, 0);
  EXPECT_EQ(unit.Unnamed30, (std::array<std::int16_t, 2>{}));
  EXPECT_EQ(unit.Unnamed47[0], 0);
  EXPECT_EQ(unit.UnitMarks, 0);
  EXPECT_EQ(unit.UnitGraphMode, 0);
  EXPECT_EQ(unit.UnitYmin, 0);
  EXPECT_EQ(unit.UnitFast, 0);
  EXPECT_EQ(unit.UnitProgWait, 0);
  EXPECT_EQ(unit.UnitProgStep, 0);
  EXPECT_EQ(unit.UnitYmax, 100);
  EXPECT_EQ(unit.UnitXmax, 60);
  EXPECT_EQ(unit.UnitView, (std::array<std::int16_t, 4>{7600, 4600, 10000, 10000}));
  EXPECT_EQ(unit.UnitProgName.Get(), "");
  EXPECT_EQ(unit.UnitOrigin.Get(), "");
  // The record held no test: words 22 to 29 and 48.
  EXPECT_EQ(unit.UnitInterval, 10);
  EXPECT_EQ(unit.UnitCtrlState, 0);
  EXPECT_EQ(unit.Unnamed24[0], 0);
  EXPECT_EQ(unit.UnitSetpoint, 0);
  EXPECT_EQ(unit.UnitUpper, 0);
  EXPECT_EQ(unit.UnitLower, 0);
  EXPECT_EQ(unit.UnitIncrement, 0);
  EXPECT_EQ(unit.UnitFinal, 0);
  EXPECT_EQ(unit.UnitEndAction, 0);
  EXPECT_EQ(unit.UnitRes, 0x1111) << "what the list does not name stays";
  EXPECT_EQ(unit.UnitMarkPos[0], 0x1111);
}

TEST(TestRows, KeepTheIntervalAndTheControllerOfASlotInUse) {
  UnitRecord unit = DefaultUnitRecord();
  unit.UnitInterval = 360;
  unit.UnitSetpoint = 4000;
  unit.UnitUpper = 9000;
  unit.UnitLower = -100;
  unit.UnitIncrement = 7;
  unit.UnitFinal = 5000;
  unit.UnitEndAction = 2;
  unit.UnitFast = 1;
  RebuildRecord(unit, Row(2, 2, 6).Unit, Language::kGerman);
  EXPECT_EQ(unit.UnitInterval, 360);
  EXPECT_EQ(unit.UnitSetpoint, 4000);
  EXPECT_EQ(unit.UnitUpper, 9000);
  EXPECT_EQ(unit.UnitLower, -100);
  EXPECT_EQ(unit.UnitIncrement, 7);
  EXPECT_EQ(unit.UnitFinal, 5000);
  EXPECT_EQ(unit.UnitEndAction, 2);
  EXPECT_EQ(unit.UnitFast, 0);
  EXPECT_EQ(unit.UnitInputName[2].Get(), "Regler");
  EXPECT_EQ(unit.UnitInputName[6].Get(), "Referenz");
  RebuildRecord(unit, Row(2, 1, 6, {15}).Unit, Language::kGerman);
  EXPECT_EQ(unit.UnitInputName[15].Get(), "Messeingang");
}

// Files of other origin number their measuring inputs on.
TEST(TestRows, TakeHigherRolesForMeasuringInputs) {
  UnitRecord unit{};
  unit.UnitRole = {1, 2, 3, 4, 15, 0, -1, -32768, 32767};
  const std::vector<Role> expected = {Role::kController, Role::kReference, Role::kMeasuring,
                                      Role::kMeasuring,  Role::kMeasuring, Role::kNotUsed,
                                      Role::kNotUsed,    Role::kNotUsed,   Role::kMeasuring};
  for (int input = 1; input <= 9; ++input) {
    EXPECT_EQ(RoleOf(unit, input), expected.at(static_cast<std::size_t>(input - 1))) << input;
  }
}

}  // namespace
}  // namespace tavrel
