#include "platform/qt/qt_signals.h"

#include <sys/socket.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <span>

namespace tavrel {
namespace {

constexpr std::array kRequests = {SIGTERM, SIGINT, SIGHUP};
constexpr std::array kFailedWrites = {SIGPIPE, SIGXFSZ};

// A handler is called without an argument, so its end of the pair is known to the process.
std::atomic<int>& HandlerEnd() {
  static std::atomic<int> descriptor{-1};
  return descriptor;
}

// Only what is allowed in a handler: one write, errno kept. A pair that is full already holds
// a request.
void OnRequest(int /*number*/) {
  const int kept = errno;
  const char mark = 1;
  [[maybe_unused]] const ssize_t written = write(HandlerEnd().load(), &mark, 1);
  errno = kept;
}

// Not "ignore", which programs that this one starts would inherit.
void OnFailedWrite(int /*number*/) {}

void Install(std::span<const int> numbers, void (*handler)(int)) {
  struct sigaction action {};
  action.sa_handler = handler;
  action.sa_flags = SA_RESTART;
  sigemptyset(&action.sa_mask);
  for (const int number : numbers) {
    sigaction(number, &action, nullptr);
  }
}

}  // namespace

QtSignals::QtSignals(QObject* parent) : QObject(parent) {
  Install(kFailedWrites, OnFailedWrite);
  constexpr int kKind = SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC;
  if (socketpair(AF_UNIX, kKind, 0, pipe_.data()) != 0) {
    return;
  }
  notifier_ = new QSocketNotifier(pipe_[0], QSocketNotifier::Read, this);
  connect(notifier_, &QSocketNotifier::activated, this, &QtSignals::TakeRequest);
  HandlerEnd() = pipe_[1];
  Install(kRequests, OnRequest);
}

QtSignals::~QtSignals() {
  Install(kFailedWrites, SIG_DFL);
  if (notifier_ == nullptr) {
    return;
  }
  Install(kRequests, SIG_DFL);
  HandlerEnd() = -1;
  delete notifier_;
  close(pipe_[0]);
  close(pipe_[1]);
}

bool QtSignals::HasRequest() const {
  char mark = 0;
  return notifier_ != nullptr && recv(pipe_[0], &mark, 1, MSG_PEEK | MSG_DONTWAIT) > 0;
}

void QtSignals::TakeRequest() {
  std::array<char, 64> marks{};
  while (read(pipe_[0], marks.data(), marks.size()) > 0) {
  }
  emit EndRequested();
}

}  // namespace tavrel
