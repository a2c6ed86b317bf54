#include "dialogs/choose_directory.h"

namespace tavrel {

std::optional<std::string> DirectoryChoice::Ask(const std::string& directory) {
  lists_.RefreshPlaces();
  lists_.Open(directory);
  chosen_.reset();
  screen_.emplace(state_, View::kAllDir);
  screens_.Show(View::kAllDir);
  screen_.reset();
  return chosen_;
}

void DirectoryChoice::CmdOK_Click() {
  chosen_ = lists_.Path();
  Leave();
}

void DirectoryChoice::Leave() {
  if (screen_) {
    screen_->Leave();
  }
}

}  // namespace tavrel
