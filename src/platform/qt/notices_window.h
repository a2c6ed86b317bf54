#ifndef TAVREL_PLATFORM_QT_NOTICES_WINDOW_H_
#define TAVREL_PLATFORM_QT_NOTICES_WINDOW_H_

#include <QDialog>

#include "platform/dialogs.h"

class QListWidget;

namespace tavrel {

// The window in which the measuring cycle tells what went wrong: a list, the newest notice at
// its end, each with the time at which it came. It comes up without taking the keyboard, blocks
// nothing, and starts empty again once it was closed (Escape, Enter or its button).
class NoticesWindow : public QDialog {
  Q_OBJECT
 public:
  NoticesWindow();

  void Add(const Notice& notice);

  // Runs at each way of closing.
  void done(int result) override;

 private:
  void ComeUp();

  QListWidget* list_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_NOTICES_WINDOW_H_
