#include "state/unit_record.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "tests/files/recording_fixture.h"

namespace tavrel {
namespace {

// The header of the first file of a fresh installation, written out by hand.
std::string DefaultHeaderLiteral() {
  std::string bytes(1000, '\0');
  const auto put = [&](std::size_t offset, const std::string& part) {
    bytes.replace(offset, part.size(), part);
  };
  put(0, std::string("\x01\x00", 2));                            // instrument 1
  put(2, std::string("\x02\x00", 2));                            // two inputs
  put(4, std::string("\x01\x00", 2));                            // controller 1
  put(6, std::string("\x02\x00", 2));                            // reference 2
  put(8, std::string("\x01\x00\x02\x00", 4));                    // roles of inputs 1 and 2
  put(44, std::string("\x0A\x00", 2));                           // 10 tens of seconds
  put(64, std::string("\x02\x00\x04\x00", 4));                   // colours of inputs 1 and 2
  put(98, std::string("\x90\x01", 2));                           // 400 degrees
  put(100, std::string("\x3C\x00", 2));                          // 60 minutes
  put(102, std::string("\xB0\x1D\xF8\x11\x10\x27\x10\x27", 8));  // 7600 4600 10000 10000
  put(200, "NEW: Default        ");
  put(220, "controller          ");
  put(240, "reference           ");
  put(820, "11-11-2001 / 00:00  ");
  return bytes;
}

TEST(UnitRecord, DefaultHeaderIsTheHandMadeThousandBytes) {
  EXPECT_EQ(BytesOf(DefaultUnitRecord()), DefaultHeaderLiteral());
}

// Each named field and the byte where it begins.
struct FieldPlace {
  const char* Name;
  const void* Field;
  std::ptrdiff_t Byte;
};

TEST(UnitRecord, EveryFieldLiesAtItsByte) {
  const UnitRecord unit{};
  const FieldPlace places[] = {
      {"UnitInet", &unit.UnitInet, 0},
      {"UnitChannels", &unit.UnitChannels, 2},
      {"UnitCtrl", &unit.UnitCtrl, 4},
      {"UnitRef", &unit.UnitRef, 6},
      {"UnitRole 1", &unit.UnitRole[1], 8},
      {"UnitRole 15", &unit.UnitRole[15], 36},
      {"UnitRecOn", &unit.UnitRecOn, 40},
      {"UnitMaxMinutes", &unit.UnitMaxMinutes, 42},
      {"UnitInterval", &unit.UnitInterval, 44},
      {"UnitCtrlState", &unit.UnitCtrlState, 46},
      {"UnitSetpoint", &unit.UnitSetpoint, 50},
      {"UnitUpper", &unit.UnitUpper, 52},
      {"UnitLower", &unit.UnitLower, 54},
      {"UnitIncrement", &unit.UnitIncrement, 56},
      {"UnitFinal", &unit.UnitFinal, 58},
      {"UnitColour 1", &unit.UnitColour[1], 64},
      {"UnitColour 15", &unit.UnitColour[15], 92},
      {"UnitEndAction", &unit.UnitEndAction, 96},
      {"UnitYmax", &unit.UnitYmax, 98},
      {"UnitXmax", &unit.UnitXmax, 100},
      {"UnitView", &unit.UnitView, 102},
      {"UnitMarkPos", &unit.UnitMarkPos, 110},
      {"UnitMarks", &unit.UnitMarks, 150},
      {"UnitGraphMode", &unit.UnitGraphMode, 152},
      {"UnitYmin", &unit.UnitYmin, 178},
      {"UnitFast", &unit.UnitFast, 180},
      {"UnitRes", &unit.UnitRes, 184},
      {"UnitProgWait", &unit.UnitProgWait, 196},
      {"UnitProgStep", &unit.UnitProgStep, 198},
      {"UnitDesignation", &unit.UnitDesignation, 200},
      {"UnitInputName 1", &unit.UnitInputName[1], 220},
      {"UnitInputName 15", &unit.UnitInputName[15], 500},
      {"UnitInputNote 1", &unit.UnitInputNote[1], 520},
      {"UnitInputNote 15", &unit.UnitInputNote[15], 800},
      {"UnitDate", &unit.UnitDate, 820},
      {"UnitMarkText 1", &unit.UnitMarkText[0], 840},
      {"UnitMarkText 5", &unit.UnitMarkText[4], 920},
      {"UnitSpareText", &unit.UnitSpareText, 940},
      {"UnitProgName", &unit.UnitProgName, 960},
      {"UnitOrigin", &unit.UnitOrigin, 980},
  };
  const auto* start = reinterpret_cast<const char*>(&unit);
  for (const FieldPlace& place : places) {
    EXPECT_EQ(static_cast<const char*>(place.Field) - start, place.Byte) << place.Name;
  }
}

TEST(HeaderText, PadsWithBlanksAndTrimsThem) {
  HeaderText text{};
  text.Set("oven");
  EXPECT_EQ(std::string(text.Bytes.data(), text.Bytes.size()), "oven                ");
  EXPECT_EQ(text.Get(), "oven");
}

TEST(HeaderText, IsEmptyWhenItWasNeverSet) {
  EXPECT_EQ(HeaderText{}.Get(), "");
}

TEST(HeaderText, KeepsAUmlautAsOneByte) {
  HeaderText text{};
  text.Set("K\xC3\xBChler 5\xC2\xB0");
  EXPECT_EQ(std::string(text.Bytes.data(), 9), "K\xFChler 5\xB0");
  EXPECT_EQ(text.Get(), "K\xC3\xBChler 5\xC2\xB0");
}

TEST(HeaderText, CutsAtTwentyCharactersNotBytes) {
  HeaderText text{};
  text.Set(
      "\xC3\xA4\xC3\xB6\xC3\xBC"
      "45678901234567890XYZ");
  EXPECT_EQ(text.Get(),
            "\xC3\xA4\xC3\xB6\xC3\xBC"
            "45678901234567890");
}

TEST(HeaderText, LeavesNothingOfALongerTextBefore) {
  HeaderText text{};
  text.Set("a long text of twenty");
  text.Set("short");
  EXPECT_EQ(text.Get(), "short");
}

TEST(UnitRecord, TakesTheApparatusNameFromTheFifthCharacter) {
  UnitRecord unit{};
  unit.UnitDesignation.Set("NEW: Default");
  EXPECT_EQ(unit.ApparatusName(), "Default");
  unit.UnitDesignation.Set("OVE:Oven 7");
  EXPECT_EQ(unit.ApparatusName(), "Oven 7");
}

TEST(UnitRecord, KeepsTheFirstFourCharactersOfAnEditedDesignation) {
  UnitRecord unit{};
  unit.UnitDesignation.Set("NEW: Default");
  unit.SetApparatusName("  Autoclave 2 ");
  EXPECT_EQ(unit.UnitDesignation.Get(), "NEW:Autoclave 2");
  unit.SetApparatusName("");
  EXPECT_EQ(unit.UnitDesignation.Get(), "NEW:");
}

TEST(UnitRecord, CutsAnApparatusNameAtSixteenCharacters) {
  UnitRecord unit{};
  unit.UnitDesignation.Set("NEW:");
  unit.SetApparatusName("12345678901234567890");
  EXPECT_EQ(unit.ApparatusName(), "1234567890123456");
}

TEST(UnitRecord, PutsNoZeroByteBeforeTheNameOfADesignationNeverSet) {
  UnitRecord unit{};
  unit.SetApparatusName("Oven");
  EXPECT_EQ(std::string(unit.UnitDesignation.Bytes.data(), 20), "    Oven            ");
}

TEST(UnitRecord, CountsInputsWithARoleOfOneOrMore) {
  UnitRecord unit{};
  unit.UnitRole = {1, 0, -3, 7, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 2};
  EXPECT_EQ(unit.RecordedInputs(), 3);
  unit.UnitChannels = 3;
  EXPECT_TRUE(unit.CanBeRecorded());
  unit.UnitChannels = 4;
  EXPECT_FALSE(unit.CanBeRecorded());
}

struct HeaderRange {
  std::int16_t UnitRecord::*Field;
  int Low;
  int High;
};

TEST(UnitRecord, AcceptsExactlyTheRangesOfARecordingFile) {
  const HeaderRange ranges[] = {{&UnitRecord::UnitInet, 1, 6},
                                {&UnitRecord::UnitChannels, 1, 15},
                                {&UnitRecord::UnitCtrl, 1, 4},
                                {&UnitRecord::UnitRef, 1, 15},
                                {&UnitRecord::UnitInterval, 1, 3600}};
  for (const HeaderRange& range : ranges) {
    for (const int value : {-32768, -1, 0, range.Low, range.High, range.High + 1, 32767}) {
      UnitRecord unit = DefaultUnitRecord();
      unit.*range.Field = static_cast<std::int16_t>(value);
      EXPECT_EQ(IsTavrelHeader(unit), value >= range.Low && value <= range.High) << value;
    }
  }
}

}  // namespace
}  // namespace tavrel
