#include "dialogs/forms/all_dir.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tavrel {

AllDir::AllDir(DirectoryChoice& choice)
    : ModalForm(choice, "ALL_DIR", " Select ..."), choice_(choice) {
  view_ = new DirectoryView(choice_.Lists(), this);
  connect(view_, &DirectoryView::Changed, this, [this] { AfterEvent(); });
  path_ = new QLabel(this);
  path_->setObjectName("path");
  path_->setTextFormat(Qt::PlainText);
  path_->setMinimumWidth(1);
  cmd_ok_ = MakeOk([this] { choice_.CmdOK_Click(); });
  auto* foot = new QHBoxLayout;
  foot->addWidget(path_, 1);
  foot->addWidget(cmd_ok_);
  foot->addWidget(MakeCancel());
  QVBoxLayout* column = MakeColumn(kListMargin);
  column->setSpacing(kNarrowMargin);
  column->addWidget(view_, 1);
  column->addLayout(foot);
  view_->FocusDirectories();
}

void AllDir::UpdateWidgets() {
  view_->UpdateWidgets();
  ShowPath();
  cmd_ok_->setToolTip(QtText(DirectoryChoice::kOkTip.In(choice_.TipLanguage())));
}

// The end of a path that is too long for its line, which the form's width decides.
void AllDir::ShowPath() {
  const QString path = QtText(choice_.Lists().Path());
  path_->setText(path_->fontMetrics().elidedText(path, Qt::ElideLeft, path_->width()));
  path_->setToolTip(path);
  path_->setAccessibleName(path);
}

void AllDir::resizeEvent(QResizeEvent* event) {
  ModalForm::resizeEvent(event);
  ShowPath();
}

}  // namespace tavrel
