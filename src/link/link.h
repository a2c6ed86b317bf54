#ifndef TAVREL_LINK_LINK_H_
#define TAVREL_LINK_LINK_H_

#include <array>
#include <chrono>
#include <cstdint>
#include <string>

#include "link/line_mode.h"
#include "link/result.h"
#include "link/simulated_store.h"
#include "platform/clock.h"
#include "platform/serial_port.h"

namespace tavrel {

// What an access needs and leaves, shared by all callers: set ComInet, ComLetter, ComIndex (and
// ComValue for a write), call, look at ComStatus(ComInet), where kGood is good. ComInet,
// ComLetter and ComIndex survive a call; ComValue means something only if the result is good.
struct LinkArguments {
  std::int16_t ComInet = 0;   // address of the instrument, 1..6 in use, 0..7 allowed
  std::int16_t ComSnet = 0;   // second-level address, 0..15, used by variant 1 only
  std::string ComLetter;      // register letter, or the hexadecimal address of memory or port
  std::int16_t ComIndex = 0;  // register index
  std::int16_t ComValue = 0;  // raw value sent or received
};

// The one road to the instruments: six procedures over one serial line, or over a store in
// memory when no port is configured. An exchange is synchronous and serves no events. Lives for
// the whole process, one instance, used by the user-interface thread only.
class Link : public LinkArguments {
 public:
  // `port` and `clock` outlive the link.
  Link(SerialPort& port, const Clock& clock);

  // Opens what `comm_port` names ("COM3"; no number from the fourth character on simulates).
  // The mode in `com_mode` and TypeSel stays in force until the next LinkOpen. PortError and
  // PortErrorText tell how it went.
  void LinkOpen(const std::string& comm_port, int com_mode);
  void LinkClose();

  // Opens the port again that was opened last and has vanished since. No effect otherwise.
  void ReopenIfLost();

  // Sends one ESC, which makes an instrument forget a half-received command. Nothing happens on
  // a direct line and when simulated.
  void LinkAbort();

  void ReadReg();
  void WriteReg();
  void ReadMem();
  void WriteMem();
  void ReadPort();
  void WritePort();

  // Result of the last exchange with that address; kNone for an address outside 0..7.
  [[nodiscard]] LinkResult ComStatus(int inet) const;
  [[nodiscard]] bool IsGood(int inet) const { return ComStatus(inet) == LinkResult::kGood; }

  std::int16_t TypeSel = 4;  // link variant 1..4; 4 is in force in this system
  bool Simulated = false;    // no port: the store in memory answers
  bool PortOpen = false;     // the link is usable, also when simulated
  LinkResult ComResult = LinkResult::kNone;
  std::string ReplyText;  // last reply without its terminator
  std::string PortLabel;  // "(simulated)", or port and settings
  int PortError = 0;
  std::string PortErrorText;

 private:
  struct Command {
    char com_cmd = 0;  // bank or command letter
    int address = 0;   // register address in its bank
  };
  enum class Acknowledge { kWait, kUnseen };

  [[nodiscard]] Command Translate() const;
  void ReadValue(const std::string& frame);
  void WriteValue(const std::string& frame, Acknowledge acknowledge);
  void SimulatedRead(std::int16_t* word);
  void SimulatedWrite(std::int16_t* word);
  void Finish(LinkResult result);
  [[nodiscard]] bool LinkSend(const std::string& frame);
  void LinkPoll();
  void LinkPace();
  [[nodiscard]] LinkResult WaitValue();
  [[nodiscard]] LinkResult WaitAck();
  void GatherStale();

  SerialPort& port_;
  const Clock& clock_;
  LineMode mode_;
  SimulatedStore store_;
  std::array<LinkResult, 8> com_status_{};
  std::string rx_buffer_;
  int link_event_ = 0;
  int port_number_ = 0;
  bool lost_ = false;
};

// Keeps the arguments of the link and puts them back when it goes, so that a dialog in the
// middle of composing a command survives a tick of the cycle.
class KeepLinkArguments {
 public:
  explicit KeepLinkArguments(Link& link) : link_(link), kept_(link) {}
  ~KeepLinkArguments() { static_cast<LinkArguments&>(link_) = kept_; }
  KeepLinkArguments(const KeepLinkArguments&) = delete;
  KeepLinkArguments& operator=(const KeepLinkArguments&) = delete;

 private:
  Link& link_;
  LinkArguments kept_;
};

}  // namespace tavrel

#endif  // TAVREL_LINK_LINK_H_
