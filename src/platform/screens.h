#ifndef TAVREL_PLATFORM_SCREENS_H_
#define TAVREL_PLATFORM_SCREENS_H_

#include "base/active_view.h"

namespace tavrel {

// The modal forms that a rule opens by itself, or that a menu entry leads to.
class Screens {
 public:
  virtual ~Screens() = default;

  // False for a form that this program does not have; its entries are greyed.
  [[nodiscard]] virtual bool Has(View view) const = 0;

  // Shows the form and returns when it has closed; at once if Has(view) is false.
  virtual void Show(View view) = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_SCREENS_H_
