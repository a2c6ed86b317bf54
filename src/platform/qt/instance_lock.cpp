#include "platform/qt/instance_lock.h"

#include <chrono>

#include "platform/qt/dead_lock.h"

namespace tavrel {
namespace {

// A copy that was started at the same moment has made the file, but may not hold it yet.
constexpr std::chrono::milliseconds kOtherStarts{100};

}  // namespace

InstanceLock::InstanceLock(const std::string& path) : file_(QString::fromStdString(path)) {
  // No lock is too old as long as its process lives: a recording runs for months.
  file_.setStaleLockTime(0);
}

bool InstanceLock::Take() {
  return file_.isLocked() || TryToTake() || file_.error() != QLockFile::LockFailedError;
}

bool InstanceLock::TryToTake() {
  return file_.tryLock(static_cast<int>(kOtherStarts.count())) ||
         (RemoveDeadLock(file_.fileName()) && file_.tryLock(0));
}

}  // namespace tavrel
