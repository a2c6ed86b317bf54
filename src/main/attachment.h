#ifndef TAVREL_MAIN_ATTACHMENT_H_
#define TAVREL_MAIN_ATTACHMENT_H_

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "files/recording_engine.h"
#include "files/recording_file.h"
#include "main/main_sheet.h"
#include "state/messages.h"
#include "state/run_state.h"
#include "state/settings_store.h"

namespace tavrel {

// Puts the files that the ACTIVE keys name into their slots. A file that is not there, is damaged,
// belongs to another slot or is none of this system's loses its key at the start. An error of the
// system costs no key: the slot waits, and is tried again every ten seconds.
class Attachment {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    RecordingFiles& files;
    RecordingEngine& engine;
    SettingsStore& settings;
    MainSheet& sheet;
    Messages& messages;
  };
  explicit Attachment(const Parts& parts) : parts_(parts) {}

  // At the start: all slots, and the default one if none is in use and none waits. What was
  // dropped is told with the place of the backup that still has the names. SelSlot is the last
  // slot afterwards.
  void AttachAll();

  // Every ten seconds: tries the slots that wait. None of them loses its key here, whatever is
  // found: the medium of its file may be put in again.
  void RetryWaiting();

  // The slot has a key and no file. It is not free.
  [[nodiscard]] bool Waits(int slot) const;

  // Shows on the sheet what the slot is now: in use, waiting, or free.
  void ShowSlot(int slot);

  // The instruments of the slots that wait, by INET. Empty optional: one of them is unknown, since
  // the header of its file cannot be read.
  [[nodiscard]] std::optional<std::set<int>> WaitingInstruments() const;

 private:
  void AttachSlot(int slot);
  [[nodiscard]] bool Open(int slot);
  void TellOfDropped();
  void MakeDefaultSlot();

  Parts parts_;
  std::vector<std::string> dropped_;  // names whose keys were cleared at the start
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_ATTACHMENT_H_
