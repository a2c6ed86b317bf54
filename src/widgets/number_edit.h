#ifndef TAVREL_WIDGETS_NUMBER_EDIT_H_
#define TAVREL_WIDGETS_NUMBER_EDIT_H_

#include "widgets/selecting_edit.h"

namespace tavrel {

// A box for a number: it takes digits, one sign and one decimal mark, a comma or a point. All is
// selected when the keyboard comes to it, so that typing replaces what stands there, a "?" too.
class NumberEdit : public SelectingEdit {
  Q_OBJECT
 public:
  NumberEdit(const QString& name, QWidget* parent);

 signals:
  // The keyboard goes to another control of the form.
  void Left();

 protected:
  void focusOutEvent(QFocusEvent* event) override;
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_NUMBER_EDIT_H_
