#ifndef TAVREL_GRAPH_FORMS_CURVE_FRAME_H_
#define TAVREL_GRAPH_FORMS_CURVE_FRAME_H_

#include <QLabel>
#include <QWidget>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "graph/forms/plot_view.h"
#include "graph/graph_state.h"
#include "graph/graph_values.h"
#include "graph/told_band.h"

namespace tavrel {

// frCurve: the plot of one view with the strips of its axes, white on every desktop. It owns the
// pictures that the graph paints on.
class CurveFrame : public QWidget {
  Q_OBJECT
 public:
  // `view` is kOverview or kPartView; it stands behind the names of the widgets.
  CurveFrame(int view, QWidget* parent);

  [[nodiscard]] ViewSurfaces Surfaces() { return {pic_c_, img_c_, pic_x_, pic_y_}; }
  [[nodiscard]] PlotView& Plot() { return *view_c_; }

  // True if the pictures are as large as the views of `shown`, which is this frame or the one
  // that stands in its place.
  [[nodiscard]] bool FitsTo(const CurveFrame& shown) const;
  // Makes them so, white.
  void FitTo(const CurveFrame& shown);

  // The unit of the X axis.
  void UpdateWidgets(const GraphValues& now);
  // The keyboard's cursor and the label that follows the mouse. Not in the middle of a drawing,
  // which has another scale.
  void ShowPlaces(const GraphValues& now);

  // The band beneath the plot, along the upper edge of the X axis: it takes no room of its own.
  // What its tip says is asked when the mouse rests on a column of it.
  using BandTip = std::function<std::string(int column, int columns)>;
  void ShowBand(const std::vector<BandRun>& runs);
  void AskForTip(BandTip tip) { tip_ = std::move(tip); }
  [[nodiscard]] int BandColumns() const { return view_x_->DotsNow().width(); }

 signals:
  void SizeChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] PlotView* MakeView(const char* name, PlotSurface& surface);
  void MakeMouseLabel();
  void Arrange();
  void ShowMouseLabel(const GraphValues& now);

  int view_;
  PlotSurface pic_c_;
  PlotSurface img_c_;
  PlotSurface pic_x_{PlotSurface::Upright::kUpsideDown};  // its ticks hang from the plot
  PlotSurface pic_y_;
  PlotView* view_c_ = nullptr;
  PlotView* view_x_ = nullptr;
  PlotView* view_y_ = nullptr;
  QLabel* lbl_axis_ = nullptr;
  QLabel* lb_xy_ = nullptr;
  BandTip tip_;
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_FORMS_CURVE_FRAME_H_
