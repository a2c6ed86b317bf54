#include "bench/bare_line.h"

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

#include <array>

namespace tavrel {
namespace {

constexpr int kNoReply = 1000;  // milliseconds

}  // namespace

BareLine::BareLine(const std::string& device)
    : handle_(open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)) {
  termios settings{};
  if (tcgetattr(handle_, &settings) == 0) {
    cfmakeraw(&settings);
    tcsetattr(handle_, TCSANOW, &settings);
  }
}

BareLine::~BareLine() {
  if (handle_ >= 0) {
    close(handle_);
  }
}

bool BareLine::Exchange(std::string_view command) {
  if (write(handle_, command.data(), command.size()) != static_cast<ssize_t>(command.size())) {
    return false;
  }
  std::array<char, 64> reply{};
  while (true) {
    pollfd waiting{handle_, POLLIN, 0};
    if (poll(&waiting, 1, kNoReply) <= 0) {
      return false;
    }
    const ssize_t got = read(handle_, reply.data(), reply.size());
    if (got <= 0) {
      return false;
    }
    if (std::string_view(reply.data(), static_cast<std::size_t>(got)).find('\r') !=
        std::string_view::npos) {
      return true;
    }
  }
}

}  // namespace tavrel
