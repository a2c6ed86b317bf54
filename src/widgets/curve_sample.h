#ifndef TAVREL_WIDGETS_CURVE_SAMPLE_H_
#define TAVREL_WIDGETS_CURVE_SAMPLE_H_

#include <QAbstractButton>

class QPainter;

namespace tavrel {

// Draws a line of the colour of `code` from X 4 to 14 of the 18 units of `place`'s width, on
// paper; for a code without a curve the paper stays empty.
void DrawCurveSample(QPainter& painter, const QRectF& place, int code);

// The colour field of an input: the sample of its curve, on a button that leads to the choice.
class CurveSampleButton : public QAbstractButton {
  Q_OBJECT
 public:
  explicit CurveSampleButton(QWidget* parent);

  void SetCode(int code);
  [[nodiscard]] int Code() const { return code_; }

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  int code_ = -1;  // none is shown yet
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_CURVE_SAMPLE_H_
