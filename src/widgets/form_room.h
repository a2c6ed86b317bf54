#ifndef TAVREL_WIDGETS_FORM_ROOM_H_
#define TAVREL_WIDGETS_FORM_ROOM_H_

#include <QScrollArea>
#include <QSize>

class QDialog;
class QWidget;

// No form is larger than the free area of its screen. A form that would be is given less room than
// it asks for; what cannot do with less scrolls.
namespace tavrel {

// A part of a form that needs less room than it asks for: what has no place in it scrolls, and the
// control that gets the keyboard comes into sight.
class ScrollingPart : public QScrollArea {
  Q_OBJECT
 public:
  // `least` in points: with less room the form that it stands in scrolls as a whole.
  ScrollingPart(QWidget* part, QSize least, QWidget* parent);

  // What the part asks for.
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Reveal(const QWidget& control);

  QSize least_;
};

// What the contents of `form` may take of its screen: the free area without the frame that the
// window manager puts around it.
[[nodiscard]] QSize RoomFor(const QWidget& form);

// Gives `form` the size that its contents ask for, or keeps the one that it has been given, but not
// more than `room`. A form of a fixed size stays one as long as it fits. One whose contents
// cannot do with `room` scrolls; the last line of its column, if its default button stands in it,
// stays in sight beneath. Cheap if the form fits.
void FitForm(QDialog& form, QSize room);

// Moves a window that is shown as little as needed to have it in the free area with its frame.
void KeepOnScreen(QWidget& window);

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_FORM_ROOM_H_
