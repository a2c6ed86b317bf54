#ifndef TAVREL_TESTS_SUPPORT_DARK_COLOURS_H_
#define TAVREL_TESTS_SUPPORT_DARK_COLOURS_H_

#include <QApplication>
#include <QColor>
#include <QPalette>

namespace tavrel {

// The colours of a dark desktop. The disabled ones are dim, as a desktop has them.
[[nodiscard]] inline QPalette DarkColours() {
  QPalette palette(QColor(0x31, 0x36, 0x3b), QColor(0x2a, 0x2e, 0x32));
  palette.setColor(QPalette::Base, QColor(0x1b, 0x1e, 0x20));
  palette.setColor(QPalette::AlternateBase, QColor(0x23, 0x26, 0x29));
  palette.setColor(QPalette::Highlight, QColor(0x3d, 0xae, 0xe9));
  palette.setColor(QPalette::HighlightedText, QColor(0x1b, 0x1e, 0x20));
  palette.setColor(QPalette::ToolTipBase, QColor(0x31, 0x36, 0x3b));
  palette.setColor(QPalette::ToolTipText, QColor(0xfc, 0xfc, 0xfc));
  palette.setColor(QPalette::Link, QColor(0x1d, 0x99, 0xf3));
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Active, role, QColor(0xfc, 0xfc, 0xfc));
    palette.setColor(QPalette::Inactive, role, QColor(0xfc, 0xfc, 0xfc));
    palette.setColor(QPalette::Disabled, role, QColor(0x5e, 0x63, 0x67));
  }
  palette.setColor(QPalette::PlaceholderText, QColor(0xa1, 0xa9, 0xb1));
  return palette;
}

inline void UseDarkColours() {
  QApplication::setStyle("Fusion");
  QApplication::setPalette(DarkColours());
}

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_DARK_COLOURS_H_
