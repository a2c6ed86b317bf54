#ifndef TAVREL_WORK_FORMS_PROGRAM_GRID_H_
#define TAVREL_WORK_FORMS_PROGRAM_GRID_H_

#include <QComboBox>
#include <QTableWidget>

#include "widgets/number_edit.h"
#include "work/program_editor.h"

namespace tavrel {

// The table of a program's steps. The cell in edit is covered by a box for numbers or by the
// list of states. Rows and columns in its signals are those of the editor.
class ProgramGrid : public QTableWidget {
  Q_OBJECT
 public:
  explicit ProgramGrid(QWidget* parent);

  // Copies what differs from what was shown last.
  void UpdateWidgets(const ProgramEditor& editor);

  [[nodiscard]] QSize sizeHint() const override;

 signals:
  void CellClicked(int row, int column);
  void TextTyped(const QString& text);
  void LineChosen(int index);
  void Moved(int rows, int columns);
  void Dropped();

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void MakeHeads();
  void MakeEdits();
  void ShowCell(int row, int column, const ProgramCell& cell);
  void ShowEdit(const CellInEdit& edit);
  void PlaceEdits();
  [[nodiscard]] bool TakeKey(const QKeyEvent& key, bool in_list);

  NumberEdit* txt_edit_ = nullptr;
  QComboBox* cstat_ = nullptr;
  CellInEdit shown_;  // where the edit was shown last
};

}  // namespace tavrel

#endif  // TAVREL_WORK_FORMS_PROGRAM_GRID_H_
