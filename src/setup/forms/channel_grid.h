#ifndef TAVREL_SETUP_FORMS_CHANNEL_GRID_H_
#define TAVREL_SETUP_FORMS_CHANNEL_GRID_H_

#include <QTableWidget>

#include "setup/channel_values.h"

namespace tavrel {

// The sheet of the channels: a row for each of 0..15, with a rule below row 0. A row is chosen by a
// click, or by the space bar on the row that the arrow keys have gone to; a chosen row has a mark
// beside its number and a ground of its own.
class ChannelGrid : public QTableWidget {
  Q_OBJECT
 public:
  explicit ChannelGrid(QWidget* parent);

  // `values` as they are now. Cheap while nothing has changed.
  void Show(const ByRow<ChannelRow>& rows);

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 signals:
  void RowChosen(int row);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void MakeCells();
  [[nodiscard]] int HeightOf(int rows) const;
  [[nodiscard]] int WidthWith(int padding) const;  // of a column
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_FORMS_CHANNEL_GRID_H_
