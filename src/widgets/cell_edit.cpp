#include "widgets/cell_edit.h"

#include <QFocusEvent>
#include <QKeyEvent>

namespace tavrel {

void CellEdit::focusInEvent(QFocusEvent* event) {
  NameEdit::focusInEvent(event);
  const bool stayed =
      event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason;
  if (!stayed) {
    selectAll();
    came_by_click_ = event->reason() == Qt::MouseFocusReason;
  }
}

// The press has put the cursor somewhere and so undone the selection; what the user has marked
// by dragging stays.
void CellEdit::mouseReleaseEvent(QMouseEvent* event) {
  NameEdit::mouseReleaseEvent(event);
  if (came_by_click_ && !hasSelectedText()) {
    selectAll();
  }
  came_by_click_ = false;
}

void CellEdit::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    event->ignore();
    return;
  }
  NameEdit::keyPressEvent(event);
}

}  // namespace tavrel
