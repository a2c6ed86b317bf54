#include "graph/export_text.h"

#include <gtest/gtest.h>

#include "files/recording_format.h"
#include "tests/files/recording_fixture.h"

namespace tavrel {
namespace {

// A recording of three columns: rows (0, 0, 0), (100, 2469, -1), (101, 32767, -32768),
// (102, -5, 20).
class TheExport : public testing::Test {
 protected:
  TheExport() {
    const std::string rows = Words({0, 0, 0, 100, 2469, -1, 101, 32767, -32768, 102, -5, 20});
    home.Write("M260314A.OVN", BytesOf(HeaderOf(3)) + rows);
    EXPECT_TRUE(file.Open(home.File("M260314A.OVN"), FileAccess::kRead));
    table.FileName = "M260314A.OVN";
    table.RecInterval = 30;
    table.Channels = 3;
    table.FirstRecord = 503;
    table.LastRecord = 509;
    AddColumn(1, "product");
    AddColumn(3, "wall");
  }
  void AddColumn(int column, const std::string& name) {
    ExportColumn added;
    added.Column = column;
    added.Name.Set(name);
    table.Columns.push_back(added);
  }
  std::string Ascii() {
    SampleReader reader(file);
    return AsciiText(table, mark, reader).value();
  }
  std::string Clip() {
    SampleReader reader(file);
    return std::get<std::string>(ClipboardText(table, mark, reader));
  }
  std::string Degrees(int word) { return DegreesText(word, mark); }

  TemporaryDirectory home;
  RandomFile file;
  ExportTable table;
  std::string mark = ".";
};

TEST_F(TheExport, WritesTheFileByteForByte) {
  EXPECT_EQ(Ascii(),
            "\"From Tavrel-file:    M260314A.OVN\"\r\n"
            "\"sampling   (sec):    30\"\r\n"
            "\"------------------------------------------\"\r\n"
            "\"column 01 =  time (sec)          \"\r\n"
            "\"column 02 =  product             \"\r\n"
            "\"column 03 =  wall                \"\r\n"
            "\"------------------------------------------\"\r\n"
            "30; 5.00; -0.05; \r\n"
            "60; 5.05; -1638.40; \r\n"
            "90; 5.10; 1.00; \r\n");
}

TEST_F(TheExport, MakesTheTextOfTheClipboard) {
  EXPECT_EQ(Clip(),
            "\"From Tavrel-file:    M260314A.OVN\"\r\n"
            "\"sampling   (sec):    30\"\r\n"
            "\"----------------------------------------------\"\r\n"
            "\"column 01  time (sec)\"\r\n"
            "\"column 02  product             \"\r\n"
            "\"column 03  wall                \"\r\n"
            "\"----------------------------------------------\"\r\n"
            "30\t5.00\t-0.05\r\n"
            "60\t5.05\t-1638.40\r\n"
            "90\t5.10\t1.00\r\n");
}

TEST_F(TheExport, WritesWindows1252IntoTheFileAndUnicodeToTheClipboard) {
  AddColumn(2, "Ofen-Tür");
  EXPECT_NE(Ascii().find("\"column 04 =  Ofen-T\xFCr            \"\r\n"), std::string::npos);
  EXPECT_NE(Clip().find("\"column 04  Ofen-Tür            \"\r\n"), std::string::npos);
}

TEST_F(TheExport, TakesTheDecimalMarkForValuesOnly) {
  mark = ",";
  EXPECT_NE(Ascii().find("\r\n60; 5,05; -1638,40; \r\n"), std::string::npos);
  EXPECT_NE(Ascii().find("M260314A.OVN"), std::string::npos);
  EXPECT_NE(Clip().find("\r\n60\t5,05\t-1638,40\r\n"), std::string::npos);
  mark = "\xD9\xAB";  // a mark that Windows-1252 does not have
  EXPECT_NE(Ascii().find("\r\n60; 5?05; "), std::string::npos);
  EXPECT_NE(Clip().find("\t5\xD9\xAB"
                        "05\t"),
            std::string::npos);
}

TEST_F(TheExport, WritesEveryWordInHundredths) {
  EXPECT_EQ(Degrees(0), "0.00");
  EXPECT_EQ(Degrees(1), "0.05");
  EXPECT_EQ(Degrees(-1), "-0.05");
  EXPECT_EQ(Degrees(2), "0.10");
  EXPECT_EQ(Degrees(19), "0.95");
  EXPECT_EQ(Degrees(20), "1.00");
  EXPECT_EQ(Degrees(-21), "-1.05");
  EXPECT_EQ(Degrees(2469), "123.45");
  EXPECT_EQ(Degrees(32767), "1638.35");
  EXPECT_EQ(Degrees(-32768), "-1638.40");
}

TEST_F(TheExport, CountsTheTimeInWholeSecondsWithoutAnExponent) {
  table.RecInterval = 36000;
  table.Channels = 1;
  table.FirstRecord = 501;
  table.LastRecord = 501 + 32199;
  table.Columns.resize(1);
  home.Write("M260314A.OVN", BytesOf(HeaderOf(1)) + std::string(std::size_t{2} * 32202, '\0'));
  const std::string text = Ascii();
  EXPECT_NE(text.find("\r\n36000; "), std::string::npos);
  EXPECT_NE(text.find("\r\n1159200000; "), std::string::npos);  // 32200 rows of ten hours
  EXPECT_EQ(text.find("E+"), std::string::npos);
}

TEST_F(TheExport, HasOnlyAHeadWithoutRows) {
  table.LastRecord = 500;
  EXPECT_TRUE(Ascii().ends_with("-\"\r\n"));
  EXPECT_TRUE(Clip().ends_with("-\"\r\n"));
}

TEST_F(TheExport, TakesTheOneRowThatIsFirstAndLast) {
  table.LastRecord = table.FirstRecord;
  EXPECT_TRUE(Ascii().ends_with("-\"\r\n30; 5.00; -0.05; \r\n"));
}

TEST_F(TheExport, PutsBlanksForWhatWouldBreakALine) {
  table.Columns[0].Name.Bytes = {};
  table.Columns[1].Name.Bytes[1] = '\n';
  EXPECT_NE(Ascii().find("\"column 02 =                      \"\r\n"), std::string::npos);
  EXPECT_NE(Ascii().find("\"column 03 =  w ll                \"\r\n"), std::string::npos);
}

// Readers of such files split a line at a semicolon, and at a quote that ends before the line.
TEST_F(TheExport, PutsBlanksForWhatWouldSplitALineOfTheHead) {
  for (const int place : {0, 1}) {
    table.Columns[static_cast<std::size_t>(place)].Name.Set("6\"; \x7Fx;y\"\"");
  }
  table.FileName = "S\"A;B.OVN";
  EXPECT_NE(Ascii().find("\"From Tavrel-file:    S A B.OVN\"\r\n"), std::string::npos);
  EXPECT_NE(Ascii().find("\"column 02 =  6    x y            \"\r\n"), std::string::npos);
  EXPECT_NE(Ascii().find("\"column 03 =  6    x y            \"\r\n"), std::string::npos);
  EXPECT_NE(Clip().find("\"column 02  6    x y            \"\r\n"), std::string::npos);
}

TEST_F(TheExport, IsNoneWhereTheFileEndsBeforeItsRows) {
  table.LastRecord = 512;
  SampleReader reader(file);
  EXPECT_EQ(AsciiText(table, mark, reader), std::nullopt);
  EXPECT_EQ(std::get<ClipboardFault>(ClipboardText(table, mark, reader)),
            ClipboardFault::kUnreadable);
}

TEST_F(TheExport, IsNoneOfAFileThatIsClosed) {
  file.Close();
  SampleReader reader(file);
  EXPECT_EQ(AsciiText(table, mark, reader), std::nullopt);
}

// One column with 5.10 in each row.
class ALongText : public TheExport {
 protected:
  ALongText() {
    std::string rows;
    for (int row = 0; row < 6000; ++row) {
      rows += Words({102});
    }
    home.Write("one.bin", BytesOf(HeaderOf(1)) + rows);
    EXPECT_TRUE(one.Open(home.File("one.bin"), FileAccess::kRead));
    table.Columns.resize(1);
    table.Channels = 1;
    table.FirstRecord = 500;
  }
  // The size of the text in bytes; nothing if it is too long.
  std::optional<std::size_t> SizeOf(int rows) {
    table.LastRecord = 499 + rows;
    SampleReader reader(one);
    const auto made = ClipboardText(table, mark, reader);
    const auto* const text = std::get_if<std::string>(&made);
    if (text == nullptr) {
      EXPECT_EQ(std::get<ClipboardFault>(made), ClipboardFault::kTooLong);
      return std::nullopt;
    }
    return text->size();
  }
  RandomFile one;
};

// The head has 227 characters; of the rows 9 have 12, 90 have 13, 900 have 14 and those behind
// 15: 227 + 108 + 1170 + 12600 = 14105, and 3326 more rows make 63995.
TEST_F(ALongText, StopsBeyond64000Characters) {
  table.RecInterval = 10000;
  ASSERT_EQ(SizeOf(0), 227U);
  EXPECT_EQ(SizeOf(999 + 3326), 63995U);
  EXPECT_EQ(SizeOf(999 + 3327), std::nullopt);
}

// 224 characters, then 9 rows of 9, 90 of 10, 900 of 11 and 4407 of 12 make 63989; twenty of them
// have two bytes.
TEST_F(ALongText, CountsCharactersAndNotBytes) {
  table.RecInterval = 10;
  table.Columns[0].Name.Set("ÄÖÜÄÖÜÄÖÜÄÖÜÄÖÜÄÖÜÄÖ");
  EXPECT_EQ(SizeOf(999 + 4407), 64009U);
  EXPECT_EQ(SizeOf(999 + 4408), std::nullopt);
}

}  // namespace
}  // namespace tavrel
