#include "dialogs/forms/file_grid.h"

#include <QHeaderView>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "base/element.h"
#include "base/number.h"
#include "base/units.h"
#include "widgets/modal_form.h"

namespace tavrel {
namespace {

// A column beside name and contents.
struct Detail {
  const char* Control = nullptr;  // its head
  BothLanguages Caption;
  IndexColumn Column = IndexColumn::kDate;
  char Letter = 0;  // in FileIndex::Order()
  const char* Longest = nullptr;
};

constexpr std::array<Detail, kDetailColumns> kDetails = {
    {{"headDate", {"date", "Datum"}, IndexColumn::kDate, 'D', "0000-00-00  00:00"},
     {"headDuration", {"duration", "Dauer"}, IndexColumn::kDuration, 'L', "00000.0 min"},
     {"headInstrument", {"instrument", "Gerät"}, IndexColumn::kInstrument, 'I', "Tavrel-0"}}};

std::string DateText(std::int64_t date) {
  if (date == 0) {
    return "";
  }
  const std::string digits = std::to_string(1000000000000 + date).substr(1);
  return digits.substr(0, 4) + "-" + digits.substr(4, 2) + "-" + digits.substr(6, 2) + "  " +
         digits.substr(8, 2) + ":" + digits.substr(10, 2);
}

std::string DurationText(std::int64_t seconds) {
  if (seconds < 0) {
    return "";
  }
  const auto time = static_cast<double>(seconds);
  return time < kSecondsPerHour ? FormatMask(time / kSecondsPerMinute, "####0.0") + " min"
                                : FormatMask(time / kSecondsPerHour, "####0.0") + " h";
}

std::string CellOf(const IndexRow& row, int column) {
  switch (column) {
    case 0:
      return row.Name;
    case 1:
      return row.Contents;
    case 2:
      return DateText(row.Details.Date);
    case 3:
      return DurationText(row.Details.Seconds);
    default:
      return row.Details.Instrument == 0 ? "" : "Tavrel-" + std::to_string(row.Details.Instrument);
  }
}

constexpr double kNameShare = 0.28;
constexpr int kColumns = 2 + static_cast<int>(kDetailColumns);
constexpr int kNameColumn = 0;
constexpr int kRowPadding = 6;
constexpr int kShownRows = 18;
constexpr int kFewestRows = 5;                 // on a small screen
constexpr const char* kWide = "M888888M.WWW";  // no usual name is wider

SortMark MarkOf(const std::string& sort_key, char column) {
  if (sort_key.size() != 2 || sort_key.front() != column) {
    return SortMark::kNone;
  }
  return sort_key.back() == 'A' ? SortMark::kUp : SortMark::kDown;
}

// The text of a cell begins where that of its head does.
class CellText : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QString text = cell.text;
    cell.text.clear();
    const QStyle* style = cell.widget->style();
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
    const QRect place = cell.rect.adjusted(SortHead::kIndent, 0, -2, 0);
    const bool selected = cell.state.testFlag(QStyle::State_Selected);
    style->drawItemText(painter, place, Qt::AlignVCenter, cell.palette, true,
                        cell.fontMetrics.elidedText(text, Qt::ElideRight, place.width()),
                        selected ? QPalette::HighlightedText : QPalette::Text);
  }
};

}  // namespace

FileRows::FileRows(const std::vector<IndexRow>& rows, QObject* parent)
    : QAbstractTableModel(parent), rows_(rows) {}

void FileRows::TakeRows() {
  beginResetModel();
  count_ = static_cast<int>(rows_.size());
  endResetModel();
}

int FileRows::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : count_;
}

int FileRows::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : kColumns;
}

QVariant FileRows::data(const QModelIndex& index, int role) const {
  const IndexRow* row = index.isValid() ? ElementAt(rows_, index.row()) : nullptr;
  const bool is_text = role == Qt::DisplayRole && row != nullptr;
  return is_text ? QVariant(QtText(CellOf(*row, index.column()))) : QVariant();
}

FileGrid::FileGrid(const std::vector<IndexRow>& rows, Language language, QWidget* parent)
    : QFrame(parent) {
  setFrameShape(QFrame::StyledPanel);
  cmd_file_ = new SortHead("cmdFile", "filename", this);
  cmd_product_ = new SortHead("cmdProduct", "contents", this);
  MakeDetailHeads(language);
  MakeView(rows);
  ConnectView();
  setMinimumSize(FileGrid::sizeHint().width() / 2, HeightOf(kFewestRows));
  setTabOrder(f_grid_, cmd_file_);
  setTabOrder(cmd_file_, cmd_product_);
  QWidget* before = cmd_product_;
  for (SortHead* head : detail_heads_) {
    setTabOrder(before, head);
    before = head;
  }
}

void FileGrid::MakeDetailHeads(Language language) {
  for (std::size_t place = 0; place < kDetails.size(); ++place) {
    const Detail& detail = kDetails.at(place);
    auto* head = new SortHead(detail.Control, QtText(detail.Caption.In(language)), this);
    connect(head, &SortHead::clicked, this,
            [this, &detail] { emit DetailHeadPressed(detail.Column); });
    detail_heads_.at(place) = head;
  }
}

// Each as wide as its head with its arrow and its longest text.
std::array<int, kDetailColumns> FileGrid::DetailWidths() const {
  std::array<int, kDetailColumns> widths{};
  for (std::size_t place = 0; place < kDetails.size(); ++place) {
    const int text = fontMetrics().horizontalAdvance(kDetails.at(place).Longest);
    widths.at(place) =
        std::max(detail_heads_.at(place)->sizeHint().width(), text + 2 * SortHead::kIndent);
  }
  return widths;
}

int FileGrid::HeightOf(int rows) const {
  const int row_height = f_grid_->verticalHeader()->defaultSectionSize();
  return cmd_file_->sizeHint().height() + row_height * rows + 2 * frameWidth();
}

QSize FileGrid::sizeHint() const {
  const std::array<int, kDetailColumns> details = DetailWidths();
  const int columns = static_cast<int>(std::lround(NameWidth() / kNameShare)) +
                      std::accumulate(details.begin(), details.end(), 0);
  const int scroll_bar = f_grid_->verticalScrollBar()->sizeHint().width();
  return {columns + scroll_bar + 2 * frameWidth(), HeightOf(kShownRows)};
}

int FileGrid::NameWidth() const {
  return fontMetrics().horizontalAdvance(kWide) + 2 * SortHead::kIndent;
}

void FileGrid::MakeView(const std::vector<IndexRow>& rows) {
  f_grid_ = new QTableView(this);
  f_grid_->setObjectName("FGrid");
  f_grid_->setAccessibleName("files");
  model_ = new FileRows(rows, f_grid_);
  f_grid_->setModel(model_);
  f_grid_->setItemDelegate(new CellText(f_grid_));
  f_grid_->setFrameShape(QFrame::NoFrame);
  f_grid_->setShowGrid(false);
  f_grid_->setWordWrap(false);
  f_grid_->setTabKeyNavigation(false);
  f_grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
  f_grid_->setSelectionMode(QAbstractItemView::ContiguousSelection);
  f_grid_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  f_grid_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  f_grid_->horizontalHeader()->hide();
  f_grid_->horizontalHeader()->setMinimumSectionSize(1);
  f_grid_->verticalHeader()->hide();
  f_grid_->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  f_grid_->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowPadding);
}

void FileGrid::ConnectView() {
  connect(cmd_file_, &SortHead::clicked, this, &FileGrid::FileHeadPressed);
  connect(cmd_product_, &SortHead::clicked, this, &FileGrid::ProductHeadPressed);
  connect(f_grid_, &QTableView::doubleClicked, this, &FileGrid::Opened);
  const QItemSelectionModel* selection = f_grid_->selectionModel();
  connect(selection, &QItemSelectionModel::selectionChanged, this, &FileGrid::TellSelection);
  connect(selection, &QItemSelectionModel::currentRowChanged, this, &FileGrid::TellSelection);
}

void FileGrid::UpdateWidgets(const OpenFileValues& now) {
  cmd_file_->ShowMark(MarkOf(now.SortKey, 'F'));
  cmd_product_->ShowMark(MarkOf(now.SortKey, 'P'));
  for (std::size_t place = 0; place < kDetails.size(); ++place) {
    detail_heads_.at(place)->ShowMark(MarkOf(now.SortKey, kDetails.at(place).Letter));
  }
  if (now.Revision == revision_) {
    return;
  }
  revision_ = now.Revision;
  is_showing_ = true;
  model_->TakeRows();
  ShowSelection(now);
  is_showing_ = false;
}

void FileGrid::ShowSelection(const OpenFileValues& now) {
  const QModelIndex current = model_->index(now.CurrentRow, kNameColumn);
  f_grid_->setCurrentIndex(current);
  f_grid_->scrollTo(current, QAbstractItemView::PositionAtCenter);
}

// The selection is one block, so its ranges have a first and a last row.
void FileGrid::TellSelection() {
  if (is_showing_) {
    return;
  }
  RowBlock block;
  for (const QItemSelectionRange& range : f_grid_->selectionModel()->selection()) {
    block.First = block.First < 0 ? range.top() : std::min(block.First, range.top());
    block.Last = std::max(block.Last, range.bottom());
  }
  emit Selected(f_grid_->currentIndex().row(), block);
}

void FileGrid::resizeEvent(QResizeEvent* event) {
  QFrame::resizeEvent(event);
  const QRect room = contentsRect();
  const int head = cmd_file_->sizeHint().height();
  const int scroll_bar = f_grid_->verticalScrollBar()->sizeHint().width();
  const std::array<int, kDetailColumns> details = DetailWidths();
  const int all = room.width() - scroll_bar;
  int width = all;
  std::size_t shown = 0;
  while (shown < details.size() && width - details.at(shown) >= 3 * NameWidth() / 2) {
    width -= details.at(shown++);
  }
  // On a small screen the names keep what they need to be told apart.
  const int share = static_cast<int>(std::lround(kNameShare * width));
  const int names = std::min(std::max(share, NameWidth()), width / 2);
  cmd_file_->setGeometry(room.left(), room.top(), names, head);
  const int rest = shown > 0 ? width - names : room.width() - names;
  cmd_product_->setGeometry(room.left() + names, room.top(), rest, head);
  PlaceDetails(room.left() + width, room.right() + 1, shown);
  f_grid_->setGeometry(room.adjusted(0, head, 0, 0));
  f_grid_->setColumnWidth(0, names);
  f_grid_->setColumnWidth(1, width - names);
}

// From `left` on; the last head reaches over the scroll bar.
void FileGrid::PlaceDetails(int left, int right, std::size_t shown) {
  const std::array<int, kDetailColumns> widths = DetailWidths();
  const int head_height = cmd_file_->sizeHint().height();
  for (std::size_t place = 0; place < widths.size(); ++place) {
    SortHead* head = detail_heads_.at(place);
    const bool is_shown = place < shown;
    const bool is_last = place + 1 == shown;
    const int width = is_last ? right - left : widths.at(place);
    head->setVisible(is_shown);
    head->setGeometry(left, contentsRect().top(), width, head_height);
    f_grid_->setColumnHidden(2 + static_cast<int>(place), !is_shown);
    f_grid_->setColumnWidth(2 + static_cast<int>(place), widths.at(place));
    left += width;
  }
}

}  // namespace tavrel
