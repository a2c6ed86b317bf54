#include "platform/qt/serial_device.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <array>

namespace tavrel {
namespace {

// Where QSerialPort looks for a place for its locks, in its order.
constexpr std::array<const char*, 8> kLockDirectories = {
    "/var/lock", "/etc/locks", "/var/spool/locks",  "/var/spool/uucp",
    "/tmp",      "/var/tmp",   "/var/lock/lockdev", "/run/lock"};

}  // namespace

QString SerialLockFile(const QString& device) {
  QString name = device.startsWith("/dev/") ? device.mid(5) : device;
  name.replace('/', '_');
  for (const char* directory : kLockDirectories) {
    const QFileInfo info(directory);
    QString path = info.filePath() + "/LCK.." + name;
    if (info.isReadable() && (QFile::exists(path) || info.isWritable())) {
      return path;
    }
  }
  return {};
}

bool UnsettleDevice(const QString& device) {
  const int descriptor =
      open(QFile::encodeName(device).constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) {
    return false;
  }
  termios settings{};
  bool is_done = tcgetattr(descriptor, &settings) == 0;
  if (is_done) {
    // The one flag of those that an opening clears which changes nothing by itself.
    settings.c_lflag |= IEXTEN;
    is_done = tcsetattr(descriptor, TCSANOW, &settings) == 0;
  }
  close(descriptor);
  return is_done;
}

void ShareIfPseudoTerminal(const QString& device, int descriptor) {
  if (device.startsWith("/dev/pts/")) {
    ioctl(descriptor, TIOCNXCL);
  }
}

}  // namespace tavrel
