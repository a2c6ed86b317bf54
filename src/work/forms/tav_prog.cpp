#include "work/forms/tav_prog.h"

#include <QHBoxLayout>
#include <QMenuBar>
#include <QPushButton>

#include "widgets/muted_label.h"
#include "work/program_tips.h"

namespace tavrel {
namespace {

constexpr BothLanguages kChanged{"changed", "geändert"};

}  // namespace

TavProg::TavProg(ProgramEditor& editor)
    : ModalForm(editor, "TavProg", editor.Caption()),
      editor_(editor),
      grid_(new ProgramGrid(this)) {
  ConnectGrid();
  Arrange();
  ShowTips(kProgramTips, editor_.TipLanguage());
  grid_->setFocus();
}

void TavProg::ConnectGrid() {
  connect(grid_, &ProgramGrid::CellClicked, this, [this](int row, int column) {
    editor_.Grid_Click(row, column);
    AfterEvent();
  });
  connect(grid_, &ProgramGrid::TextTyped, this, [this](const QString& text) {
    editor_.txtEdit_Change(text.toStdString());
    AfterEvent();
  });
  connect(grid_, &ProgramGrid::LineChosen, this, [this](int index) {
    editor_.Cstat_Click(index);
    AfterEvent();
  });
  connect(grid_, &ProgramGrid::Moved, this, [this](int rows, int columns) {
    editor_.MoveEdit(rows, columns);
    AfterEvent();
  });
  connect(grid_, &ProgramGrid::Dropped, this, [this] {
    editor_.DropEdit();
    AfterEvent();
  });
}

void TavProg::Arrange() {
  auto* bar = new QMenuBar(this);
  QMenu* menu = bar->addMenu("Program  ");
  const auto begin = [this] { editor_.cmdNew_Click(); };
  const auto open = [this] { editor_.cmdOpen_Click(); };
  const auto save = [this] { editor_.cmdSave_Click(); };
  AddEntry(*menu, "MnuNew", "New", begin, QKeySequence::New);
  AddEntry(*menu, "MnuOpen", "Open ...", open, QKeySequence::Open);
  AddEntry(*menu, "MnuSave", "Save as ...", save, QKeySequence::Save);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(MakeButton("cmdNew", "New", begin));
  buttons->addWidget(MakeButton("cmdOpen", "Open", open));
  buttons->addWidget(MakeButton("cmdSave", "Save", save));
  buttons->addStretch(1);
  lb_changed_ = new MutedLabel(QtText(kChanged.In(editor_.TipLanguage())), this);
  lb_changed_->setObjectName("lb_Changed");
  buttons->addWidget(lb_changed_);
  QVBoxLayout* column = MakeColumn(kNarrowMargin);
  column->setMenuBar(bar);
  column->addLayout(buttons);
  column->addWidget(grid_, 1);
  profile_ = new ProgramCurve(editor_.TipLanguage(), this);
  column->addWidget(profile_);
}

void TavProg::UpdateWidgets() {
  setWindowTitle(QtText(editor_.Caption()));
  lb_changed_->setVisible(editor_.ProgChanged());
  grid_->UpdateWidgets(editor_);
  profile_->Show(ProgramProfile(editor_.Rows()));
}

}  // namespace tavrel
