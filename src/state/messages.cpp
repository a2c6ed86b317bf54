#include "state/messages.h"

#include <utility>

namespace tavrel {

void Messages::Report(int slot, const Notice& notice) {
  if (deferrals_ == 0) {
    dialogs_.Message(notice);
    return;
  }
  std::string& told = told_[slot];
  if (IsSlot(slot) && told == notice.Text) {
    return;
  }
  told = notice.Text;
  kept_.push_back(notice);
}

void Messages::Recovered(int slot) {
  told_[slot].clear();
}

void Messages::ShowKept() {
  for (const Notice& notice : TakeKept()) {
    dialogs_.Announce(notice);
  }
}

std::vector<Notice> Messages::TakeKept() {
  return std::exchange(kept_, {});
}

}  // namespace tavrel
