#include "widgets/framed_cells.h"

#include <QPainter>

namespace tavrel {
namespace {

constexpr int kFrame = 2;

}  // namespace

void FramedCells::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
  QStyleOptionViewItem plain = option;
  plain.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus);
  painter->fillRect(option.rect, option.palette.base());  // the view has filled it as selected
  QStyledItemDelegate::paint(painter, plain, index);
  if ((option.state & QStyle::State_Selected) == 0) {
    return;
  }
  const bool is_awake = option.widget != nullptr && option.widget->hasFocus();
  const auto role = is_awake ? QPalette::Highlight : QPalette::Mid;
  painter->save();
  painter->setPen(QPen(option.palette.color(role), kFrame));
  painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
  painter->restore();
}

}  // namespace tavrel
