#ifndef TAVREL_BASE_FILE_NAMES_H_
#define TAVREL_BASE_FILE_NAMES_H_

#include <string_view>

namespace tavrel {

// True if `file_name` (without a directory) may be a recording file. Such files have no
// extension of their own: it is the first three letters of the designation. So every name
// counts that has something behind its first point, as long as that is none of the extensions
// known to belong to other kinds of files. All behind the first point is the extension, so a
// second point makes any name a recording file's, but for an exported text: ".ASC" at its end.
[[nodiscard]] bool IsDataFileName(std::string_view file_name);

// The recording file that the program makes when it starts with none.
inline constexpr const char* kDefaultFile = "M011111A.NEW";

// True for that name, also with another letter: the program takes the next one where a foreign
// file has the name.
[[nodiscard]] bool IsDefaultFileName(std::string_view file_name);

}  // namespace tavrel

#endif  // TAVREL_BASE_FILE_NAMES_H_
