#ifndef TAVREL_WIDGETS_SPOKEN_H_
#define TAVREL_WIDGETS_SPOKEN_H_

#include <QAccessible>
#include <QString>
#include <QTableWidgetItem>

class QComboBox;
class QLabel;
class QModelIndex;
class QWidget;

// What a reader of the screen is told of controls that the toolkit says nothing, or too little, of.
namespace tavrel {

// A widget that paints itself is an empty place to a reader, which passes it over; with a role of
// its own it is read with its accessible name. Called before the widget is shown.
void SpeakAs(QWidget& widget, QAccessible::Role role);

// A label with a value is read as "`head`: value `unit`", whatever its text is at that time. It has
// no accessible name of its own. Called before the label is shown.
void SpeakReading(QLabel& label, const QString& head, const QString& unit = {});

// The name of a list, which a reader takes from its label only, for a list that has none in sight.
void NameList(QComboBox& list, const QString& name);

// "row, column: value" of a cell: its row by the text of its first column, or by its number if that
// is empty, its column by its head. The first column is read as it is, behind its head.
[[nodiscard]] QString SpokenCell(const QModelIndex& cell);

// A cell that is read as SpokenCell tells.
class SpokenItem : public QTableWidgetItem {
 public:
  using QTableWidgetItem::QTableWidgetItem;

  [[nodiscard]] QVariant data(int role) const override;
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_SPOKEN_H_
