#ifndef TAVREL_PLATFORM_QT_PAINTER_SURFACE_H_
#define TAVREL_PLATFORM_QT_PAINTER_SURFACE_H_

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QRectF>

#include "platform/scale_map.h"
#include "platform/stroke_pieces.h"
#include "platform/surface.h"

namespace tavrel {

inline constexpr qreal kPointsPerInch = 72;

// A part of a page that a painter draws on, be it a printer, a PDF, an SVG or a picture: strokes
// are vectors, text stays text. Several may share one page. There is no inverting on paper: a
// stroke in that mode covers.
class PainterSurface : public Surface {
 public:
  // `place` is the part of the page in the painter's units, of which `units_per_point` make a
  // point; the font is the painter's. The painter is active and outlives the surface; between
  // two calls its state is the caller's.
  PainterSurface(QPainter& painter, const QRectF& place, qreal units_per_point);

  void Clear() override;
  void SetScale(const Scale& scale) override;
  [[nodiscard]] const Scale& GetScale() const override { return scale_; }
  void SetPen(const Pen& pen) override { pen_ = pen; }
  void Line(const Segment& line) override;
  void Lines(std::span<const Segment> lines) override;
  void Box(const Segment& diagonal) override;
  void FillBox(const Segment& diagonal) override;
  void SetFont(const std::string& family, double points) override;
  void SetBold(bool is_bold) override { font_.setBold(is_bold); }
  void Print(double x, double y, std::string_view text) override;
  [[nodiscard]] double TextWidth(std::string_view text) const override;
  [[nodiscard]] double TextHeight() const override;

  // A page keeps no picture to take or to refresh: no effect.
  void TakePicture(const Surface& /*other*/) override {}
  void Refresh() override {}

 private:
  void DrawStroke(const StrokePoints& stroke, Colour ink);
  void DrawPiece(const StrokePiece& piece, bool is_dense, Colour ink);
  [[nodiscard]] QPen PenOf(Colour ink) const;
  [[nodiscard]] QFontMetricsF Metrics() const;

  QPainter& painter_;
  QRectF place_;
  DotBox edges_;
  qreal units_per_point_;
  QFont font_;
  Pen pen_;
  Scale scale_;
  ScaleMap map_;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_PAINTER_SURFACE_H_
