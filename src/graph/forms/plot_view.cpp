#include "graph/forms/plot_view.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <algorithm>
#include <chrono>
#include <utility>

#include "platform/qt/painter_surface.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr std::chrono::milliseconds kRepaint{40};
constexpr int kCrosshairWidth = 3;  // with a light edge on both sides
constexpr qreal kBroad = 3;         // of the curve that stands out
constexpr qreal kHalo = 6;
constexpr Colour kPaper{0xFF, 0xFF, 0xFF};
constexpr float kBandShade = 0.12F;
constexpr QColor kCrosshairInk(0x20, 0x50, 0xA0);
constexpr QColor kCrosshairEdge(0xFF, 0xFF, 0xFF, 0xB0);

std::vector<Segment> SegmentsOf(const StrokePoints& points, Colour ink) {
  std::vector<Segment> segments;
  for (std::size_t place = 1; place < points.size(); ++place) {
    const StrokePoint& from = points[place - 1];
    const StrokePoint& to = points[place];
    segments.push_back({from.X, from.Y, to.X, to.Y, ink});
  }
  return segments;
}

}  // namespace

PlotView::PlotView(PlotSurface& surface, QWidget* parent) : QWidget(parent), surface_(surface) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  SpeakAs(*this, QAccessible::Chart);
  repaint_.setSingleShot(true);
  repaint_.setInterval(kRepaint);
  repaint_.callOnTimeout(this, [this] { UpdateChanges(); });
  surface_.Watch([this] { repaint_.start(); }, [this] { UpdateChanges(); });
}

QSize PlotView::DotsNow() const {
  const qreal scale = devicePixelRatioF();
  return {qRound(width() * scale), qRound(height() * scale)};
}

bool PlotView::Fits() const {
  return surface_.Picture().size() == DotsNow() && surface_.DeviceScale() == devicePixelRatioF();
}

QPointF PlotView::UserAt(QPointF position) const {
  const QPointF dot = position * surface_.DeviceScale();
  return {surface_.Map().UserX(dot.x()), surface_.Map().UserY(dot.y())};
}

QPoint PlotView::PositionOf(QPointF user) const {
  const QPointF dot(surface_.Map().DotX(user.x()), surface_.Map().DotY(user.y()));
  const QPointF position = dot / surface_.DeviceScale();
  return {qRound(std::clamp<qreal>(position.x(), 0, width() - 1)),
          qRound(std::clamp<qreal>(position.y(), 0, height() - 1))};
}

void PlotView::UpdateChanges() {
  repaint_.stop();
  const QRect dots = surface_.TakeChanges();
  const qreal scale = surface_.DeviceScale();
  update(QRectF(QPointF(dots.topLeft()) / scale, QSizeF(dots.size()) / scale).toAlignedRect());
}

void PlotView::ShowCrosshair(std::optional<QPoint> position) {
  if (position == crosshair_) {
    return;
  }
  UpdateCrosshair();
  crosshair_ = position;
  UpdateCrosshair();
}

// The scale of the picture is another one while curves are drawn: the places are taken now.
void PlotView::ShowStroke(const Stroke& stroke) {
  stroke_ = stroke;
  const ScaleMap& map = surface_.Map();
  const double scale = surface_.DeviceScale();
  for (StrokePoints& piece : stroke_.Pieces) {
    for (StrokePoint& point : piece) {
      point = {map.DotX(point.X) / scale, map.DotY(point.Y) / scale};
    }
  }
  update();
}

void PlotView::ShowBand(std::optional<QPair<qreal, qreal>> band) {
  if (band != band_) {
    band_ = band;
    update();
  }
}

void PlotView::ShowEdge(std::vector<EdgeBox> boxes) {
  edge_ = std::move(boxes);
  update();
}

void PlotView::UpdateCrosshair() {
  if (!crosshair_) {
    return;
  }
  const QPoint at = *crosshair_;
  update(QRect(at.x() - kCrosshairWidth, 0, 2 * kCrosshairWidth, height()));
  update(QRect(0, at.y() - kCrosshairWidth, width(), 2 * kCrosshairWidth));
}

void PlotView::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  if (!Fits()) {
    painter.fillRect(event->rect(), Qt::white);
    emit SizeChanged();
  }
  painter.drawImage(QPointF(0, 0), surface_.Seen());
  DrawEdge(painter);
  DrawStroke(painter);
  DrawBand(painter);
  DrawCrosshair(painter);
}

// A light edge on both sides keeps it apart from the curves that it crosses.
void PlotView::DrawStroke(QPainter& painter) const {
  PainterSurface page(painter, rect(), 1);
  page.SetScale({0, 0, static_cast<double>(width()), static_cast<double>(height())});
  for (const auto& [width, ink] : {std::pair(kHalo, kPaper), std::pair(kBroad, stroke_.Ink)}) {
    page.SetPen({PenMode::kCopy, PenStyle::kSolid, width});
    for (const StrokePoints& piece : stroke_.Pieces) {
      page.Lines(SegmentsOf(piece, ink));
    }
  }
}

// Black stays black, so that no tick is lost.
void PlotView::DrawEdge(QPainter& painter) const {
  const qreal scale = surface_.DeviceScale();
  painter.setCompositionMode(QPainter::CompositionMode_Multiply);
  for (const EdgeBox& box : edge_) {
    painter.fillRect(QRectF(box.First / scale, 0, (box.Last + 1 - box.First) / scale, box.Height),
                     box.Ink);
  }
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void PlotView::DrawBand(QPainter& painter) const {
  if (band_) {
    DrawBandOn(painter, QRectF(0, band_->first * height(), width(),
                               (band_->second - band_->first) * height()));
  }
}

void PlotView::DrawBandOn(QPainter& painter, const QRectF& place) {
  QColor ink = kCrosshairInk;
  painter.fillRect(QRectF(place.left(), place.top(), place.width(), 1), ink);
  painter.fillRect(QRectF(place.left(), place.bottom() - 1, place.width(), 1), ink);
  ink.setAlphaF(kBandShade);
  painter.fillRect(place, ink);
}

void PlotView::DrawCrosshair(QPainter& painter) const {
  if (!crosshair_) {
    return;
  }
  const QPoint at = *crosshair_;
  const int aside = kCrosshairWidth / 2;
  painter.fillRect(at.x() - aside, 0, kCrosshairWidth, height(), kCrosshairEdge);
  painter.fillRect(0, at.y() - aside, width(), kCrosshairWidth, kCrosshairEdge);
  painter.fillRect(at.x(), 0, 1, height(), kCrosshairInk);
  painter.fillRect(0, at.y(), width(), 1, kCrosshairInk);
}

void PlotView::resizeEvent(QResizeEvent* /*event*/) {
  emit SizeChanged();
}

void PlotView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    setFocus(Qt::MouseFocusReason);
    emit Pressed(UserAt(event->position()));
  }
}

void PlotView::mouseMoveEvent(QMouseEvent* event) {
  emit Moved(UserAt(event->position()));
}

void PlotView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    emit Released(UserAt(event->position()));
  }
}

void PlotView::leaveEvent(QEvent* /*event*/) {
  emit Left();
}

}  // namespace tavrel
