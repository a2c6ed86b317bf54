#include "main/forms/sheet_columns.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "state/state_words.h"
#include "widgets/form_texts.h"

namespace tavrel {
namespace {

int WidthOf(const QFont& font, std::string_view text) {
  return QFontMetrics(font).horizontalAdvance(QtText(text)) + 2;
}

int WidestOf(const QFont& font, std::initializer_list<std::string_view> texts) {
  int widest = 0;
  for (const std::string_view text : texts) {
    widest = std::max(widest, WidthOf(font, text));
  }
  return widest;
}

// Puts widgets, or blanks of the same width, side by side.
class LineBuilder {
 public:
  LineBuilder(QWidget& owner, int margin) : box_(new QHBoxLayout(&owner)) {
    box_->setContentsMargins(margin, 0, margin, 0);
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

// How the type is set: sizes in parts of the desktop's, the rest in logical pixels.
struct SheetColumns::Setting {
  qreal head;
  qreal value;
  qreal status;
  int margin;
  int gap;
  int group_gap;
  int cell_inset;    // both sides of a text in a coloured cell together
  const char* name;  // what shows of the apparatus at least
  int row_air;       // above and below the figures together
};

SheetColumns::SheetColumns(const QFont& base, int room) {
  Measure(base, {0.95, 1.35, 1.1, 12, 10, 26, 16, "nnnnnnnnnnnnnnnn", 22});
  if (LineWidth() + 2 * Margin > room) {
    Measure(base, {0.8, 1.05, 0.95, 4, 4, 3, 6, "nnnnnnnnn", 14});
  }
}

void SheetColumns::Measure(const QFont& base, const Setting& setting) {
  const qreal size = base.pointSizeF() > 0 ? base.pointSizeF() : 9;
  const auto sized = [&base, size](qreal part) {
    QFont font = base;
    font.setPointSizeF(size * part);
    return font;
  };
  HeadFont = sized(setting.head);
  ValueFont = sized(setting.value);
  StatusFont = sized(setting.status);
  Margin = setting.margin;
  Gap = setting.gap;
  GroupGap = setting.group_gap;
  const int line = QFontMetrics(ValueFont).height();
  const int button_air = setting.row_air / 2;
  Mark = line - 2;
  Number = WidthOf(ValueFont, "8") + 3 * setting.cell_inset;
  Apparatus = WidthOf(ValueFont, setting.name);
  Degrees = std::max(WidthOf(ValueFont, "-8888.8"), WidthOf(HeadFont, "controller  [°C]"));
  Status = WidestOf(StatusFont, {state_word::kFile.English, state_word::kFile.German, "dyn-"}) +
           setting.cell_inset;
  Hours = std::max(WidthOf(ValueFont, "888888.88"), WidthOf(HeadFont, "recorded  [h]"));
  File = WidthOf(StatusFont, "mmmmmmmm.mmm");  // "m260314a.ovn" and any other name
  Button = line + button_air;
  RowHeight = line + setting.row_air;
  StatusHeight = line + 8;
}

int SheetColumns::LineWidth() const {
  const int cells = Mark + Number + Apparatus + 2 * Degrees + Hours + 2 * Status + File + Button;
  return cells + 5 * Gap + 3 * GroupGap + 2 * Margin;
}

void LayOutLine(QWidget& owner, const SheetColumns& columns, const SheetLine& line) {
  LineBuilder builder(owner, columns.Margin);
  builder.Add(line.Mark, columns.Mark);
  builder.Add(line.Number, columns.Number);
  builder.Gap(columns.Gap);
  builder.AddWide(line.Apparatus, columns.Apparatus);
  builder.Gap(columns.Gap);
  builder.Add(line.Reference, columns.Degrees);
  builder.Gap(columns.GroupGap);
  builder.Add(line.Controller, columns.Degrees);
  builder.Gap(columns.Gap);
  builder.Add(line.ControllerStatus, columns.Status);
  builder.Gap(columns.GroupGap);
  builder.Add(line.Recorded, columns.Hours);
  builder.Gap(columns.Gap);
  builder.Add(line.RecordedStatus, columns.Status);
  builder.Gap(columns.GroupGap);
  builder.Add(line.File, columns.File);
  builder.Gap(columns.Gap);
  builder.Add(line.Button, columns.Button);
}

}  // namespace tavrel
