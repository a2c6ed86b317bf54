#ifndef TAVREL_WIDGETS_SELECTING_EDIT_H_
#define TAVREL_WIDGETS_SELECTING_EDIT_H_

#include <QLineEdit>

#include "widgets/select_all.h"

namespace tavrel {

// A free text of which all is selected when the keyboard or a click comes to it. Keys with Alt are
// the form's: a letter that no button has would replace the text.
class SelectingEdit : public QLineEdit {
  Q_OBJECT
 public:
  using QLineEdit::QLineEdit;

 protected:
  void focusInEvent(QFocusEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  SelectAll select_all_;
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_SELECTING_EDIT_H_
