#include "dialogs/program_file.h"

#include <gtest/gtest.h>

#include "tests/support/fake_screen.h"

namespace tavrel {
namespace {

class ProgramFile : public testing::Test {
 protected:
  ProgramFile() {
    state.Settings.ProgPath = "/opt/tavrel";
    state.Settings.ProgFile = "temper.prg";
  }
  RunState state;
  FakeDialogs dialogs;
};

TEST_F(ProgramFile, AsksForAnExistingProgram) {
  EXPECT_FALSE(ChooseProgramFile(state, dialogs));
  ASSERT_EQ(dialogs.file_dialogs.size(), 1U);
  const FileChoice& asked = dialogs.file_dialogs[0];
  EXPECT_EQ(asked.Mode, FileMode::kOpen);
  EXPECT_EQ(asked.Directory, "/opt/tavrel");
  EXPECT_EQ(asked.FileName, "temper.prg");
  EXPECT_EQ(asked.DefaultExtension, "prg");
  EXPECT_EQ(asked.Filter, "program  (*.prg)|*.prg");
}

TEST_F(ProgramFile, StaysAfterCancel) {
  EXPECT_FALSE(ChooseProgramFile(state, dialogs));
  EXPECT_EQ(state.Settings.ProgFile, "temper.prg");
  EXPECT_FALSE(state.SettingsChanged);
}

TEST_F(ProgramFile, IsKeptInTheSettings) {
  dialogs.chosen_file = "/home/maria/Programs/Anneal.PRG";
  EXPECT_TRUE(ChooseProgramFile(state, dialogs));
  EXPECT_EQ(state.Settings.ProgPath, "/home/maria/Programs/");
  EXPECT_EQ(state.Settings.ProgFile, "Anneal.PRG");
  EXPECT_TRUE(state.SettingsChanged);
  state.SettingsChanged = false;
  EXPECT_TRUE(ChooseProgramFile(state, dialogs));
  EXPECT_FALSE(state.SettingsChanged) << "the same file again changes nothing";
}

}  // namespace
}  // namespace tavrel
