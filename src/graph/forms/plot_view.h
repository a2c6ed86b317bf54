#ifndef TAVREL_GRAPH_FORMS_PLOT_VIEW_H_
#define TAVREL_GRAPH_FORMS_PLOT_VIEW_H_

#include <QColor>
#include <QPair>
#include <QTimer>
#include <QWidget>
#include <optional>
#include <vector>

#include "platform/qt/plot_surface.h"
#include "platform/stroke_pieces.h"

namespace tavrel {

// Shows a picture of the graph and tells where the mouse is on it. While the picture grows it is
// painted again at most every 40 ms, and only where it changed.
class PlotView : public QWidget {
  Q_OBJECT
 public:
  // `surface` outlives the view. The picture fits when FitSurface was called after the last
  // change of the view's size.
  PlotView(PlotSurface& surface, QWidget* parent);

  // Dots of the device that the view has now.
  [[nodiscard]] QSize DotsNow() const;
  [[nodiscard]] bool Fits() const;

  // A position of the view in the user scale of the picture, and back.
  [[nodiscard]] QPointF UserAt(QPointF position) const;
  [[nodiscard]] QPoint PositionOf(QPointF user) const;

  // A broad stroke over the picture along points in its user scale; nothing where the line has a
  // gap. Empty: none.
  struct Stroke {
    std::vector<StrokePoints> Pieces;
    Colour Ink;
  };
  // Not in the middle of a drawing.
  void ShowStroke(const Stroke& stroke);

  // A frame around rows of the picture, from one height to another, 0 at the top and 1 at the
  // bottom.
  void ShowBand(std::optional<QPair<qreal, qreal>> band);
  static void DrawBandOn(QPainter& painter, const QRectF& place);

  // Boxes along the upper edge of the picture, beneath what is dark in it: columns of dots of the
  // device, both of them, and a height in 1/96 inch.
  struct EdgeBox {
    int First = 0;
    int Last = 0;
    qreal Height = 0;
    QColor Ink;
  };
  void ShowEdge(std::vector<EdgeBox> boxes);

  // Two lines across the whole view through a position, over the picture.
  void ShowCrosshair(std::optional<QPoint> position);

  [[nodiscard]] QSize minimumSizeHint() const override { return least_; }
  [[nodiscard]] QSize sizeHint() const override { return least_; }
  void SetLeastSize(QSize size) { least_ = size; }

 signals:
  void SizeChanged();
  // The left button and the move, in the user scale.
  void Pressed(QPointF user);
  void Moved(QPointF user);
  void Released(QPointF user);
  void Left();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void UpdateChanges();
  void UpdateCrosshair();
  void DrawStroke(QPainter& painter) const;
  void DrawEdge(QPainter& painter) const;
  void DrawBand(QPainter& painter) const;
  void DrawCrosshair(QPainter& painter) const;

  PlotSurface& surface_;
  QTimer repaint_;
  QSize least_{1, 1};
  std::optional<QPoint> crosshair_;
  Stroke stroke_;
  std::vector<EdgeBox> edge_;
  std::optional<QPair<qreal, qreal>> band_;
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_FORMS_PLOT_VIEW_H_
