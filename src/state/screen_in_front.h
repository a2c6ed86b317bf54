#ifndef TAVREL_STATE_SCREEN_IN_FRONT_H_
#define TAVREL_STATE_SCREEN_IN_FRONT_H_

#include "state/run_state.h"

namespace tavrel {

// A screen that is in front: its number stands in ActiveView from the beginning on until Leave,
// or until this goes, and the number that was there comes back. Screens leave in the reverse of
// the order in which they came.
class ScreenInFront {
 public:
  ScreenInFront(RunState& state, View view) : state_(state), before_(state.ActiveView) {
    state_.ActiveView = view;
  }
  ~ScreenInFront() { Leave(); }
  ScreenInFront(const ScreenInFront&) = delete;
  ScreenInFront& operator=(const ScreenInFront&) = delete;

  // Later calls do nothing.
  void Leave() {
    if (is_in_front_) {
      state_.ActiveView = before_;
    }
    is_in_front_ = false;
  }

  [[nodiscard]] bool IsInFront() const { return is_in_front_; }

 private:
  RunState& state_;
  View before_;
  bool is_in_front_ = true;
};

}  // namespace tavrel

#endif  // TAVREL_STATE_SCREEN_IN_FRONT_H_
