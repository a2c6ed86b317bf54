#include "widgets/unit_label.h"

#include <QPainter>
#include <QStyle>

namespace tavrel {
namespace {

constexpr QLatin1String kBlanks("   ");

// A text without the gap is a unit alone.
QString UnitOf(const QString& text) {
  return text.left(text.indexOf(kBlanks));
}

QString WordsOf(const QString& text) {
  const qsizetype gap = text.indexOf(kBlanks);
  return gap < 0 ? QString() : text.mid(gap).trimmed();
}

}  // namespace

QString UnitLabel::Unit() const {
  return UnitOf(text());
}

QString UnitLabel::Words() const {
  return WordsOf(text());
}

int UnitLabel::WordsPlace() const {
  return fontMetrics().horizontalAdvance(QLatin1String("min") + kBlanks);
}

QSize UnitLabel::sizeHint() const {
  const int unit = fontMetrics().horizontalAdvance(UnitOf(text()));
  const int words = fontMetrics().horizontalAdvance(WordsOf(text()));
  return {words == 0 ? unit : WordsPlace() + words, fontMetrics().height()};
}

void UnitLabel::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const int alignment = Qt::AlignLeft | Qt::AlignVCenter;
  const auto draw = [&](const QRect& place, const QString& part) {
    style()->drawItemText(&painter, place, alignment, palette(), isEnabled(), part,
                          foregroundRole());
  };
  draw(rect(), UnitOf(text()));
  draw(rect().adjusted(WordsPlace(), 0, 0, 0), WordsOf(text()));
}

}  // namespace tavrel
