#include "frame/forms/sheet_columns.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <algorithm>

namespace tavrel {
namespace {

constexpr int kMargin = 12;
constexpr int kGap = 10;        // inside a group: a value and its status
constexpr int kGroupGap = 26;   // between groups
constexpr int kCellInset = 16;  // both sides of a text in a coloured cell together

int WidthOf(const QFont& font, const char* text) {
  return QFontMetrics(font).horizontalAdvance(text) + 2;
}

// Puts widgets, or blanks of the same width, side by side.
class LineBuilder {
 public:
  explicit LineBuilder(QWidget& owner) : box_(new QHBoxLayout(&owner)) {
    box_->setContentsMargins(kMargin, 0, kMargin, 0);
    box_->setSpacing(0);
  }
  void Add(QWidget* widget, int width) {
    if (widget == nullptr) {
      box_->addSpacing(width);
      return;
    }
    widget->setFixedWidth(width);
    box_->addWidget(widget, 0, Qt::AlignVCenter);
  }
  void AddWide(QWidget* widget, int least) {
    widget->setMinimumWidth(least);
    box_->addWidget(widget, 1, Qt::AlignVCenter);
  }
  void Gap(int width) { box_->addSpacing(width); }

 private:
  QHBoxLayout* box_;
};

}  // namespace

SheetColumns::SheetColumns(const QFont& base) : HeadFont(base), ValueFont(base), StatusFont(base) {
  const qreal size = base.pointSizeF() > 0 ? base.pointSizeF() : 9;
  HeadFont.setPointSizeF(size * 0.95);
  ValueFont.setPointSizeF(size * 1.35);
  StatusFont.setPointSizeF(size * 1.1);
  const int line = QFontMetrics(ValueFont).height();
  Mark = 18;
  Number = WidthOf(ValueFont, "8") + 3 * kCellInset;
  Apparatus = WidthOf(ValueFont, "nnnnnnnnnnnnnnnn");
  Degrees = std::max(WidthOf(ValueFont, "-8888.8"), WidthOf(HeadFont, "controller  [°C]"));
  Status = std::max(WidthOf(StatusFont, "disk !"), WidthOf(StatusFont, "dyn-")) + kCellInset;
  Hours = std::max(WidthOf(ValueFont, "8888.88"), WidthOf(HeadFont, "recorded  [h]"));
  File = WidthOf(StatusFont, "m888888m.mmm");
  Button = line + 12;
  RowHeight = line + 22;
  StatusHeight = line + 8;
}

void LayOutLine(QWidget& owner, const SheetColumns& columns, const SheetLine& line) {
  LineBuilder builder(owner);
  builder.Add(line.Mark, columns.Mark);
  builder.Add(line.Number, columns.Number);
  builder.Gap(kGap);
  builder.AddWide(line.Apparatus, columns.Apparatus);
  builder.Gap(kGap);
  builder.Add(line.Reference, columns.Degrees);
  builder.Gap(kGroupGap);
  builder.Add(line.Controller, columns.Degrees);
  builder.Gap(kGap);
  builder.Add(line.ControllerStatus, columns.Status);
  builder.Gap(kGroupGap);
  builder.Add(line.Recorded, columns.Hours);
  builder.Gap(kGap);
  builder.Add(line.RecordedStatus, columns.Status);
  builder.Gap(kGroupGap);
  builder.Add(line.File, columns.File);
  builder.Gap(kGap);
  builder.Add(line.Button, columns.Button);
}

}  // namespace tavrel
