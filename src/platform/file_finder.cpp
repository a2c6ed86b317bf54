#include "platform/file_finder.h"

#include <algorithm>
#include <system_error>

#include "base/text.h"

namespace tavrel {

namespace fs = std::filesystem;

// What the system does not answer clearly is left to FindFile, which tells why.
std::optional<std::string> FileFinder::Find(const std::string& directory, std::string_view name,
                                            NoAnswer& no_answer) {
  no_answer = {};
  const bool is_name = name.find('\0') == std::string_view::npos && !name.empty() &&
                       name.find('/') == std::string_view::npos &&
                       directory.find('\0') == std::string::npos;
  std::error_code error;
  const std::string exact = JoinPath(directory, name);
  const auto type = is_name ? fs::status(exact, error).type() : fs::file_type::none;
  if (type == fs::file_type::regular) {
    return exact;
  }
  const Listing* const listing = type == fs::file_type::not_found ? ListingOf(directory) : nullptr;
  if (listing == nullptr) {
    return FindFile(directory, name, no_answer);
  }
  const auto found = listing->by_capitals.find(UpperCase(name));
  if (found == listing->by_capitals.end()) {
    return std::nullopt;
  }
  for (const std::string& spelling : found->second) {
    if (auto path = FindFile(directory, spelling, no_answer)) {
      return path;
    }
  }
  return std::nullopt;
}

// Null if the directory cannot be read.
const FileFinder::Listing* FileFinder::ListingOf(const std::string& directory) {
  const fs::path path(directory.empty() ? "." : directory);
  std::error_code error;
  const auto changed = fs::last_write_time(path, error);
  const auto known = listings_.find(directory);
  if (!error && known != listings_.end() && known->second.changed == changed) {
    return &known->second;
  }
  Listing listing{changed, {}};
  fs::directory_iterator entry(path, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    const std::string name = entry->path().filename().string();
    listing.by_capitals[UpperCase(name)].push_back(name);
  }
  if (error) {
    return nullptr;
  }
  for (auto& [capitals, spellings] : listing.by_capitals) {
    std::sort(spellings.begin(), spellings.end());
  }
  return &(listings_[directory] = std::move(listing));
}

}  // namespace tavrel
