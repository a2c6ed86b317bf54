#ifndef TAVREL_PLATFORM_DIRECTORY_LISTS_H_
#define TAVREL_PLATFORM_DIRECTORY_LISTS_H_

#include <functional>
#include <string>
#include <vector>

#include "platform/places.h"

namespace tavrel {

// One line of the list of directories.
struct DirectoryLine {
  std::string Name;
  std::string Path;
  int Depth = 0;        // 0 for the place itself
  bool IsOpen = false;  // it and those above it; the last open one is the directory listed
};

// What the lists DrvList and DirList show: the places, and below the place in force the way down
// to the open directory and the directories in it. One line is selected; its path is the path of
// the lists. What cannot be read changes nothing and needs no message.
class DirectoryLists {
 public:
  using ListPlaces = std::function<std::vector<Place>()>;

  explicit DirectoryLists(ListPlaces list_places = MountedPlaces);

  // Opens `directory` and selects it; of one that is not there the nearest above it that is,
  // and the user's home instead of a path that does not begin at the root.
  void Open(const std::string& directory);

  // Looks anew which places there are: a medium may have come or gone. Keeps path and lines.
  void RefreshPlaces();

  // Opens the place of that index in DrvList.
  void ChooseDrive(int index);

  // Selects a line of DirList. No effect for an index outside.
  void SelectLine(int index);

  // Opens the directory of a line and selects it.
  void OpenLine(int index);

  // Opens the directory above the open one, as far as the place goes.
  void OpenParent();

  [[nodiscard]] const std::vector<Place>& Places() const { return places_; }
  [[nodiscard]] int DriveIndex() const { return drive_; }
  [[nodiscard]] const std::vector<DirectoryLine>& Lines() const { return lines_; }
  [[nodiscard]] int SelectedLine() const { return selected_; }

  // The directory of the selected line, without a separator at its end.
  [[nodiscard]] std::string Path() const;

 private:
  [[nodiscard]] int IndexOfPlace(const std::string& directory) const;
  bool TryOpen(int drive, const std::string& directory);

  ListPlaces list_places_;
  std::vector<Place> places_;
  std::vector<DirectoryLine> lines_;
  int drive_ = 0;
  int selected_ = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_DIRECTORY_LISTS_H_
