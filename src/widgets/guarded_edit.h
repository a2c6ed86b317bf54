#ifndef TAVREL_WIDGETS_GUARDED_EDIT_H_
#define TAVREL_WIDGETS_GUARDED_EDIT_H_

#include "widgets/name_edit.h"

namespace tavrel {

// A name that no stray key changes: it is only shown until Enter, F2 or a click begins to edit it.
// Then Enter keeps what was typed and goes on to the next control, and so does every other way to
// another control; Escape puts the old text back.
class GuardedEdit : public NameEdit {
  Q_OBJECT
 public:
  explicit GuardedEdit(QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  void Begin();
  void End();
  void PutBack();

  QString before_;  // what stood there when the editing began
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_GUARDED_EDIT_H_
