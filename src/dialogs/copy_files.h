#ifndef TAVREL_DIALOGS_COPY_FILES_H_
#define TAVREL_DIALOGS_COPY_FILES_H_

#include <functional>
#include <optional>
#include <string>

#include "base/language.h"
#include "dialogs/open_file.h"
#include "files/recording_journals.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/directory_lists.h"
#include "platform/events.h"
#include "platform/progress_meter.h"
#include "state/modal_screen.h"
#include "state/run_state.h"

namespace tavrel {

// What ALL_COPY shows besides the lists of directories.
struct CopyFilesValues {
  std::string lbPath;   // the directory that is copied to
  std::string noFiles;  // how many files are selected
  int Progress = kNoProgress;
  bool IsCopying = false;  // nothing can be chosen; leaving ends the copying
  Language TipLanguage = Language::kEnglish;
};

// ALL_COPY, the copying of the files that are selected in ALL_OPEN to another directory: what the
// form shows and what its controls do. One instance for the life of the program; the form is open
// at most once.
class CopyFiles : public ModalScreen {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    const OpenFile& open_file;
    RecordingJournals& journals;
    Dialogs& dialogs;
    Events& events;
    const Clock& clock;
    DirectoryLists::ListPlaces list_places = MountedPlaces;
  };
  explicit CopyFiles(Parts parts);

  // The form comes to the front, on the last destination; where that is gone, on the user's home.
  void Open();

  [[nodiscard]] const CopyFilesValues& Values() const { return values_; }

  [[nodiscard]] DirectoryLists& Lists() { return lists_; }

  // The user did something in the lists.
  void Lists_Change();

  // Asks and copies; the count is told at the end. The form closes once something was copied.
  // `show` runs whenever the values change before this returns. Timers go on meanwhile.
  void cmdCopy_Click(const std::function<void()>& show);

  // Ends the copying that goes on, else closes.
  void Quit() override;

 private:
  // How one file went.
  enum class Outcome { kCopied, kNot, kStop };

  // What was copied, by kinds of files.
  struct Counts {
    int Data = 0;
    int Curves = 0;
  };

  [[nodiscard]] Counts CopyAll(const std::string& target, const std::function<void()>& show);
  [[nodiscard]] Outcome CopyOne(const std::string& name, const std::string& target);
  void SealIfOpen(const std::string& path);
  [[nodiscard]] Outcome TellProblem(const std::string& name, const std::string& problem);
  [[nodiscard]] bool ServeEvents();
  [[nodiscard]] bool IsToEnd() const { return stop_ || parts_.events.EndIsWanted(); }
  void Refuse(const std::string& name, const std::string& reason);
  [[nodiscard]] bool HasCompanions() const;
  void SetDestPath(const std::string& path);

  Parts parts_;
  DirectoryLists lists_;
  CopyFilesValues values_;
  bool stop_ = false;  // the user wants the copying to end
};

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_COPY_FILES_H_
