#include "bench/first_look.h"

#include <sys/resource.h>

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
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

// Seconds that all threads of the process have worked.
double ProcessorSeconds() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

}  // namespace

FirstLook::FirstLook(QMainWindow& window, const std::string& start, const std::string& watched)
    : start_(std::strtoll(start.c_str(), nullptr, 10)),
      watched_(std::strtol(watched.c_str(), nullptr, 10)) {
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

void FirstLook::Settled() {
  resident_ = ResidentKilobytes();
  processor_at_ = ProcessorSeconds();
  QTimer::singleShot(watched_, this, [this] { Tell(); });
}

void FirstLook::Tell() const {
  const double worked = ProcessorSeconds() - processor_at_;
  const double share =
      watched_.count() == 0 ? 0 : 100 * worked / static_cast<double>(watched_.count());
  std::printf("%.3f %ld %.3f\n", painted_, resident_, share);
  std::fflush(stdout);
  QCoreApplication::quit();
}

}  // namespace tavrel
