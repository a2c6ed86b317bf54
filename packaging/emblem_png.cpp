#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QtDebug>

// Draws a picture of strokes into a square of dots: SVG, side in dots, PNG to write.
int main(int count, char** arguments) {
  const QGuiApplication application(count, arguments);
  const QStringList given = QGuiApplication::arguments();
  constexpr int kArguments = 4;
  if (given.size() != kArguments) {
    qCritical("usage: emblem_png SVG SIDE PNG");
    return 2;
  }
  const int side = given[2].toInt();
  QImage picture(side, side, QImage::Format_ARGB32);
  picture.fill(Qt::transparent);
  QPainter painter(&picture);
  QSvgRenderer renderer(given[1]);
  renderer.render(&painter, QRectF(0, 0, side, side));
  painter.end();
  return renderer.isValid() && picture.save(given[3]) ? 0 : 1;
}
