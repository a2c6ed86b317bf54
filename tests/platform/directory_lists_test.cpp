#include "platform/directory_lists.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

// A small tree: home/{alpha/{one,two},Beta,.hidden}, stick/{data}.
class Lists : public testing::Test {
 protected:
  Lists() {
    for (const char* path :
         {"home/alpha/one", "home/alpha/two", "home/Beta", "home/.hidden", "stick/data"}) {
      std::filesystem::create_directories(tree.File(path));
    }
    tree.Write("home/file.txt", "x");
    places = {{"computer", "/"}, {"home", tree.File("home")}, {"STICK", tree.File("stick")}};
    lists.RefreshPlaces();
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const DirectoryLine& line : lists.Lines()) {
      names.push_back(std::string(static_cast<std::size_t>(line.Depth), '>') + line.Name);
    }
    return names;
  }
  TemporaryDirectory tree;
  std::vector<Place> places;
  DirectoryLists lists{[this] { return places; }};
};

using Texts = std::vector<std::string>;

TEST_F(Lists, ShowTheWayDownAndWhatIsInTheOpenDirectory) {
  lists.Open(tree.File("home/alpha") + "/");
  EXPECT_EQ(lists.DriveIndex(), 1);
  EXPECT_EQ(Names(), (Texts{tree.File("home"), ">alpha", ">>one", ">>two"}));
  EXPECT_EQ(lists.SelectedLine(), 1);
  EXPECT_EQ(lists.Path(), tree.File("home/alpha"));
}

TEST_F(Lists, SortWithoutRegardToCaseAndLeaveOutFilesAndHiddenOnes) {
  std::filesystem::create_directories(tree.File("home/Zeta"));
  std::filesystem::create_directories(tree.File("home/beta2"));
  lists.Open(tree.File("home"));
  EXPECT_EQ(Names(), (Texts{tree.File("home"), ">alpha", ">Beta", ">beta2", ">Zeta"}));
}

TEST_F(Lists, FollowTheSelectedLine) {
  lists.Open(tree.File("home"));
  lists.SelectLine(2);
  EXPECT_EQ(lists.Path(), tree.File("home/Beta"));
  EXPECT_EQ(Names().size(), 3U);
  lists.SelectLine(3);
  lists.SelectLine(-1);
  EXPECT_EQ(lists.Path(), tree.File("home/Beta"));
}

TEST_F(Lists, OpenALineAndTheDirectoryAbove) {
  lists.Open(tree.File("home"));
  lists.OpenLine(1);
  EXPECT_EQ(lists.Path(), tree.File("home/alpha"));
  lists.OpenLine(3);
  EXPECT_EQ(lists.Path(), tree.File("home/alpha/two"));
  lists.OpenParent();
  EXPECT_EQ(lists.Path(), tree.File("home/alpha"));
  lists.OpenParent();
  lists.OpenParent();
  EXPECT_EQ(lists.Path(), tree.File("home"));
}

TEST_F(Lists, ChangeTheDrive) {
  lists.Open(tree.File("home"));
  lists.ChooseDrive(2);
  EXPECT_EQ(lists.Path(), tree.File("stick"));
  EXPECT_EQ(lists.DriveIndex(), 2);
  lists.ChooseDrive(0);
  EXPECT_EQ(lists.Path(), "/");
  EXPECT_EQ(lists.Lines()[0].Name, "/");
}

TEST_F(Lists, StayWhereADriveCannotBeRead) {
  lists.Open(tree.File("home/alpha"));
  std::filesystem::remove_all(tree.File("stick"));
  lists.ChooseDrive(2);
  EXPECT_EQ(lists.Path(), tree.File("home/alpha"));
  EXPECT_EQ(lists.DriveIndex(), 1);
  lists.ChooseDrive(7);
  EXPECT_EQ(lists.DriveIndex(), 1);
}

TEST_F(Lists, StayWhereADirectoryHasGone) {
  lists.Open(tree.File("home"));
  std::filesystem::remove_all(tree.File("home/Beta"));
  lists.OpenLine(2);
  EXPECT_EQ(Names().size(), 3U);
}

TEST_F(Lists, BeginAtTheNearestDirectoryThatIsThere) {
  lists.Open(tree.File("home/alpha/gone/further"));
  EXPECT_EQ(lists.Path(), tree.File("home/alpha"));
}

TEST_F(Lists, BeginInTheHomeDirectoryWithoutAPathFromTheRoot) {
  const char* const before = std::getenv("HOME");
  const std::string kept = before == nullptr ? "" : before;
  setenv("HOME", tree.File("home").c_str(), 1);
  lists.Open("A:");
  EXPECT_EQ(lists.Path(), tree.File("home"));
  lists.Open("");
  EXPECT_EQ(lists.Path(), tree.File("home"));
  setenv("HOME", kept.c_str(), 1);
}

TEST_F(Lists, SeeAMediumThatIsPluggedInMeanwhile) {
  lists.Open(tree.File("stick/data"));
  places.insert(places.begin() + 1, {"NEW", tree.File("new")});
  lists.RefreshPlaces();
  EXPECT_EQ(lists.Places().size(), 4U);
  EXPECT_EQ(lists.DriveIndex(), 3);
  EXPECT_EQ(lists.Path(), tree.File("stick/data"));
}

}  // namespace
}  // namespace tavrel
