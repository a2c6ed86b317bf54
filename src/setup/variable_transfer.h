#ifndef TAVREL_SETUP_VARIABLE_TRANSFER_H_
#define TAVREL_SETUP_VARIABLE_TRANSFER_H_

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "link/link.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "platform/events.h"
#include "setup/channel_values.h"
#include "setup/variable_file.h"
#include "state/run_state.h"

namespace tavrel {

// Takes the parameters of an instrument into a variable file and brings them back. Both run within
// one event: only the label and the bar are painted meanwhile, and nothing else uses the line.
class VariableTransfer {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    Link& link;
    Dialogs& dialogs;
    Events& events;
    const Clock& clock;
    ChannelValues& values;
    AdjState& adj_state;
  };
  VariableTransfer(const Parts& parts, int inet) : parts_(parts), inet_(inet) {}

  // Asks for a name and saves all registers. For a register that was not answered the file gets the
  // value read before it, and the user is told that the file has errors. The file is written
  // beside the target and takes its place at once; what cannot be written is left alone. `show`
  // copies the values to the widgets. Afterwards the dialog is in the step in which it was before.
  void Save(const std::function<void()>& show);

  // Asks, lets the user choose a file and writes its registers. Each write is tried twice; behind
  // the group in which one fails nothing more is written. Afterwards the sheet is to be read anew;
  // if nothing was written the dialog is in the step in which it was before.
  void Load(const std::function<void()>& show);

 private:
  struct Chosen {
    std::string path;
    std::string name;  // without the directory
  };
  [[nodiscard]] std::optional<Chosen> Choose(FileMode mode) const;
  [[nodiscard]] bool CanWrite(const std::string& path) const;
  void Begin();
  void End();
  void ShowRegister(char letter, int row, int done, const std::function<void()>& show);
  void Change(AdjState from, AdjState to);
  [[nodiscard]] VariableWords ReadAll(const std::function<void()>& show);
  void Store(const std::string& path, const VariableWords& words);
  void TellSaved(const std::string& name);
  [[nodiscard]] bool MayLoad(const std::optional<std::string>& bytes, const std::string& name);
  void WriteAll(std::string_view bytes, const std::function<void()>& show);
  [[nodiscard]] bool WriteTwice(const Variable& variable);
  [[nodiscard]] bool MustStop();

  Parts parts_;
  int inet_;
  std::optional<std::chrono::nanoseconds> end_wanted_;  // since when
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_VARIABLE_TRANSFER_H_
