#include "main/forms/sheet_table.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>

#include "base/tool_tips.h"
#include "main/main_texts.h"
#include "widgets/form_texts.h"
#include "widgets/muted_label.h"
#include "widgets/shades.h"

namespace tavrel {
namespace {

constexpr int kGap = 12;
constexpr int kPaperEdge = 1;
constexpr int kNameIndent = 7;  // where the text of an edit field begins

// A sheet of paper on the window: base colour, fine edge, rounded corners. What is set apart
// from the live rows lies on a paler sheet.
class Paper : public QWidget {
 public:
  Paper(qreal whiteness, QWidget* parent) : QWidget(parent), whiteness_(whiteness) {}

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(EdgeOf(palette()));
    const QColor window = palette().color(QPalette::Window);
    painter.setBrush(Blend(window, palette().color(QPalette::Base), whiteness_));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
  }

 private:
  qreal whiteness_;
};

// The head of a column of temperatures with its unit, above the end of the figures.
QWidget* WithUnit(QLabel* head) {
  auto* both = new QWidget(head->parentWidget());
  auto* box = new QHBoxLayout(both);
  box->setContentsMargins(0, 0, 0, 0);
  box->setSpacing(0);
  auto* unit = new MutedLabel("  [°C]", both);
  unit->setFont(head->font());
  box->addStretch(1);
  box->addWidget(head);
  box->addWidget(unit);
  return both;
}

QVBoxLayout* MakeStack(QWidget* owner) {
  auto* stack = new QVBoxLayout(owner);
  stack->setContentsMargins(kPaperEdge, kPaperEdge, kPaperEdge, kPaperEdge);
  stack->setSpacing(0);
  return stack;
}

}  // namespace

SheetTable::SheetTable(QWidget* parent)
    : QWidget(parent), columns_(font(), screen()->availableGeometry().width()) {
  auto* stack = new QVBoxLayout(this);
  const int margin = columns_.Margin;
  stack->setContentsMargins(margin, margin, margin, margin);
  stack->setSpacing(kGap);
  stack->addWidget(MakePanel());
  stack->addStretch(1);
  stack->addWidget(MakeCommands());
  stack->addWidget(MakeViewed());
  setMinimumWidth(SizeWith(0).width());
  ShowTips(tip_language_);
}

QWidget* SheetTable::MakePanel() {
  pic_actual_ = new Paper(1.0, this);
  pic_actual_->setObjectName("picActual");
  auto* stack = MakeStack(pic_actual_);
  stack->addWidget(MakeHeads(pic_actual_));
  for (int row = 1; row <= kSlots; ++row) {
    stack->addWidget(MakeRow(row, pic_actual_));
  }
  pic_actual_->hide();
  return pic_actual_;
}

QWidget* SheetTable::MakeHeads(QWidget* parent) {
  heads_ = new QWidget(parent);
  std::array<QLabel*, SheetHeads::head.size()> heads{};
  for (std::size_t place = 0; place < heads.size(); ++place) {
    heads.at(place) = new MutedLabel(SheetHeads::head.at(place), heads_);
    heads.at(place)->setObjectName(QString("head_%1").arg(place));
    heads.at(place)->setFont(columns_.HeadFont);
  }
  const auto [tavrel, apparatus, controller, filename, recorded, reference] = heads;
  tavrel->setAlignment(Qt::AlignCenter);
  apparatus->setIndent(kNameIndent);
  recorded->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  LayOutLine(*heads_, columns_,
             {nullptr, tavrel, apparatus, WithUnit(reference), WithUnit(controller), nullptr,
              recorded, nullptr, filename, nullptr});
  heads_->setFixedHeight(QFontMetrics(columns_.HeadFont).height() + 14);
  return heads_;
}

SheetRowView* SheetTable::MakeRow(int row, QWidget* parent) {
  auto* view = new SheetRowView(row, columns_, parent);
  rows_[row] = view;
  connect(view, &SheetRowView::NumberClicked, this, &SheetTable::NumberClicked);
  connect(view, &SheetRowView::NameEdited, this, &SheetTable::NameEdited);
  connect(view, &SheetRowView::WorkClicked, this, &SheetTable::WorkClicked);
  return view;
}

QWidget* SheetTable::MakeCommands() {
  pic_cmds_ = new QWidget(this);
  pic_cmds_->setObjectName("picCmds");
  QSizePolicy keeps_its_place = pic_cmds_->sizePolicy();
  keeps_its_place.setRetainSizeWhenHidden(true);
  pic_cmds_->setSizePolicy(keeps_its_place);
  auto* box = new QHBoxLayout(pic_cmds_);
  box->setContentsMargins(0, 0, 0, 0);
  cmd_open_ = new GlyphButton(DrawFolderGlyph, pic_cmds_);
  cmd_open_->setObjectName("cmd_Open");
  cmd_open_->setText("Open");
  cmd_open_->setAccessibleName("Open a file");
  cmd_open_->setShortcut(QKeySequence::Open);
  cmd_open_->setEnabled(false);
  connect(cmd_open_, &GlyphButton::clicked, this, &SheetTable::OpenClicked);
  box->addWidget(cmd_open_);
  box->addStretch(1);
  return pic_cmds_;
}

QWidget* SheetTable::MakeViewed() {
  auto* paper = new Paper(0.35, this);
  auto* stack = MakeStack(paper);
  no_viewed_ = new MutedLabel("", paper);
  no_viewed_->setAlignment(Qt::AlignCenter);
  no_viewed_->setFixedHeight(columns_.RowHeight);
  stack->addWidget(no_viewed_);
  stack->addWidget(MakeRow(kViewedFile, paper));
  return paper;
}

QSize SheetTable::SizeWith(int rows) const {
  const int commands = pic_cmds_->sizeHint().height() + columns_.RowHeight;
  const int height = heads_->height() + rows * columns_.RowHeight + commands + 3 * kGap;
  const int around = 2 * columns_.Margin;
  return {columns_.LineWidth() + 2 * kPaperEdge + around, height + 4 * kPaperEdge + around};
}

void SheetTable::UpdateWidgets(const SheetValues& now) {
  for (int row = kViewedFile; row <= kSlots; ++row) {
    rows_[row]->UpdateWidgets(now.Rows[row]);
  }
  no_viewed_->setVisible(!now.Rows[kViewedFile].Sheet);
  pic_actual_->setVisible(now.picActual);
  pic_cmds_->setVisible(now.picCmds);
  cmd_open_->setEnabled(now.cmd_OpenEnabled);
  if (now.TipLanguage != tip_language_) {
    ShowTips(now.TipLanguage);
  }
}

void SheetTable::ShowTips(Language language) {
  tip_language_ = language;
  for (SheetRowView* row : rows_) {
    row->ShowTips(language);
  }
  no_viewed_->setText(QtText(main_text::kNoFileOpened.In(language)));
  for (const ToolTip& tip : kMainSheetTips) {
    if (tip.Control == "cmd_Open") {
      cmd_open_->setToolTip(QtText(tip.Text.In(language)));
    }
  }
}

}  // namespace tavrel
