#include "main/forms/tav_keys.h"

#include <QHeaderView>
#include <QPushButton>
#include <QScrollBar>
#include <QTableWidget>
#include <QVBoxLayout>

#include "main/key_table.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr BothLanguages kCaption{" Keys", " Tasten"};
constexpr int kFewestKeys = 8;
constexpr int kRowsInSight = 18;

// As wide as its texts.
class KeysTable : public QTableWidget {
 public:
  using QTableWidget::QTableWidget;

  [[nodiscard]] QSize sizeHint() const override { return SizeWith(kRowsInSight); }
  [[nodiscard]] QSize minimumSizeHint() const override {
    return {SizeWith(0).width() / 2, SizeWith(kFewestKeys).height()};
  }

 private:
  [[nodiscard]] QSize SizeWith(int rows) const {
    const int frame = 2 * frameWidth();
    return {horizontalHeader()->length() + verticalScrollBar()->sizeHint().width() + frame,
            horizontalHeader()->sizeHint().height() +
                rows * verticalHeader()->defaultSectionSize() + frame};
  }
};

}  // namespace

TavKeys::TavKeys(KeysScreen& keys) : ModalForm(keys, "TavKeys", kCaption.In(keys.TipLanguage())) {
  QVBoxLayout* column = MakeColumn(kNarrowMargin);
  column->addWidget(MakeTable(keys.TipLanguage()), 1);
  column->addWidget(MakeOk([&keys] { keys.Quit(); }), 0, Qt::AlignRight);
}

QTableWidget* TavKeys::MakeTable(Language language) {
  auto* table =
      new KeysTable(static_cast<int>(kKeyTable.size()), static_cast<int>(kKeyHeads.size()), this);
  table->setObjectName("Keys");
  table->setAccessibleName(QtText(kCaption.In(language)).trimmed());
  table->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table->setSelectionBehavior(QAbstractItemView::SelectRows);
  table->setTabKeyNavigation(false);
  table->verticalHeader()->hide();
  table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
  table->horizontalHeader()->setSectionsClickable(false);
  table->horizontalHeader()->setHighlightSections(false);
  table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table->horizontalHeader()->setStretchLastSection(true);
  int section = 0;
  for (const BothLanguages& head : kKeyHeads) {
    table->setHorizontalHeaderItem(section++, new QTableWidgetItem(QtText(head.In(language))));
  }
  int row = 0;
  for (const KeyEntry& entry : kKeyTable) {
    int column = 0;
    for (const BothLanguages* text : {&entry.Where, &entry.Keys, &entry.Does}) {
      table->setItem(row, column++, new SpokenItem(QtText(text->In(language))));
    }
    ++row;
  }
  table->resizeColumnsToContents();
  table->setCurrentCell(0, 0);
  return table;
}

}  // namespace tavrel
