#include "widgets/modal_form.h"

#include <QKeyEvent>

#include "platform/qt/window_in_front.h"

namespace tavrel {

ModalForm::ModalForm(const char* name, std::string_view caption) : QDialog(WindowInFront()) {
  setObjectName(name);
  setWindowTitle(QtText(caption));
  setWindowModality(Qt::ApplicationModal);
}

void ModalForm::Run() {
  Show();
  if (IsOpen()) {
    exec();
  }
}

void ModalForm::reject() {
  Leave();
  AfterEvent();
}

void ModalForm::AfterEvent() {
  if (IsOpen()) {
    Show();
  } else {
    done(QDialog::Accepted);
  }
}

void ModalForm::ShowTips(std::span<const ToolTip> tips, Language language) {
  for (const ToolTip& tip : tips) {
    auto* control = findChild<QWidget*>(QtText(tip.Control));
    if (control != nullptr) {
      control->setToolTip(QtText(tip.Text.In(language)));
    }
  }
}

// An Enter key that is still held down from the window before presses nothing here.
void ModalForm::keyPressEvent(QKeyEvent* event) {
  const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
  if (enter && event->isAutoRepeat()) {
    event->accept();
    return;
  }
  QDialog::keyPressEvent(event);
}

QString QtCaption(std::string_view utf8) {
  return QtText(utf8).replace('&', "&&");
}

QString QtText(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

}  // namespace tavrel
