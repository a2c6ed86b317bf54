#ifndef TAVREL_MAIN_SETTINGS_DIALOG_H_
#define TAVREL_MAIN_SETTINGS_DIALOG_H_

#include <string>
#include <vector>

#include "base/language.h"
#include "dialogs/choose_directory.h"
#include "link/link.h"
#include "main/main_commands.h"
#include "platform/dialogs.h"
#include "platform/shell.h"
#include "state/modal_screen.h"
#include "state/run_state.h"
#include "state/settings_store.h"

namespace tavrel {

// What the settings dialog shows. Lists are told by their index, from 0.
struct SettingsControls {
  int cboCom = 0;
  int cboHelp = 0;
  int cboMode = 0;
  int cboDia = 0;
  int CboWidth = 0;
  std::string Txt_Plant;  // as typed, blanks included
  std::string Txt_Lab;
  std::string CmdFont;  // captions
  std::string cmdPath;
  Language TipLanguage = Language::kEnglish;
  std::vector<std::string> PortItems;  // the list of cboCom
  std::string DeviceTip;  // second line of the tool tip of cboCom: the device of the port
};

// The settings that the dialog edits.
struct EditedSettings {
  std::string Plant;
  std::string Lab;
  bool Diagnostic = false;
  std::string CommPort;
  std::string DefPath;
  std::string HelpLang;
  int ComMode = 0;
  std::string PFontName;
  float PFontSize = 0;
  int PDrawWidth = 0;

  [[nodiscard]] bool operator==(const EditedSettings&) const = default;
};

// TAVSETT, the settings dialog. It takes a private copy of the settings when it
// opens, and they change only by CmdOK_Click. A value that was never
// touched can differ from the copy's all the same, where its list cannot show it.
class SettingsDialog : public ModalScreen {
 public:
  struct Parts {  // all outlive the dialog
    RunState& state;
    Link& link;
    SettingsStore& settings;
    MainCommands& commands;
    DirectoryChoice& directory;
    Dialogs& dialogs;
    Shell& shell;
  };
  explicit SettingsDialog(const Parts& parts)
      : ModalScreen(parts.state, View::kTavSett), parts_(parts) {}

  // Before the form is shown.
  void Open();

  // What the form shows now. The form reads it after every event.
  [[nodiscard]] const SettingsControls& Values() const { return values_; }

  // The list of ports unfolds: what is plugged in is looked up again.
  void cboCom_DropDown() { ShowPorts(); }

  // The lists and texts, as the user changes them.
  void cboCom_Click(int index);
  void cboHelp_Click(int index);
  void cboMode_Click(int index) { values_.cboMode = index; }
  void cboDia_Click(int index) { values_.cboDia = index; }
  void CboWidth_Click(int index) { values_.CboWidth = index; }
  void Txt_Plant_Change(const std::string& text) { values_.Txt_Plant = text; }
  void Txt_Lab_Change(const std::string& text) { values_.Txt_Lab = text; }

  // The buttons that lead to another dialog.
  void CmdFont_Click();
  void cmdPath_Click();

  // The manual in the language that the list shows.
  void MnuHelp_Click();

  // The button and the Enter key: takes the settings over, closes the port and saves. If the
  // file cannot be written, the program is shut down. The port going out of use under a running
  // recording is asked about first.
  void CmdOK_Click();

  // Leaves without taking anything over; changes are asked about. The port is closed here, too,
  // because the caller opens it anew either way.
  void Quit() override;

 private:
  [[nodiscard]] EditedSettings TakeControls() const;
  [[nodiscard]] std::string PathInForce() const;
  [[nodiscard]] bool MaySimulate(const EditedSettings& edited);
  void AskToGoOn();
  [[nodiscard]] bool CanBeKept(const std::string& directory);
  [[nodiscard]] bool MayMoveTo(const std::string& directory);
  void ShowFont();
  void ShowPath();
  void ShowPorts();
  void ShowDevice();
  void Save();

  Parts parts_;
  EditedSettings copy_;
  SettingsControls values_;
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_SETTINGS_DIALOG_H_
