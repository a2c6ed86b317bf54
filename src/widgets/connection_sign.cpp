#include "widgets/connection_sign.h"

#include <QPainter>

#include "widgets/glyphs.h"

namespace tavrel {

ConnectionSign::ConnectionSign(QWidget* parent) : QWidget(parent) {
  setObjectName("ComIcon");
  const int side = fontMetrics().height() + 6;
  setFixedSize(side, side);
  QSizePolicy keeps_its_place = sizePolicy();
  keeps_its_place.setRetainSizeWhenHidden(true);
  setSizePolicy(keeps_its_place);
}

void ConnectionSign::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  DrawWarningGlyph(painter, QRectF(rect()), palette().color(QPalette::WindowText));
}

}  // namespace tavrel
