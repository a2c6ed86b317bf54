#include "dialogs/written_file.h"

#include <filesystem>

namespace tavrel {
namespace {

constexpr BothLanguages kWritten{"The file has been written:", "Die Datei ist geschrieben:"};
constexpr BothLanguages kOpenFolder{"Open folder", "Ordner öffnen"};
constexpr BothLanguages kNotShown{"There is no program that shows folders. The folder is",
                                  "Es gibt kein Programm, das Ordner anzeigt. Der Ordner ist"};

}  // namespace

void TellWhereItWent(Dialogs& dialogs, Shell& shell, const std::string& path, const char* title,
                     Language language) {
  const Notice written{std::string(kWritten.In(language)) + "\n\n" + path, title,
                       BoxIcon::kInformation};
  if (!dialogs.Offer(written, std::string(kOpenFolder.In(language)))) {
    return;
  }
  const std::string folder = std::filesystem::path(path).parent_path().string();
  const Notice not_shown{std::string(kNotShown.In(language)) + "\n\n" + folder, title,
                         BoxIcon::kInformation};
  shell.OpenDocument(folder, [&dialogs, not_shown] { dialogs.Announce(not_shown); });
}

}  // namespace tavrel
