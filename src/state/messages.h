#ifndef TAVREL_STATE_MESSAGES_H_
#define TAVREL_STATE_MESSAGES_H_

#include <array>
#include <string>
#include <vector>

#include "platform/dialogs.h"
#include "state/run_state.h"

namespace tavrel {

// Where rules report what went wrong. A report in the middle of a user's own action shows a box
// at once; one from the measuring cycle or the start-up is kept, and announced afterwards
// without stopping the cycle, and the same text for the same slot only once until the slot has
// recovered. `dialogs` outlives this.
class Messages {
 public:
  explicit Messages(Dialogs& dialogs) : dialogs_(dialogs) {}

  // While one of these lives, reports are kept instead of shown. They may be nested.
  class Deferral {
   public:
    explicit Deferral(Messages& messages) : messages_(messages) { ++messages_.deferrals_; }
    ~Deferral() { --messages_.deferrals_; }
    Deferral(const Deferral&) = delete;
    Deferral& operator=(const Deferral&) = delete;

   private:
    Messages& messages_;
  };

  // `slot` 0..12 is the slot concerned; 0 also stands for none.
  void Report(int slot, const Notice& notice);

  // What kept the slot from working is over: the same text is worth telling again.
  void Recovered(int slot);

  // Announces what was kept, in its order.
  void ShowKept();

  // What was kept, in its order; nobody announces it any more.
  [[nodiscard]] std::vector<Notice> TakeKept();

 private:
  Dialogs& dialogs_;
  int deferrals_ = 0;
  std::vector<Notice> kept_;
  BySlot<std::string> told_;  // last text that was kept for each slot
};

}  // namespace tavrel

#endif  // TAVREL_STATE_MESSAGES_H_
