#ifndef TAVREL_WIDGETS_EDIT_GRID_H_
#define TAVREL_WIDGETS_EDIT_GRID_H_

#include <QTableWidget>
#include <string>

#include "base/colour.h"
#include "widgets/cell_edit.h"

namespace tavrel {

// What a cell of the grid shows.
struct GridCell {
  std::string Text;
  Colour Background{0xFF, 0xFF, 0xFF};  // white is the colour of the sheet, whatever the palette
  std::string Spoken;                   // where it stands and what it says, in words
  std::string Tip;
};

// A grid of small cells that are edited in their places, by mouse or by keyboard alone. The arrow
// keys move the current cell, which has a frame and is told to a screen reader; a click, the space
// bar or F2 asks for the choices of a cell, a character that is typed goes to it at once. Columns
// of text have boxes, which take the keyboard when the current cell comes to them. Enter and Escape
// belong to the form, and the tab key leaves the grid. Rows and columns count from 0.
class EditGrid : public QTableWidget {
  Q_OBJECT
 public:
  EditGrid(const char* name, int rows, int columns, QWidget* parent);

  // Puts a text box into a cell, under that name.
  CellEdit* AddEdit(int row, int column, const QString& name, const QString& spoken);

  // Cheap while nothing has changed.
  void ShowCell(int row, int column, const GridCell& cell);

  // The size at which every cell is in sight. With less the grid scrolls.
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 signals:
  // The choices of a cell are wanted.
  void Opened(int row, int column);
  // A character was typed on a cell; the empty text is the delete key.
  void Typed(int row, int column, const QString& text);
  // A text box has got the keyboard.
  void EditEntered();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void EnterCell(int row, int column);
  void MoveBy(int rows, int columns);
  [[nodiscard]] bool TakeKeyOfEdit(const QKeyEvent& key);
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_EDIT_GRID_H_
