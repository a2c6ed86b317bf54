#include "widgets/colour_cell.h"

#include <QPainter>

namespace tavrel {
namespace {

constexpr qreal kRadius = 4;
constexpr int kEdgeDarker = 118;  // per cent

}  // namespace

ColourCell::ColourCell(QWidget* parent) : QWidget(parent) {
  QPalette ink;
  ink.setColor(QPalette::WindowText, QColor(kStatusInk));
  ink.setColor(QPalette::ButtonText, QColor(kStatusInk));
  setPalette(ink);
}

void ColourCell::SetColour(Colour colour) {
  if (colour != colour_) {
    colour_ = colour;
    update();
  }
}

void ColourCell::paintEvent(QPaintEvent* /*event*/) {
  const QColor fill(colour_.Red, colour_.Green, colour_.Blue);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(fill.darker(kEdgeDarker));
  painter.setBrush(fill);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius, kRadius);
  if (alarm_ != nullptr && colour_ == kOrange) {
    const int side = height() / 2;
    alarm_(painter, QRectF(width() - side - 4, (height() - side) / 2.0, side, side),
           QColor(kStatusInk));
  }
}

}  // namespace tavrel
