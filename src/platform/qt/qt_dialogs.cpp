#include "platform/qt/qt_dialogs.h"

#include <QPushButton>
#include <cstdio>

#include "platform/qt/box_texts.h"
#include "platform/qt/notice_box.h"
#include "platform/qt/notices_window.h"
#include "platform/qt/qt_choosers.h"
#include "platform/qt/window_in_front.h"

namespace tavrel {

QtDialogs::QtDialogs(QtEvents& events) : events_(events) {}

QtDialogs::~QtDialogs() {
  for (const QPointer<QMessageBox>& question : questions_) {
    delete question.data();
  }
}

bool QtDialogs::IsAlone(const Notice& notice) const {
  if (!events_.EndIsWanted()) {
    return false;
  }
  static_cast<void>(
      std::fprintf(stderr, "tavrel: %s: %s\n", notice.Title.c_str(), notice.Text.c_str()));
  return true;
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
  if (IsAlone(notice)) {
    return false;
  }
  const QtEvents::NormalPointer normal_pointer(events_);
  NoticeBox box(notice, QMessageBox::Retry, QMessageBox::Close, WindowInFront());
  box.button(QMessageBox::Close)->setText("Exit");
  box.SpeakIn(language_());
  return box.exec() == QMessageBox::Retry;
}

bool QtDialogs::AskYes(const Notice& notice) {
  return Ask(notice, QMessageBox::Yes, QMessageBox::No);
}

SaveAnswer QtDialogs::AskSave(const Notice& notice) {
  if (IsAlone(notice)) {
    return SaveAnswer::kStay;
  }
  const QtEvents::NormalPointer normal_pointer(events_);
  NoticeBox box(notice, QMessageBox::Yes, QMessageBox::No, WindowInFront());
  box.addButton(QMessageBox::Cancel);
  box.SpeakIn(language_());
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
  if (IsAlone(notice)) {
    return false;
  }
  const QtEvents::NormalPointer normal_pointer(events_);
  NoticeBox box(notice, yes, no, WindowInFront());
  box.SpeakIn(language_());
  return box.exec() == yes;
}

// OK comes first, so that Enter and Escape leave the box.
bool QtDialogs::Offer(const Notice& notice, const std::string& action) {
  if (IsAlone(notice)) {
    return false;
  }
  const QtEvents::NormalPointer normal_pointer(events_);
  NoticeBox box(notice, QMessageBox::Ok, QMessageBox::NoButton, WindowInFront());
  const QAbstractButton* wanted =
      box.addButton(QString::fromStdString(action), QMessageBox::ActionRole);
  box.SpeakIn(language_());
  box.exec();
  return box.clickedButton() == wanted;
}

void QtDialogs::Announce(const Notice& notice) {
  if (notices_ == nullptr) {
    notices_ = std::make_unique<NoticesWindow>();
  }
  notices_->Add(notice, language_());
}

// Not modal: neither the cycle nor the forms wait for it.
void QtDialogs::AskBeside(const Notice& notice, const std::function<void(bool yes)>& answer) {
  std::erase_if(questions_,
                [](const QPointer<QMessageBox>& question) { return question.isNull(); });
  auto* box = new NoticeBox(notice, QMessageBox::Yes, QMessageBox::No, WindowInFront());
  questions_.emplace_back(box);
  box->SpeakIn(language_());
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
        {box_text::kReplace.Text(language_(), {path}), "Save As", BoxIcon::kWarning, true});
  });
}

bool QtDialogs::FontDialog(FontChoice& choice) {
  const QtEvents::NormalPointer normal_pointer(events_);
  return RunFontDialog(choice, QString::fromStdString(box_text::kFont.Text(language_())));
}

}  // namespace tavrel
