#include "command/ledger_report.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

LedgerFigures WithLosses() {
  LedgerFigures figures;
  figures.IsKnown = true;
  figures.Rows = 12;
  figures.Unwatched = 2;
  figures.Recorded = 9;
  figures.Live = 6;
  figures.Later = 3;
  figures.Filled = 1;
  figures.Questioned = 4;
  figures.Segments = 1;
  figures.Lost = {4, 6};
  figures.Losses = {
      {3, {3, 3}, {}, "2026-03-14T10:00:00+01:00", "the buffer was full"},
      {7, {1, 3}, 2, "2026-03-14T11:00:00+01:00", "the instrument was switched off and on"}};
  figures.Waiting = SetBounds{0, 5};
  return figures;
}

TEST(LedgerReport, TellsInWordsWhatIsMissingAndWhere) {
  EXPECT_EQ(LedgerWords(WithLosses()),
            "9 sets, 4 to 6 lost in several places, 1 filled in, 4 in question, "
            "2 rows without a journal"
            "\n  recorded live: 6"
            "\n  fetched later: 3"
            "\n  filled: 1"
            "\n  in question: 4"
            "\n  lost: 4 to 6"
            "\n    before row 3: 3, noticed 2026-03-14T10:00:00+01:00: the buffer was full"
            "\n    before row 7: 1 to 3 (about 2), noticed 2026-03-14T11:00:00+01:00: the "
            "instrument was switched off and on"
            "\n  in the instrument: 0 to 5"
            "\n  expected: 13 to 20"
            "\n  rows without a journal: 2");
}

TEST(LedgerReport, SaysWhereNobodyKnows) {
  LedgerFigures figures = WithLosses();
  figures.Lost.Most.reset();
  figures.Losses[0].Sets.Most.reset();
  figures.Waiting.reset();
  figures.Unwatched = 0;
  const std::string words = LedgerWords(figures);
  EXPECT_NE(words.find("\n  lost: 4 or more\n    before row 3: 3 or more, noticed"),
            std::string::npos)
      << words;
  EXPECT_TRUE(words.ends_with("\n  in the instrument: unknown\n  expected: 13 or more")) << words;
}

TEST(LedgerReport, GivesTheSameAsJson) {
  EXPECT_EQ(
      LedgerJson("A.OVN", WithLosses(), ""),
      R"({"file":"A.OVN","rows":12,"complete":false,"segments":1,"unwatched":2,"sets":9,"live":6,)"
      R"("later":3,"filled":1,"question":4,"lost":{"least":4,"most":6},)"
      R"("waiting":{"least":0,"most":5},"expected":{"least":13,"most":20},"losses":[)"
      R"({"before":3,"least":3,"most":3,"about":null,"time":"2026-03-14T10:00:00+01:00",)"
      R"("what":"the buffer was full"},)"
      R"({"before":7,"least":1,"most":3,"about":2,"time":"2026-03-14T11:00:00+01:00",)"
      R"("what":"the instrument was switched off and on"}]})"
      "\n");
}

TEST(LedgerReport, GivesNoNumberAsJsonWhereNobodyKnows) {
  LedgerFigures figures = WithLosses();
  figures.Lost.Most.reset();
  figures.Losses.clear();
  figures.Waiting.reset();
  const std::string json = LedgerJson("A.OVN", figures, "damaged, 12 rows");
  EXPECT_NE(json.find(R"("damaged":"damaged, 12 rows")"), std::string::npos) << json;
  EXPECT_NE(json.find(R"("lost":{"least":4,"most":null},"waiting":null,)"
                      R"("expected":{"least":13,"most":null},"losses":[]})"),
            std::string::npos)
      << json;
}

}  // namespace
}  // namespace tavrel
