#include "platform/qt/qt_dialogs.h"

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

}  // namespace

QtDialogs::QtDialogs(QtEvents& events) : events_(events) {}

QtDialogs::~QtDialogs() = default;

void QtDialogs::Message(const Notice& notice) {
  Ask(notice, QMessageBox::Ok, QMessageBox::NoButton);
}

bool QtDialogs::AskOk(const Notice& notice) {
  return Ask(notice, QMessageBox::Ok, QMessageBox::Cancel);
}

bool QtDialogs::AskRetry(const Notice& notice) {
  return Ask(notice, QMessageBox::Retry, QMessageBox::Cancel);
}

bool QtDialogs::AskYes(const Notice& notice) {
  return Ask(notice, QMessageBox::Yes, QMessageBox::No);
}

bool QtDialogs::Ask(const Notice& notice, QMessageBox::StandardButton yes,
                    QMessageBox::StandardButton no) {
  const QtEvents::NormalPointer normal_pointer(events_);
  QMessageBox box(IconOf(notice.Icon), QString::fromStdString(notice.Title),
                  QString::fromStdString(notice.Text), QMessageBox::NoButton, WindowInFront());
  box.setTextFormat(Qt::PlainText);
  // A path or a command in the text can be marked and copied.
  box.setTextInteractionFlags(Qt::TextSelectableByMouse);
  box.setStandardButtons(no == QMessageBox::NoButton ? yes : yes | no);
  box.setDefaultButton(yes);
  box.setEscapeButton(no == QMessageBox::NoButton ? yes : no);
  return box.exec() == yes;
}

void QtDialogs::Announce(const Notice& notice) {
  if (notices_ == nullptr) {
    notices_ = std::make_unique<NoticesWindow>();
  }
  notices_->Add(notice);
}

void QtDialogs::FileDialog(FileChoice& choice) {
  const QtEvents::NormalPointer normal_pointer(events_);
  RunFileDialog(choice, [this](const std::string& path) {
    return AskYes(
        {path + "\n\nThis file exists already. Replace it ?", "Save As", BoxIcon::kWarning});
  });
}

bool QtDialogs::FontDialog(FontChoice& choice) {
  const QtEvents::NormalPointer normal_pointer(events_);
  return RunFontDialog(choice);
}

}  // namespace tavrel
