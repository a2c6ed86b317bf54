#include "frame/forms/sheet_table.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include "frame/forms/shades.h"
#include "frame/tool_tips.h"

namespace tavrel {
namespace {

constexpr int kMargin = 14;
constexpr int kGap = 12;

// A sheet of paper on the window: base colour, fine edge, rounded corners.
class Paper : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(EdgeOf(palette()));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
  }
};

// A word that tells what something is: less weight than what it tells about.
QLabel* MakeMuted(const QString& text, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  QPalette muted;
  muted.setColor(QPalette::WindowText, MutedOf(parent->palette()));
  label->setPalette(muted);
  return label;
}

QVBoxLayout* MakeStack(QWidget* owner) {
  auto* stack = new QVBoxLayout(owner);
  stack->setContentsMargins(1, 1, 1, 1);
  stack->setSpacing(0);
  return stack;
}

}  // namespace

SheetTable::SheetTable(QWidget* parent) : QWidget(parent), columns_(font()) {
  auto* stack = new QVBoxLayout(this);
  stack->setContentsMargins(kMargin, kMargin, kMargin, kMargin / 2);
  stack->setSpacing(kGap);
  stack->addWidget(MakePanel());
  stack->addStretch(1);
  stack->addWidget(MakeCommands());
  stack->addWidget(MakeViewed());
  ShowTips(tip_language_);
}

QWidget* SheetTable::MakePanel() {
  pic_actual_ = new Paper(this);
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
    heads.at(place) = MakeMuted(SheetHeads::head.at(place), heads_);
    heads.at(place)->setObjectName(QString("head_%1").arg(place));
    heads.at(place)->setFont(columns_.HeadFont);
  }
  const auto [tavrel, apparatus, controller, filename, recorded, reference] = heads;
  apparatus->setIndent(7);
  for (QLabel* figures : {controller, recorded, reference}) {
    figures->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  }
  tavrel->setAlignment(Qt::AlignHCenter | Qt::AlignVCenter);
  LayOutLine(*heads_, columns_,
             {nullptr, tavrel, apparatus, reference, controller, nullptr, recorded, nullptr,
              filename, nullptr});
  heads_->setFixedHeight(QFontMetrics(columns_.HeadFont).height() + 14);
  return heads_;
}

SheetRowView* SheetTable::MakeRow(int row, QWidget* parent) {
  auto* view = new SheetRowView(row, columns_, parent);
  rows_.at(static_cast<std::size_t>(row)) = view;
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
  auto* paper = new QWidget(this);
  auto* stack = MakeStack(paper);
  no_viewed_ = MakeMuted("no file opened", paper);
  no_viewed_->setFixedHeight(columns_.RowHeight);
  stack->addWidget(no_viewed_);
  stack->addWidget(MakeRow(kViewedFile, paper));
  return paper;
}

int SheetTable::HeightWith(int rows) const {
  const int below = pic_cmds_->sizeHint().height() + columns_.RowHeight + 2 * 1;
  return heads_->height() + rows * columns_.RowHeight + below + 3 * kGap + 2 * kMargin;
}

void SheetTable::Show(const SheetValues& now) {
  for (std::size_t row = 0; row < rows_.size(); ++row) {
    rows_.at(row)->Show(now.Rows.at(row));
  }
  no_viewed_->setVisible(!now.Rows.front().Sheet);
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
  for (const ToolTip& tip : kMainSheetTips) {
    if (tip.Control == "cmd_Open") {
      const std::string_view text = tip.Text.In(language);
      cmd_open_->setToolTip(QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    }
  }
}

}  // namespace tavrel
