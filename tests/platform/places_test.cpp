#include "platform/places.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

TEST(MountedMedia, AreThoseBelowTheDirectoriesOfMedia) {
  const std::vector<std::string> media = MountedMedia(
      "/dev/sda1 / ext4 rw 0 0\n"
      "proc /proc proc rw 0 0\n"
      "/dev/sdb1 /media/maria/STICK vfat rw 0 0\n"
      "server:/lab /mnt/lab nfs rw 0 0\n"
      "/dev/sdc1 /run/media/maria/disk ext4 rw 0 0\n"
      "/dev/sda2 /boot ext4 rw 0 0\n"
      "tmpfs /mnt/scratch tmpfs rw 0 0\n"
      "/dev/sdb1 /media/maria/STICK vfat ro 0 0\n");
  EXPECT_EQ(media,
            (std::vector<std::string>{"/media/maria/STICK", "/mnt/lab", "/run/media/maria/disk"}));
}

TEST(MountedMedia, HaveBlanksAndUmlautsInTheirNames) {
  EXPECT_EQ(MountedMedia("/dev/sdb1 /media/maria/Öfen\\0402026 vfat rw 0 0\n"),
            std::vector<std::string>{"/media/maria/Öfen 2026"});
  EXPECT_EQ(MountedMedia("x /mnt/a\\134b\\011c\\303\\226fen vfat rw 0 0\n"),
            std::vector<std::string>{"/mnt/a\\b\tcÖfen"});
}

TEST(MountedMedia, SurviveABrokenTable) {
  EXPECT_TRUE(MountedMedia("").empty());
  EXPECT_TRUE(MountedMedia("\n \n/dev/sda1\n").empty());
  EXPECT_EQ(MountedMedia("x /mnt/a\\04"), std::vector<std::string>{"/mnt/a\\04"});
}

TEST(MountedPlaces, BeginWithTheRootAndTheHomeDirectory) {
  const std::vector<Place> places = MountedPlaces();
  ASSERT_GE(places.size(), 2U);
  EXPECT_EQ(places[0].Name, "computer  (/)");
  EXPECT_EQ(places[0].Path, "/");
  EXPECT_EQ(places[1].Path, StripSeparator(HomeDirectory()));
}

TEST(MountedPlaces, AreNamedInTheLanguageOfTheUser) {
  const std::vector<Place> places = MountedPlacesIn(Language::kGerman);
  ASSERT_GE(places.size(), 2U);
  EXPECT_EQ(places[0].Name, "Rechner  (/)");
  EXPECT_TRUE(places[1].Name.starts_with("eigenes Verzeichnis  (")) << places[1].Name;
}

TEST(MountedPlaces, NameTheHomeDirectoryIfItIsThereAndIsNotTheRoot) {
  const TemporaryDirectory directory;
  const std::string before = HomeDirectory();
  const auto names_home = [](const std::string& home) {
    setenv("HOME", home.c_str(), 1);
    const std::vector<Place> places = MountedPlaces();
    return places.size() > 1 && places[1].Name == "home  (" + home + ")";
  };
  EXPECT_TRUE(names_home(directory.Path()));
  EXPECT_FALSE(names_home(directory.File("gone")));
  EXPECT_FALSE(names_home("/"));
  setenv("HOME", before.c_str(), 1);
}

TEST(Subdirectories, FollowLinksAndSayIfTheyCannotBeRead) {
  const TemporaryDirectory home;
  std::filesystem::create_directory(home.File("real"));
  std::filesystem::create_symlink(home.File("real"), home.File("Link"));
  std::filesystem::create_symlink(home.File("gone"), home.File("dead"));
  EXPECT_EQ(Subdirectories(home.Path()), (std::vector<std::string>{"Link", "real"}));
  EXPECT_EQ(Subdirectories(home.File("gone")), std::nullopt);
}

TEST(ParentDirectory, EndsAtTheRoot) {
  EXPECT_EQ(ParentDirectory("/home/maria/"), "/home");
  EXPECT_EQ(ParentDirectory("/home"), "/");
  EXPECT_EQ(ParentDirectory("/"), "/");
  EXPECT_EQ(ParentDirectory("name"), "/");
}

}  // namespace
}  // namespace tavrel
