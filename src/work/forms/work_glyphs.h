#ifndef TAVREL_WORK_FORMS_WORK_GLYPHS_H_
#define TAVREL_WORK_FORMS_WORK_GLYPHS_H_

#include <QColor>
#include <QPainter>
#include <QRectF>

// The pictures of the worksheet's buttons, for the square `place`.
namespace tavrel {

void DrawRecordOnGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawRecordOffGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawNewFileGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawSettingsGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawIsothermGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawRampGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawPowerGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawProgramGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawStopProgramGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawCoordinatesGlyph(QPainter& painter, const QRectF& place, const QColor& ink);

}  // namespace tavrel

#endif  // TAVREL_WORK_FORMS_WORK_GLYPHS_H_
