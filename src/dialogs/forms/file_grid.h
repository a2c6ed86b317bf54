#ifndef TAVREL_DIALOGS_FORMS_FILE_GRID_H_
#define TAVREL_DIALOGS_FORMS_FILE_GRID_H_

#include <QAbstractTableModel>
#include <QFrame>
#include <QStringList>
#include <QTableView>
#include <array>
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
  // `rows` outlives the model; a head for each column.
  FileRows(const std::vector<IndexRow>& rows, Language language, QStringList heads,
           QObject* parent);

  // The rows are other ones now. Until then cells of rows that are gone are empty.
  void TakeRows();
  // What was found of them is another one.
  void TakeProofs();

  [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation,
                                    int role) const override;

 private:
  const std::vector<IndexRow>& rows_;
  Language language_;
  QStringList heads_;
  int count_ = 0;
};

inline constexpr std::size_t kDetailColumns = 4;  // verdict, date, duration, instrument

// FGrid with its heads, of which the user selects one block of rows. Names and contents have 0.28
// and 0.72 of the width that verdict, date, duration and instrument leave; where that is too little
// to tell the names apart these give way, the last one first. The verdict has no column before a
// file was verified.
class FileGrid : public QFrame {
  Q_OBJECT
 public:
  FileGrid(const std::vector<IndexRow>& rows, Language language, QWidget* parent);

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
  void DetailHeadPressed(IndexColumn column);

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  [[nodiscard]] int HeightOf(int rows) const;
  [[nodiscard]] int NameWidth() const;
  [[nodiscard]] std::array<int, kDetailColumns> DetailWidths() const;
  void MakeDetailHeads(Language language);
  void PlaceDetails(int left, int right, std::size_t shown);
  void MakeView(const std::vector<IndexRow>& rows, Language language);
  void ShowProofs(const OpenFileValues& now);
  void PlaceColumns();
  [[nodiscard]] std::size_t FirstDetail() const { return has_verdicts_ ? 0 : 1; }
  void ConnectView();
  void ShowSelection(const OpenFileValues& now);
  void TellSelection();

  SortHead* cmd_file_ = nullptr;
  SortHead* cmd_product_ = nullptr;
  std::array<SortHead*, kDetailColumns> detail_heads_{};
  QTableView* f_grid_ = nullptr;
  FileRows* model_ = nullptr;
  int revision_ = -1;
  int proof_revision_ = 0;
  bool has_verdicts_ = false;  // their column is shown
  bool is_showing_ = false;    // the selection changes by Show, not by the user
};

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_FORMS_FILE_GRID_H_
