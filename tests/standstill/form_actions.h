#ifndef TAVREL_TESTS_STANDSTILL_FORM_ACTIONS_H_
#define TAVREL_TESTS_STANDSTILL_FORM_ACTIONS_H_

#include <QWidget>
#include <functional>
#include <string>
#include <vector>

namespace tavrel {

// Something that a user can do in a form, by its name: "cmd_Rec_1 click". The action is done in the
// form that it was found in, or in another one of the same kind.
struct FormAction {
  std::string name;
  std::function<void(QWidget& form)> action;
};

// All that a user can do in `form` as it is now, found in its widgets: a widget that is new comes
// by itself. Of controls whose names differ in their number only, the first and the last are
// taken. Keys come last; those of a letter are typed without a modifier and with Ctrl.
[[nodiscard]] std::vector<FormAction> ActionsOf(const QWidget& form);

}  // namespace tavrel

#endif  // TAVREL_TESTS_STANDSTILL_FORM_ACTIONS_H_
