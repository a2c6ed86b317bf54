#include "platform/file_choice.h"

#include <gtest/gtest.h>

namespace tavrel {
namespace {

TEST(FileChoice, SplitsTheChosenPath) {
  FileChoice choice;
  choice.Take("/home/maria/Öfen/Anneal.prg");
  EXPECT_EQ(choice.FullName, "/home/maria/Öfen/Anneal.prg");
  EXPECT_EQ(choice.FileName, "Anneal.prg");
  EXPECT_EQ(choice.Directory, "/home/maria/Öfen/");
  choice.Take("name");
  EXPECT_EQ(choice.FileName, "name");
  EXPECT_EQ(choice.Directory, "");
}

TEST(FileChoice, IsEmptyAfterCancelButForTheDirectory) {
  FileChoice choice;
  choice.Take("/home/maria/Anneal.prg");
  choice.Cancel();
  EXPECT_EQ(choice.FileName, "");
  EXPECT_EQ(choice.FullName, "");
  EXPECT_EQ(choice.Directory, "/home/maria/");
}

TEST(FileKinds, AreTextsAndPatternsInTurn) {
  const std::vector<FileKind> kinds = FileKinds("program  (*.prg)|*.prg|text|*.txt;*.asc|alone");
  ASSERT_EQ(kinds.size(), 2U);
  EXPECT_EQ(kinds[0].Text, "program");
  EXPECT_EQ(kinds[0].Patterns, std::vector<std::string>{"*.prg"});
  EXPECT_EQ(kinds[1].Text, "text");
  EXPECT_EQ(kinds[1].Patterns, (std::vector<std::string>{"*.txt", "*.asc"}));
  EXPECT_TRUE(FileKinds("").empty());
}

}  // namespace
}  // namespace tavrel
