#include "widgets/muted_label.h"

#include <QApplication>
#include <QEvent>

#include "widgets/shades.h"

namespace tavrel {

MutedLabel::MutedLabel(const QString& text, QWidget* parent) : QLabel(text, parent) {
  setTextFormat(Qt::PlainText);
  Mute();
}

void MutedLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::PaletteChange && !in_mute_) {
    Mute();
  }
}

void MutedLabel::Mute() {
  in_mute_ = true;
  QPalette muted;
  muted.setColor(QPalette::WindowText, MutedOf(QApplication::palette()));
  setPalette(muted);
  in_mute_ = false;
}

}  // namespace tavrel
