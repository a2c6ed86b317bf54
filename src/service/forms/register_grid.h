#ifndef TAVREL_SERVICE_FORMS_REGISTER_GRID_H_
#define TAVREL_SERVICE_FORMS_REGISTER_GRID_H_

#include <QAbstractTableModel>
#include <QTableView>
#include <array>

#include "base/numbered.h"
#include "service/register_sheet.h"
#include "widgets/cell_edit.h"

namespace tavrel {

// The cells of a sheet for the toolkit. They are the sheet's own: nothing is copied.
class RegisterCells : public QAbstractTableModel {
  Q_OBJECT
 public:
  // `sheet` outlives this; `view` lends its palette and font.
  RegisterCells(const RegisterSheet& sheet, QWidget& view);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;

  // The cells say something new.
  void Renew();

 private:
  [[nodiscard]] QVariant GroundOf(const QModelIndex& index) const;

  const RegisterSheet& sheet_;
  QWidget& view_;
};

// The grid of a sheet: a column of addresses, in a colour that changes with each sixteen, and the
// values behind it. The arrow keys move the current cell, which has a frame and is told to a screen
// reader; a click, Enter or F2 asks for an edit of it. The edit is a text box over the cell.
class RegisterGrid : public QTableView {
  Q_OBJECT
 public:
  // `sheet` outlives the grid.
  RegisterGrid(const RegisterSheet& sheet, QWidget* parent);

  // Shows what has changed in the sheet since.
  void Renew();

  // All of the text that is edited, for the user to correct.
  void SelectEdit();

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 signals:
  // An edit of the cell is wanted; RegisterSheet::kHeadRow for the head of the column.
  void Opened(int row, int column);
  // Enter in the edit box.
  void Committed(const QString& text);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void scrollContentsBy(int right, int down) override;
  void resizeEvent(QResizeEvent* event) override;

 private:
  void Arrange();
  void BeginEdit();
  void EndEdit();
  void PlaceEdit();
  [[nodiscard]] int WidthOf(int column) const;
  [[nodiscard]] int HeightOf(int rows) const;

  const RegisterSheet& sheet_;
  RegisterCells* cells_;
  CellEdit* txt_edit_;
  Numbered<int, 0, RegisterSheet::kColumns - 1> widths_;
  int version_ = 0;
  int edit_ = 0;  // the number of the edit that is shown; 0: none
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_FORMS_REGISTER_GRID_H_
