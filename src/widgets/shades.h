#ifndef TAVREL_WIDGETS_SHADES_H_
#define TAVREL_WIDGETS_SHADES_H_

#include <QColor>
#include <QPalette>

// The few shades between those of the palette, so that light and dark desktops get their own.
namespace tavrel {

// `share` 0 is all of `from`, 1 all of `to`.
[[nodiscard]] inline QColor Blend(const QColor& from, const QColor& to, qreal share) {
  const auto mix = [share](int left, int right) {
    return left + static_cast<int>((right - left) * share);
  };
  return {mix(from.red(), to.red()), mix(from.green(), to.green()), mix(from.blue(), to.blue())};
}

// Fine lines: frames and the lines between rows.
[[nodiscard]] inline QColor EdgeOf(const QPalette& palette) {
  return Blend(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.22);
}

// Words of less weight: heads, units, file names. Readable on window and sheet.
[[nodiscard]] inline QColor MutedOf(const QPalette& palette) {
  return Blend(palette.color(QPalette::Window), palette.color(QPalette::WindowText), 0.68);
}

// A strong dark colour for words, as it is on a light window; on a dark one a light colour of the
// same hue, so that it stays readable.
[[nodiscard]] inline QColor InkOf(const QPalette& palette, const QColor& dark) {
  const bool is_dark_window = palette.color(QPalette::Window).lightnessF() <
                              palette.color(QPalette::WindowText).lightnessF();
  constexpr float kLight = 0.72F;
  return is_dark_window ? QColor::fromHslF(dark.hslHueF(), dark.hslSaturationF(), kLight) : dark;
}

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_SHADES_H_
