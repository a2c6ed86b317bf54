#include "main/forms/sheet_row_view.h"

#include <QHBoxLayout>
#include <QKeySequence>
#include <QPainter>

#include "base/tool_tips.h"
#include "main/main_texts.h"
#include "widgets/form_texts.h"
#include "widgets/shades.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

// The designation is 20 bytes, of which the file extension and a colon take four.
constexpr int kNameLength = 20 - 4;

// The mark of the selected instrument.
class SelectMark : public QWidget {
 public:
  explicit SelectMark(QWidget* parent) : QWidget(parent) {
    QSizePolicy keeps_its_place = sizePolicy();
    keeps_its_place.setRetainSizeWhenHidden(true);
    setSizePolicy(keeps_its_place);
    setFixedHeight(kSide);
    SpeakAs(*this, QAccessible::Graphic);
    hide();
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    DrawSelectGlyph(painter, QRectF(0, 0, kSide, kSide), palette().color(QPalette::Highlight));
  }

 private:
  static constexpr int kSide = 13;
};

// Ctrl and the number of the row; the ten of 10 to 12 is Alt. Ctrl+0 is the viewed file.
QKeySequence KeyOfRow(int row) {
  constexpr int kTen = 10;
  const Qt::KeyboardModifier with = row < kTen ? Qt::ControlModifier : Qt::AltModifier;
  return {QKeyCombination(with, static_cast<Qt::Key>(Qt::Key_0 + row % kTen))};
}

// The one child fills the cell.
void Fill(QWidget* cell, QWidget* child) {
  auto* box = new QHBoxLayout(cell);
  box->setContentsMargins(0, 0, 0, 0);
  box->addWidget(child);
}

}  // namespace

SheetRowView::SheetRowView(int row, const SheetColumns& columns, QWidget* parent)
    : QWidget(parent), row_(row) {
  setObjectName(QString("Sheet_%1").arg(row));
  setAccessibleName(row == 0 ? QString("viewed file") : QString("row %1").arg(row));
  MakeNumber(columns);
  MakeName(columns);
  lb_ref_ = MakeValue("lb_Ref", columns.ValueFont, Qt::AlignRight, columns);
  lb_ctrl_ = MakeValue("lb_Ctrl", columns.ValueFont, Qt::AlignRight, columns);
  cstat_ = MakeStatus("sh_Cstat", "lb_Cstat", columns);
  lb_rec_ = MakeValue("lb_Rec", columns.ValueFont, Qt::AlignRight, columns);
  rstat_ = MakeStatus("sh_Rstat", "lb_Rstat", columns);
  lb_file_ = MakeValue("lb_File", columns.StatusFont, Qt::AlignLeft, columns);
  MakeButton(columns);
  LayOutLine(*this, columns,
             {img_tav_sel_, sh_tav_no_, tx_des_, lb_ref_, lb_ctrl_, cstat_.Shape, lb_rec_,
              rstat_.Shape, lb_file_, cmd_work_});
  setFixedHeight(columns.RowHeight);
  hide();
}

template <typename Widget>
Widget* SheetRowView::Named(Widget* widget, std::string_view control) {
  widget->setObjectName(QtText(control) + QString("_%1").arg(row_));
  controls_.emplace_back(control, widget);
  return widget;
}

QLabel* SheetRowView::MakeValue(std::string_view control, const QFont& font,
                                Qt::Alignment alignment, const SheetColumns& columns) {
  auto* label = Named(new QLabel(this), control);
  label->setFont(font);
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(alignment | Qt::AlignVCenter);
  // Of a fixed size a new text is painted; of any other the whole window is laid out anew.
  label->setFixedHeight(columns.StatusHeight);
  return label;
}

SheetRowView::StatusCell SheetRowView::MakeStatus(std::string_view shape, std::string_view word,
                                                  const SheetColumns& columns) {
  StatusCell cell{Named(new ColourCell(this), shape),
                  MakeValue(word, columns.StatusFont, Qt::AlignHCenter, columns)};
  cell.Shape->setFixedHeight(columns.StatusHeight);
  Fill(cell.Shape, cell.Word);
  return cell;
}

void SheetRowView::MakeNumber(const SheetColumns& columns) {
  img_tav_sel_ = Named(new SelectMark(this), "imgTavSel");
  img_tav_sel_->setAccessibleName("Tavrel selected");
  sh_tav_no_ = Named(new ColourCell(this), "sh_TavNo");
  sh_tav_no_->SetAlarmGlyph(DrawWarningGlyph);
  sh_tav_no_->setFixedHeight(columns.StatusHeight);
  lb_tav_no_ = Named(new GlyphButton(nullptr, sh_tav_no_), "lb_TavNo");
  lb_tav_no_->setFont(columns.ValueFont);
  lb_tav_no_->setAccessibleName(Called("tavrel"));
  lb_tav_no_->SetFlat(true);
  Fill(sh_tav_no_, lb_tav_no_);
  connect(lb_tav_no_, &GlyphButton::clicked, this, [this] { emit NumberClicked(row_); });
}

void SheetRowView::MakeName(const SheetColumns& columns) {
  tx_des_ = Named(new GuardedEdit(this), "tx_Des");
  tx_des_->setFont(columns.ValueFont);
  tx_des_->setMaxLength(kNameLength);
  tx_des_->setFixedHeight(columns.StatusHeight);
  tx_des_->setEnabled(false);
  tx_des_->setAccessibleName(Called("apparatus"));
  connect(tx_des_, &GuardedEdit::textEdited, this,
          [this](const QString& text) { emit NameEdited(row_, text); });
}

void SheetRowView::MakeButton(const SheetColumns& columns) {
  cmd_work_ = Named(new GlyphButton(DrawCurveGlyph, this), "cmd_Work");
  cmd_work_->setFixedHeight(columns.StatusHeight);
  cmd_work_->setEnabled(false);
  cmd_work_->setAccessibleName(Called("worksheet"));
  cmd_work_->setShortcut(KeyOfRow(row_));
  connect(cmd_work_, &GlyphButton::clicked, this, [this] { emit WorkClicked(row_); });
}

// Each control says its row to those who cannot see where it stands.
QString SheetRowView::Called(const char* head) const {
  return row_ == 0 ? QString("%1, viewed file").arg(head)
                   : QString("%1, row %2").arg(head).arg(row_);
}

void SheetRowView::UpdateWidgets(const SheetRow& now) {
  ShowNumber(now);
  tx_des_->ShowText(now.tx_Des);
  tx_des_->setEnabled(now.tx_DesEnabled);
  ShowLabel(lb_ref_, "reference", shown_.lb_Ref, now.lb_Ref);
  ShowLabel(lb_ctrl_, "controller", shown_.lb_Ctrl, now.lb_Ctrl);
  ShowLabel(cstat_.Word, "controller state", shown_.lb_Cstat, now.lb_Cstat);
  cstat_.Shape->SetColour(now.sh_Cstat);
  ShowLabel(lb_rec_, "recorded hours", shown_.lb_Rec, now.lb_Rec);
  ShowLabel(rstat_.Word, "recording state", shown_.lb_Rstat, now.lb_Rstat);
  rstat_.Shape->SetColour(now.sh_Rstat);
  ShowLabel(lb_file_, "filename", shown_.lb_File, now.lb_File);
  cmd_work_->setEnabled(now.cmd_WorkEnabled);
  if (now.RstatNote != shown_.RstatNote) {
    shown_.RstatNote = now.RstatNote;
    ShowTip(rstat_, shown_.RstatNote);
  }
  if (now.CstatNote != shown_.CstatNote) {
    shown_.CstatNote = now.CstatNote;
    ShowTip(cstat_, shown_.CstatNote);
  }
  if (now.Sheet != shown_.Sheet) {
    shown_.Sheet = now.Sheet;
    setVisible(now.Sheet);
  }
}

void SheetRowView::ShowNumber(const SheetRow& now) {
  const bool changed = now.lb_TavNo != shown_.lb_TavNo || now.sh_TavNo != shown_.sh_TavNo;
  if (changed) {
    shown_.lb_TavNo = now.lb_TavNo;
    shown_.sh_TavNo = now.sh_TavNo;
    lb_tav_no_->setText(QtText(now.lb_TavNo));
    sh_tav_no_->SetColour(now.sh_TavNo);
    const bool is_silent = now.sh_TavNo == kOrange;
    lb_tav_no_->setAccessibleDescription(is_silent ? QtText(main_text::kNoAnswer.In(language_))
                                                   : "");
    lb_tav_no_->setAccessibleName(Called("tavrel") + ": " + QtText(now.lb_TavNo));
  }
  if (now.TavNoNote != shown_.TavNoNote) {
    shown_.TavNoNote = now.TavNoNote;
    ShowNumberTip();
  }
  if (now.imgTavSel != shown_.imgTavSel) {
    shown_.imgTavSel = now.imgTavSel;
    img_tav_sel_->setVisible(now.imgTavSel);
  }
}

void SheetRowView::ShowLabel(QLabel* label, const char* head, std::string& shown,
                             const std::string& now) {
  if (now == shown) {
    return;
  }
  shown = now;
  label->setText(QtText(now));
  // A reader speaks the accessible name in place of the text, so the text is part of it.
  label->setAccessibleName(Called(head) + ": " + QtText(now));
}

void SheetRowView::ShowTips(Language language) {
  language_ = language;
  for (const ToolTip& tip : kMainSheetTips) {
    for (const auto& [control, widget] : controls_) {
      if (control == tip.Control) {
        widget->setToolTip(QtText(tip.Text.In(language)));
      }
    }
  }
  rstat_.Tip = rstat_.Word->toolTip();
  cstat_.Tip = cstat_.Word->toolTip();
  tav_no_tip_ = lb_tav_no_->toolTip();
  ShowTip(rstat_, shown_.RstatNote);
  ShowTip(cstat_, shown_.CstatNote);
  ShowNumberTip();
}

void SheetRowView::ShowNumberTip() {
  lb_tav_no_->setToolTip(shown_.TavNoNote.empty() ? tav_no_tip_ : QtText(shown_.TavNoNote));
}

// What is wrong takes the place of what the cell is for.
void SheetRowView::ShowTip(const StatusCell& cell, const std::string& note) {
  cell.Word->setToolTip(note.empty() ? cell.Tip : QtText(note));
}

// A fine line separates the row from what stands above it. At a scale such as 1.25 a stroke at the
// edge may fall outside; an area never does.
void SheetRowView::paintEvent(QPaintEvent* /*event*/) {
  if (row_ == 0) {
    return;
  }
  QPainter painter(this);
  painter.fillRect(0, 0, width(), 1,
                   Blend(palette().color(QPalette::Base), EdgeOf(palette()), 0.6));
}

}  // namespace tavrel
