#ifndef TAVREL_PLATFORM_REGIONAL_H_
#define TAVREL_PLATFORM_REGIONAL_H_

#include <string>

#include "platform/clock.h"

namespace tavrel {

// How the user's region writes what leaves the program. No file that the program reads back is
// written like this; a user may type a date in this form.
class Regional {
 public:
  virtual ~Regional() = default;

  // Between the whole part of a number and its decimals, UTF-8.
  [[nodiscard]] virtual std::string DecimalMark() const = 0;

  // The date in its short form, UTF-8.
  [[nodiscard]] virtual std::string ShortDate(const WallTime& time) const = 0;

  // How that form is made, such as "dd.MM.yy": d, M and y stand for day, month and year, other
  // characters for themselves; words stand between single quotes.
  [[nodiscard]] virtual std::string ShortDateForm() const = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_REGIONAL_H_
