#ifndef TAVREL_GRAPH_FORMS_GRAPH_LEGEND_H_
#define TAVREL_GRAPH_FORMS_GRAPH_LEGEND_H_

#include <QWidget>

#include "graph/forms/plot_view.h"

namespace tavrel {

// The legend: line samples and names of the curves, white on every desktop, and beneath it the
// arrow that points to it while a curve is to be chosen.
class GraphLegend : public QWidget {
  Q_OBJECT
 public:
  explicit GraphLegend(QWidget* parent);

  [[nodiscard]] Surface& Samples() { return pic_color_; }
  [[nodiscard]] Surface& Names() { return pic_prod_; }

  [[nodiscard]] bool Fits() const { return view_color_->Fits() && view_prod_->Fits(); }
  // Makes the pictures as large as they are shown, white.
  void Fit();

  void ShowArrow(bool is_shown);

 signals:
  void SizeChanged();
  void Clicked(double height);  // 0 at the top, 1 at the bottom

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] PlotView* MakeView(const char* name, PlotSurface& surface);

  PlotSurface pic_color_;
  PlotSurface pic_prod_;
  PlotView* view_color_ = nullptr;
  PlotView* view_prod_ = nullptr;
  QWidget* up_arrow_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_FORMS_GRAPH_LEGEND_H_
