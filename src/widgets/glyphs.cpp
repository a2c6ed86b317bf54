#include "widgets/glyphs.h"

#include <QPainterPath>

#include "widgets/glyph_grid.h"

namespace tavrel {

void DrawCurveGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, 1.4);
  QPainterPath axes(QPointF(2, 1.5));
  axes.lineTo(2, 14);
  axes.lineTo(14.5, 14);
  painter.drawPath(axes);
  QPainterPath curve(QPointF(4, 11.5));
  curve.cubicTo(6, 11.5, 6.5, 4, 9, 4);
  curve.cubicTo(11, 4, 11, 8, 14, 8);
  painter.drawPath(curve);
}

// Out through a door.
void DrawExitGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, 1.4);
  QPainterPath door(QPointF(9, 4.5));
  door.lineTo(9, 2);
  door.lineTo(2, 2);
  door.lineTo(2, 14);
  door.lineTo(9, 14);
  door.lineTo(9, 11.5);
  painter.drawPath(door);
  painter.drawLine(QPointF(6, 8), QPointF(14.2, 8));
  DrawArrowHead(painter, QPointF(14.2, 8), QPointF(11.2, 5), QPointF(11.2, 11));
}

void DrawFolderGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, 1.3);
  QPainterPath back(QPointF(1.5, 13));
  back.lineTo(1.5, 3.5);
  back.lineTo(6, 3.5);
  back.lineTo(7.5, 5.5);
  back.lineTo(13, 5.5);
  back.lineTo(13, 7.5);
  painter.drawPath(back);
  QPainterPath front(QPointF(1.5, 13));
  front.lineTo(4, 7.5);
  front.lineTo(15, 7.5);
  front.lineTo(12.5, 13);
  front.closeSubpath();
  painter.drawPath(front);
}

void DrawSelectGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, 1);
  QPainterPath arrow(QPointF(5, 3));
  arrow.lineTo(12, 8);
  arrow.lineTo(5, 13);
  arrow.closeSubpath();
  painter.fillPath(arrow, ink);
  painter.drawPath(arrow);
}

void DrawWarningGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, 1.4);
  QPainterPath triangle(QPointF(8, 2));
  triangle.lineTo(15, 14);
  triangle.lineTo(1, 14);
  triangle.closeSubpath();
  painter.drawPath(triangle);
  painter.drawLine(QPointF(8, 6.5), QPointF(8, 9.5));
  painter.drawPoint(QPointF(8, 12));
}

}  // namespace tavrel
