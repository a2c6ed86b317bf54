#include "work/forms/program_curve.h"

#include <QPainter>
#include <algorithm>

#include "base/number.h"
#include "base/units.h"
#include "widgets/form_texts.h"
#include "widgets/shades.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr int kHeightInLines = 7;
constexpr int kPad = 4;
constexpr qreal kStroke = 2;

QString Degrees(double value) {
  return QtText(ShortestNumber(value) + " °C");
}

QString Duration(double minutes) {
  const bool in_hours = minutes >= 2 * kMinutesPerHour;
  return QtText(in_hours ? FormatMask(minutes / kMinutesPerHour, "####0.0") + " h"
                         : ShortestNumber(minutes) + " min");
}

}  // namespace

ProgramCurve::ProgramCurve(Language language, QWidget* parent) : QWidget(parent) {
  constexpr BothLanguages kName{"profile of the program", "Verlauf des Programms"};
  setObjectName("profile");
  setAccessibleName(QtText(kName.In(language)));
  setToolTip(accessibleName());
  SpeakAs(*this, QAccessible::Chart);
  setMinimumHeight(kHeightInLines * fontMetrics().lineSpacing());
}

void ProgramCurve::Show(const std::vector<ProfilePiece>& pieces) {
  if (pieces == pieces_) {
    return;
  }
  pieces_ = pieces;
  lowest_ = highest_ = pieces.empty() ? 0 : pieces.front().FromDegrees;
  minutes_ = pieces.empty() ? 0 : pieces.back().ToMinutes;
  for (const ProfilePiece& piece : pieces) {
    lowest_ = std::min({lowest_, piece.FromDegrees, piece.ToDegrees});
    highest_ = std::max({highest_, piece.FromDegrees, piece.ToDegrees});
  }
  const QString range =
      lowest_ < highest_ ? Degrees(lowest_) + " ... " + Degrees(highest_) : Degrees(highest_);
  setAccessibleDescription(pieces.empty() ? QString() : range + ",  " + Duration(minutes_));
  update();
}

// Beside the two temperatures and above the length.
QRectF ProgramCurve::Room() const {
  const int left = std::max(fontMetrics().horizontalAdvance(Degrees(highest_)),
                            fontMetrics().horizontalAdvance(Degrees(lowest_))) +
                   3 * kPad;
  const int below = fontMetrics().height() + kPad;
  return QRectF(rect()).adjusted(left, 2 * kPad, -2 * kPad, -below - kPad);
}

void ProgramCurve::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Base));
  painter.setPen(EdgeOf(palette()));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  if (pieces_.empty()) {
    painter.setPen(MutedOf(palette()));
    painter.drawText(rect(), Qt::AlignCenter, accessibleName());
    return;
  }
  DrawTexts(painter);
  painter.setRenderHint(QPainter::Antialiasing);
  DrawPieces(painter);
}

void ProgramCurve::DrawTexts(QPainter& painter) const {
  const QRectF room = Room();
  const qreal half = fontMetrics().height() / 2.0;
  painter.setPen(MutedOf(palette()));
  painter.drawLine(room.bottomLeft(), room.bottomRight());
  painter.drawLine(room.topLeft(), room.bottomLeft());
  const auto beside = [&](qreal y, double degrees) {
    painter.drawText(QRectF(0, y - half, room.left() - kPad, 2 * half),
                     Qt::AlignRight | Qt::AlignVCenter, Degrees(degrees));
  };
  beside(room.top(), highest_);
  if (lowest_ < highest_) {
    beside(room.bottom() - half / 2, lowest_);
  }
  painter.drawText(QRectF(room.left(), room.bottom() + kPad, room.width(), 2 * half),
                   Qt::AlignRight | Qt::AlignVCenter, Duration(minutes_));
}

void ProgramCurve::DrawPieces(QPainter& painter) const {
  const QRectF room = Room();
  const double span = highest_ - lowest_;
  const auto at = [&](double minutes, double degrees) {
    const double up = span > 0 ? (degrees - lowest_) / span : 1;
    return QPointF(room.left() + minutes / minutes_ * room.width(),
                   room.bottom() - up * room.height());
  };
  for (const ProfilePiece& piece : pieces_) {
    const Qt::PenStyle style = piece.IsAim ? Qt::DashLine : Qt::SolidLine;
    painter.setPen(QPen(palette().color(QPalette::Highlight), kStroke, style, Qt::RoundCap));
    painter.drawLine(at(piece.FromMinutes, piece.FromDegrees),
                     at(piece.ToMinutes, piece.ToDegrees));
  }
}

}  // namespace tavrel
