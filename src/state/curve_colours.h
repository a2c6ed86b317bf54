#ifndef TAVREL_STATE_CURVE_COLOURS_H_
#define TAVREL_STATE_CURVE_COLOURS_H_

#include <array>
#include <cstddef>
#include <string_view>

#include "base/colour.h"
#include "base/element.h"

// The colours of curves. A header holds a *code* for each input, 1..14 in the order in which the
// choice of colours shows them; a code stands for a *palette number* 0..15 of the standard
// palette of sixteen colours. Every other code leaves the curve out.
namespace tavrel {

inline constexpr int kColourCodes = 14;
inline constexpr int kNoPaletteNumber = -1;

// A code's colour, with its name for those who cannot tell it.
struct CurveColour {
  int PaletteNumber = kNoPaletteNumber;
  Colour Rgb;
  std::string_view Name;
};

// By code - 1. Light green, yellow and cyan are drawn darker than the palette has them, in a hue
// that no other curve has: three to one against white paper, and more against a dark desktop.
inline constexpr std::array<CurveColour, kColourCodes> kCurveColours = {{
    {0, {0x00, 0x00, 0x00}, "black"},
    {12, {0xFF, 0x00, 0x00}, "light red"},
    {10, {0x00, 0xAA, 0x00}, "light green"},
    {9, {0x00, 0x00, 0xFF}, "light blue"},
    {14, {0xC0, 0x8A, 0x00}, "light yellow"},
    {11, {0x00, 0x9C, 0xC8}, "light cyan"},
    {13, {0xFF, 0x00, 0xFF}, "light magenta"},
    {8, {0x80, 0x80, 0x80}, "grey"},
    {4, {0x80, 0x00, 0x00}, "red"},
    {2, {0x00, 0x80, 0x00}, "green"},
    {1, {0x00, 0x00, 0x80}, "blue"},
    {6, {0x80, 0x80, 0x00}, "yellow"},
    {3, {0x00, 0x80, 0x80}, "cyan"},
    {5, {0x80, 0x00, 0x80}, "magenta"},
}};

// Null for a code that leaves the curve out.
[[nodiscard]] constexpr const CurveColour* CurveColourOf(int code) {
  return code >= 1 ? ElementAt(kCurveColours, code - 1) : nullptr;
}

// 0..15, or kNoPaletteNumber.
[[nodiscard]] constexpr int PaletteNumberOf(int code) {
  const CurveColour* colour = CurveColourOf(code);
  return colour == nullptr ? kNoPaletteNumber : colour->PaletteNumber;
}

}  // namespace tavrel

#endif  // TAVREL_STATE_CURVE_COLOURS_H_
