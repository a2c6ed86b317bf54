#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "graph/graph_output.h"
#include "tests/graph/report_fixture.h"

namespace tavrel {
namespace {

// The words of the ledger and the last seal, of a journal with a long loss.
void WriteProof(GraphBench& bench) {
  bench.WriteJournal({{"begin", {{"interval", 60}, {"line", "direct"}}},
                      {"start", {{"rows", 0}}},
                      {"lost",
                       {{"before", 7},
                        {"sets", 123},
                        {"least", 100},
                        {"most", 896},
                        {"what", "full"},
                        {"rows", 7}}},
                      {"seal", {{"rows", 40}, {"data", std::string(64, 'b')}}},
                      {"seal", {{"rows", 80}, {"data", "0123456789abcdef0123456789"}}},
                      {"stop", {{"rows", 80}}}});
}

TEST_F(TheReport, SaysHowCompleteTheRecordingIsAndItsLastSeal) {
  WriteProof(*this);
  ShowView(Slopes(80));
  for (const auto& [paper, layout] :
       {std::pair(kPortraitPaper, kPortrait), std::pair(kLandscapePaper, kLandscape)}) {
    const PaperSurface& page = Print(paper);
    const auto found = std::ranges::find_if(page.printed, [](const PrintedText& text) {
      return text.Text.starts_with("79 sets, 100 to 896 lost");
    });
    ASSERT_NE(found, page.printed.end());
    EXPECT_NEAR(Row(page, layout, found->Text), 4.5, 0.1);
    EXPECT_GE((found->Top) / page.dots_high * layout.Height, 4.0) << "beneath the grey bar";
    EXPECT_LE((found->Bottom) / page.dots_high * layout.Height, 5.0) << "above the plot";
    EXPECT_NEAR(Column(page, layout, found->Right), layout.Right - 2, 0.01);
    const auto seal = std::ranges::find_if(page.printed, [](const PrintedText& text) {
      return text.Text.starts_with("seal: 80 rows, 0123456789abcdef, ");
    });
    ASSERT_NE(seal, page.printed.end());
    EXPECT_NEAR(Row(page, layout, seal->Text), layout.FootText, 0.1);
    ExpectNothingOverlaps(page);
  }
}

TEST_F(TheReport, LongWordsOfTheLedgerStillFit) {
  program.state.Settings.HelpLang = "German";
  program.state.Settings.PFontSize = 24;
  WriteProof(*this);
  ShowView(Slopes(80));
  for (const auto& paper : {kPortraitPaper, kLandscapePaper}) {
    const PaperSurface& page = Print(paper);
    EXPECT_TRUE(std::ranges::any_of(page.printed, [](const PrintedText& text) {
      return text.Text.starts_with("Siegel: 80 Zeilen");
    }));
    ExpectNothingOverlaps(page);
  }
}

// Beneath the grey bar there is room of one row of the page, whatever size the user has chosen; no
// smaller either, so that it stays legible.
TEST_F(TheReport, TheWordsOfTheLedgerAreAsHighAsTheirRowAllows) {
  constexpr double kRowsHigh = 0.8;
  program.state.Settings.PFontSize = 24;
  WriteJournal({{"begin", {{"interval", 60}, {"line", "direct"}}},
                {"start", {{"rows", 0}}},
                {"seal", {{"rows", 80}, {"data", std::string(64, 'b')}}},
                {"stop", {{"rows", 80}}}});
  ShowView(Slopes(80));
  for (const auto& [paper, layout] :
       {std::pair(kPortraitPaper, kPortrait), std::pair(kLandscapePaper, kLandscape)}) {
    const PaperSurface& page = Print(paper);
    const PrintedText& words = TextOn(page, "79 sets, complete");
    EXPECT_NEAR((words.Bottom - words.Top) / page.dots_high * layout.Height, kRowsHigh, 0.01);
  }
}

TEST_F(TheReport, SaysNothingOfARecordingWithoutAJournal) {
  const std::size_t without = PrintSlopes().printed.size();
  WriteProof(*this);
  EXPECT_EQ(Print().printed.size(), without + 2);
  EXPECT_TRUE(
      std::ranges::none_of(program.printer.pages.front().printed, [](const PrintedText& text) {
        return text.Text.find("ledger") != std::string::npos ||
               text.Text.find("sets") != std::string::npos;
      }));
}

}  // namespace
}  // namespace tavrel
