#include "dialogs/forms/sort_head.h"

#include <QKeyEvent>
#include <QPainter>
#include <QPolygonF>

#include "widgets/shades.h"

namespace tavrel {
namespace {

constexpr qreal kArrow = 4;     // half the width of the arrow
constexpr int kArrowRoom = 10;  // between caption and the middle of the arrow

QPolygonF ArrowAt(const QPointF& middle, SortMark mark) {
  const qreal tip = mark == SortMark::kUp ? -kArrow / 2 : kArrow / 2;
  return {
      {middle + QPointF(-kArrow, -tip), middle + QPointF(kArrow, -tip), middle + QPointF(0, tip)}};
}

}  // namespace

SortHead::SortHead(const char* name, const QString& caption, QWidget* parent)
    : QAbstractButton(parent) {
  setObjectName(name);
  setText(caption);
  setAccessibleName("sort by " + caption);
  setFocusPolicy(Qt::StrongFocus);
}

void SortHead::ShowMark(SortMark mark) {
  if (mark == mark_) {
    return;
  }
  mark_ = mark;
  const bool up = mark == SortMark::kUp;
  setAccessibleDescription(mark == SortMark::kNone ? "" : (up ? "ascending" : "descending"));
  update();
}

QSize SortHead::sizeHint() const {
  return {fontMetrics().horizontalAdvance(text()) + 4 * kIndent, fontMetrics().height() + 10};
}

void SortHead::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor accent = palette().color(QPalette::Highlight);
  const QColor button = palette().color(QPalette::Button);
  painter.fillRect(rect(), isDown() || underMouse() ? Blend(button, accent, 0.15) : button);
  painter.setPen(EdgeOf(palette()));
  painter.drawLine(QPointF(0, height() - 0.5), QPointF(width(), height() - 0.5));
  if (x() > kIndent) {
    painter.drawLine(QPointF(0.5, 4), QPointF(0.5, height() - 5));
  }
  painter.setPen(palette().color(QPalette::ButtonText));
  painter.drawText(rect().adjusted(kIndent, 0, -kIndent, 0), Qt::AlignVCenter, text());
  if (mark_ != SortMark::kNone) {
    const int left = kIndent + fontMetrics().horizontalAdvance(text()) + kArrowRoom;
    painter.setBrush(painter.pen().color());
    painter.setPen(Qt::NoPen);
    painter.drawPolygon(ArrowAt(QPointF(left, height() / 2.0), mark_));
  }
  if (hasFocus()) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(accent, 2));
    painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
  }
}

void SortHead::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    click();
    return;
  }
  QAbstractButton::keyPressEvent(event);
}

void SortHead::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
}

void SortHead::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
}

}  // namespace tavrel
