#ifndef TAVREL_MAIN_FORMS_SHEET_COLUMNS_H_
#define TAVREL_MAIN_FORMS_SHEET_COLUMNS_H_

#include <QFont>
#include <QWidget>

namespace tavrel {

// Fonts and widths of the sheet's columns, measured once, so that heads and all rows stand on
// the same lines. Widths are logical pixels.
struct SheetColumns {
  // `base` is the desktop's font, `room` the width of the screen: where the sheet does not fit,
  // it is set in smaller type with narrow gaps.
  SheetColumns(const QFont& base, int room);

  // Width of a line, at least.
  [[nodiscard]] int LineWidth() const;

  QFont HeadFont;
  QFont ValueFont;   // figures and the apparatus: readable at arm's length
  QFont StatusFont;  // words on a status colour
  int Margin = 0;    // at both ends of a line, and around the sheets
  int Gap = 0;       // inside a group: a value and its status
  int GroupGap = 0;  // between groups
  int Mark = 0;
  int Number = 0;
  int Apparatus = 0;  // at least; the column takes what is left
  int Degrees = 0;
  int Status = 0;
  int Hours = 0;
  int File = 0;
  int Button = 0;
  int RowHeight = 0;
  int StatusHeight = 0;

 private:
  struct Setting;
  void Measure(const QFont& base, const Setting& setting);
};

// One line of the sheet in the order of its columns. A place without a widget stays empty.
struct SheetLine {
  QWidget* Mark = nullptr;
  QWidget* Number = nullptr;
  QWidget* Apparatus = nullptr;
  QWidget* Reference = nullptr;
  QWidget* Controller = nullptr;
  QWidget* ControllerStatus = nullptr;
  QWidget* Recorded = nullptr;
  QWidget* RecordedStatus = nullptr;
  QWidget* File = nullptr;
  QWidget* Button = nullptr;
};

// Gives `owner` a layout with the line's widgets in their columns.
void LayOutLine(QWidget& owner, const SheetColumns& columns, const SheetLine& line);

}  // namespace tavrel

#endif  // TAVREL_MAIN_FORMS_SHEET_COLUMNS_H_
