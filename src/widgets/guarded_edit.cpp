#include "widgets/guarded_edit.h"

#include <QFocusEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

namespace tavrel {
namespace {

bool IsEnter(const QKeyEvent& event) {
  return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

}  // namespace

GuardedEdit::GuardedEdit(QWidget* parent) : NameEdit(parent) {
  setReadOnly(true);
}

// Nothing is selected, so that the first letter does not wipe the name.
void GuardedEdit::Begin() {
  if (!isReadOnly()) {
    return;
  }
  before_ = text();
  setReadOnly(false);
  deselect();
  end(false);
}

void GuardedEdit::End() {
  setReadOnly(true);
  deselect();
  setCursorPosition(0);
}

void GuardedEdit::PutBack() {
  if (text() != before_) {
    setText(before_);
    emit textEdited(before_);
  }
  End();
}

// A name that is too long for its column ends in an ellipsis while nobody edits it.
void GuardedEdit::paintEvent(QPaintEvent* event) {
  constexpr int kInnerMargin = 2;  // of the toolkit, beside the margins of the text
  const QMargins margins = textMargins();
  const int left = margins.left() + kInnerMargin;
  const int text_width = fontMetrics().horizontalAdvance(text());
  if (!isReadOnly() || text_width <= width() - left - margins.right() - kInnerMargin) {
    NameEdit::paintEvent(event);
    return;
  }
  {
    const QRect room = rect().adjusted(left, 0, -kInnerMargin, 0);
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Text));
    painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     fontMetrics().elidedText(text(), Qt::ElideRight, room.width()));
  }
  PaintFrame();
}

// A letter with Alt belongs to the menu and the buttons.
void GuardedEdit::keyPressEvent(QKeyEvent* event) {
  const bool is_editing = !isReadOnly();
  const bool begins = IsEnter(*event) || event->key() == Qt::Key_F2;
  if (!is_editing && begins) {
    if (!event->isAutoRepeat()) {
      Begin();
    }
  } else if (is_editing && IsEnter(*event)) {
    End();
    focusNextChild();
  } else if (is_editing && event->key() == Qt::Key_Escape) {
    PutBack();
  } else if (!is_editing || (event->modifiers() & Qt::AltModifier) != 0) {
    event->ignore();
  } else {
    NameEdit::keyPressEvent(event);
  }
}

void GuardedEdit::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    Begin();
  }
  NameEdit::mousePressEvent(event);
}

void GuardedEdit::focusInEvent(QFocusEvent* event) {
  NameEdit::focusInEvent(event);
  if (isReadOnly()) {
    deselect();
  }
}

// Another window that comes in front for a while does not end the editing.
void GuardedEdit::focusOutEvent(QFocusEvent* event) {
  NameEdit::focusOutEvent(event);
  if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) {
    End();
  }
}

}  // namespace tavrel
