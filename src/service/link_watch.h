#ifndef TAVREL_SERVICE_LINK_WATCH_H_
#define TAVREL_SERVICE_LINK_WATCH_H_

#include "link/result.h"

namespace tavrel {

// The unanswered exchanges in a row of the service screens. One instance: a screen that opens goes
// on with the count of the one before.
struct LinkWatch {
  static constexpr int kMostMisses = 2;  // with one more there is no connection

  int LinkMisses = 0;

  // Takes the result of an exchange. Each result but a time-out clears the count: the instrument
  // has answered, if only with a refusal. True if there is no connection; the count is then
  // `set_back`, which is how soon the next silence says so again.
  [[nodiscard]] bool MissesAnswer(LinkResult result, int set_back = kMostMisses) {
    if (result != LinkResult::kTimeOut) {
      LinkMisses = 0;
      return false;
    }
    ++LinkMisses;
    if (LinkMisses <= kMostMisses) {
      return false;
    }
    LinkMisses = set_back;
    return true;
  }
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_LINK_WATCH_H_
