#include "platform/qt/qt_dialogs.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QWindow>

#include "platform/qt/box_icons.h"
#include "platform/qt/qt_screens.h"
#include "tests/support/wait_until.h"

namespace tavrel {
namespace {

class Boxes : public testing::Test {
 protected:
  // Does `action` to the next box as soon as it is there.
  template <typename Action>
  void WhenABoxComes(Action action) {
    poll.callOnTimeout([this, action] {
      auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
      if (box != nullptr) {
        poll.stop();
        text = box->text();
        advice = box->informativeText();
        width = box->width();
        title = box->windowTitle();
        icon = box->icon();
        format = box->textFormat();
        action(box);
      }
    });
    poll.start(1);
  }
  void Press(QMessageBox::StandardButton button) {
    WhenABoxComes([button](QMessageBox* box) { box->button(button)->click(); });
  }
  void PressKey(Qt::Key key) {
    WhenABoxComes([key](QMessageBox* box) { QTest::keyClick(box, key); });
  }
  static QListWidget* Notices() {
    for (QWidget* window : QApplication::topLevelWidgets()) {
      if (window->objectName() == "notices") {
        return window->findChild<QListWidget*>("list");
      }
    }
    return nullptr;
  }

  QtEvents events;
  QtDialogs dialogs{events};
  QTimer poll;
  QString text;
  QString advice;
  int width = 0;
  QString title;
  QMessageBox::Icon icon = QMessageBox::NoIcon;
  Qt::TextFormat format = Qt::AutoText;
};

TEST_F(Boxes, SayTheirTextAsItIs) {
  Press(QMessageBox::Ok);
  dialogs.Message({"<b>M260314A.OVN</b>  not found !", "Read  file", BoxIcon::kWarning});
  EXPECT_EQ(text, "<b>M260314A.OVN</b>  not found !");
  EXPECT_EQ(title, "Read  file");
  EXPECT_EQ(icon, QMessageBox::Warning);
  EXPECT_EQ(format, Qt::PlainText);
}

TEST_F(Boxes, AnswersAreInTheUsersLanguage) {
  dialogs.SpeakIn([] { return Language::kGerman; });
  QStringList captions;
  WhenABoxComes([&captions](QMessageBox* box) {
    for (const QAbstractButton* button : box->buttons()) {
      captions.push_back(button->text());
    }
    box->reject();
  });
  EXPECT_EQ(dialogs.AskSave({"Save Program ?", "program", BoxIcon::kQuestion}), SaveAnswer::kStay);
  captions.sort();
  EXPECT_EQ(captions, (QStringList{"&Ja", "&Nein", "Abbrechen"}));
}

TEST_F(Boxes, ShowTheAdviceAsAParagraphOfItsOwn) {
  Press(QMessageBox::Ok);
  dialogs.Message({"COM1 is in use.\n\nClose it\n\n\nor <b>not</b>.", "Open", BoxIcon::kWarning});
  EXPECT_EQ(text, "COM1 is in use.");
  EXPECT_EQ(advice, "Close it\n\n\nor <b>not</b>.");
}

TEST_F(Boxes, AreWideEnoughForTheirTitle) {
  const QString title_of_it = QString("a title with room ").repeated(3).trimmed();
  Press(QMessageBox::Ok);
  dialogs.Message({"no", title_of_it.toStdString(), BoxIcon::kWarning});
  QFont bold = QApplication::font();
  bold.setBold(true);
  const QFontMetrics metrics(bold);
  EXPECT_GE(width, metrics.horizontalAdvance(title_of_it) + 8 * metrics.height());
}

TEST_F(Boxes, KeepAPathAndACommandOnOneLine) {
  for (const char* line : {"/home/weber/.local/share/tavrel/tavdat/M260314A.TUB.ASC",
                           "sudo usermod -aG dialout $USER"}) {
    int high = 0;
    WhenABoxComes([&high](QMessageBox* box) {
      high = box->findChild<QLabel*>("qt_msgbox_informativelabel")->height();
      box->accept();
    });
    dialogs.Message({std::string("It is\n\n") + line, "TAVREL", BoxIcon::kInformation});
    EXPECT_GE(width, QFontMetrics(QApplication::font()).horizontalAdvance(line)) << line;
    EXPECT_LT(2 * high, 5 * QFontMetrics(QApplication::font()).height()) << "one line and air";
    poll.disconnect();
  }
}

TEST_F(Boxes, OfferAnActionBesideOk) {
  const Notice written{"written", "ASCII - file", BoxIcon::kInformation};
  QStringList captions;
  WhenABoxComes([&captions](QMessageBox* box) {
    for (QAbstractButton* button : box->buttons()) {
      captions.push_back(button->text());
      if (button->text() == "Open folder") {
        button->click();
      }
    }
  });
  EXPECT_TRUE(dialogs.Offer(written, "Open folder"));
  EXPECT_EQ(captions.size(), 2);
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
    poll.disconnect();
    PressKey(key);
    EXPECT_FALSE(dialogs.Offer(written, "Open folder"));
  }
}

// The share of the dots of the sign's square that are neither its own full colours nor empty:
// what is scaled up is soft at all its edges.
double Softness(const QImage& picture) {
  int soft = 0;
  int full = 0;
  for (int y = 0; y < picture.height(); ++y) {
    for (int x = 0; x < picture.width(); ++x) {
      const int alpha = qAlpha(picture.pixel(x, y));
      soft += alpha > 0 && alpha < 255 ? 1 : 0;
      full += alpha == 255 ? 1 : 0;
    }
  }
  return static_cast<double>(soft) / full;
}

TEST(BoxSigns, AreDrawnAnewForEachScale) {
  for (const BoxIcon icon :
       {BoxIcon::kInformation, BoxIcon::kQuestion, BoxIcon::kWarning, BoxIcon::kCritical}) {
    const QImage one = BoxSign(icon).pixmap(QSize(32, 32), 1).toImage();
    const QImage four = BoxSign(icon).pixmap(QSize(32, 32), 4).toImage();
    EXPECT_EQ(one.size(), QSize(32, 32));
    EXPECT_EQ(four.size(), QSize(128, 128));
    EXPECT_LT(Softness(four), Softness(one) / 2);
  }
  EXPECT_TRUE(BoxSign(BoxIcon::kNone).isNull());
}

TEST_F(Boxes, HaveTheProgramsOwnSign) {
  QImage sign;
  WhenABoxComes([&sign](QMessageBox* box) {
    sign = box->iconPixmap().toImage();
    box->accept();
  });
  dialogs.Message({"text", "title", BoxIcon::kCritical});
  EXPECT_EQ(sign, BoxSign(BoxIcon::kCritical).pixmap(sign.size()).toImage());
}

TEST_F(Boxes, MessageIsLeftByEscape) {
  PressKey(Qt::Key_Escape);
  dialogs.Message({"text", "title", BoxIcon::kInformation});
  EXPECT_EQ(text, "text");
}

TEST_F(Boxes, OkIsTrueAndCancelAndEscapeAreFalse) {
  const Notice exit{"Exit", "TAVREL", BoxIcon::kQuestion};
  Press(QMessageBox::Ok);
  EXPECT_TRUE(dialogs.AskOk(exit));
  poll.disconnect();
  Press(QMessageBox::Cancel);
  EXPECT_FALSE(dialogs.AskOk(exit));
  poll.disconnect();
  PressKey(Qt::Key_Escape);
  EXPECT_FALSE(dialogs.AskOk(exit));
}

TEST_F(Boxes, RetryAndYesAreTrue) {
  Press(QMessageBox::Retry);
  EXPECT_TRUE(dialogs.AskRetry({"in use", "Open COM1", BoxIcon::kCritical}));
  poll.disconnect();
  Press(QMessageBox::Yes);
  EXPECT_TRUE(dialogs.AskYes({"sure ?", "TAVREL", BoxIcon::kQuestion}));
}

TEST_F(Boxes, EscapeIsNo) {
  PressKey(Qt::Key_Escape);
  EXPECT_FALSE(dialogs.AskYes({"sure ?", "TAVREL", BoxIcon::kQuestion}));
}

TEST_F(Boxes, EnterTakesTheAnswerThatDoesNoHarmWhereItIsPreset) {
  PressKey(Qt::Key_Return);
  EXPECT_TRUE(dialogs.AskOk({"simulate ?", "Settings", BoxIcon::kWarning}));
  poll.disconnect();
  PressKey(Qt::Key_Return);
  EXPECT_FALSE(dialogs.AskOk({"simulate ?", "Settings", BoxIcon::kWarning, true}));
  poll.disconnect();
  PressKey(Qt::Key_Return);
  EXPECT_FALSE(dialogs.AskYes({"simulate ?", "Settings", BoxIcon::kWarning, true}));
  poll.disconnect();
  PressKey(Qt::Key_Return);
  dialogs.Message({"text", "title", BoxIcon::kWarning, true});
}

TEST_F(Boxes, EscapeGoesBackToAWorkThatIsNotSaved) {
  const Notice question{"Save Program ?", "program", BoxIcon::kQuestion};
  PressKey(Qt::Key_Escape);
  EXPECT_EQ(dialogs.AskSave(question), SaveAnswer::kStay);
  poll.disconnect();
  Press(QMessageBox::Cancel);
  EXPECT_EQ(dialogs.AskSave(question), SaveAnswer::kStay);
  poll.disconnect();
  Press(QMessageBox::No);
  EXPECT_EQ(dialogs.AskSave(question), SaveAnswer::kDiscard);
  poll.disconnect();
  PressKey(Qt::Key_Return);
  EXPECT_EQ(dialogs.AskSave(question), SaveAnswer::kSave);
}

TEST_F(Boxes, RetryOrExitIsLeftByItsButtonsAndByEscape) {
  const Notice unreadable{"cannot be read", "TAVREL.USR", BoxIcon::kCritical};
  QString exit;
  WhenABoxComes([&exit](QMessageBox* box) {
    exit = box->button(QMessageBox::Close)->text();
    box->button(QMessageBox::Retry)->click();
  });
  EXPECT_TRUE(dialogs.AskRetryOrExit(unreadable));
  EXPECT_EQ(exit, "Exit");
  poll.disconnect();
  Press(QMessageBox::Close);
  EXPECT_FALSE(dialogs.AskRetryOrExit(unreadable));
  poll.disconnect();
  PressKey(Qt::Key_Escape);
  EXPECT_FALSE(dialogs.AskRetryOrExit(unreadable));
}

// A question that nobody waits for.
class BesideBoxes : public Boxes {
 protected:
  QMessageBox* Ask() {
    dialogs.AskBeside({"simulate ?", "Simulation", BoxIcon::kWarning},
                      [this](bool yes) { answers.push_back(yes); });
    for (QWidget* window : QApplication::topLevelWidgets()) {
      auto* box = qobject_cast<QMessageBox*>(window);
      if (box != nullptr && box->isVisible()) {
        return box;
      }
    }
    return nullptr;
  }
  std::vector<bool> answers;
};

TEST_F(BesideBoxes, DoNotBlockAndAreAnsweredLater) {
  QMessageBox* box = Ask();
  ASSERT_NE(box, nullptr);
  EXPECT_FALSE(box->isModal());
  EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
  EXPECT_TRUE(answers.empty());
  box->button(QMessageBox::Yes)->click();
  EXPECT_EQ(answers, std::vector<bool>{true});
}

TEST_F(BesideBoxes, MeanNoByEnterEscapeAndTheCloseBox) {
  QTest::keyClick(Ask(), Qt::Key_Return);
  QTest::keyClick(Ask(), Qt::Key_Escape);
  Ask()->close();
  Ask()->button(QMessageBox::No)->click();
  EXPECT_EQ(answers, std::vector<bool>(4, false));
}

TEST_F(BesideBoxes, GoWithTheProgramUnanswered) {
  {
    QtDialogs of_a_program(events);
    of_a_program.AskBeside({"simulate ?", "Simulation", BoxIcon::kWarning},
                           [this](bool yes) { answers.push_back(yes); });
  }
  EXPECT_TRUE(answers.empty());
}

TEST_F(Boxes, ShowTheNormalPointer) {
  bool has_hourglass = true;
  WhenABoxComes([&has_hourglass](QMessageBox* box) {
    has_hourglass = QApplication::overrideCursor() != nullptr;
    box->button(QMessageBox::Ok)->click();
  });
  events.SetPointer(Pointer::kHourglass);
  dialogs.Message({"text", "title", BoxIcon::kInformation});
  EXPECT_FALSE(has_hourglass);
  EXPECT_NE(QApplication::overrideCursor(), nullptr);
}

TEST_F(Boxes, AnnouncementsGatherInOneWindowAndDoNotWait) {
  dialogs.Announce({"first", "Read  file", BoxIcon::kWarning});
  dialogs.Announce({"second", "Write  file", BoxIcon::kCritical});
  ASSERT_NE(Notices(), nullptr);
  EXPECT_TRUE(Notices()->window()->isVisible());
  EXPECT_FALSE(Notices()->window()->isModal());
  ASSERT_EQ(Notices()->count(), 2);
  EXPECT_TRUE(Notices()->item(0)->text().endsWith("first"));
  EXPECT_TRUE(Notices()->item(1)->text().contains("Write  file"));
}

TEST_F(Boxes, AnnouncementsStandInAWindowOfTheUsersLanguage) {
  Language language = Language::kEnglish;
  dialogs.SpeakIn([&language] { return language; });
  dialogs.Announce({"first", "Read  file", BoxIcon::kWarning});
  EXPECT_EQ(Notices()->window()->windowTitle(), "TAVREL   notices");
  language = Language::kGerman;
  dialogs.Announce({"second", "Read  file", BoxIcon::kWarning});
  EXPECT_EQ(Notices()->window()->windowTitle(), "TAVREL   Meldungen");
  EXPECT_EQ(Notices()->accessibleName(), "Meldungen");
}

TEST_F(Boxes, AnnouncementsTakeNoKeyboard) {
  QWidget form;
  form.show();
  form.activateWindow();
  ASSERT_TRUE(WaitUntil([&form] { return form.isActiveWindow(); }));
  dialogs.Announce({"first", "Read  file", BoxIcon::kWarning});
  QCoreApplication::processEvents();
  EXPECT_TRUE(Notices()->window()->testAttribute(Qt::WA_ShowWithoutActivating));
}

TEST_F(Boxes, AnnouncementsGoByEscapeAndDoNotComeAgain) {
  dialogs.Announce({"first", "Read  file", BoxIcon::kWarning});
  QTest::keyClick(Notices()->window(), Qt::Key_Escape);
  EXPECT_FALSE(Notices()->window()->isVisible());
  dialogs.Announce({"second", "Write  file", BoxIcon::kCritical});
  EXPECT_TRUE(Notices()->window()->isVisible());
  EXPECT_EQ(Notices()->count(), 1);
}

TEST_F(Boxes, AnnouncementsOverAModalFormCanBeClosed) {
  QDialog modal;
  modal.setModal(true);
  modal.show();
  ASSERT_TRUE(WaitUntil([&modal] { return QApplication::activeModalWidget() == &modal; }));
  dialogs.Announce({"first", "Read  file", BoxIcon::kWarning});
  QWidget* window = Notices()->window();
  EXPECT_EQ(window->windowHandle()->transientParent(), modal.windowHandle());
}

TEST_F(Boxes, AnnouncementsKeepTheLatestOnly) {
  for (int number = 0; number < 300; ++number) {
    dialogs.Announce({"fault " + std::to_string(number), "Write  file", BoxIcon::kCritical});
  }
  EXPECT_LE(Notices()->count(), 200);
  EXPECT_TRUE(Notices()->item(Notices()->count() - 1)->text().endsWith("fault 299"));
}

TEST(Screens, ShowsTheFormsItHasAndNoOther) {
  QtScreens screens;
  int shown = 0;
  screens.Add(View::kTavSett, [&shown] { ++shown; });
  EXPECT_TRUE(screens.Has(View::kTavSett));
  EXPECT_FALSE(screens.Has(View::kTavWork));
  screens.Show(View::kTavSett);
  screens.Show(View::kTavWork);
  EXPECT_EQ(shown, 1);
}

}  // namespace
}  // namespace tavrel
