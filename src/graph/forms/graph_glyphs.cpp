#include "graph/forms/graph_glyphs.h"

#include <QPainterPath>

#include "widgets/glyph_grid.h"

namespace tavrel {
namespace {

constexpr qreal kPen = 1.4;

// The curve that stands in several of these pictures, on a frame of the width of the square.
QPainterPath Hill(const QRectF& frame) {
  const auto at = [&frame](qreal x, qreal y) {
    return QPointF(frame.left() + x * frame.width(), frame.top() + y * frame.height());
  };
  QPainterPath hill(at(0, 0.95));
  hill.cubicTo(at(0.3, 0.95), at(0.3, 0.1), at(0.5, 0.1));
  hill.cubicTo(at(0.7, 0.1), at(0.7, 0.75), at(1, 0.75));
  return hill;
}

void DrawCross(QPainter& painter, QPointF middle, qreal arm) {
  painter.drawLine(middle - QPointF(arm, 0), middle + QPointF(arm, 0));
  painter.drawLine(middle - QPointF(0, arm), middle + QPointF(0, arm));
}

}  // namespace

void DrawPrinterGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  painter.drawPolyline(QPolygonF({{4, 5.5}, {4, 1.5}, {12, 1.5}, {12, 5.5}}));
  painter.drawPolyline(
      QPolygonF({{4, 11.5}, {1.5, 11.5}, {1.5, 5.5}, {14.5, 5.5}, {14.5, 11.5}, {12, 11.5}}));
  painter.drawRect(QRectF(4, 9.5, 8, 5));
  painter.drawPoint(QPointF(12.2, 7.6));
}

// A part of a curve goes into a file of its own.
void DrawSubFileGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  DrawSheet(painter);
  painter.drawPath(Hill(QRectF(5, 7, 6, 5)));
}

void DrawClipboardGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  painter.drawPolyline(
      QPolygonF({{5, 3}, {2.5, 3}, {2.5, 14.5}, {13.5, 14.5}, {13.5, 3}, {11, 3}}));
  painter.drawRoundedRect(QRectF(5, 1.5, 6, 3), 1, 1);
  painter.drawPath(Hill(QRectF(4.8, 7, 6.4, 5)));
}

// Two points and the differences between them.
void DrawDistanceGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  painter.drawLine(QPointF(3, 13), QPointF(13, 13));
  painter.drawLine(QPointF(13, 13), QPointF(13, 3));
  DrawArrowHead(painter, QPointF(13, 3), QPointF(11, 5.4), QPointF(15, 5.4));
  DrawArrowHead(painter, QPointF(3, 13), QPointF(5.4, 11), QPointF(5.4, 15));
  painter.setPen(QPen(ink, 1, Qt::DotLine, Qt::FlatCap));
  painter.drawLine(QPointF(3.5, 10.5), QPointF(10.5, 3.5));
}

// The area between a curve and its baseline.
void DrawIntegralGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  const QPainterPath hill = Hill(QRectF(1.5, 1, 13, 12));
  QPainterPath area = hill;
  area.lineTo(14.5, 13.5);
  area.lineTo(1.5, 13.5);
  QColor shade = ink;
  shade.setAlphaF(0.3F);
  painter.fillPath(area, shade);
  painter.drawPath(hill);
  painter.drawLine(QPointF(1.5, 13.5), QPointF(14.5, 13.5));
}

void DrawDeleteMarkGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  DrawCross(painter, QPointF(5.5, 5.5), 4);
  painter.setPen(QPen(ink, 2, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(9.8, 9.8), QPointF(14.2, 14.2));
  painter.drawLine(QPointF(14.2, 9.8), QPointF(9.8, 14.2));
}

void DrawPointMarkGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  DrawCross(painter, QPointF(5.5, 5.5), 4);
  painter.drawLine(QPointF(8.5, 11), QPointF(14.5, 11));
  painter.drawLine(QPointF(8.5, 14), QPointF(14.5, 14));
}

// A balloon with words.
void DrawCommentGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  QPainterPath balloon(QPointF(1.5, 2));
  balloon.lineTo(14.5, 2);
  balloon.lineTo(14.5, 11);
  balloon.lineTo(8, 11);
  balloon.lineTo(4.5, 14.5);
  balloon.lineTo(4.5, 11);
  balloon.lineTo(1.5, 11);
  balloon.closeSubpath();
  painter.drawPath(balloon);
  painter.drawLine(QPointF(4.3, 5), QPointF(11.7, 5));
  painter.drawLine(QPointF(4.3, 8), QPointF(9, 8));
}

// The whole curve between its axes, and a part of it framed.
void DrawOverviewGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  painter.drawRect(QRectF(1.5, 2, 13, 12));
  painter.drawPath(Hill(QRectF(1.5, 4, 13, 8)));
}

// A part of the curve under the magnifying glass.
void DrawPartViewGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  painter.drawEllipse(QPointF(6.7, 6.7), 5.2, 5.2);
  painter.drawPath(Hill(QRectF(3.8, 4.6, 5.8, 4.2)));
  painter.setPen(QPen(ink, 2, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(10.7, 10.7), QPointF(14.3, 14.3));
}

void DrawUpArrowGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, 2);
  painter.drawLine(QPointF(8, 14.5), QPointF(8, 2));
  DrawArrowHead(painter, QPointF(8, 2), QPointF(3.5, 6.8), QPointF(12.5, 6.8));
}

}  // namespace tavrel
