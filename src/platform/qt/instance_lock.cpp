#include "platform/qt/instance_lock.h"

namespace tavrel {

InstanceLock::InstanceLock(const std::string& path) : file_(QString::fromStdString(path)) {
  // No lock is too old as long as its process lives: a recording runs for months.
  file_.setStaleLockTime(0);
}

bool InstanceLock::Take() {
  return file_.isLocked() || file_.tryLock(0) || file_.error() != QLockFile::LockFailedError;
}

}  // namespace tavrel
