#include "dialogs/help.h"

#include "base/language.h"
#include "platform/file_system.h"

namespace tavrel {

void ShowHelp(Dialogs& dialogs, Shell& shell, const std::string& app_path,
              std::string_view help_language) {
  const bool german = LanguageOf(help_language) == Language::kGerman;
  const char* const manual = german ? kGermanManual : kEnglishManual;
  const auto found = FindFile(StripSeparator(app_path), manual);
  if (!found) {
    dialogs.Message(
        {"Help-file not found:\n\n\"" + app_path + manual + "\"", "TAVREL", BoxIcon::kInformation});
    return;
  }
  shell.OpenDocument(*found);
}

}  // namespace tavrel
