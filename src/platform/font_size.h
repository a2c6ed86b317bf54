#ifndef TAVREL_PLATFORM_FONT_SIZE_H_
#define TAVREL_PLATFORM_FONT_SIZE_H_

#include <algorithm>

namespace tavrel {

// A text of fewer points cannot be read; no page and no dialog has room for one of more, and a
// toolkit does not measure any size.
inline constexpr double kLeastFontSize = 4;
inline constexpr double kMostFontSize = 100;

// The size in points that is used where the settings say `points`; 0 where they leave it open,
// which 0 and everything below does.
[[nodiscard]] constexpr double HeldFontSize(double points) {
  return points > 0 ? std::clamp(points, kLeastFontSize, kMostFontSize) : 0;
}

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_FONT_SIZE_H_
