#include "work/number_box.h"

#include <limits>

#include "base/number.h"

namespace tavrel {

double NumberBox::Value(double per_unit) const {
  if (!IsKnown()) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  return IsUntouched() && raw_ ? *raw_ / per_unit : ReadNumber(text_);
}

std::int16_t NumberBox::Raw(double per_unit) const {
  return IsUntouched() && raw_ ? *raw_ : ToWord(ReadNumber(text_) * per_unit);
}

}  // namespace tavrel
