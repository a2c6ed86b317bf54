#ifndef TAVREL_WIDGETS_LIST_SEARCH_H_
#define TAVREL_WIDGETS_LIST_SEARCH_H_

class QComboBox;

namespace tavrel {

// Letters and digits that are typed on `list` find the entries that begin with them behind their
// leading blanks. Call it before the list has entries.
void SearchBehindBlanks(QComboBox& list);

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_LIST_SEARCH_H_
