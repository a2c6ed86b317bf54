#ifndef TAVREL_PLATFORM_QT_NOTICES_WINDOW_H_
#define TAVREL_PLATFORM_QT_NOTICES_WINDOW_H_

#include <QDialog>

#include "base/language.h"
#include "platform/dialogs.h"

class QListWidget;
class QPushButton;

namespace tavrel {

// The window in which the measuring cycle tells what went wrong: a list, the newest notice at
// its end, each with the time at which it came. It comes up without taking the keyboard, blocks
// nothing, and starts empty again once it was closed (Escape, Enter or its button).
class NoticesWindow : public QDialog {
  Q_OBJECT
 public:
  NoticesWindow();

  // `language` is that of what the window says itself.
  void Add(const Notice& notice, Language language);

  // Runs at each way of closing.
  void done(int result) override;

 private:
  void SpeakIn(Language language);
  void ComeUp();

  QListWidget* list_ = nullptr;
  QPushButton* close_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_NOTICES_WINDOW_H_
