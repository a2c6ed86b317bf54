#include "platform/qt/painter_surface.h"

#include <QPaintDevice>
#include <QPen>
#include <QPolygonF>
#include <algorithm>
#include <array>
#include <cmath>

#include "platform/qt/qt_text.h"

namespace tavrel {
namespace {

// Of a curve that has more points than this page can show.
constexpr qreal kColumnsToThePoint = 4;
constexpr qreal kLeastColumn = 1;    // units of the painter: on a picture a dot
constexpr qreal kPagesOfAPiece = 1;  // length of a piece, in widths and heights of the page

// The painter's state within one call, given back when this goes.
class KeptPainter {
 public:
  explicit KeptPainter(QPainter& painter) : painter_(painter) { painter_.save(); }
  ~KeptPainter() { painter_.restore(); }
  KeptPainter(const KeptPainter&) = delete;
  KeptPainter& operator=(const KeptPainter&) = delete;

 private:
  QPainter& painter_;
};

Qt::PenStyle StyleOf(PenStyle style) {
  switch (style) {
    case PenStyle::kDash:
      return Qt::DashLine;
    case PenStyle::kDot:
      return Qt::DotLine;
    case PenStyle::kDashDot:
      return Qt::DashDotLine;
    case PenStyle::kDashDotDot:
      return Qt::DashDotDotLine;
    case PenStyle::kSolid:
      break;
  }
  return Qt::SolidLine;
}

QList<QLineF> LinesOf(const QPolygonF& points) {
  QList<QLineF> lines;
  for (qsizetype place = 1; place < points.size(); ++place) {
    lines << QLineF(points[place - 1], points[place]);
  }
  return lines;
}

}  // namespace

PainterSurface::PainterSurface(QPainter& painter, const QRectF& place, qreal units_per_point)
    : painter_(painter),
      place_(place),
      edges_{place.left(), place.top(), place.right(), place.bottom()},
      units_per_point_(units_per_point),
      font_(painter.font()),
      map_(scale_, edges_) {}

void PainterSurface::Clear() {
  painter_.fillRect(place_, Qt::white);
}

void PainterSurface::SetScale(const Scale& scale) {
  scale_ = scale;
  map_ = ScaleMap(scale, edges_);
}

QPen PainterSurface::PenOf(Colour ink) const {
  const bool is_solid = pen_.Style == PenStyle::kSolid;
  QPen pen(QColor(ink.Red, ink.Green, ink.Blue), pen_.Width * units_per_point_,
           StyleOf(pen_.Style));
  pen.setCapStyle(is_solid ? Qt::RoundCap : Qt::FlatCap);
  pen.setJoinStyle(Qt::RoundJoin);
  return pen;
}

void PainterSurface::Line(const Segment& line) {
  Lines({&line, 1});
}

// Lines that begin where the one before ended are one stroke, so that its pattern runs on.
void PainterSurface::Lines(std::span<const Segment> lines) {
  StrokePoints stroke;
  Colour ink;
  for (const Segment& line : lines) {
    DotLine dots = map_.Dots(line);
    if (!CutLine(dots, edges_)) {
      continue;
    }
    const StrokePoint from{dots.X1, dots.Y1};
    const bool goes_on = !stroke.empty() && stroke.back() == from && line.Ink == ink;
    if (!goes_on) {
      DrawStroke(stroke, ink);
      stroke = {from};
    }
    ink = line.Ink;
    stroke.push_back({dots.X2, dots.Y2});
  }
  DrawStroke(stroke, ink);
}

void PainterSurface::DrawStroke(const StrokePoints& stroke, Colour ink) {
  const KeptPainter kept(painter_);
  const double column = std::max(units_per_point_ / kColumnsToThePoint, kLeastColumn);
  const double length = kPagesOfAPiece * (place_.width() + place_.height());
  const bool is_soft = painter_.testRenderHint(QPainter::Antialiasing);
  for (const StrokePiece& piece : InPieces(WithoutUnseen(stroke, column), length)) {
    const bool is_dense = piece.Length >= length;
    painter_.setRenderHint(QPainter::Antialiasing, is_soft && !is_dense);
    DrawPiece(piece, is_dense, ink);
  }
}

// A part that is longer than the page within a few columns of dots looks like an area. Single lines
// without soft edges and round joins take a thirtieth of the work there.
void PainterSurface::DrawPiece(const StrokePiece& piece, bool is_dense, Colour ink) {
  QPolygonF points;
  for (const StrokePoint& point : piece.Points) {
    points << QPointF(point.X, point.Y);
  }
  QPen pen = PenOf(ink);
  if (is_dense && pen.style() == Qt::SolidLine) {
    pen.setCapStyle(Qt::SquareCap);
    painter_.setPen(pen);
    painter_.drawLines(LinesOf(points));
    return;
  }
  if (pen.style() != Qt::SolidLine && pen.widthF() > 0) {
    pen.setDashOffset(piece.Before / pen.widthF());
  }
  painter_.setPen(pen);
  painter_.drawPolyline(points);
}

void PainterSurface::Box(const Segment& diagonal) {
  const auto& [x1, y1, x2, y2, ink] = diagonal;
  const std::array<Segment, 4> sides = {
      {{x1, y1, x2, y1, ink}, {x2, y1, x2, y2, ink}, {x2, y2, x1, y2, ink}, {x1, y2, x1, y1, ink}}};
  Lines(sides);
}

void PainterSurface::FillBox(const Segment& diagonal) {
  DotLine dots = map_.Dots(diagonal);
  const auto is_finite = [](double value) { return std::isfinite(value); };
  if (!is_finite(dots.X1) || !is_finite(dots.Y1) || !is_finite(dots.X2) || !is_finite(dots.Y2)) {
    return;
  }
  const QRectF box(QPointF(dots.X1, dots.Y1), QPointF(dots.X2, dots.Y2));
  painter_.fillRect(box.normalized() & place_,
                    QColor(diagonal.Ink.Red, diagonal.Ink.Green, diagonal.Ink.Blue));
}

// The size of a font on a device is points of that device; the painter may be scaled.
void PainterSurface::SetFont(const std::string& family, double points) {
  if (!family.empty()) {
    font_.setFamily(QtText(family));
  }
  if (points > 0) {
    const qreal units = points * units_per_point_;
    font_.setPointSizeF(units * kPointsPerInch / painter_.device()->logicalDpiY());
  }
}

QFontMetricsF PainterSurface::Metrics() const {
  return {font_, painter_.device()};
}

void PainterSurface::Print(double x, double y, std::string_view text) {
  const QPointF corner(map_.DotX(x), map_.DotY(y));
  const QRectF around = place_.adjusted(-place_.width(), -place_.height(), place_.width(), 0);
  if (!around.contains(corner)) {  // also what is not a number
    return;
  }
  const KeptPainter kept(painter_);
  const QFontMetricsF metrics = Metrics();
  const QRectF room(corner, QSizeF(metrics.horizontalAdvance(QtText(text)), metrics.height()));
  if (!place_.contains(room)) {
    painter_.setClipRect(place_, Qt::IntersectClip);
  }
  painter_.setFont(font_);
  painter_.setPen(Qt::black);
  painter_.drawText(QPointF(corner.x(), corner.y() + metrics.ascent()), QtText(text));
}

double PainterSurface::TextWidth(std::string_view text) const {
  return Metrics().horizontalAdvance(QtText(text)) / std::abs(map_.DotsPerX());
}

double PainterSurface::TextHeight() const {
  return Metrics().height() / map_.DotsPerY();
}

}  // namespace tavrel
