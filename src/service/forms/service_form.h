#ifndef TAVREL_SERVICE_FORMS_SERVICE_FORM_H_
#define TAVREL_SERVICE_FORMS_SERVICE_FORM_H_

#include <QLabel>
#include <string_view>

#include "service/service_screen.h"
#include "state/stepped_screen.h"
#include "widgets/connection_sign.h"
#include "widgets/modal_form.h"

namespace tavrel {

// A form of the service. The cycle gives its screen turns while it lives, and it shows what has
// changed after each.
class ServiceForm : public ModalForm {
  Q_OBJECT
 public:
  // Both outlive the form; `screen` is open when Run is called.
  ServiceForm(ServiceScreen& screen, SteppedScreens& stepped, const char* name);

 protected:
  // Title, sign of the connection and running light; a form adds what it has.
  void UpdateWidgets() override;

  // A value at the right edge of a place that is wide enough for `widest`, so that it does not move
  // what stands beside it. `spoken` is what it is, as a screen reader says it before the value.
  [[nodiscard]] QLabel* MakeValue(const QString& name, const QString& spoken,
                                  const QString& widest);

  // Shows a value that MakeValue has made.
  static void ShowValue(QLabel& label, std::string_view utf8);

  // The same; without a text it is hidden and keeps its place.
  static void ShowIfAny(QLabel& label, std::string_view utf8);

  // Both in a row, to which a form adds its buttons.
  [[nodiscard]] QBoxLayout* MakeFoot();

 private:
  ServiceScreen& service_screen_;
  ConnectionSign* com_icon_;
  QLabel* trigger_;
  SteppedScreens::Turn turn_;
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_FORMS_SERVICE_FORM_H_
