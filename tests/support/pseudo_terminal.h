#ifndef TAVREL_TESTS_SUPPORT_PSEUDO_TERMINAL_H_
#define TAVREL_TESTS_SUPPORT_PSEUDO_TERMINAL_H_

#include <fcntl.h>
#include <poll.h>
#include <stdlib.h>
#include <termios.h>
#include <unistd.h>

#include <chrono>
#include <string>

namespace tavrel {

inline constexpr const char* kDirect = "4800,n,8,2";  // how a direct line is set

// The far end of a line: what is plugged into the serial port.
class PseudoTerminal {
 public:
  PseudoTerminal() : far_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    if (far_ >= 0 && grantpt(far_) == 0 && unlockpt(far_) == 0) {
      char name[128];
      device_ = ptsname_r(far_, name, sizeof name) == 0 ? name : "";
    }
  }
  ~PseudoTerminal() { Vanish(); }
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  // Path of the device that a program opens.
  [[nodiscard]] const std::string& Device() const { return device_; }

  void Send(const std::string& text) const {
    [[maybe_unused]] const ssize_t sent = write(far_, text.data(), text.size());
  }

  // What comes from the program, `count` characters of it, or fewer after two seconds.
  [[nodiscard]] std::string Receive(std::size_t count) const {
    std::string all;
    pollfd wait{far_, POLLIN, 0};
    while (all.size() < count && poll(&wait, 1, 2000) > 0) {
      char part[256];
      const ssize_t came = read(far_, part, sizeof part);
      if (came <= 0) {
        break;
      }
      all.append(part, static_cast<std::size_t>(came));
    }
    return all;
  }

  // What has come from the program and waits; does not wait for more.
  [[nodiscard]] std::string ReceiveWaiting() const {
    pollfd wait{far_, POLLIN, 0};
    char part[4096];
    const bool waits = poll(&wait, 1, 0) > 0 && (wait.revents & POLLIN) != 0;
    const ssize_t came = waits ? read(far_, part, sizeof part) : 0;
    return {part, static_cast<std::size_t>(came > 0 ? came : 0)};
  }

  // The adapter is pulled out.
  void Vanish() {
    if (far_ >= 0) {
      close(far_);
      far_ = -1;
    }
  }

 private:
  int far_ = -1;
  std::string device_;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_PSEUDO_TERMINAL_H_
