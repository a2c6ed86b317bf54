#ifndef TAVREL_BASE_COLOUR_H_
#define TAVREL_BASE_COLOUR_H_

#include <cstdint>

namespace tavrel {

// A colour as red, green and blue, 0..255 each.
struct Colour {
  std::uint8_t Red = 0;
  std::uint8_t Green = 0;
  std::uint8_t Blue = 0;

  [[nodiscard]] constexpr bool operator==(const Colour&) const = default;
};

// The colours of the status cells. A word or a figure always stands on them.
inline constexpr Colour kGrey{0xE0, 0xE0, 0xE0};    // nothing known, or switched off
inline constexpr Colour kYellow{0xFF, 0xFF, 0xC0};  // answers; a full file
inline constexpr Colour kOrange{0xFF, 0xE0, 0xC0};  // something is wrong
inline constexpr Colour kGreen{0x80, 0xFF, 0x80};   // at work

}  // namespace tavrel

#endif  // TAVREL_BASE_COLOUR_H_
