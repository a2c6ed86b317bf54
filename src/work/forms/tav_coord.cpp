#include "work/forms/tav_coord.h"

#include <QComboBox>
#include <QGridLayout>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QVBoxLayout>

#include "widgets/list_search.h"
#include "widgets/muted_label.h"
#include "widgets/number_edit.h"
#include "widgets/shades.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr Qt::Alignment kBesideTheValue = Qt::AlignRight | Qt::AlignVCenter;
constexpr int kPictureSide = 96;

// The picture of the form: a curve in its axes.
class AxesPicture : public QWidget {
 public:
  explicit AxesPicture(QWidget* parent) : QWidget(parent) {
    setFixedSize(kPictureSide, kPictureSide);
    setAccessibleName("axes");
    SpeakAs(*this, QAccessible::Graphic);
  }

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(width() / kUnits, height() / kUnits);
    painter.setPen(QPen(MutedOf(palette()), 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(QPolygonF({{16, 4}, {16, 80}, {92, 80}}));
    painter.drawPolyline(QPolygonF({{11, 11}, {16, 4}, {21, 11}}));
    painter.drawPolyline(QPolygonF({{85, 75}, {92, 80}, {85, 85}}));
    for (const qreal tick : {28.0, 46.0, 64.0}) {
      painter.drawLine(QPointF(12, tick), QPointF(16, tick));
      painter.drawLine(QPointF(96 - tick, 80), QPointF(96 - tick, 84));
    }
    QPainterPath curve(QPointF(17, 72));
    curve.cubicTo(36, 72, 34, 28, 52, 28);
    curve.cubicTo(66, 28, 66, 46, 86, 46);
    painter.setPen(QPen(palette().color(QPalette::Highlight), 2.5, Qt::SolidLine, Qt::RoundCap));
    painter.drawPath(curve);
  }

 private:
  static constexpr qreal kUnits = 96;
};

}  // namespace

TavCoord::TavCoord(Coordinates& coordinates)
    : ModalForm(coordinates, "TavCoord", "coordinates"), coordinates_(coordinates) {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(kWideMargin);
  grid->setVerticalSpacing(10);
  AddBox(*grid, "Y max     °C", Coordinates::kYmax);
  AddBox(*grid, "Y min     °C", Coordinates::kYmin);
  AddBox(*grid, "X max     h", Coordinates::kXmax);
  AddResolution(*grid);
  auto* line = new QHBoxLayout;
  line->setSpacing(kWideMargin);
  line->addWidget(new AxesPicture(this), 0, Qt::AlignTop);
  line->addLayout(grid);
  QVBoxLayout* column = MakeFixedColumn(kWideMargin);
  column->addLayout(line);
  column->addLayout(MakeOkAndCancel([this] { coordinates_.CmdOK_Click(); }));
}

void TavCoord::AddBox(QGridLayout& grid, const char* text, std::size_t box) {
  NumberEdit* edit =
      AddNumberBox(grid, static_cast<int>(box), text, Qt::AlignRight,
                   [this, box](const std::string& now) { coordinates_.TBox_Change(box, now); });
  edit->setText(QtText(coordinates_.TBox(box)));
  edit->setToolTip(QtText(RangeText(coordinates_.LimitsOf(box))));
  edit->selectAll();
}

void TavCoord::AddResolution(QGridLayout& grid) {
  auto* list = new QComboBox(this);
  SearchBehindBlanks(*list);
  list->setObjectName("CboRes");
  list->setAccessibleName("X resolution");
  for (const std::string_view item : kResolutionItems) {
    list->addItem(QtText(item));
  }
  list->setCurrentIndex(coordinates_.CboRes());
  connect(list, &QComboBox::currentIndexChanged, this, [this](int row) {
    coordinates_.CboRes_Click(row);
    AfterEvent();
  });
  const int row = grid.rowCount();
  auto* label = new MutedLabel("X resolution", this);
  label->setBuddy(list);
  grid.addWidget(label, row, 0, kBesideTheValue);
  grid.addWidget(list, row, 1);
}

}  // namespace tavrel
