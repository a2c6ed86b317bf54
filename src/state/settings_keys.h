#ifndef TAVREL_STATE_SETTINGS_KEYS_H_
#define TAVREL_STATE_SETTINGS_KEYS_H_

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "state/settings_values.h"

// The text of the settings file, without the file: lines of `"KEY:: value"` ended by CR LF, in
// Windows-1252. One table of keys serves reading and writing.
namespace tavrel {

inline constexpr std::size_t kLargestSettingsFile = 1024 * 1024UL;  // bytes; none is that long

// The texts of the lines of a settings file, in UTF-8 and without their quotes. Lines end in
// CR LF, LF or CR. A quoted text ends at its second quote, or with the line if that is missing; a
// line without quotes is taken whole.
[[nodiscard]] std::vector<std::string> SettingsLines(std::string_view file_bytes);

// True if a file that starts with `first_line` consists of key lines.
[[nodiscard]] bool IsKeyFile(std::string_view first_line);

// Takes all `lines` but the first, which is the mark. Unknown keys and lines without "::" are
// passed over; of two lines with one key the later counts.
void TakeKeyLines(SettingsValues& values, std::span<const std::string> lines);

// The bytes of the whole settings file. What would break a line is replaced: a double quote by
// an apostrophe, a line end by a blank.
[[nodiscard]] std::string KeyFileBytes(const SettingsValues& values);

// True if a settings file gives `path` back as it is: all its characters are in Windows-1252, none
// would break the line, and no blank stands at an end.
[[nodiscard]] bool IsPathForKeyFile(const std::string& path);

}  // namespace tavrel

#endif  // TAVREL_STATE_SETTINGS_KEYS_H_
