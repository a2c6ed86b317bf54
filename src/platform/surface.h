#ifndef TAVREL_PLATFORM_SURFACE_H_
#define TAVREL_PLATFORM_SURFACE_H_

#include <span>
#include <string>
#include <string_view>

#include "base/colour.h"

namespace tavrel {

// How a stroke meets what is there: it covers it, or it turns every dot into its opposite, so
// that a second equal stroke brings the old picture back.
enum class PenMode { kInvert = 6, kCopy = 13 };

enum class PenStyle { kSolid = 0, kDash = 1, kDot = 2, kDashDot = 3, kDashDotDot = 4 };

// The user scale of a surface: what its edges stand for. Top may lie above or below Bottom, Left
// may lie right of Right.
struct Scale {
  double Left = 0;
  double Top = 0;
  double Right = 1;
  double Bottom = 1;

  [[nodiscard]] bool operator==(const Scale&) const = default;
};

// How strokes look, but for their colour.
struct Pen {
  PenMode Mode = PenMode::kCopy;
  PenStyle Style = PenStyle::kSolid;
  // On the screen in dots of 1/96 inch, on paper in points. 0 is the thinnest line.
  double Width = 1;

  [[nodiscard]] bool operator==(const Pen&) const = default;
};

// A straight stroke, ends in the user scale, both ends drawn.
struct Segment {
  double X1 = 0;
  double Y1 = 0;
  double X2 = 0;
  double Y2 = 0;
  Colour Ink;

  [[nodiscard]] bool operator==(const Segment&) const = default;
};

// Something to draw on: a picture on the screen, its copy in memory, a page. All positions are in
// the user scale; what lies outside the surface is cut. An edge that a scale gives no extent
// (Left equal to Right) counts as one unit wide.
//
// Strokes of equal ends in equal scales give equal dots, alone or in a row of many: a curve that
// grew by pieces is the same picture as the curve drawn at once.
class Surface {
 public:
  Surface() = default;
  virtual ~Surface() = default;
  Surface(const Surface&) = delete;
  Surface& operator=(const Surface&) = delete;

  // Makes it white. Scale, pen and font stay.
  virtual void Clear() = 0;

  virtual void SetScale(const Scale& scale) = 0;
  [[nodiscard]] virtual const Scale& GetScale() const = 0;

  // For all strokes that follow.
  virtual void SetPen(const Pen& pen) = 0;

  virtual void Line(const Segment& line) = 0;

  // The same as Line for each, in their order. The pen must be in copy mode, and on a screen also
  // solid; on paper its pattern runs on over lines that begin where the one before ended.
  virtual void Lines(std::span<const Segment> lines) = 0;

  // The outline of the rectangle of which `diagonal` is one.
  virtual void Box(const Segment& diagonal) = 0;

  // The same rectangle filled, with no outline; the pen plays no part.
  virtual void FillBox(const Segment& diagonal) = 0;

  // A font by its family and its size in points; an empty family or a size of 0 keeps what the
  // surface has.
  virtual void SetFont(const std::string& family, double points) = 0;
  virtual void SetBold(bool is_bold) = 0;

  // Text in black with its upper left corner at (x, y), UTF-8, no background.
  virtual void Print(double x, double y, std::string_view text) = 0;

  // Width of the text, never negative.
  [[nodiscard]] virtual double TextWidth(std::string_view text) const = 0;

  // Height of a line of text in the direction of Bottom: negative where the scale grows upwards.
  [[nodiscard]] virtual double TextHeight() const = 0;

  // Becomes the same picture as `other`, a surface of the same kind and size.
  virtual void TakePicture(const Surface& other) = 0;

  // What was drawn becomes visible with the next turn of the event loop.
  virtual void Refresh() = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_SURFACE_H_
