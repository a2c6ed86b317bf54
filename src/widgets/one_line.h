#ifndef TAVREL_WIDGETS_ONE_LINE_H_
#define TAVREL_WIDGETS_ONE_LINE_H_

#include <QLabel>

namespace tavrel {

// Paints the text of `label` in one line, which ends in an ellipsis where its room ends.
void PaintOneLine(QLabel& label);

// A label of one line that takes what room there is. Whoever gives it a text gives it a tip that
// says all of it.
template <typename Label>
class OneLine : public Label {
 public:
  explicit OneLine(QWidget* parent) : Label(QString(), parent) {
    this->setTextFormat(Qt::PlainText);
    this->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override { PaintOneLine(*this); }
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_ONE_LINE_H_
