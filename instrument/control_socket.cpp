#include "instrument/control_socket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>

namespace instrument {
namespace {

constexpr std::size_t kLongestCommand = 4096;

bool AddressOf(const std::string& path, sockaddr_un& address) {
  address.sun_family = AF_UNIX;
  if (path.size() >= sizeof(address.sun_path)) {
    errno = ENAMETOOLONG;
    return false;
  }
  std::memcpy(&address.sun_path[0], path.c_str(), path.size() + 1);
  return true;
}

const sockaddr* Generic(const sockaddr_un& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

std::string ErrorText(const std::string& path) {
  return path + ": " + std::error_code(errno, std::generic_category()).message();
}

// Only a socket is ever replaced: a mistyped path must not cost a file.
void RemoveOldSocket(const std::string& path) {
  struct stat status {};
  if (::lstat(path.c_str(), &status) == 0 && S_ISSOCK(status.st_mode)) {
    ::unlink(path.c_str());
  }
}

// False: the other side is gone.
bool SendAll(int fd, std::string_view text) {
  while (!text.empty()) {
    const ssize_t count = ::send(fd, text.data(), text.size(), MSG_NOSIGNAL);
    if (count < 0 && errno == EINTR) {
      continue;
    }
    if (count <= 0) {
      return false;
    }
    text.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

// The answer is complete with a line "ok" or "error: ...".
bool IsComplete(const std::string& answer) {
  if (answer.empty() || answer.back() != '\n') {
    return false;
  }
  const auto before = answer.rfind('\n', answer.size() - 2);
  const auto last = answer.substr(before == std::string::npos ? 0 : before + 1);
  return last == "ok\n" || last.starts_with("error: ");
}

}  // namespace

ControlSocket::~ControlSocket() {
  if (!path_.empty()) {
    ::unlink(path_.c_str());
  }
}

bool ControlSocket::Listen(const std::string& path, std::string& error) {
  sockaddr_un address{};
  listener_ = FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
  if (!listener_.IsOpen() || !AddressOf(path, address)) {
    error = ErrorText(path);
    return false;
  }
  RemoveOldSocket(path);
  if (::bind(listener_.Get(), Generic(address), sizeof(address)) != 0 ||
      ::listen(listener_.Get(), 8) != 0) {
    error = ErrorText(path);
    return false;
  }
  path_ = path;
  return true;
}

std::vector<int> ControlSocket::Fds() const {
  std::vector<int> fds;
  if (listener_.IsOpen()) {
    fds.push_back(listener_.Get());
  }
  for (const Client& client : clients_) {
    fds.push_back(client.socket.Get());
  }
  return fds;
}

void ControlSocket::Serve(int fd, const Executor& execute) {
  if (fd == listener_.Get()) {
    Accept();
    return;
  }
  const auto client = std::find_if(clients_.begin(), clients_.end(),
                                   [fd](const Client& c) { return c.socket.Get() == fd; });
  if (client != clients_.end() && !ServeClient(*client, execute)) {
    clients_.erase(client);
  }
}

void ControlSocket::Accept() {
  FileDescriptor socket(::accept4(listener_.Get(), nullptr, nullptr, SOCK_CLOEXEC));
  if (socket.IsOpen()) {
    clients_.push_back({std::move(socket), {}});
  }
}

bool ControlSocket::ServeClient(Client& client, const Executor& execute) {
  std::array<char, 1024> bytes{};
  const ssize_t count = ::recv(client.socket.Get(), bytes.data(), bytes.size(), MSG_DONTWAIT);
  if (count <= 0) {
    return count < 0 && (errno == EINTR || errno == EAGAIN);
  }
  client.input.append(bytes.data(), static_cast<std::size_t>(count));
  auto end = client.input.find('\n');
  while (end != std::string::npos) {
    const std::string command = client.input.substr(0, end);
    client.input.erase(0, end + 1);
    if (!SendAll(client.socket.Get(), execute(command))) {
      return false;
    }
    end = client.input.find('\n');
  }
  return client.input.size() <= kLongestCommand;
}

bool SendCommand(const std::string& path, const std::string& command, std::string& answer) {
  sockaddr_un address{};
  const FileDescriptor socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
  if (!socket.IsOpen() || !AddressOf(path, address) ||
      ::connect(socket.Get(), Generic(address), sizeof(address)) != 0 ||
      !SendAll(socket.Get(), command + '\n')) {
    answer = ErrorText(path);
    return false;
  }
  std::array<char, 1024> bytes{};
  answer.clear();
  while (!IsComplete(answer)) {
    const ssize_t count = ::recv(socket.Get(), bytes.data(), bytes.size(), 0);
    if (count <= 0) {
      answer = path + ": no answer";
      return false;
    }
    answer.append(bytes.data(), static_cast<std::size_t>(count));
  }
  const bool good = answer.ends_with("ok\n");
  answer.erase(answer.size() - (good ? std::strlen("ok\n") : 1));
  return good;
}

}  // namespace instrument
