#ifndef TAVREL_TESTS_ACCESSIBILITY_BOX_TOUR_H_
#define TAVREL_TESTS_ACCESSIBILITY_BOX_TOUR_H_

#include <QTimer>

#include "docs/manual/form_tour.h"
#include "platform/qt/qt_dialogs.h"
#include "platform/qt/qt_printer.h"
#include "platform/qt/toolkit_texts.h"

namespace tavrel {

// Opens what is no form: each kind of box, the window of notices and the print dialog. Each is
// shown to the stop while it is open, and closed behind it.
class BoxTour {
 public:
  BoxTour(Language language, FormTour::Stop stop);

  // False: a stop has failed.
  [[nodiscard]] bool Make();

 private:
  // `open` returns when the box is closed.
  void TakeModal(const QString& name, const std::function<void()>& open);
  // `open` leaves a window that nothing waits for.
  void TakeBeside(const QString& name, const std::function<void()>& open);
  void StopAt(QWidget& window);

  ToolkitTexts toolkit_texts_;
  QtEvents events_;
  QtDialogs dialogs_{events_};
  QtPrinter printer_{events_};
  FormTour::Stop stop_;
  QTimer look_;  // for the window that is to come
  QString name_;
  bool is_whole_ = true;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_ACCESSIBILITY_BOX_TOUR_H_
