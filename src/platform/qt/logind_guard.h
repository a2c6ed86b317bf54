#ifndef TAVREL_PLATFORM_QT_LOGIND_GUARD_H_
#define TAVREL_PLATFORM_QT_LOGIND_GUARD_H_

#include <QDBusConnection>
#include <QDBusUnixFileDescriptor>
#include <QObject>
#include <optional>

#include "platform/sleep_guard.h"

class QDBusPendingCallWatcher;

namespace tavrel {

// Holds an inhibitor of the login manager, which lives as long as a descriptor of ours is open.
// Nobody waits for the answer. A request that fails is made again at the next StayAwake(true).
class LogindGuard : public QObject, public SleepGuard {
  Q_OBJECT
 public:
  // On the bus of the system, which is connected when it is needed, or on that one.
  LogindGuard() = default;
  explicit LogindGuard(const QDBusConnection& bus) : bus_(bus) {}

  void StayAwake(bool wanted) override;
  [[nodiscard]] bool IsHeld() const { return held_.isValid(); }

 private:
  void Ask();
  void TakeAnswer(QDBusPendingCallWatcher* answer);

  std::optional<QDBusConnection> bus_;
  QDBusUnixFileDescriptor held_;
  bool is_wanted_ = false;
  bool is_asked_ = false;  // and not answered yet
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_LOGIND_GUARD_H_
