#ifndef TAVREL_INSTRUMENT_FAULTS_H_
#define TAVREL_INSTRUMENT_FAULTS_H_

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <random>
#include <string>
#include <string_view>

namespace instrument {

// The bad days of an instrument on the line.
enum class Fault : std::uint8_t {
  kSilence,      // hears nothing and says nothing
  kLostRequest,  // a command does not arrive
  kLostReply,    // a command is carried out, its reply does not arrive
  kLateReply,    // the reply comes later than the host waits
  kByteByByte,   // pauses between the reply's characters
  kWrongLength,  // a value of three digits
  kCutValue,     // a value without the first half of its digits
  kNonHex,       // a value with a character that is no digit
  kRefusal,      // "?" in place of carrying out the command
  kStale,        // a copy of the reply before comes ahead of the reply
  kGarbage,      // noise ahead of the reply
  kNoValue,      // a present value reads 8000, which stands for "no value"
};
inline constexpr int kFaultCount = 12;

// "lost-request" and the like.
[[nodiscard]] const char* NameOf(Fault fault);
[[nodiscard]] std::optional<Fault> FaultNamed(std::string_view name);

// How often and how strongly a fault strikes.
struct FaultLevel {
  double probability = 0.0;           // 0: off, 1: always
  std::chrono::milliseconds time{0};  // the delay of kLateReply, the pause of kByteByByte
  // Strikes this many times and is off then; nothing: until it is switched off.
  std::optional<int> times;
};

// Reads "on", "off", a probability, or milliseconds for the two faults that are a time, where
// 0 is off. Nothing: the text is none of these or out of range.
[[nodiscard]] std::optional<FaultLevel> ParseLevel(Fault fault, std::string_view text);

// The faults of one instrument.
class FaultBook {
 public:
  explicit FaultBook(std::uint64_t seed) : random_(seed) {}

  void Set(Fault fault, const FaultLevel& level) { At(fault) = level; }
  void Clear() { levels_ = {}; }
  // Whether the fault strikes this time; counts it if it is limited.
  [[nodiscard]] bool Strikes(Fault fault);
  [[nodiscard]] std::chrono::milliseconds Time(Fault fault) const { return At(fault).time; }
  // A number 0..`below` - 1.
  [[nodiscard]] int Draw(int below);
  // The faults that are on, as "lost-reply=0.2 silence=1"; empty if none is.
  [[nodiscard]] std::string Text() const;

 private:
  [[nodiscard]] FaultLevel& At(Fault fault) { return levels_.at(static_cast<std::size_t>(fault)); }
  [[nodiscard]] const FaultLevel& At(Fault fault) const {
    return levels_.at(static_cast<std::size_t>(fault));
  }

  std::array<FaultLevel, kFaultCount> levels_{};
  std::mt19937_64 random_;
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_FAULTS_H_
