#include "widgets/edit_grid.h"

#include <QAccessible>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>

#include "widgets/colour_cell.h"
#include "widgets/form_texts.h"
#include "widgets/framed_cells.h"

namespace tavrel {
namespace {

constexpr int kFewestRows = 3;  // on a small screen
constexpr int kLeastWidth = 300;
constexpr Colour kWhite{0xFF, 0xFF, 0xFF};

bool IsEnter(int key) {
  return key == Qt::Key_Return || key == Qt::Key_Enter;
}

}  // namespace

EditGrid::EditGrid(const char* name, int rows, int columns, QWidget* parent)
    : QTableWidget(rows, columns, parent) {
  setObjectName(name);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setTabKeyNavigation(false);
  setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  setItemDelegate(new FramedCells(this));
  for (QHeaderView* header : {horizontalHeader(), verticalHeader()}) {
    header->setSectionResizeMode(QHeaderView::Fixed);
    header->setHighlightSections(false);
    header->setSectionsClickable(false);
    header->setDefaultAlignment(Qt::AlignCenter);
  }
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 12);
  for (int row = 0; row < rows; ++row) {
    for (int column = 0; column < columns; ++column) {
      auto* cell = new QTableWidgetItem;
      cell->setTextAlignment(Qt::AlignCenter);
      cell->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
      setItem(row, column, cell);
    }
  }
  setCurrentCell(0, 0);
}

CellEdit* EditGrid::AddEdit(int row, int column, const QString& name, const QString& spoken) {
  auto* edit = new CellEdit(this);
  edit->setObjectName(name);
  edit->setAccessibleName(spoken);
  edit->setProperty("row", row);
  edit->setProperty("column", column);
  edit->installEventFilter(this);
  setCellWidget(row, column, edit);
  const auto speak = [this, row, column, spoken](const QString& text) {
    item(row, column)->setData(Qt::AccessibleTextRole, QString("%1: %2").arg(spoken, text));
  };
  connect(edit, &QLineEdit::textChanged, this, speak);
  speak({});
  return edit;
}

void EditGrid::ShowCell(int row, int column, const GridCell& cell) {
  QTableWidgetItem* shown = item(row, column);
  const QString text = QtText(cell.Text);
  const QString spoken = QtText(cell.Spoken);
  const bool is_plain = cell.Background == kWhite;
  const QBrush background =
      is_plain ? QBrush()
               : QBrush(QColor(cell.Background.Red, cell.Background.Green, cell.Background.Blue));
  if (shown->text() == text && shown->background() == background &&
      shown->data(Qt::AccessibleTextRole).toString() == spoken) {
    return;
  }
  shown->setText(text);
  shown->setBackground(background);
  // The coloured cells are light in every palette, so their ink is dark in every palette.
  shown->setForeground(is_plain ? QBrush() : QBrush(QColor::fromRgb(kStatusInk)));
  shown->setToolTip(QtText(cell.Tip));
  shown->setData(Qt::AccessibleTextRole, spoken);
}

QSize EditGrid::sizeHint() const {
  const int frame = 2 * frameWidth();
  return {verticalHeader()->sizeHint().width() + horizontalHeader()->length() + frame,
          horizontalHeader()->sizeHint().height() + verticalHeader()->length() + frame};
}

QSize EditGrid::minimumSizeHint() const {
  const int hidden = std::max(rowCount() - kFewestRows, 0) * verticalHeader()->defaultSectionSize();
  return {std::min(kLeastWidth, sizeHint().width()), sizeHint().height() - hidden};
}

// The keyboard goes where the current cell is.
void EditGrid::EnterCell(int row, int column) {
  setCurrentCell(row, column);
  QWidget* edit = cellWidget(row, column);
  if (edit != nullptr && edit->isEnabled()) {
    edit->setFocus(Qt::OtherFocusReason);
  } else {
    setFocus(Qt::OtherFocusReason);
  }
}

void EditGrid::MoveBy(int rows, int columns) {
  EnterCell(std::clamp(currentRow() + rows, 0, rowCount() - 1),
            std::clamp(currentColumn() + columns, 0, columnCount() - 1));
}

void EditGrid::mousePressEvent(QMouseEvent* event) {
  const QModelIndex cell = indexAt(event->pos());
  if (event->button() != Qt::LeftButton || !cell.isValid()) {
    return;
  }
  EnterCell(cell.row(), cell.column());
  emit Opened(cell.row(), cell.column());
}

void EditGrid::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Up:
      MoveBy(-1, 0);
      return;
    case Qt::Key_Down:
      MoveBy(1, 0);
      return;
    case Qt::Key_Left:
      MoveBy(0, -1);
      return;
    case Qt::Key_Right:
      MoveBy(0, 1);
      return;
    case Qt::Key_Home:
      MoveBy(0, -columnCount());
      return;
    case Qt::Key_End:
      MoveBy(0, columnCount());
      return;
    case Qt::Key_Space:
    case Qt::Key_F2:
      // A key that is still held down from the window before opens nothing here.
      if (!event->isAutoRepeat()) {
        emit Opened(currentRow(), currentColumn());
      }
      return;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
      emit Typed(currentRow(), currentColumn(), {});
      return;
    default:
      break;
  }
  const bool is_text = !event->text().isEmpty() && event->text().at(0).isPrint();
  const bool is_command = (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier)) != 0;
  if (is_text && !is_command) {
    emit Typed(currentRow(), currentColumn(), event->text());
  } else {
    event->ignore();  // the keys of the form
  }
}

void EditGrid::focusInEvent(QFocusEvent* event) {
  QTableWidget::focusInEvent(event);
  const bool by_tab =
      event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
  if (by_tab) {
    EnterCell(currentRow(), currentColumn());
  }
}

// The boxes are reached from cell to cell: for the tab key the grid is one control.
bool EditGrid::focusNextPrevChild(bool next) {
  QWidget* target = this;
  do {
    target = next ? target->nextInFocusChain() : target->previousInFocusChain();
  } while (target != this && (isAncestorOf(target) || !target->isVisible() ||
                              !target->isEnabled() || (target->focusPolicy() & Qt::TabFocus) == 0));
  target->setFocus(next ? Qt::TabFocusReason : Qt::BacktabFocusReason);
  return true;
}

bool EditGrid::eventFilter(QObject* watched, QEvent* event) {
  auto* edit = qobject_cast<CellEdit*>(watched);
  if (edit != nullptr && event->type() == QEvent::FocusIn) {
    setCurrentCell(edit->property("row").toInt(), edit->property("column").toInt());
    emit EditEntered();
  }
  if (edit != nullptr && event->type() == QEvent::KeyPress) {
    return TakeKeyOfEdit(*static_cast<QKeyEvent*>(event));
  }
  return QTableWidget::eventFilter(watched, event);
}

// True if the key leads out of the box.
bool EditGrid::TakeKeyOfEdit(const QKeyEvent& key) {
  if (key.key() == Qt::Key_Up || key.key() == Qt::Key_Down) {
    MoveBy(key.key() == Qt::Key_Up ? -1 : 1, 0);
  } else if (key.key() == Qt::Key_Tab && currentColumn() + 1 < columnCount()) {
    MoveBy(0, 1);
  } else if (key.key() == Qt::Key_Backtab && currentColumn() > 0) {
    MoveBy(0, -1);
  } else if (key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab) {
    static_cast<void>(focusNextPrevChild(key.key() == Qt::Key_Tab));
  } else {
    return IsEnter(key.key()) && key.isAutoRepeat();
  }
  return true;
}

}  // namespace tavrel
