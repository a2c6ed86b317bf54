#ifndef TAVREL_WIDGETS_GLYPH_GRID_H_
#define TAVREL_WIDGETS_GLYPH_GRID_H_

#include <QColor>
#include <QPainter>
#include <QPen>
#include <QPointF>
#include <QPolygonF>
#include <QRectF>

namespace tavrel {

// The painter's state within one glyph, given back when this goes: glyphs are designed on a
// square of 16 units, drawn with one pen, with smooth edges.
class OnGlyphGrid {
 public:
  OnGlyphGrid(QPainter& painter, const QRectF& place, const QColor& ink, qreal width)
      : painter_(painter) {
    painter_.save();
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.translate(place.topLeft());
    painter_.scale(place.width() / kUnits, place.height() / kUnits);
    painter_.setPen(QPen(ink, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter_.setBrush(Qt::NoBrush);
  }
  ~OnGlyphGrid() { painter_.restore(); }
  OnGlyphGrid(const OnGlyphGrid&) = delete;
  OnGlyphGrid& operator=(const OnGlyphGrid&) = delete;

 private:
  static constexpr qreal kUnits = 16;
  QPainter& painter_;
};

// The two strokes of an open arrow head.
inline void DrawArrowHead(QPainter& painter, QPointF tip, QPointF left, QPointF right) {
  painter.drawLine(tip, left);
  painter.drawLine(tip, right);
}

// A sheet of paper with a folded corner: a file.
inline void DrawSheet(QPainter& painter) {
  painter.drawPolyline(QPolygonF(
      {{9.5, 1.5}, {3, 1.5}, {3, 14.5}, {13, 14.5}, {13, 5}, {9.5, 1.5}, {9.5, 5}, {13, 5}}));
}

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_GLYPH_GRID_H_
