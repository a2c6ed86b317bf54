#ifndef TAVREL_WIDGETS_GLYPHS_H_
#define TAVREL_WIDGETS_GLYPHS_H_

#include <QColor>
#include <QPainter>
#include <QRectF>

// Small pictures drawn as strokes in one ink, so that they suit a light and a dark palette and
// stay sharp at every scale.
namespace tavrel {

// Draws into `place`, a square.
using Glyph = void (*)(QPainter& painter, const QRectF& place, const QColor& ink);

void DrawCurveGlyph(QPainter& painter, const QRectF& place, const QColor& ink);    // worksheet
void DrawExitGlyph(QPainter& painter, const QRectF& place, const QColor& ink);     // leave
void DrawFolderGlyph(QPainter& painter, const QRectF& place, const QColor& ink);   // open a file
void DrawSelectGlyph(QPainter& painter, const QRectF& place, const QColor& ink);   // selected
void DrawWarningGlyph(QPainter& painter, const QRectF& place, const QColor& ink);  // no answer

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_GLYPHS_H_
