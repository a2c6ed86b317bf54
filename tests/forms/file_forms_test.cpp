#include <gtest/gtest.h>

#include <QApplication>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTreeWidget>
#include <cstring>
#include <functional>

#include "dialogs/forms/all_copy.h"
#include "dialogs/forms/all_open.h"
#include "tests/support/file_bench.h"
#include "tests/support/wait_until.h"

namespace tavrel {
namespace {

using List = std::vector<std::string>;

// The forms of files over real directories. They are modal, so what the user does is queued
// before a form opens and runs while it is open.
class FileForms : public testing::Test {
 protected:
  FileForms() {
    bench.program.screens.on_show = [this](View view) {
      if (view == View::kAllCopy) {
        bench.copy_files.Open();
        AllCopy form(bench.copy_files);
        RunWith(form, use_copy);
      }
    };
  }

  // Shows ALL_OPEN, lets `use` act on it once its files are listed, and returns when it is closed.
  void Open(const std::function<void()>& use) {
    bench.open_file.Open();
    AllOpen form(bench.open_file);
    RunWith(form, [&] {
      EXPECT_TRUE(WaitUntil([&] { return bench.open_file.Values().Revision >= 0; }));
      use();
    });
  }
  void RunWith(ModalForm& form, const std::function<void()>& use) {
    QWidget* const before = front;
    front = &form;
    QTimer::singleShot(0, &form, [&] {
      use();
      EXPECT_FALSE(form.isVisible()) << "the test left the form open";
      form.done(0);
    });
    form.Run();
    front = before;
  }

  template <typename Widget = QWidget>
  Widget* Find(const char* name) {
    auto* widget = front->findChild<Widget*>(name);
    EXPECT_NE(widget, nullptr) << "no " << name;
    return widget;
  }
  QTableView* Grid() { return Find<QTableView>("FGrid"); }
  QTreeWidget* Directories() { return Find<QTreeWidget>("DirList"); }
  void Click(const char* name) { QTest::mouseClick(Find(name), Qt::LeftButton); }
  // To the widget that has the keyboard, as from a keyboard.
  void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QWidget* focus = front->focusWidget();
    QTest::keyClick(focus != nullptr ? focus : front, key, modifiers);
  }
  // Presses Tab until that widget has the keyboard.
  void TabTo(const char* name) {
    for (int tabs = 0; tabs < 20 && front->focusWidget() != Find(name); ++tabs) {
      Press(Qt::Key_Tab);
    }
    EXPECT_EQ(front->focusWidget(), Find(name)) << name << " cannot be reached";
  }
  QPoint RowPlace(int row) { return Grid()->visualRect(Grid()->model()->index(row, 0)).center(); }
  void ClickRow(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::mouseClick(Grid()->viewport(), Qt::LeftButton, modifiers, RowPlace(row));
  }
  void DoubleClickRow(int row) {
    ClickRow(row);
    QTest::mouseDClick(Grid()->viewport(), Qt::LeftButton, {}, RowPlace(row));
  }
  List ShownNames() {
    List names;
    const QAbstractItemModel* rows = Grid()->model();
    for (int row = 0; row < rows->rowCount(); ++row) {
      names.push_back(rows->index(row, 0).data().toString().toStdString());
    }
    return names;
  }
  void WriteThree() {
    bench.WriteFile("tavdat", "M260101A.OVN", "Zeta");
    bench.WriteFile("tavdat", "M260102A.OVN", "Alpha");
    bench.WriteFile("tavdat", "M260103A.OVN", "Beta");
  }

  FileBench bench;
  RunState& state = bench.program.state;
  QWidget* front = nullptr;
  std::function<void()> use_copy = [] {};
};

TEST_F(FileForms, ListNamesAndContentsWithTheirCount) {
  WriteThree();
  Open([this] {
    EXPECT_EQ(front->windowTitle(), " Files");
    EXPECT_EQ(front->windowModality(), Qt::ApplicationModal);
    EXPECT_EQ(ShownNames(), (List{"M260101A.OVN", "M260102A.OVN", "M260103A.OVN"}));
    EXPECT_EQ(Grid()->model()->index(1, 1).data().toString(), "Alpha");
    EXPECT_EQ(Find<QLabel>("noFiles")->text(), "3");
    EXPECT_FALSE(Find<QProgressBar>("PbIndex")->isVisible());
    Click("cmdBack");
  });
}

TEST_F(FileForms, GiveTheColumnsTheirShares) {
  WriteThree();
  Open([this] {
    front->resize(1500, 500);
    QApplication::processEvents();
    double width = Grid()->viewport()->width();
    for (const int detail : {2, 3, 4}) {
      EXPECT_FALSE(Grid()->isColumnHidden(detail));
      width -= Grid()->columnWidth(detail);
    }
    EXPECT_NEAR(Grid()->columnWidth(0) / width, 0.28, 0.005);
    EXPECT_NEAR(Grid()->columnWidth(1) / width, 0.72, 0.005);
    EXPECT_EQ(Find("cmdFile")->width(), Grid()->columnWidth(0));
    EXPECT_EQ(Find("headDate")->x(), Find("cmdProduct")->geometry().right() + 1);
    front->resize(520, 500);
    QApplication::processEvents();
    EXPECT_TRUE(Grid()->isColumnHidden(4)) << "the names come first";
    EXPECT_FALSE(Find("headInstrument")->isVisible());
    EXPECT_GT(Grid()->columnWidth(0), 60);
    Click("cmdBack");
  });
}

TEST_F(FileForms, ShowAndSortByDateDurationAndInstrument) {
  UnitRecord unit = DefaultUnitRecord();
  unit.UnitDate.Set("03-14-2026 / 09:05");
  unit.UnitChannels = 1;
  unit.UnitInterval = 6;
  const auto write = [&](const std::string& name, int inet, std::size_t rows) {
    unit.UnitInet = static_cast<std::int16_t>(inet);
    std::string bytes(sizeof unit + 2 * rows, '\0');
    std::memcpy(bytes.data(), &unit, sizeof unit);
    bench.program.home.Write("tavdat/" + name, bytes);
  };
  write("M260314A.OVN", 2, 61);
  write("M260315A.OVN", 1, 0);
  state.Settings.SortKey = "FA";
  Open([this] {
    front->resize(1500, 500);
    QApplication::processEvents();
    const auto cell = [this](int row, int column) {
      return Grid()->model()->index(row, column).data().toString().toStdString();
    };
    EXPECT_EQ(cell(0, 2), "2026-03-14  09:05");
    EXPECT_EQ(cell(0, 3), "1.0 h");
    EXPECT_EQ(cell(0, 4), "Tavrel-2");
    EXPECT_EQ(cell(1, 3), "0.0 min");
    for (const char* head : {"headDuration", "headInstrument"}) {
      Click(head);
      EXPECT_EQ(cell(0, 0), "M260314A.OVN") << head;
      Click(head);
      EXPECT_EQ(cell(0, 0), "M260315A.OVN") << head;
    }
    EXPECT_EQ(state.Settings.SortKey, "FA");
    Click("cmdBack");
  });
}

TEST_F(FileForms, OpenTheRowByTheButton) {
  WriteThree();
  Open([this] {
    ClickRow(1);
    Click("cmdOpen");
  });
  EXPECT_EQ(state.Settings.OpenFile, "M260102A.OVN");
}

TEST_F(FileForms, OpenTheRowByADoubleClick) {
  WriteThree();
  Open([this] { DoubleClickRow(2); });
  EXPECT_EQ(state.Settings.OpenFile, "M260103A.OVN");
}

TEST_F(FileForms, OpenTheRowByTheEnterKey) {
  WriteThree();
  Open([this] {
    Press(Qt::Key_Down);
    Press(Qt::Key_Return);
  });
  EXPECT_EQ(state.Settings.OpenFile, "M260102A.OVN");
}

TEST_F(FileForms, CancelByTheEscapeKeyAndTheCloseBox) {
  WriteThree();
  state.Settings.OpenFile = "M260101A.OVN";
  Open([this] { Press(Qt::Key_Escape); });
  EXPECT_EQ(state.Settings.OpenFile, "");
  EXPECT_FALSE(state.IndexValid);
  state.Settings.OpenFile = "M260101A.OVN";
  Open([this] { front->close(); });
  EXPECT_EQ(state.Settings.OpenFile, "");
  EXPECT_FALSE(bench.open_file.IsOpen());
}

TEST_F(FileForms, SelectTheFileOpenedLast) {
  WriteThree();
  state.Settings.OpenFile = "M260103A.OVN";
  Open([this] {
    EXPECT_EQ(Grid()->currentIndex().row(), 2);
    EXPECT_TRUE(Grid()->selectionModel()->isRowSelected(2, {}));
    Click("cmdBack");
  });
}

TEST_F(FileForms, SortByTheHeads) {
  WriteThree();
  Open([this] {
    EXPECT_EQ(Find<SortHead>("cmdFile")->Mark(), SortMark::kUp);
    Click("cmdFile");
    EXPECT_EQ(ShownNames(), (List{"M260103A.OVN", "M260102A.OVN", "M260101A.OVN"}));
    EXPECT_EQ(Find<SortHead>("cmdFile")->Mark(), SortMark::kDown);
    EXPECT_EQ(Grid()->currentIndex().row(), 2);
    TabTo("cmdProduct");
    Press(Qt::Key_Return);
    EXPECT_EQ(ShownNames(), (List{"M260101A.OVN", "M260103A.OVN", "M260102A.OVN"}));
    EXPECT_EQ(Find<SortHead>("cmdFile")->Mark(), SortMark::kNone);
    Press(Qt::Key_Space);
    EXPECT_EQ(Find<SortHead>("cmdProduct")->Mark(), SortMark::kUp);
    Press(Qt::Key_Escape);
  });
  EXPECT_EQ(state.Settings.SortKey, "PA");
}

TEST_F(FileForms, SelectABlockByMouseAndByKeyboard) {
  WriteThree();
  Open([this] {
    ClickRow(0);
    ClickRow(1, Qt::ShiftModifier);
    EXPECT_EQ(bench.open_file.SelectedNames(), (List{"M260101A.OVN", "M260102A.OVN"}));
    ClickRow(2);
    EXPECT_EQ(bench.open_file.SelectedNames(), List{"M260103A.OVN"});
    Press(Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(bench.open_file.SelectedNames(), (List{"M260102A.OVN", "M260103A.OVN"}));
    Press(Qt::Key_A, Qt::ControlModifier);
    EXPECT_EQ(bench.open_file.SelectedNames().size(), 3U);
    Press(Qt::Key_Escape);
  });
}

TEST_F(FileForms, ListAnotherDirectoryByTheKeyboardAlone) {
  WriteThree();
  bench.MakeDirectory("tavdat/old");
  bench.WriteFile("tavdat/old", "M250101A.OVN", "Old");
  Open([this] {
    TabTo("DirList");
    Press(Qt::Key_Down);
    EXPECT_TRUE(Find<QPushButton>("cmdNew")->isDefault());
    EXPECT_EQ(ShownNames().size(), 3U);
    Press(Qt::Key_Return);
    EXPECT_EQ(ShownNames(), List{"M250101A.OVN"});
    EXPECT_TRUE(Find<QPushButton>("cmdOpen")->isDefault());
    EXPECT_EQ(front->focusWidget(), Grid());
    Press(Qt::Key_Return);
  });
  EXPECT_EQ(state.Settings.OpenFile, "M250101A.OVN");
  EXPECT_EQ(state.Settings.OpenPath, bench.Data() + "/old");
}

TEST_F(FileForms, ListAnotherDirectoryByTheMouseAlone) {
  WriteThree();
  bench.MakeDirectory("tavdat/old");
  bench.WriteFile("tavdat/old", "M250101A.OVN", "Old");
  Open([this] {
    QTreeWidgetItem* old = Directories()->findItems("old", Qt::MatchRecursive).value(0);
    ASSERT_NE(old, nullptr);
    QTest::mouseClick(Directories()->viewport(), Qt::LeftButton, {},
                      Directories()->visualItemRect(old).center());
    Click("cmdNew");
    EXPECT_EQ(ShownNames(), List{"M250101A.OVN"});
    Click("cmdBack");
  });
  EXPECT_EQ(state.Settings.OpenPath, bench.Data());
}

TEST_F(FileForms, SayThatADirectoryIsEmptyAndStayOpen) {
  Open([this] {
    EXPECT_EQ(bench.program.dialogs.boxes.size(), 1U);
    EXPECT_TRUE(front->isVisible());
    EXPECT_EQ(Find<QLabel>("noFiles")->text(), "0");
    EXPECT_FALSE(Find("cmdCopy")->isEnabled());
    Press(Qt::Key_Return);
  });
  EXPECT_EQ(state.Settings.OpenFile, "");
}

TEST_F(FileForms, HaveTheirToolTipsInBothLanguages) {
  WriteThree();
  const auto tip = [this](const char* name) { return Find(name)->toolTip(); };
  use_copy = [&] {
    EXPECT_EQ(tip("cmdCopy"), " Copy file(s)  ");
    Press(Qt::Key_Escape);
  };
  Open([&] {
    EXPECT_EQ(tip("cmdOpen"), " open file   (enter-key) ");
    EXPECT_EQ(tip("cmdBack"), " cancel   (esc-key) ");
    EXPECT_EQ(tip("cmdNew"), " ok   (enter-key) ");
    EXPECT_EQ(tip("cmdCopy"), " copy file(s) ");
    EXPECT_EQ(tip("cmdFile"), " sort by filename ");
    EXPECT_EQ(tip("cmdProduct"), " sort by contents ");
    Click("cmdCopy");
    Click("cmdBack");
  });
  state.Settings.HelpLang = "German";
  use_copy = [&] {
    EXPECT_EQ(tip("cmdCopy"), " Datei(en) kopieren ");
    Press(Qt::Key_Escape);
  };
  Open([&] {
    EXPECT_EQ(tip("cmdOpen"), " Datei öffnen  (Eingabe-Taste) ");
    EXPECT_EQ(tip("cmdBack"), " Abbrechen  (Esc-Taste) ");
    EXPECT_EQ(tip("cmdNew"), " OK  (Eingabe-Taste) ");
    EXPECT_EQ(tip("cmdCopy"), " Datei(en) kopieren ");
    EXPECT_EQ(tip("cmdFile"), " nach Dateinamen sortieren ");
    EXPECT_EQ(tip("cmdProduct"), " nach Inhalt sortieren ");
    Click("cmdCopy");
    Click("cmdBack");
  });
}

TEST_F(FileForms, NameTheButtonThatVerifiesInBothLanguages) {
  WriteThree();
  for (const char* language : {"English", "German"}) {
    state.Settings.HelpLang = language;
    Open([this, language] {
      auto& verify = *Find<QPushButton>("cmdVerify");
      const QString caption = verify.text().remove('&');
      EXPECT_EQ(caption, language[0] == 'G' ? "Prüfen" : "Verify");
      int looks = 0;
      bench.program.events.on_pump = [&] {
        ++looks;
        EXPECT_EQ(verify.text(), language[0] == 'G' ? "Anhalten" : "Stop");
      };
      Click("cmdVerify");
      bench.program.events.on_pump = nullptr;
      EXPECT_GT(looks, 0);
      EXPECT_EQ(verify.text().remove('&'), caption);
      Click("cmdBack");
    });
  }
}

TEST_F(FileForms, CopyABlockByTheKeyboardAlone) {
  WriteThree();
  state.Settings.DestPath = bench.MakeDirectory("Backup");
  use_copy = [this] {
    EXPECT_EQ(front->windowTitle(), " Copy");
    EXPECT_EQ(state.ActiveView, View::kAllCopy);
    EXPECT_EQ(Find<QLabel>("noFiles")->text(), "2");
    EXPECT_EQ(Find<QLabel>("lbPath")->toolTip().toStdString(), state.Settings.DestPath);
    Press(Qt::Key_Return);
  };
  Open([this] {
    Press(Qt::Key_Down, Qt::ShiftModifier);
    TabTo("cmdCopy");
    Press(Qt::Key_Space);
    EXPECT_EQ(state.ActiveView, View::kAllOpen);
    EXPECT_TRUE(front->isVisible());
    Press(Qt::Key_Escape);
  });
  EXPECT_TRUE(bench.program.home.Exists("Backup/M260101A.OVN"));
  EXPECT_TRUE(bench.program.home.Exists("Backup/M260102A.OVN"));
  EXPECT_FALSE(bench.program.home.Exists("Backup/M260103A.OVN"));
}

TEST_F(FileForms, CopyNothingBehindCancel) {
  WriteThree();
  for (const char* language : {"English", "German"}) {
    state.Settings.HelpLang = language;
    state.Settings.DestPath = bench.MakeDirectory("Backup");
    use_copy = [this, language] {
      EXPECT_EQ(Find<QPushButton>("CmdCancel")->text().remove('&'),
                language[0] == 'G' ? "Abbrechen" : "Cancel");
      EXPECT_FALSE(Find<QPushButton>("CmdCancel")->isDefault());
      TabTo("CmdCancel");
      Press(Qt::Key_Space);
    };
    Open([this] {
      ClickRow(1);
      Click("cmdCopy");
      EXPECT_EQ(state.ActiveView, View::kAllOpen);
      Click("cmdBack");
    });
  }
  EXPECT_FALSE(bench.program.home.Exists("Backup/M260102A.OVN"));
  EXPECT_TRUE(bench.program.dialogs.boxes.empty());
}

TEST_F(FileForms, CopyIntoADirectoryChosenByTheMouse) {
  WriteThree();
  state.Settings.DestPath = bench.MakeDirectory("Backup");
  bench.MakeDirectory("Backup/Deep");
  use_copy = [this] {
    QTreeWidgetItem* deep = Directories()->findItems("Deep", Qt::MatchRecursive).value(0);
    ASSERT_NE(deep, nullptr);
    QTest::mouseClick(Directories()->viewport(), Qt::LeftButton, {},
                      Directories()->visualItemRect(deep).center());
    EXPECT_TRUE(Find<QLabel>("lbPath")->toolTip().endsWith("/Backup/Deep"));
    Click("cmdCopy");
  };
  Open([this] {
    ClickRow(1);
    Click("cmdCopy");
    Click("cmdBack");
  });
  EXPECT_TRUE(bench.program.home.Exists("Backup/Deep/M260102A.OVN"));
}

TEST_F(FileForms, StayFastWithTenThousandFiles) {
  for (int number = 0; number < 10000; ++number) {
    bench.WriteFile("tavdat", "M260101A" + std::to_string(number) + ".OVN");
  }
  Open([this] {
    EXPECT_EQ(Grid()->model()->rowCount(), 10000);
    QElapsedTimer time;
    time.start();
    for (int press = 0; press < 100; ++press) {
      Press(Qt::Key_PageDown);
      QCoreApplication::processEvents();
    }
    Press(Qt::Key_End);
    Press(Qt::Key_A, Qt::ControlModifier);
    Click("cmdFile");
    EXPECT_LT(time.elapsed(), 5000);
    Press(Qt::Key_Escape);
  });
}

TEST_F(FileForms, NameEveryControl) {
  WriteThree();
  Open([this] {
    for (const char* name : {"FGrid", "noFiles", "DrvList", "DirList", "frPath", "cmdOpen",
                             "cmdBack", "cmdNew", "cmdCopy", "cmdFile", "cmdProduct"}) {
      EXPECT_NE(Find(name), nullptr) << name;
    }
    for (const char* name : {"FGrid", "DrvList", "DirList", "cmdOpen", "cmdBack", "cmdNew",
                             "cmdCopy", "cmdFile", "cmdProduct"}) {
      EXPECT_FALSE(Find(name)->accessibleName().isEmpty()) << name;
      TabTo(name);
    }
    Press(Qt::Key_Escape);
  });
}

}  // namespace
}  // namespace tavrel
