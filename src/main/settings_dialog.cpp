#include "main/settings_dialog.h"

#include <algorithm>
#include <filesystem>

#include "base/number.h"
#include "base/text.h"
#include "dialogs/help.h"
#include "files/simulated_rows.h"
#include "main/main_texts.h"
#include "main/settings_lists.h"
#include "platform/file_system.h"
#include "platform/serial_names.h"
#include "state/settings_keys.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

constexpr const char* kTitle = "Settings";
constexpr std::size_t kLongestPath = 28;  // characters on the button

EditedSettings EditedOf(const SettingsValues& values) {
  return {values.Plant,    values.Lab,     values.Diagnostic, values.CommPort,  values.DefPath,
          values.HelpLang, values.ComMode, values.PFontName,  values.PFontSize, values.PDrawWidth};
}

void Commit(const EditedSettings& edited, SettingsValues& values) {
  values.Plant = edited.Plant;
  values.Lab = edited.Lab;
  values.Diagnostic = edited.Diagnostic;
  values.CommPort = edited.CommPort;
  values.DefPath = edited.DefPath;
  values.HelpLang = edited.HelpLang;
  values.ComMode = edited.ComMode;
  values.PFontName = edited.PFontName;
  values.PFontSize = edited.PFontSize;
  values.PDrawWidth = edited.PDrawWidth;
}

// The end of a path says more than its beginning.
std::string PathCaption(const std::string& path) {
  const std::string small = LowerCase(path);
  for (std::size_t skipped = 0;; ++skipped) {
    const std::string end = AfterCharacters(small, skipped);
    if (FirstCharacters(end, kLongestPath) == end) {
      return skipped == 0 ? end : "... " + end;
    }
  }
}

// Blanks belong to a name: "tests" and "tests " are two directories.
bool IsSameDirectory(const std::string& left, const std::string& right) {
  return left == right || IsSameFile(left, right);
}

bool AnyTestInUse(const RunState& state) {
  return std::any_of(state.SlotFile.begin() + 1, state.SlotFile.end(),
                     [](const std::string& name) { return !name.empty(); });
}

bool AnyTestNamed(const RunState& state) {
  return std::ranges::any_of(state.Settings.ActiveFiles,
                             [](const std::string& name) { return !name.empty(); });
}

bool AnyRecordingOn(const RunState& state) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (!state.SlotFile[slot].empty() && state.Unit[slot].UnitRecOn == 1) {
      return true;
    }
  }
  return false;
}

std::string MoveQuestion(const RunState& state, const std::string& from, const std::string& to) {
  const BothLanguages& text = AnyTestInUse(state) ? main_text::kTestsRun : main_text::kTestsWait;
  return text.Text(UserLanguage(state), {from, to});
}

bool IsPresent(const std::string& device) {
  std::error_code error;
  return std::filesystem::exists(device, error);
}

// Where the port itself looks for links (PortLinkDirectory).
std::string LinkDirectory(const RunState& state) {
  const std::string program = StripSeparator(state.AppPath);
  return IsInstalledByPackage(program) ? StripSeparator(state.DataHome) : program;
}

}  // namespace

void SettingsDialog::Open() {
  copy_ = EditedOf(parts_.state.Settings);
  values_ = {};
  OpenScreen();
  values_.cboCom = PortIndex(copy_.CommPort);
  values_.cboHelp = HelpIndex(copy_.HelpLang);
  values_.cboMode = ModeIndex(copy_.ComMode);
  values_.cboDia = copy_.Diagnostic ? 1 : 0;
  values_.CboWidth = WidthIndex(copy_.PDrawWidth);
  values_.Txt_Plant = copy_.Plant;
  values_.Txt_Lab = copy_.Lab;
  values_.TipLanguage = LanguageOf(copy_.HelpLang);
  ShowFont();
  ShowPath();
  ShowPorts();
  ShowDevice();
}

void SettingsDialog::cboCom_Click(int index) {
  values_.cboCom = index;
  ShowDevice();
}

void SettingsDialog::cboHelp_Click(int index) {
  values_.cboHelp = index;
  values_.TipLanguage = LanguageOf(HelpAt(index));
  ShowPorts();
  ShowDevice();
}

void SettingsDialog::CmdFont_Click() {
  FontChoice choice{copy_.PFontName, copy_.PFontSize};
  if (parts_.dialogs.FontDialog(choice)) {
    copy_.PFontName = choice.Name;
    copy_.PFontSize = choice.Size;
    ShowFont();
  }
}

void SettingsDialog::cmdPath_Click() {
  const std::optional<std::string> chosen = parts_.directory.Ask(PathInForce());
  if (!chosen || IsSameDirectory(*chosen, PathInForce())) {
    return;
  }
  // Back to where the tests are: there is nothing to ask.
  if (IsSameDirectory(*chosen, DataDirectory(parts_.state))) {
    copy_.DefPath = parts_.state.Settings.DefPath;
  } else if (CanBeKept(*chosen) && MayMoveTo(*chosen)) {
    copy_.DefPath = *chosen;
  }
  ShowPath();
}

void SettingsDialog::MnuHelp_Click() {
  ShowHelp(parts_.dialogs, parts_.shell, parts_.state.AppPath, HelpAt(values_.cboHelp));
}

void SettingsDialog::CmdOK_Click() {
  const EditedSettings edited = TakeControls();
  if (!MaySimulate(edited)) {
    return;
  }
  Commit(edited, parts_.state.Settings);
  parts_.link.LinkClose();
  parts_.state.IndexValid = false;
  Save();
}

void SettingsDialog::Quit() {
  const bool changed = TakeControls() != EditedOf(parts_.state.Settings);
  const Notice question{"Parameters changed !\nQuit anyway ?", kTitle, BoxIcon::kQuestion};
  if (changed && !parts_.dialogs.AskOk(question)) {
    return;
  }
  parts_.link.LinkClose();
  CloseScreen();
}

EditedSettings SettingsDialog::TakeControls() const {
  EditedSettings edited = copy_;
  edited.CommPort = PortAt(values_.cboCom);
  edited.HelpLang = HelpAt(values_.cboHelp);
  edited.ComMode = values_.cboMode;
  edited.Diagnostic = values_.cboDia == 1;
  edited.PDrawWidth = values_.CboWidth + 1;
  edited.Plant = Trim(values_.Txt_Plant);
  edited.Lab = Trim(values_.Txt_Lab);
  return edited;
}

// The directory that the copy means; an empty DefPath stands for the usual one.
std::string SettingsDialog::PathInForce() const {
  return copy_.DefPath.empty() ? DataDirectory(parts_.state) : copy_.DefPath;
}

// The store in memory would go on with the recording: what it answers would be written behind
// the samples of the instrument. A user who has refused that is asked again with each OK.
bool SettingsDialog::MaySimulate(const EditedSettings& edited) {
  RunState& state = parts_.state;
  if (edited.CommPort != kNoPort) {
    return true;
  }
  if (parts_.link.Simulated) {
    AskToGoOn();
    return true;
  }
  if (!AnyRecordingOn(state)) {
    return true;
  }
  state.SimulatedRowsAllowed = parts_.dialogs.AskOk(
      {main_text::kSimulate.Text(UserLanguage(state)), kTitle, BoxIcon::kWarning, true});
  return state.SimulatedRowsAllowed;
}

void SettingsDialog::AskToGoOn() {
  RunState& state = parts_.state;
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (StandsStillInSimulation(state, parts_.link, slot)) {
      state.SimulatedRowsAllowed = parts_.dialogs.AskYes(ConsentQuestion(state, parts_.link));
      return;
    }
  }
}

// The tests would not be found at the next start.
bool SettingsDialog::CanBeKept(const std::string& directory) {
  if (IsPathForKeyFile(directory)) {
    return true;
  }
  parts_.dialogs.Message({main_text::kNoSuchName.Text(UserLanguage(parts_.state), {directory}),
                          kTitle, BoxIcon::kWarning});
  return false;
}

bool SettingsDialog::MayMoveTo(const std::string& directory) {
  const RunState& state = parts_.state;
  if (!AnyTestInUse(state) && !AnyTestNamed(state)) {
    return true;
  }
  const std::string question = MoveQuestion(state, DataDirectory(state), directory);
  return parts_.dialogs.AskOk({question, kTitle, BoxIcon::kWarning});
}

void SettingsDialog::ShowFont() {
  values_.CmdFont = copy_.PFontName + ",  " + ShortestNumber(copy_.PFontSize);
}

void SettingsDialog::ShowPath() {
  values_.cmdPath = PathCaption(PathInForce());
}

void SettingsDialog::ShowPorts() {
  values_.PortItems = PortItems();
  for (int number = 1; number <= kSerialPorts; ++number) {
    const PortDescription port = DescribePort(number, LinkDirectory(parts_.state));
    values_.PortItems.at(static_cast<std::size_t>(number)) =
        PortItem(number, port, values_.TipLanguage);
  }
}

void SettingsDialog::ShowDevice() {
  const std::string device = SerialDevice(values_.cboCom, LinkDirectory(parts_.state));
  if (device.empty()) {
    values_.DeviceTip.clear();
    return;
  }
  constexpr BothLanguages kMissing{"  (not present)", "  (nicht vorhanden)"};
  values_.DeviceTip = " " + PortAt(values_.cboCom) + " = " + device;
  if (!IsPresent(device)) {
    values_.DeviceTip += kMissing.In(values_.TipLanguage);
  }
  values_.DeviceTip += " ";
}

// A failure ends the program in its usual way, so that files are closed and headers written.
// The message has been shown; the shut-down need not try the same file again.
void SettingsDialog::Save() {
  const bool saved = parts_.settings.SettingsSave().empty();
  if (saved) {
    CloseScreen();
    return;
  }
  parts_.dialogs.Message({"Cannot write file.", kSettingsFile, BoxIcon::kWarning});
  parts_.state.SettingsChanged = false;
  CloseScreen();
  parts_.commands.Close();
}

}  // namespace tavrel
