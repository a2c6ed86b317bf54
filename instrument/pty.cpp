#include "instrument/pty.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

namespace instrument {
namespace {

// No echo, no line editing, no translation of carriage returns.
bool MakeRaw(int fd) {
  termios settings{};
  if (::tcgetattr(fd, &settings) != 0) {
    return false;
  }
  settings.c_iflag = 0;
  settings.c_oflag = 0;
  settings.c_lflag = 0;
  settings.c_cflag = CS8 | CREAD | CLOCAL;
  settings.c_cc[VMIN] = 1;
  settings.c_cc[VTIME] = 0;
  return ::tcsetattr(fd, TCSANOW, &settings) == 0;
}

std::string ErrorText(const std::string& what) {
  return what + ": " + std::error_code(errno, std::generic_category()).message();
}

}  // namespace

bool Pty::OpenPair(std::string& error) {
  master_ = FileDescriptor(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
  std::array<char, 128> name{};
  if (!master_.IsOpen() || ::grantpt(master_.Get()) != 0 || ::unlockpt(master_.Get()) != 0 ||
      ::ptsname_r(master_.Get(), name.data(), name.size()) != 0) {
    error = ErrorText("no pseudo-terminal");
    return false;
  }
  path_ = name.data();
  slave_ = FileDescriptor(::open(path_.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC));
  if (!slave_.IsOpen() || !MakeRaw(slave_.Get())) {
    error = ErrorText(path_);
    return false;
  }
  return true;
}

bool Pty::MakeLink(std::string& error) {
  // Made beside its place and moved there: the name is never missing and never half made.
  const std::string beside = link_path_ + ".new";
  std::error_code failure;
  std::filesystem::remove(beside, failure);
  std::filesystem::create_symlink(path_, beside, failure);
  if (!failure) {
    std::filesystem::rename(beside, link_path_, failure);
  }
  if (failure) {
    error = link_path_ + ": " + failure.message();
  }
  return !failure;
}

bool Pty::Plug(const std::string& link_path, std::string& error) {
  Unplug();
  if (!OpenPair(error)) {
    Unplug();
    return false;
  }
  link_path_ = link_path;
  if (!link_path_.empty() && !MakeLink(error)) {
    link_path_.clear();
    Unplug();
    return false;
  }
  return true;
}

void Pty::Unplug() {
  if (!link_path_.empty()) {
    std::error_code failure;
    const auto target = std::filesystem::read_symlink(link_path_, failure);
    if (!failure && target == path_) {
      std::filesystem::remove(link_path_, failure);
    }
    link_path_.clear();
  }
  slave_.Close();
  master_.Close();
  path_.clear();
}

void Pty::Unlock() {
  ::ioctl(slave_.Get(), TIOCNXCL);
}

bool Pty::HasBytes() const {
  int count = 0;
  return ::ioctl(master_.Get(), FIONREAD, &count) == 0 && count > 0;
}

std::string Pty::Read() {
  std::array<char, 4096> bytes{};
  const ssize_t count = ::read(master_.Get(), bytes.data(), bytes.size());
  return count > 0 ? std::string(bytes.data(), static_cast<std::size_t>(count)) : std::string();
}

void Pty::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(master_.Get(), bytes.data(), bytes.size());
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count <= 0) {
      return;
    }
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

}  // namespace instrument
