#ifndef TAVREL_STATE_STEPPED_SCREEN_H_
#define TAVREL_STATE_STEPPED_SCREEN_H_

#include <functional>
#include <utility>
#include <vector>

#include "base/active_view.h"

namespace tavrel {

// The screens that do their work within the measuring cycle. Such a screen makes one short step,
// one exchange or a few, each time when the cycle gives it its turn; it needs no timer of its own,
// and nothing of the cycle gets between its exchanges. One instance for the life of the program.
//
// A step returns at once: it opens no box and serves no events, for the cycle stands still
// meanwhile. What it has to tell goes to Messages or into the values that its form shows.
class SteppedScreens {
 public:
  using StepOfScreen = std::function<void()>;

  // A screen that is open: it has its turn while it is also the one in front, from the beginning on
  // until this goes. Screens close in the reverse of the order in which they opened.
  class Turn {
   public:
    // `screens` outlives this; `step` is called from the cycle.
    Turn(SteppedScreens& screens, View view, StepOfScreen step) : screens_(screens) {
      screens_.open_.push_back({view, std::move(step)});
    }
    ~Turn() { screens_.open_.pop_back(); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

   private:
    SteppedScreens& screens_;
  };

  // One step of the screen that was opened last under that number. Nothing happens if there is
  // none.
  void Step(View view) const {
    for (auto screen = open_.rbegin(); screen != open_.rend(); ++screen) {
      if (screen->view == view) {
        const StepOfScreen step = screen->step;  // the screen may close in its own step
        step();
        return;
      }
    }
  }

 private:
  struct OpenScreen {
    View view;
    StepOfScreen step;
  };

  std::vector<OpenScreen> open_;
};

}  // namespace tavrel

#endif  // TAVREL_STATE_STEPPED_SCREEN_H_
