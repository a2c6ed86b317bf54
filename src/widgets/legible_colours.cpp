#include "widgets/legible_colours.h"

#include <QApplication>
#include <QEvent>
#include <algorithm>
#include <array>
#include <cmath>

#include "widgets/shades.h"

namespace tavrel {
namespace {

constexpr qreal kStep = 0.02;  // of the way from the ground to the text in use

// A text and the grounds on which it is drawn.
struct TextRole {
  QPalette::ColorRole text;
  std::array<QPalette::ColorRole, 2> grounds;
};
constexpr std::array kTexts = {
    TextRole{QPalette::WindowText, {QPalette::Window, QPalette::Window}},
    TextRole{QPalette::Text, {QPalette::Base, QPalette::Window}},
    TextRole{QPalette::ButtonText, {QPalette::Button, QPalette::Window}}};

// Of one channel, as the eye takes it in.
double Linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double Luminance(const QColor& colour) {
  return 0.2126 * Linear(colour.redF()) + 0.7152 * Linear(colour.greenF()) +
         0.0722 * Linear(colour.blueF());
}

bool IsLegible(const QPalette& palette, const QColor& text, const TextRole& role) {
  return std::ranges::all_of(role.grounds, [&](QPalette::ColorRole ground) {
    return ContrastOf(text, palette.color(QPalette::Disabled, ground)) >= kDisabledContrast;
  });
}

}  // namespace

double ContrastOf(const QColor& one, const QColor& other) {
  constexpr double kFlare = 0.05;
  const double first = Luminance(one) + kFlare;
  const double second = Luminance(other) + kFlare;
  return std::max(first, second) / std::min(first, second);
}

QPalette WithLegibleDisabled(QPalette palette) {
  for (const TextRole& role : kTexts) {
    const QColor ground = palette.color(QPalette::Disabled, role.grounds.front());
    const QColor in_use = palette.color(QPalette::Active, role.text);
    QColor text = ground;
    for (qreal share = kStep; share <= 1 && !IsLegible(palette, text, role); share += kStep) {
      text = Blend(ground, in_use, share);
    }
    palette.setColor(QPalette::Disabled, role.text, text);
  }
  return palette;
}

LegibleColours::LegibleColours() {
  qApp->installEventFilter(this);
  Apply();
}

bool LegibleColours::eventFilter(QObject* watched, QEvent* event) {
  if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) {
    Apply();
  }
  return QObject::eventFilter(watched, event);
}

// Only what is disabled is set here, so that all else goes on following the desktop.
void LegibleColours::Apply() {
  const QPalette present = QApplication::palette();
  const QPalette wanted = WithLegibleDisabled(present);
  if (wanted != present) {
    QApplication::setPalette(wanted);
  }
}

}  // namespace tavrel
