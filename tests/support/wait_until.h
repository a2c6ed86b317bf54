#ifndef TAVREL_TESTS_SUPPORT_WAIT_UNTIL_H_
#define TAVREL_TESTS_SUPPORT_WAIT_UNTIL_H_

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <chrono>

namespace tavrel {

// Runs the event loop until `condition` holds. False if that takes longer than ten seconds.
template <typename Condition>
[[nodiscard]] bool WaitUntil(Condition condition) {
  const QDeadlineTimer end(std::chrono::seconds(10));
  while (!condition()) {
    if (end.hasExpired()) {
      return false;
    }
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
  }
  return true;
}

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_WAIT_UNTIL_H_
