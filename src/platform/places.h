#ifndef TAVREL_PLATFORM_PLACES_H_
#define TAVREL_PLATFORM_PLACES_H_

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/language.h"

// Where directories begin for a user, and what they hold. Paths are UTF-8; nothing throws.
namespace tavrel {

// A place from which directories are looked for, as a list of drives shows it.
struct Place {
  std::string Name;  // for the user: "STICK  (/media/maria/STICK)"
  std::string Path;  // without a separator at its end
};

// The root, the user's home directory and all mounted media, in this order, with names in English.
[[nodiscard]] std::vector<Place> MountedPlaces();

// The same with names in `language`.
[[nodiscard]] std::vector<Place> MountedPlacesIn(Language language);

// The mount points of media (below /media, /run/media and /mnt) in a table of mounts with the
// layout of /proc/mounts, sorted, each once.
[[nodiscard]] std::vector<std::string> MountedMedia(std::string_view mounts);

// The names of the directories in `directory`, links to directories included, hidden ones not,
// sorted without regard to case. Empty optional: `directory` cannot be read.
[[nodiscard]] std::optional<std::vector<std::string>> Subdirectories(const std::string& directory);

// The directory above `directory`; the root is above itself.
[[nodiscard]] std::string ParentDirectory(const std::string& directory);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_PLACES_H_
