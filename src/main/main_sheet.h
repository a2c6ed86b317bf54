#ifndef TAVREL_MAIN_MAIN_SHEET_H_
#define TAVREL_MAIN_MAIN_SHEET_H_

#include <optional>
#include <string>

#include "files/recording_engine.h"
#include "files/recording_file.h"
#include "link/link.h"
#include "main/line_state.h"
#include "main/sheet_values.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "platform/screens.h"
#include "state/run_state.h"

namespace tavrel {

// The sheet of all slots: what its rows show, and what the user does on them. One refresh call
// serves one row with at most three exchanges, so that a tick of the cycle stays short.
class MainSheet {
 public:
  struct Parts {  // all outlive the sheet
    RunState& state;
    Link& link;
    const Clock& clock;
    Screens& screens;
    Events& events;
    RecordingFiles& files;
    RecordingEngine& engine;
  };
  explicit MainSheet(const Parts& parts) : parts_(parts) {}

  // What the form shows now. The form reads it after every event.
  [[nodiscard]] const SheetValues& Values() const { return values_; }

  // The caption, with a word if the link is simulated, and the language of the tool tips.
  void SetCaptionAndTips();

  // Shows the frame of rows and lets the commands work, once the slots are filled.
  void ShowPanel();

  // `slot` 1..12. The values come with the next pass.
  void ShowRow(int slot);
  void HideRow(int slot);

  // A slot whose file cannot be opened now: its name stands on the sheet, and that it is tried
  // again.
  void ShowWaitingRow(int slot);

  // True if the controller of the slot heats, or may heat, by what was read of it last.
  [[nodiscard]] bool IsControllerOn(int slot) const;

  // Advances to the next row in use and refreshes it; after the last one the pass ends and the
  // next begins 5 s later.
  void RefreshRow();

  // Takes over what changed outside a pass: the line beside the table.
  void RefreshInfo();

  // What is known of the line now, in words. Sends nothing.
  void RefreshState();

  // F5: the next pass begins at once.
  void RefreshNow();

  // The commands of a row.
  void lb_TavNo_Click(int slot);
  void tx_Des_Change(int slot, const std::string& text);
  void cmd_Work_Click(int slot);

  // Lets the user choose a recording file to look at and opens it in row 0 and on the worksheet.
  // Cancel leaves the row as it was; a file that is refused hides the row.
  void cmd_Open_Click();

  // Shows the file at that path from the root as if it had been chosen with cmd_Open; the file to
  // which a test records, on the worksheet of that test. Only while MayShowFile().
  void ShowFile(const std::string& path);

  // No screen is open, and the start is over.
  [[nodiscard]] bool MayShowFile() const;

  // The main form is no longer in front: the count of the backlog has been seen.
  void LeaveFront();

  // picCmds while a dialog of the menu is open.
  void ShowCommands(bool shown) { values_.picCmds = shown; }

 private:
  static constexpr int kNothingShown = 2;  // no result code: the row is to be built anew

  // The raw values behind a row's cells, as last shown.
  struct ShownRaw {
    int com_status = kNothingShown;
    std::optional<int> rec_state;
    int ctrl_state = -1;
    bool waits_for_stop = false;
    int reference = kNoData;
    int ctrl = kNoData;
    std::int32_t sample_count = -1;
    std::string file;
  };

  [[nodiscard]] LineState StateOfLine() const;
  void EmptyCells(int slot);
  void BeginPass();
  void EndPass();
  void RefreshSlot(int slot);
  [[nodiscard]] std::int16_t ReadWord(int inet, const char* letter, int index);
  [[nodiscard]] std::int16_t ReadIfGood(int inet, const char* letter, int index);
  void RefreshStatus(int slot);
  void RefreshController(int slot);
  void RefreshFile(int slot);
  void RefreshRecording(int slot);
  void SaveViewedFile();
  void OpenViewedFile();
  void TakeChoice(const std::string& directory, const std::string& name);
  void ShowViewedFile();

  SheetRow& Row(int slot) { return values_.Rows[slot]; }
  ShownRaw& Shown(int slot) { return shown_[slot]; }

  Parts parts_;
  SheetValues values_;
  BySlot<ShownRaw> shown_;
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_MAIN_SHEET_H_
