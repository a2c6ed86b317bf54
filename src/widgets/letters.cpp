#include "widgets/letters.h"

#include <QAbstractButton>
#include <QAction>

namespace tavrel {
namespace {

constexpr QChar kMark = u'&';

// Of the letter that is marked in `caption`; -1 if there is none. Two marks are a plain "&".
qsizetype MarkedPlace(const QString& caption) {
  for (qsizetype place = caption.indexOf(kMark); place >= 0 && place + 1 < caption.size();
       place = caption.indexOf(kMark, place + 2)) {
    if (caption.at(place + 1) != kMark) {
      return place + 1;
    }
  }
  return -1;
}

}  // namespace

QString Letters::Marked(const QString& caption, QChar letter) {
  const qsizetype place = caption.indexOf(letter, caption.lastIndexOf(u':') + 1);
  return place < 0 ? caption : QString(caption).insert(place, kMark);
}

void Letters::Mark(QAction& action) {
  action.setText(Give(action.text()));
}

// A button's own key goes with a new text.
void Letters::Mark(QAbstractButton& button) {
  const QKeySequence key = button.shortcut();
  const QString caption = Give(button.text());
  if (caption == button.text()) {
    return;
  }
  button.setText(caption);
  if (!key.isEmpty()) {
    button.setShortcut(key);
  }
}

bool Letters::Take(QChar letter) {
  const QChar capital = letter.toUpper();
  const bool is_free = letter.isLetter() && !taken_.contains(capital);
  if (is_free) {
    taken_ += capital;
  }
  return is_free;
}

QString Letters::Give(const QString& caption) {
  const qsizetype marked = MarkedPlace(caption);
  if (marked >= 0) {
    static_cast<void>(Take(caption.at(marked)));
    return caption;
  }
  for (const bool begins_a_word : {true, false}) {
    for (qsizetype place = 0; place < caption.size(); ++place) {
      const bool begins = place == 0 || caption.at(place - 1) == u' ';
      if (begins == begins_a_word && Take(caption.at(place))) {
        return QString(caption).insert(place, kMark);
      }
    }
  }
  return caption;
}

}  // namespace tavrel
