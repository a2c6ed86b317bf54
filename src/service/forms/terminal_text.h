#ifndef TAVREL_SERVICE_FORMS_TERMINAL_TEXT_H_
#define TAVREL_SERVICE_FORMS_TERMINAL_TEXT_H_

#include <QPlainTextEdit>
#include <string>

#include "base/language.h"

namespace tavrel {

// The text of a terminal: what it shows is only what it is given. Keys and pasted texts are told as
// bytes of Windows-1252; the keys that move and select stay its own, and Tab leaves it.
class TerminalText : public QPlainTextEdit {
  Q_OBJECT
 public:
  // `language` is that of its menu.
  TerminalText(const QString& name, Language language, QWidget* parent);

  // Shows `text`, lines ended by CR LF, from its end on. What was added is appended: a selection
  // stays.
  void ShowBytes(const std::string& text);

 signals:
  void Typed(char key);
  void Pasted(const std::string& text);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void insertFromMimeData(const QMimeData* source) override;
  void contextMenuEvent(QContextMenuEvent* event) override;

 private:
  std::string shown_;
  Language language_;
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_FORMS_TERMINAL_TEXT_H_
