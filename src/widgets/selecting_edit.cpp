#include "widgets/selecting_edit.h"

namespace tavrel {

void SelectingEdit::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  select_all_.FocusIn(*this, *event);
}

void SelectingEdit::mouseReleaseEvent(QMouseEvent* event) {
  QLineEdit::mouseReleaseEvent(event);
  select_all_.MouseRelease(*this);
}

}  // namespace tavrel
