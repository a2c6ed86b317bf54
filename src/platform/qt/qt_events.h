#ifndef TAVREL_PLATFORM_QT_QT_EVENTS_H_
#define TAVREL_PLATFORM_QT_QT_EVENTS_H_

#include <QTimer>
#include <chrono>
#include <functional>

#include "platform/events.h"

namespace tavrel {

// The event loop and the pointer of the application.
class QtEvents : public Events {
 public:
  QtEvents();
  ~QtEvents() override;
  QtEvents(const QtEvents&) = delete;
  QtEvents& operator=(const QtEvents&) = delete;

  // `copy` brings the values of the forms to their widgets. It runs before each repaint that a
  // rule asks for, since the rule's own event is not over then.
  void BeforeRepaint(std::function<void()> copy) { before_repaint_ = std::move(copy); }

  // `probe` says whether somebody outside wants the end; without one nobody does.
  void WatchEnd(std::function<bool()> probe) { end_is_wanted_ = std::move(probe); }

  void Pump() override;

  // Delivers the waiting layout and paint requests and nothing else: no queued call, no timer,
  // no input. A part of a window that is only now uncovered is painted by Rest or Pump.
  void Repaint() override;

  // Also answers the window manager, so that it does not take the program for hung. Input stays
  // queued; a timer that runs out meanwhile fires afterwards.
  void Rest(std::chrono::milliseconds time) override;

  void WhenIdle(std::function<void()> work) override;
  [[nodiscard]] bool EndIsWanted() const override { return end_is_wanted_(); }
  void SetPointer(Pointer pointer) override;
  void Beep() override;

  // While one of these lives the pointer is the normal one, whatever the rules set: a box that
  // waits for the user does not show an hourglass. What was set comes back afterwards.
  class NormalPointer {
   public:
    explicit NormalPointer(QtEvents& events) : events_(events) { events_.HoldNormal(1); }
    ~NormalPointer() { events_.HoldNormal(-1); }
    NormalPointer(const NormalPointer&) = delete;
    NormalPointer& operator=(const NormalPointer&) = delete;

   private:
    QtEvents& events_;
  };

 private:
  void HoldNormal(int change);
  void ShowPointer();

  std::function<void()> before_repaint_ = [] {};
  std::function<void()> when_idle_ = [] {};
  std::function<bool()> end_is_wanted_ = [] { return false; };
  QTimer idle_;                         // fires behind all other events
  Pointer pointer_ = Pointer::kNormal;  // what the rules set
  int normal_holds_ = 0;
  bool overridden_ = false;  // the application's cursor is the hourglass now
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_QT_EVENTS_H_
