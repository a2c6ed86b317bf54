#include "platform/places.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <system_error>

#include "base/text.h"
#include "platform/file_system.h"

namespace tavrel {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 3> kMediaRooms = {"/media/", "/run/media/", "/mnt/"};

constexpr BothLanguages kComputer{"computer", "Rechner"};
constexpr BothLanguages kHome{"home", "eigenes Verzeichnis"};

bool IsOctal(char digit) {
  return digit >= '0' && digit <= '7';
}

// The table writes blanks, tabs, line ends and backslashes as a backslash and three octal digits.
std::string Unescaped(std::string_view text) {
  std::string plain;
  for (std::size_t place = 0; place < text.size(); ++place) {
    const std::string_view digits = text.substr(place + 1, 3);
    const bool escaped = text[place] == '\\' && digits.size() == 3 &&
                         std::all_of(digits.begin(), digits.end(), IsOctal);
    if (!escaped) {
      plain += text[place];
      continue;
    }
    const int code = (digits[0] - '0') * 64 + (digits[1] - '0') * 8 + (digits[2] - '0');
    plain += static_cast<char>(static_cast<std::uint8_t>(code & 0xFF));
    place += digits.size();
  }
  return plain;
}

bool IsMedium(const std::string& mount_point) {
  return std::any_of(kMediaRooms.begin(), kMediaRooms.end(),
                     [&](std::string_view room) { return mount_point.starts_with(room); });
}

// What the system keeps in memory is no medium.
bool HoldsUserFiles(const std::string& kind) {
  return kind != "tmpfs" && kind != "devtmpfs" && kind != "autofs" && kind != "proc";
}

std::string MountTable() {
  std::ifstream file("/proc/mounts", std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

Place Named(const std::string& name, const std::string& path) {
  return {name + "  (" + path + ")", path};
}

std::string LastName(const std::string& path) {
  return path.substr(path.rfind('/') + 1);
}

}  // namespace

std::vector<Place> MountedPlaces() {
  return MountedPlacesIn(Language::kEnglish);
}

std::vector<Place> MountedPlacesIn(Language language) {
  std::vector<Place> places = {Named(kComputer.Text(language), "/")};
  const std::string home = StripSeparator(HomeDirectory());
  if (home != "/" && DirectoryExists(home)) {
    places.push_back(Named(kHome.Text(language), home));
  }
  for (const std::string& path : MountedMedia(MountTable())) {
    if (path != home) {
      places.push_back(Named(LastName(path), path));
    }
  }
  return places;
}

std::vector<std::string> MountedMedia(std::string_view mounts) {
  std::vector<std::string> media;
  std::istringstream lines{std::string(mounts)};
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string device;
    std::string mount_point;
    std::string kind;
    words >> device >> mount_point >> kind;
    mount_point = Unescaped(mount_point);
    if (IsMedium(mount_point) && HoldsUserFiles(kind)) {
      media.push_back(mount_point);
    }
  }
  std::sort(media.begin(), media.end());
  media.erase(std::unique(media.begin(), media.end()), media.end());
  return media;
}

std::optional<std::vector<std::string>> Subdirectories(const std::string& directory) {
  std::vector<std::string> names;
  std::error_code error;
  fs::directory_iterator entry(directory, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    std::error_code not_followed;
    std::string name = entry->path().filename().string();
    if (!name.starts_with('.') && entry->is_directory(not_followed)) {
      names.push_back(std::move(name));
    }
  }
  if (error) {
    return std::nullopt;
  }
  std::sort(names.begin(), names.end(), [](const std::string& left, const std::string& right) {
    return std::make_pair(LowerCase(left), left) < std::make_pair(LowerCase(right), right);
  });
  return names;
}

std::string ParentDirectory(const std::string& directory) {
  const std::string path = StripSeparator(directory);
  const std::size_t separator = path.rfind('/');
  if (separator == std::string::npos || separator == 0) {
    return "/";
  }
  return StripSeparator(path.substr(0, separator));
}

}  // namespace tavrel
