#ifndef TAVREL_LINK_REGISTERS_H_
#define TAVREL_LINK_REGISTERS_H_

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

// The register vocabulary of the instruments. Twenty letters G to Z name groups of sixteen
// words in two banks; a word is 16 bits signed, temperatures in steps of 0.05 degrees.
namespace tavrel {

inline constexpr int kRegistersPerLetter = 16;

namespace reg {
inline constexpr const char* kBuffered = "R";         // values waiting of an input; write 0 clears
inline constexpr const char* kSampling = "S";         // sampling interval of an input
inline constexpr const char* kOldestValue = "X";      // handed over once; no-data when none
inline constexpr const char* kPresentValue = "Y";     // of an input
inline constexpr const char* kControllerState = "Z";  // of controllers 1..4
// Of controllers 1..4 as well:
inline constexpr const char* kLowerLimit = "G";
inline constexpr const char* kUpperLimit = "H";
inline constexpr const char* kIncrement = "I";   // of the ramp
inline constexpr const char* kFinalValue = "M";  // where the ramp ends
inline constexpr const char* kSetpoint = "W";
inline constexpr const char* kProportional = "P";
inline constexpr const char* kIntegralTime = "N";
inline constexpr const char* kDerivativeTime = "V";
inline constexpr const char* kSetpointFilter = "T";
inline constexpr const char* kOutput = "U";      // power in percent
inline constexpr const char* kTestOutput = "Q";  // the same, in force with status "test"
// Of the instrument as a whole:
inline constexpr const char* kKind = "T";      // index 0: 1 is a fast instrument
inline constexpr const char* kMailbox = "G";   // index 0: a command, 0 when done; 8, 9: results
inline constexpr const char* kTestWord = "V";  // indices 6 and 7: the instrument keeps any value
inline constexpr const char* kQuality = "Z";   // indices 6..15: kept without power
}  // namespace reg

// What register Z of a controller says.
namespace controller {
inline constexpr std::int16_t kUnknown = -1;
inline constexpr std::int16_t kOff = 0;
inline constexpr std::int16_t kFail = 1;
inline constexpr std::int16_t kIsotherm = 2;
inline constexpr std::int16_t kDynamic = 3;
inline constexpr std::int16_t kDynamicFalling = 4;
inline constexpr std::int16_t kTest = 5;

// What the screens call a status; empty for one without a word.
[[nodiscard]] constexpr std::string_view WordOf(std::int16_t status) {
  constexpr std::array<std::string_view, 6> kWords{"off", "fail", "iso", "dyn", "dyn-", "test"};
  return status >= kOff && status <= kTest ? kWords[static_cast<std::size_t>(status)] : "";
}
}  // namespace controller

// Where a register lies: `Bank` V (256 words) or P (64 words) and the address inside it.
struct RegisterPlace {
  char Bank = 0;
  int Address = 0;
};

// The letters of the groups of registers, in the order of their places.
inline constexpr std::string_view kRegisterLetters = "GHIJKLMNOPQRSTUVWXYZ";

// The place of register `letter` with `index`. Variants 1 and 2 know no letters: bank and
// address go out as the caller gives them, and so they do for a letter outside G..Z. An empty
// letter counts as a blank.
[[nodiscard]] RegisterPlace RegisterPlaceOf(int type_sel, std::string_view letter, int index);

}  // namespace tavrel

#endif  // TAVREL_LINK_REGISTERS_H_
