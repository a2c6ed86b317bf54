#ifndef TAVREL_BENCH_FIRST_LOOK_H_
#define TAVREL_BENCH_FIRST_LOOK_H_

#include <QMainWindow>
#include <QObject>
#include <chrono>
#include <string>

namespace tavrel {

// Watches a window come up, for a program that does nothing else: prints a line of three numbers,
// the milliseconds from `start` to the end of the first painting, the kilobytes that are resident
// once the window has been up for some seconds, and the share of a core in percent that the process
// takes from then on; then ends the application.
class FirstLook : public QObject {
 public:
  // `start` is when the process was started: nanoseconds of the steady clock, as text. `watched`
  // are the seconds for which its load is looked at, as text; 0 for not at all.
  FirstLook(QMainWindow& window, const std::string& start, const std::string& watched);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Painted();
  void Settled();
  void Tell() const;

  long long start_ = 0;
  std::chrono::seconds watched_;
  double painted_ = 0;       // milliseconds after the start
  long resident_ = 0;        // kilobytes
  double processor_at_ = 0;  // seconds of the processor when the window had settled
};

}  // namespace tavrel

#endif  // TAVREL_BENCH_FIRST_LOOK_H_
