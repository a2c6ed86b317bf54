#include "platform/qt/plot_surface.h"

#include <QPainter>
#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "platform/qt/qt_text.h"

namespace tavrel {
namespace {

constexpr double kFarDot = 1e6;

std::uint32_t InkOf(Colour ink) {
  return qRgb(ink.Red, ink.Green, ink.Blue);
}

// For places that are not negative, where cutting the fraction off is rounding down. A call of
// the library would take longer than the stroke.
int Whole(double dot) {
  constexpr double kHalf = 0.5;
  return static_cast<int>(dot + kHalf);
}

DotCanvas CanvasOf(QImage& picture) {
  constexpr std::ptrdiff_t kDotBytes = 4;
  return {reinterpret_cast<std::uint32_t*>(picture.bits()), picture.bytesPerLine() / kDotBytes,
          picture.width(), picture.height()};
}

bool IsInside(double dot, double last) {
  return dot >= 0 && dot <= last;  // false for what is not a number
}

// Upright lines that lie in one column of dots and touch each other, as a hatched area has many:
// they are joined and drawn once. Only for strokes that cover without gaps.
class Column {
 public:
  Column(const DotCanvas& canvas, const DotStroke& stroke) : canvas_(canvas), stroke_(stroke) {}

  // `from` and `to` have the same X.
  void Add(Dot from, Dot to, std::uint32_t ink) {
    const auto [top, bottom] = std::minmax(from.Y, to.Y);
    const bool touches =
        is_open_ && from.X == x_ && ink == stroke_.Ink && top <= bottom_ + 1 && bottom >= top_ - 1;
    if (touches) {
      top_ = std::min(top_, top);
      bottom_ = std::max(bottom_, bottom);
      return;
    }
    Draw();
    is_open_ = true;
    x_ = from.X;
    top_ = top;
    bottom_ = bottom;
    stroke_.Ink = ink;
  }
  void Draw() {
    if (is_open_) {
      canvas_.Line({x_, top_}, {x_, bottom_}, stroke_);
      is_open_ = false;
    }
  }

 private:
  const DotCanvas& canvas_;
  DotStroke stroke_;
  bool is_open_ = false;
  int x_ = 0;
  int top_ = 0;
  int bottom_ = 0;
};

}  // namespace

PlotSurface::PlotSurface(Upright upright) : upright_(upright) {
  // Coloured fringes would not survive on a copy of the picture.
  font_.setStyleStrategy(QFont::NoSubpixelAntialias);
  Resize(QSize(1, 1), 1);
}

void PlotSurface::Resize(QSize dots, qreal device_scale) {
  picture_ = QImage(dots.expandedTo(QSize(1, 1)), QImage::Format_RGB32);
  picture_.setDevicePixelRatio(device_scale);
  FindMap();
  Whiten();
}

void PlotSurface::FindMap() {
  edges_ = {0, 0, picture_.width() - 1.0, picture_.height() - 1.0};
  const bool is_upright = upright_ == Upright::kYes;
  map_ = ScaleMap(scale_, is_upright ? edges_ : DotBox{0, edges_.Bottom, edges_.Right, 0});
}

void PlotSurface::Watch(std::function<void()> changed, std::function<void()> refresh) {
  changed_ = std::move(changed);
  refresh_ = std::move(refresh);
}

QRect PlotSurface::TakeChanges() {
  return std::exchange(changes_, QRect());
}

void PlotSurface::Change(const QRect& dots) {
  const bool is_first = changes_.isEmpty();
  changes_ |= dots & picture_.rect();
  if (is_first && !changes_.isEmpty()) {
    changed_();
  }
}

void PlotSurface::ChangeBox(Dot from, Dot to) {
  const int around = StrokeIn({}).Width;
  const QRect box = QRect(QPoint(std::min(from.X, to.X), std::min(from.Y, to.Y)),
                          QPoint(std::max(from.X, to.X), std::max(from.Y, to.Y)));
  Change(box.adjusted(-around, -around, around, around));
}

void PlotSurface::Clear() {
  Whiten();
}

void PlotSurface::Whiten() {
  picture_.fill(Qt::white);
  over_.clear();
  Change(picture_.rect());
}

void PlotSurface::SetScale(const Scale& scale) {
  scale_ = scale;
  FindMap();
}

DotCanvas PlotSurface::Canvas() {
  return CanvasOf(picture_);
}

QImage PlotSurface::Seen() const {
  QImage seen = picture_;
  if (over_.empty()) {
    return seen;
  }
  const DotCanvas canvas = CanvasOf(seen);
  for (const OverStroke& over : over_) {
    if (over.is_box) {
      canvas.Box(over.from, over.to, over.stroke);
    } else {
      canvas.Line(over.from, over.to, over.stroke);
    }
  }
  return seen;
}

// The second of two equal strokes takes the first away.
void PlotSurface::Invert(const OverStroke& over) {
  const auto twin = std::find(over_.begin(), over_.end(), over);
  if (twin == over_.end()) {
    over_.push_back(over);
  } else {
    over_.erase(twin);
  }
  ChangeBox(over.from, over.to);
}

DotStroke PlotSurface::StrokeIn(Colour ink) const {
  const double width = std::clamp(pen_.Width * DeviceScale(), 1.0, edges_.Bottom + 1);
  return {InkOf(ink), static_cast<int>(std::lround(width)), pen_.Mode, pen_.Style};
}

// Cut before it is rounded: the ends are always inside.
bool PlotSurface::FindDots(const Segment& line, Dot& from, Dot& to) const {
  DotLine dots = map_.Dots(line);
  const bool is_inside = IsInside(dots.X1, edges_.Right) && IsInside(dots.X2, edges_.Right) &&
                         IsInside(dots.Y1, edges_.Bottom) && IsInside(dots.Y2, edges_.Bottom);
  if (!is_inside && !CutLine(dots, edges_)) {
    return false;
  }
  from = {Whole(dots.X1), Whole(dots.Y1)};
  to = {Whole(dots.X2), Whole(dots.Y2)};
  return true;
}

void PlotSurface::Line(const Segment& line) {
  Lines({&line, 1});
}

void PlotSurface::Lines(std::span<const Segment> lines) {
  if (pen_.Mode == PenMode::kInvert) {
    InvertLines(lines);
    return;
  }
  const DotCanvas canvas = Canvas();
  DotStroke stroke = StrokeIn({});
  const bool is_solid = stroke.Style == PenStyle::kSolid;
  Column column(canvas, stroke);
  Dot least{picture_.width(), picture_.height()};
  Dot most{-1, -1};
  for (const Segment& line : lines) {
    Dot from;
    Dot to;
    if (!FindDots(line, from, to)) {
      continue;
    }
    stroke.Ink = InkOf(line.Ink);
    if (is_solid && from.X == to.X) {
      column.Add(from, to, stroke.Ink);
    } else {
      column.Draw();
      canvas.Line(from, to, stroke);
    }
    least = {std::min({least.X, from.X, to.X}), std::min({least.Y, from.Y, to.Y})};
    most = {std::max({most.X, from.X, to.X}), std::max({most.Y, from.Y, to.Y})};
  }
  column.Draw();
  if (most.X >= 0) {
    ChangeBox(least, most);
  }
}

void PlotSurface::InvertLines(std::span<const Segment> lines) {
  for (const Segment& line : lines) {
    Dot from;
    Dot to;
    if (FindDots(line, from, to)) {
      Invert({false, from, to, StrokeIn({})});
    }
  }
}

bool PlotSurface::FindCorners(const Segment& diagonal, Dot& corner, Dot& opposite) const {
  const DotLine dots = map_.Dots(diagonal);
  if (std::isnan(dots.X1) || std::isnan(dots.Y1) || std::isnan(dots.X2) || std::isnan(dots.Y2)) {
    return false;
  }
  const auto whole = [](double dot) {
    return static_cast<int>(std::lround(std::clamp(dot, -kFarDot, kFarDot)));
  };
  corner = {whole(dots.X1), whole(dots.Y1)};
  opposite = {whole(dots.X2), whole(dots.Y2)};
  return true;
}

void PlotSurface::Box(const Segment& diagonal) {
  Dot corner;
  Dot opposite;
  if (!FindCorners(diagonal, corner, opposite)) {
    return;
  }
  if (pen_.Mode == PenMode::kInvert) {
    Invert({true, corner, opposite, StrokeIn({})});
    return;
  }
  Canvas().Box(corner, opposite, StrokeIn(diagonal.Ink));
  ChangeBox(corner, opposite);
}

void PlotSurface::FillBox(const Segment& diagonal) {
  Dot corner;
  Dot opposite;
  if (FindCorners(diagonal, corner, opposite)) {
    Canvas().FillBox(corner, opposite, InkOf(diagonal.Ink));
    ChangeBox(corner, opposite);
  }
}

void PlotSurface::SetFont(const std::string& family, double points) {
  if (!family.empty()) {
    font_.setFamily(QtText(family));
  }
  if (points > 0) {
    font_.setPointSizeF(points);
  }
}

QFontMetricsF PlotSurface::Metrics() const {
  return {font_, &picture_};
}

// The painter counts in 1/96 inch, the map in dots.
void PlotSurface::Print(double x, double y, std::string_view text) {
  const QPointF dot(map_.DotX(x), map_.DotY(y));
  if (!(std::abs(dot.x()) < kFarDot && std::abs(dot.y()) < kFarDot)) {
    return;
  }
  const QPointF corner = dot / DeviceScale();
  const QFontMetricsF metrics = Metrics();
  QPainter painter(&picture_);
  painter.setFont(font_);
  painter.setPen(Qt::black);
  painter.drawText(QPointF(corner.x(), corner.y() + metrics.ascent()), QtText(text));
  const QSizeF size(metrics.horizontalAdvance(QtText(text)), metrics.height());
  const qreal around = metrics.averageCharWidth();
  const QRectF box = QRectF(corner, size).adjusted(-around, -around, around, around);
  Change(QRectF(box.topLeft() * DeviceScale(), box.size() * DeviceScale()).toAlignedRect());
}

double PlotSurface::TextWidth(std::string_view text) const {
  return Metrics().horizontalAdvance(QtText(text)) * DeviceScale() / std::abs(map_.DotsPerX());
}

double PlotSurface::TextHeight() const {
  return Metrics().height() * DeviceScale() / map_.DotsPerY();
}

void PlotSurface::TakePicture(const Surface& other) {
  const auto* source = dynamic_cast<const PlotSurface*>(&other);
  if (source == nullptr || source->picture_.size() != picture_.size() || source == this) {
    return;
  }
  std::memcpy(picture_.bits(), source->picture_.constBits(),
              static_cast<std::size_t>(picture_.sizeInBytes()));
  over_ = source->over_;
  Change(picture_.rect());
}

void PlotSurface::Refresh() {
  refresh_();
}

}  // namespace tavrel
