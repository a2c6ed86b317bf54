#include "widgets/curve_sample.h"

#include <QPainter>

#include "state/curve_colours.h"
#include "widgets/modal_form.h"
#include "widgets/shades.h"

namespace tavrel {
namespace {

constexpr qreal kPen = 3;
constexpr qreal kUnits = 18;
constexpr qreal kFrom = 4;
constexpr qreal kTo = 14;
constexpr int kInset = 4;  // of the paper in the button
constexpr qreal kPaperRadius = 3;

}  // namespace

void DrawCurveSample(QPainter& painter, const QRectF& place, int code) {
  const CurveColour* colour = CurveColourOf(code);
  if (colour == nullptr) {
    return;
  }
  const Colour rgb = colour->Rgb;
  const qreal unit = place.width() / kUnits;
  const qreal height = place.center().y();
  painter.setPen(QPen(QColor(rgb.Red, rgb.Green, rgb.Blue), kPen, Qt::SolidLine, Qt::FlatCap));
  painter.drawLine(QPointF(place.left() + kFrom * unit, height),
                   QPointF(place.left() + kTo * unit, height));
}

CurveSampleButton::CurveSampleButton(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::StrongFocus);
}

void CurveSampleButton::SetCode(int code) {
  if (code == code_) {
    return;
  }
  code_ = code;
  const CurveColour* colour = CurveColourOf(code);
  setAccessibleDescription(colour == nullptr ? QString("no color") : QtText(colour->Name));
  update();
}

QSize CurveSampleButton::sizeHint() const {
  return {fontMetrics().height() * 3, fontMetrics().height() + kInset * 2};
}

// The paper of the graph is white in every palette.
void CurveSampleButton::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const bool awake = hasFocus() || underMouse();
  const qreal width = hasFocus() ? 2 : 1;
  const QRectF paper = QRectF(rect()).adjusted(kInset, kInset, -kInset, -kInset);
  painter.setPen(QPen(awake ? palette().color(QPalette::Highlight) : EdgeOf(palette()), width));
  painter.setBrush(Qt::white);
  painter.drawRoundedRect(paper, kPaperRadius, kPaperRadius);
  DrawCurveSample(painter, paper, code_);
}

void CurveSampleButton::enterEvent(QEnterEvent* event) {
  QAbstractButton::enterEvent(event);
  update();
}

void CurveSampleButton::leaveEvent(QEvent* event) {
  QAbstractButton::leaveEvent(event);
  update();
}

}  // namespace tavrel
