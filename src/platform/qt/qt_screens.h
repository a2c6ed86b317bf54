#ifndef TAVREL_PLATFORM_QT_QT_SCREENS_H_
#define TAVREL_PLATFORM_QT_QT_SCREENS_H_

#include <functional>
#include <map>

#include "platform/screens.h"

namespace tavrel {

// The list of the modal forms that the program has.
class QtScreens : public Screens {
 public:
  // `show` builds the form, shows it and returns when it has closed. It replaces what was there
  // for the same number.
  void Add(View view, std::function<void()> show) { forms_[view] = std::move(show); }

  [[nodiscard]] bool Has(View view) const override;
  void Show(View view) override;

 private:
  std::map<View, std::function<void()>> forms_;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_QT_SCREENS_H_
