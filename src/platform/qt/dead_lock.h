#ifndef TAVREL_PLATFORM_QT_DEAD_LOCK_H_
#define TAVREL_PLATFORM_QT_DEAD_LOCK_H_

#include <QString>

namespace tavrel {

// Removes the lock file `path` if QLockFile has made it and no process holds it any more. True
// if it is gone now; false also for a lock file of another kind.
//
// What stands in the file does not decide: a process that was killed while it wrote leaves an
// empty one, its number may belong to another copy of the program by now, and a process that
// nobody has waited for keeps its number though it is dead. The kernel's lock on the file goes
// with its process in all these cases.
bool RemoveDeadLock(const QString& path);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_DEAD_LOCK_H_
