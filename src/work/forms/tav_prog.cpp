#include "work/forms/tav_prog.h"

#include <QHBoxLayout>
#include <QMenuBar>
#include <QPushButton>

#include "widgets/muted_label.h"
#include "work/program_tips.h"

namespace tavrel {
namespace {

constexpr int kMargin = 12;

}  // namespace

TavProg::TavProg(ProgramEditor& editor)
    : ModalForm("TavProg", editor.Caption()), editor_(editor), grid_(new ProgramGrid(this)) {
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
  MakeEntry(*menu, "MnuNew", "New", QKeySequence::New, &ProgramEditor::cmdNew_Click);
  MakeEntry(*menu, "MnuOpen", "Open ...", QKeySequence::Open, &ProgramEditor::cmdOpen_Click);
  MakeEntry(*menu, "MnuSave", "Save as ...", QKeySequence::Save, &ProgramEditor::cmdSave_Click);
  auto* buttons = new QHBoxLayout;
  buttons->addWidget(MakeButton("cmdNew", "New", &ProgramEditor::cmdNew_Click));
  buttons->addWidget(MakeButton("cmdOpen", "Open", &ProgramEditor::cmdOpen_Click));
  buttons->addWidget(MakeButton("cmdSave", "Save", &ProgramEditor::cmdSave_Click));
  buttons->addStretch(1);
  lb_changed_ = new MutedLabel("changed", this);
  lb_changed_->setObjectName("lb_Changed");
  buttons->addWidget(lb_changed_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  column->setSpacing(kMargin);
  column->setMenuBar(bar);
  column->addLayout(buttons);
  column->addWidget(grid_, 1);
}

void TavProg::MakeEntry(QMenu& menu, const char* name, const char* caption,
                        QKeySequence::StandardKey shortcut, Press press) {
  QAction* action = menu.addAction(caption);
  action->setObjectName(name);
  action->setShortcut(shortcut);
  connect(action, &QAction::triggered, this, [this, press] {
    (editor_.*press)();
    AfterEvent();
  });
}

QPushButton* TavProg::MakeButton(const char* name, const char* caption, Press press) {
  auto* button = new QPushButton(caption, this);
  button->setObjectName(name);
  button->setAccessibleName(caption);
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, [this, press] {
    (editor_.*press)();
    AfterEvent();
  });
  return button;
}

void TavProg::Show() {
  setWindowTitle(QtText(editor_.Caption()));
  lb_changed_->setVisible(editor_.ProgChanged());
  grid_->Show(editor_);
}

}  // namespace tavrel
