#ifndef TAVREL_PLATFORM_INSTANCE_LOCK_H_
#define TAVREL_PLATFORM_INSTANCE_LOCK_H_

#include <string>
#include <utility>

#include "platform/open_descriptor.h"

namespace tavrel {

// Keeps a second copy of the program from running: the one that holds the lock is the first. The
// kernel's lock counts, not what stands in the file, so it goes with the process, also when it
// crashes or is killed. It is on the lock file and on its directory: the one or the other holds
// where a full disk, the rights of another user or something else in the place of the file leave
// only one of them.
class InstanceLock {
 public:
  // `path` of the lock file, in a directory that the user can write.
  explicit InstanceLock(std::string path) : path_(std::move(path)) {}

  // Deletes the lock file if it is this process's own.
  ~InstanceLock();
  InstanceLock(const InstanceLock&) = delete;
  InstanceLock& operator=(const InstanceLock&) = delete;

  // Takes the lock; waits for nobody. False if a living process has it, or if the system says
  // nothing about it: Problem() then tells why. A directory that does not exist has nothing that
  // two copies could share, so it keeps none from running.
  [[nodiscard]] bool Take();

  // Why the last Take could not find out whether another copy runs; empty if it could.
  [[nodiscard]] const std::string& Problem() const { return problem_; }

 private:
  // What came of asking for one of the two locks.
  enum class Hold { kNone, kOurs, kAnothers };

  [[nodiscard]] bool IsTaken() const { return directory_.IsOpen() || file_.IsOpen(); }
  [[nodiscard]] Hold TakeDirectory();
  [[nodiscard]] Hold TakeFile();
  [[nodiscard]] Hold Lock(OpenDescriptor& opened, OpenDescriptor& kept);
  void WriteOwner();

  std::string path_;
  std::string problem_;
  OpenDescriptor directory_;
  OpenDescriptor file_;
  bool is_written_ = false;  // the file says that it is this process's
};

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_INSTANCE_LOCK_H_
