#ifndef TAVREL_PLATFORM_QT_WINDOW_IN_FRONT_H_
#define TAVREL_PLATFORM_QT_WINDOW_IN_FRONT_H_

#include <QApplication>

namespace tavrel {

// The window on top of which the next modal one comes: the modal form in front, else the active
// window; null before the first window.
[[nodiscard]] inline QWidget* WindowInFront() {
  QWidget* modal = QApplication::activeModalWidget();
  return modal != nullptr ? modal : QApplication::activeWindow();
}

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_WINDOW_IN_FRONT_H_
