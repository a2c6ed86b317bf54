#ifndef TAVREL_WIDGETS_LAMP_H_
#define TAVREL_WIDGETS_LAMP_H_

#include <QWidget>

namespace tavrel {

// A lamp with its word beside it. Its picture says without colour whether it is lit: a full disc
// with rays is on, an empty ring is off, a broken ring says that nobody knows.
class Lamp : public QWidget {
  Q_OBJECT
 public:
  enum class State { kUnknown, kOff, kOn };

  // `spoken` is what the lamp stands for, to a screen reader; the state is said behind it.
  Lamp(const QString& name, const QString& spoken, QWidget* parent);

  void Show(State state);
  [[nodiscard]] State Shown() const { return state_; }

  [[nodiscard]] QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] QString Word() const;
  void Draw(QPainter& painter, const QRectF& place) const;

  QString spoken_;
  State state_ = State::kUnknown;
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_LAMP_H_
