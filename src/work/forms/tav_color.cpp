#include "work/forms/tav_color.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

#include "state/curve_colours.h"
#include "widgets/curve_sample.h"
#include "widgets/shades.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr int kRows = ColourChoice::kRows;
constexpr int kColourRowAir = 8;
constexpr int kSampleWidth = 90;
constexpr int kNameCharacters = 16;
constexpr int kIndent = 8;

QString NameOf(int row) {
  const CurveColour* colour = CurveColourOf(row + 1);
  return colour == nullptr ? QString("no color") : QtText(colour->Name);
}

}  // namespace

ColourPicture::ColourPicture(int row, QWidget* parent)
    : QWidget(parent), row_(std::clamp(row, 0, kRows - 1)) {
  setObjectName("PicColor");
  SpeakAs(*this, QAccessible::List);
  SpeakRow();
  setFocusPolicy(Qt::StrongFocus);
  setMouseTracking(true);
}

QSize ColourPicture::sizeHint() const {
  return {kSampleWidth + fontMetrics().averageCharWidth() * kNameCharacters + kIndent,
          (fontMetrics().height() + kColourRowAir) * kRows};
}

double ColourPicture::Scaled(qreal height) const {
  return height * kRows / std::max(this->height(), 1);
}

QRectF ColourPicture::RowRect(int row) const {
  const qreal row_height = static_cast<qreal>(height()) / kRows;
  return {0, row * row_height, static_cast<qreal>(width()), row_height};
}

void ColourPicture::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Base));
  // The paper of the graph is white in every palette.
  painter.fillRect(QRect(0, 0, kSampleWidth, height()), Qt::white);
  for (int row = 0; row < kRows; ++row) {
    DrawRow(painter, row);
  }
  painter.setPen(EdgeOf(palette()));
  painter.setBrush(Qt::NoBrush);
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void ColourPicture::DrawRow(QPainter& painter, int row) const {
  const QRectF place = RowRect(row);
  const QRectF name = place.adjusted(kSampleWidth, 0, 0, 0);
  const bool is_chosen = row == row_;
  if (is_chosen) {
    painter.fillRect(name, palette().color(QPalette::Highlight));
  }
  painter.setPen(QPen(palette().color(QPalette::Button), 1));
  painter.drawLine(place.topLeft(), place.topRight());
  DrawCurveSample(painter, QRectF(0, place.top(), kSampleWidth, place.height()), row + 1);
  painter.setPen(palette().color(is_chosen ? QPalette::HighlightedText : QPalette::Text));
  painter.drawText(name.adjusted(kIndent, 0, 0, 0), Qt::AlignVCenter | Qt::AlignLeft, NameOf(row));
}

void ColourPicture::MoveTo(int row) {
  row_ = std::clamp(row, 0, kRows - 1);
  SpeakRow();
  update();
}

void ColourPicture::SpeakRow() {
  setAccessibleName("color: " + NameOf(row_));
}

void ColourPicture::mousePressEvent(QMouseEvent* event) {
  emit Clicked(Scaled(event->position().y()));
}

void ColourPicture::mouseMoveEvent(QMouseEvent* event) {
  MoveTo(static_cast<int>(Scaled(event->position().y())));
}

void ColourPicture::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Up:
      MoveTo(row_ - 1);
      break;
    case Qt::Key_Down:
      MoveTo(row_ + 1);
      break;
    case Qt::Key_Home:
      MoveTo(0);
      break;
    case Qt::Key_End:
      MoveTo(kRows - 1);
      break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      if (!event->isAutoRepeat()) {
        emit Clicked(row_ + 0.5);
      }
      break;
    default:
      QWidget::keyPressEvent(event);
  }
}

TavColor::TavColor(ColourChoice& choice) : ModalForm(choice, "TavColor", "color"), choice_(choice) {
  const int code = choice.PresentCode();
  auto* picture = new ColourPicture(CurveColourOf(code) == nullptr ? kRows - 1 : code - 1, this);
  connect(picture, &ColourPicture::Clicked, this, [this](double y) {
    choice_.PicColor_Click(y);
    AfterEvent();
  });
  QVBoxLayout* column = MakeFixedColumn(kNarrowMargin);
  column->addWidget(picture);
  column->addWidget(MakeCancel(), 0, Qt::AlignRight);
  picture->setFocus();
}

// Beside the colour field that it is about, as far as the screen goes.
void TavColor::showEvent(QShowEvent* event) {
  ModalForm::showEvent(event);
  if (event->spontaneous() || parentWidget() == nullptr) {
    return;
  }
  const auto* field = parentWidget()->findChild<QWidget*>(QString("Color_%1").arg(choice_.Input()));
  if (field == nullptr) {
    return;
  }
  const QRect room = screen()->availableGeometry();
  const QPoint wanted = field->mapToGlobal(QPoint(field->width() + kNarrowMargin, -height() / 4));
  move(std::clamp(wanted.x(), room.left(), std::max(room.left(), room.right() - width())),
       std::clamp(wanted.y(), room.top(), std::max(room.top(), room.bottom() - height())));
}

}  // namespace tavrel
