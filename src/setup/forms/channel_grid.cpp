#include "setup/forms/channel_grid.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <algorithm>
#include <array>

#include "widgets/form_texts.h"
#include "widgets/shades.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr int kColumns = static_cast<int>(kChannelHeads.size());
constexpr int kNumberColumn = 0;
constexpr int kSensorColumn = 1;
constexpr int kRowPadding = 6;
constexpr int kColumnPadding = 28;
constexpr int kLeastPadding = 10;  // on a small screen
constexpr int kNumberMargin = 12;  // behind a number
constexpr int kFewestRows = 5;     // on a small screen
constexpr int kChosen = Qt::UserRole;
constexpr qreal kChosenGround = 0.3;  // share of the highlight
constexpr int kRule = 2;              // below row 0
// The widest that a column usually has, beside its head.
constexpr std::array kWidest = {"✓ M",    "NiCrNi", "-1638.35",  "896",
                                "327670", "-32768", "32766.9999"};

// Chosen rows, the rule below the reference sensor, and a frame around the row of the keyboard.
class ChannelCell : public QStyledItemDelegate {
 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  void paint(QPainter* painter, const QStyleOptionViewItem& option,
             const QModelIndex& index) const override {
    QStyleOptionViewItem cell = option;
    cell.state.setFlag(QStyle::State_HasFocus, false);
    const QPalette& palette = option.palette;
    if (index.data(kChosen).toBool()) {
      painter->fillRect(option.rect, Blend(palette.color(QPalette::Base),
                                           palette.color(QPalette::Highlight), kChosenGround));
    }
    const bool is_number = index.column() > kSensorColumn;
    cell.rect.adjust(0, 0, is_number ? -kNumberMargin : 0, 0);
    QStyledItemDelegate::paint(painter, cell, index);
    if (index.row() == kReferenceRow) {
      const QRect& place = option.rect;
      painter->fillRect(QRect(place.left(), place.bottom() - kRule + 1, place.width(), kRule),
                        MutedOf(palette));
    }
    DrawFrame(*painter, option, index);
  }

 private:
  static void DrawFrame(QPainter& painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) {
    const auto* grid = qobject_cast<const QTableWidget*>(option.widget);
    if (grid == nullptr || !grid->hasFocus() || grid->currentRow() != index.row()) {
      return;
    }
    const QRect place = option.rect.adjusted(0, 0, -1, -1);
    painter.setPen(option.palette.color(QPalette::Highlight));
    painter.drawLine(place.topLeft(), place.topRight());
    painter.drawLine(place.bottomLeft(), place.bottomRight());
    if (index.column() == kNumberColumn) {
      painter.drawLine(place.topLeft(), place.bottomLeft());
    }
    if (index.column() == kColumns - 1) {
      painter.drawLine(place.topRight(), place.bottomRight());
    }
  }
};

std::array<std::string, kChannelHeads.size()> TextsOf(int row, const ChannelRow& shown) {
  return {(shown.selected ? "✓ " : "") + RowName(row),
          shown.sensor,
          shown.actual,
          shown.buffer,
          shown.sampling,
          shown.offset,
          shown.gain};
}

}  // namespace

ChannelGrid::ChannelGrid(QWidget* parent) : QTableWidget(kChannelRows, kColumns, parent) {
  setObjectName("Sheet");
  setAccessibleName("channels");
  setItemDelegate(new ChannelCell(this));
  setEditTriggers(QAbstractItemView::NoEditTriggers);
  setSelectionMode(QAbstractItemView::NoSelection);
  setTabKeyNavigation(false);
  setWordWrap(false);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
  verticalHeader()->hide();
  verticalHeader()->setMinimumSectionSize(1);
  verticalHeader()->setDefaultSectionSize(fontMetrics().height() + kRowPadding);
  horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
  horizontalHeader()->setSectionsClickable(false);
  horizontalHeader()->setHighlightSections(false);
  horizontalHeader()->setMinimumSectionSize(1);
  setHorizontalHeaderLabels(QtItems(kChannelHeads));
  MakeCells();
  setCurrentCell(1, kSensorColumn);
  connect(this, &QTableWidget::cellClicked, this, [this](int row) { emit RowChosen(row); });
  // The frame runs through the whole row, so that all of it is painted anew.
  connect(this, &QTableWidget::currentCellChanged, this, [this] { viewport()->update(); });
}

void ChannelGrid::MakeCells() {
  for (int row = 0; row < kChannelRows; ++row) {
    for (int column = 0; column < kColumns; ++column) {
      auto* cell = new SpokenItem;
      const bool is_text = column == kNumberColumn || column == kSensorColumn;
      cell->setTextAlignment(Qt::AlignVCenter | (is_text ? Qt::AlignHCenter : Qt::AlignRight));
      cell->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
      setItem(row, column, cell);
    }
  }
}

int ChannelGrid::HeightOf(int rows) const {
  return horizontalHeader()->sizeHint().height() + rows * verticalHeader()->defaultSectionSize() +
         2 * frameWidth();
}

int ChannelGrid::WidthWith(int padding) const {
  int widest = 0;
  for (std::size_t column = 0; column < kChannelHeads.size(); ++column) {
    const int head = fontMetrics().horizontalAdvance(QtText(kChannelHeads.at(column)));
    const int text = fontMetrics().horizontalAdvance(QtText(kWidest.at(column)));
    widest = std::max({widest, head, text});
  }
  return kColumns * (widest + padding) + 2 * frameWidth();
}

QSize ChannelGrid::sizeHint() const {
  return {WidthWith(kColumnPadding), HeightOf(kChannelRows)};
}

QSize ChannelGrid::minimumSizeHint() const {
  return {WidthWith(kLeastPadding), HeightOf(kFewestRows)};
}

void ChannelGrid::Show(const ByRow<ChannelRow>& rows) {
  for (int row = 0; row < kChannelRows; ++row) {
    const ChannelRow& shown = rows[row];
    const auto texts = TextsOf(row, shown);
    for (int column = 0; column < kColumns; ++column) {
      QTableWidgetItem* cell = item(row, column);
      const QString text = QtText(texts[column]);
      if (cell->text() != text) {
        cell->setText(text);
      }
      if (cell->data(kChosen).toBool() != shown.selected) {
        cell->setData(kChosen, shown.selected);
      }
    }
  }
}

// Enter presses the default button of the form.
void ChannelGrid::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Space) {
    emit RowChosen(currentRow());
    return;
  }
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    event->ignore();
    return;
  }
  QTableWidget::keyPressEvent(event);
}

}  // namespace tavrel
