#include "widgets/cell_edit.h"

#include <QKeyEvent>

namespace tavrel {

void CellEdit::focusInEvent(QFocusEvent* event) {
  NameEdit::focusInEvent(event);
  select_all_.FocusIn(*this, *event);
}

void CellEdit::mouseReleaseEvent(QMouseEvent* event) {
  NameEdit::mouseReleaseEvent(event);
  select_all_.MouseRelease(*this);
}

void CellEdit::keyPressEvent(QKeyEvent* event) {
  const bool is_enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (is_enter || (event->modifiers() & Qt::AltModifier) != 0) {
    event->ignore();
    return;
  }
  NameEdit::keyPressEvent(event);
}

}  // namespace tavrel
