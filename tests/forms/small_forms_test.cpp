#include <QPushButton>
#include <QTreeWidget>

#include "dialogs/forms/all_dir.h"
#include "dialogs/forms/all_msg.h"
#include "tests/forms/modal_bench.h"

namespace tavrel {
namespace {

class DirectoryWindow : public ModalBench {
 protected:
  DirectoryWindow() {
    bench.screens.on_show = [this](View) { AllDir(directory).Run(); };
    std::filesystem::create_directories(bench.home.File("tavdat/Anneal/Old"));
    std::filesystem::create_directories(bench.home.File("tavdat/Temper"));
  }
  std::optional<std::string> Ask() { return directory.Ask(bench.home.File("tavdat")); }
  std::string In(const char* name) { return bench.home.File("tavdat") + name; }
  static QTreeWidget* Tree() { return Find<QTreeWidget>("DirList"); }
  static QTreeWidgetItem* Item(const char* name) {
    const auto found = Tree()->findItems(name, Qt::MatchExactly | Qt::MatchRecursive);
    EXPECT_EQ(found.size(), 1) << name;
    return found.value(0);
  }
  static void ClickItem(const char* name, bool twice) {
    const QPoint place = Tree()->visualItemRect(Item(name)).center();
    QTest::mouseClick(Tree()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    if (twice) {
      QTest::mouseDClick(Tree()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
    }
  }
};

TEST_F(DirectoryWindow, BeginsWithTheGivenDirectory) {
  Then("ALL_DIR", [this] {
    EXPECT_EQ(Form()->windowTitle(), " Select ...");
    EXPECT_EQ(Tree()->currentItem()->text(0), "tavdat");
    EXPECT_EQ(Find("path")->toolTip().toStdString(), In(""));
    EXPECT_EQ(TipOf("CmdOK"), " ok  (enter-key)  ");
    EXPECT_EQ(bench.state.ActiveView, View::kAllDir);
    Click("CmdOK");
  });
  EXPECT_EQ(Ask(), In(""));
  EXPECT_EQ(bench.state.ActiveView, View::kMainSheet);
}

TEST_F(DirectoryWindow, IsDrivenByTheMouse) {
  Then("ALL_DIR", [] {
    ClickItem("Anneal", true);
    ClickItem("Old", false);
    Click("CmdOK");
  });
  EXPECT_EQ(Ask(), In("/Anneal/Old"));
}

TEST_F(DirectoryWindow, IsDrivenByTheKeyboardAlone) {
  Then("ALL_DIR", [] {
    EXPECT_EQ(QApplication::focusWidget()->objectName(), "DirList");
    Key(Qt::Key_Down);
    Key(Qt::Key_Right);
    Key(Qt::Key_Down);
    Key(Qt::Key_Right);
    EXPECT_EQ(Tree()->currentItem()->text(0), "Old");
    Key(Qt::Key_Left);
    EXPECT_EQ(Tree()->currentItem()->text(0), "Anneal");
    Key(Qt::Key_Left);
    Key(Qt::Key_Down);
    Key(Qt::Key_Down);
    Key(Qt::Key_Return);
  });
  EXPECT_EQ(Ask(), In("/Temper"));
}

TEST_F(DirectoryWindow, GivesNothingAfterEscapeAndTheCloseBox) {
  Then("ALL_DIR", [] {
    Key(Qt::Key_Down);
    Key(Qt::Key_Escape);
  });
  EXPECT_EQ(Ask(), std::nullopt);
  Then("ALL_DIR", [] { Form()->close(); });
  EXPECT_EQ(Ask(), std::nullopt);
}

TEST_F(DirectoryWindow, ChangesTheDrive) {
  Then("ALL_DIR", [] {
    auto* drives = Find<QComboBox>("DrvList");
    EXPECT_EQ(drives->currentText(), "computer  (/)");
    emit drives->currentIndexChanged(0);
    EXPECT_EQ(Find("path")->toolTip(), "/");
    Click("CmdOK");
  });
  EXPECT_EQ(Ask(), "/");
}

TEST_F(DirectoryWindow, SpeaksGerman) {
  bench.state.Settings.HelpLang = "German";
  Then("ALL_DIR", [] {
    EXPECT_EQ(TipOf("CmdOK"), " Auswählen  (Eingabe-Taste) ");
    Key(Qt::Key_Escape);
  });
  EXPECT_EQ(Ask(), std::nullopt);
}

class MessageWindow : public ModalBench {
 protected:
  MessageWindow() {
    bench.screens.built.insert(View::kAllMsg);
    bench.screens.on_show = [this](View) { AllMsg(message).Run(); };
  }
  MessageBoxLogic message{bench.state, bench.screens};
};

TEST_F(MessageWindow, ShowsItsLinesAndItsPicture) {
  Then("ALL_MSG", [this] {
    EXPECT_EQ(Form()->windowTitle(), "Check");
    EXPECT_EQ(TextOf("Msg_0"), "one");
    EXPECT_EQ(TextOf("Msg_1"), "two");
    EXPECT_FALSE(Find("Msg_2")->isVisible());
    EXPECT_TRUE(Find("Img_Attention")->isVisible());
    EXPECT_FALSE(Find("Img_Question")->isVisible());
    EXPECT_FALSE(Find("CmdCancel")->isVisible());
    EXPECT_EQ(TipOf("CmdOK"), " ok   (enter-key)");
    EXPECT_EQ(bench.state.ActiveView, View::kAllMsg);
    Click("CmdOK");
  });
  EXPECT_TRUE(message.Ask({"one\rtwo", "Check", true, false, false}));
}

TEST_F(MessageWindow, TakesEscapeForCancelOnlyIfTheButtonShows) {
  Then("ALL_MSG", [] {
    Key(Qt::Key_Escape);
    EXPECT_TRUE(Form()->isVisible());
    Form()->close();
    EXPECT_TRUE(Form()->isVisible());
    Key(Qt::Key_Return);
  });
  EXPECT_TRUE(message.Ask({"done", "Check", false, true, false}));
  Then("ALL_MSG", [] { Key(Qt::Key_Escape); });
  EXPECT_FALSE(message.Ask({"sure ?", "Check", false, true, true}));
}

TEST_F(MessageWindow, TakesEnterForOkEvenOnTheOtherButton) {
  Then("ALL_MSG", [] {
    Find("CmdCancel")->setFocus();
    Key(Qt::Key_Return);
  });
  EXPECT_TRUE(message.Ask({"sure ?", "Check", false, true, true}));
  Then("ALL_MSG", [] { Click("CmdCancel"); });
  EXPECT_FALSE(message.Ask({"sure ?", "Check", false, true, true}));
}

TEST_F(MessageWindow, SpeaksGerman) {
  bench.state.Settings.HelpLang = "german";
  Then("ALL_MSG", [] {
    EXPECT_EQ(TipOf("CmdOK"), " Ja  (Eingabe-Taste) ");
    Key(Qt::Key_Return);
  });
  EXPECT_TRUE(message.Ask({"fertig", "Check", true, false, false}));
}

}  // namespace
}  // namespace tavrel
