#include "link/line_mode.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

struct ModeCase {
  int type_sel;
  int com_mode;
  const char* port_settings;
  bool link_direct;
  bool link_plugin;
};

class ModeTable : public testing::TestWithParam<ModeCase> {};

TEST_P(ModeTable, ChoosesSettingsAndKindOfLineWhateverWasBefore) {
  const ModeCase& param = GetParam();
  for (const bool was_direct : {false, true}) {
    LineMode before;
    before.LinkDirect = was_direct;
    before.LinkPlugin = param.type_sel != 1 && was_direct;  // variant 1 keeps it
    const LineMode mode = ChooseLineMode(before, param.type_sel, param.com_mode);
    EXPECT_EQ(mode.PortSettings, param.port_settings);
    EXPECT_EQ(mode.LinkDirect, param.link_direct);
    EXPECT_EQ(mode.LinkPlugin, param.link_plugin);
    EXPECT_EQ(mode.TypeSel, param.type_sel);
  }
}

INSTANTIATE_TEST_SUITE_P(
    AllVariants, ModeTable,
    testing::Values(
        ModeCase{1, 0, "9600,e,8,1", false, false}, ModeCase{1, 1, "9600,e,8,1", false, false},
        ModeCase{1, 2, "9600,e,8,1", false, false}, ModeCase{2, 0, "9600,n,8,2", true, false},
        ModeCase{2, 1, "9600,e,8,1", false, false}, ModeCase{2, 2, "9600,e,8,1", false, true},
        ModeCase{3, 0, "4800,n,8,2", true, false}, ModeCase{3, 1, "9600,e,8,1", false, false},
        ModeCase{3, 2, "9600,e,8,1", false, true}, ModeCase{4, 0, "4800,n,8,2", true, true},
        ModeCase{4, 1, "9600,e,8,1", false, true}, ModeCase{4, 2, "9600,e,8,1", false, true}));

TEST(LineMode, IsLeftAloneByAModeOutsideTheTable) {
  const LineMode direct = ChooseLineMode({}, 4, 0);
  for (const int com_mode : {-1, 3, 32767}) {
    const LineMode mode = ChooseLineMode(direct, 4, com_mode);
    EXPECT_EQ(mode.PortSettings, "4800,n,8,2");
    EXPECT_TRUE(mode.LinkDirect);
    EXPECT_TRUE(mode.LinkPlugin);
  }
}

TEST(LineMode, KeepsTheAddressingOfTheModeBeforeInVariantOne) {
  EXPECT_TRUE(ChooseLineMode(ChooseLineMode({}, 4, 1), 1, 0).LinkPlugin);
  EXPECT_FALSE(ChooseLineMode(ChooseLineMode({}, 2, 1), 1, 0).LinkPlugin);
}

}  // namespace
}  // namespace tavrel
