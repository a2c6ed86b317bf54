#include "work/forms/work_table.h"

#include <QGridLayout>
#include <QPainter>
#include <QScreen>
#include <algorithm>

#include "base/numbered.h"
#include "widgets/modal_form.h"
#include "widgets/muted_label.h"
#include "widgets/shades.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

enum Column { kNumber, kActual, kInput, kColor, kComments, kColumns };

constexpr Numbered<const char*, kNumber, kComments> kHeads = {
    {"no.", "actual", "input", "color", "comments"}};
constexpr int kOtherCharacters = 82;  // all else in the width of the worksheet
constexpr int kActualCharacters = 9;
constexpr int kTextAir = 18;  // beside a text in its field: margins and cursor
constexpr int kRowAir = 10;

}  // namespace

int WorkTable::TextColumn(const QFontMetrics& metrics, int screen_width) {
  const auto width_of = [&metrics](QChar letter) {
    return metrics.horizontalAdvance(QString(kTextLength, letter)) + kTextAir;
  };
  const int room = screen_width - metrics.averageCharWidth() * kOtherCharacters;
  return std::clamp(room / 2, width_of('n'), width_of('W'));
}

WorkTable::WorkTable(QWidget* parent) : QWidget(parent) {
  setObjectName("Sheet");
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(10, 4, 10, 4);
  grid->setHorizontalSpacing(10);
  grid->setVerticalSpacing(0);
  const int character = fontMetrics().averageCharWidth();
  grid->setColumnMinimumWidth(kActual, character * kActualCharacters);
  const int text_column = TextColumn(fontMetrics(), screen()->availableGeometry().width());
  grid->setColumnMinimumWidth(kInput, text_column);
  grid->setColumnMinimumWidth(kComments, text_column);
  grid->setColumnStretch(kInput, 1);
  grid->setColumnStretch(kComments, 1);
  MakeHeads(*grid);
  for (int input = 1; input <= kInputs; ++input) {
    MakeRow(*grid, input);
  }
}

void WorkTable::MakeHeads(QGridLayout& grid) {
  for (int column = 0; column < kColumns; ++column) {
    auto* head = new MutedLabel(kHeads[column], this);
    head->setObjectName(QString("head_%1").arg(column));
    const bool is_figure = column == kNumber || column == kActual;
    const bool is_text = column == kInput || column == kComments;
    head->setAlignment((is_figure ? Qt::AlignRight
                        : is_text ? Qt::AlignLeft
                                  : Qt::AlignHCenter) |
                       Qt::AlignVCenter);
    head->setIndent(is_text ? 6 : 0);
    head->setMinimumHeight(fontMetrics().height() + kRowAir);
    heads_[column] = head;
    grid.addWidget(head, 0, column);
  }
}

void WorkTable::MakeRow(QGridLayout& grid, int input) {
  Cells& row = rows_[input];
  row.number = new MutedLabel(QString::number(input), this);
  row.number->setObjectName(QString("No_%1").arg(input));
  SpeakReading(*row.number, "input");
  row.number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  row.number->setMinimumHeight(fontMetrics().height() + kRowAir);
  // The numbers share the height of the table out among the rows.
  row.number->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding);
  row.actual = new QLabel(this);
  row.actual->setObjectName(QString("Actual_%1").arg(input));
  row.actual->setTextFormat(Qt::PlainText);
  SpeakReading(*row.actual, QString("actual, input %1").arg(input));
  row.actual->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  row.prod = MakeEdit("Prod", "name", input);
  row.color = new CurveSampleButton(this);
  row.color->setObjectName(QString("Color_%1").arg(input));
  row.color->setAccessibleName(QString("color, input %1").arg(input));
  row.comments = MakeEdit("Comments", "comments", input);
  connect(row.prod, &QLineEdit::textEdited, this,
          [this, input](const QString& text) { emit ProdEdited(input, text); });
  connect(row.comments, &QLineEdit::textEdited, this,
          [this, input](const QString& text) { emit CommentsEdited(input, text); });
  connect(row.color, &QAbstractButton::clicked, this, [this, input] { emit ColorClicked(input); });
  grid.addWidget(row.number, input, kNumber);
  grid.addWidget(row.actual, input, kActual);
  grid.addWidget(row.prod, input, kInput);
  grid.addWidget(row.color, input, kColor);
  grid.addWidget(row.comments, input, kComments);
}

CellEdit* WorkTable::MakeEdit(const char* column, const char* spoken, int input) {
  auto* edit = new CellEdit(this);
  edit->setObjectName(QString("%1_%2").arg(column).arg(input));
  edit->setAccessibleName(QString("%1, input %2").arg(spoken).arg(input));
  edit->setMaxLength(kTextLength);
  edit->setFixedHeight(fontMetrics().height() + kRowAir - 2);
  return edit;
}

void WorkTable::UpdateWidgets(const WorksheetValues& now) {
  heads_[kActual]->setVisible(now.OfSlot);
  for (int input = 1; input <= kInputs; ++input) {
    rows_[input].actual->setVisible(now.OfSlot);
    ShowRow(input, now.Rows[input]);
  }
}

void WorkTable::ShowRow(int input, const WorksheetRow& row) {
  const Cells& cells = rows_[input];
  cells.number->setEnabled(row.Recorded);
  const QString actual = QtText(row.Actual);
  if (cells.actual->text() != actual) {
    cells.actual->setText(actual);
  }
  cells.prod->ShowText(row.Prod);
  cells.prod->setEnabled(row.Recorded);
  cells.comments->ShowText(row.Comments);
  cells.comments->setEnabled(row.Recorded);
  cells.color->setVisible(row.Recorded);
  cells.color->SetCode(row.ColourCode);
}

// A sheet of paper with fine lines between the rows.
void WorkTable::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Base));
  painter.setPen(Blend(palette().color(QPalette::Base), EdgeOf(palette()), 0.6));
  for (const Cells& row : rows_) {
    const int top = row.number->geometry().top();
    painter.drawLine(1, top, width() - 2, top);
  }
  painter.setPen(EdgeOf(palette()));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace tavrel
