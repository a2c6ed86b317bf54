#include "widgets/selecting_edit.h"

#include <QKeyEvent>

namespace tavrel {

void SelectingEdit::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  select_all_.FocusIn(*this, *event);
}

void SelectingEdit::mouseReleaseEvent(QMouseEvent* event) {
  QLineEdit::mouseReleaseEvent(event);
  select_all_.MouseRelease(*this);
}

void SelectingEdit::keyPressEvent(QKeyEvent* event) {
  if ((event->modifiers() & Qt::AltModifier) != 0) {
    event->ignore();
    return;
  }
  QLineEdit::keyPressEvent(event);
}

}  // namespace tavrel
