#include "graph/forms/curve_frame.h"

#include <QApplication>
#include <QGridLayout>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

#include "widgets/modal_form.h"
#include "widgets/shades.h"

namespace tavrel {
namespace {

constexpr QColor kEdge(0xA0, 0xA0, 0xA0);  // around the plot, which is white
constexpr QSize kLeastPlot(190, 180);
constexpr qreal kStripHeight = 1.8;  // of PicX, in heights of a line: label and tick
constexpr qreal kStripWidth = 1.45;  // of PicY, in widths of its longest label
constexpr const char* kLongestLabel = "-30000";
constexpr int kPad = 6;
constexpr qreal kBandPart = 0.19;  // of the strip's height: the length of its ticks

// Black on white, whatever the desktop is like.
QPalette OnWhite(QPalette palette) {
  for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
    palette.setColor(group, QPalette::Window, Qt::white);
    palette.setColor(group, QPalette::WindowText, Qt::black);
  }
  return palette;
}

void Fit(PlotSurface& surface, const PlotView& to) {
  surface.Resize(to.DotsNow(), to.devicePixelRatioF());
}

bool IsFit(const PlotSurface& surface, const PlotView& to) {
  return surface.Picture().size() == to.DotsNow() &&
         surface.DeviceScale() == to.devicePixelRatioF();
}

}  // namespace

CurveFrame::CurveFrame(int view, QWidget* parent) : QWidget(parent), view_(view) {
  setObjectName(QString("frCurve_%1").arg(view));
  setPalette(OnWhite(palette()));
  setAutoFillBackground(true);
  view_c_ = MakeView("PicC", pic_c_);
  view_c_->SetLeastSize(kLeastPlot);
  view_c_->setMouseTracking(true);
  view_c_->setCursor(Qt::CrossCursor);
  view_c_->setFocusPolicy(Qt::StrongFocus);
  view_c_->setAccessibleName(view == kOverview ? "curves, overview" : "curves, part view");
  view_x_ = MakeView("PicX", pic_x_);
  view_x_->setAccessibleName("X axis");
  view_x_->SetLeastSize({1, qRound(kStripHeight * fontMetrics().height())});
  view_x_->installEventFilter(this);
  view_y_ = MakeView("PicY", pic_y_);
  view_y_->setAccessibleName("Y axis");
  view_y_->SetLeastSize({qRound(kStripWidth * fontMetrics().horizontalAdvance(kLongestLabel)), 1});
  lbl_axis_ = new QLabel(this);
  lbl_axis_->setObjectName(QString("LblAxis_%1").arg(view));
  lbl_axis_->setMinimumWidth(fontMetrics().horizontalAdvance("min ") + kPad);
  if (view == kPartView) {
    MakeMouseLabel();
  }
  Arrange();
}

PlotView* CurveFrame::MakeView(const char* name, PlotSurface& surface) {
  auto* view = new PlotView(surface, this);
  view->setObjectName(QString("%1_%2").arg(name).arg(view_));
  connect(view, &PlotView::SizeChanged, this, &CurveFrame::SizeChanged);
  return view;
}

// The mouse goes through it to the plot.
void CurveFrame::MakeMouseLabel() {
  lb_xy_ = new QLabel(view_c_);
  lb_xy_->setObjectName("lbXY");
  lb_xy_->setTextFormat(Qt::PlainText);
  lb_xy_->setAutoFillBackground(true);
  lb_xy_->setFrameShape(QFrame::Box);
  lb_xy_->setAttribute(Qt::WA_TransparentForMouseEvents);
  lb_xy_->hide();
}

// The strips lie edge to edge with the plot but for the line around it.
void CurveFrame::Arrange() {
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(kPad, kPad, kPad, kPad);
  grid->setSpacing(1);
  auto* degrees = new QLabel(QString::fromUtf8("°C"), this);
  degrees->setIndent(0);
  grid->addWidget(degrees, 0, 0, Qt::AlignRight | Qt::AlignVCenter);
  degrees->setContentsMargins(0, 0, view_y_->sizeHint().width() / 4, 0);
  grid->addWidget(view_y_, 1, 0);
  grid->addWidget(view_c_, 1, 1);
  grid->addWidget(view_x_, 2, 1);
  grid->addWidget(lbl_axis_, 2, 2, Qt::AlignLeft | Qt::AlignBottom);
  grid->setRowStretch(1, 1);
  grid->setColumnStretch(1, 1);
  for (PlotView* view : {view_x_, view_y_}) {
    view->setSizePolicy(view == view_x_ ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                        view == view_x_ ? QSizePolicy::Fixed : QSizePolicy::Expanding);
  }
  view_c_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

bool CurveFrame::FitsTo(const CurveFrame& shown) const {
  return IsFit(pic_c_, *shown.view_c_) && IsFit(pic_x_, *shown.view_x_) &&
         IsFit(pic_y_, *shown.view_y_);
}

void CurveFrame::FitTo(const CurveFrame& shown) {
  Fit(pic_c_, *shown.view_c_);
  Fit(img_c_, *shown.view_c_);
  Fit(pic_x_, *shown.view_x_);
  Fit(pic_y_, *shown.view_y_);
}

void CurveFrame::UpdateWidgets(const GraphValues& now) {
  lbl_axis_->setText(QtText(now.LblAxis[view_]).trimmed());
}

void CurveFrame::ShowPlaces(const GraphValues& now) {
  const bool has_cursor = now.KeyCursorShown && now.frCurve == view_;
  view_c_->ShowCrosshair(has_cursor
                             ? std::optional(view_c_->PositionOf({now.KeyCursorX, now.KeyCursorY}))
                             : std::nullopt);
  view_c_->setAccessibleDescription(has_cursor ? QtText(now.lbX + "  " + now.lbY) : "");
  if (lb_xy_ != nullptr) {
    ShowMouseLabel(now);
  }
}

void CurveFrame::ShowBand(const std::vector<BandRun>& runs) {
  const qreal height = kBandPart * view_x_->height();
  std::vector<PlotView::EdgeBox> boxes;
  for (const BandRun& run : runs) {
    const Colour ink = BandColour(run.What);
    boxes.push_back({run.First, run.Last, qRound(BandHeight(run.What) * height) * 1.0,
                     QColor(ink.Red, ink.Green, ink.Blue)});
  }
  view_x_->ShowEdge(std::move(boxes));
}

bool CurveFrame::eventFilter(QObject* watched, QEvent* event) {
  if (watched != view_x_ || event->type() != QEvent::ToolTip || !tip_) {
    return QWidget::eventFilter(watched, event);
  }
  const auto* help = static_cast<QHelpEvent*>(event);
  const int column = qRound(help->pos().x() * view_x_->devicePixelRatioF());
  QToolTip::showText(help->globalPos(), QtText(tip_(column, BandColumns())), view_x_);
  return true;
}

// Held inside the plot, so that it can be read at the edges too.
void CurveFrame::ShowMouseLabel(const GraphValues& now) {
  lb_xy_->setVisible(now.lbXYShown);
  if (!now.lbXYShown) {
    return;
  }
  lb_xy_->setText(QtText(now.lbXY));
  lb_xy_->adjustSize();
  const QPoint at = view_c_->PositionOf({now.lbXYLeft, now.lbXYTop});
  const QPoint most(view_c_->width() - lb_xy_->width(), view_c_->height() - lb_xy_->height());
  lb_xy_->move(std::clamp(at.x(), 0, std::max(most.x(), 0)),
               std::clamp(at.y(), 0, std::max(most.y(), 0)));
}

void CurveFrame::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setPen(kEdge);
  painter.drawRect(view_c_->geometry().adjusted(-1, -1, 0, 0));
  painter.setPen(EdgeOf(QApplication::palette()));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

}  // namespace tavrel
