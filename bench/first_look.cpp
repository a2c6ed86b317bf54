#include "bench/first_look.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace tavrel {
namespace {

constexpr std::chrono::seconds kSettled{3};  // a pass over all rows is over by then

long ResidentKilobytes() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word == "VmRSS:") {
      long kilobytes = 0;
      status >> kilobytes;
      return kilobytes;
    }
  }
  return 0;
}

}  // namespace

FirstLook::FirstLook(QMainWindow& window, const std::string& start)
    : start_(std::strtoll(start.c_str(), nullptr, 10)) {
  window.installEventFilter(this);
}

// A window is painted with all that is in it in one go, so the call that is queued at its
// beginning comes when it is over.
bool FirstLook::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Paint) {
    watched->removeEventFilter(this);
    QMetaObject::invokeMethod(
        this, [this] { Painted(); }, Qt::QueuedConnection);
  }
  return false;
}

void FirstLook::Painted() {
  const auto now = std::chrono::steady_clock::now().time_since_epoch();
  painted_ = static_cast<double>(std::chrono::nanoseconds(now).count() - start_) * 1e-6;
  QTimer::singleShot(kSettled, this, [this] { Settled(); });
}

void FirstLook::Settled() const {
  std::printf("%.3f %ld\n", painted_, ResidentKilobytes());
  std::fflush(stdout);
  QCoreApplication::quit();
}

}  // namespace tavrel
