#ifndef TAVREL_WIDGETS_FRAMED_CELLS_H_
#define TAVREL_WIDGETS_FRAMED_CELLS_H_

#include <QStyledItemDelegate>

namespace tavrel {

// Draws the cells of a grid. The current cell has a frame, which is fainter while the keyboard is
// elsewhere; a fill would hide the cell's own colour.
class FramedCells : public QStyledItemDelegate {
  Q_OBJECT
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override;
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_FRAMED_CELLS_H_
