#include "widgets/lamp.h"

#include <QPainter>
#include <numbers>

#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr int kRays = 8;
constexpr int kGap = 6;        // between picture and word
constexpr qreal kRing = 0.30;  // radius of the ring, in parts of the picture's side
constexpr qreal kRayFrom = 0.38;
constexpr qreal kRayTo = 0.48;
constexpr QRgb kLit = 0xFF2E9E3F;  // the fill of a lamp that is on
constexpr const char* kLongestWord = "off";

QPointF OnCircle(const QPointF& centre, qreal radius, int ray) {
  const qreal angle = ray * 2 * std::numbers::pi / kRays;
  return centre + QPointF(radius * std::cos(angle), radius * std::sin(angle));
}

}  // namespace

Lamp::Lamp(const QString& name, const QString& spoken, QWidget* parent)
    : QWidget(parent), spoken_(spoken) {
  setObjectName(name);
  setAccessibleName(spoken_);
  SpeakAs(*this, QAccessible::Graphic);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Lamp::Show(State state) {
  if (state != state_) {
    state_ = state;
    setAccessibleName((spoken_ + " " + Word()).trimmed());
    update();
  }
}

QString Lamp::Word() const {
  switch (state_) {
    case State::kOn:
      return "on";
    case State::kOff:
      return "off";
    case State::kUnknown:
      break;
  }
  return "";
}

QSize Lamp::sizeHint() const {
  const int side = fontMetrics().height() + kGap;
  return {side + kGap + fontMetrics().horizontalAdvance(kLongestWord) + 2, side};
}

void Lamp::Draw(QPainter& painter, const QRectF& place) const {
  const qreal side = place.width();
  const QColor ink = palette().color(QPalette::WindowText);
  QPen pen(ink, side / 14);
  pen.setStyle(state_ == State::kUnknown ? Qt::DotLine : Qt::SolidLine);
  painter.setPen(pen);
  painter.setBrush(state_ == State::kOn ? QBrush(QColor(kLit)) : QBrush(Qt::NoBrush));
  painter.drawEllipse(place.center(), side * kRing, side * kRing);
  for (int ray = 0; ray < kRays && state_ == State::kOn; ++ray) {
    painter.drawLine(OnCircle(place.center(), side * kRayFrom, ray),
                     OnCircle(place.center(), side * kRayTo, ray));
  }
}

void Lamp::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  Draw(painter, QRectF(0, 0, height(), height()));
  painter.setPen(palette().color(QPalette::WindowText));
  painter.drawText(rect().adjusted(height() + kGap, 0, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                   Word());
}

}  // namespace tavrel
