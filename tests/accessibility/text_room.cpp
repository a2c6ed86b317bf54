#include "tests/accessibility/text_room.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpression>
#include <QStyleOptionButton>
#include <QStyleOptionComboBox>
#include <QTableView>
#include <map>

#include "widgets/glyph_button.h"

namespace tavrel {
namespace {

class TextRoom {
 public:
  explicit TextRoom(QWidget& form) : form_(form) {}

  [[nodiscard]] QStringList Cut() {
    for (const auto* widget : form_.findChildren<QWidget*>()) {
      if (widget->isVisible() && widget->window() == &form_) {
        Look(*widget);
      }
    }
    return cut_;
  }

 private:
  void Look(const QWidget& widget) {
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
      LookAtLabel(*label);
    } else if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
      LookAtButton(*button);
    } else if (const auto* list = qobject_cast<const QComboBox*>(&widget)) {
      LookAtList(*list);
    } else if (const auto* frame = qobject_cast<const QGroupBox*>(&widget)) {
      Need(widget, frame->title(), frame->minimumSizeHint().width(), frame->width());
    } else if (const auto* heads = qobject_cast<const QHeaderView*>(&widget)) {
      LookAtHeads(*heads);
    } else if (const auto* table = qobject_cast<const QTableView*>(&widget)) {
      LookAtCells(*table);
    } else if (const auto* edit = qobject_cast<const QLineEdit*>(&widget)) {
      LookAtEdit(*edit);
    }
  }

  void Need(const QWidget& widget, const QString& text, int wanted, int room) {
    if (wanted > room && !text.isEmpty()) {
      cut_ << QString("%1 %2 \"%3\" lacks %4 of %5 points")
                  .arg(widget.metaObject()->className(), widget.objectName(), text)
                  .arg(wanted - room)
                  .arg(wanted);
    }
  }

  // All that surrounds the widget leaves it in sight, but for what scrolls.
  void NeedSight(const QWidget& widget, const QString& text) {
    for (const QWidget* around = widget.parentWidget(); around != nullptr && around != &form_;
         around = around->parentWidget()) {
      if (qobject_cast<const QAbstractScrollArea*>(around) != nullptr) {
        return;
      }
    }
    const QRect seen = widget.visibleRegion().boundingRect();
    Need(widget, text, widget.width(), seen.width());
    Need(widget, text, widget.height(), seen.height());
  }

  void LookAtLabel(const QLabel& label) {
    if (label.text().isEmpty()) {
      return;
    }
    const QSize wanted = label.sizeHint();
    if (label.wordWrap()) {
      Need(label, label.text(), label.heightForWidth(label.width()), label.height());
    } else {
      Need(label, label.text(), wanted.width(), label.width());
      Need(label, label.text(), wanted.height(), label.height());
    }
    NeedSight(label, label.text());
  }

  void LookAtButton(const QAbstractButton& button) {
    const QString text = button.text().remove('&');
    if (text.isEmpty()) {
      return;
    }
    const QFontMetrics metrics = button.fontMetrics();
    Need(button, text, metrics.size(Qt::TextShowMnemonic, button.text()).width(),
         RoomOf(button).width());
    Need(button, text, metrics.height(), RoomOf(button).height());
    NeedSight(button, text);
  }

  static QRect RoomOf(const QAbstractButton& button) {
    QStyleOptionButton option;
    option.initFrom(&button);
    if (qobject_cast<const QCheckBox*>(&button) != nullptr) {
      return button.style()->subElementRect(QStyle::SE_CheckBoxContents, &option, &button);
    }
    if (qobject_cast<const QRadioButton*>(&button) != nullptr) {
      return button.style()->subElementRect(QStyle::SE_RadioButtonContents, &option, &button);
    }
    if (qobject_cast<const QPushButton*>(&button) != nullptr) {
      const int frame = button.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &button);
      return button.rect().adjusted(2 * frame, frame, -2 * frame, -frame);
    }
    return button.rect();
  }

  void LookAtList(const QComboBox& list) {
    QStyleOptionComboBox option;
    option.initFrom(&list);
    option.editable = list.isEditable();
    const QRect room = list.style()->subControlRect(QStyle::CC_ComboBox, &option,
                                                    QStyle::SC_ComboBoxEditField, &list);
    for (int item = 0; item < list.count(); ++item) {
      Need(list, list.itemText(item), list.fontMetrics().horizontalAdvance(list.itemText(item)),
           room.width());
    }
    NeedSight(list, list.currentText());
  }

  void LookAtHeads(const QHeaderView& heads) {
    for (int place = 0; place < heads.count(); ++place) {
      const QString text =
          heads.model()->headerData(place, heads.orientation(), Qt::DisplayRole).toString();
      const QSize wanted = heads.fontMetrics().size(0, text);
      const bool lies = heads.orientation() == Qt::Horizontal;
      if (!heads.isSectionHidden(place)) {
        Need(heads, text, wanted.width(), lies ? heads.sectionSize(place) : heads.width());
        Need(heads, text, wanted.height(), lies ? heads.height() : heads.sectionSize(place));
      }
    }
  }

  void LookAtCells(const QTableView& table) {
    const QAbstractItemModel& model = *table.model();
    for (int row = 0; row < model.rowCount(); ++row) {
      for (int column = 0; column < model.columnCount(); ++column) {
        const QModelIndex cell = model.index(row, column);
        const QString text = cell.data(Qt::DisplayRole).toString();
        const bool is_shown = !table.isColumnHidden(column) && !table.isRowHidden(row);
        const bool has_tip = !cell.data(Qt::ToolTipRole).toString().isEmpty();
        if (is_shown && !has_tip && table.indexWidget(cell) == nullptr) {
          const QFont font = cell.data(Qt::FontRole).value<QFont>().resolve(table.font());
          Need(table, text, QFontMetrics(font).horizontalAdvance(text), table.columnWidth(column));
          Need(table, text, QFontMetrics(font).height(), table.rowHeight(row));
        }
      }
    }
  }

  // What a user types scrolls; a value that the program shows is to be seen.
  void LookAtEdit(const QLineEdit& edit) {
    const QRect room = edit.contentsRect().marginsRemoved(edit.textMargins());
    Need(edit, edit.displayText(), edit.fontMetrics().height(), room.height());
    if (kNumber.match(edit.displayText()).hasMatch()) {
      Need(edit, edit.displayText(), edit.fontMetrics().horizontalAdvance(edit.displayText()),
           room.width());
    }
  }

 public:
  static inline const QRegularExpression kNumber{R"(^\s*-?\d+([.,]\d+)?\s*$)"};

 private:
  QWidget& form_;
  QStringList cut_;
};

QString LongForm(const QString& number) {
  const QString text = number.trimmed();
  const qsizetype point = text.indexOf(QRegularExpression("[.,]"));
  return "-8888" + (point < 0 ? QString() : "." + QString(text.size() - point - 1, '8'));
}

void LayOut() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
}

}  // namespace

QStringList CutTexts(QWidget& form) {
  LayOut();
  return TextRoom(form).Cut();
}

QStringList CutTextsOfLongNumbers(QWidget& form) {
  std::map<QLabel*, QString> own;
  for (auto* label : form.findChildren<QLabel*>()) {
    const bool is_shown = label->isVisible() && label->window() == &form;
    if (is_shown && TextRoom::kNumber.match(label->text()).hasMatch()) {
      own[label] = label->text();
      label->setText(LongForm(label->text()));
    }
  }
  const QStringList cut = CutTexts(form);
  for (const auto& [label, text] : own) {
    label->setText(text);
  }
  LayOut();
  return cut;
}

}  // namespace tavrel
