#ifndef TAVREL_PLATFORM_QT_FILE_WISHES_H_
#define TAVREL_PLATFORM_QT_FILE_WISHES_H_

#include <QLocalServer>
#include <QObject>
#include <string>

class QLocalSocket;

namespace tavrel {

// The way in which a second start of the program hands a file to the copy that runs: a socket in
// the user's runtime directory, one for each lock file, which this user alone may use. A wish is a
// path from the root, ended by a zero byte, and is answered by one byte. A program that sends
// anything else, more than a path can be, or nothing for a while, is cut off; of those who come at
// the same time only a few are let in. Nothing of this blocks the event loop.
class FileWishes : public QObject {
  Q_OBJECT
 public:
  explicit FileWishes(QObject* parent = nullptr);

  // Listens, for the copy that has the lock at `lock_path`. What a copy that was killed has left
  // is replaced. Where there is no such directory nothing is listened for.
  void Listen(const std::string& lock_path);

  // Tells the copy that has the lock to show the file at `path`, which begins at the root. False
  // if none has taken it within five seconds.
  [[nodiscard]] static bool Send(const std::string& lock_path, const std::string& path);

 signals:
  void Wished(const std::string& path);

 private:
  void Welcome();
  void Take(QLocalSocket* guest);

  QLocalServer server_;
  int guests_ = 0;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_FILE_WISHES_H_
