#include "widgets/number_edit.h"

#include <QFocusEvent>
#include <QRegularExpressionValidator>

namespace tavrel {
namespace {

constexpr int kCharacters = 9;
constexpr int kMostDigits = 12;

}  // namespace

NumberEdit::NumberEdit(const QString& name, QWidget* parent) : SelectingEdit(parent) {
  setObjectName(name);
  setAlignment(Qt::AlignRight);
  setMaxLength(kMostDigits);
  setFixedWidth(fontMetrics().horizontalAdvance(QString(kCharacters, '0')) + 16);
  const QRegularExpression number(R"(\?|[-+]?[0-9]*[.,]?[0-9]*)");
  setValidator(new QRegularExpressionValidator(number, this));
}

void NumberEdit::focusOutEvent(QFocusEvent* event) {
  SelectingEdit::focusOutEvent(event);
  if (event->reason() != Qt::PopupFocusReason && event->reason() != Qt::ActiveWindowFocusReason) {
    emit Left();
  }
}

}  // namespace tavrel
