#ifndef TAVREL_WORK_RECORDING_SETTINGS_H_
#define TAVREL_WORK_RECORDING_SETTINGS_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/language.h"
#include "dialogs/checks.h"
#include "files/recording_file.h"
#include "platform/dialogs.h"
#include "platform/screens.h"
#include "state/messages.h"
#include "state/modal_screen.h"
#include "state/run_state.h"
#include "state/settings_store.h"

namespace tavrel {

// Rows of Cbo_Func; the index is UnitEndAction.
inline constexpr std::array<std::string_view, 3> kEndActionItems = {
    " - - -", " switch the controller off", " resume acquisition with a new file"};

// A new file begins with the recording off, also where it was on.
inline constexpr BothLanguages kOffAfterNewFile{
    "Recording is off in the new file:\nswitch it on again when it is to go on.",
    "In der neuen Datei ist die Aufzeichnung aus:\nneu einschalten, wenn sie weitergehen soll."};

// What TavRec shows.
struct RecordingSettingsValues {
  bool RecNewMode = false;  // true: frNew is shown, false: frSett
  std::string Caption;
  std::vector<std::string> SamplItems;  // rows of Cbo_Sampl
  std::string Cbo_Sampl;                // its text, seconds
  std::string Lbl_max;                  // hours
  std::string Lbl_Auto;                 // hours, of the face that is shown
  std::string Txt_Stop;                 // hours
  int Cbo_Func = 0;                     // index
};

// TavRec: a new recording file for the selected slot, or how its recording ends. One instance
// for the life of the program; its form is open at most once.
class RecordingSettings : public ModalScreen {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    RecordingFiles& files;
    SettingsStore& settings;
    Messages& messages;
    Dialogs& dialogs;
    Screens& screens;
  };
  explicit RecordingSettings(const Parts& parts)
      : ModalScreen(parts.state, View::kTavRec), parts_(parts) {}

  // Show one face for SelSlot, a slot 1..12 with a file, and return when the form has closed.
  void RunNewFile();
  void RunSettings();

  [[nodiscard]] const RecordingSettingsValues& Values() const { return values_; }

  // What the two boxes take, "10 ... 3600".
  [[nodiscard]] std::string SamplingRange() const;
  [[nodiscard]] std::string StopRange() const;

  void Cbo_Sampl_Change(const std::string& text);
  void Txt_Stop_Change(const std::string& text);
  void Cbo_Func_Click(int index);

  // New file: asks, closes the present file and begins the next; the recording is not started.
  // Settings: takes over what was changed. After a value that is refused the form stays open.
  void CmdOK_Click();

 private:
  void Run(bool new_mode);
  void ShowSampling();
  void ShowSettings();
  void ShowHours();
  [[nodiscard]] double StopHours() const;
  [[nodiscard]] Limits SamplingLimits() const;
  [[nodiscard]] Limits StopLimits() const;
  [[nodiscard]] std::optional<std::int16_t> TypedInterval();
  void NewFile();
  void BeginFile(std::int16_t interval);
  void SaveSettings();
  void TakeSettings();

  [[nodiscard]] UnitRecord& Unit() { return parts_.state.Unit[slot_]; }
  [[nodiscard]] const UnitRecord& Unit() const { return parts_.state.Unit[slot_]; }
  [[nodiscard]] std::int32_t RecInterval() const { return parts_.state.RecInterval[slot_]; }

  Parts parts_;
  int slot_ = 0;
  RecordingSettingsValues values_;
  std::string stop_at_opening_;
  int func_at_opening_ = 0;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_RECORDING_SETTINGS_H_
