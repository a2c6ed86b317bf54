#include "files/recording_format.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

constexpr WallTime kMarch14{2026, 3, 14, 9, 5, 59};

UnitRecord WithInterval(int interval, int fast) {
  UnitRecord unit = DefaultUnitRecord();
  unit.UnitInterval = static_cast<std::int16_t>(interval);
  unit.UnitFast = static_cast<std::int16_t>(fast);
  return unit;
}

UnitRecord WithLimit(int channels, int minutes, int interval) {
  UnitRecord unit = WithInterval(interval, 0);
  unit.UnitChannels = static_cast<std::int16_t>(channels);
  unit.UnitMaxMinutes = static_cast<std::int16_t>(minutes);
  return unit;
}

TEST(SampleByte, FirstWordLiesBehindTheHeader) {
  EXPECT_EQ(SampleByte(15, 0, 1), 1000);
  EXPECT_EQ(SampleByte(15, 0, 15), 1028);
  EXPECT_EQ(SampleByte(15, 1, 1), 1030);
  EXPECT_EQ(SampleByte(1, 32000, 1), 65000);
}

TEST(SampleCount, CountsWholeRowsOnly) {
  EXPECT_EQ(SampleCountOf(1000, 2), 0);
  EXPECT_EQ(SampleCountOf(1003, 2), 0);
  EXPECT_EQ(SampleCountOf(1004, 2), 1);
  EXPECT_EQ(SampleCountOf(1007, 2), 1);
  EXPECT_EQ(SampleCountOf(1008, 2), 2);
}

TEST(SampleCount, IsNeverBelowZeroNorAboveItsWord) {
  EXPECT_EQ(SampleCountOf(700, 1), 0);
  EXPECT_EQ(SampleCountOf(-1, 1), 0);
  EXPECT_EQ(SampleCountOf(1000 + 2 * 32767, 1), 32767);
  EXPECT_EQ(SampleCountOf(1000 + 2 * 32768, 1), 32767);
  EXPECT_EQ(SampleCountOf(std::int64_t{1} << 40, 15), 32767);
  EXPECT_EQ(SampleCountOf(5000, 0), 0);
  EXPECT_EQ(SampleCountOf(5000, -3), 0);
}

TEST(RecInterval, IsTensOfSecondsOnANormalInstrument) {
  EXPECT_EQ(RecIntervalOf(WithInterval(1, 0)), 10);
  EXPECT_EQ(RecIntervalOf(WithInterval(3600, 0)), 36000);
  EXPECT_EQ(RecIntervalOf(WithInterval(5, 2)), 50);
}

TEST(RecInterval, IsSecondsOnAFastInstrument) {
  EXPECT_EQ(RecIntervalOf(WithInterval(1, 1)), 1);
  EXPECT_EQ(RecIntervalOf(WithInterval(3600, 1)), 3600);
}

TEST(RecInterval, IsNeverZeroNorLess) {
  EXPECT_EQ(RecIntervalOf(WithInterval(0, 0)), 1);
  EXPECT_EQ(RecIntervalOf(WithInterval(0, 1)), 1);
  EXPECT_EQ(RecIntervalOf(WithInterval(-7, 0)), 1);
}

TEST(SampleLimit, SixtyMinutesAtTenSecondsAre360Rows) {
  EXPECT_EQ(SampleLimitOf(WithLimit(2, 60, 1)), 360);
}

TEST(SampleLimit, WithoutALimitIsWhat32000WordsHold) {
  EXPECT_EQ(SampleLimitOf(WithLimit(15, 0, 1)), 2133);
  EXPECT_EQ(SampleLimitOf(WithLimit(1, -1, 1)), 32000);
}

TEST(SampleLimit, IsNeverAboveWhatTheFileCanHold) {
  EXPECT_EQ(SampleLimitOf(WithLimit(15, 32767, 1)), 2133);
}

TEST(SampleLimit, IsRoundedToTheNearestTiesToEven) {
  EXPECT_EQ(SampleLimitOf(WithLimit(1, 1, 4)), 2);       // 60 / 40 = 1.5
  EXPECT_EQ(SampleLimitOf(WithLimit(1, 1, 12)), 0);      // 60 / 120 = 0.5
  EXPECT_EQ(SampleLimitOf(WithLimit(1, 5, 12)), 2);      // 300 / 120 = 2.5
  EXPECT_EQ(SampleLimitOf(WithLimit(1, 7, 12)), 4);      // 420 / 120 = 3.5
  EXPECT_EQ(SampleLimitOf(WithLimit(1, 100, 3600)), 0);  // 6000 / 36000
}

TEST(SampleLimit, IsZeroWithoutChannels) {
  EXPECT_EQ(SampleLimitOf(WithLimit(0, 0, 1)), 0);
  EXPECT_EQ(SampleLimitOf(WithLimit(-1, 60, 1)), 0);
}

TEST(Hours, OfAFullFileAndOfTheInstrumentsBuffer) {
  EXPECT_DOUBLE_EQ(MaxFileHours(2, 10), 16000 * 10 / 3600.0);
  EXPECT_DOUBLE_EQ(MaxFileHours(0, 10), 0);
  EXPECT_DOUBLE_EQ(AutonomyHours(10), 8960 / 3600.0);
}

TEST(Hours, RecordedCountFromTheDoubledFirstRow) {
  EXPECT_DOUBLE_EQ(RecordedHours(362, 10), 1.0);
  EXPECT_DOUBLE_EQ(RecordedHours(2, 10), 0);
  EXPECT_DOUBLE_EQ(RecordedHours(0, 10), 0);
  EXPECT_DOUBLE_EQ(RecordedHours(32767, 36000), 327650);
}

TEST(NewFileXmax, KeepsALengthThatFits) {
  EXPECT_EQ(NewFileXmax(60, 10, 2), 60);
  EXPECT_EQ(NewFileXmax(2683, 10, 2), 2683);  // 60 * 8.944 * 10 / 2 = 2683.2
}

TEST(NewFileXmax, ReplacesZeroAndWhatIsTooLong) {
  EXPECT_EQ(NewFileXmax(0, 10, 2), 2683);
  EXPECT_EQ(NewFileXmax(2684, 10, 2), 2683);
  EXPECT_EQ(NewFileXmax(100, 1, 15), 36);  // 35.776
}

TEST(NewFileXmax, StopsAt32000Minutes) {
  EXPECT_EQ(NewFileXmax(0, 36000, 1), 32000);
  EXPECT_EQ(NewFileXmax(32001, 36000, 1), 32000);
}

TEST(NewFileName, FirstOfTheDayBearsTheLetterA) {
  EXPECT_EQ(NewFileName("", kMarch14, "NEW: Default"), "M260314A.NEW");
  EXPECT_EQ(NewFileName("M260313F.NEW", kMarch14, "NEW: Default"), "M260314A.NEW");
}

TEST(NewFileName, RaisesTheLetterOfTheSameDay) {
  EXPECT_EQ(NewFileName("M260314A.NEW", kMarch14, "NEW: x"), "M260314B.NEW");
  EXPECT_EQ(NewFileName("m260314y.old", kMarch14, "new: x"), "M260314Z.NEW");
}

TEST(NewFileName, GoesOnBehindZ) {
  EXPECT_EQ(NewFileName("M260314Z.NEW", kMarch14, "NEW: x"), "M260314[.NEW");
}

TEST(NewFileName, TakesALetterBelowAForNone) {
  EXPECT_EQ(NewFileName("M2603141.NEW", kMarch14, "NEW: x"), "M260314A.NEW");
  EXPECT_EQ(NewFileName("M260314", kMarch14, "NEW: x"), "M260314A.NEW");
}

TEST(NewFileName, IsEmptyBehindTheLastLetter) {
  EXPECT_EQ(NewFileName("M260314~.NEW", kMarch14, "NEW: x"), "");
}

TEST(NewFileName, DesignationCannotLeadOutOfTheDirectory) {
  EXPECT_EQ(NewFileName("", kMarch14, "../x"), "M260314A.___");
  EXPECT_EQ(NewFileName("", kMarch14, "a\\b"), "M260314A.A_B");
  EXPECT_EQ(NewFileName("", kMarch14, ""), "M260314A.___");
  EXPECT_EQ(NewFileName("", kMarch14, "N\n"), "M260314A.N__");
}

TEST(NewFileName, KeepsAnUmlautInTheExtension) {
  EXPECT_EQ(NewFileName("", kMarch14,
                        "\xC3\xB6"
                        "fen"),
            "M260314A.\xC3\x96"
            "FE");
}

TEST(NextFileName, RaisesPlaceEightWhateverTheDate) {
  EXPECT_EQ(NextFileName("M011111A.NEW"), "M011111B.NEW");
  EXPECT_EQ(NextFileName("M011111Z.NEW"), "M011111[.NEW");
  EXPECT_EQ(NextFileName("M011111}.NEW"), "M011111~.NEW");
}

TEST(NextFileName, IsEmptyWithoutALetterToRaise) {
  EXPECT_EQ(NextFileName("M011111~.NEW"), "");
  EXPECT_EQ(NextFileName("SHORT.N"), "");
  EXPECT_EQ(NextFileName(""), "");
}

TEST(NameForNewFile, IsInCapitalsAndFitForADisk) {
  EXPECT_TRUE(IsNameForNewFile("M011111[.NEW"));
  EXPECT_FALSE(IsNameForNewFile("M011111a.NEW"));
  EXPECT_FALSE(IsNameForNewFile("M011111\\.NEW"));
  EXPECT_FALSE(IsNameForNewFile("M011111/.NEW"));
  EXPECT_FALSE(IsNameForNewFile("M011111?.NEW"));
  EXPECT_FALSE(IsNameForNewFile(""));
}

TEST(DateText, IsMonthDayYearAndMinutes) {
  EXPECT_EQ(DateText(kMarch14), "03-14-2026 / 09:05");
}

}  // namespace
}  // namespace tavrel
