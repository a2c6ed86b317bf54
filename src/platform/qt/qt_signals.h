#ifndef TAVREL_PLATFORM_QT_QT_SIGNALS_H_
#define TAVREL_PLATFORM_QT_QT_SIGNALS_H_

#include <QObject>
#include <array>

class QSocketNotifier;

namespace tavrel {

// The operating system's requests to end (SIGTERM, SIGINT, SIGHUP) as a signal of the event
// loop, where a shut-down may do all that it does otherwise. What tells of a failed write (SIGPIPE,
// SIGXFSZ) ends nothing: the write itself fails, and that is dealt with there. One instance at a
// time; when it goes, all these end the process as usual again.
class QtSignals : public QObject {
  Q_OBJECT
 public:
  explicit QtSignals(QObject* parent = nullptr);
  ~QtSignals() override;

  // A request has come that the event loop has not taken yet.
  [[nodiscard]] bool HasRequest() const;

 signals:
  void EndRequested();

 private:
  void TakeRequest();

  std::array<int, 2> pipe_{-1, -1};  // 0 is read in the event loop, 1 written by the handler
  QSocketNotifier* notifier_ = nullptr;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_QT_SIGNALS_H_
