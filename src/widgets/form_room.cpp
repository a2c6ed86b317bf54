#include "widgets/form_room.h"

#include <QApplication>
#include <QDialog>
#include <QEvent>
#include <QLayoutItem>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

namespace tavrel {
namespace {

constexpr QSize kLeastPage{120, 80};
constexpr int kAround = 4;       // points beside a control that has come into sight
constexpr int kLargestFoot = 3;  // a foot may take this part of the height

bool Fits(QSize size, QSize room) {
  return size.width() <= room.width() && size.height() <= room.height();
}

bool ContainsDefault(const QLayoutItem& item);

bool ContainsDefault(const QLayout& layout) {
  for (int place = 0; place < layout.count(); ++place) {
    if (ContainsDefault(*layout.itemAt(place))) {
      return true;
    }
  }
  return false;
}

bool ContainsDefault(const QLayoutItem& item) {
  auto& any = const_cast<QLayoutItem&>(item);  // the toolkit's own functions are not const
  if (const QLayout* layout = any.layout()) {
    return ContainsDefault(*layout);
  }
  const auto* button = qobject_cast<const QPushButton*>(any.widget());
  return button != nullptr && button->isDefault();
}

// The last line of the form's column, out of that, if it can stay in sight. Null if there is none.
QLayoutItem* TakeFoot(QLayout& layout, int room) {
  auto* column = qobject_cast<QVBoxLayout*>(&layout);
  if (column == nullptr || column->count() < 2) {
    return nullptr;
  }
  const QLayoutItem* last = column->itemAt(column->count() - 1);
  const bool is_foot = ContainsDefault(*last) && last->sizeHint().height() * kLargestFoot < room;
  return is_foot ? column->takeAt(column->count() - 1) : nullptr;
}

void AddFoot(QVBoxLayout& column, QLayoutItem* foot, QMargins margins) {
  auto* line = new QVBoxLayout;
  line->setContentsMargins(margins.left(), 0, margins.right(), margins.bottom());
  column.addLayout(line);
  if (QLayout* layout = foot->layout()) {
    line->addLayout(layout);  // the item is the layout itself
    return;
  }
  line->addWidget(foot->widget(), 0, foot->alignment());
  delete foot;
}

// The menu stays above and the foot beneath what scrolls.
void LetScroll(QDialog& form, QSize room) {
  QLayout* contents = form.layout();
  QWidget* menu = contents->menuBar();
  const QMargins margins = contents->contentsMargins();
  contents->setMenuBar(nullptr);
  QLayoutItem* foot = TakeFoot(*contents, room.height());
  auto* page = new QWidget(&form);
  page->setLayout(contents);
  contents->setSizeConstraint(QLayout::SetDefaultConstraint);
  auto* column = new QVBoxLayout(&form);
  column->setContentsMargins(0, 0, 0, 0);
  column->setMenuBar(menu);
  column->addWidget(new ScrollingPart(page, kLeastPage, &form), 1);
  if (foot != nullptr) {
    AddFoot(*column, foot, margins);
  }
}

// What scrolls in one direction needs room for its bar in the other, or it scrolls there too.
QSize RoomOfBars(const QDialog& form, QSize wanted, QSize room) {
  const int bar = form.style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, &form);
  return {wanted.height() > room.height() ? bar : 0, wanted.width() > room.width() ? bar : 0};
}

// A form of a fixed size has told the window so.
void LetShrink(QDialog& form) {
  if (form.layout()->sizeConstraint() == QLayout::SetFixedSize) {
    form.layout()->setSizeConstraint(QLayout::SetDefaultConstraint);
    form.setMinimumSize(0, 0);
    form.setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
  }
}

}  // namespace

ScrollingPart::ScrollingPart(QWidget* part, QSize least, QWidget* parent)
    : QScrollArea(parent), least_(least) {
  setObjectName("Scrolls");
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  setFocusPolicy(Qt::NoFocus);
  setWidget(part);
  part->installEventFilter(this);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget* /*before*/, QWidget* now) {
    if (now != nullptr && widget() != nullptr && widget()->isAncestorOf(now)) {
      Reveal(*now);
    }
  });
}

// All of the control, or its beginning if it is larger than what is in sight. The toolkit's own
// procedure is content with the cursor of a text.
void ScrollingPart::Reveal(const QWidget& control) {
  const QSize shown = control.size().boundedTo(viewport()->size());
  const QRect place(control.mapTo(widget(), QPoint()), shown);
  ensureVisible(place.center().x(), place.center().y(), shown.width() / 2 + kAround,
                shown.height() / 2 + kAround);
}

QSize ScrollingPart::sizeHint() const {
  return widget()->sizeHint().expandedTo(minimumSizeHint());
}

// Where the part needs no more than that, it scrolls nowhere.
QSize ScrollingPart::minimumSizeHint() const {
  const QSize bars(verticalScrollBar()->sizeHint().width(),
                   horizontalScrollBar()->sizeHint().height());
  return (widget()->minimumSizeHint() + bars).boundedTo(least_);
}

// The part asks for another size.
bool ScrollingPart::eventFilter(QObject* watched, QEvent* event) {
  if (watched == widget() && event->type() == QEvent::LayoutRequest) {
    updateGeometry();
  }
  return QScrollArea::eventFilter(watched, event);
}

QSize RoomFor(const QWidget& form) {
  const QWidget* shown =
      form.isVisible() || form.parentWidget() == nullptr ? &form : form.parentWidget()->window();
  const QSize frame = shown->frameGeometry().size() - shown->geometry().size();
  return form.screen()->availableGeometry().size() - frame;
}

void FitForm(QDialog& form, QSize room) {
  QLayout* layout = form.layout();
  if (layout == nullptr) {
    return;
  }
  layout->activate();
  const bool is_fixed = layout->sizeConstraint() == QLayout::SetFixedSize;
  const bool is_given = form.testAttribute(Qt::WA_Resized) && !is_fixed;
  const QSize wanted = is_given ? form.size() : layout->totalSizeHint();
  const bool fits = Fits(wanted, room) && Fits(layout->totalMinimumSize(), room);
  if (!fits) {
    LetShrink(form);
  }
  QSize bars(0, 0);
  if (!Fits(form.layout()->totalMinimumSize(), room)) {
    LetScroll(form, room);
    bars = RoomOfBars(form, wanted, room);
  }
  if (!fits || (!is_given && !is_fixed)) {
    form.layout()->activate();
    form.resize((wanted + bars).boundedTo(room));
  }
}

void KeepOnScreen(QWidget& window) {
  const QRect room = window.screen()->availableGeometry();
  const QRect frame = window.frameGeometry();
  const int left = std::max(room.left(), std::min(frame.left(), room.right() + 1 - frame.width()));
  const int top = std::max(room.top(), std::min(frame.top(), room.bottom() + 1 - frame.height()));
  if (QPoint(left, top) != frame.topLeft()) {
    window.move(left, top);
  }
}

}  // namespace tavrel
