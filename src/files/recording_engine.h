#ifndef TAVREL_FILES_RECORDING_ENGINE_H_
#define TAVREL_FILES_RECORDING_ENGINE_H_

#include "common/messages.h"
#include "files/recording_file.h"
#include "frame/run_state.h"
#include "frame/settings_store.h"
#include "link/link.h"
#include "platform/dialogs.h"
#include "platform/screens.h"

namespace tavrel {

// What moves samples from the instruments into the recording files, with the start and stop of
// a recording and what happens when a file is full. One call of PumpOnce makes at most one
// exchange on the line.
class RecordingEngine {
 public:
  struct Parts {  // all outlive the engine
    RunState& state;
    Link& link;
    RecordingFiles& files;
    SettingsStore& settings;
    Messages& messages;
    Dialogs& dialogs;
    Screens& screens;
  };
  explicit RecordingEngine(const Parts& parts);

  // One step of the pump: finds the wanted slot and channel, downward, and reads one register.
  // A set that is complete but could not be written is tried again without an exchange.
  void PumpOnce();

  // Every ten seconds: waiting slots read again, and a controller that the end action could not
  // switch off is tried once more.
  void TenSecondTick();

  // Every 1200 seconds: closes and opens the files of recording slots again.
  void FlushFiles();

  // Starts recording on a slot by the user's wish; says in a box why it did not.
  void StartRecording(int slot);

  // Asks, then stops. The instrument is not told.
  void StopRecording(int slot);

  // The file of the slot is full: stops the recording and carries out UnitEndAction.
  void EndOfRecording(int slot);

  // True if at least one channel of the next set has arrived: a half-read set, or a whole one
  // that could not be written yet.
  [[nodiscard]] bool HoldsSet(int slot) const;

 private:
  Parts parts_;
};

}  // namespace tavrel

#endif  // TAVREL_FILES_RECORDING_ENGINE_H_
