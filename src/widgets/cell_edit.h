#ifndef TAVREL_WIDGETS_CELL_EDIT_H_
#define TAVREL_WIDGETS_CELL_EDIT_H_

#include "widgets/name_edit.h"
#include "widgets/select_all.h"

namespace tavrel {

// A text of the worksheet's table: all of it is selected when the keyboard or a click comes to
// it, and the Enter key and keys with Alt belong to the form.
class CellEdit : public NameEdit {
  Q_OBJECT
 public:
  using NameEdit::NameEdit;

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  SelectAll select_all_;
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_CELL_EDIT_H_
