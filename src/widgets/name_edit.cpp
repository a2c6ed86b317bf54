#include "widgets/name_edit.h"

#include <QFocusEvent>
#include <QPainter>

#include "widgets/shades.h"

namespace tavrel {

NameEdit::NameEdit(QWidget* parent) : QLineEdit(parent) {
  setFrame(false);
  setTextMargins(6, 0, 6, 0);
  QPalette clear;
  clear.setColor(QPalette::Base, Qt::transparent);
  setPalette(clear);
}

void NameEdit::ShowText(const std::string& utf8) {
  const QUtf8StringView wanted(utf8.data(), static_cast<qsizetype>(utf8.size()));
  if (QAnyStringView(text()) != QAnyStringView(wanted)) {
    setText(wanted.toString());
    setCursorPosition(0);
  }
}

void NameEdit::paintEvent(QPaintEvent* event) {
  QLineEdit::paintEvent(event);
  PaintFrame();
}

void NameEdit::PaintFrame() {
  const bool awake = isEnabled() && (hasFocus() || underMouse());
  if (!awake) {
    return;
  }
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const qreal width = hasFocus() ? 2 : 1;
  painter.setPen(
      QPen(hasFocus() ? palette().color(QPalette::Highlight) : EdgeOf(palette()), width));
  const qreal inset = width / 2;
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), 4, 4);
}

// A long name shows its beginning again.
void NameEdit::focusOutEvent(QFocusEvent* event) {
  QLineEdit::focusOutEvent(event);
  if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) {
    setCursorPosition(0);
  }
}

}  // namespace tavrel
