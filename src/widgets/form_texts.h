#ifndef TAVREL_WIDGETS_FORM_TEXTS_H_
#define TAVREL_WIDGETS_FORM_TEXTS_H_

#include <QFont>
#include <QString>
#include <QStringList>
#include <string_view>

#include "platform/qt/qt_text.h"

class QLabel;
class QLineEdit;

// Texts of the logic, which are UTF-8, on their way to the toolkit.
namespace tavrel {

// For a button or the title of a frame, which take a single "&" for the mark of a key.
[[nodiscard]] QString QtCaption(std::string_view utf8);

template <typename Items>
[[nodiscard]] QStringList QtItems(const Items& items) {
  QStringList texts;
  for (const auto& item : items) {
    texts << QtText(item);
  }
  return texts;
}

// A text that is there already is not set again, which keeps the selection.
void ShowText(QLabel& label, std::string_view utf8);

// The same for a box, whose text the logic knows already: it signals no change.
void ShowText(QLineEdit& edit, std::string_view utf8);

// `font` at `scale` times its size.
[[nodiscard]] QFont Sized(QFont font, qreal scale);

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_FORM_TEXTS_H_
