#ifndef TAVREL_LINK_LINK_H_
#define TAVREL_LINK_LINK_H_

#include <array>
#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "link/answer_count.h"
#include "link/frame.h"
#include "link/line_mode.h"
#include "link/reply.h"
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

// What the settings say about the line.
struct LineChoice {
  std::string CommPort;  // "COM3"; without a number from the fourth character on: simulated
  int ComMode = 0;       // 0 direct, 1 and 2 plug-in interfaces
  int TypeSel = 4;       // link variant 1..4; 4 is in force in this system
};

// The only access to the instruments: six procedures over one serial line, or over a store in
// memory when no port is configured. An exchange is synchronous and serves no events. Lives for the
// whole process, one instance, used by the user-interface thread only.
class Link : public LinkArguments {
 public:
  // `port` and `clock` outlive the link.
  Link(SerialPort& port, const Clock& clock);

  // Opens the line. The choice stays in force until the next LinkOpen, whatever becomes of the
  // settings meanwhile. PortError and PortErrorText tell how it went.
  void LinkOpen(const LineChoice& choice);
  void LinkClose();

  // Opens the port again if it has vanished since LinkOpen: the same device, never another that
  // has its name now. No effect otherwise.
  void ReopenIfLost();

  // Sends one ESC, which makes an instrument forget a half-received command. Nothing happens on
  // a direct line and when simulated.
  void LinkAbort();

  // A register has four digits, a port two, memory either; a value of another number of digits is
  // an exchange that failed.
  void ReadReg();
  void WriteReg();
  void ReadMem();
  void WriteMem();
  void ReadPort();
  void WritePort();

  // Text that is no exchange, for a terminal: hands it to the line as it stands. False if no line
  // takes it: the port is lost or the instruments are simulated.
  bool SendText(std::string_view text);

  // What has come since, byte by byte; empty if nothing has. Nobody may make an exchange between
  // a SendText and EndText.
  [[nodiscard]] std::string TakeText();

  // The line belongs to the exchanges again. Waits until an answer to the last text cannot come any
  // more, a second at most, and throws away what comes: it must not be taken for the answer to an
  // exchange.
  void EndText();

  // Exchanges that were made or tried since the link is there, also those in simulation.
  [[nodiscard]] std::uint64_t Exchanges() const { return exchanges_; }

  // Exchanges that an instrument has answered as it should in the last minute; none in simulation.
  [[nodiscard]] int AnsweredInLastMinute() const { return answers_.InLastMinute(clock_.Elapsed()); }

  // By the wall clock: since when the port is lost; empty if it is not.
  [[nodiscard]] std::optional<WallTime> LostSince() const {
    return lost_ ? lost_since_ : std::nullopt;
  }

  // By the wall clock: since when nothing answers although the port is there. Empty as long as
  // fewer than three exchanges in a row have stayed without an answer.
  [[nodiscard]] std::optional<WallTime> SilentSince() const {
    return PortOpen && unanswered_ >= kFewUnanswered ? silent_since_ : std::nullopt;
  }

  // The port that was chosen, "COM3", and its device as far as it is known.
  [[nodiscard]] std::string PortName() const;
  [[nodiscard]] std::string Device() const { return port_.Device(); }

  // False for a short time after an exchange that failed, in which a late reply may still come. A
  // lone "?" is a complete answer: behind it the line only has to show that nothing follows.
  // An exchange that is begun meanwhile waits for the end of that time, with the user interface
  // standing still; what can wait asks first.
  [[nodiscard]] bool IsSettled() const { return SettleTime().count() == 0; }

  // How long it takes until IsSettled(), rounded up; 0 if it is so now.
  [[nodiscard]] std::chrono::milliseconds SettleTime() const;

  // Call it after a good reply that must not be taken for a wrong one: waits 15 ms, at
  // 9600 baud 12 ms, for further characters. False if some come: one of two replies belongs to an
  // older command, and nobody can tell which; the result of the exchange is then kLength.
  [[nodiscard]] bool NoTrailingBytes();

  // Call it after an exchange that was rejected: waits 15 ms for further characters. True if the
  // reply was a "?" alone, with silence behind it: the instrument has not carried the command out.
  // Otherwise nobody knows what it has done.
  [[nodiscard]] bool EndsWithRefusal();

  // Result of the last exchange with that address; kNone for an address outside 0..7.
  [[nodiscard]] LinkResult ComStatus(int inet) const;
  [[nodiscard]] bool IsGood(int inet) const { return ComStatus(inet) == LinkResult::kGood; }

  // All characters that were received since the last command went out, whatever they are.
  [[nodiscard]] const std::string& RxBuffer() const { return rx_buffer_; }

  [[nodiscard]] const LineMode& Mode() const { return mode_; }

  // Sees each register that is read or written by value, behind the exchange: its number, letter
  // and index, the word, and how it ended. It must not use the line.
  struct Exchange {
    int inet = 0;
    std::string_view letter;
    int index = 0;
    std::int16_t word = 0;
    bool is_write = false;
    LinkResult result = LinkResult::kNone;
  };
  void Observe(std::function<void(const Exchange&)> observer) { observer_ = std::move(observer); }
  void Observed(const Exchange& exchange) const {
    if (observer_) {
      observer_(exchange);
    }
  }

  bool Simulated = false;  // no port: the store in memory answers
  bool PortOpen = false;   // the link is usable, also when simulated; false while a port is lost
  LinkResult ComResult = LinkResult::kNone;
  std::string ReplyText;  // last reply without its terminator
  std::string PortLabel;  // "(simulated)", "COM1: 4800,n,8,2" or "COM1: (lost)"
  int PortError = 0;      // platform's error number of the last opening, 0 if it went well
  std::string PortErrorText;
  bool PortInUse = false;  // it failed because another process has the port

 private:
  enum class Acknowledge { kWait, kUnseen };

  [[nodiscard]] LineAddress Address() const { return {ComInet, ComSnet}; }
  [[nodiscard]] std::int16_t* SimulatedRegister();
  void ReadSpace(Space space);
  void WriteSpace(Space space);
  void AnswerRead(const std::int16_t* word);
  void AnswerWrite(std::int16_t* word);
  void ReadValue(const std::string& frame, ValueDigits digits);
  void WriteValue(const std::string& frame, Acknowledge acknowledge);
  void Finish(LinkResult result);
  void CountAnswer(LinkResult result);

  void TakeOpening(const PortOpening& opening);
  void NoteEvents();
  [[nodiscard]] LinkResult LinkSend(const std::string& frame);
  [[nodiscard]] bool StaleCharactersWait();
  void GatherUntilQuiet();
  void LinkPoll();
  void LinkPace();
  [[nodiscard]] LinkResult WaitValue(ValueDigits digits);
  [[nodiscard]] LinkResult WaitAck();
  template <typename Judge>
  [[nodiscard]] LinkResult WaitFor(Judge judge);

  SerialPort& port_;
  const Clock& clock_;
  std::function<void(const Exchange&)> observer_;
  LineMode mode_;
  SimulatedStore store_;
  std::array<LinkResult, 8> com_status_{};
  std::string rx_buffer_;  // all characters received since the command was sent
  int link_event_ = 0;     // number of the last event that the port reported since then
  int port_number_ = 0;
  bool lost_ = false;                       // the port vanished while it was in use
  std::chrono::nanoseconds text_until_{};   // an answer to a text may come till then
  std::chrono::nanoseconds quiet_until_{};  // a late reply of a failed exchange may come till then
  std::uint64_t exchanges_ = 0;
  static constexpr int kFewUnanswered = 3;
  AnswerCount answers_;
  int unanswered_ = 0;                    // exchanges in a row
  std::optional<WallTime> silent_since_;  // the first of them
  std::optional<WallTime> lost_since_;
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
