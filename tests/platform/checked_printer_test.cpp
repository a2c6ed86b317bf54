#include "platform/checked_printer.h"

#include <gtest/gtest.h>

#include <map>

#include "tests/support/fake_output.h"

namespace tavrel {
namespace {

// A print server. Levers: queues are what it has; no_server for a system without one, takes for
// what it says to the page that was handed over.
class FakeQueues : public PrintQueues {
 public:
  std::map<std::string, PrintQueue> queues;
  bool no_server = false;
  bool takes = true;
  std::vector<std::string> asked;

  [[nodiscard]] std::optional<PrintQueue> Find(const std::string& name) override {
    asked.push_back(name);
    return no_server ? std::nullopt : std::optional(queues[name]);
  }
  [[nodiscard]] bool HasTakenLast() override { return takes; }
};

class PrintOnAQueue : public testing::Test {
 protected:
  PrintOnAQueue() {
    inner.chosen->PrinterName = "Laser";
    queues.queues["Laser"] = {true, "3", "true"};
  }
  // A page from the dialog to its end.
  bool PrintPage() {
    PrintChoice choice;
    return printer.Choose(choice) && printer.BeginPage() != nullptr && printer.EndPage();
  }

  FakePrinter inner;
  FakeQueues queues;
  CheckedPrinter printer{inner, queues};
};

TEST_F(PrintOnAQueue, ThatIsIdleOrAtWorkEndsWell) {
  for (const char* state : {"3", "4", ""}) {
    queues.queues["Laser"].State = state;
    EXPECT_TRUE(PrintPage()) << state;
  }
  EXPECT_EQ(inner.pages.size(), 3U);
}

TEST_F(PrintOnAQueue, ThatIsStoppedBeginsNoPage) {
  queues.queues["Laser"].State = "5";
  EXPECT_FALSE(PrintPage());
  EXPECT_TRUE(inner.pages.empty());
}

TEST_F(PrintOnAQueue, ThatRejectsBeginsNoPage) {
  queues.queues["Laser"].Accepts = "false";
  EXPECT_FALSE(PrintPage());
  EXPECT_TRUE(inner.pages.empty());
}

// The same as a server that does not answer.
TEST_F(PrintOnAQueue, ThatIsGoneBeginsNoPage) {
  inner.on_choose = [this] { queues.queues.clear(); };
  EXPECT_FALSE(PrintPage());
  EXPECT_TRUE(inner.pages.empty());
}

TEST_F(PrintOnAQueue, ThatRefusesThePageFails) {
  queues.takes = false;
  EXPECT_FALSE(PrintPage());
  EXPECT_EQ(inner.pages.size(), 1U);
}

// Between two copies somebody may stop it.
TEST_F(PrintOnAQueue, IsAskedForEachPage) {
  PrintChoice choice;
  ASSERT_TRUE(printer.Choose(choice));
  ASSERT_NE(printer.BeginPage(), nullptr);
  ASSERT_TRUE(printer.EndPage());
  queues.queues["Laser"].State = "5";
  EXPECT_EQ(printer.BeginPage(), nullptr);
  EXPECT_EQ(queues.asked, (std::vector<std::string>{"Laser", "Laser"}));
}

TEST_F(PrintOnAQueue, IsNotAskedAfterForAFile) {
  inner.chosen->OutputFile = "/tmp/report.pdf";
  queues.queues.clear();
  queues.takes = false;
  EXPECT_TRUE(PrintPage());
  EXPECT_TRUE(queues.asked.empty());
}

TEST_F(PrintOnAQueue, GoesOnWhereNobodyCanBeAsked) {
  queues.no_server = true;
  queues.takes = false;
  EXPECT_TRUE(PrintPage());
}

TEST_F(PrintOnAQueue, PassesOnWhatThePrinterSays) {
  inner.fail_page = 1;
  EXPECT_FALSE(PrintPage());
  inner.fail_page = 0;
  inner.no_page = 2;
  EXPECT_FALSE(PrintPage());
  inner.fail_job = true;
  EXPECT_FALSE(printer.EndJob());
  inner.fail_job = false;
  EXPECT_TRUE(printer.EndJob());
  inner.chosen.reset();
  EXPECT_FALSE(PrintPage());
}

TEST(PrinterInks, GiveColoursToAPrinterThatKnowsThem) {
  const PrinterInks colour{false, true, false};
  const PrinterInks grey_by_wish{false, true, true};
  const PrinterInks black{false, false, true};
  const PrinterInks silent{true, false, true};
  for (const PrinterInks& inks : {colour, grey_by_wish, black, silent}) {
    EXPECT_FALSE(GetsColours(inks, false));
  }
  EXPECT_TRUE(GetsColours(colour, true));
  EXPECT_TRUE(GetsColours(grey_by_wish, true));
  EXPECT_FALSE(GetsColours(black, true));
  EXPECT_TRUE(GetsColours(silent, true));
}

// The user may turn from a black printer to one with colours.
TEST(PrinterInks, BeginInGreyOnlyWhereThePrinterAsksForIt) {
  EXPECT_TRUE(BeginsInColour({false, true, false}));
  EXPECT_FALSE(BeginsInColour({false, true, true}));
  EXPECT_TRUE(BeginsInColour({false, false, true}));
  EXPECT_TRUE(BeginsInColour({true, false, true}));
}

}  // namespace
}  // namespace tavrel
