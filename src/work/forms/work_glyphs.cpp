#include "work/forms/work_glyphs.h"

#include <QPainterPath>
#include <array>

#include "widgets/glyph_grid.h"

namespace tavrel {
namespace {

constexpr qreal kPen = 1.4;

void DrawStairs(QPainter& painter) {
  QPainterPath stairs(QPointF(1.5, 13));
  stairs.lineTo(4.5, 13);
  stairs.lineTo(6, 8);
  stairs.lineTo(9, 8);
  stairs.lineTo(10.5, 3);
  stairs.lineTo(14.5, 3);
  painter.drawPath(stairs);
}

}  // namespace

void DrawRecordOnGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  painter.setBrush(ink);
  painter.drawEllipse(QPointF(8, 8), 5, 5);
}

void DrawRecordOffGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  painter.setBrush(ink);
  painter.drawRect(QRectF(3.8, 3.8, 8.4, 8.4));
}

void DrawNewFileGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  DrawSheet(painter);
  painter.drawLine(QPointF(8, 7), QPointF(8, 12));
  painter.drawLine(QPointF(5.5, 9.5), QPointF(10.5, 9.5));
}

// Three sliders.
void DrawSettingsGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  const std::array<QPointF, 3> knobs = {QPointF(5, 3.5), QPointF(11, 8), QPointF(6.5, 12.5)};
  for (const QPointF& knob : knobs) {
    painter.drawLine(QPointF(1.5, knob.y()), QPointF(14.5, knob.y()));
  }
  painter.setBrush(ink);
  for (const QPointF& knob : knobs) {
    painter.drawEllipse(knob, 1.7, 1.7);
  }
}

// A temperature that is held: level between two bounds.
void DrawIsothermGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, 1.1);
  for (const qreal height : {3.5, 12.5}) {
    for (const qreal left : {1.5, 6.6, 11.7}) {
      painter.drawLine(QPointF(left, height), QPointF(left + 2.8, height));
    }
  }
  painter.setPen(QPen(ink, 2, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(1.5, 8), QPointF(14.5, 8));
}

void DrawRampGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, 1.8);
  painter.drawLine(QPointF(2, 13.5), QPointF(13.5, 3));
  DrawArrowHead(painter, QPointF(13.5, 3), QPointF(8.6, 3.6), QPointF(12.6, 7.8));
}

void DrawPowerGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, 1.8);
  painter.drawLine(QPointF(8, 1.8), QPointF(8, 7.5));
  painter.drawArc(QRectF(2.5, 3, 11, 11), 125 * 16, 290 * 16);
}

void DrawProgramGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, 1.8);
  DrawStairs(painter);
}

void DrawStopProgramGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  DrawStairs(painter);
  painter.setPen(QPen(ink, 2, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(10.5, 9.5), QPointF(14.5, 13.5));
  painter.drawLine(QPointF(14.5, 9.5), QPointF(10.5, 13.5));
}

void DrawCoordinatesGlyph(QPainter& painter, const QRectF& place, const QColor& ink) {
  const OnGlyphGrid grid(painter, place, ink, kPen);
  painter.drawLine(QPointF(3.5, 14), QPointF(3.5, 1.8));
  painter.drawLine(QPointF(2, 12.5), QPointF(14.2, 12.5));
  DrawArrowHead(painter, QPointF(3.5, 1.8), QPointF(1.5, 4.2), QPointF(5.5, 4.2));
  DrawArrowHead(painter, QPointF(14.2, 12.5), QPointF(11.8, 10.5), QPointF(11.8, 14.5));
  painter.drawLine(QPointF(7, 11.6), QPointF(7, 12.5));
  painter.drawLine(QPointF(3.5, 8.5), QPointF(4.4, 8.5));
}

}  // namespace tavrel
