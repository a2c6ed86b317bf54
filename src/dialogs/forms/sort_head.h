#ifndef TAVREL_DIALOGS_FORMS_SORT_HEAD_H_
#define TAVREL_DIALOGS_FORMS_SORT_HEAD_H_

#include <QAbstractButton>

namespace tavrel {

// Which way the rows below a head are sorted by its column.
enum class SortMark { kNone, kUp, kDown };

// The head of a column that sorts the rows when it is pressed; an arrow tells the direction.
// Enter presses it as the space bar does.
class SortHead : public QAbstractButton {
  Q_OBJECT
 public:
  static constexpr int kIndent = 8;  // before the caption, and before the texts below it

  SortHead(const char* name, const QString& caption, QWidget* parent);

  void ShowMark(SortMark mark);
  [[nodiscard]] SortMark Mark() const { return mark_; }

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  SortMark mark_ = SortMark::kNone;
};

}  // namespace tavrel

#endif  // TAVREL_DIALOGS_FORMS_SORT_HEAD_H_
