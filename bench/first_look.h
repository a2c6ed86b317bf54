#ifndef TAVREL_BENCH_FIRST_LOOK_H_
#define TAVREL_BENCH_FIRST_LOOK_H_

#include <QMainWindow>
#include <QObject>
#include <string>

namespace tavrel {

// Watches a window come up, for a program that does nothing else: prints a line of two numbers,
// the milliseconds from `start` to the end of the first painting and the kilobytes that are
// resident once the window has been up for some seconds, and then ends the application.
class FirstLook : public QObject {
 public:
  // `start` is when the process was started: nanoseconds of the steady clock, as text.
  FirstLook(QMainWindow& window, const std::string& start);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Painted();
  void Settled() const;

  long long start_ = 0;
  double painted_ = 0;  // milliseconds after the start
};

}  // namespace tavrel

#endif  // TAVREL_BENCH_FIRST_LOOK_H_
