#ifndef TAVREL_STATE_NUMBERS_H_
#define TAVREL_STATE_NUMBERS_H_

#include "base/numbered.h"

// How many there are of what the program numbers, and tables by these numbers.
namespace tavrel {

inline constexpr int kSlots = 12;       // rows of the sheet, each a test with its file
inline constexpr int kViewedFile = 0;   // slot number of the file opened for viewing
inline constexpr int kInputs = 15;      // measuring inputs of an instrument
inline constexpr int kInets = 6;        // instruments on the line
inline constexpr int kControllers = 4;  // of an instrument

template <typename T>
using BySlot = Numbered<T, kViewedFile, kSlots>;
template <typename T>
using ByInput = Numbered<T, 1, kInputs>;
template <typename T>
using ByInet = Numbered<T, 1, kInets>;
template <typename T>
using ByController = Numbered<T, 1, kControllers>;

[[nodiscard]] constexpr bool IsSlot(int slot) {
  return slot >= 1 && slot <= kSlots;
}
[[nodiscard]] constexpr bool IsInput(int input) {
  return input >= 1 && input <= kInputs;
}
[[nodiscard]] constexpr bool IsInet(int inet) {
  return inet >= 1 && inet <= kInets;
}
[[nodiscard]] constexpr bool IsController(int controller) {
  return controller >= 1 && controller <= kControllers;
}

}  // namespace tavrel

#endif  // TAVREL_STATE_NUMBERS_H_
