#ifndef TAVREL_SERVICE_COMMUNICATION_TEST_H_
#define TAVREL_SERVICE_COMMUNICATION_TEST_H_

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>

#include "link/register_access.h"
#include "service/service_screen.h"

namespace tavrel {

// Numbers from 0 up to but not including 1. The same seed gives the same order of numbers, on all
// machines.
[[nodiscard]] std::function<double()> RandomNumbers(std::uint32_t seed);

// What the form shows.
struct CommunicationValues {
  std::array<std::uint32_t, 4> Lbl_W{};  // see kWriteCaptions
  std::array<std::uint32_t, 6> Lbl_R{};  // see kReadCaptions
  std::uint32_t Lbl_F = 0;               // values read back that differ from those written
  std::string Lbl_is;                    // the last such value, hexadecimal; empty: none
  std::string Lbl_should;                // what was written instead
  std::string Lbl_reply;                 // the last reply that was no value; empty: none
};

// What the counters count. Writes and reads count as they begin; the others by how they end: by a
// time-out, by a failed port or characters left from an older exchange, by a refusal, by a
// character that is not a digit, by a wrong number of digits.
inline constexpr std::array kWriteCaptions = {"Write:", "timeout", "comm-err", "esc-char"};
inline constexpr std::array kReadCaptions = {"Read:",    "timeout", "comm-err",
                                             "esc-char", "non hex", "length"};

// ALL_COM: writes random values to a register that the instrument keeps for it, reads each back and
// counts all that goes wrong.
class CommunicationTest : public ServiceScreen {
 public:
  explicit CommunicationTest(const ServiceParts& parts,
                             std::function<double()> random = RandomNumbers(1))
      : ServiceScreen(parts, View::kAllCom), random_(std::move(random)) {}

  void Open() override;

  // It names the port too, which may have been lost meanwhile.
  [[nodiscard]] std::string Caption() const override;

  [[nodiscard]] const CommunicationValues& Values() const { return values_; }

  // All counters begin at 0 again, and the last faults are forgotten.
  void CmdReset_Click();

 protected:
  void TakeStep() override;

 private:
  enum class ComTestStep { kClear, kWrite, kRead };

  [[nodiscard]] Register TestRegister() const;
  void WriteValue();
  void ReadValue();
  void Compare(std::int16_t word);
  void WatchLink(LinkResult result);

  std::function<double()> random_;
  CommunicationValues values_;
  ComTestStep com_test_step_ = ComTestStep::kClear;
  std::int16_t com_test_value_ = 0;  // written last
};

inline constexpr std::array kCommunicationTips = {
    ToolTip{"CmdReset", {" reset counters ", " Zähler zurückstellen "}},
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_COMMUNICATION_TEST_H_
