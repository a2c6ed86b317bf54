#ifndef TAVREL_WORK_FORMS_TAV_COLOR_H_
#define TAVREL_WORK_FORMS_TAV_COLOR_H_

#include <QWidget>

#include "widgets/modal_form.h"
#include "work/colour_choice.h"

namespace tavrel {

// PicColor: a line sample in each row and its name beside it. A click or the Enter key chooses
// the row under the pointer or the keyboard.
class ColourPicture : public QWidget {
  Q_OBJECT
 public:
  // `row` 0..14 has the keyboard at first.
  ColourPicture(int row, QWidget* parent);

  [[nodiscard]] QSize sizeHint() const override;

 signals:
  // At `y` of the picture's scale, 0..15.
  void Clicked(double y);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  [[nodiscard]] double Scaled(qreal height) const;
  [[nodiscard]] QRectF RowRect(int row) const;
  void DrawRow(QPainter& painter, int row) const;
  void MoveTo(int row);
  void SpeakRow();

  int row_ = 0;
};

// TavColor, the form of the choice of a colour.
class TavColor : public ModalForm {
  Q_OBJECT
 public:
  // `choice` outlives the form and is open when Run is called.
  explicit TavColor(ColourChoice& choice);

 protected:
  void UpdateWidgets() override {}
  void showEvent(QShowEvent* event) override;

 private:
  ColourChoice& choice_;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_FORMS_TAV_COLOR_H_
