#ifndef TAVREL_WIDGETS_LETTERS_H_
#define TAVREL_WIDGETS_LETTERS_H_

#include <QString>

class QAbstractButton;
class QAction;

namespace tavrel {

// The letters that choose menus and buttons together with Alt: each is given once.
class Letters {
 public:
  // Marks the first letter of the caption that is still free, those at the beginning of a word
  // first. A caption that has a mark keeps it; one without a free letter gets none.
  void Mark(QAction& action);
  void Mark(QAbstractButton& button);

  // `caption` with a mark before the first `letter` behind the last colon in it.
  [[nodiscard]] static QString Marked(const QString& caption, QChar letter);

 private:
  [[nodiscard]] QString Give(const QString& caption);
  [[nodiscard]] bool Take(QChar letter);

  QString taken_;  // in capitals
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_LETTERS_H_
