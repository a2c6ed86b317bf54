#include "platform/qt/qt_clipboard.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QPainter>
#include <QSvgGenerator>

#include "platform/qt/painter_surface.h"
#include "platform/qt/qt_text.h"

namespace tavrel {
namespace {

constexpr QSize kDots(1600, 900);
constexpr int kDotsPerInch = 96;
constexpr int kDotsPerMeter = 3780;  // 96 to the inch of 25.4 mm

void DrawOn(QPaintDevice& device, const std::function<void(Surface& to)>& draw) {
  QPainter painter(&device);
  painter.setRenderHint(QPainter::Antialiasing);
  constexpr qreal kUnitsPerPoint = kDotsPerInch / kPointsPerInch;
  PainterSurface surface(painter, QRectF(QPointF(0, 0), kDots), kUnitsPerPoint);
  surface.SetScale({0, 0, kDots.width() / kUnitsPerPoint, kDots.height() / kUnitsPerPoint});
  surface.Clear();
  draw(surface);
}

QImage ImageOf(const std::function<void(Surface& to)>& draw) {
  QImage image(kDots, QImage::Format_RGB32);
  image.setDotsPerMeterX(kDotsPerMeter);
  image.setDotsPerMeterY(kDotsPerMeter);
  DrawOn(image, draw);
  return image;
}

QByteArray SvgOf(const std::function<void(Surface& to)>& draw) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QSvgGenerator generator;
  generator.setOutputDevice(&buffer);
  generator.setResolution(kDotsPerInch);
  generator.setSize(kDots);
  generator.setViewBox(QRect(QPoint(0, 0), kDots));
  DrawOn(generator, draw);
  return bytes;
}

}  // namespace

void QtClipboard::SetText(std::string_view utf8) {
  QGuiApplication::clipboard()->setText(QtText(utf8));
}

void QtClipboard::SetPicture(const std::function<void(Surface& to)>& draw) {
  auto* content = new QMimeData;  // the clipboard takes it over
  content->setImageData(ImageOf(draw));
  content->setData("image/svg+xml", SvgOf(draw));
  QGuiApplication::clipboard()->setMimeData(content);
}

}  // namespace tavrel
