#include "dialogs/help.h"

#include <gtest/gtest.h>

#include "tests/support/bench_program.h"

namespace tavrel {
namespace {

class Help : public testing::Test {
 protected:
  std::string ManualFor(const char* language) {
    shell.opened.clear();
    ShowHelp(dialogs, shell, home.Path() + "/", language);
    return shell.opened.empty() ? "" : shell.opened[0];
  }
  TemporaryDirectory home;
  FakeDialogs dialogs;
  FakeShell shell;
};

TEST_F(Help, IsGermanForAnyFirstLetterGAndElseEnglish) {
  home.Write(kGermanManual, "g");
  home.Write(kEnglishManual, "e");
  for (const char* german : {"German", "german", "g"}) {
    EXPECT_EQ(ManualFor(german), home.File("H207_511.pdf")) << german;
  }
  for (const char* english : {"English", "Deutsch", "", " German"}) {
    EXPECT_EQ(ManualFor(english), home.File("H207_512.pdf")) << english;
  }
}

TEST_F(Help, NamesTheManualThatIsMissing) {
  EXPECT_EQ(ManualFor("English"), "");
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].Text, "Help-file not found:\n\n\"" + home.File("H207_512.pdf") + "\"");
  EXPECT_EQ(dialogs.boxes[0].Title, "TAVREL");
  EXPECT_EQ(dialogs.boxes[0].Icon, BoxIcon::kInformation);
}

TEST_F(Help, SaysWhereTheManualIsIfNothingShowsIt) {
  home.Write(kGermanManual, "g");
  home.Write(kEnglishManual, "e");
  shell.has_programs = false;
  EXPECT_EQ(ManualFor("German"), home.File("H207_511.pdf"));
  EXPECT_EQ(ManualFor("English"), home.File("H207_512.pdf"));
  ASSERT_EQ(dialogs.announced.size(), 2U);
  EXPECT_EQ(dialogs.announced[0].Text,
            "Das Handbuch lässt sich nicht anzeigen: Es gibt kein Programm für PDF-Dateien. "
            "Es liegt hier:\n\n" +
                home.File("H207_511.pdf"));
  EXPECT_EQ(dialogs.announced[1].Text,
            "The manual cannot be shown: there is no program for PDF files. It is here:\n\n" +
                home.File("H207_512.pdf"));
  EXPECT_TRUE(dialogs.boxes.empty());
}

}  // namespace
}  // namespace tavrel
