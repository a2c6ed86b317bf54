#include "service/forms/register_grid.h"

#include <QFontDatabase>
#include <QHeaderView>
#include <QKeyEvent>
#include <QScrollBar>
#include <algorithm>

#include "base/colour.h"
#include "widgets/colour_cell.h"
#include "widgets/form_texts.h"
#include "widgets/framed_cells.h"
#include "widgets/shades.h"

namespace tavrel {
namespace {

constexpr int kGroup = 16;  // addresses of one colour
constexpr int kLastColumn = RegisterSheet::kColumns - 1;
constexpr int kRowPadding = 6;
constexpr int kColumnPadding = 24;
constexpr int kRowsInSight = 22;
constexpr int kFewestRows = 6;  // on a small screen
constexpr qreal kLegendShade = 0.08;

// The edit box stands inside the lines of its cell.
constexpr int kInset = 1;
constexpr int kNarrower = 5;
constexpr int kLower = 2;

constexpr int kValueCharacters = 6;  // "-32768"

QColor ColourOf(Colour colour) {
  return {colour.Red, colour.Green, colour.Blue};
}

bool IsEnter(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

// Addresses and values stand in the middle, words at the left.
QVariant AlignmentOf(const RegisterSheet& sheet, int column) {
  const bool is_words = column > 0 && !sheet.IsEditable(column);
  return is_words ? QVariant(Qt::AlignLeft | Qt::AlignVCenter) : QVariant(Qt::AlignCenter);
}

int FirstEditable(const RegisterSheet& sheet) {
  int column = 0;
  while (column < kLastColumn && !sheet.IsEditable(column)) {
    ++column;
  }
  return column;
}

// The widest text that a column has, in characters.
int WidestOf(const RegisterSheet& sheet, int column) {
  std::size_t widest = sheet.ColumnHeads()[column].size();
  for (int row = 0; row < sheet.Rows(); ++row) {
    widest = std::max(widest, sheet.TextOf(row, column).size());
  }
  const int room = column == kLastColumn ? sheet.RoomForRemarks() : kValueCharacters;
  return column == kLastColumn ? static_cast<int>(widest) + room
                               : std::max(static_cast<int>(widest), room);
}

}  // namespace

// ---- The cells.

RegisterCells::RegisterCells(const RegisterSheet& sheet, QWidget& view)
    : QAbstractTableModel(&view), sheet_(sheet), view_(view) {}

int RegisterCells::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : sheet_.Rows();
}

int RegisterCells::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : RegisterSheet::kColumns;
}

QVariant RegisterCells::data(const QModelIndex& index, int role) const {
  switch (role) {
    case Qt::DisplayRole:
      return QtText(sheet_.TextOf(index.row(), index.column()));
    case Qt::AccessibleTextRole:
      return QtText(sheet_.SpokenOf(index.row(), index.column()));
    case Qt::TextAlignmentRole:
      return AlignmentOf(sheet_, index.column());
    case Qt::BackgroundRole:
      return GroundOf(index);
    case Qt::ForegroundRole:
      // The colours of the addresses are light in every palette, so their ink is dark in every one.
      return index.column() == 0 ? QVariant(QBrush(QColor::fromRgb(kStatusInk))) : QVariant();
    default:
      return {};
  }
}

QVariant RegisterCells::GroundOf(const QModelIndex& index) const {
  const QPalette palette = view_.palette();
  if (index.column() == 0) {
    const bool is_even = index.row() / kGroup % 2 == 0;
    return QBrush(ColourOf(is_even ? kOrange : kYellow));
  }
  const bool is_fixed = !sheet_.IsEditable(index.column());
  return is_fixed ? QVariant(QBrush(Blend(palette.color(QPalette::Base),
                                          palette.color(QPalette::Text), kLegendShade)))
                  : QVariant();
}

QVariant RegisterCells::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) {
    return {};
  }
  if (role == Qt::DisplayRole) {
    const QString head = QtText(sheet_.ColumnHeads()[section]);
    return section == kLastColumn ? " " + head : head;  // its texts begin with a blank
  }
  if (role == Qt::TextAlignmentRole) {
    return AlignmentOf(sheet_, section);
  }
  return QAbstractTableModel::headerData(section, orientation, role);
}

void RegisterCells::Renew() {
  emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

// ---- The grid.

RegisterGrid::RegisterGrid(const RegisterSheet& sheet, QWidget* parent)
    : QTableView(parent),
      sheet_(sheet),
      cells_(new RegisterCells(sheet, *this)),
      txt_edit_(new CellEdit(viewport())) {
  setObjectName("Grid");
  setAccessibleName("registers");
  setModel(cells_);
  setItemDelegate(new FramedCells(this));
  Arrange();
  setCurrentIndex(cells_->index(0, FirstEditable(sheet)));
  txt_edit_->setObjectName("txtEdit");
  txt_edit_->setAlignment(Qt::AlignCenter);
  txt_edit_->setFont(font());
  txt_edit_->installEventFilter(this);
  txt_edit_->hide();
  connect(this, &QTableView::clicked, this,
          [this](const QModelIndex& cell) { emit Opened(cell.row(), cell.column()); });
  connect(horizontalHeader(), &QHeaderView::sectionPressed, this,
          [this](int column) { emit Opened(RegisterSheet::kHeadRow, column); });
}

void RegisterGrid::Arrange() {
  QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
  fixed.setPointSizeF(font().pointSizeF());
  setFont(fixed);
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setSelectionMode(QAbstractItemView::SingleSelection);
  setTabKeyNavigation(false);
  setWordWrap(false);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  verticalHeader()->hide();
  verticalHeader()->setMinimumSectionSize(1);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowPadding);
  horizontalHeader()->setFont(fixed);
  horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setSectionsClickable(true);
  horizontalHeader()->setMinimumSectionSize(1);
  horizontalHeader()->setStretchLastSection(true);
  for (int column = 0; column < RegisterSheet::kColumns; ++column) {
    widths_[column] = WidthOf(column);
    setColumnWidth(column, WidthOf(column));
  }
}

int RegisterGrid::WidthOf(int column) const {
  return WidestOf(sheet_, column) * fontMetrics().horizontalAdvance('0') + kColumnPadding;
}

int RegisterGrid::HeightOf(int rows) const {
  return horizontalHeader()->sizeHint().height() + rows * verticalHeader()->defaultSectionSize() +
         2 * frameWidth();
}

QSize RegisterGrid::sizeHint() const {
  return {minimumSizeHint().width(), HeightOf(std::min(kRowsInSight, sheet_.Rows()))};
}

QSize RegisterGrid::minimumSizeHint() const {
  int width = verticalScrollBar()->sizeHint().width() + 2 * frameWidth();
  for (const int column_width : widths_) {
    width += column_width;
  }
  return {width, HeightOf(kFewestRows)};
}

void RegisterGrid::Renew() {
  if (version_ != sheet_.Version()) {
    version_ = sheet_.Version();
    cells_->Renew();
  }
  const int edit = sheet_.Edit() ? sheet_.Edit()->Number : 0;
  if (edit == edit_) {
    return;
  }
  edit_ = edit;
  if (edit == 0) {
    EndEdit();
  } else {
    BeginEdit();
  }
}

void RegisterGrid::BeginEdit() {
  const SheetEdit& edit = *sheet_.Edit();
  const QModelIndex cell = cells_->index(edit.Row, edit.Column);
  setCurrentIndex(cell);
  scrollTo(cell);
  const std::string head(sheet_.ColumnHeads()[edit.Column]);
  txt_edit_->setAccessibleName(QtText(sheet_.TextOf(edit.Row, 0) + " " + head));
  txt_edit_->setText(QtText(edit.Text));
  QPalette opaque = txt_edit_->palette();  // the text of the cell is beneath it
  opaque.setColor(QPalette::Base, palette().color(QPalette::Base));
  txt_edit_->setPalette(opaque);
  PlaceEdit();
  txt_edit_->show();
  SelectEdit();
}

void RegisterGrid::SelectEdit() {
  txt_edit_->setFocus(Qt::OtherFocusReason);
  txt_edit_->selectAll();
}

void RegisterGrid::EndEdit() {
  const bool had_focus = txt_edit_->hasFocus();
  txt_edit_->clear();
  txt_edit_->hide();
  if (had_focus) {
    setFocus(Qt::OtherFocusReason);
  }
}

void RegisterGrid::PlaceEdit() {
  if (!sheet_.Edit()) {
    return;
  }
  const QRect cell = visualRect(cells_->index(sheet_.Edit()->Row, sheet_.Edit()->Column));
  txt_edit_->setGeometry(cell.left() + kInset, cell.top() + kInset, cell.width() - kNarrower,
                         cell.height() - kLower);
}

void RegisterGrid::scrollContentsBy(int right, int down) {
  QTableView::scrollContentsBy(right, down);
  PlaceEdit();
}

void RegisterGrid::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  PlaceEdit();
}

// Escape belongs to the form, and so does Enter while a text is edited: the keyboard has gone to
// another control meanwhile.
void RegisterGrid::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape || (IsEnter(*event) && edit_ != 0)) {
    event->ignore();
  } else if (event->key() == Qt::Key_F2 || IsEnter(*event)) {
    // A key that is still held down from the window before opens nothing here.
    if (!event->isAutoRepeat()) {
      emit Opened(currentIndex().row(), currentIndex().column());
    }
  } else {
    QTableView::keyPressEvent(event);
  }
}

bool RegisterGrid::eventFilter(QObject* watched, QEvent* event) {
  if (watched != txt_edit_ || event->type() != QEvent::KeyPress) {
    return QTableView::eventFilter(watched, event);
  }
  const auto& key = *static_cast<QKeyEvent*>(event);
  if (IsEnter(key) && !key.isAutoRepeat()) {
    emit Committed(txt_edit_->text());
  }
  return IsEnter(key) || key.key() == Qt::Key_Up || key.key() == Qt::Key_Down;
}

}  // namespace tavrel
