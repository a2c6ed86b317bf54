#include "dialogs/choose_directory.h"

namespace tavrel {

std::optional<std::string> DirectoryChoice::Ask(const std::string& directory) {
  lists_.RefreshPlaces();
  lists_.Open(directory);
  chosen_.reset();
  OpenScreen();
  screens_.Show(View::kAllDir);
  CloseScreen();
  return chosen_;
}

void DirectoryChoice::CmdOK_Click() {
  chosen_ = lists_.Path();
  CloseScreen();
}

}  // namespace tavrel
