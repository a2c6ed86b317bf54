#ifndef TAVREL_WORK_FORMS_WORK_TABLE_H_
#define TAVREL_WORK_FORMS_WORK_TABLE_H_

#include <QLabel>
#include <QWidget>
#include <array>

#include "base/numbered.h"
#include "widgets/cell_edit.h"
#include "widgets/curve_sample.h"
#include "work/worksheet_values.h"

class QGridLayout;

namespace tavrel {

// The worksheet's table of the 15 inputs. Its widgets are named after the column and the input:
// Actual_3, Prod_3, Color_3, Comments_3.
class WorkTable : public QWidget {
  Q_OBJECT
 public:
  // The width of both columns of texts: 20 characters of the usual kind, or of any where the screen
  // has room for the whole worksheet then.
  [[nodiscard]] static int TextColumn(const QFontMetrics& metrics, int screen_width);

  explicit WorkTable(QWidget* parent);

  void UpdateWidgets(const WorksheetValues& now);

 signals:
  void ProdEdited(int input, const QString& text);
  void CommentsEdited(int input, const QString& text);
  void ColorClicked(int input);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  // The cells of an input.
  struct Cells {
    QLabel* number = nullptr;
    QLabel* actual = nullptr;
    CellEdit* prod = nullptr;
    CurveSampleButton* color = nullptr;
    CellEdit* comments = nullptr;
  };

  void MakeHeads(QGridLayout& grid);
  void MakeRow(QGridLayout& grid, int input);
  [[nodiscard]] CellEdit* MakeEdit(const char* column, const char* spoken, int input);
  void ShowRow(int input, const WorksheetRow& row);

  Numbered<QLabel*, 0, 4> heads_;
  ByInput<Cells> rows_{};
};

}  // namespace tavrel

#endif  // TAVREL_WORK_FORMS_WORK_TABLE_H_
