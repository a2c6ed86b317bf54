#include "platform/dot_canvas.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <set>
#include <utility>
#include <vector>

namespace tavrel {
namespace {

constexpr std::uint32_t kWhite = 0xFFFFFFFF;
constexpr std::uint32_t kRed = 0xFFFF0000;
constexpr std::uint32_t kGuard = 0x12345678;  // around the picture
constexpr int kMargin = 3;

// A picture with a margin around it that nothing may touch.
struct Sheet {
  Sheet(int wide, int high)
      : width(wide),
        height(high),
        stride(wide + 2 * kMargin),
        dots(static_cast<std::size_t>(stride * (high + 2 * kMargin)), kGuard) {
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        At(x, y) = kWhite;
      }
    }
  }

  std::uint32_t& At(int x, int y) {
    return dots.at(static_cast<std::size_t>((y + kMargin) * stride + x + kMargin));
  }
  DotCanvas Canvas() { return {&At(0, 0), stride, width, height}; }
  std::set<std::pair<int, int>> Inked() {
    std::set<std::pair<int, int>> inked;
    for (int y = 0; y < height; ++y) {
      for (int x = 0; x < width; ++x) {
        if (At(x, y) != kWhite) {
          inked.insert({x, y});
        }
      }
    }
    return inked;
  }
  bool IsMarginWhole() {
    for (int y = -kMargin; y < height + kMargin; ++y) {
      for (int x = -kMargin; x < width + kMargin; ++x) {
        const bool is_inside = x >= 0 && x < width && y >= 0 && y < height;
        if (!is_inside && At(x, y) != kGuard) {
          return false;
        }
      }
    }
    return true;
  }

  int width;
  int height;
  int stride;
  std::vector<std::uint32_t> dots;
};

// The dots next to the true line, step by step along its longer direction; a tie is open.
bool IsNextToTheLine(Dot from, Dot to, std::pair<int, int> dot) {
  const double dx = to.X - from.X;
  const double dy = to.Y - from.Y;
  if (dx == 0 && dy == 0) {
    return dot == std::pair(from.X, from.Y);
  }
  const bool is_level = std::abs(dx) >= std::abs(dy);
  const double share = is_level ? (dot.first - from.X) / dx : (dot.second - from.Y) / dy;
  const double away = is_level ? from.Y + share * dy - dot.second : from.X + share * dx - dot.first;
  return share >= 0 && share <= 1 && std::abs(away) <= 0.5 + 1e-9;
}

TEST(DotCanvas, DrawsTheDotsNextToTheTrueLine) {
  for (int x = 0; x < 12; ++x) {
    for (int y = 0; y < 12; ++y) {
      const Dot from{5, 7};
      const Dot to{x, y};
      Sheet sheet(12, 12);
      sheet.Canvas().ThinLine(from, to, kRed);
      const auto inked = sheet.Inked();
      const int steps = std::max(std::abs(x - from.X), std::abs(y - from.Y));
      ASSERT_EQ(inked.size(), static_cast<std::size_t>(steps + 1)) << x << " " << y;
      EXPECT_TRUE(inked.contains({from.X, from.Y}) && inked.contains({x, y})) << x << " " << y;
      for (const auto& dot : inked) {
        EXPECT_TRUE(IsNextToTheLine(from, to, dot)) << x << " " << y;
      }
      EXPECT_TRUE(sheet.IsMarginWhole());
    }
  }
}

TEST(DotCanvas, DrawsAnInvertingStrokeWhereTheCoveringOneIs) {
  for (int x = 0; x < 12; ++x) {
    for (int y = 0; y < 12; ++y) {
      Sheet thin(12, 12);
      Sheet stroke(12, 12);
      thin.Canvas().ThinLine({5, 7}, {x, y}, kRed);
      stroke.Canvas().Line({5, 7}, {x, y}, {0, 1, PenMode::kInvert, PenStyle::kSolid});
      EXPECT_EQ(stroke.Inked(), thin.Inked()) << x << " " << y;
    }
  }
}

TEST(DotCanvas, WidensALineAcrossItsCourse) {
  Sheet sheet(12, 12);
  sheet.Canvas().Line({2, 5}, {6, 5}, {kRed, 3});
  EXPECT_EQ(sheet.Inked().size(), 5U * 3U);
  EXPECT_EQ(sheet.At(2, 4), kRed);
  EXPECT_EQ(sheet.At(6, 6), kRed);
  EXPECT_EQ(sheet.At(7, 5), kWhite);
}

TEST(DotCanvas, CutsTheWidthAtTheEdge) {
  Sheet sheet(12, 12);
  sheet.Canvas().Line({0, 0}, {11, 0}, {kRed, 5});
  sheet.Canvas().Line({11, 0}, {11, 11}, {kRed, 5});
  EXPECT_TRUE(sheet.IsMarginWhole());
  EXPECT_EQ(sheet.At(3, 2), kRed);
  EXPECT_EQ(sheet.At(3, 3), kWhite);
}

TEST(DotCanvas, CancelsAnInvertingStrokeByASecondOne) {
  for (const PenStyle style : {PenStyle::kSolid, PenStyle::kDash, PenStyle::kDot,
                               PenStyle::kDashDot, PenStyle::kDashDotDot}) {
    for (const int width : {1, 2, 3}) {
      Sheet sheet(40, 30);
      sheet.At(10, 10) = kRed;
      const auto before = sheet.dots;
      const DotStroke stroke{0, width, PenMode::kInvert, style};
      sheet.Canvas().Line({0, 3}, {39, 25}, stroke);
      sheet.Canvas().Box({-5, 4}, {22, 18}, stroke);
      EXPECT_NE(sheet.dots, before);
      sheet.Canvas().Box({-5, 4}, {22, 18}, stroke);
      sheet.Canvas().Line({0, 3}, {39, 25}, stroke);
      EXPECT_EQ(sheet.dots, before);
    }
  }
}

TEST(DotCanvas, TurnsEachDotOfABoxOnceOnly) {
  for (const int width : {1, 2, 3}) {
    for (int right = 4; right < 16; ++right) {
      for (int bottom = 3; bottom < 13; ++bottom) {
        Sheet inverted(20, 20);
        Sheet covered(20, 20);
        const DotStroke inverting{0, width, PenMode::kInvert, PenStyle::kSolid};
        inverted.Canvas().Box({4, 3}, {right, bottom}, inverting);
        covered.Canvas().Box({4, 3}, {right, bottom}, {kRed, width});
        EXPECT_EQ(inverted.Inked(), covered.Inked()) << width << " " << right << " " << bottom;
      }
    }
  }
}

TEST(DotCanvas, DrawsABoxWithItsCornersFromAnyDiagonal) {
  Sheet sheet(20, 20);
  sheet.Canvas().Box({15, 3}, {4, 12}, {kRed});
  EXPECT_EQ(sheet.Inked().size(), 2U * 12U + 2U * 8U);
  for (const auto& [x, y] : {std::pair(4, 3), {15, 3}, {4, 12}, {15, 12}}) {
    EXPECT_EQ(sheet.At(x, y), kRed);
  }
  EXPECT_EQ(sheet.At(5, 4), kWhite);
}

// Where the two sides of a box touch there is no gap between them.
TEST(DotCanvas, LeavesNoGapBetweenTheSidesOfANarrowBox) {
  for (int width = 1; width <= 4; ++width) {
    for (int extent = 0; extent <= 9; ++extent) {
      Sheet sheet(20, 20);
      sheet.Canvas().Box({4, 3}, {4 + extent, 16}, {kRed, width});
      int inked = 0;
      for (int x = 0; x < 20; ++x) {
        inked += sheet.At(x, 9) == kRed ? 1 : 0;
      }
      EXPECT_EQ(inked, std::min(extent + width, 2 * width)) << width << " " << extent;
    }
  }
}

TEST(DotCanvas, DrawsAFlatBoxAsALine) {
  Sheet sheet(20, 20);
  sheet.Canvas().Box({2, 5}, {9, 5}, {0, 1, PenMode::kInvert, PenStyle::kSolid});
  EXPECT_EQ(sheet.Inked().size(), 8U);
  Sheet narrow(20, 20);
  narrow.Canvas().Box({2, 5}, {2, 9}, {0, 1, PenMode::kInvert, PenStyle::kSolid});
  EXPECT_EQ(narrow.Inked().size(), 5U);
}

TEST(DotCanvas, LeavesTheSidesOfABoxOutsideAway) {
  Sheet sheet(20, 20);
  sheet.Canvas().Box({-1000000, 5}, {1000000, 1000000}, {kRed});
  EXPECT_EQ(sheet.Inked().size(), 20U);
  EXPECT_TRUE(sheet.IsMarginWhole());
}

TEST(DotCanvas, FillsABoxAndCutsIt) {
  Sheet sheet(20, 20);
  sheet.Canvas().FillBox({25, 25}, {15, 18}, kRed);
  EXPECT_EQ(sheet.Inked().size(), 5U * 2U);
  EXPECT_TRUE(sheet.IsMarginWhole());
}

TEST(DotCanvas, LeavesGapsAsTheStyleSays) {
  const auto length_of = [](PenStyle style, int width) {
    Sheet sheet(36, 5);
    sheet.Canvas().Line({0, 2}, {35, 2}, {kRed, width, PenMode::kCopy, style});
    return sheet.Inked().size() / static_cast<std::size_t>(width);
  };
  EXPECT_EQ(length_of(PenStyle::kSolid, 1), 36U);
  EXPECT_EQ(length_of(PenStyle::kDash, 1), 24U);
  EXPECT_EQ(length_of(PenStyle::kDot, 1), 18U);
  EXPECT_EQ(length_of(PenStyle::kDashDot, 1), 20U);
  EXPECT_EQ(length_of(PenStyle::kDashDotDot, 1), 18U);
  EXPECT_EQ(length_of(PenStyle::kDash, 3), 24U);
}

TEST(DotCanvas, LeavesGapsAlongEachSideOfABroadBox) {
  Sheet sheet(40, 40);
  sheet.Canvas().Box({2, 2}, {37, 37}, {kRed, 3, PenMode::kCopy, PenStyle::kDot});
  const auto alternates = [](auto dot_at) {
    int changes = 0;
    for (int n = 5; n < 34; ++n) {
      const bool is_inked = dot_at(n) == kRed;
      changes += is_inked != (dot_at(n + 1) == kRed) ? 1 : 0;
    }
    return changes > 3;
  };
  EXPECT_TRUE(alternates([&](int n) { return sheet.At(n, 2); }));
  EXPECT_TRUE(alternates([&](int n) { return sheet.At(n, 37); }));
  EXPECT_TRUE(alternates([&](int n) { return sheet.At(2, n); }));
  EXPECT_TRUE(alternates([&](int n) { return sheet.At(37, n); }));
}

}  // namespace
}  // namespace tavrel
