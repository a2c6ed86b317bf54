#ifndef TAVREL_SETUP_INSTALLATION_COMMIT_H_
#define TAVREL_SETUP_INSTALLATION_COMMIT_H_

#include <functional>
#include <string>
#include <vector>

#include "files/recording_engine.h"
#include "files/recording_file.h"
#include "setup/test_rows.h"
#include "state/messages.h"
#include "state/run_state.h"
#include "state/settings_store.h"

namespace tavrel {

// Makes the rows of the installation the tests of the program, slot by slot. Where nothing has
// changed nothing is touched, and a recording goes on. It makes no exchange and serves no events:
// the measuring stands meanwhile, and what goes wrong with one slot is announced afterwards and
// keeps no other slot from its test.
class InstallationCommit {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    RecordingFiles& files;
    RecordingEngine& engine;
    SettingsStore& settings;
    Messages& messages;
    std::function<void(int slot)> hide_row;  // on the main sheet
    std::function<void(int slot)> show_row;  // what the slot now is: in use, waiting or free
  };
  explicit InstallationCommit(const Parts& parts) : parts_(parts) {}

  // `rows` have no fault and their texts are collected. At every moment of this the settings on the
  // disk name files that are there: an empty file goes only after they name another one.
  void Run(const TestRows& rows);

 private:
  void CommitSlot(int slot, const TestRow& row);
  void EndTest(int slot);
  void FreeSlot(int slot);
  void BeginTest(int slot, const UnitRecord& row);
  void GoBack(int slot, const std::string& old_path);
  void SaveSettings();

  [[nodiscard]] UnitRecord& Unit(int slot) { return parts_.state.Unit[slot]; }

  Parts parts_;
  std::vector<std::string> empty_files_;  // paths of files that were left without a sample
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_INSTALLATION_COMMIT_H_
