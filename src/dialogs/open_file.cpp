#include "dialogs/open_file.h"

#include <algorithm>
#include <utility>

#include "base/element.h"
#include "base/text.h"
#include "platform/file_system.h"
#include "state/settings_store.h"

namespace tavrel {

OpenFile::OpenFile(Parts parts)
    : ModalScreen(parts.state, View::kAllOpen),
      parts_(std::move(parts)),
      lists_(parts_.list_places) {}

void OpenFile::Open() {
  OpenScreen();
  values_ = OpenFileValues();
  values_.TipLanguage = LanguageOf(parts_.state.Settings.HelpLang);
  values_.SortKey = parts_.state.Settings.SortKey;
  lists_.RefreshPlaces();
  lists_.Open(parts_.index.ListedDirectory());
}

void OpenFile::Display(const std::function<void()>& show) {
  if (!parts_.index.IsValid()) {
    Build(show);
    return;
  }
  TakeRows(NameToSelect());
  show();
}

// The box comes last, so that the grid behind it is already the new one.
void OpenFile::Build(const std::function<void()>& show) {
  const std::optional<Notice> notice = parts_.index.Build([&](int percent) {
    values_.Progress = percent;
    values_.Revision = parts_.index.Revision();
    show();
    parts_.events.Repaint();
  });
  values_.Progress = kNoProgress;
  TakeRows(NameToSelect());
  show();
  if (notice) {
    parts_.dialogs.Message(*notice);
  }
}

// The file chosen last; after Cancel that on the sheet.
const std::string& OpenFile::NameToSelect() const {
  const std::string& open_file = parts_.state.Settings.OpenFile;
  return open_file.empty() ? parts_.state.SlotFile[kViewedFile] : open_file;
}

// Shows the rows as they are now, on the row of `name` if it is among them, else on the first.
void OpenFile::TakeRows(const std::string& name) {
  const int count = static_cast<int>(Rows().size());
  values_.Revision = parts_.index.Revision();
  values_.SortKey = parts_.index.Order();
  values_.noFiles = std::to_string(count);
  const int row = static_cast<int>(parts_.index.RowOf(name).value_or(0));
  Select(row, {row, row});
}

void OpenFile::Select(int current_row, RowBlock block) {
  const int last = static_cast<int>(Rows().size()) - 1;
  const bool is_row = current_row >= 0 && current_row <= last;
  values_.CurrentRow = is_row ? current_row : -1;
  values_.Selected = RowBlock();
  if (is_row) {
    values_.Selected = {std::clamp(block.First, 0, current_row),
                        std::clamp(block.Last, current_row, last)};
  }
  values_.cmdCopyEnabled = is_row && parts_.screens.Has(View::kAllCopy);
}

std::string OpenFile::NameAt(int row) const {
  const IndexRow* found = ElementAt(Rows(), row);
  return found != nullptr ? found->Name : std::string();
}

std::vector<std::string> OpenFile::SelectedNames() const {
  std::vector<std::string> names;
  for (int row = values_.Selected.First; row >= 0 && row <= values_.Selected.Last; ++row) {
    names.push_back(NameAt(row));
  }
  return names;
}

void OpenFile::cmdOpen_Click() {
  const std::string name = Trim(NameAt(values_.CurrentRow));
  if (name.empty()) {
    cmdBack_Click();
    return;
  }
  SetOpenPath(parts_.index.ListedDirectory());
  SetOpenFile(name);
  CloseScreen();
}

// The rows of another directory are not built again for nobody to see: without IndexValid the
// next opening does it.
void OpenFile::cmdBack_Click() {
  RunState& state = parts_.state;
  const std::string listed = parts_.index.ListedDirectory();
  lists_.Open(listed);
  if (listed != DataDirectory(state) && !IsSameFile(listed, DataDirectory(state))) {
    SetOpenPath(state.Settings.DefPath);
  }
  state.IndexValid = false;
  SetOpenFile("");
  CloseScreen();
}

void OpenFile::cmdNew_Click(const std::function<void()>& show) {
  const std::string path = StripSeparator(lists_.Path());
  if (path.empty()) {
    return;
  }
  SetOpenPath(path);
  lists_.Open(path);
  Build(show);
}

void OpenFile::cmdCopy_Click() {
  if (values_.cmdCopyEnabled) {
    parts_.screens.Show(View::kAllCopy);
  }
}

void OpenFile::cmdFile_Click() {
  const std::string name = NameAt(values_.CurrentRow);
  parts_.index.ToggleFileSort();
  TakeRows(name);
}

void OpenFile::cmdProduct_Click() {
  const std::string name = NameAt(values_.CurrentRow);
  parts_.index.ToggleProductSort();
  TakeRows(name);
}

void OpenFile::SortBy(IndexColumn column) {
  const std::string name = NameAt(values_.CurrentRow);
  parts_.index.SortBy(column);
  TakeRows(name);
}

void OpenFile::SetOpenPath(const std::string& path) {
  RunState& state = parts_.state;
  if (state.Settings.OpenPath != path) {
    state.Settings.OpenPath = path;
    state.SettingsChanged = true;
  }
}

void OpenFile::SetOpenFile(const std::string& name) {
  RunState& state = parts_.state;
  if (state.Settings.OpenFile != name) {
    state.Settings.OpenFile = name;
    state.SettingsChanged = true;
  }
}

}  // namespace tavrel
