#include "service/forms/register_sheet_form.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/muted_label.h"

namespace tavrel {
namespace {

constexpr BothLanguages kProgress{"registers read", "gelesene Register"};
constexpr int kCounterCharacters = 5;
constexpr int kProgressCharacters = 24;

}  // namespace

RegisterSheetForm::RegisterSheetForm(RegisterSheet& sheet, SteppedScreens& stepped,
                                     const char* name)
    : ServiceForm(sheet, stepped, name), sheet_(sheet) {
  Arrange();
  ShowTips(kSheetTips, sheet.TipLanguage());
  grid_->setFocus();
}

void RegisterSheetForm::Arrange() {
  grid_ = new RegisterGrid(sheet_, this);
  connect(grid_, &RegisterGrid::Opened, this, [this](int row, int column) {
    sheet_.Grid_Click(row, column);
    AfterEvent();
  });
  connect(grid_, &RegisterGrid::Committed, this, &RegisterSheetForm::Commit);
  lbl_note_ = new MutedLabel("", this);
  lbl_note_->setObjectName("lbl_Note");
  lbl_note_->setTextFormat(Qt::PlainText);
  lbl_note_->setWordWrap(true);
  MakeCounter();
  QBoxLayout* foot = MakeFoot();
  foot->addWidget(cnt_);
  foot->addWidget(progress_);
  foot->addStretch(1);
  QPushButton* refresh = MakeButton("CmdRefresh", "refresh", [this] { sheet_.CmdRefresh_Click(); });
  refresh->setShortcut(Qt::Key_F5);
  foot->addWidget(refresh);
  QVBoxLayout* column = MakeColumn(kNarrowMargin);
  column->addWidget(grid_, 1);
  column->addWidget(lbl_note_);
  column->addLayout(foot);
}

void RegisterSheetForm::MakeCounter() {
  const int character = fontMetrics().averageCharWidth();
  cnt_ = new QLabel(this);
  cnt_->setObjectName("Cnt");
  cnt_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  cnt_->setFixedWidth(character * kCounterCharacters);
  progress_ = new QProgressBar(this);
  progress_->setObjectName("Progress");
  progress_->setAccessibleName(QtText(kProgress.In(sheet_.TipLanguage())));
  progress_->setTextVisible(false);
  progress_->setRange(0, sheet_.Rows());
  progress_->setFixedWidth(character * kProgressCharacters);
  for (QWidget* widget : {static_cast<QWidget*>(cnt_), static_cast<QWidget*>(progress_)}) {
    QSizePolicy keeps_its_place = widget->sizePolicy();
    keeps_its_place.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(keeps_its_place);
  }
}

void RegisterSheetForm::Commit(const QString& text) {
  const bool is_taken = sheet_.Commit(text.toStdString());
  AfterEvent();
  if (!is_taken && sheet_.IsEditing()) {
    grid_->SelectEdit();
  }
}

void RegisterSheetForm::UpdateWidgets() {
  ServiceForm::UpdateWidgets();
  grid_->Renew();
  ShowText(*cnt_, sheet_.Cnt());
  cnt_->setVisible(sheet_.IsCntShown());
  progress_->setValue(sheet_.RowsRead());
  progress_->setVisible(sheet_.IsCntShown());
  ShowText(*lbl_note_, sheet_.Note());
}

// Enter commits an edit from wherever the keyboard is.
void RegisterSheetForm::keyPressEvent(QKeyEvent* event) {
  const bool is_enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (is_enter && sheet_.IsEditing()) {
    if (!event->isAutoRepeat()) {
      Commit(grid_->findChild<CellEdit*>("txtEdit")->text());
    }
    return;
  }
  ServiceForm::keyPressEvent(event);
}

// The close box does not stop at an edit.
void RegisterSheetForm::closeEvent(QCloseEvent* event) {
  sheet_.CancelEdit();
  ServiceForm::closeEvent(event);
}

}  // namespace tavrel
