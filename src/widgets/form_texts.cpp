#include "widgets/form_texts.h"

#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>

namespace tavrel {

QString QtCaption(std::string_view utf8) {
  return QtText(utf8).replace('&', "&&");
}

void ShowText(QLabel& label, std::string_view utf8) {
  const QString text = QtText(utf8);
  if (label.text() != text) {
    label.setText(text);
  }
}

void ShowText(QLineEdit& edit, std::string_view utf8) {
  const QSignalBlocker quiet(edit);
  const QString text = QtText(utf8);
  if (edit.text() != text) {
    edit.setText(text);
  }
}

QFont Sized(QFont font, qreal scale) {
  font.setPointSizeF(font.pointSizeF() * scale);
  return font;
}

}  // namespace tavrel
