#ifndef TAVREL_MAIN_FORMS_EMBLEM_H_
#define TAVREL_MAIN_FORMS_EMBLEM_H_

#include <QIcon>
#include <QPainter>
#include <QRectF>

namespace tavrel {

// The emblem of the program: a furnace's temperature that rises to its setpoint and holds it.
void DrawEmblem(QPainter& painter, const QRectF& place);

// The same as the icon of windows and boxes.
[[nodiscard]] QIcon EmblemIcon();

}  // namespace tavrel

#endif  // TAVREL_MAIN_FORMS_EMBLEM_H_
