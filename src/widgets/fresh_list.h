#ifndef TAVREL_WIDGETS_FRESH_LIST_H_
#define TAVREL_WIDGETS_FRESH_LIST_H_

#include <QComboBox>

namespace tavrel {

// A list whose entries may have changed since it was filled: it says when it unfolds. It unfolds
// as wide as its longest entry, however narrow the list itself is.
class FreshList : public QComboBox {
  Q_OBJECT
 public:
  using QComboBox::QComboBox;

  void showPopup() override;

 signals:
  void Unfolds();
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_FRESH_LIST_H_
