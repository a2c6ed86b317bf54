#ifndef TAVREL_GRAPH_FORMS_GRAPH_LEGEND_H_
#define TAVREL_GRAPH_FORMS_GRAPH_LEGEND_H_

#include <QWidget>
#include <vector>

#include "graph/forms/plot_view.h"
#include "graph/graph_values.h"

namespace tavrel {

// The values of the curves at the cursor, one row for each, white on every desktop.
class LegendValues : public QWidget {
  Q_OBJECT
 public:
  explicit LegendValues(QWidget* parent);

  void Show(const std::vector<LegendRow>& rows, int strong);

 signals:
  void Clicked(double height);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  std::vector<QString> texts_;
  int strong_ = -1;
};

// The legend: line samples, names and values of the curves, white on every desktop, and beneath it
// the arrow that points to it while a curve is to be chosen.
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

  // The values at the cursor, and which row stands out.
  void ShowRows(const GraphValues& now);

 signals:
  void SizeChanged();
  void Clicked(double height);  // 0 at the top, 1 at the bottom

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void SpeakNames();
  [[nodiscard]] QString NameAt(qreal height) const;

  [[nodiscard]] PlotView* MakeView(const char* name, PlotSurface& surface);

  PlotSurface pic_color_;
  PlotSurface pic_prod_;
  PlotView* view_color_ = nullptr;
  PlotView* view_prod_ = nullptr;
  LegendValues* values_ = nullptr;
  QWidget* up_arrow_ = nullptr;
  std::vector<LegendRow> rows_;
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_FORMS_GRAPH_LEGEND_H_
