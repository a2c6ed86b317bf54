#include "platform/qt/box_icons.h"

#include <QByteArray>
#include <QIconEngine>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace tavrel {
namespace {

// In a square of 32. A dark edge and a light inside tell the sign apart on light and on dark.
constexpr const char* kInformation =
    "<circle cx='16' cy='16' r='14' fill='#2472c8'/>"
    "<circle cx='16' cy='9.3' r='2.1' fill='#fff'/>"
    "<path d='M16 14.4V23.4' stroke='#fff' stroke-width='3.6' stroke-linecap='round'/>";
constexpr const char* kQuestion =
    "<circle cx='16' cy='16' r='14' fill='#2472c8'/>"
    "<path d='M11.6 12.4C11.6 9.6 13.5 8 16 8S20.5 9.7 20.5 12.2C20.5 15.2 16.1 15.5 16.1 18.9'"
    " fill='none' stroke='#fff' stroke-width='3.2' stroke-linecap='round'/>"
    "<circle cx='16.1' cy='23.8' r='2.1' fill='#fff'/>";
constexpr const char* kWarning =
    "<path d='M16 4.2L29 27.2H3Z' fill='#f2b01e' stroke='#f2b01e' stroke-width='3'"
    " stroke-linejoin='round'/>"
    "<path d='M16 11.6V18.6' stroke='#2b2200' stroke-width='3.4' stroke-linecap='round'/>"
    "<circle cx='16' cy='23.8' r='2' fill='#2b2200'/>";
constexpr const char* kCritical =
    "<circle cx='16' cy='16' r='14' fill='#cf2f2f'/>"
    "<path d='M10.8 10.8L21.2 21.2M21.2 10.8L10.8 21.2' stroke='#fff' stroke-width='3.6'"
    " stroke-linecap='round'/>";

const char* DrawingOf(BoxIcon icon) {
  switch (icon) {
    case BoxIcon::kInformation:
      return kInformation;
    case BoxIcon::kQuestion:
      return kQuestion;
    case BoxIcon::kWarning:
      return kWarning;
    case BoxIcon::kCritical:
      return kCritical;
    case BoxIcon::kNone:
      break;
  }
  return "";
}

class Sign : public QIconEngine {
 public:
  explicit Sign(BoxIcon icon) : icon_(icon) {}

  void paint(QPainter* painter, const QRect& place, QIcon::Mode /*mode*/,
             QIcon::State /*state*/) override {
    const QByteArray drawing =
        QByteArray("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 32 32'>") +
        DrawingOf(icon_) + "</svg>";
    QSvgRenderer(drawing).render(painter, QRectF(place));
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(0, 0), size), mode, state);
    return picture;
  }
  [[nodiscard]] QIconEngine* clone() const override { return new Sign(icon_); }

 private:
  BoxIcon icon_;
};

}  // namespace

QIcon BoxSign(BoxIcon icon) {
  return icon == BoxIcon::kNone ? QIcon() : QIcon(new Sign(icon));
}

}  // namespace tavrel
