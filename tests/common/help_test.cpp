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

}  // namespace
}  // namespace tavrel
