#include "link/link.h"

#include <algorithm>
#include <optional>

#include "base/element.h"
#include "base/number.h"
#include "base/text.h"
#include "link/registers.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr milliseconds kPace{10};         // pause after a command
constexpr milliseconds kReplyLimit{100};  // wait for a reply, from the end of the pause on

// How long a line must be silent to count as quiet: twice what a reply of 5 characters takes at
// 4800 baud, 11 bits a character (5 x 11 / 4800 s = 11.5 ms), with the command before it.
constexpr milliseconds kQuiet{40};

// An exchange that failed is followed by this pause before the next command. A reply that comes
// up to 260 ms after its command arrives in it and is seen, instead of being taken for the next
// answer. Cycles do not wait for its end but leave their ticks out: IsSettled().
constexpr milliseconds kSettle{150};

// How long a line is watched for characters behind a good reply: several characters' time at 4800
// baud (2.3 ms each), so that the second one of two replies is seen.
constexpr milliseconds kTail{15};

// The same at 9600 baud, where the first character of an answer comes that much sooner behind its
// command (7 x 11 / 9600 s = 8 ms instead of 5 x 11 / 4800 s = 11.5 ms).
constexpr milliseconds kFastTail{12};

// An answer to a text is expected within that time, as late as one to an exchange is noticed.
constexpr milliseconds kTextReply{260};
constexpr milliseconds kLongestText{1000};

constexpr std::string_view kRefusal = "?";

int PortNumber(const std::string& comm_port) {
  const std::string trimmed = Trim(comm_port);
  return trimmed.size() < 4 ? 0 : ToWord(ReadNumber(std::string_view(trimmed).substr(3)));
}

bool IsPortFailure(int event) {
  return event > kLastHarmlessPortEvent;
}

}  // namespace

Link::Link(SerialPort& port, const Clock& clock) : port_(port), clock_(clock) {}

std::string Link::PortName() const {
  return "COM" + std::to_string(port_number_);
}

void Link::LinkOpen(const LineChoice& choice) {
  LinkClose();
  PortError = 0;
  PortErrorText.clear();
  PortInUse = false;
  port_number_ = PortNumber(choice.CommPort);
  Simulated = port_number_ < 1;
  mode_ = ChooseLineMode(mode_, choice.TypeSel, choice.ComMode);
  if (Simulated) {
    PortOpen = true;
    PortLabel = "(simulated)";
    return;
  }
  TakeOpening(port_.Open(port_number_, mode_.PortSettings));
}

void Link::TakeOpening(const PortOpening& opening) {
  PortError = opening.Error;
  PortErrorText = opening.Text;
  PortInUse = opening.InUse;
  if (PortError != 0) {
    LinkClose();
    return;
  }
  lost_ = false;
  unanswered_ = 0;
  PortOpen = true;
  PortLabel = PortName() + ": " + port_.Settings();
}

void Link::LinkClose() {
  if (!Simulated && PortOpen) {
    port_.Close();
  }
  PortOpen = false;
  lost_ = false;
}

void Link::ReopenIfLost() {
  NoteEvents();
  if (!lost_) {
    return;
  }
  TakeOpening(port_.Reopen());
  lost_ = !PortOpen;
}

// A port that failed is closed by the platform; it stays remembered as lost, so that the same
// one can be opened again.
void Link::NoteEvents() {
  if (!PortOpen || Simulated) {
    return;
  }
  const int event = port_.TakeEvent();
  link_event_ = event != 0 ? event : link_event_;
  if (IsPortFailure(event) || !port_.IsOpen()) {
    LinkClose();
    lost_ = true;
    lost_since_ = clock_.Now();
    PortLabel = PortName() + ": (lost)";
  }
}

void Link::LinkAbort() {
  if (PortOpen && !Simulated && !mode_.LinkDirect) {
    port_.Write(std::string_view(&kEscape, 1));
  }
}

// An exchange without EndText, at the end of the program, waits for the answer too.
bool Link::SendText(std::string_view text) {
  NoteEvents();
  if (!PortOpen || Simulated || !port_.Write(text)) {
    return false;
  }
  text_until_ = clock_.Elapsed() + kTextReply;
  quiet_until_ = text_until_;
  return true;
}

std::string Link::TakeText() {
  NoteEvents();
  return PortOpen && !Simulated ? port_.ReadAll() : std::string();
}

void Link::EndText() {
  const nanoseconds end = clock_.Elapsed() + kLongestText;
  nanoseconds quiet = std::max(text_until_, clock_.Elapsed() + kQuiet);
  while (PortOpen && !Simulated && clock_.Elapsed() < std::min(quiet, end)) {
    port_.WaitForData(std::min(quiet, end) - clock_.Elapsed());
    if (!TakeText().empty()) {
      quiet = std::max(quiet, clock_.Elapsed() + kQuiet);
    }
  }
}

LinkResult Link::ComStatus(int inet) const {
  const LinkResult* status = ElementAt(com_status_, inet);
  return status != nullptr ? *status : LinkResult::kNone;
}

std::int16_t* Link::SimulatedRegister() {
  return store_.Register(mode_.TypeSel, {ComInet, ComSnet, ComLetter, ComIndex});
}

void Link::ReadReg() {
  if (Simulated) {
    AnswerRead(SimulatedRegister());
    return;
  }
  ReadValue(RegisterReadFrame(mode_, Address(), {ComLetter, ComIndex}), ValueDigits::kFour);
}

void Link::WriteReg() {
  if (Simulated) {
    AnswerWrite(SimulatedRegister());
    return;
  }
  WriteValue(RegisterWriteFrame(mode_, Address(), {ComLetter, ComIndex}, ComValue),
             Acknowledge::kWait);
}

void Link::ReadMem() {
  if (Simulated) {
    AnswerRead(store_.Memory(mode_.TypeSel, ComLetter));
    return;
  }
  ReadSpace(Space::kMemory);
}

void Link::WriteMem() {
  if (Simulated) {
    AnswerWrite(store_.Memory(mode_.TypeSel, ComLetter));
    return;
  }
  WriteSpace(Space::kMemory);
}

void Link::ReadPort() {
  if (Simulated) {
    AnswerRead(store_.Port(ComLetter));
    return;
  }
  ReadSpace(Space::kPort);
}

void Link::WritePort() {
  if (Simulated) {
    AnswerWrite(store_.Port(ComLetter));
    return;
  }
  WriteSpace(Space::kPort);
}

void Link::ReadSpace(Space space) {
  ReadValue(SpaceReadFrame(mode_, Address(), space, ComLetter),
            space == Space::kPort ? ValueDigits::kTwo : ValueDigits::kTwoOrFour);
}

// On a direct line nothing acknowledges a memory or port write: it counts as good unseen.
void Link::WriteSpace(Space space) {
  WriteValue(SpaceWriteFrame(mode_, Address(), space, ComLetter, ComValue),
             mode_.LinkDirect ? Acknowledge::kUnseen : Acknowledge::kWait);
}

void Link::AnswerRead(const std::int16_t* word) {
  ++exchanges_;
  ComValue = word != nullptr ? *word : ComValue;
  ReplyText = Hex(ComValue);
  Finish(LinkResult::kGood);
}

void Link::AnswerWrite(std::int16_t* word) {
  ++exchanges_;
  if (word != nullptr) {
    *word = ComValue;
  }
  Finish(LinkResult::kGood);
}

void Link::ReadValue(const std::string& frame, ValueDigits digits) {
  ++exchanges_;
  ReplyText.clear();
  LinkResult result = LinkSend(frame);
  if (result == LinkResult::kGood) {
    result = WaitValue(digits);
  }
  if (result == LinkResult::kGood) {
    ComValue = ReadHex(ReplyText);
  }
  CountAnswer(result);
  Finish(result);
}

// A refusal is an answer, though not the one that was wanted.
void Link::CountAnswer(LinkResult result) {
  if (result == LinkResult::kGood) {
    answers_.Note(clock_.Elapsed());
  }
  if (result == LinkResult::kGood || result == LinkResult::kRejected) {
    unanswered_ = 0;
    return;
  }
  if (unanswered_ == 0) {
    silent_since_ = clock_.Now();
  }
  unanswered_ = std::min(unanswered_ + 1, kFewUnanswered);
}

void Link::WriteValue(const std::string& frame, Acknowledge acknowledge) {
  ++exchanges_;
  LinkResult result = LinkSend(frame);
  if (result == LinkResult::kGood) {
    if (acknowledge == Acknowledge::kWait) {
      result = WaitAck();
    } else {
      LinkPace();
    }
  }
  if (acknowledge == Acknowledge::kWait) {
    CountAnswer(result);
  }
  Finish(result);
}

void Link::Finish(LinkResult result) {
  NoteEvents();
  ComResult = result;
  if (LinkResult* status = ElementAt(com_status_, ComInet)) {
    *status = result;
  }
  if (PortOpen && !Simulated && result != LinkResult::kGood) {
    const bool is_answer = result == LinkResult::kRejected && rx_buffer_ == kRefusal;
    quiet_until_ = clock_.Elapsed() + (is_answer ? kTail : kSettle);
  }
}

milliseconds Link::SettleTime() const {
  const nanoseconds left = quiet_until_ - clock_.Elapsed();
  const bool is_settled = !PortOpen || Simulated || left.count() <= 0;
  return is_settled ? milliseconds(0) : std::chrono::ceil<milliseconds>(left);
}

bool Link::NoTrailingBytes() {
  if (Simulated || ComResult != LinkResult::kGood) {
    return ComResult == LinkResult::kGood;
  }
  const std::size_t length = rx_buffer_.size();
  port_.WaitForData(mode_.PortSettings.starts_with("4800") ? kTail : kFastTail);
  LinkPoll();
  if (rx_buffer_.size() == length) {
    return true;
  }
  GatherUntilQuiet();
  Finish(LinkResult::kLength);
  return false;
}

bool Link::EndsWithRefusal() {
  if (Simulated || ComResult != LinkResult::kRejected) {
    return false;
  }
  port_.WaitForData(kTail);
  LinkPoll();
  return rx_buffer_ == kRefusal;
}

// Good once the command is on its way. A command is not sent while characters of an older
// exchange arrive: its answer could not be told from theirs, and a value that an instrument
// hands over only once would be lost in the mixture.
LinkResult Link::LinkSend(const std::string& frame) {
  rx_buffer_.clear();
  link_event_ = 0;
  NoteEvents();
  if (!PortOpen) {
    return LinkResult::kPortError;
  }
  if (StaleCharactersWait()) {
    GatherUntilQuiet();
    return LinkResult::kLength;
  }
  return port_.Write(frame) ? LinkResult::kGood : LinkResult::kPortError;
}

bool Link::StaleCharactersWait() {
  LinkPoll();
  if (rx_buffer_.empty() && clock_.Elapsed() < quiet_until_) {
    port_.WaitForData(quiet_until_ - clock_.Elapsed());
    LinkPoll();
  }
  return !rx_buffer_.empty();
}

void Link::GatherUntilQuiet() {
  const nanoseconds end = clock_.Elapsed() + kPace + kReplyLimit;
  std::size_t gathered = 0;
  while (gathered < rx_buffer_.size() && clock_.Elapsed() < end) {
    gathered = rx_buffer_.size();
    port_.WaitForData(std::min<nanoseconds>(kQuiet, end - clock_.Elapsed()));
    LinkPoll();
  }
}

void Link::LinkPoll() {
  NoteEvents();
  if (PortOpen) {
    rx_buffer_ += port_.ReadAll();
  }
}

// Gives the instrument time to take the command in. Characters that come meanwhile are kept.
void Link::LinkPace() {
  const nanoseconds end = clock_.Elapsed() + kPace;
  while (PortOpen && clock_.Elapsed() < end) {
    port_.WaitForData(end - clock_.Elapsed());
    LinkPoll();
  }
}

LinkResult Link::WaitValue(ValueDigits digits) {
  return WaitFor([this, digits]() -> std::optional<LinkResult> {
    const auto verdict = JudgeValue(rx_buffer_, digits);
    if (!verdict) {
      return std::nullopt;
    }
    ReplyText = verdict->ReplyText;
    return verdict->Result;
  });
}

LinkResult Link::WaitAck() {
  return WaitFor([this] { return JudgeAck(rx_buffer_); });
}

// Sleeps from character to character until `judge` has enough of them.
template <typename Judge>
LinkResult Link::WaitFor(Judge judge) {
  LinkPace();
  const nanoseconds end = clock_.Elapsed() + kReplyLimit;
  while (true) {
    // The time is taken before the last look at the line: on a busy machine the program may stand
    // still behind that look for longer than the limit, and the reply has come meanwhile.
    const bool is_over = clock_.Elapsed() > end;
    LinkPoll();
    if (!PortOpen || IsPortFailure(link_event_)) {
      return LinkResult::kPortError;
    }
    if (const std::optional<LinkResult> result = judge()) {
      return *result;
    }
    if (is_over) {
      return LinkResult::kTimeOut;
    }
    port_.WaitForData(std::max(end - clock_.Elapsed(), nanoseconds(1)));
  }
}

}  // namespace tavrel
