#ifndef TAVREL_WIDGETS_CONNECTION_SIGN_H_
#define TAVREL_WIDGETS_CONNECTION_SIGN_H_

#include <QWidget>

namespace tavrel {

// "ComIcon", the sign of a line without an answer. It keeps its place while it is hidden.
class ConnectionSign : public QWidget {
  Q_OBJECT
 public:
  explicit ConnectionSign(QWidget* parent);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace tavrel

#endif  // TAVREL_WIDGETS_CONNECTION_SIGN_H_
