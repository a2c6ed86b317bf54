#include "platform/qt/serial_device.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <QFile>
#include <QFileInfo>
#include <filesystem>

#include "platform/port_lock.h"

namespace tavrel {
namespace {

constexpr int kMostLinks = 40;  // as many as the system follows

}  // namespace

QString SerialLockFile(const QString& device) {
  QString name = device.startsWith("/dev/") ? device.mid(5) : device;
  name.replace('/', '_');
  for (const std::string& directory : PortLockDirectories()) {
    const QFileInfo info(QString::fromStdString(directory));
    QString path = info.filePath() + "/LCK.." + name;
    if (info.isReadable() && (QFile::exists(path) || info.isWritable())) {
      return path;
    }
  }
  return {};
}

std::vector<std::string> DeviceNames(const std::string& device) {
  std::vector<std::string> names;
  std::error_code error;
  std::filesystem::path path = device;
  while (names.size() < kMostLinks) {
    names.push_back(path.string());
    const auto target = std::filesystem::read_symlink(path, error);
    if (error) {
      break;
    }
    path = (path.parent_path() / target).lexically_normal();
  }
  names.push_back(std::filesystem::weakly_canonical(device, error).string());
  return names;
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
