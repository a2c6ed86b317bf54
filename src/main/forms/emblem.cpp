#include "main/forms/emblem.h"

#include <QByteArray>
#include <QPixmap>
#include <QSvgRenderer>

namespace tavrel {
namespace {

constexpr const char* kEmblem = R"svg(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 64 64">
<defs><linearGradient id="heat" x1="0" y1="1" x2="0" y2="0">
<stop offset="0" stop-color="#4f9fd8"/><stop offset=".55" stop-color="#f0a24a"/>
<stop offset="1" stop-color="#f26b3a"/></linearGradient></defs>
<rect x="1" y="1" width="62" height="62" rx="13" fill="#20303f"/>
<g stroke="#3d5265" stroke-width="1.2" fill="none">
<path d="M14 14H52M14 26H52M14 38H52"/></g>
<path d="M14 10V50H54" fill="none" stroke="#9fb2c3" stroke-width="2.6"
 stroke-linecap="round" stroke-linejoin="round"/>
<path d="M15 46C24 45 25 17 34 17C39 17 40 20.5 44 20.5H53" fill="none" stroke="url(#heat)"
 stroke-width="4.4" stroke-linecap="round" stroke-linejoin="round"/>
</svg>)svg";

}  // namespace

void DrawEmblem(QPainter& painter, const QRectF& place) {
  QSvgRenderer(QByteArray(kEmblem)).render(&painter, place);
}

QIcon EmblemIcon() {
  QIcon icon;
  for (const int side : {16, 32, 64}) {
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
