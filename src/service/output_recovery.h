#ifndef TAVREL_SERVICE_OUTPUT_RECOVERY_H_
#define TAVREL_SERVICE_OUTPUT_RECOVERY_H_

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "files/stop_orders.h"
#include "link/link.h"
#include "platform/clock.h"
#include "platform/dialogs.h"
#include "service/output_records.h"
#include "state/run_state.h"

namespace tavrel {

// Ends tests of outputs that could not end themselves: the program was killed, or the instrument
// did not answer any more. As soon as the instrument answers, the powers of its controllers become
// 0 and those that still have a status of the test become off. Then the user is asked whether they
// return to the status of before the test; without an answer they stay off.
//
// In simulation nothing reaches an instrument, and what is recorded waits.
class OutputRecovery {
 public:
  struct Parts {  // all outlive this
    RunState& state;
    Link& link;
    StopOrders& orders;
    OutputRecords& records;
    Dialogs& dialogs;
    const Clock& clock;
  };
  explicit OutputRecovery(const Parts& parts) : parts_(parts) {}

  // On a free tick: one exchange, if one is due; false if none is. An instrument that does not
  // answer is tried again ten seconds later, and as soon as a lost port is back.
  bool Step();

  // The instrument of number `from` has become number `to`: its test is ended there. Nobody returns
  // a controller to its status any more that was asked for by its old number.
  void Renumber(int from, int to);

 private:
  using Time = std::chrono::nanoseconds;
  enum class Stage { kPower, kTestPower, kLookAtStatus, kSwitchOff, kDone };

  // What is still to be done for a record.
  struct Debt {
    OutputRecord record;
    Stage stage = Stage::kPower;
    bool was_on = false;  // it was found in the test, and switched off
    Time due{};
  };
  // A controller that the user wants to have in its status of before the test.
  struct Return {
    OutputRecord record;
    std::uint32_t orders = 0;  // StopOrders::Count when it was switched off
    int numberings = 0;        // numberings_ then
    Time due{};
  };

  void TakeRecords();
  void TendFile();
  [[nodiscard]] bool IsHeld(const OutputRecord& record) const;
  void Work(Debt& debt);
  [[nodiscard]] LinkResult DoStage(Debt& debt);
  [[nodiscard]] LinkResult LookAtStatus(Debt& debt);
  void PutOff(const Debt& debt, LinkResult result);
  void EndIfDone(int inet);
  void Tell(int inet, const std::vector<Return>& returns);
  [[nodiscard]] bool StepReturn();
  [[nodiscard]] bool IsVoid(const Return& wish) const;
  [[nodiscard]] bool GiveBack(Return& wish);

  Parts parts_;
  std::vector<Debt> debts_;
  std::vector<Return> returns_;
  Time next_look_{};
  int numberings_ = 0;  // how many instruments were given another number
  bool is_loaded_ = false;
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_OUTPUT_RECOVERY_H_
