#ifndef TAVREL_WIDGETS_LEGIBLE_COLOURS_H_
#define TAVREL_WIDGETS_LEGIBLE_COLOURS_H_

#include <QColor>
#include <QObject>
#include <QPalette>

namespace tavrel {

// How well two colours tell themselves apart, from 1 (not at all) to 21 (black on white).
[[nodiscard]] double ContrastOf(const QColor& one, const QColor& other);

// The least of a disabled text on its ground; text that can be used has more. A style draws a
// button lighter than its colour is, and 3 are to be left there.
inline constexpr double kDisabledContrast = 4.0;

// `palette` with disabled texts that are dim, and legible on window, field and button.
[[nodiscard]] QPalette WithLegibleDisabled(QPalette palette);

// Gives the program such colours as long as it lives, also when the desktop changes between light
// and dark: most desktops draw what is disabled too dim to be read, above all on dark.
class LegibleColours : public QObject {
  Q_OBJECT
 public:
  // The application is there already.
  LegibleColours();

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  static void Apply();
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_LEGIBLE_COLOURS_H_
