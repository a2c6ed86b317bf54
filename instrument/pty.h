#ifndef TAVREL_INSTRUMENT_PTY_H_
#define TAVREL_INSTRUMENT_PTY_H_

#include <string>
#include <string_view>

#include "instrument/file_descriptor.h"

namespace instrument {

// A pseudo-terminal that stands for the serial port, with a symbolic link of a chosen name to
// it. The instruments hold the one end, the host opens the other.
class Pty {
 public:
  Pty() = default;
  // Unplugs.
  ~Pty() { Unplug(); }
  Pty(const Pty&) = delete;
  Pty& operator=(const Pty&) = delete;

  // Makes a new pseudo-terminal and lets `link_path` (empty: no link) point to it, replacing a
  // link that is there. On failure false and a sentence in `error`; nothing is left behind then.
  [[nodiscard]] bool Plug(const std::string& link_path, std::string& error);

  // Takes it away, as a pulled adapter would: a host that has it open sees a hang-up. The link
  // goes too, unless somebody else has pointed it elsewhere.
  void Unplug();

  [[nodiscard]] bool IsPlugged() const { return master_.IsOpen(); }
  [[nodiscard]] int Fd() const { return master_.Get(); }
  // The name that a host opens.
  [[nodiscard]] const std::string& Path() const { return path_; }

  // A host that claims the port for itself and is killed would leave it locked, because this end
  // keeps it open: a lock is taken off again. No effect while unplugged.
  void Unlock();
  [[nodiscard]] bool HasBytes() const;
  // All bytes that wait, at most 4096; empty if none does.
  [[nodiscard]] std::string Read();
  // What the host does not take in time is lost, as in a serial port without flow control.
  void Write(std::string_view bytes);

 private:
  [[nodiscard]] bool OpenPair(std::string& error);
  [[nodiscard]] bool MakeLink(std::string& error);

  FileDescriptor master_;
  // Held open for as long as the line is plugged, so that a host that closes its port does not
  // hang up this end.
  FileDescriptor slave_;
  std::string path_;
  std::string link_path_;
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_PTY_H_
