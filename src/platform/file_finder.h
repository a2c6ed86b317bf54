#ifndef TAVREL_PLATFORM_FILE_FINDER_H_
#define TAVREL_PLATFORM_FILE_FINDER_H_

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace tavrel {

// Finds files as FindFile does, many of them: what is not there in the spelling that is asked for
// costs one reading of its directory, and no other as long as nothing is made or removed in it.
class FileFinder {
 public:
  // As FindFile(directory, name, no_answer).
  [[nodiscard]] std::optional<std::string> Find(const std::string& directory, std::string_view name,
                                                NoAnswer& no_answer);

 private:
  struct Listing {
    std::filesystem::file_time_type changed;  // the directory, before it was read
    std::map<std::string, std::vector<std::string>> by_capitals;  // spellings by name in capitals
  };

  [[nodiscard]] const Listing* ListingOf(const std::string& directory);

  std::map<std::string, Listing> listings_;  // by directory
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_FILE_FINDER_H_
