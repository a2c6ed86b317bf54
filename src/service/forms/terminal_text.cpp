#include "service/forms/terminal_text.h"

#include <QContextMenuEvent>
#include <QFontDatabase>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>
#include <QScrollBar>

#include "base/text.h"
#include "widgets/form_texts.h"

namespace tavrel {
namespace {

constexpr int kColumns = 70;
constexpr int kLines = 20;
constexpr BothLanguages kCopy{"Copy", "Kopieren"};
constexpr BothLanguages kPaste{"Paste", "Einfügen"};
constexpr char kFirstPrintable = ' ';

std::string BytesOf(const QString& text) {
  return ToWindows1252(text.toStdString());
}

// Keys that an instrument may get: what can be printed, and Enter, Escape and Backspace.
bool IsForInstrument(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
    case Qt::Key_Backspace:
      return true;
    case Qt::Key_Delete:
      return false;
    default:
      return !event.text().isEmpty() && event.text().front() >= QChar(kFirstPrintable);
  }
}

bool MovesOrSelects(const QKeyEvent& event) {
  switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_Home:
    case Qt::Key_End:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Tab:
    case Qt::Key_Backtab:
      return true;
    default:
      return event.matches(QKeySequence::Copy) || event.matches(QKeySequence::Paste) ||
             event.matches(QKeySequence::SelectAll);
  }
}

}  // namespace

TerminalText::TerminalText(const QString& name, Language language, QWidget* parent)
    : QPlainTextEdit(parent), language_(language) {
  setObjectName(name);
  setTabChangesFocus(true);
  setUndoRedoEnabled(false);
  setAcceptDrops(false);
  setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  setMinimumSize(fontMetrics().averageCharWidth() * kColumns, fontMetrics().height() * kLines);
}

void TerminalText::ShowBytes(const std::string& text) {
  if (text == shown_) {
    return;
  }
  const bool is_longer = text.starts_with(shown_) && !shown_.ends_with('\r');
  const std::string added = is_longer ? text.substr(shown_.size()) : text;
  shown_ = text;
  QString lines = QtText(FromWindows1252(added));
  lines.replace("\r\n", "\n").replace('\r', '\n');
  if (!is_longer) {
    clear();
  }
  QTextCursor end(document());
  end.movePosition(QTextCursor::End);
  end.insertText(lines);
  verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

void TerminalText::keyPressEvent(QKeyEvent* event) {
  if (MovesOrSelects(*event)) {
    QPlainTextEdit::keyPressEvent(event);
    return;
  }
  if (event->matches(QKeySequence::HelpContents)) {
    event->ignore();  // the key of the form
    return;
  }
  event->accept();
  if (!IsForInstrument(*event)) {
    return;
  }
  switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
      emit Typed('\r');
      return;
    case Qt::Key_Escape:
      emit Typed('\x1B');
      return;
    case Qt::Key_Backspace:
      emit Typed('\b');
      return;
    default:
      for (const char byte : BytesOf(event->text())) {
        emit Typed(byte);
      }
  }
}

void TerminalText::inputMethodEvent(QInputMethodEvent* event) {
  event->accept();
  if (!event->commitString().isEmpty()) {
    emit Pasted(BytesOf(event->commitString()));
  }
}

void TerminalText::insertFromMimeData(const QMimeData* source) {
  if (source->hasText()) {
    emit Pasted(BytesOf(source->text()));
  }
}

void TerminalText::contextMenuEvent(QContextMenuEvent* event) {
  QMenu menu(this);
  menu.addAction(QtText(kCopy.In(language_)), this, [this] { copy(); });
  menu.addAction(QtText(kPaste.In(language_)), this, [this] { paste(); });
  menu.exec(event->globalPos());
}

}  // namespace tavrel
