#include "platform/qt/qt_screens.h"

namespace tavrel {

bool QtScreens::Has(View view) const {
  return forms_.count(view) != 0;
}

void QtScreens::Show(View view) {
  const auto form = forms_.find(view);
  if (form != forms_.end()) {
    form->second();
  }
}

}  // namespace tavrel
