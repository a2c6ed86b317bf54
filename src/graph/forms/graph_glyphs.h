#ifndef TAVREL_GRAPH_FORMS_GRAPH_GLYPHS_H_
#define TAVREL_GRAPH_FORMS_GRAPH_GLYPHS_H_

#include <QColor>
#include <QPainter>
#include <QRectF>

// The pictures of the graph's buttons, for the square `place`.
namespace tavrel {

void DrawPrinterGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawSubFileGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawClipboardGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawDistanceGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawIntegralGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawDeleteMarkGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawPointMarkGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawCommentGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawOverviewGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawPartViewGlyph(QPainter& painter, const QRectF& place, const QColor& ink);
void DrawUpArrowGlyph(QPainter& painter, const QRectF& place, const QColor& ink);

}  // namespace tavrel

#endif  // TAVREL_GRAPH_FORMS_GRAPH_GLYPHS_H_
