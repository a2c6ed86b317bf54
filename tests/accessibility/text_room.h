#ifndef TAVREL_TESTS_ACCESSIBILITY_TEXT_ROOM_H_
#define TAVREL_TESTS_ACCESSIBILITY_TEXT_ROOM_H_

#include <QStringList>
#include <QWidget>

namespace tavrel {

// The texts of a form that have less room than they need, each with its widget and the missing
// points: labels, captions of buttons and boxes, titles of frames, heads and cells of tables,
// values of lists, entries of menus. A text that is meant to end in an ellipsis, as a path, is not
// cut.
[[nodiscard]] QStringList CutTexts(QWidget& form);

// The same with each number in its longest form: a sign, four digits before the point and as many
// behind it as it has. The form has its own numbers again afterwards.
[[nodiscard]] QStringList CutTextsOfLongNumbers(QWidget& form);

}  // namespace tavrel

#endif  // TAVREL_TESTS_ACCESSIBILITY_TEXT_ROOM_H_
