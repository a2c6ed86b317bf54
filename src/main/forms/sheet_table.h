#ifndef TAVREL_MAIN_FORMS_SHEET_TABLE_H_
#define TAVREL_MAIN_FORMS_SHEET_TABLE_H_

#include <QLabel>
#include <QWidget>
#include <array>

#include "main/forms/sheet_columns.h"
#include "main/forms/sheet_row_view.h"
#include "main/sheet_values.h"
#include "widgets/glyph_button.h"

namespace tavrel {

// The sheet itself: the panel picActual with heads and twelve rows, and below it, set apart, the
// commands picCmds and the row of the viewed file.
class SheetTable : public QWidget {
  Q_OBJECT
 public:
  explicit SheetTable(QWidget* parent = nullptr);

  // Copies what differs from what was shown last.
  void UpdateWidgets(const SheetValues& now);

  // The keyboard goes where it is at each start: to the command that is always there.
  void FocusFirst() { cmd_open_->setFocus(Qt::OtherFocusReason); }

  // What the sheet takes with `rows` of the twelve in use; its width is always the same.
  [[nodiscard]] QSize SizeWith(int rows) const;

 signals:
  void NumberClicked(int row);
  void NameEdited(int row, const QString& text);
  void WorkClicked(int row);
  void OpenClicked();

 private:
  QWidget* MakePanel();
  QWidget* MakeHeads(QWidget* parent);
  QWidget* MakeCommands();
  QWidget* MakeViewed();
  SheetRowView* MakeRow(int row, QWidget* parent);
  void ShowTips(Language language);

  SheetColumns columns_;
  BySlot<SheetRowView*> rows_{};
  QWidget* heads_ = nullptr;
  QWidget* pic_actual_ = nullptr;
  QWidget* pic_cmds_ = nullptr;
  QLabel* no_viewed_ = nullptr;
  GlyphButton* cmd_open_ = nullptr;
  Language tip_language_ = Language::kEnglish;
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_FORMS_SHEET_TABLE_H_
