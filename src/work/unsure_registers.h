#ifndef TAVREL_WORK_UNSURE_REGISTERS_H_
#define TAVREL_WORK_UNSURE_REGISTERS_H_

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "link/link.h"
#include "platform/clock.h"
#include "state/messages.h"
#include "state/run_state.h"
#include "work/number_box.h"

namespace tavrel {

// A register of a controller whose last write was not acknowledged.
struct UnsureRegister {
  int Slot = 0;            // 1..12
  std::int16_t Inet = 0;   // 1..6
  std::int16_t Index = 0;  // the controller, 1..4
  const char* Letter = "";
  const char* Name = "";               // to the user: "setpoint"
  double PerUnit = 1;                  // steps of the register in a unit of what is shown
  const char* Mask = "";               // and how that is shown
  std::int16_t Sent = 0;               // what the write was to bring
  std::optional<std::int16_t> Before;  // what was known before it; empty: nothing
  std::int16_t UnitRecord::*HeaderCopy = nullptr;  // in the header of the slot; null: none
  NumberBox* Box = nullptr;          // of the open dialog that has sent it; null: it has closed
  std::chrono::nanoseconds DueAt{};  // on the clock that runs on: not to be read back before
  int QuickTries = 0;                // since it was due last
};

// After a write without an acknowledge nobody knows what the instrument holds. Such a register is
// read back as soon as the line allows, in the ticks of the cycle. Its box and its copy in the
// header then have what the instrument says. The user is told if that is not what he sees: the
// value that he has sent while the dialog is open, the value of before once he has left it.
//
// The setpoint is not judged while the controller is on a ramp, where it moves by itself: it stays
// unknown.
class UnsureRegisters {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    Link& link;
    Messages& messages;
    const Clock& clock;
  };
  explicit UnsureRegisters(const Parts& parts) : parts_(parts) {}

  // `unsure.Box`, if any, lives until Leave. A register that is unsure already keeps what was known
  // before the first of the writes.
  void Add(const UnsureRegister& unsure);

  // What the instrument holds is known now: it was read, or a write was acknowledged.
  void Settle(int inet, const char* letter, int index);

  // The dialog with these boxes closes.
  void Leave(std::span<const NumberBox> boxes);

  // Reads one back that is due: one exchange, two for a setpoint. False if there is none. One that
  // is not answered is due again ten seconds later; one that the late reply to another exchange has
  // kept off the line, at once.
  bool ReadBack();

 private:
  enum class Moves { kNo, kYes, kUnknown };

  [[nodiscard]] std::vector<UnsureRegister>::iterator Find(int inet, const char* letter, int index);
  void PutOff(const UnsureRegister& unsure);
  [[nodiscard]] Moves AskWhetherItMoves(const UnsureRegister& unsure);
  [[nodiscard]] std::optional<std::int16_t> ReadRegister(const UnsureRegister& unsure,
                                                         const char* letter);
  void Take(const UnsureRegister& unsure, std::int16_t held);
  void Tell(const UnsureRegister& unsure, std::int16_t held);

  Parts parts_;
  std::vector<UnsureRegister> unsure_;  // one for each register of the dialogs at most
};

}  // namespace tavrel

#endif  // TAVREL_WORK_UNSURE_REGISTERS_H_
