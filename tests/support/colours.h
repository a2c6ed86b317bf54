#ifndef TAVREL_TESTS_SUPPORT_COLOURS_H_
#define TAVREL_TESTS_SUPPORT_COLOURS_H_

#include "base/colour.h"

namespace tavrel {

inline constexpr Colour kRed{0xFF, 0, 0};
inline constexpr Colour kBlue{0, 0, 0xFF};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_COLOURS_H_
