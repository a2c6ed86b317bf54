#include "graph/forms/graph_legend.h"

#include <QGridLayout>
#include <QPainter>

#include "graph/forms/graph_glyphs.h"
#include "widgets/shades.h"

namespace tavrel {
namespace {

constexpr int kRows = 16;  // one more than there can be curves
constexpr int kBetweenRows = 3;
constexpr int kSampleWidth = 44;
constexpr const char* kLongName = "nnnnnnnnnnnnnnnnnnnn";  // of 20 characters, most are narrower
constexpr qreal kArrowSize = 2;                            // in heights of a line

// A picture in the accent of the desktop.
class Arrow : public QWidget {
 public:
  explicit Arrow(QWidget* parent) : QWidget(parent) {
    setObjectName("Up_Arrow");
    setAccessibleName("select a curve above");
    const int side = qRound(kArrowSize * fontMetrics().height());
    setFixedSize(side, side);
    QSizePolicy keeps_its_place = sizePolicy();
    keeps_its_place.setRetainSizeWhenHidden(true);
    setSizePolicy(keeps_its_place);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    DrawUpArrowGlyph(painter, rect(), palette().color(QPalette::Highlight));
  }
};

}  // namespace

GraphLegend::GraphLegend(QWidget* parent) : QWidget(parent) {
  const int height = kRows * (fontMetrics().height() + kBetweenRows);
  view_color_ = MakeView("PicColor", pic_color_);
  view_color_->setFixedSize(kSampleWidth, height);
  view_color_->setAccessibleName("colours of the curves");
  view_prod_ = MakeView("PicProd", pic_prod_);
  view_prod_->setFixedSize(fontMetrics().horizontalAdvance(kLongName), height);
  view_prod_->setAccessibleName("names of the curves");
  up_arrow_ = new Arrow(this);
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(1, 1, 1, 1);
  grid->setSpacing(0);
  grid->addWidget(view_color_, 0, 0);
  grid->addWidget(view_prod_, 0, 1);
  grid->addWidget(up_arrow_, 1, 0, Qt::AlignHCenter | Qt::AlignTop);
  grid->setRowStretch(1, 1);
}

PlotView* GraphLegend::MakeView(const char* name, PlotSurface& surface) {
  auto* view = new PlotView(surface, this);
  view->setObjectName(name);
  connect(view, &PlotView::SizeChanged, this, &GraphLegend::SizeChanged);
  connect(view, &PlotView::Released, this, [this](QPointF user) { emit Clicked(user.y()); });
  return view;
}

void GraphLegend::Fit() {
  pic_color_.Resize(view_color_->DotsNow(), view_color_->devicePixelRatioF());
  pic_prod_.Resize(view_prod_->DotsNow(), view_prod_->devicePixelRatioF());
}

void GraphLegend::ShowArrow(bool is_shown) {
  if (is_shown == up_arrow_->isVisibleTo(this)) {
    return;
  }
  up_arrow_->setVisible(is_shown);
  for (QWidget* view : {view_color_, view_prod_}) {
    view->setCursor(is_shown ? Qt::PointingHandCursor : Qt::ArrowCursor);
  }
}

void GraphLegend::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(EdgeOf(palette()));
  const QRect legend = view_color_->geometry() | view_prod_->geometry();
  painter.drawRect(legend.adjusted(-1, -1, 0, 0));
}

}  // namespace tavrel
