#include "widgets/glyph_button.h"

#include <QKeyEvent>

#include "widgets/form_texts.h"
#include "widgets/shades.h"

namespace tavrel {
namespace {

constexpr qreal kButtonRadius = 4;
constexpr qreal kToolGlyph = 1.35;  // of the type, so that the pictures tell themselves apart
constexpr int kGlyphGap = 8;        // between glyph and text, and beside them

}  // namespace

GlyphButton::GlyphButton(Glyph glyph, QWidget* parent) : QAbstractButton(parent), glyph_(glyph) {
  setFocusPolicy(Qt::StrongFocus);
}

void GlyphButton::SetToolSize() {
  setFont(Sized(font(), kToolGlyph));
  const QSize size = sizeHint();
  setFixedSize(size.width() * 5 / 4, size.height());
}

void GlyphButton::SetLatched(bool latched) {
  setCheckable(true);
  setChecked(latched);
  if (latched != latched_) {
    latched_ = latched;
    setAccessibleDescription(latched ? "on" : "off");
    update();
  }
}

QSize GlyphButton::sizeHint() const {
  const int height = fontMetrics().height() + 14;
  if (text().isEmpty()) {
    return {height, height};
  }
  const int glyph = glyph_ == nullptr ? 0 : GlyphSide() + kGlyphGap;
  return {glyph + fontMetrics().horizontalAdvance(text()) + 4 * kGlyphGap, height};
}

int GlyphButton::GlyphSide() const {
  return fontMetrics().height() + 1;
}

void GlyphButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  DrawFrame(painter);
  const QColor ink = InkNow();
  const int side = glyph_ == nullptr ? 0 : GlyphSide();
  const int text_width = fontMetrics().horizontalAdvance(text());
  const int gap = side > 0 && text_width > 0 ? kGlyphGap : 0;
  const int left = (width() - side - gap - text_width) / 2;
  if (glyph_ != nullptr) {
    const int top = (height() - side) / 2;
    glyph_(painter, QRectF(left, top, side, side), ink);
  }
  painter.setPen(ink);
  painter.drawText(QRect(left + side + gap, 0, text_width + 1, height()),
                   static_cast<int>(Qt::AlignVCenter) | Qt::TextSingleLine, text());
}

QColor GlyphButton::InkNow() const {
  if (latched_) {
    return palette().color(QPalette::HighlightedText);
  }
  return isEnabled() ? palette().color(QPalette::ButtonText)
                     : palette().color(QPalette::Disabled, QPalette::ButtonText);
}

void GlyphButton::DrawFrame(QPainter& painter) const {
  const bool awake = isEnabled() && (underMouse() || hasFocus() || isDown());
  if (flat_ && !awake) {
    return;
  }
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor accent = palette().color(QPalette::Highlight);
  const QColor fill = palette().color(latched_ ? QPalette::Highlight : QPalette::Button);
  if (!flat_) {
    painter.setBrush(isDown() ? Blend(fill, accent, 0.35)
                              : (awake && underMouse() ? Blend(fill, accent, 0.15) : fill));
  }
  const qreal width = hasFocus() ? 2 : 1;
  // A latched button is filled with the accent, so its frame needs another ink to be seen.
  const QColor lively = latched_ ? palette().color(QPalette::WindowText) : accent;
  painter.setPen(QPen(awake ? lively : EdgeOf(palette()), width));
  const qreal inset = width / 2;
  painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), kButtonRadius,
                          kButtonRadius);
}

void GlyphButton::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
    // A key that is still held down from the window before presses nothing here.
    if (!event->isAutoRepeat()) {
      click();
    }
    return;
  }
  QAbstractButton::keyPressEvent(event);
}

void GlyphButton::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
}

void GlyphButton::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
}

}  // namespace tavrel
