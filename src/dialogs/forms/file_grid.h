#ifndef TAVREL_DIALOGS_FORMS_FILE_GRID_H_
#define TAVREL_DIALOGS_FORMS_FILE_GRID_H_

#include <QAbstractTableModel>
#include <QFrame>
#include <QTableView>
#include <string>
#include <vector>

#include "dialogs/forms/sort_head.h"
#include "dialogs/open_file.h"
#include "files/file_index.h"

namespace tavrel {

// The rows of the index for the view: nothing is copied, however many there are.
class FileRows : public QAbstractTableModel {
  Q_OBJECT
 public:
  // `rows` outlives the model.
  FileRows(const std::vector<IndexRow>& rows, QObject* parent);

  // The rows are other ones now. Until then cells of rows that are gone are empty.
  void TakeRows();

  [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;

 private:
  const std::vector<IndexRow>& rows_;
  int count_ = 0;
};

// FGrid with its heads: names and contents at 0.28 and 0.72 of its width, of which the user
// selects one block of rows.
class FileGrid : public QFrame {
  Q_OBJECT
 public:
  FileGrid(const std::vector<IndexRow>& rows, QWidget* parent);

  // The keyboard goes to the rows.
  void FocusRows() { f_grid_->setFocus(); }

  [[nodiscard]] QSize sizeHint() const override;

  // Copies what differs from what was shown last.
  void UpdateWidgets(const OpenFileValues& now);

 signals:
  void Selected(int current_row, RowBlock block);
  void Opened();
  void FileHeadPressed();
  void ProductHeadPressed();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  [[nodiscard]] int HeightOf(int rows) const;
  [[nodiscard]] int NameWidth() const;
  void MakeView(const std::vector<IndexRow>& rows);
  void ConnectView();
  void ShowSelection(const OpenFileValues& now);
  void TellSelection();

  SortHead* cmd_file_ = nullptr;
  SortHead* cmd_product_ = nullptr;
  QTableView* f_grid_ = nullptr;
  FileRows* model_ = nullptr;
  int revision_ = -1;
  bool is_showing_ = false;  // the selection changes by Show, not by the user
};

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_FORMS_FILE_GRID_H_
