#include "widgets/spoken.h"

#include <QAccessibleWidget>
#include <QComboBox>
#include <QLabel>
#include <QTableWidget>

namespace tavrel {
namespace {

constexpr const char* kRole = "spokenRole";
constexpr const char* kHead = "spokenHead";
constexpr const char* kUnit = "spokenUnit";

class SpokenReading : public QAccessibleWidget {
 public:
  explicit SpokenReading(QLabel* label)
      : QAccessibleWidget(label, QAccessible::StaticText), label_(label) {}

  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    if (kind != QAccessible::Name) {
      return QAccessibleWidget::text(kind);
    }
    const QString head = label_->property(kHead).toString();
    const QString unit = label_->property(kUnit).toString();
    return (head + ": " + label_->text() + " " + unit).simplified();
  }

 private:
  QLabel* label_;
};

// Asked by the toolkit for each class that an object is of, before its own interfaces.
QAccessibleInterface* MakeInterface(const QString& /*class_name*/, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  if (widget == nullptr) {
    return nullptr;
  }
  auto* label = qobject_cast<QLabel*>(widget);
  if (label != nullptr && label->property(kHead).isValid()) {
    return new SpokenReading(label);
  }
  const QVariant role = widget->property(kRole);
  return role.isValid()
             ? new QAccessibleWidget(widget, static_cast<QAccessible::Role>(role.toInt()))
             : nullptr;
}

// What the toolkit may have made already, when the widget was given its name or its text.
void ForgetInterface(QWidget& widget) {
  if (QAccessible::isActive()) {
    QAccessibleInterface* made = QAccessible::queryAccessibleInterface(&widget);
    QAccessible::deleteAccessibleInterface(QAccessible::uniqueId(made));
  }
}

void InstallInterfaces() {
  static const bool is_installed = [] {
    QAccessible::installFactory(MakeInterface);
    return true;
  }();
  static_cast<void>(is_installed);
}

}  // namespace

void SpeakAs(QWidget& widget, QAccessible::Role role) {
  InstallInterfaces();
  ForgetInterface(widget);
  widget.setProperty(kRole, static_cast<int>(role));
}

void SpeakReading(QLabel& label, const QString& head, const QString& unit) {
  InstallInterfaces();
  if (!label.property(kHead).isValid()) {
    ForgetInterface(label);
  }
  label.setProperty(kHead, head);
  label.setProperty(kUnit, unit);
}

void NameList(QComboBox& list, const QString& name) {
  list.setAccessibleName(name);
  auto* label = new QLabel(name, list.parentWidget());
  label->hide();
  label->setBuddy(&list);
}

QString SpokenCell(const QModelIndex& cell) {
  const QAbstractItemModel& model = *cell.model();
  const QString head = model.headerData(cell.column(), Qt::Horizontal).toString().simplified();
  const QString first = cell.siblingAtColumn(0).data().toString().simplified();
  const QString row = first.isEmpty() ? QString::number(cell.row() + 1) : first;
  if (cell.column() == 0) {
    return head + " " + row;
  }
  return row + ", " + head + ": " + cell.data().toString().simplified();
}

QVariant SpokenItem::data(int role) const {
  const QTableWidget* table = tableWidget();
  if (role != Qt::AccessibleTextRole || table == nullptr) {
    return QTableWidgetItem::data(role);
  }
  return SpokenCell(table->model()->index(row(), column()));
}

}  // namespace tavrel
