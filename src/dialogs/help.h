#ifndef TAVREL_DIALOGS_HELP_H_
#define TAVREL_DIALOGS_HELP_H_

#include <string>
#include <string_view>

#include "platform/dialogs.h"
#include "platform/shell.h"

namespace tavrel {

inline constexpr const char* kGermanManual = "H207_511.pdf";  // also marks a whole installation
inline constexpr const char* kEnglishManual = "H207_512.pdf";

// Opens the manual in `app_path`, the program's directory: the German one if `help_language`
// starts with G or g, else the English one. A manual that is not there is named in a box. Where
// nothing shows it, a notice that does not block says where it is. `dialogs` outlives the program's
// events.
void ShowHelp(Dialogs& dialogs, Shell& shell, const std::string& app_path,
              std::string_view help_language);

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_HELP_H_
