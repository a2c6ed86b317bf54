#include "platform/qt/file_wishes.h"

#include <QCryptographicHash>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QTimer>
#include <chrono>

namespace tavrel {
namespace {

using std::chrono::milliseconds;

constexpr qint64 kLongestWish = 4096;  // bytes, the end included: no path is longer
constexpr int kMostGuests = 8;
constexpr milliseconds kPatience{5000};
constexpr char kTaken = '.';

// The name has to be short: a socket's path has about a hundred bytes.
QString SocketOf(const std::string& lock_path) {
  constexpr qsizetype kDigits = 16;
  const QString directory = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
  const auto digest =
      QCryptographicHash::hash(QByteArray::fromStdString(lock_path), QCryptographicHash::Sha1);
  return directory.isEmpty() ? QString()
                             : directory + "/tavrel-" + digest.toHex().left(kDigits) + ".socket";
}

// The path of a wish that is whole; empty for anything else.
std::string PathOf(const QByteArray& bytes) {
  const bool is_path = bytes.startsWith('/') && bytes.indexOf('\0') == bytes.size() - 1;
  return is_path ? bytes.chopped(1).toStdString() : std::string();
}

}  // namespace

FileWishes::FileWishes(QObject* parent) : QObject(parent) {
  server_.setSocketOptions(QLocalServer::UserAccessOption);
  server_.setMaxPendingConnections(kMostGuests);
  connect(&server_, &QLocalServer::newConnection, this, &FileWishes::Welcome);
}

// A socket for one user is made aside and renamed into its place: one that is left there goes.
void FileWishes::Listen(const std::string& lock_path) {
  const QString socket = SocketOf(lock_path);
  if (!socket.isEmpty()) {
    server_.listen(socket);
  }
}

bool FileWishes::Send(const std::string& lock_path, const std::string& path) {
  constexpr int kLimit = static_cast<int>(kPatience.count());
  QLocalSocket socket;
  socket.connectToServer(SocketOf(lock_path));
  if (!socket.waitForConnected(kLimit)) {
    return false;
  }
  const QByteArray wish = QByteArray::fromStdString(path) + '\0';
  if (wish.size() > kLongestWish || socket.write(wish) != wish.size()) {
    return false;
  }
  char answer = 0;
  return socket.waitForReadyRead(kLimit) && socket.getChar(&answer) && answer == kTaken;
}

void FileWishes::Welcome() {
  while (QLocalSocket* guest = server_.nextPendingConnection()) {
    guest->setReadBufferSize(kLongestWish + 1);
    if (guests_ >= kMostGuests) {
      guest->abort();
      guest->deleteLater();
      continue;
    }
    ++guests_;
    connect(guest, &QObject::destroyed, this, [this] { --guests_; });
    connect(guest, &QLocalSocket::disconnected, guest, &QObject::deleteLater);
    connect(guest, &QLocalSocket::readyRead, this, [this, guest] { Take(guest); });
    auto* patience = new QTimer(guest);
    patience->setSingleShot(true);
    patience->callOnTimeout(guest, [guest] { guest->abort(); });
    patience->start(kPatience);
    Take(guest);
  }
}

// A wish that has not come whole is waited for.
void FileWishes::Take(QLocalSocket* guest) {
  const QByteArray bytes = guest->peek(kLongestWish);
  if (!bytes.contains('\0') && bytes.size() < kLongestWish) {
    return;
  }
  static_cast<void>(guest->readAll());
  const std::string path = PathOf(bytes);
  if (path.empty()) {
    guest->abort();
    return;
  }
  guest->putChar(kTaken);
  guest->flush();
  guest->disconnectFromServer();
  emit Wished(path);
}

}  // namespace tavrel
