#ifndef TAVREL_MAIN_FORMS_ALL_LOAD_H_
#define TAVREL_MAIN_FORMS_ALL_LOAD_H_

#include <QTimer>
#include <QWidget>

#include "main/sheet_values.h"
#include "widgets/glyph_button.h"

class QLabel;

namespace tavrel {

// ALL_LOAD, the splash form: name and release of the program until the user presses a key,
// clicks, or a minute is over.
class AllLoad : public QWidget {
  Q_OBJECT
 public:
  AllLoad();

  // What the form shows. From now on it can be left, and the minute runs.
  void UpdateWidgets(const SplashValues& values);

 signals:
  // Exactly once.
  void Left();

 protected:
  bool event(QEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void Place();
  void Leave();

  GlyphButton* cmd_start_ = nullptr;
  QLabel* lb_release_ = nullptr;
  QTimer timer_load_{this};
  bool can_leave_ = false;  // it shows its values and has not been left yet
};

}  // namespace tavrel

#endif  // TAVREL_MAIN_FORMS_ALL_LOAD_H_
