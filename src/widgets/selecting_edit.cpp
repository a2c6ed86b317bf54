#include "widgets/selecting_edit.h"

#include <QFocusEvent>

namespace tavrel {

void SelectingEdit::focusInEvent(QFocusEvent* event) {
  QLineEdit::focusInEvent(event);
  const bool stayed =
      event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason;
  if (!stayed) {
    selectAll();
    came_by_click_ = event->reason() == Qt::MouseFocusReason;
  }
}

// The press has put the cursor somewhere and so undone the selection; what the user has marked
// by dragging stays.
void SelectingEdit::mouseReleaseEvent(QMouseEvent* event) {
  QLineEdit::mouseReleaseEvent(event);
  if (came_by_click_ && !hasSelectedText()) {
    selectAll();
  }
  came_by_click_ = false;
}

}  // namespace tavrel
