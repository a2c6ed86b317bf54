#include "dialogs/forms/all_copy.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

#include "dialogs/file_tips.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr int kGap = 12;

}  // namespace

AllCopy::AllCopy(CopyFiles& copy_files)
    : ModalForm(copy_files, "ALL_COPY", " Copy"), copy_files_(copy_files) {
  MakeLists();
  MakeFoot();
  Arrange();
  directories_->FocusDirectories();
}

void AllCopy::MakeLists() {
  lb_path_ = new QLabel(this);
  lb_path_->setObjectName("lbPath");
  lb_path_->setTextFormat(Qt::PlainText);
  lb_path_->setMinimumWidth(1);
  directories_ = new DirectoryView(copy_files_.Lists(), this);
  connect(directories_, &DirectoryView::Changed, this, [this] {
    copy_files_.Lists_Change();
    AfterEvent();
  });
}

void AllCopy::MakeFoot() {
  no_files_ = new QLabel(this);
  no_files_->setObjectName("noFiles");
  SpeakReading(*no_files_, "no. of files");
  progress_ = new QProgressBar(this);
  progress_->setObjectName("PbCopy");
  progress_->setAccessibleName("copying");
  progress_->setTextVisible(false);
  progress_->hide();
  cmd_copy_ = MakeButton("cmdCopy", "Copy",
                         [this] { copy_files_.cmdCopy_Click([this] { UpdateWidgets(); }); });
  cmd_copy_->setDefault(true);
}

void AllCopy::Arrange() {
  auto* head = new QHBoxLayout;
  head->addWidget(new QLabel("Copy to:", this));
  head->addWidget(lb_path_, 1);
  auto* foot = new QHBoxLayout;
  foot->addWidget(new QLabel(" no. of files ", this));
  foot->addWidget(no_files_);
  foot->addWidget(progress_, 1);
  foot->addStretch(1);
  foot->addWidget(cmd_copy_);
  foot->addWidget(MakeCancel());
  QVBoxLayout* column = MakeColumn(kListMargin);
  column->setSpacing(kGap);
  column->addLayout(head);
  column->addWidget(directories_, 1);
  column->addLayout(foot);
}

void AllCopy::UpdateWidgets() {
  const CopyFilesValues& now = copy_files_.Values();
  directories_->UpdateWidgets();
  ShowPath();
  no_files_->setText(QtText(now.noFiles));
  progress_->setVisible(now.Progress != kNoProgress);
  progress_->setValue(now.Progress);
  directories_->setEnabled(!now.IsCopying);
  cmd_copy_->setEnabled(!now.IsCopying);
  cmd_copy_->setToolTip(QtText(kCopyFilesTips.front().Text.In(now.TipLanguage)));
}

// The end of a path that is too long for its line, which the form's width decides.
void AllCopy::ShowPath() {
  const QString path = QtText(copy_files_.Values().lbPath);
  lb_path_->setText(lb_path_->fontMetrics().elidedText(path, Qt::ElideLeft, lb_path_->width()));
  lb_path_->setToolTip(path);
  lb_path_->setAccessibleName(path);
}

void AllCopy::resizeEvent(QResizeEvent* event) {
  ModalForm::resizeEvent(event);
  ShowPath();
}

}  // namespace tavrel
