#include "link/link.h"

#include <array>
#include <string>

#include "base/number.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/support/fake_port.h"

namespace tavrel {
namespace {

using std::chrono::microseconds;
using std::chrono::milliseconds;
using std::chrono::nanoseconds;

constexpr int kExchanges = 8;
constexpr std::int16_t kBefore = 0x5A5A;  // what ComValue holds before a read

constexpr milliseconds kSettle{150};       // pause behind a failed exchange
constexpr milliseconds kOneExchange{110};  // 10 ms pause and 100 ms wait
// A wait never ends before its limit, and at most a nanosecond behind it.
constexpr nanoseconds kSlack{2};

constexpr std::array kReads = {&Link::ReadReg, &Link::ReadMem, &Link::ReadPort};
// How many digits a value of each of them has.
struct Digits {
  std::size_t fewest = 0;
  std::size_t most = 0;
};
constexpr std::array<Digits, 3> kDigits = {{{4, 4}, {2, 4}, {2, 2}}};
constexpr std::array kWrites = {&Link::WriteReg, &Link::WriteMem, &Link::WritePort};

// Exchanges on a line whose characters come whenever the input says.
class LineUnderFire {
 public:
  explicit LineUnderFire(FuzzInput& input) : input_(input) {
    const std::array<const char*, 4> ports = {"COM1", "COM1", "COM30", "----"};
    const std::string comm_port = ports.at(static_cast<std::size_t>(input_.Choice(4)));
    link_.LinkOpen({comm_port, input_.Choice(4), 1 + input_.Choice(5)});
    Require(link_.PortOpen && link_.Simulated == (comm_port == "----"),
            "a port that can be opened is open");
  }

  void Run() {
    for (int exchange = 0; exchange < kExchanges && !input_.IsEmpty(); ++exchange) {
      Script();
      Exchange();
    }
  }

 private:
  // What happens on the line from now on, asked or not.
  void Script() {
    const int what = input_.Byte();
    for (int arrival = 0; arrival < what % 4; ++arrival) {
      const microseconds delay = input_.Byte() * microseconds(1000) + microseconds(input_.Byte());
      const int length = 1 + input_.Choice(7);
      const std::string text = input_.Text(static_cast<std::size_t>(length));
      if (!text.empty()) {
        port_.Arrive(delay, text);
      }
    }
    if (what >= 250) {
      port_.Vanish();
    }
    if (what >= 240) {
      link_.ReopenIfLost();
    }
    if (what >= 230) {
      link_.LinkAbort();
    }
    clock_.Advance(milliseconds(what >= 128 ? what : 0));
  }

  void Exchange() {
    const bool is_read = input_.Flag();
    const auto which = static_cast<std::size_t>(input_.Choice(3));
    LinkArguments given;
    given.ComInet = static_cast<std::int16_t>(input_.Choice(12) - 2);
    given.ComSnet = static_cast<std::int16_t>(input_.Choice(16));
    given.ComLetter = input_.Text(static_cast<std::size_t>(input_.Choice(5)));
    given.ComIndex = input_.Word();
    given.ComValue = is_read ? kBefore : input_.Word();
    static_cast<LinkArguments&>(link_) = given;
    const std::size_t sent = port_.sent.size();
    const nanoseconds start = clock_.Elapsed();
    (link_.*(is_read ? kReads.at(which) : kWrites.at(which)))();
    CheckArguments(given);
    CheckTime(clock_.Elapsed() - start);
    CheckSent(sent, is_read);
    CheckResult(given.ComInet);
    if (is_read) {
      CheckValue(kDigits.at(which));
    }
  }

  void CheckArguments(const LinkArguments& given) {
    Require(link_.ComInet == given.ComInet && link_.ComSnet == given.ComSnet &&
                link_.ComLetter == given.ComLetter && link_.ComIndex == given.ComIndex,
            "the arguments survive an exchange");
  }

  void CheckTime(nanoseconds took) const {
    Require(took <= kSettle + kOneExchange + kSlack, "an exchange ends within its limit");
    Require(!was_good_ || took <= kOneExchange + kSlack, "no pause behind a good exchange");
    Require(!link_.Simulated || took == nanoseconds(0), "the store in memory answers at once");
  }

  void CheckSent(std::size_t before, bool is_read) {
    const std::size_t count = port_.sent.size() - before;
    Require(count <= (link_.Simulated ? 0U : 1U), "one exchange is one command");
    if (count == 1) {
      const char last = port_.sent.back().back();
      const bool ends_read = last == '?' || last == '<' || last == '@';
      Require(is_read ? ends_read : last == kCarriageReturn, "a command ends as it must");
    }
    Require(count == 1 || link_.Simulated || link_.ComResult == LinkResult::kLength ||
                link_.ComResult == LinkResult::kPortError,
            "a command is held back only on a line that is not quiet, or gone");
  }

  void CheckResult(int inet) {
    const LinkResult result = link_.ComResult;
    Require(result != LinkResult::kNone, "every exchange has a result");
    Require(link_.ComStatus(inet) == (inet >= 0 && inet <= 7 ? result : LinkResult::kNone),
            "the result stands at the address");
    Require(result != LinkResult::kPortError || !link_.PortOpen, "an open port is no port error");
    Require(!link_.Simulated || result == LinkResult::kGood, "the store in memory never fails");
    was_good_ = result == LinkResult::kGood;
  }

  void CheckValue(const Digits& allowed) {
    if (link_.ComResult != LinkResult::kGood) {
      Require(link_.ComValue == kBefore, "without a good answer the value stays");
      return;
    }
    Require(link_.ComValue == ReadHex(link_.ReplyText), "the value is what the reply says");
    const std::size_t digits = link_.ReplyText.size();
    Require(link_.Simulated || digits == allowed.fewest || digits == allowed.most,
            "a good reply has the digits that it must have");
  }

  FuzzInput& input_;
  FakeClock clock_;
  FakePort port_{clock_};
  Link link_{port_, clock_};
  bool was_good_ = true;
};

}  // namespace
}  // namespace tavrel

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavrel;
  const std::string bytes = TextOf(data, size);
  FuzzInput input(bytes);
  LineUnderFire(input).Run();
  return 0;
}
