#include "platform/qt/dead_lock.h"

#include <QFileInfo>
#include <QLockFile>

namespace tavrel {
namespace {

// Other programs that know of such files write only their number and take no lock of the kernel.
bool IsOurKind(const QLockFile& lock) {
  qint64 process = 0;
  QString host;
  QString program;
  lock.getLockInfo(&process, &host, &program);
  return !program.isEmpty() || QFileInfo(lock.fileName()).size() == 0;
}

}  // namespace

bool RemoveDeadLock(const QString& path) {
  QLockFile lock(path);
  // Takes the kernel's lock before it removes the file, and fails if a living process has it.
  return IsOurKind(lock) && lock.removeStaleLockFile();
}

}  // namespace tavrel
