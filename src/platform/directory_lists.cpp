#include "platform/directory_lists.h"

#include <optional>
#include <utility>

#include "base/element.h"
#include "platform/file_system.h"

namespace tavrel {
namespace {

bool IsWithin(const std::string& directory, const std::string& place) {
  return directory == place || directory.starts_with(AddSeparator(place));
}

// The directories from `place` down to `directory`, which is within it.
std::vector<DirectoryLine> WayDown(const std::string& place, const std::string& directory) {
  std::vector<DirectoryLine> lines = {{place, place, 0, true}};
  std::size_t begin = AddSeparator(place).size();
  while (begin < directory.size()) {
    const std::size_t end = std::min(directory.find('/', begin), directory.size());
    const int depth = static_cast<int>(lines.size());
    lines.push_back({directory.substr(begin, end - begin), directory.substr(0, end), depth, true});
    begin = end + 1;
  }
  return lines;
}

}  // namespace

DirectoryLists::DirectoryLists(ListPlaces list_places) : list_places_(std::move(list_places)) {
  RefreshPlaces();
}

void DirectoryLists::Open(const std::string& directory) {
  std::string path = StripSeparator(directory.starts_with('/') ? directory : HomeDirectory());
  while (path != "/" && !TryOpen(IndexOfPlace(path), path)) {
    path = ParentDirectory(path);
  }
  if (path == "/") {
    TryOpen(IndexOfPlace(path), path);
  }
}

void DirectoryLists::RefreshPlaces() {
  const std::string path = Path();
  places_ = list_places_();
  drive_ = IndexOfPlace(path);
}

void DirectoryLists::ChooseDrive(int index) {
  if (const Place* place = ElementAt(places_, index)) {
    TryOpen(index, place->Path);
  }
}

void DirectoryLists::SelectLine(int index) {
  if (ElementAt(lines_, index) != nullptr) {
    selected_ = index;
  }
}

void DirectoryLists::OpenLine(int index) {
  if (ElementAt(lines_, index) != nullptr) {
    selected_ = index;
    TryOpen(drive_, Path());
  }
}

void DirectoryLists::OpenParent() {
  int open = -1;
  for (const DirectoryLine& line : lines_) {
    open += line.IsOpen ? 1 : 0;
  }
  OpenLine(open - 1);
}

std::string DirectoryLists::Path() const {
  const DirectoryLine* line = ElementAt(lines_, selected_);
  return line != nullptr ? line->Path : "";
}

// The place that lies nearest above `directory`; the first one if none does.
int DirectoryLists::IndexOfPlace(const std::string& directory) const {
  int nearest = 0;
  std::size_t longest = 0;
  for (std::size_t index = 0; index < places_.size(); ++index) {
    const std::string& path = places_[index].Path;
    if (IsWithin(directory, path) && path.size() > longest) {
      nearest = static_cast<int>(index);
      longest = path.size();
    }
  }
  return nearest;
}

// False, and nothing has changed, if `directory` cannot be read or is not within the drive.
bool DirectoryLists::TryOpen(int drive, const std::string& directory) {
  const Place* root = ElementAt(places_, drive);
  if (root == nullptr) {
    return false;
  }
  const std::string& place = root->Path;
  const std::optional<std::vector<std::string>> below = Subdirectories(directory);
  if (!below || !IsWithin(directory, place)) {
    return false;
  }
  drive_ = drive;
  lines_ = WayDown(place, directory);
  selected_ = static_cast<int>(lines_.size()) - 1;
  for (const std::string& name : *below) {
    lines_.push_back({name, JoinPath(directory, name), selected_ + 1, false});
  }
  return true;
}

}  // namespace tavrel
