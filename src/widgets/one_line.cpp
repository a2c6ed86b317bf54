#include "widgets/one_line.h"

#include <QPainter>

namespace tavrel {

void PaintOneLine(QLabel& label) {
  QPainter painter(&label);
  const QRect room = label.rect().adjusted(label.indent(), 0, 0, 0);
  const QString shown = label.fontMetrics().elidedText(label.text(), Qt::ElideRight, room.width());
  painter.setPen(label.palette().color(label.foregroundRole()));
  painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, shown);
}

}  // namespace tavrel
