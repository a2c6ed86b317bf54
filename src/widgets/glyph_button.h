#ifndef TAVREL_WIDGETS_GLYPH_BUTTON_H_
#define TAVREL_WIDGETS_GLYPH_BUTTON_H_

#include <QAbstractButton>

#include "widgets/glyphs.h"

namespace tavrel {

// A flat button: a glyph, a text, or both, in a thin frame that is stronger under the pointer.
// Enter presses it as the space bar does.
class GlyphButton : public QAbstractButton {
  Q_OBJECT
 public:
  // `glyph` may be null.
  GlyphButton(Glyph glyph, QWidget* parent);

  // Without a frame while nobody points at it: for a button that is a cell of a table.
  void SetFlat(bool flat) { flat_ = flat; }

  // The size of a button in a row of tools, by its glyph or text.
  void SetToolSize();

  // The down picture, filled, while what the button stands for is the case; a click does not
  // change it by itself. A reader of the screen hears of it as of a button that is pressed.
  void SetLatched(bool latched);
  [[nodiscard]] bool IsLatched() const { return latched_; }

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  // Only what the button stands for presses it.
  void nextCheckState() override {}
  void keyPressEvent(QKeyEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void DrawFrame(QPainter& painter) const;
  [[nodiscard]] QColor InkNow() const;
  [[nodiscard]] int GlyphSide() const;

  Glyph glyph_;
  bool flat_ = false;
  bool latched_ = false;
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_GLYPH_BUTTON_H_
