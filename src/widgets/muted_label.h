#ifndef TAVREL_WIDGETS_MUTED_LABEL_H_
#define TAVREL_WIDGETS_MUTED_LABEL_H_

#include <QLabel>

namespace tavrel {

// A word that tells what something is: it has less weight than what it tells about, in a light
// palette and in a dark one, also when the desktop changes between them.
class MutedLabel : public QLabel {
  Q_OBJECT
 public:
  MutedLabel(const QString& text, QWidget* parent);

 protected:
  void changeEvent(QEvent* event) override;

 private:
  void Mute();

  bool in_mute_ = false;  // the change of palette is our own
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_MUTED_LABEL_H_
