#include "files/journal_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "files/journal_check.h"
#include "files/recording_format.h"
#include "files/row_times.h"

namespace tavrel {
namespace {

const JournalStamp kStamp{{2026, 3, 14, 10, 0, 0, 60}, 1234.5, "boot"};

// A recording of `columns` columns with seals behind the rows 0, 3, 12 and `rows`.
struct SealedRecording {
  std::string file;
  std::string journal;
  JournalChain chain;
  int columns;

  explicit SealedRecording(int rows = 20, int wanted_columns = 3) : columns(wanted_columns) {
    UnitRecord unit = DefaultUnitRecord();
    unit.UnitChannels = static_cast<std::int16_t>(columns);
    file.assign(reinterpret_cast<const char*>(&unit), sizeof unit);
    Add("begin", {{"id", "00ff"}});
    Add("header", {{"new", HeaderHash()}});
    Seal();
    for (int row = 0; row < rows; ++row) {
      AddRow(row);
      if (row == 2 || row == 11 || row == rows - 1) {
        Seal();
      }
    }
  }
  [[nodiscard]] int Rows() const {
    return SampleCountOf(static_cast<std::int64_t>(file.size()), columns);
  }
  [[nodiscard]] std::string HeaderHash() const { return Sha256Of(file.substr(0, kHeaderBytes)); }
  void AddRow(int row) {
    for (int column = 0; column < columns; ++column) {
      file += static_cast<char>(row * 7 + column);
      file += '\1';
    }
  }
  void Add(const std::string& kind, const JsonValue::Members& fields) {
    journal += chain.Line(kStamp, kind, fields);
  }
  void Seal() {
    Add("seal", JournalSeal{Rows(), columns, Sha256Of(file.substr(kHeaderBytes)), HeaderHash(),
                            chain.Hash()}
                    .Fields());
  }
  [[nodiscard]] RecordingCheck Check() const { return CheckOf(file, journal); }
  static RecordingCheck CheckOf(const std::string& file, const std::string& journal) {
    return CheckRecording(std::as_bytes(std::span(file)), std::optional(journal));
  }
  [[nodiscard]] std::vector<std::string> Lines() const {
    std::vector<std::string> lines;
    for (std::size_t place = 0; place < journal.size();) {
      const std::size_t end = journal.find('\n', place) + 1;
      lines.push_back(journal.substr(place, end - place));
      place = end;
    }
    return lines;
  }
  static std::string Join(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
      text += line;
    }
    return text;
  }
};

TEST(JournalText, ALineSaysWhenItWasWrittenAndIsBoundToThoseBefore) {
  JournalChain chain;
  const std::string first = chain.Line(kStamp, "begin", {{"id", "1"}});
  const std::string second = chain.Line(kStamp, "stop", {});
  EXPECT_EQ(first.substr(0, first.find(",\"sum\"")),
            "{\"n\":1,\"time\":\"2026-03-14T10:00:00+01:00\",\"up\":1234.5,\"boot\":\"boot\","
            "\"kind\":\"begin\",\"id\":\"1\"");
  const std::string before = first + second.substr(0, second.find(",\"sum\""));
  EXPECT_EQ(second.substr(second.find(",\"sum\"")),
            ",\"sum\":\"" + Sha256Of(before).substr(0, 16) + "\"}\n");
  EXPECT_EQ(chain.Hash(), Sha256Of(first + second));
}

TEST(JournalText, ASealThatNamesAnotherJournalDoesNotFit) {
  JournalChain chain;
  const std::string first = chain.Line(kStamp, "begin", {{"id", "1"}});
  JournalChain other = chain;
  const std::string right = chain.Line(kStamp, "seal", {{"journal", Sha256Of(first)}});
  const std::string wrong = other.Line(kStamp, "seal", {{"journal", Sha256Of("")}});
  EXPECT_EQ(ReadJournal(first + right).Problem, "");
  EXPECT_EQ(ReadJournal(first + wrong).Problem, "line 2 is not as it was written");
}

TEST(JournalText, AnEmptyJournalIsWhatAFullDiskLeavesAndNotDamaged) {
  EXPECT_EQ(ReadJournal("").Problem, "");
  EXPECT_EQ(ReadJournal("").TornBytes, 0);
  EXPECT_EQ(CheckRecording({}, std::optional<std::string>("")).Verdict, Verdict::kNotCovered);
}

TEST(JournalText, TimesWestOfGreenwichAndWithHalfHours) {
  EXPECT_EQ(TimeWithZone({2026, 1, 2, 3, 4, 5, -210}), "2026-01-02T03:04:05-03:30");
  EXPECT_EQ(TimeWithZone({2026, 1, 2, 3, 4, 5, 0}), "2026-01-02T03:04:05+00:00");
}

TEST(JournalText, AReaderGoesOnWhereTheWriterStood) {
  SealedRecording recording;
  JournalReading reading = ReadJournal(recording.journal);
  EXPECT_EQ(reading.Problem, "");
  EXPECT_EQ(reading.Entries.size(), 6U);
  EXPECT_EQ(reading.Id(), "00ff");
  EXPECT_EQ(reading.Chain.Line(kStamp, "stop", {}), recording.chain.Line(kStamp, "stop", {}));
}

TEST(JournalText, AnyBytesAreData) {
  for (const std::string& text :
       {std::string(), std::string("\n"), std::string("\n\n\n"), std::string(300, '\0'),
        std::string(1000, '['), std::string("{\"n\":1}\n"), std::string("\xFF\xFE\n\x80")}) {
    const JournalReading reading = ReadJournal(text);
    EXPECT_TRUE(reading.Entries.empty());
    EXPECT_TRUE(!reading.Problem.empty() || reading.TornBytes) << text;
  }
}

TEST(JournalCheck, ASealedRecordingIsIntact) {
  for (const int columns : {1, 3, 15}) {
    const RecordingCheck check = SealedRecording(20, columns).Check();
    EXPECT_EQ(check.Verdict, Verdict::kIntact) << columns;
    EXPECT_EQ(check.CoveredRows, 20);
    EXPECT_TRUE(check.Findings.empty());
  }
}

TEST(JournalCheck, RowsBehindTheLastSealAreNotCovered) {
  SealedRecording recording;
  recording.AddRow(20);
  recording.AddRow(21);
  const RecordingCheck check = recording.Check();
  EXPECT_EQ(check.Verdict, Verdict::kNotCovered);
  EXPECT_EQ(check.CoveredRows, 20);
  EXPECT_EQ(check.Findings.front(), "rows 20 to 21 behind the last seal");
}

TEST(JournalCheck, UntilAHeaderIsConfirmedTheOldAndTheNewOneAreRight) {
  SealedRecording recording;
  const std::string old_file = recording.file;
  recording.file[100] = 'x';
  recording.Add("header", {{"new", recording.HeaderHash()}});
  recording.file[100] = 'y';
  recording.Add("header", {{"new", recording.HeaderHash()}});
  for (const char byte : {old_file[100], 'x', 'y'}) {
    recording.file[100] = byte;
    EXPECT_NE(recording.Check().Verdict, Verdict::kDamaged) << byte;
  }
  recording.file[100] = 'z';
  EXPECT_EQ(recording.Check().Verdict, Verdict::kDamaged);
  recording.file[100] = 'y';
  recording.Seal();
  EXPECT_EQ(recording.Check().Verdict, Verdict::kIntact);
  recording.file[100] = 'x';
  EXPECT_EQ(recording.Check().Verdict, Verdict::kDamaged);
}

TEST(JournalCheck, ARecordingThatIsCutAnywhereIsDamagedAndTheRowsAreNamed) {
  const SealedRecording whole;
  for (std::size_t length = 0; length < whole.file.size(); ++length) {
    const RecordingCheck check =
        SealedRecording::CheckOf(whole.file.substr(0, length), whole.journal);
    ASSERT_EQ(check.Verdict, Verdict::kDamaged) << length;
    const int rows = length < 1000 ? 0 : (static_cast<int>(length) - 1000) / 6;
    const int covered = rows >= 12 ? 12 : rows >= 3 ? 3 : 0;
    ASSERT_EQ(check.Damaged, (RowRange{covered, 19})) << length;
    ASSERT_EQ(check.CoveredRows, covered) << length;
  }
}

TEST(JournalCheck, EveryFlippedBitIsSeenAndItsRowsAreNamed) {
  const SealedRecording whole;
  for (std::size_t bit = 0; bit < whole.file.size() * 8; ++bit) {
    std::string file = whole.file;
    file[bit / 8] = static_cast<char>(file[bit / 8] ^ (1 << (bit % 8)));
    const RecordingCheck check = SealedRecording::CheckOf(file, whole.journal);
    ASSERT_EQ(check.Verdict, Verdict::kDamaged) << bit;
    if (bit / 8 < 1000) {
      ASSERT_FALSE(check.IsHeaderRight) << bit;
      ASSERT_EQ(check.CoveredRows, 20) << bit;
      continue;
    }
    const int row = (static_cast<int>(bit / 8) - 1000) / 6;
    const RowRange expected = row < 3    ? RowRange{0, 2}
                              : row < 12 ? RowRange{3, 11}
                                         : RowRange{12, 19};
    ASSERT_EQ(check.Damaged, expected) << bit;
  }
}

TEST(JournalCheck, AJournalThatIsCutAnywhereIsSeen) {
  const SealedRecording whole;
  // Whole but for its last line feed it says all that it has to say.
  for (std::size_t length = 0; length + 1 < whole.journal.size(); ++length) {
    const RecordingCheck check =
        SealedRecording::CheckOf(whole.file, whole.journal.substr(0, length));
    ASSERT_NE(check.Verdict, Verdict::kIntact) << length;
  }
}

// What a kill leaves: the next start ends the line and says so, and may be killed in the same way.
TEST(JournalCheck, ATornLineIsEndedAndIsNoDamage) {
  const SealedRecording whole;
  const std::string next = SealedRecording(whole).chain.Line(kStamp, "stop", {{"rows", 20}});
  for (std::size_t length = 1; length + 1 < next.size(); ++length) {
    std::string text = whole.journal + next.substr(0, length);
    JournalReading reading = ReadJournal(text);
    ASSERT_EQ(reading.TornBytes, static_cast<std::int64_t>(length));
    ASSERT_TRUE(reading.LacksLineFeed);
    ASSERT_EQ(SealedRecording::CheckOf(whole.file, text).Verdict, Verdict::kNotCovered);
    reading.Chain.AddRaw("\n");
    const std::string told =
        "\n" + reading.Chain.Line(kStamp, "torn", {{"bytes", *reading.TornBytes}});
    const JournalReading mended = ReadJournal(text + told);
    ASSERT_EQ(mended.Problem, "") << length;
    ASSERT_FALSE(mended.TornBytes) << length;
    ASSERT_EQ(mended.Entries.back().Kind, "torn");
    if (length % 16 == 0) {
      for (std::size_t cut = 0; cut + 1 < told.size(); ++cut) {
        const JournalReading again = ReadJournal(text + told.substr(0, cut));
        ASSERT_EQ(again.Problem, "") << length << " " << cut;
        ASSERT_EQ(again.TornBytes, static_cast<std::int64_t>(length + cut) - (cut == 1 ? 1 : 0));
      }
    }
  }
}

TEST(JournalCheck, MissingDoubledSwappedAndChangedLinesAreSeen) {
  const SealedRecording whole;
  const std::vector<std::string> lines = whole.Lines();
  const auto verdict = [&](const std::vector<std::string>& changed) {
    return SealedRecording::CheckOf(whole.file, SealedRecording::Join(changed)).Verdict;
  };
  for (std::size_t place = 0; place < lines.size(); ++place) {
    auto missing = lines;
    missing.erase(missing.begin() + static_cast<std::ptrdiff_t>(place));
    EXPECT_NE(verdict(missing), Verdict::kIntact) << place;
    auto doubled = lines;
    doubled.insert(doubled.begin() + static_cast<std::ptrdiff_t>(place), lines[place]);
    EXPECT_EQ(verdict(doubled), Verdict::kDamaged) << place;
    if (place + 1 < lines.size()) {
      auto swapped = lines;
      std::swap(swapped[place], swapped[place + 1]);
      EXPECT_EQ(verdict(swapped), Verdict::kDamaged) << place;
    }
  }
}

TEST(JournalCheck, EveryChangedByteOfTheJournalIsSeen) {
  const SealedRecording whole;
  for (std::size_t place = 0; place + 1 < whole.journal.size(); ++place) {
    std::string text = whole.journal;
    text[place] = static_cast<char>(text[place] ^ 1);
    ASSERT_NE(SealedRecording::CheckOf(whole.file, text).Verdict, Verdict::kIntact) << place;
  }
}

// What whoever goes on with a journal has to know does not depend on how it was read.
void ExpectTheSameEnd(const SealedRecording& whole, const std::string& text) {
  const JournalReading all = ReadJournal(text);
  const JournalReading end = ReadJournalEnd(text);
  ASSERT_EQ(end.Problem, all.Problem);
  ASSERT_EQ(end.TornBytes, all.TornBytes);
  ASSERT_EQ(end.LacksLineFeed, all.LacksLineFeed);
  ASSERT_EQ(end.Chain.Hash(), all.Chain.Hash());
  ASSERT_EQ(end.Chain.NextNumber(), all.Chain.NextNumber());
  const auto file = std::as_bytes(std::span(whole.file));
  const RecordingCheck by_all = CheckRecording(file, all);
  const RecordingCheck by_end = CheckRecording(file, end);
  ASSERT_EQ(by_end.Verdict, by_all.Verdict);
  ASSERT_EQ(by_end.Id, by_all.Id);
  ASSERT_EQ(by_end.Findings, by_all.Findings);
}

TEST(JournalEnd, SaysTheSameWhereverTheJournalIsCut) {
  SealedRecording whole;
  whole.Add("stop", {{"rows", 20}});
  whole.Add("start", {{"rows", 20}});
  EXPECT_EQ(ReadJournalEnd(whole.journal).Entries.size(), 4U) << "begin, the seal, stop, start";
  for (std::size_t length = 0; length <= whole.journal.size(); ++length) {
    SCOPED_TRACE(length);
    ExpectTheSameEnd(whole, whole.journal.substr(0, length));
  }
}

TEST(JournalEnd, SaysTheSameWhicheverByteIsChanged) {
  SealedRecording whole;
  whole.Add("stop", {{"rows", 20}});
  for (std::size_t place = 0; place < whole.journal.size(); ++place) {
    SCOPED_TRACE(place);
    std::string text = whole.journal;
    text[place] = static_cast<char>(text[place] ^ 1);
    ExpectTheSameEnd(whole, text);
  }
}

TEST(JournalEnd, TakesAnyBytes) {
  const SealedRecording whole;
  for (const std::string& text :
       {std::string(), std::string("\n"), std::string(",\"kind\":\"seal\","),
        std::string("\n,\"kind\":\"seal\","), std::string("{}\n{\"n\":1,\"kind\":\"seal\",\n")}) {
    SCOPED_TRACE(text);
    ExpectTheSameEnd(whole, text);
  }
}

TEST(JournalCheck, TwoFilesThatWentOnFromOneAreForks) {
  const SealedRecording one;
  SealedRecording left = one;
  SealedRecording right = one;
  EXPECT_EQ(KinshipOf(one.journal, one.journal), Kinship::kSame);
  left.Add("start", {});
  EXPECT_EQ(KinshipOf(one.journal, left.journal), Kinship::kEarlier);
  EXPECT_EQ(KinshipOf(left.journal, one.journal), Kinship::kEarlier);
  right.Add("stop", {});
  EXPECT_EQ(KinshipOf(left.journal, right.journal), Kinship::kForks);
  EXPECT_EQ(CommonLines(left.journal, right.journal), 6);
  JournalChain other;
  EXPECT_EQ(KinshipOf(left.journal, other.Line(kStamp, "begin", {{"id", "2"}})),
            Kinship::kStrangers);
}

TEST(JournalCheck, WithoutAJournalNothingIsCovered) {
  const SealedRecording whole;
  const RecordingCheck check =
      CheckRecording(std::as_bytes(std::span(whole.file)), std::optional<std::string>());
  EXPECT_EQ(check.Verdict, Verdict::kNotCovered);
  EXPECT_EQ(check.Rows, 20);
}

// A recording of 40 rows with three lost sets before row 20 and a second start at row 30, over the
// end of summer time.
JournalReading SourceOfAnchors() {
  JournalReading reading;
  const std::string time = "2026-10-25T02:58:30+02:00";
  reading.Entries.push_back({"begin", JsonValue::Members{{"interval", 10}, {"time", time}}});
  reading.Entries.push_back({"start", JsonValue::Members{{"rows", 0}, {"time", time}}});
  reading.Entries.push_back(
      {"lost", JsonValue::Members{{"before", 20}, {"sets", 3}, {"exact", true}}});
  const std::string later = "2026-10-25T02:30:00+01:00";
  reading.Entries.push_back({"start", JsonValue::Members{{"rows", 30}, {"time", later}}});
  reading.Entries.push_back(
      {"lost", JsonValue::Members{{"before", 36}, {"sets", JsonValue()}, {"exact", false}}});
  return reading;
}

TEST(RowTimesOfAJournal, ComeFromTheFileBeforeAndFromTheSourceOfAPart) {
  const RowTimes source(SourceOfAnchors(), 10);
  ASSERT_TRUE(source.Local(35));
  ASSERT_FALSE(source.Local(36));
  for (const char* const member : {"before", "origin"}) {
    for (const int from : {0, 1, 2, 7, 19, 20, 25, 30, 34}) {
      for (const int count : {1, 2, 5, 40 - from}) {
        JournalReading part;
        const JsonValue::Members other{{"anchors", source.AnchorsOf(from, count)}};
        part.Entries.push_back({"begin", JsonValue::Members{{"interval", 10},
                                                            {"time", "2027-07-01T00:00:00+02:00"},
                                                            {member, other}}});
        const RowTimes times(part, 10);
        for (int row = 0; row < count; ++row) {
          EXPECT_EQ(times.Local(row), source.Local(from + row)) << from << "+" << row;
          EXPECT_EQ(times.Utc(row), source.Utc(from + row)) << from << "+" << row;
        }
      }
    }
  }
  EXPECT_LE(source.AnchorsOf(0, 40).size(), 6U);
  EXPECT_TRUE(source.AnchorsOf(36, 4).empty()) << "nothing is known of them";
  EXPECT_TRUE(RowTimes(JournalReading(), 10).AnchorsOf(0, 5).empty());
}

TEST(RowTimesOfAJournal, GoOnInANextFileWithItsOwnLosses) {
  JournalReading next;
  const JsonValue::Members before{{"anchors", RowTimes(SourceOfAnchors(), 10).AnchorsOf(35, 1)}};
  next.Entries.push_back({"begin", JsonValue::Members{{"interval", 10}, {"before", before}}});
  next.Entries.push_back({"lost", JsonValue::Members{{"before", 4}, {"sets", 2}, {"exact", true}}});
  const RowTimes times(next, 10);
  EXPECT_EQ(times.Local(0), "2026-10-25T02:30:50+01:00");
  EXPECT_EQ(times.Local(1), times.Local(0)) << "the first set stands there twice";
  EXPECT_EQ(times.Local(3), "2026-10-25T02:31:10+01:00");
  EXPECT_EQ(times.Local(4), "2026-10-25T02:31:40+01:00");
}

TEST(RowTimesOfAJournal, AnchorNothingAtARowThatCannotBe) {
  for (const std::int64_t row : {std::numeric_limits<std::int64_t>::min(), std::int64_t{-1}}) {
    JournalReading reading;
    const std::string time = "2026-03-14T10:00:00+01:00";
    reading.Entries.push_back({"begin", JsonValue::Members{{"interval", 10}, {"time", time}}});
    reading.Entries.push_back({"start", JsonValue::Members{{"rows", row}, {"time", time}}});
    EXPECT_EQ(RowTimes(reading, 10).Utc(5), std::nullopt) << row;
  }
}

}  // namespace
}  // namespace tavrel
