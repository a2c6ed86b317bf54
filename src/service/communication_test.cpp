#include "service/communication_test.h"

#include <memory>
#include <random>
#include <string_view>
#include <utility>

#include "base/number.h"
#include "link/register_access.h"
#include "link/registers.h"

namespace tavrel {
namespace {

// The third silence says that there is no connection; from then on every second one says so again.
constexpr int kSetBack = 1;

constexpr int kTestIndex = 6;
constexpr int kPluginTestIndex = 7;

// Places of the counters.
constexpr std::size_t kStarted = 0;
constexpr std::size_t kTimeouts = 1;
constexpr std::size_t kLineFaults = 2;
constexpr std::size_t kRefusals = 3;
constexpr std::size_t kNotHexReplies = 4;
constexpr std::size_t kWrongLengths = 5;

// Any word but the highest.
std::int16_t RandomWord(double random) {
  constexpr double kRange = 65535;
  constexpr double kLowest = -32768;
  return static_cast<std::int16_t>(IntFloor(random * kRange + kLowest));
}

bool IsPrintable(char character) {
  return character >= ' ' && character <= '~';
}

// Another character that does not print, by its number: "\0D".
std::string ByNumber(char character) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(character);
  return {'\\', kDigits[byte / 16U], kDigits[byte % 16U]};
}

// The first carriage return shows as "!", the first ESC as "#".
std::string Visible(std::string reply) {
  for (const auto& [character, sign] : {std::pair(kCarriageReturn, '!'), std::pair(kEscape, '#')}) {
    const std::size_t place = reply.find(character);
    if (place != std::string::npos) {
      reply[place] = sign;
    }
  }
  std::string visible;
  for (const char character : reply) {
    visible += IsPrintable(character) ? std::string(1, character) : ByNumber(character);
  }
  return visible;
}

}  // namespace

std::function<double()> RandomNumbers(std::uint32_t seed) {
  constexpr double kBeyond = 4294967296.0;  // what the numbers of the engine stay below
  return [engine = std::make_shared<std::mt19937>(seed)] {
    return static_cast<double>((*engine)()) / kBeyond;
  };
}

void CommunicationTest::Open() {
  OpenScreen();
  CmdReset_Click();
}

std::string CommunicationTest::Caption() const {
  return InstrumentName() + "  /  " + Parts().link.PortLabel;
}

void CommunicationTest::CmdReset_Click() {
  values_ = CommunicationValues();
  com_test_step_ = ComTestStep::kClear;
}

// Each kind of line has a word of its own, which cannot hold what the other one has left.
Register CommunicationTest::TestRegister() const {
  const int index = Parts().state.Settings.ComMode == 0 ? kTestIndex : kPluginTestIndex;
  return {Inet(), reg::kTestWord, index};
}

void CommunicationTest::TakeStep() {
  switch (com_test_step_) {
    case ComTestStep::kClear:
      Parts().link.LinkAbort();
      com_test_step_ = ComTestStep::kWrite;
      return;
    case ComTestStep::kWrite:
      WriteValue();
      return;
    case ComTestStep::kRead:
      ReadValue();
      return;
  }
}

// A value that was not acknowledged is not looked for: the next one is written instead.
void CommunicationTest::WriteValue() {
  com_test_value_ = RandomWord(random_());
  ++values_.Lbl_W[kStarted];
  const LinkResult result = Write(Parts().link, TestRegister(), com_test_value_);
  switch (result) {
    case LinkResult::kGood:
      com_test_step_ = ComTestStep::kRead;
      break;
    case LinkResult::kTimeOut:
      ++values_.Lbl_W[kTimeouts];
      break;
    case LinkResult::kRejected:
      ++values_.Lbl_W[kRefusals];
      break;
    default:
      ++values_.Lbl_W[kLineFaults];
      break;
  }
  WatchLink(result);
}

// A reading that fails is tried again: the value stands in the instrument.
void CommunicationTest::ReadValue() {
  ++values_.Lbl_R[kStarted];
  const Reading reading = Read(Parts().link, TestRegister());
  switch (reading.status) {
    case LinkResult::kGood:
      com_test_step_ = ComTestStep::kWrite;
      Compare(reading.word);
      break;
    case LinkResult::kTimeOut:
      ++values_.Lbl_R[kTimeouts];
      break;
    case LinkResult::kRejected:
      ++values_.Lbl_R[kRefusals];
      break;
    case LinkResult::kNotHex:
    case LinkResult::kLength:
      ++values_.Lbl_R[reading.status == LinkResult::kNotHex ? kNotHexReplies : kWrongLengths];
      values_.Lbl_reply = Visible(Parts().link.RxBuffer());
      break;
    default:
      ++values_.Lbl_R[kLineFaults];
      break;
  }
  WatchLink(reading.status);
}

void CommunicationTest::Compare(std::int16_t word) {
  if (word == com_test_value_) {
    return;
  }
  ++values_.Lbl_F;
  values_.Lbl_is = Hex(word);
  values_.Lbl_should = Hex(com_test_value_);
  Parts().events.Beep();
}

void CommunicationTest::WatchLink(LinkResult result) {
  if (MissesAnswer(result, kSetBack)) {
    com_test_step_ = ComTestStep::kClear;
  }
}

}  // namespace tavrel
