#ifndef TAVREL_PLATFORM_QT_QT_TEXT_H_
#define TAVREL_PLATFORM_QT_QT_TEXT_H_

#include <QString>
#include <string_view>

namespace tavrel {

// A text of the logic, which is UTF-8, for the toolkit.
[[nodiscard]] inline QString QtText(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_QT_TEXT_H_
