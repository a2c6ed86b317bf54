#ifndef TAVREL_DIALOGS_OPEN_FILE_H_
#define TAVREL_DIALOGS_OPEN_FILE_H_

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/language.h"
#include "files/file_index.h"
#include "platform/dialogs.h"
#include "platform/directory_lists.h"
#include "platform/events.h"
#include "platform/progress_meter.h"
#include "platform/screens.h"
#include "state/modal_screen.h"
#include "state/run_state.h"

namespace tavrel {

// A block of rows of the index, both ends included. -1: there is none.
struct RowBlock {
  int First = -1;
  int Last = -1;
};

// What ALL_OPEN shows besides the rows of the index and the lists of directories.
struct OpenFileValues {
  int Revision = -1;    // of the rows; when it grows the grid is filled anew
  int CurrentRow = -1;  // the row that is opened
  RowBlock Selected;    // the rows that are copied; they hold the current one
  std::string noFiles;  // how many files are listed
  std::string SortKey;  // FileIndex::Order()
  int Progress = kNoProgress;
  bool cmdCopyEnabled = false;
  bool cmdVerifyEnabled = false;
  bool IsVerifying = false;  // nothing else can be done; cmdVerify and leaving end it
  int ProofRevision = 0;     // when it grows what was found of the rows is another one
  Language TipLanguage = Language::kEnglish;
};

// ALL_OPEN, the choice of a recording file by the index of its directory: what the form shows and
// what its controls do. The choice goes to OpenFile and OpenPath of the settings; OpenFile is
// empty after Cancel. One instance for the life of the program; the form is open at most once.
class OpenFile : public ModalScreen {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    FileIndex& index;
    Dialogs& dialogs;
    Screens& screens;
    Events& events;
    DirectoryLists::ListPlaces list_places = MountedPlaces;
  };
  explicit OpenFile(Parts parts);

  // The form comes to the front: its number is in ActiveView until it is left.
  void Open();

  // The form is on the screen: the index is built if the rows are not valid. `show` runs whenever
  // the values change before this returns, so that a long search is seen.
  void Display(const std::function<void()>& show);

  [[nodiscard]] const OpenFileValues& Values() const { return values_; }
  [[nodiscard]] const std::vector<IndexRow>& Rows() const { return parts_.index.Rows(); }
  [[nodiscard]] DirectoryLists& Lists() { return lists_; }

  // Where the listed files are.
  [[nodiscard]] std::string Directory() const { return parts_.index.ListedDirectory(); }

  // The names of the files in the selected block.
  [[nodiscard]] std::vector<std::string> SelectedNames() const;

  // The user's selection in the grid. Rows outside of the index count as none.
  void Select(int current_row, RowBlock block);

  // Enter and a double click on the grid do the same. Without a row it is as cmdBack.
  void cmdOpen_Click();

  // The Escape key and the close box do the same. The next opening begins in the data directory.
  void cmdBack_Click();
  void CloseNow() override;

  // Lists the directory that the lists show. `show` as in Display.
  void cmdNew_Click(const std::function<void()>& show);

  void cmdCopy_Click();

  // Holds the files of the selected block against their journals, one after the other, and serves
  // events between them; the form stays as it is but for what was found. While that goes on it ends
  // it. `show` as in Display.
  void cmdVerify_Click(const std::function<void()>& show);

  void cmdFile_Click();
  void cmdProduct_Click();
  void SortBy(IndexColumn column);

 private:
  void Build(const std::function<void()>& show);
  [[nodiscard]] const std::string& NameToSelect() const;
  void EnableCommands();
  void VerifyAll(const std::vector<std::string>& names, const std::function<void()>& show);
  void TakeRows(const std::string& name);
  void SetOpenPath(const std::string& path);
  void SetOpenFile(const std::string& name);
  [[nodiscard]] std::string NameAt(int row) const;

  Parts parts_;
  DirectoryLists lists_;
  OpenFileValues values_;
  bool stop_ = false;  // of the verifying
};

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_OPEN_FILE_H_
