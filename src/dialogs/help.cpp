#include "dialogs/help.h"

#include "base/language.h"
#include "platform/file_system.h"

namespace tavrel {
namespace {

constexpr BothLanguages kNoViewer{
    "The manual cannot be shown: there is no program for PDF files. It is here:",
    "Das Handbuch lässt sich nicht anzeigen: Es gibt kein Programm für PDF-Dateien. Es liegt "
    "hier:"};

}  // namespace

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
  const std::string text = std::string(kNoViewer.In(LanguageOf(help_language))) + "\n\n" + *found;
  shell.OpenDocument(*found, [&dialogs, text] {
    dialogs.Announce({text, "TAVREL", BoxIcon::kInformation});
  });
}

}  // namespace tavrel
