#include "platform/qt/qt_regional.h"

#include <QDate>

namespace tavrel {

std::string QtRegional::DecimalMark() const {
  return locale_.decimalPoint().toStdString();
}

std::string QtRegional::ShortDate(const WallTime& time) const {
  const QDate date(time.Year, time.Month, time.Day);
  return locale_.toString(date, QLocale::ShortFormat).toStdString();
}

std::string QtRegional::ShortDateForm() const {
  return locale_.dateFormat(QLocale::ShortFormat).toStdString();
}

}  // namespace tavrel
