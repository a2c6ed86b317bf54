#include "platform/qt/notices_window.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QListWidget>
#include <QPushButton>
#include <QStyle>
#include <QTime>
#include <QVBoxLayout>
#include <QWindow>

#include "platform/qt/box_icons.h"
#include "platform/qt/box_texts.h"

namespace tavrel {
namespace {

// Older ones go: nobody reads more, and a fault that repeats for weeks must not fill the memory.
constexpr int kMostNotices = 200;

}  // namespace

NoticesWindow::NoticesWindow() {
  setObjectName("notices");
  setAttribute(Qt::WA_ShowWithoutActivating);
  list_ = new QListWidget(this);
  list_->setObjectName("list");
  list_->setWordWrap(true);
  list_->setSpacing(4);
  list_->setSelectionMode(QAbstractItemView::NoSelection);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  const int icon = style()->pixelMetric(QStyle::PM_LargeIconSize, nullptr, this);
  list_->setIconSize({icon, icon});
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
  connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
  close_ = buttons->button(QDialogButtonBox::Close);
  close_->setDefault(true);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(list_);
  layout->addWidget(buttons);
  resize(fontMetrics().averageCharWidth() * 70, fontMetrics().height() * 16);
}

void NoticesWindow::SpeakIn(Language language) {
  const auto in = [language](const BothLanguages& text) {
    return QString::fromStdString(text.Text(language));
  };
  setWindowTitle(in(box_text::kNoticesTitle));
  list_->setAccessibleName(in(box_text::kNotices));
  close_->setText(in(box_text::kClose));
}

void NoticesWindow::Add(const Notice& notice, Language language) {
  SpeakIn(language);
  while (list_->count() >= kMostNotices) {
    delete list_->takeItem(0);
  }
  const QString head =
      QTime::currentTime().toString("HH:mm:ss") + "   " + QString::fromStdString(notice.Title);
  auto* item = new QListWidgetItem(BoxSign(notice.Icon),
                                   head + "\n" + QString::fromStdString(notice.Text), list_);
  list_->scrollToItem(item);
  ComeUp();
}

// A window blocked by a modal form cannot be closed; one that belongs to that form can.
void NoticesWindow::ComeUp() {
  QWidget* front = QApplication::activeModalWidget();
  if (front == nullptr) {
    front = QApplication::activeWindow();
  }
  create();
  if (front != nullptr && front != this &&
      windowHandle()->transientParent() != front->windowHandle()) {
    setVisible(false);
    windowHandle()->setTransientParent(front->windowHandle());
  }
  setVisible(true);
  raise();
}

void NoticesWindow::done(int result) {
  QDialog::done(result);
  list_->clear();
}

}  // namespace tavrel
