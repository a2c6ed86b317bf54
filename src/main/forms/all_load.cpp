#include "main/forms/all_load.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <chrono>

#include "main/forms/emblem.h"
#include "main/start_up.h"
#include "widgets/muted_label.h"
#include "widgets/shades.h"
#include "widgets/spoken.h"

namespace tavrel {
namespace {

constexpr int kWidth = 560;
constexpr int kHeight = 228;
constexpr int kMargin = 36;
constexpr int kEmblemSide = 112;
constexpr int kHeatBar = 4;  // along the lower edge, from cold to hot

QLabel* MakeLine(const QString& text, qreal size, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  QFont font = label->font();
  font.setPointSizeF(font.pointSizeF() * size);
  label->setFont(font);
  return label;
}

QLabel* MakeName(QWidget* parent) {
  QLabel* name = MakeLine("TAVREL", 3.0, parent);
  QFont spaced = name->font();
  spaced.setLetterSpacing(QFont::AbsoluteSpacing, 6);
  name->setFont(spaced);
  return name;
}

}  // namespace

AllLoad::AllLoad() : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint) {
  setObjectName("ALL_LOAD");
  setWindowTitle("TAVREL");
  SpeakAs(*this, QAccessible::Window);
  setFixedSize(kWidth, kHeight);
  QLabel* kind = MakeLine("Measuring and Control System", 1.25, this);
  lb_release_ = new MutedLabel("", this);
  lb_release_->setObjectName("lbRelease");
  cmd_start_ = new GlyphButton(nullptr, this);
  cmd_start_->setObjectName("cmdStart");
  cmd_start_->setEnabled(false);
  cmd_start_->setFocusPolicy(Qt::NoFocus);
  connect(cmd_start_, &GlyphButton::clicked, this, &AllLoad::Leave);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kMargin + kEmblemSide + kMargin, kMargin, kMargin, kMargin);
  column->setSpacing(4);
  column->addWidget(MakeName(this));
  column->addWidget(kind);
  column->addWidget(lb_release_);
  column->addStretch(1);
  column->addWidget(cmd_start_, 0, Qt::AlignLeft);
  timer_load_.setObjectName("TimerLoad");
  timer_load_.setSingleShot(true);
  connect(&timer_load_, &QTimer::timeout, this, &AllLoad::Leave);
  setFocusPolicy(Qt::StrongFocus);
  Place();
}

// In the horizontal middle, one tenth of the free height below the top.
void AllLoad::Place() {
  const QRect room = screen()->availableGeometry();
  move(room.left() + (room.width() - width()) / 2, room.top() + (room.height() - height()) / 10);
}

void AllLoad::UpdateWidgets(const SplashValues& values) {
  cmd_start_->setText(QString::fromStdString(values.cmdStart));
  cmd_start_->setAccessibleName(QString::fromStdString(values.cmdStart).trimmed());
  lb_release_->setText(QString::fromStdString(values.lbRelease));
  cmd_start_->setEnabled(true);
  can_leave_ = true;
  timer_load_.start(std::chrono::seconds(kSplashSeconds));
}

void AllLoad::Leave() {
  if (!can_leave_) {
    return;
  }
  can_leave_ = false;
  timer_load_.stop();
  emit Left();
}

// Each key leaves, also those that would move the focus, and goes no further.
bool AllLoad::event(QEvent* event) {
  if (event->type() != QEvent::KeyPress) {
    return QWidget::event(event);
  }
  event->accept();
  Leave();
  return true;
}

void AllLoad::mousePressEvent(QMouseEvent* /*event*/) {
  Leave();
}

void AllLoad::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.fillRect(rect(), palette().color(QPalette::Base));
  painter.setPen(EdgeOf(palette()));
  painter.drawRect(rect().adjusted(0, 0, -1, -1));
  QLinearGradient heat(rect().bottomLeft(), rect().bottomRight());
  heat.setColorAt(0.0, QColor(0x4F, 0x9F, 0xD8));
  heat.setColorAt(0.6, QColor(0xF0, 0xA2, 0x4A));
  heat.setColorAt(1.0, QColor(0xF2, 0x6B, 0x3A));
  painter.fillRect(0, height() - kHeatBar, width(), kHeatBar, heat);
  DrawEmblem(painter, QRectF(kMargin, kMargin, kEmblemSide, kEmblemSide));
}

}  // namespace tavrel
