#include "dialogs/forms/all_dir.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace tavrel {

AllDir::AllDir(DirectoryChoice& choice) : ModalForm("ALL_DIR", " Select ..."), choice_(choice) {
  view_ = new DirectoryView(choice_.Lists(), this);
  connect(view_, &DirectoryView::Changed, this, [this] { AfterEvent(); });
  path_ = new QLabel(this);
  path_->setObjectName("path");
  path_->setTextFormat(Qt::PlainText);
  path_->setMinimumWidth(1);
  cmd_ok_ = new QPushButton("OK", this);
  cmd_ok_->setObjectName("CmdOK");
  cmd_ok_->setAccessibleName("OK");
  cmd_ok_->setDefault(true);
  connect(cmd_ok_, &QPushButton::clicked, this, [this] {
    choice_.CmdOK_Click();
    AfterEvent();
  });
  auto* foot = new QHBoxLayout;
  foot->addWidget(path_, 1);
  foot->addWidget(cmd_ok_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(16, 16, 16, 16);
  column->setSpacing(12);
  column->addWidget(view_, 1);
  column->addLayout(foot);
  view_->FocusDirectories();
}

void AllDir::Show() {
  view_->Show();
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
