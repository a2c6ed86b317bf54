#ifndef TAVREL_INSTRUMENT_CONTROL_SOCKET_H_
#define TAVREL_INSTRUMENT_CONTROL_SOCKET_H_

#include <functional>
#include <string>
#include <vector>

#include "instrument/file_descriptor.h"

namespace instrument {

// A unix stream socket that takes text commands, one a line, from any number of clients, and
// answers each.
class ControlSocket {
 public:
  // Gets a command without its line feed, returns the whole answer with its line feed.
  using Executor = std::function<std::string(const std::string&)>;

  ControlSocket() = default;
  // Removes the socket's file.
  ~ControlSocket();
  ControlSocket(const ControlSocket&) = delete;
  ControlSocket& operator=(const ControlSocket&) = delete;

  // Replaces a socket file that a killed instrument left behind. False and a sentence in `error`
  // on failure.
  [[nodiscard]] bool Listen(const std::string& path, std::string& error);

  // The descriptors to wait for, empty without `Listen`.
  [[nodiscard]] std::vector<int> Fds() const;
  // Serves what waits at `fd`, one of `Fds`.
  void Serve(int fd, const Executor& execute);

 private:
  struct Client {
    FileDescriptor socket;
    std::string input;
  };
  void Accept();
  // False: the client is gone.
  [[nodiscard]] static bool ServeClient(Client& client, const Executor& execute);

  FileDescriptor listener_;
  std::string path_;
  std::vector<Client> clients_;
};

// Sends `command` to the socket at `path` and waits for the answer, which goes to `answer`
// without the last "ok". False: no connection, or the answer is an error.
[[nodiscard]] bool SendCommand(const std::string& path, const std::string& command,
                               std::string& answer);

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_CONTROL_SOCKET_H_
