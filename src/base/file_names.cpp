#include "base/file_names.h"

#include <algorithm>
#include <array>
#include <string>

#include "base/text.h"

namespace tavrel {
namespace {

constexpr std::array<std::string_view, 22> kForeignExtensions = {
    "BAS", "BAT", "BMP", "COM", "CMD", "DOC", "EXE", "FRM", "FRX", "GIF", "ICO",
    "JPG", "PDF", "PRG", "RTF", "TXT", "USR", "VAR", "VBP", "VBW", "ZIP", "ZMK"};

// The graph puts it behind the whole name of a recording, so it is looked for at the end.
constexpr std::string_view kExported = ".ASC";

}  // namespace

bool IsDataFileName(std::string_view file_name) {
  const std::size_t point = file_name.find('.');
  if (point == std::string_view::npos || point + 1 == file_name.size()) {
    return false;
  }
  const std::string extension = UpperCase(file_name.substr(point + 1));
  if (UpperCase(file_name).ends_with(kExported)) {
    return false;
  }
  return std::find(kForeignExtensions.begin(), kForeignExtensions.end(), extension) ==
         kForeignExtensions.end();
}

bool IsDefaultFileName(std::string_view file_name) {
  constexpr std::size_t kLetterPlace = 7;
  std::string name = UpperCase(file_name);
  if (name.size() > kLetterPlace) {
    name[kLetterPlace] = kDefaultFile[kLetterPlace];
  }
  return name == kDefaultFile;
}

}  // namespace tavrel
