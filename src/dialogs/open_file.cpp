#include "dialogs/open_file.h"

#include <algorithm>
#include <utility>

#include "base/element.h"
#include "base/text.h"
#include "platform/file_system.h"
#include "state/settings_store.h"
#include "state/user_language.h"

namespace tavrel {

OpenFile::OpenFile(Parts parts)
    : ModalScreen(parts.state, View::kAllOpen),
      parts_(std::move(parts)),
      lists_(parts_.list_places) {}

void OpenFile::Open() {
  OpenScreen();
  values_ = OpenFileValues();
  parts_.index.ForgetProofs();
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
  EnableCommands();
}

void OpenFile::EnableCommands() {
  const bool has_files = values_.Selected.First >= 0;
  values_.cmdCopyEnabled = has_files && !values_.IsVerifying && parts_.screens.Has(View::kAllCopy);
  values_.cmdVerifyEnabled = has_files || values_.IsVerifying;
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

void OpenFile::cmdVerify_Click(const std::function<void()>& show) {
  if (values_.IsVerifying) {
    stop_ = true;
    return;
  }
  stop_ = false;
  values_.IsVerifying = true;
  EnableCommands();
  VerifyAll(SelectedNames(), show);
  values_.IsVerifying = false;
  values_.Progress = kNoProgress;
  EnableCommands();
  show();
}

void OpenFile::VerifyAll(const std::vector<std::string>& names, const std::function<void()>& show) {
  const std::string directory = Directory();
  FileFinder finder;
  const auto goes_on = [this] { return !stop_ && IsOpen() && !parts_.events.EndIsWanted(); };
  for (std::size_t done = 0; done < names.size() && goes_on(); ++done) {
    values_.Progress = static_cast<int>(done * 100 / names.size());
    show();
    parts_.events.Pump();
    if (goes_on()) {
      parts_.index.SetProof(names[done], ProofOf(JoinPath(directory, names[done]),
                                                 UserLanguage(parts_.state), finder));
      values_.ProofRevision = parts_.index.ProofRevision();
    }
  }
}

void OpenFile::cmdOpen_Click() {
  if (values_.IsVerifying) {
    return;
  }
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
  if (values_.IsVerifying) {
    stop_ = true;
    return;
  }
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

void OpenFile::CloseNow() {
  stop_ = true;
  values_.IsVerifying = false;
  cmdBack_Click();
}

void OpenFile::cmdNew_Click(const std::function<void()>& show) {
  const std::string path = StripSeparator(lists_.Path());
  if (path.empty() || values_.IsVerifying) {
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
  if (values_.IsVerifying) {
    return;
  }
  const std::string name = NameAt(values_.CurrentRow);
  parts_.index.ToggleFileSort();
  TakeRows(name);
}

void OpenFile::cmdProduct_Click() {
  if (values_.IsVerifying) {
    return;
  }
  const std::string name = NameAt(values_.CurrentRow);
  parts_.index.ToggleProductSort();
  TakeRows(name);
}

void OpenFile::SortBy(IndexColumn column) {
  if (values_.IsVerifying) {
    return;
  }
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
