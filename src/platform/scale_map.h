#ifndef TAVREL_PLATFORM_SCALE_MAP_H_
#define TAVREL_PLATFORM_SCALE_MAP_H_

#include "platform/surface.h"

// From the user scale of a surface to its dots and back.
namespace tavrel {

// A rectangle in dots, with its edges.
struct DotBox {
  double Left = 0;
  double Top = 0;
  double Right = 0;
  double Bottom = 0;
};

// A straight line in dots.
struct DotLine {
  double X1 = 0;
  double Y1 = 0;
  double X2 = 0;
  double Y2 = 0;
};

// Cuts a line at the edges of a box. False: no part of it lies inside, or an end is not a number.
// Ends beyond all measure, infinite ones included, count as very far away.
[[nodiscard]] bool CutLine(DotLine& line, const DotBox& box);

// The map between a user scale and the rectangle of dots that it stands for. A scale without
// extent counts as one unit wide.
class ScaleMap {
 public:
  ScaleMap() = default;
  ScaleMap(const Scale& scale, const DotBox& dots);

  [[nodiscard]] double DotX(double x) const { return x * x_factor_ + x_origin_; }
  [[nodiscard]] double DotY(double y) const { return y * y_factor_ + y_origin_; }
  [[nodiscard]] DotLine Dots(const Segment& line) const {
    return {DotX(line.X1), DotY(line.Y1), DotX(line.X2), DotY(line.Y2)};
  }

  // Dots to the unit, negative where the scale runs against the dots; never 0.
  [[nodiscard]] double DotsPerX() const { return x_factor_; }
  [[nodiscard]] double DotsPerY() const { return y_factor_; }

  [[nodiscard]] double UserX(double dot) const { return (dot - x_origin_) / x_factor_; }
  [[nodiscard]] double UserY(double dot) const { return (dot - y_origin_) / y_factor_; }

 private:
  double x_factor_ = 1;
  double x_origin_ = 0;  // the dot of user position 0
  double y_factor_ = 1;
  double y_origin_ = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_SCALE_MAP_H_
