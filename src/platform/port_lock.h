#ifndef TAVREL_PLATFORM_PORT_LOCK_H_
#define TAVREL_PLATFORM_PORT_LOCK_H_

#include <sys/types.h>

#include <string>
#include <vector>

// The lock files by which programs keep others from a serial port that they have open.
namespace tavrel {

// The directories in which lock files stand on one system or another, in the order in which the
// toolkit looks for a place for its own.
[[nodiscard]] const std::vector<std::string>& PortLockDirectories();

// All paths where a lock file for one of the devices may stand. `devices` are the names by which
// one and the same port is known, such as "/dev/COM1" and "/dev/ttyUSB0"; what stands neither in
// `device_directory` nor in /dev has no lock file. The directories below it are part of the name
// for some programs ("LCK..pts_3") and not for others ("LCK..3").
[[nodiscard]] std::vector<std::string> PortLockFiles(const std::vector<std::string>& devices,
                                                     const std::string& device_directory);

// Who has the port that a lock file stands for.
enum class LockState {
  kFree,     // there is no lock file
  kHeld,     // its process lives
  kLeft,     // its process is dead
  kUnclear,  // nobody can tell: it is no file, cannot be read, or says nothing that is known
};

// What a lock file says.
struct PortLock {
  LockState State = LockState::kFree;
  pid_t Process = 0;    // 0: not known
  std::string Program;  // of that process while it lives; empty: not known
};

// Looks at the lock file `path` and leaves it as it is. Forms that are known: a number in digits,
// with blanks in front and with names behind it in its line; the same number as the bytes of an
// integer; and the toolkit's, with further lines, to which the kernel's lock on the file belongs,
// which tells more than the number does. An empty file is just being written or was left by a
// process that was killed at that: a young one is looked at again, for 0.2 s at most.
[[nodiscard]] PortLock LookAtPortLock(const std::string& path);

// Deletes the lock file `path` if its process is dead (kLeft). True if nothing stands there now.
bool RemovePortLock(const std::string& path);

// Why the lock file `path`, which is not there, cannot be made, in the system's words; empty if
// it can be.
[[nodiscard]] std::string WhyNoPortLock(const std::string& path);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_PORT_LOCK_H_
