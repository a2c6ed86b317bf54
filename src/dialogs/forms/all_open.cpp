#include "dialogs/forms/all_open.h"

#include <QApplication>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <chrono>

#include "dialogs/file_tips.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr int kColumnGap = 12;
constexpr BothLanguages kCancel{"Cancel", "Abbrechen"};
constexpr BothLanguages kVerify{"Verify", "Prüfen"};
constexpr BothLanguages kStop{"Stop", "Anhalten"};

// A form that is never painted must list its files all the same.
constexpr std::chrono::milliseconds kPaintLimit{400};

}  // namespace

AllOpen::AllOpen(OpenFile& open_file)
    : ModalForm(open_file, "ALL_OPEN", " Files"), open_file_(open_file) {
  MakeGrid();
  MakePath();
  MakeCommands();
  Arrange();
  connect(qApp, &QApplication::focusChanged, this, &AllOpen::FollowFocus);
  first_display_.setSingleShot(true);
  connect(&first_display_, &QTimer::timeout, this, [this] {
    open_file_.Display([this] { UpdateWidgets(); });
    AfterEvent();
  });
  grid_->FocusRows();
}

void AllOpen::MakeGrid() {
  grid_ = new FileGrid(open_file_.Rows(), open_file_.Values().TipLanguage, this);
  connect(grid_, &FileGrid::Selected, this, [this](int current_row, RowBlock block) {
    open_file_.Select(current_row, block);
    AfterEvent();
  });
  connect(grid_, &FileGrid::Opened, this, [this] {
    open_file_.cmdOpen_Click();
    AfterEvent();
  });
  connect(grid_, &FileGrid::FileHeadPressed, this, [this] {
    open_file_.cmdFile_Click();
    AfterEvent();
  });
  connect(grid_, &FileGrid::DetailHeadPressed, this, [this](IndexColumn column) {
    open_file_.SortBy(column);
    AfterEvent();
  });
  connect(grid_, &FileGrid::ProductHeadPressed, this, [this] {
    open_file_.cmdProduct_Click();
    AfterEvent();
  });
}

void AllOpen::MakePath() {
  fr_path_ = new QGroupBox("directory", this);
  fr_path_->setObjectName("frPath");
  directories_ = new DirectoryView(open_file_.Lists(), fr_path_);
  connect(directories_, &DirectoryView::Changed, this, [this] { AfterEvent(); });
  cmd_new_ = MakeButton("cmdNew", "OK", [this] {
    open_file_.cmdNew_Click([this] { UpdateWidgets(); });
    grid_->FocusRows();
  });
  cmd_new_->setAccessibleName("OK, list the files of this directory");
  auto* column = new QVBoxLayout(fr_path_);
  column->setSpacing(kColumnGap);
  column->addWidget(directories_, 1);
  column->addWidget(cmd_new_, 0, Qt::AlignRight);
}

void AllOpen::MakeCommands() {
  no_files_ = new QLabel(this);
  no_files_->setObjectName("noFiles");
  SpeakReading(*no_files_, "no. of files");
  progress_ = new QProgressBar(this);
  progress_->setObjectName("PbIndex");
  progress_->setAccessibleName("reading the directory");
  progress_->setTextVisible(false);
  progress_->hide();
  cmd_copy_ = MakeButton("cmdCopy", "Copy ...", [this] { open_file_.cmdCopy_Click(); });
  const Language language = open_file_.TextLanguage();
  cmd_verify_ = MakeButton("cmdVerify", QtText(kVerify.In(language)).toUtf8(),
                           [this] { open_file_.cmdVerify_Click([this] { UpdateWidgets(); }); });
  cmd_open_ = MakeButton("cmdOpen", "Open", [this] { open_file_.cmdOpen_Click(); });
  const QString cancel = QtText(kCancel.In(language));
  cmd_back_ = MakeButton("cmdBack", cancel.toUtf8(), [this] { open_file_.cmdBack_Click(); });
}

void AllOpen::Arrange() {
  auto* count = new QHBoxLayout;
  count->addWidget(new QLabel(" no. of files ", this));
  count->addWidget(no_files_);
  count->addWidget(progress_, 1);
  count->addStretch(1);
  count->addWidget(cmd_verify_);
  count->addWidget(cmd_copy_);
  auto* files = new QVBoxLayout;
  files->setSpacing(kColumnGap);
  files->addWidget(grid_, 1);
  files->addLayout(count);
  auto* leave = new QHBoxLayout;
  leave->addStretch(1);
  leave->addWidget(cmd_open_);
  leave->addWidget(cmd_back_);
  auto* right = new QVBoxLayout;
  right->setSpacing(kColumnGap);
  right->addWidget(fr_path_, 1);
  right->addLayout(leave);
  auto* all = new QHBoxLayout(this);
  all->setContentsMargins(kListMargin, kListMargin, kListMargin, kListMargin);
  all->setSpacing(kListMargin);
  all->addLayout(files, 3);
  all->addLayout(right, 2);
}

// The default button shows what the Enter key does where the keyboard is.
void AllOpen::FollowFocus() {
  const QWidget* focus = focusWidget();
  const bool in_path = focus != nullptr && fr_path_->isAncestorOf(focus);
  (in_path ? cmd_new_ : cmd_open_)->setDefault(true);
}

void AllOpen::UpdateWidgets() {
  const OpenFileValues& now = open_file_.Values();
  grid_->UpdateWidgets(now);
  directories_->UpdateWidgets();
  no_files_->setText(QtText(now.noFiles));
  progress_->setVisible(now.Progress != kNoProgress);
  progress_->setValue(now.Progress);
  cmd_copy_->setEnabled(now.cmdCopyEnabled);
  cmd_verify_->setEnabled(now.cmdVerifyEnabled);
  ShowVerifying(now.IsVerifying);
  cmd_open_->setEnabled(!now.IsVerifying);
  cmd_new_->setEnabled(!now.IsVerifying);
  directories_->setEnabled(!now.IsVerifying);
  ShowTips(kOpenFileTips, now.TipLanguage);
}

// The caption comes back with the letter that it was given.
void AllOpen::ShowVerifying(bool is_verifying) {
  if (is_verifying == verify_caption_.isEmpty()) {
    const QString caption = cmd_verify_->text();
    cmd_verify_->setText(is_verifying ? QtText(kStop.In(open_file_.TextLanguage()))
                                      : verify_caption_);
    verify_caption_ = is_verifying ? caption : QString();
  }
}

void AllOpen::showEvent(QShowEvent* event) {
  ModalForm::showEvent(event);
  first_display_.start(kPaintLimit);
}

// A long search begins when the user sees the form.
void AllOpen::paintEvent(QPaintEvent* event) {
  ModalForm::paintEvent(event);
  if (first_display_.isActive() && first_display_.interval() != 0) {
    first_display_.start(std::chrono::milliseconds(0));
  }
}

}  // namespace tavrel
