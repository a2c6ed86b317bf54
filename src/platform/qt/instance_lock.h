#ifndef TAVREL_PLATFORM_QT_INSTANCE_LOCK_H_
#define TAVREL_PLATFORM_QT_INSTANCE_LOCK_H_

#include <QLockFile>
#include <string>

namespace tavrel {

// Keeps a second copy of the program from running: whoever holds the lock file is the first.
// The lock goes with the process, also when it crashes or is killed.
class InstanceLock {
 public:
  // `path` of the lock file, in a directory that the user can write.
  explicit InstanceLock(const std::string& path);

  // Takes the lock. False if a living process of this program has it. A lock file that cannot
  // be made at all does not keep the program from running.
  [[nodiscard]] bool Take();

 private:
  [[nodiscard]] bool TryToTake();

  QLockFile file_;
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_INSTANCE_LOCK_H_
