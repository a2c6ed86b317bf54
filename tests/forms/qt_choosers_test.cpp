#include "platform/qt/qt_choosers.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QFontDialog>
#include <QFontInfo>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <filesystem>

#include "platform/qt/qt_dialogs.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

class Choosers : public testing::Test {
 protected:
  Choosers() {
    choice.Directory = home.Path();
    choice.DefaultExtension = "prg";
    choice.Filter = "program  (*.prg)|*.prg";
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  }
  // Does `action` once, to the dialog of that kind that is in front as soon as it is there.
  template <typename Dialog, typename Action>
  void WhenItComes(Action action) {
    auto* poll = new QTimer(&owner);
    poll->callOnTimeout([poll, action] {
      auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
      if (dialog != nullptr) {
        poll->stop();
        QTimer::singleShot(0, dialog, [dialog, action] { action(dialog); });
      }
    });
    poll->start(1);
  }
  void Type(const QString& name) {
    WhenItComes<QFileDialog>([this, name](QFileDialog* dialog) {
      title = dialog->windowTitle();
      filters = dialog->nameFilters();
      auto* edit = dialog->findChild<QLineEdit*>("fileNameEdit");
      offered = edit->text();
      edit->setText(name);
      QTest::keyClick(edit, Qt::Key_Return);
    });
  }
  void Answer(QMessageBox::StandardButton button) {
    WhenItComes<QMessageBox>([this, button](QMessageBox* box) {
      question = box->text();
      box->button(button)->click();
    });
  }

  TemporaryDirectory home;
  QtEvents events;
  QtDialogs dialogs{events};
  FileChoice choice;
  QString title;
  QString offered;
  QString question;
  QStringList filters;
  QObject owner;
};

TEST_F(Choosers, OpenAnExistingFile) {
  home.Write("anneal.prg", "x");
  choice.FileName = "last.prg";
  Type("anneal.prg");
  dialogs.FileDialog(choice);
  EXPECT_EQ(title, "Open");
  EXPECT_EQ(filters, QStringList("program (*.prg)"));
  EXPECT_EQ(offered, "last.prg");
  EXPECT_EQ(choice.FullName, home.File("anneal.prg"));
  EXPECT_EQ(choice.FileName, "anneal.prg");
  EXPECT_EQ(choice.Directory, home.Path() + "/");
}

TEST_F(Choosers, LeaveNoNameAfterCancel) {
  choice.FileName = "last.prg";
  WhenItComes<QFileDialog>([](QFileDialog* dialog) { QTest::keyClick(dialog, Qt::Key_Escape); });
  dialogs.FileDialog(choice);
  EXPECT_EQ(choice.FileName, "");
  EXPECT_EQ(choice.FullName, "");
  EXPECT_EQ(choice.Directory, home.Path());
}

TEST_F(Choosers, PutTheExtensionBehindANewName) {
  choice.Mode = FileMode::kSave;
  Type("next");
  dialogs.FileDialog(choice);
  EXPECT_EQ(title, "Save As");
  EXPECT_EQ(choice.FullName, home.File("next.prg"));
  EXPECT_FALSE(home.Exists("next.prg"));
}

TEST_F(Choosers, AskBeforeAFileOfThatNameInAnyCaseIsReplaced) {
  home.Write("ANNEAL.PRG", "x");
  choice.Mode = FileMode::kSave;
  Type("anneal.prg");
  Answer(QMessageBox::Yes);
  dialogs.FileDialog(choice);
  EXPECT_TRUE(question.startsWith(QString::fromStdString(home.File("ANNEAL.PRG"))));
  EXPECT_EQ(choice.FileName, "ANNEAL.PRG");
}

TEST_F(Choosers, ComeAgainIfTheFileShallStay) {
  home.Write("anneal.prg", "x");
  choice.Mode = FileMode::kSave;
  Type("anneal.prg");
  WhenItComes<QMessageBox>([this](QMessageBox* box) {
    Type("other.prg");
    box->button(QMessageBox::No)->click();
  });
  dialogs.FileDialog(choice);
  EXPECT_EQ(choice.FileName, "other.prg");
}

TEST_F(Choosers, StayWhereTheProgramIs) {
  const auto before = std::filesystem::current_path();
  home.Write("anneal.prg", "x");
  Type("anneal.prg");
  dialogs.FileDialog(choice);
  EXPECT_EQ(std::filesystem::current_path(), before);
}

TEST_F(Choosers, GiveTheFontThatWasChosen) {
  FontChoice font{"DejaVu Sans", 10};
  WhenItComes<QFontDialog>([](QFontDialog* dialog) {
    dialog->setCurrentFont(QFont("DejaVu Serif", 14));
    dialog->accept();
  });
  EXPECT_TRUE(dialogs.FontDialog(font));
  EXPECT_EQ(font.Name, "DejaVu Serif");
  EXPECT_EQ(font.Size, 14);
}

// What the list shows is what a click on OK takes.
TEST_F(Choosers, ShowTheFontThatIsSet) {
  for (const auto& [name, size] : {std::pair<const char*, float>{"DejaVu Serif", 9.0F},
                                   {"DejaVu Sans Mono", 14.0F},
                                   {"DejaVu Sans", 10.5F},
                                   {"No Such Font", 12.0F},
                                   {"", 8.0F}}) {
    FontChoice font{name, size};
    const QString family = *name == '\0' ? QFont().family() : QFontInfo(QFont(name)).family();
    WhenItComes<QFontDialog>([&, name = name, size = size](QFontDialog* dialog) {
      EXPECT_EQ(dialog->currentFont().family(), family);
      EXPECT_EQ(dialog->currentFont().pointSize(), qRound(size));
      EXPECT_FALSE(dialog->currentFont().italic()) << name;
      EXPECT_FALSE(dialog->currentFont().bold()) << name;
      QStringList shown;
      for (const auto* list : dialog->findChildren<QListView*>()) {
        shown << list->currentIndex().data().toString();
      }
      EXPECT_TRUE(shown.contains(family)) << shown.join(" | ").toStdString();
      QStringList sizes;
      for (const auto* edit : dialog->findChildren<QLineEdit*>()) {
        sizes << edit->text();
      }
      EXPECT_TRUE(sizes.contains(QString::number(qRound(size)))) << sizes.join(" | ").toStdString();
      dialog->accept();
    });
    EXPECT_TRUE(dialogs.FontDialog(font));
    EXPECT_EQ(font.Name, name);
    EXPECT_EQ(font.Size, size);
  }
}

// A size that no screen has room for would make a dialog of that height.
TEST_F(Choosers, HoldTheSizeOfAFont) {
  for (const auto& [size, shown] : {std::pair<float, float>{1e9F, 100}, {1e-30F, 4}}) {
    FontChoice font{"DejaVu Sans", size};
    WhenItComes<QFontDialog>([shown = shown](QFontDialog* dialog) {
      EXPECT_EQ(dialog->currentFont().pointSizeF(), shown);
      dialog->reject();
    });
    EXPECT_FALSE(dialogs.FontDialog(font));
    EXPECT_EQ(font.Size, size);
  }
}

TEST_F(Choosers, KeepTheFontAfterCancel) {
  FontChoice font{"Arial", 0};
  WhenItComes<QFontDialog>([](QFontDialog* dialog) {
    EXPECT_EQ(dialog->currentFont().pointSize(), 11);
    dialog->reject();
  });
  EXPECT_FALSE(dialogs.FontDialog(font));
  EXPECT_EQ(font.Name, "Arial");
  EXPECT_EQ(font.Size, 0);
}

TEST(Filter, IsTheToolkitsOwn) {
  EXPECT_EQ(QtFilter("program  (*.prg)|*.prg|all|*.asc;*.txt"),
            "program (*.prg);;all (*.asc *.txt)");
}

}  // namespace
}  // namespace tavrel
