#include <gtest/gtest.h>

#include "dialogs/choose_directory.h"
#include "dialogs/message_box_logic.h"
#include "tests/support/fake_screen.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

class ChooseDirectory : public testing::Test {
 protected:
  ChooseDirectory() {
    screens.built = {View::kAllDir};
    state.ActiveView = View::kTavSett;
  }
  TemporaryDirectory home;
  RunState state;
  FakeScreens screens;
  DirectoryChoice choice{state, screens, [] { return std::vector<Place>{{"computer", "/"}}; }};
};

TEST_F(ChooseDirectory, BeginsWithTheGivenDirectoryAndGivesTheChosenOne) {
  std::filesystem::create_directory(home.File("Next"));
  screens.on_show = [this](View) {
    EXPECT_EQ(state.ActiveView, View::kAllDir);
    EXPECT_EQ(choice.Lists().Path(), home.Path());
    choice.Lists().SelectLine(choice.Lists().SelectedLine() + 1);
    choice.CmdOK_Click();
    EXPECT_FALSE(choice.IsOpen());
    EXPECT_EQ(state.ActiveView, View::kTavSett);
  };
  EXPECT_EQ(choice.Ask(home.Path() + "/"), home.File("Next"));
}

TEST_F(ChooseDirectory, GivesNothingAfterEscape) {
  screens.on_show = [this](View) {
    EXPECT_TRUE(choice.IsOpen());
    choice.Quit();
  };
  EXPECT_EQ(choice.Ask(home.Path()), std::nullopt);
  EXPECT_EQ(state.ActiveView, View::kTavSett);
}

TEST_F(ChooseDirectory, GivesNothingIfTheFormIsMissing) {
  screens.built.clear();
  EXPECT_EQ(choice.Ask(home.Path()), std::nullopt);
  EXPECT_EQ(state.ActiveView, View::kTavSett);
}

TEST_F(ChooseDirectory, HasItsTips) {
  EXPECT_EQ(DirectoryChoice::kOkTip.In(choice.TipLanguage()), " ok  (enter-key)  ");
  state.Settings.HelpLang = "German";
  EXPECT_EQ(DirectoryChoice::kOkTip.In(choice.TipLanguage()), " Auswählen  (Eingabe-Taste) ");
}

class FamilyMessage : public testing::Test {
 protected:
  FamilyMessage() {
    screens.built = {View::kAllMsg};
    state.ActiveView = View::kTavCtrl;
  }
  RunState state;
  FakeScreens screens;
  MessageBoxLogic message{state, screens};
};

TEST_F(FamilyMessage, SplitsItsTextAtTheFirstTwoLineEnds) {
  message.Ask({"one\rtwo\rthree\rfour", "title", true, false, false});
  EXPECT_EQ(message.Msg(), (std::array<std::string, 3>{"one", "two", "three\rfour"}));
  message.Ask({"one\r\n\r\nthree", "title", true, false, false});
  EXPECT_EQ(message.Msg(), (std::array<std::string, 3>{"one", "", "three"}));
  message.Ask({"", "title", true, false, false});
  EXPECT_EQ(message.Msg(), (std::array<std::string, 3>{"", "", ""}));
}

TEST_F(FamilyMessage, AnswersTrueAfterOkAndFalseAfterCancel) {
  screens.on_show = [this](View) {
    EXPECT_EQ(state.ActiveView, View::kAllMsg);
    message.CmdOK_Click();
    EXPECT_EQ(state.ActiveView, View::kTavCtrl);
  };
  EXPECT_TRUE(message.Ask({"sure ?", "title", false, true, true}));
  EXPECT_TRUE(message.AskResult());
  screens.on_show = [this](View) {
    message.CmdCancel_Click();
    EXPECT_FALSE(message.IsOpen());
    EXPECT_EQ(state.ActiveView, View::kTavCtrl);
  };
  EXPECT_FALSE(message.Ask({"sure ?", "title", false, true, true}));
  EXPECT_FALSE(message.AskResult());
}

TEST_F(FamilyMessage, IgnoresEscapeWithoutACancelButton) {
  screens.on_show = [this](View) {
    message.CmdCancel_Click();
    EXPECT_TRUE(message.IsOpen());
    message.CmdOK_Click();
    EXPECT_FALSE(message.IsOpen());
  };
  EXPECT_TRUE(message.Ask({"done", "title", true, false, false}));
}

TEST_F(FamilyMessage, HasItsTips) {
  EXPECT_EQ(MessageBoxLogic::kOkTip.In(message.TipLanguage()), " ok   (enter-key)");
  EXPECT_EQ(MessageBoxLogic::kCancelTip.In(message.TipLanguage()), " cancel  (esc-key) ");
  state.Settings.HelpLang = "German";
  EXPECT_EQ(MessageBoxLogic::kOkTip.In(message.TipLanguage()), " Ja  (Eingabe-Taste) ");
}

}  // namespace
}  // namespace tavrel
