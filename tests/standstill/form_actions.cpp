#include "tests/standstill/form_actions.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QAbstractSpinBox>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QTest>
#include <map>

namespace tavrel {
namespace {

using Action = std::function<void(QWidget& widget)>;

std::string KindOf(const QObject& object) {
  QString name = object.objectName();
  while (!name.isEmpty() && name.back().isDigit()) {
    name.chop(1);
  }
  return object.metaObject()->className() + (" " + name.toStdString());
}

std::string NameOf(const QObject& object) {
  const QString name = object.objectName();
  return name.isEmpty() ? object.metaObject()->className() : name.toStdString();
}

void Drag(QWidget& widget, QPoint from, QPoint to) {
  QTest::mousePress(&widget, Qt::LeftButton, {}, from);
  QTest::mouseMove(&widget, to);
  QTest::mouseRelease(&widget, Qt::LeftButton, {}, to);
}

void DragAcross(QWidget& widget) {
  Drag(widget, {2, 2}, {widget.width() - 3, widget.height() - 3});
}

void Type(QWidget& widget, const char* text) {
  widget.setFocus();
  QTest::keyClicks(&widget, text);
  QTest::keyClick(&widget, Qt::Key_Return);
}

// A cell is clicked twice: the second opens it where it can be edited.
void ClickCell(QWidget& widget, bool is_last) {
  auto& view = dynamic_cast<QAbstractItemView&>(widget);
  if (view.model() == nullptr || view.model()->rowCount() == 0) {
    return;
  }
  const int row = is_last ? view.model()->rowCount() - 1 : 0;
  const QModelIndex cell = view.model()->index(row, view.model()->columnCount() - 1);
  view.scrollTo(cell);
  const QPoint place = view.visualRect(cell).center();
  QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, place);
}

void Choose(QWidget& widget, int place) {
  auto& list = dynamic_cast<QComboBox&>(widget);
  list.setCurrentIndex(place);
  emit list.activated(place);
}

// The collection of what is found, in its order.
class Found {
 public:
  explicit Found(const QWidget& form) : objects_(form.findChildren<QObject*>()) {}

  // Kinds whose names differ in a number only share a place.
  void Add(const QObject& object, const std::string& what, const Action& action) {
    const auto place = objects_.indexOf(const_cast<QObject*>(&object));
    AddAs(KindOf(object) + what, {NameOf(object) + what, At(place, action)});
  }
  void AddKey(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    const std::string name = QKeySequence(modifiers | key).toString().toStdString();
    AddAs("key " + name, {"key " + name, [key, modifiers](QWidget& form) {
                            QWidget* focus = QApplication::focusWidget();
                            QTest::keyClick(focus != nullptr ? focus : &form, key, modifiers);
                          }});
  }
  void AddAs(const std::string& kind, const FormAction& action) {
    if (by_kind_.find(kind) == by_kind_.end()) {
      kinds_.push_back(kind);
    }
    by_kind_[kind].push_back(action);
  }
  [[nodiscard]] std::vector<FormAction> FirstsAndLasts() const {
    std::vector<FormAction> all;
    for (const std::string& kind : kinds_) {
      const auto& actions = by_kind_.at(kind);
      all.push_back(actions.front());
      if (actions.size() > 1) {
        all.push_back(actions.back());
      }
    }
    return all;
  }

 private:
  // Forms of one kind have the same widgets in the same order.
  static std::function<void(QWidget&)> At(qsizetype place, const Action& action) {
    return [place, action](QWidget& form) {
      auto* object = form.findChildren<QObject*>().value(place);
      if (auto* entry = qobject_cast<QAction*>(object)) {
        entry->trigger();
      } else if (auto* widget = qobject_cast<QWidget*>(object)) {
        action(*widget);
      }
    };
  }

  QList<QObject*> objects_;
  std::vector<std::string> kinds_;
  std::map<std::string, std::vector<FormAction>> by_kind_;
};

void AddList(Found& found, const QComboBox& list) {
  for (const int place : {list.count() - 1, list.count() / 2, 0}) {
    if (place < 0) {
      return;
    }
    found.Add(list, " entry " + std::to_string(place),
              [place](QWidget& widget) { Choose(widget, place); });
  }
}

void AddTable(Found& found, const QAbstractItemView& view) {
  found.Add(view, " first cell", [](QWidget& widget) { ClickCell(widget, false); });
  found.Add(view, " last cell", [](QWidget& widget) { ClickCell(widget, true); });
  for (const Qt::Key key :
       {Qt::Key_Return, Qt::Key_End, Qt::Key_PageDown, Qt::Key_M, Qt::Key_Space, Qt::Key_Delete}) {
    found.Add(view, " key " + QKeySequence(key).toString().toStdString(), [key](QWidget& widget) {
      widget.setFocus();
      QTest::keyClick(&widget, key);
    });
  }
  found.Add(view, " all", [](QWidget& widget) {
    widget.setFocus();
    QTest::keyClick(&widget, Qt::Key_A, Qt::ControlModifier);
  });
}

void AddHeader(Found& found, const QHeaderView& header) {
  for (const int section : {0, header.count() - 1}) {
    found.Add(header, " section " + std::to_string(section), [section](QWidget& widget) {
      const auto& head = dynamic_cast<QHeaderView&>(widget);
      const QPoint place(head.sectionViewportPosition(section) + 4, 4);
      QTest::mouseClick(head.viewport(), Qt::LeftButton, {}, place);
    });
  }
}

// Parts that the toolkit makes for its own controls.
bool IsInner(const QWidget& widget) {
  const QWidget* parent = widget.parentWidget();
  return widget.objectName().startsWith("qt_") ||
         qobject_cast<const QComboBox*>(parent) != nullptr ||
         qobject_cast<const QAbstractSpinBox*>(parent) != nullptr ||
         qobject_cast<const QMenu*>(&widget) != nullptr ||
         QString(widget.metaObject()->className()).startsWith("QTableCornerButton") ||
         QString(widget.metaObject()->className()).startsWith("QComboBoxPrivate");
}

// A picture, a cell of the program's own: a click, and a drag across it.
void AddPlace(Found& found, const QWidget& place) {
  found.Add(place, " click", [](QWidget& widget) {
    QTest::mouseClick(&widget, Qt::LeftButton, {}, widget.rect().center());
  });
  found.Add(place, " drag", DragAcross);
}

void AddWidget(Found& found, const QWidget& widget) {
  if (qobject_cast<const QAbstractButton*>(&widget) != nullptr) {
    found.Add(widget, " click", [](QWidget& it) { QTest::mouseClick(&it, Qt::LeftButton); });
  } else if (const auto* list = qobject_cast<const QComboBox*>(&widget)) {
    AddList(found, *list);
  } else if (const auto* header = qobject_cast<const QHeaderView*>(&widget)) {
    AddHeader(found, *header);
  } else if (const auto* view = qobject_cast<const QAbstractItemView*>(&widget)) {
    AddTable(found, *view);
  } else if (qobject_cast<const QLineEdit*>(&widget) != nullptr ||
             qobject_cast<const QPlainTextEdit*>(&widget) != nullptr) {
    found.Add(widget, " text", [](QWidget& it) { Type(it, "np21?7"); });
  } else if (qobject_cast<const QAbstractSlider*>(&widget) != nullptr) {
    found.Add(widget, " end", [](QWidget& it) {
      auto& slider = dynamic_cast<QAbstractSlider&>(it);
      slider.setValue(slider.maximum());
    });
  } else if (qobject_cast<const QLabel*>(&widget) == nullptr && !widget.objectName().isEmpty() &&
             qobject_cast<const QMenuBar*>(&widget) == nullptr &&
             qobject_cast<const QScrollArea*>(&widget) == nullptr) {
    AddPlace(found, widget);
  }
}

void AddKeys(Found& found) {
  const std::vector<Qt::Key> keys = {Qt::Key_Return,   Qt::Key_Space,  Qt::Key_Tab, Qt::Key_Backtab,
                                     Qt::Key_Left,     Qt::Key_Right,  Qt::Key_Up,  Qt::Key_Down,
                                     Qt::Key_PageDown, Qt::Key_PageUp, Qt::Key_End, Qt::Key_Home,
                                     Qt::Key_Delete,   Qt::Key_Insert};
  for (const Qt::Key key : keys) {
    found.AddKey(key, {});
    found.AddKey(key, Qt::ControlModifier);
  }
  for (int key = Qt::Key_A; key <= Qt::Key_Z; ++key) {
    found.AddKey(static_cast<Qt::Key>(key), {});
    found.AddKey(static_cast<Qt::Key>(key), Qt::ControlModifier);
  }
  for (int key = Qt::Key_0; key <= Qt::Key_9; ++key) {
    found.AddKey(static_cast<Qt::Key>(key), {});
  }
  for (int key = Qt::Key_F1; key <= Qt::Key_F12; ++key) {
    found.AddKey(static_cast<Qt::Key>(key), {});
  }
  found.AddKey(Qt::Key_Escape, {});
}

}  // namespace

std::vector<FormAction> ActionsOf(const QWidget& form) {
  Found found(form);
  for (const auto* object : form.findChildren<QObject*>()) {
    const auto* action = qobject_cast<const QAction*>(object);
    if (action != nullptr && action->isEnabled() && action->menu() == nullptr &&
        !action->isSeparator() && !action->objectName().isEmpty()) {
      found.Add(*action, " entry", {});
    }
    const auto* widget = qobject_cast<const QWidget*>(object);
    if (widget != nullptr && widget->window() == &form && widget->isVisible() &&
        widget->isEnabled() && !IsInner(*widget)) {
      AddWidget(found, *widget);
    }
  }
  found.AddAs("close", {"close box", [](QWidget& it) { it.close(); }});
  AddKeys(found);
  return found.FirstsAndLasts();
}

}  // namespace tavrel
