#ifndef TAVREL_MAIN_FORMS_SHEET_ROW_VIEW_H_
#define TAVREL_MAIN_FORMS_SHEET_ROW_VIEW_H_

#include <QLabel>
#include <QWidget>
#include <string_view>
#include <utility>
#include <vector>

#include "base/language.h"
#include "main/forms/sheet_columns.h"
#include "main/sheet_values.h"
#include "widgets/colour_cell.h"
#include "widgets/glyph_button.h"
#include "widgets/guarded_edit.h"

namespace tavrel {

// The widgets of one row of the sheet: the frame Sheet and its cells, each named by its control
// and the row ("tx_Des_3").
class SheetRowView : public QWidget {
  Q_OBJECT
 public:
  SheetRowView(int row, const SheetColumns& columns, QWidget* parent);

  // Copies what differs from what was shown last.
  void UpdateWidgets(const SheetRow& now);
  void ShowTips(Language language);

 signals:
  void NumberClicked(int row);
  void NameEdited(int row, const QString& text);
  void WorkClicked(int row);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct StatusCell {
    ColourCell* Shape = nullptr;
    QLabel* Word = nullptr;
    QString Tip{};  // while nothing is wrong
  };

  template <typename Widget>
  Widget* Named(Widget* widget, std::string_view control);
  QLabel* MakeValue(std::string_view control, const QFont& font, Qt::Alignment alignment,
                    const SheetColumns& columns);
  StatusCell MakeStatus(std::string_view shape, std::string_view word, const SheetColumns& columns);
  void MakeNumber(const SheetColumns& columns);
  void MakeName(const SheetColumns& columns);
  void MakeButton(const SheetColumns& columns);
  void ShowNumber(const SheetRow& now);
  void ShowNumberTip();
  static void ShowTip(const StatusCell& cell, const std::string& note);
  void ShowLabel(QLabel* label, const char* head, std::string& shown, const std::string& now);
  [[nodiscard]] QString Called(const char* head) const;

  int row_;
  SheetRow shown_;
  Language language_ = Language::kEnglish;
  std::vector<std::pair<std::string_view, QWidget*>> controls_;

  QWidget* img_tav_sel_ = nullptr;
  ColourCell* sh_tav_no_ = nullptr;
  GlyphButton* lb_tav_no_ = nullptr;
  QString tav_no_tip_;  // what the cell is for
  GuardedEdit* tx_des_ = nullptr;
  QLabel* lb_ref_ = nullptr;
  QLabel* lb_ctrl_ = nullptr;
  StatusCell cstat_;
  QLabel* lb_rec_ = nullptr;
  StatusCell rstat_;
  QLabel* lb_file_ = nullptr;
  GlyphButton* cmd_work_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_FORMS_SHEET_ROW_VIEW_H_
