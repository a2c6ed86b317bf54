#include "main/forms/emblem.h"

#include <QByteArray>
#include <QPixmap>
#include <QSvgRenderer>

#include "emblem_svg.h"

namespace tavrel {

void DrawEmblem(QPainter& painter, const QRectF& place) {
  QSvgRenderer(QByteArray(kEmblemSvg)).render(&painter, place);
}

QIcon EmblemIcon() {
  QIcon icon;
  for (const int side : {16, 32, 64, 128, 256}) {
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    DrawEmblem(painter, QRectF(0, 0, side, side));
    painter.end();
    icon.addPixmap(picture);
  }
  return icon;
}

}  // namespace tavrel
