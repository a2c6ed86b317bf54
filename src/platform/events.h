#ifndef TAVREL_PLATFORM_EVENTS_H_
#define TAVREL_PLATFORM_EVENTS_H_

#include <chrono>
#include <functional>

namespace tavrel {

enum class Pointer { kNormal, kHourglass };

// What a rule asks of the event loop and the screen as a whole.
class Events {
 public:
  virtual ~Events() = default;

  // Serves what waits in the event queue: paints, keys, timers.
  virtual void Pump() = 0;

  // Paints what has changed, without serving keys, mouse or timers.
  virtual void Repaint() = 0;

  // Sleeps and paints; keys, mouse and timers wait meanwhile.
  virtual void Rest(std::chrono::milliseconds time) = 0;

  // Runs `work` once, from the event loop, when what waits in the event queue now has been served:
  // a work that asks for its own repetition never keeps a key or a timer waiting for longer than
  // one turn. Of several only the last is run.
  virtual void WhenIdle(std::function<void()> work) = 0;

  // Somebody outside wants the program to end, which the event loop sees to as soon as it runs. A
  // rule that does not come back to it within a second looks here between its steps and returns.
  [[nodiscard]] virtual bool EndIsWanted() const { return false; }

  virtual void SetPointer(Pointer pointer) = 0;
  virtual void Beep() = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_EVENTS_H_
