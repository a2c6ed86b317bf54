#ifndef TAVREL_WIDGETS_COLOUR_CELL_H_
#define TAVREL_WIDGETS_COLOUR_CELL_H_

#include <QWidget>

#include "base/colour.h"
#include "widgets/glyphs.h"

namespace tavrel {

// The ink of words and figures that stand on a status colour. The status colours are light in
// every palette, so the ink is dark in every palette.
inline constexpr QRgb kStatusInk = 0xFF1C1C1C;

// The coloured shape of a status, a rounded field with a fine edge. The word on it is a widget
// of its own inside.
class ColourCell : public QWidget {
  Q_OBJECT
 public:
  explicit ColourCell(QWidget* parent);

  void SetColour(Colour colour);
  [[nodiscard]] Colour ShownColour() const { return colour_; }

  // A glyph at the right edge while the colour is kOrange, for those who do not see it.
  void SetAlarmGlyph(Glyph glyph) { alarm_ = glyph; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Colour colour_ = kGrey;
  Glyph alarm_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_COLOUR_CELL_H_
