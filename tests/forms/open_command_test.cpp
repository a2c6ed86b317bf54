#include "tests/support/form_bench.h"

namespace tavrel {
namespace {

// cmd_Open on the real sheet. In place of the dialog stands what the user chooses in it.
class OpenCommand : public FormBench {
 protected:
  OpenCommand() {
    bench.screens.built = {View::kAllOpen};
    bench.screens.on_show = [this](View) {
      bench.state.Settings.OpenFile = "M250101A.OVN";
      bench.state.Settings.OpenPath = bench.home.File("tavdat");
    };
    Install(1, 1, 1, "Furnace");
    UnitRecord unit = BenchProgram::Header(3, 1, 2, false);
    unit.SetApparatusName("Old oven");
    bench.Install(12, "M250101A.OVN", unit);
    bench.state.Settings.ActiveFiles[11].clear();
  }
};

TEST_F(OpenCommand, IsGreyWithoutTheDialog) {
  bench.screens.built.clear();
  Start();
  EXPECT_FALSE(Find("cmd_Open")->isEnabled());
}

TEST_F(OpenCommand, ShowsTheFileInTheRowBelowTheSheet) {
  Start();
  EXPECT_FALSE(Find("Sheet_0")->isVisible());
  Click("cmd_Open");
  EXPECT_TRUE(Find("Sheet_0")->isVisible());
  EXPECT_EQ(TextOf("tx_Des_0"), "Old oven");
  EXPECT_EQ(TextOf("lb_File_0"), "m250101a.ovn");
  EXPECT_EQ(TextOf("lb_TavNo_0"), "3");
  EXPECT_FALSE(Find("cmd_Work_0")->isEnabled());
}

TEST_F(OpenCommand, ComesByTheKeyboardToo) {
  Start();
  QTest::keyClick(Find("cmd_Open"), Qt::Key_Return);
  EXPECT_TRUE(Find("Sheet_0")->isVisible());
}

}  // namespace
}  // namespace tavrel
