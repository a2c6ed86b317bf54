#ifndef TAVREL_WIDGETS_NAME_EDIT_H_
#define TAVREL_WIDGETS_NAME_EDIT_H_

#include <QLineEdit>
#include <string>

namespace tavrel {

// A text of a table that can be edited in its place: it looks like a cell until the pointer or
// the keyboard comes to it.
class NameEdit : public QLineEdit {
  Q_OBJECT
 public:
  explicit NameEdit(QWidget* parent);

  // Shows `utf8`. A text that is there already is not set again, which keeps the cursor of a
  // user who types.
  void ShowText(const std::string& utf8);

 protected:
  // The frame that shows where the pointer or the keyboard is.
  void PaintFrame();
  void paintEvent(QPaintEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_NAME_EDIT_H_
