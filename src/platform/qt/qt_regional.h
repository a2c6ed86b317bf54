#ifndef TAVREL_PLATFORM_QT_QT_REGIONAL_H_
#define TAVREL_PLATFORM_QT_QT_REGIONAL_H_

#include <QLocale>

#include "platform/regional.h"

namespace tavrel {

// The region that the desktop is set to.
class QtRegional : public Regional {
 public:
  explicit QtRegional(const QLocale& locale = QLocale::system()) : locale_(locale) {}

  [[nodiscard]] std::string DecimalMark() const override;
  [[nodiscard]] std::string ShortDate(const WallTime& time) const override;
  [[nodiscard]] std::string ShortDateForm() const override;

 private:
  QLocale locale_;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_QT_REGIONAL_H_
