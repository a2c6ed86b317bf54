#include "platform/qt/logind_guard.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

namespace tavrel {

void LogindGuard::StayAwake(bool wanted) {
  is_wanted_ = wanted;
  if (!wanted) {
    held_ = QDBusUnixFileDescriptor();
  } else if (!IsHeld() && !is_asked_) {
    Ask();
  }
}

// "sleep" also keeps desktops awake that look after idle time themselves and then ask the login
// manager; "idle" is for the login manager's own.
void LogindGuard::Ask() {
  if (!bus_) {
    bus_ = QDBusConnection::systemBus();
  }
  if (!bus_->isConnected()) {
    return;
  }
  QDBusMessage call =
      QDBusMessage::createMethodCall("org.freedesktop.login1", "/org/freedesktop/login1",
                                     "org.freedesktop.login1.Manager", "Inhibit");
  call.setArguments({"sleep:idle", "TAVREL", "a recording is on", "block"});
  call.setAutoStartService(false);
  is_asked_ = true;
  auto* answer = new QDBusPendingCallWatcher(bus_->asyncCall(call), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, &LogindGuard::TakeAnswer);
}

// The recording may be over meanwhile.
void LogindGuard::TakeAnswer(QDBusPendingCallWatcher* answer) {
  is_asked_ = false;
  const QDBusPendingReply<QDBusUnixFileDescriptor> reply = *answer;
  if (reply.isValid() && is_wanted_) {
    held_ = reply.value();
  }
  answer->deleteLater();
}

}  // namespace tavrel
