#include "platform/qt/toolkit_texts.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QFontDialog>
#include <QGroupBox>
#include <QKeySequence>
#include <QLabel>
#include <QPrintDialog>
#include <QPrinter>
#include <QTabWidget>
#include <memory>
#include <set>
#include <string>

#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

using Texts = std::set<std::string>;

void Collect(Texts& texts, const QString& text) {
  if (!text.trimmed().isEmpty()) {
    texts.insert(text.toStdString());
  }
}

// What stands in sight on the buttons, labels, frames and tabs of a dialog of that kind.
template <typename Dialog, typename... Arguments>
Texts TextsOf(Arguments... arguments) {
  Dialog dialog(arguments...);
  dialog.show();
  Texts texts;
  Collect(texts, dialog.windowTitle());
  for (const auto* button : dialog.template findChildren<QAbstractButton*>()) {
    Collect(texts, button->isVisible() ? button->text() : QString());
  }
  for (const auto* label : dialog.template findChildren<QLabel*>()) {
    Collect(texts, label->isVisible() ? label->text() : QString());
  }
  for (const auto* frame : dialog.template findChildren<QGroupBox*>()) {
    Collect(texts, frame->isVisible() ? frame->title() : QString());
  }
  for (const auto* tabs : dialog.template findChildren<QTabWidget*>()) {
    for (int tab = 0; tab < tabs->count(); ++tab) {
      Collect(texts, tabs->tabText(tab));
    }
  }
  return texts;
}

// All that the dialogs of the toolkit show which this program opens.
Texts AllTexts(const std::string& directory) {
  QPrinter printer;
  Texts all = TextsOf<QPrintDialog>(&printer);
  all.merge(TextsOf<QFontDialog>());
  const QString path = QString::fromStdString(directory);
  all.merge(TextsOf<QFileDialog>(nullptr, QString(), path));
  return all;
}

class TheToolkit : public testing::Test {
 protected:
  TheToolkit() { QApplication::setAttribute(Qt::AA_DontUseNativeDialogs); }

  static Texts Common(const Texts& one, const Texts& other) {
    Texts common;
    for (const std::string& text : one) {
      if (other.contains(text)) {
        common.insert(text);
      }
    }
    return common;
  }

  TemporaryDirectory home;
  const Texts english = AllTexts(home.Path());
  Language language = Language::kGerman;
};

TEST_F(TheToolkit, SpeaksGermanToAGermanUser) {
  const ToolkitTexts texts([this] { return language; });
  const Texts german = AllTexts(home.Path());
  EXPECT_TRUE(german.contains("&Drucken"));
  EXPECT_TRUE(german.contains("Abbrechen"));
  EXPECT_TRUE(german.contains("&Schriftart"));
  EXPECT_TRUE(german.contains("Suchen in:"));
  EXPECT_EQ(Common(english, german), Texts({"&Name:", "...", "OK"})) << "the same in both";
}

TEST_F(TheToolkit, SpeaksTheNewLanguageBehindAChangeOfTheSettings) {
  const ToolkitTexts texts([this] { return language; });
  language = Language::kEnglish;
  EXPECT_EQ(AllTexts(home.Path()), english);
  language = Language::kGerman;
  EXPECT_NE(AllTexts(home.Path()), english);
}

TEST_F(TheToolkit, StaysEnglishOnAMachineWithoutItsCatalogues) {
  const ToolkitTexts texts([this] { return language; }, QString::fromStdString(home.Path()));
  EXPECT_EQ(AllTexts(home.Path()), english);
}

TEST_F(TheToolkit, NamesAKeyAsTheManualOfThatLanguageDoes) {
  const ToolkitTexts texts([this] { return language; });
  EXPECT_EQ(QKeySequence("Ctrl+P").toString(QKeySequence::NativeText), "Strg+P");
  EXPECT_EQ(QKeySequence("Ctrl+P"), QKeySequence(Qt::CTRL | Qt::Key_P));
}

}  // namespace
}  // namespace tavrel
