#include "widgets/fresh_list.h"

#include <QAbstractItemView>
#include <QScreen>
#include <QScrollBar>
#include <algorithm>

namespace tavrel {

void FreshList::showPopup() {
  emit Unfolds();
  const int entries =
      view()->sizeHintForColumn(0) + view()->verticalScrollBar()->sizeHint().width();
  view()->setMinimumWidth(std::min(entries, screen()->availableGeometry().width()));
  QComboBox::showPopup();
}

}  // namespace tavrel
