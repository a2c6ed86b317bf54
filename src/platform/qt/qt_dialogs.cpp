#include "platform/qt/qt_dialogs.h"

#include <QPushButton>

#include "platform/qt/notices_window.h"
#include "platform/qt/qt_choosers.h"
#include "platform/qt/window_in_front.h"

namespace tavrel {
namespace {

QMessageBox::Icon IconOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::kInformation:
      return QMessageBox::Information;
    case BoxIcon::kQuestion:
      return QMessageBox::Question;
    case BoxIcon::kWarning:
      return QMessageBox::Warning;
    case BoxIcon::kCritical:
      return QMessageBox::Critical;
    case BoxIcon::kNone:
      break;
  }
  return QMessageBox::NoIcon;
}

// Shows a text as it is. A path or a command in it can be marked and copied.
void Fill(QMessageBox& box, const Notice& notice, QMessageBox::StandardButton yes,
          QMessageBox::StandardButton no) {
  box.setTextFormat(Qt::PlainText);
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  box.setStandardButtons(no == QMessageBox::NoButton ? yes : yes | no);
  box.setDefaultButton(notice.PresetIsNo && no != QMessageBox::NoButton ? no : yes);
  box.setEscapeButton(no == QMessageBox::NoButton ? yes : no);
}

}  // namespace

QtDialogs::QtDialogs(QtEvents& events) : events_(events) {}

QtDialogs::~QtDialogs() {
  for (const QPointer<QMessageBox>& question : questions_) {
    delete question.data();
  }
}

void QtDialogs::Message(const Notice& notice) {
  Ask(notice, QMessageBox::Ok, QMessageBox::NoButton);
}

bool QtDialogs::AskOk(const Notice& notice) {
  return Ask(notice, QMessageBox::Ok, QMessageBox::Cancel);
}

bool QtDialogs::AskRetry(const Notice& notice) {
  return Ask(notice, QMessageBox::Retry, QMessageBox::Cancel);
}

bool QtDialogs::AskRetryOrExit(const Notice& notice) {
  const QtEvents::NormalPointer normal_pointer(events_);
  QMessageBox box(IconOf(notice.Icon), QString::fromStdString(notice.Title),
                  QString::fromStdString(notice.Text), QMessageBox::NoButton, WindowInFront());
  Fill(box, notice, QMessageBox::Retry, QMessageBox::Close);
  box.button(QMessageBox::Close)->setText("Exit");
  return box.exec() == QMessageBox::Retry;
}

bool QtDialogs::AskYes(const Notice& notice) {
  return Ask(notice, QMessageBox::Yes, QMessageBox::No);
}

SaveAnswer QtDialogs::AskSave(const Notice& notice) {
  const QtEvents::NormalPointer normal_pointer(events_);
  QMessageBox box(IconOf(notice.Icon), QString::fromStdString(notice.Title),
                  QString::fromStdString(notice.Text), QMessageBox::NoButton, WindowInFront());
  Fill(box, notice, QMessageBox::Yes, QMessageBox::No);
  box.addButton(QMessageBox::Cancel);
  box.setEscapeButton(QMessageBox::Cancel);
  switch (box.exec()) {
    case QMessageBox::Yes:
      return SaveAnswer::kSave;
    case QMessageBox::No:
      return SaveAnswer::kDiscard;
    default:
      return SaveAnswer::kStay;
  }
}

bool QtDialogs::Ask(const Notice& notice, QMessageBox::StandardButton yes,
                    QMessageBox::StandardButton no) {
  const QtEvents::NormalPointer normal_pointer(events_);
  QMessageBox box(IconOf(notice.Icon), QString::fromStdString(notice.Title),
                  QString::fromStdString(notice.Text), QMessageBox::NoButton, WindowInFront());
  Fill(box, notice, yes, no);
  return box.exec() == yes;
}

void QtDialogs::Announce(const Notice& notice) {
  if (notices_ == nullptr) {
    notices_ = std::make_unique<NoticesWindow>();
  }
  notices_->Add(notice);
}

// Not modal: neither the cycle nor the forms wait for it.
void QtDialogs::AskBeside(const Notice& notice, const std::function<void(bool yes)>& answer) {
  std::erase_if(questions_,
                [](const QPointer<QMessageBox>& question) { return question.isNull(); });
  auto* box =
      new QMessageBox(IconOf(notice.Icon), QString::fromStdString(notice.Title),
                      QString::fromStdString(notice.Text), QMessageBox::NoButton, WindowInFront());
  questions_.emplace_back(box);
  Fill(*box, notice, QMessageBox::Yes, QMessageBox::No);
  box->setDefaultButton(QMessageBox::No);
  box->setAttribute(Qt::WA_DeleteOnClose);
  box->setAttribute(Qt::WA_ShowWithoutActivating);
  box->setModal(false);
  QObject::connect(box, &QMessageBox::finished, box,
                   [answer](int result) { answer(result == QMessageBox::Yes); });
  box->show();
}

void QtDialogs::FileDialog(FileChoice& choice) {
  const QtEvents::NormalPointer normal_pointer(events_);
  RunFileDialog(choice, [this](const std::string& path) {
    return AskYes(
        {path + "\n\nThis file exists already. Replace it ?", "Save As", BoxIcon::kWarning, true});
  });
}

bool QtDialogs::FontDialog(FontChoice& choice) {
  const QtEvents::NormalPointer normal_pointer(events_);
  return RunFontDialog(choice);
}

}  // namespace tavrel
