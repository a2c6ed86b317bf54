#include "graph/forms/graph_legend.h"

#include <QGridLayout>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

#include "base/element.h"
#include "graph/forms/graph_glyphs.h"
#include "graph/measure.h"
#include "widgets/form_texts.h"
#include "widgets/shades.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr int kRows = 16;  // one more than there can be curves
constexpr int kBetweenRows = 3;
constexpr int kSampleWidth = 44;
// The number of the input and a name of 20 characters, most of which are narrower. A longer one is
// cut.
constexpr const char* kLongName = "00  nnnnnnnnnnnnnnnn";
constexpr const char* kLongValue = "-1000.00";
constexpr int kBesideValue = 6;
constexpr const char* kValues = "values at the cursor";
constexpr const char* kNames = "names of the curves";
constexpr qreal kArrowSize = 2;  // in heights of a line

// A picture in the accent of the desktop.
class Arrow : public QWidget {
 public:
  explicit Arrow(QWidget* parent) : QWidget(parent) {
    setObjectName("Up_Arrow");
    setAccessibleName("select a curve above");
    SpeakAs(*this, QAccessible::Graphic);
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

// What a reader of the screen hears of a column of the legend.
QString Spoken(const char* head, const QStringList& rows) {
  return rows.isEmpty() ? QString(head) : QString("%1: %2").arg(head, rows.join("; "));
}

}  // namespace

LegendValues::LegendValues(QWidget* parent) : QWidget(parent) {
  setObjectName("values");
  setAccessibleName(kValues);
  SpeakAs(*this, QAccessible::StaticText);
  QFont bold = font();
  bold.setBold(true);
  setFixedWidth(QFontMetrics(bold).horizontalAdvance(kLongValue) + 2 * kBesideValue);
}

void LegendValues::Show(const std::vector<LegendRow>& rows, int strong) {
  std::vector<QString> texts;
  QStringList spoken;
  for (const LegendRow& row : rows) {
    texts.push_back(QtText(row.Value));
    if (!row.Value.empty()) {
      spoken << QtText(row.Name + " = " + row.Value);
    }
  }
  if (texts != texts_ || strong != strong_) {
    texts_ = texts;
    strong_ = strong;
    setAccessibleName(Spoken(kValues, spoken));
    update();
  }
}

void LegendValues::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::white);
  const qreal row_height = height() / kDrawnLegendRows;
  if (strong_ >= 0) {
    PlotView::DrawBandOn(painter, QRectF(0, (strong_ + 0.5) * row_height, width(), row_height));
  }
  painter.setPen(Qt::black);
  for (std::size_t row = 0; row < texts_.size(); ++row) {
    QFont type = font();
    type.setBold(static_cast<int>(row) == strong_);
    painter.setFont(type);
    const qreal middle = static_cast<qreal>(row + 1) * row_height;
    painter.drawText(QRectF(0, middle - row_height / 2, width() - kBesideValue, row_height),
                     Qt::AlignRight | Qt::AlignVCenter, texts_[row]);
  }
}

void LegendValues::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    emit Clicked(event->position().y() / height());
  }
}

GraphLegend::GraphLegend(QWidget* parent) : QWidget(parent) {
  const int height = kRows * (fontMetrics().height() + kBetweenRows);
  view_color_ = MakeView("PicColor", pic_color_);
  view_color_->setFixedSize(kSampleWidth, height);
  view_color_->setAccessibleName("colours of the curves");
  view_prod_ = MakeView("PicProd", pic_prod_);
  view_prod_->setFixedSize(fontMetrics().horizontalAdvance(kLongName), height);
  view_prod_->setAccessibleName(kNames);
  view_prod_->installEventFilter(this);
  values_ = new LegendValues(this);
  values_->setFixedHeight(height);
  connect(values_, &LegendValues::Clicked, this, &GraphLegend::Clicked);
  up_arrow_ = new Arrow(this);
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(1, 1, 1, 1);
  grid->setSpacing(0);
  grid->addWidget(view_color_, 0, 0);
  grid->addWidget(view_prod_, 0, 1);
  grid->addWidget(values_, 0, 2);
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

void GraphLegend::ShowRows(const GraphValues& now) {
  rows_ = now.Legend;
  values_->Show(now.Legend, now.StrongCurve);
  SpeakNames();
  std::optional<QPair<qreal, qreal>> band;
  if (now.StrongCurve >= 0) {
    band = QPair<qreal, qreal>((now.StrongCurve + 0.5) / kDrawnLegendRows,
                               (now.StrongCurve + 1.5) / kDrawnLegendRows);
  }
  view_color_->ShowBand(band);
  view_prod_->ShowBand(band);
}

void GraphLegend::SpeakNames() {
  QStringList names;
  for (const LegendRow& row : rows_) {
    names << QtText(row.Name);
  }
  const QString spoken = Spoken(kNames, names);
  if (view_prod_->accessibleName() != spoken) {
    view_prod_->setAccessibleName(spoken);
  }
}

// The whole name where it is cut.
QString GraphLegend::NameAt(qreal height) const {
  const int row = LegendRowAt(height, static_cast<int>(rows_.size()));
  const LegendRow* pointed_at = ElementAt(rows_, row);
  return pointed_at != nullptr && pointed_at->IsCut ? QtText(pointed_at->Name) : QString();
}

bool GraphLegend::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    QToolTip::showText(help->globalPos(),
                       NameAt(static_cast<qreal>(help->pos().y()) / view_prod_->height()),
                       view_prod_);
    return true;
  }
  return QWidget::eventFilter(watched, event);
}

// The columns lie on an area that is larger by a point: a stroke at the edge would fall outside at
// a scale such as 1.25.
void GraphLegend::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  const QRect legend = view_color_->geometry() | values_->geometry();
  painter.fillRect(legend.adjusted(-1, -1, 1, 1), EdgeOf(palette()));
}

}  // namespace tavrel
