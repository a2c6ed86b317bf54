#ifndef TAVREL_WIDGETS_UNIT_LABEL_H_
#define TAVREL_WIDGETS_UNIT_LABEL_H_

#include "widgets/muted_label.h"

namespace tavrel {

// What stands behind a value: its unit and, behind three blanks or more, what it is, such as
// "min   recorded". The words of several of them stand exactly below each other, however wide
// their units are.
class UnitLabel : public MutedLabel {
  Q_OBJECT
 public:
  UnitLabel(const QString& text, QWidget* parent) : MutedLabel(text, parent) {}

  // The two parts of the text; the words are empty if it has the unit alone.
  [[nodiscard]] QString Unit() const;
  [[nodiscard]] QString Words() const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  // Where the words begin.
  [[nodiscard]] int WordsPlace() const;
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_UNIT_LABEL_H_
