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
#include "widgets/spoken.h"

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

// The verdict comes with the first file that was verified, and gives way last.
constexpr std::array<Detail, kDetailColumns> kDetails = {
    {{"headVerdict", {"verdict", "Befund"}, IndexColumn::kDate, 0, "nicht gedeckt"},
     {"headDate", {"date", "Datum"}, IndexColumn::kDate, 'D', "0000-00-00  00:00"},
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

constexpr std::array<BothLanguages, 6> kVerdicts = {{BothLanguages(),
                                                     {"intact", "unversehrt"},
                                                     {"not covered", "nicht gedeckt"},
                                                     {"damaged", "beschädigt"},
                                                     {"no recording", "keine Aufz."},
                                                     {"unreadable", "unlesbar"}}};

std::string VerdictText(const IndexRow& row, Language language) {
  return std::string(kVerdicts.at(static_cast<std::size_t>(row.Proof.Verdict)).In(language));
}

std::string CellOf(const IndexRow& row, int column, Language language) {
  switch (column) {
    case 0:
      return row.Name;
    case 1:
      return row.Contents;
    case 2:
      return DateText(row.Details.Date);
    case 3:
      return DurationText(row.Details.Seconds);
    case 4:
      return row.Details.Instrument == 0 ? "" : "Tavrel-" + std::to_string(row.Details.Instrument);
    default:
      return VerdictText(row, language);
  }
}

constexpr const char* kNameHead = "filename";
constexpr const char* kContentsHead = "contents";
constexpr double kNameShare = 0.28;
constexpr int kColumns = 2 + static_cast<int>(kDetailColumns);
constexpr int kNameColumn = 0;
constexpr int kVerdictColumn = kColumns - 1;

// The detail at that place, from the left. The verdict stands before the others.
constexpr int ColumnOfDetail(std::size_t place) {
  return place == 0 ? kVerdictColumn : 1 + static_cast<int>(place);
}
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

FileRows::FileRows(const std::vector<IndexRow>& rows, Language language, QStringList heads,
                   QObject* parent)
    : QAbstractTableModel(parent), rows_(rows), language_(language), heads_(std::move(heads)) {}

void FileRows::TakeProofs() {
  if (count_ > 0) {
    emit dataChanged(index(0, kVerdictColumn), index(count_ - 1, kVerdictColumn));
  }
}

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
  if (row == nullptr) {
    return {};
  }
  if (role == Qt::ToolTipRole) {
    return QtText(row->Proof.Findings);
  }
  if (role == Qt::AccessibleTextRole) {
    return SpokenCell(index);
  }
  return role == Qt::DisplayRole ? QVariant(QtText(CellOf(*row, index.column(), language_)))
                                 : QVariant();
}

// Not in sight: the heads that are seen sort the files.
QVariant FileRows::headerData(int section, Qt::Orientation orientation, int role) const {
  const bool is_head = orientation == Qt::Horizontal && role == Qt::DisplayRole;
  return is_head && section < heads_.size() ? QVariant(heads_.at(section)) : QVariant();
}

FileGrid::FileGrid(const std::vector<IndexRow>& rows, Language language, QWidget* parent)
    : QFrame(parent) {
  setFrameShape(QFrame::StyledPanel);
  cmd_file_ = new SortHead("cmdFile", kNameHead, this);
  cmd_product_ = new SortHead("cmdProduct", kContentsHead, this);
  MakeDetailHeads(language);
  MakeView(rows, language);
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
    if (detail.Letter != 0) {
      connect(head, &SortHead::clicked, this,
              [this, &detail] { emit DetailHeadPressed(detail.Column); });
    } else {
      head->setEnabled(false);  // nothing is sorted by it
    }
    detail_heads_.at(place) = head;
  }
}

// Each as wide as its head with its arrow and its longest text.
std::array<int, kDetailColumns> FileGrid::DetailWidths() const {
  std::array<int, kDetailColumns> widths{};
  for (std::size_t place = FirstDetail(); place < kDetails.size(); ++place) {
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

void FileGrid::MakeView(const std::vector<IndexRow>& rows, Language language) {
  QStringList heads(kColumns);
  heads[0] = kNameHead;
  heads[1] = kContentsHead;
  for (std::size_t place = 0; place < kDetails.size(); ++place) {
    heads[ColumnOfDetail(place)] = QtText(kDetails.at(place).Caption.In(language));
  }
  f_grid_ = new QTableView(this);
  f_grid_->setObjectName("FGrid");
  f_grid_->setAccessibleName("files");
  model_ = new FileRows(rows, language, heads, f_grid_);
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
  f_grid_->horizontalHeader()->moveSection(kVerdictColumn, ColumnOfDetail(1));
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
  ShowProofs(now);
  if (now.Revision == revision_) {
    return;
  }
  revision_ = now.Revision;
  is_showing_ = true;
  model_->TakeRows();
  ShowSelection(now);
  is_showing_ = false;
}

void FileGrid::ShowProofs(const OpenFileValues& now) {
  if (now.ProofRevision == proof_revision_) {
    return;
  }
  proof_revision_ = now.ProofRevision;
  model_->TakeProofs();
  if (!has_verdicts_) {
    has_verdicts_ = true;
    PlaceColumns();
  }
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
  PlaceColumns();
}

void FileGrid::PlaceColumns() {
  const QRect room = contentsRect();
  const int head = cmd_file_->sizeHint().height();
  const int scroll_bar = f_grid_->verticalScrollBar()->sizeHint().width();
  const std::array<int, kDetailColumns> details = DetailWidths();
  const int all = room.width() - scroll_bar;
  int width = all;
  std::size_t shown = FirstDetail();
  while (shown < details.size() && width - details.at(shown) >= 3 * NameWidth() / 2) {
    width -= details.at(shown++);
  }
  // On a small screen the names keep what they need to be told apart.
  const int share = static_cast<int>(std::lround(kNameShare * width));
  const int names = std::min(std::max(share, NameWidth()), width / 2);
  cmd_file_->setGeometry(room.left(), room.top(), names, head);
  const int rest = shown > FirstDetail() ? width - names : room.width() - names;
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
    const bool is_shown = place >= FirstDetail() && place < shown;
    const bool is_last = place + 1 == shown;
    const int width = is_last ? right - left : widths.at(place);
    head->setVisible(is_shown);
    head->setGeometry(left, contentsRect().top(), width, head_height);
    f_grid_->setColumnHidden(ColumnOfDetail(place), !is_shown);
    f_grid_->setColumnWidth(ColumnOfDetail(place), widths.at(place));
    left += width;
  }
}

}  // namespace tavrel
