#include "platform/qt/qt_events.h"

#include <QApplication>
#include <QDeadlineTimer>
#include <QEvent>
#include <algorithm>
#include <thread>
#include <utility>

namespace tavrel {
namespace {

// A pause between two repaints that is too short to be seen.
constexpr std::chrono::milliseconds kLook{20};

// While it lives no timer of the program fires: a timer event that is not delivered comes again
// one interval later.
class TimersWait : public QObject {
 public:
  TimersWait() { QCoreApplication::instance()->installEventFilter(this); }

 protected:
  bool eventFilter(QObject* /*receiver*/, QEvent* event) override {
    return event->type() == QEvent::Timer;
  }
};

}  // namespace

// A timer without an interval, not a queued call: queued calls that ask for each other are all
// served before the first key is looked at.
QtEvents::QtEvents() {
  idle_.setSingleShot(true);
  idle_.setInterval(0);
  idle_.callOnTimeout([this] { std::exchange(when_idle_, [] {})(); });
}

QtEvents::~QtEvents() {
  if (overridden_ && QCoreApplication::instance() != nullptr) {
    QApplication::restoreOverrideCursor();
  }
}

void QtEvents::Pump() {
  QCoreApplication::processEvents();
}

void QtEvents::Repaint() {
  before_repaint_();
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  QCoreApplication::sendPostedEvents(nullptr, QEvent::UpdateRequest);
}

void QtEvents::Rest(std::chrono::milliseconds time) {
  const QDeadlineTimer end(time, Qt::PreciseTimer);
  const TimersWait timers_wait;
  before_repaint_();
  do {
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents |
                                    QEventLoop::ExcludeSocketNotifiers);
    const auto left = std::chrono::nanoseconds(end.remainingTimeAsDuration());
    std::this_thread::sleep_for(std::min<std::chrono::nanoseconds>(left, kLook));
  } while (!end.hasExpired());
}

void QtEvents::WhenIdle(std::function<void()> work) {
  when_idle_ = std::move(work);
  idle_.start();
}

void QtEvents::SetPointer(Pointer pointer) {
  pointer_ = pointer;
  ShowPointer();
}

void QtEvents::Beep() {
  QApplication::beep();
}

void QtEvents::HoldNormal(int change) {
  normal_holds_ += change;
  ShowPointer();
}

// Keeps the application's stack of cursors at one entry or none.
void QtEvents::ShowPointer() {
  const bool hourglass = pointer_ == Pointer::kHourglass && normal_holds_ == 0;
  if (hourglass == overridden_) {
    return;
  }
  overridden_ = hourglass;
  if (hourglass) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
  } else {
    QApplication::restoreOverrideCursor();
  }
}

}  // namespace tavrel
