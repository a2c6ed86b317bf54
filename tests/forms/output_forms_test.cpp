#include <gmock/gmock.h>

#include <QAction>

#include "tests/forms/graph_form_bench.h"

namespace tavrel {
namespace {

using testing::HasSubstr;

// TavGraph with its menu "Output" and its three buttons, over the doubles of printer and clipboard.
class OutputForms : public GraphFormBench {
 protected:
  // The action in the part view 10..60 minutes.
  void InPartView(std::function<void()> action) {
    Then("TavGraph", [this, action = std::move(action)] {
      ASSERT_TRUE(GoToPart({10, 100}, {60, 600}));
      ASSERT_TRUE(WaitUntil([] { return Find("PbPrint")->isEnabled(); }));
      action();
      Key(Qt::Key_Escape);
    });
    Run(Slopes(80));
  }
  static void Choose(const char* entry) { Form()->findChild<QAction*>(entry)->trigger(); }
};

TEST_F(OutputForms, PrintByMenuAndByButton) {
  InPartView([this] {
    Choose("MnuPrint");
    EXPECT_EQ(program.printer.pages.size(), 1U);
    Click("PbPrint");
    EXPECT_EQ(program.printer.pages.size(), 2U);
    EXPECT_TRUE(Find("PbPrint")->isEnabled());
  });
}

TEST_F(OutputForms, ShowTheButtonDisabledBeneathTheDialog) {
  InPartView([this] {
    bool was_disabled = false;
    program.printer.on_choose = [&] {
      was_disabled = WaitUntil([] { return !Find("PbPrint")->isEnabled(); });
    };
    Click("PbPrint");
    EXPECT_TRUE(was_disabled);
    EXPECT_TRUE(Find("PbPrint")->isEnabled());
  });
}

TEST_F(OutputForms, SaveASubfileByMenuAndByButton) {
  InPartView([this] {
    program.dialogs.chosen_file = program.home.File("tavdat/S1.OVN");
    Choose("MnuSubFile");
    EXPECT_TRUE(program.home.Exists("tavdat/S1.OVN"));
    program.dialogs.chosen_file = program.home.File("tavdat/S2.OVN");
    Click("PbSave");
    EXPECT_TRUE(program.home.Exists("tavdat/S2.OVN"));
  });
}

TEST_F(OutputForms, SaveAndCopyTheText) {
  InPartView([this] {
    program.dialogs.chosen_file = program.home.File("tavdat/OUT.ASC");
    Choose("MnuASCII");
    EXPECT_THAT(program.home.Read("tavdat/OUT.ASC"), HasSubstr("\r\n60; 110.00; 210.00; 310.00; "));
    Choose("MnuData");
    EXPECT_THAT(program.clipboard.text, HasSubstr("\r\n60\t110.00\t210.00\t310.00\r\n"));
  });
}

TEST_F(OutputForms, CopyThePictureByMenuAndByButton) {
  InPartView([this] {
    Choose("MnuGraph");
    ASSERT_TRUE(program.clipboard.picture.has_value());
    const std::size_t strokes = program.clipboard.picture->strokes.size();
    EXPECT_GT(strokes, 150U);
    program.clipboard.picture.reset();
    Click("PbCopy");
    ASSERT_TRUE(program.clipboard.picture.has_value());
    EXPECT_EQ(program.clipboard.picture->strokes.size(), strokes);
  });
}

// The timer of the form goes on after an output, so that the recording is seen to grow.
TEST_F(OutputForms, GoOnDrawingAfterAnOutput) {
  InPartView([this] {
    Click("PbCopy");
    program.state.PartPrepared = false;
    EXPECT_TRUE(WaitUntil([this] { return program.state.PartPrepared; }));
  });
}

}  // namespace
}  // namespace tavrel
