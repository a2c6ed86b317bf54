#ifndef TAVREL_WIDGETS_SELECT_ALL_H_
#define TAVREL_WIDGETS_SELECT_ALL_H_

#include <QFocusEvent>
#include <QLineEdit>

namespace tavrel {

// Selects all of a text when the keyboard or a click comes to it. The text calls these behind its
// own events.
class SelectAll {
 public:
  void FocusIn(QLineEdit& edit, const QFocusEvent& event) {
    const bool stayed =
        event.reason() == Qt::ActiveWindowFocusReason || event.reason() == Qt::PopupFocusReason;
    if (!stayed) {
      edit.selectAll();
      came_by_click_ = event.reason() == Qt::MouseFocusReason;
    }
  }

  // The press has put the cursor somewhere and so undone the selection; what the user has marked
  // by dragging stays.
  void MouseRelease(QLineEdit& edit) {
    if (came_by_click_ && !edit.hasSelectedText()) {
      edit.selectAll();
    }
    came_by_click_ = false;
  }

 private:
  bool came_by_click_ = false;  // the click that brought the focus is still going on
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_SELECT_ALL_H_
