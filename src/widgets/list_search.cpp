#include "widgets/list_search.h"

#include <QComboBox>
#include <QStandardItemModel>

namespace tavrel {
namespace {

// The toolkit asks the model for the entries that begin with what was typed.
class Entries : public QStandardItemModel {
 public:
  explicit Entries(QObject* parent) : QStandardItemModel(0, 1, parent) {}

  [[nodiscard]] QModelIndexList match(const QModelIndex& start, int role, const QVariant& value,
                                      int hits, Qt::MatchFlags flags) const override {
    const bool is_typed =
        role == Qt::DisplayRole && (flags & Qt::MatchTypeMask) == Qt::MatchStartsWith;
    if (!is_typed || !start.isValid()) {
      return QStandardItemModel::match(start, role, value, hits, flags);
    }
    for (int step = 0; step < rowCount(); ++step) {
      const QModelIndex entry = index((start.row() + step) % rowCount(), start.column());
      const QString text = entry.data(role).toString().trimmed();
      if (text.startsWith(value.toString().trimmed(), Qt::CaseInsensitive)) {
        return {entry};
      }
    }
    return {};
  }
};

}  // namespace

void SearchBehindBlanks(QComboBox& list) {
  list.setModel(new Entries(&list));
}

}  // namespace tavrel
