#ifndef TAVREL_PLATFORM_SERIAL_PORT_H_
#define TAVREL_PLATFORM_SERIAL_PORT_H_

#include <chrono>
#include <string>
#include <string_view>

namespace tavrel {

// What came of opening a port: Error is 0 if it went well, else the platform's error number,
// and Text says what is wrong and what the user can do about it. InUse: the port is there, but
// another process has it, which may pass.
struct PortOpening {
  int Error = 0;
  std::string Text;
  bool InUse = false;
};

// Event numbers: above this a port has reported an error.
inline constexpr int kLastHarmlessPortEvent = 1000;

// One serial line. Synchronous: no operation serves events of the user interface, so that one
// exchange is never inside another. A port that vanishes (an adapter pulled out) reports an
// event above kLastHarmlessPortEvent and is closed from that moment on.
class SerialPort {
 public:
  virtual ~SerialPort() = default;

  // Opens port COM`number` (1..30) with `settings` such as "4800,n,8,2": speed, parity (e, n
  // or o), data bits, stop bits; no flow control. Closes what was open before. A device that was
  // open under that number, in an earlier run too, and is away is waited for, so this fails once;
  // the next time the number means whatever has its name then.
  [[nodiscard]] virtual PortOpening Open(int number, std::string_view settings) = 0;

  // Opens the device again that the last Open opened and that has vanished since, with the same
  // settings, under whatever name it is back. Never another device, whatever has its name now.
  [[nodiscard]] virtual PortOpening Reopen() = 0;
  virtual void Close() = 0;
  [[nodiscard]] virtual bool IsOpen() const = 0;

  // The settings in force, read back from the port; empty while it is closed.
  [[nodiscard]] virtual std::string Settings() const = 0;

  // The path of the device that is open, or was until it vanished: "/dev/ttyUSB0". Empty if it is
  // not known.
  [[nodiscard]] virtual std::string Device() const { return {}; }

  // Hands all of `bytes` to the line. False if the port is closed or failed.
  virtual bool Write(std::string_view bytes) = 0;

  // Takes all characters that wait; empty if there are none.
  [[nodiscard]] virtual std::string ReadAll() = 0;

  // Sleeps until a character waits, the port fails or `limit` is over.
  virtual void WaitForData(std::chrono::nanoseconds limit) = 0;

  // Number of the last event since the call before, 0 for none.
  [[nodiscard]] virtual int TakeEvent() = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_SERIAL_PORT_H_
