#include "work/forms/program_grid.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyledItemDelegate>

#include "widgets/colour_cell.h"
#include "widgets/list_search.h"
#include "widgets/modal_form.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr int kRowsInSight = 16;
constexpr ByProgramColumn<int> kColumnCharacters = {{6, 12, 12, 14, 14}};
constexpr int kFrame = 2;
constexpr Colour kWhite{0xFF, 0xFF, 0xFF};

QColor QtColour(Colour colour) {
  return {colour.Red, colour.Green, colour.Blue};
}

bool IsEnter(int key) {
  return key == Qt::Key_Return || key == Qt::Key_Enter;
}

// The current cell has a frame; a fill would hide the cell's own colour.
class FramedCells : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyleOptionViewItem plain = option;
    plain.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus);
    QStyledItemDelegate::paint(painter, plain, index);
    if ((option.state & QStyle::State_Selected) == 0) {
      return;
    }
    painter->save();
    painter->setPen(QPen(option.palette.color(QPalette::Highlight), kFrame));
    painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
    painter->restore();
  }
};

}  // namespace

ProgramGrid::ProgramGrid(QWidget* parent) : QTableWidget(kProgramRows, kProgramColumns, parent) {
  setObjectName("Grid");
  setAccessibleName("steps of the program");
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setTabKeyNavigation(false);
  setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  setItemDelegate(new FramedCells(this));
  MakeHeads();
  MakeEdits();
  setCurrentCell(0, kTimeColumn);
  connect(verticalScrollBar(), &QScrollBar::valueChanged, this, &ProgramGrid::PlaceEdits);
}

void ProgramGrid::MakeHeads() {
  verticalHeader()->hide();
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 10);
  horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setSectionsClickable(false);
  for (int column = 0; column < kProgramColumns; ++column) {
    const ColumnHead& head = kProgramHeads[column];
    setHorizontalHeaderItem(column,
                            new QTableWidgetItem(QtText(head.Name) + "\n" + QtText(head.Unit)));
    setColumnWidth(column, fontMetrics().averageCharWidth() * kColumnCharacters[column]);
  }
  for (int row = 0; row < kProgramRows; ++row) {
    auto* number = new SpokenItem(QString::number(row + 1));
    number->setTextAlignment(Qt::AlignCenter);
    number->setFlags(Qt::NoItemFlags);
    number->setForeground(palette().color(QPalette::WindowText));
    number->setBackground(palette().color(QPalette::Window));
    setItem(row, kStepColumn, number);
    for (int column = kTimeColumn; column < kProgramColumns; ++column) {
      auto* cell = new SpokenItem;
      cell->setTextAlignment(Qt::AlignCenter);
      setItem(row, column, cell);
    }
  }
}

void ProgramGrid::MakeEdits() {
  txt_edit_ = new NumberEdit("txtEdit", viewport());
  txt_edit_->setAccessibleName("value of the cell");
  txt_edit_->setMinimumWidth(0);
  txt_edit_->setMaximumWidth(QWIDGETSIZE_MAX);
  txt_edit_->setAlignment(Qt::AlignCenter);
  txt_edit_->hide();
  txt_edit_->installEventFilter(this);
  connect(txt_edit_, &QLineEdit::textEdited, this, &ProgramGrid::TextTyped);
  cstat_ = new QComboBox(viewport());
  SearchBehindBlanks(*cstat_);
  cstat_->setObjectName("Cstat");
  NameList(*cstat_, "state of the controller");
  for (const char* item : kStatusItems) {
    cstat_->addItem(item);
  }
  cstat_->hide();
  cstat_->installEventFilter(this);
  connect(cstat_, &QComboBox::currentIndexChanged, this, &ProgramGrid::LineChosen);
}

QSize ProgramGrid::sizeHint() const {
  const int frame = 2 * frameWidth();
  const int bar = verticalScrollBar()->sizeHint().width();
  const int rows = kRowsInSight * verticalHeader()->defaultSectionSize();
  return {horizontalHeader()->length() + bar + frame,
          horizontalHeader()->sizeHint().height() + rows + frame};
}

void ProgramGrid::UpdateWidgets(const ProgramEditor& editor) {
  for (int row = 1; row <= kProgramRows; ++row) {
    for (int column = kTimeColumn; column < kProgramColumns; ++column) {
      ShowCell(row, column, editor.Cell(row, column));
    }
  }
  ShowEdit(editor.Edit());
}

void ProgramGrid::ShowCell(int row, int column, const ProgramCell& cell) {
  QTableWidgetItem* shown = item(row - 1, column);
  const QString text = QtText(cell.Text);
  const bool is_plain = cell.Background == kWhite;
  const QBrush background = is_plain ? QBrush() : QBrush(QtColour(cell.Background));
  if (shown->text() == text && shown->background() == background) {
    return;
  }
  shown->setText(text);
  shown->setBackground(background);
  // The coloured cells are light in every palette, so their ink is dark in every palette.
  shown->setForeground(is_plain ? QBrush(palette().color(QPalette::Text))
                                : QBrush(QColor::fromRgb(kStatusInk)));
}

void ProgramGrid::ShowEdit(const CellInEdit& edit) {
  const bool is_new = edit.Row != shown_.Row || edit.Column != shown_.Column;
  shown_ = edit;
  ShowText(*txt_edit_, edit.txtEdit);
  const QSignalBlocker quiet(cstat_);
  cstat_->setCurrentIndex(edit.Cstat);
  txt_edit_->setVisible(edit.IsOpen() && !edit.IsList());
  cstat_->setVisible(edit.IsList());
  if (!edit.IsOpen()) {
    if (is_new) {
      setFocus();
    }
    return;
  }
  setCurrentCell(edit.Row - 1, edit.Column);
  PlaceEdits();
  QWidget* in_use = edit.IsList() ? static_cast<QWidget*>(cstat_) : txt_edit_;
  if (is_new || !in_use->hasFocus()) {
    in_use->setFocus();
    txt_edit_->selectAll();
  }
}

void ProgramGrid::PlaceEdits() {
  if (shown_.IsOpen()) {
    const QRect place = visualRect(model()->index(shown_.Row - 1, shown_.Column));
    txt_edit_->setGeometry(place);
    cstat_->setGeometry(place);
  }
}

void ProgramGrid::resizeEvent(QResizeEvent* event) {
  QTableWidget::resizeEvent(event);
  PlaceEdits();
}

void ProgramGrid::mousePressEvent(QMouseEvent* event) {
  const QModelIndex cell = indexAt(event->pos());
  if (event->button() == Qt::LeftButton && cell.isValid()) {
    emit CellClicked(cell.row() + 1, cell.column());
    return;
  }
  QTableWidget::mousePressEvent(event);
}

// Enter opens the current cell as a click does; so does the first character of a number, which
// then replaces what stands there.
void ProgramGrid::keyPressEvent(QKeyEvent* event) {
  const bool begins_number = !event->text().isEmpty() && event->text().at(0).isDigit();
  const bool opens = IsEnter(event->key()) || event->key() == Qt::Key_F2 ||
                     event->key() == Qt::Key_Space || begins_number;
  if (!opens || event->isAutoRepeat() || currentColumn() < kTimeColumn) {
    QTableWidget::keyPressEvent(event);
    return;
  }
  emit CellClicked(currentRow() + 1, currentColumn());
  if (begins_number && txt_edit_->isVisible()) {
    txt_edit_->insert(event->text());
    emit TextTyped(txt_edit_->text());
  }
}

bool ProgramGrid::eventFilter(QObject* watched, QEvent* event) {
  // The wheel scrolls the table, never a state.
  if (event->type() == QEvent::Wheel && watched == cstat_) {
    event->ignore();
    return true;
  }
  if (event->type() == QEvent::KeyPress && (watched == txt_edit_ || watched == cstat_)) {
    return TakeKey(*static_cast<QKeyEvent*>(event), watched == cstat_);
  }
  return QTableWidget::eventFilter(watched, event);
}

// True if the key leads out of the cell. The list keeps the arrow keys for its lines.
bool ProgramGrid::TakeKey(const QKeyEvent& key, bool in_list) {
  if (IsEnter(key.key()) || (!in_list && key.key() == Qt::Key_Down)) {
    emit Moved(1, 0);
  } else if (!in_list && key.key() == Qt::Key_Up) {
    emit Moved(-1, 0);
  } else if (key.key() == Qt::Key_Tab) {
    emit Moved(0, 1);
  } else if (key.key() == Qt::Key_Backtab) {
    emit Moved(0, -1);
  } else if (key.key() == Qt::Key_Escape) {
    emit Dropped();
  } else {
    return false;
  }
  return true;
}

}  // namespace tavrel
