#include "platform/instance_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <array>
#include <cctype>
#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/file_system.h"

namespace tavrel {
namespace {

constexpr int kTakeOvers = 10;  // times that another copy may delete the file at its end meanwhile
constexpr std::size_t kLongestLock = 1024;  // characters
constexpr int kSafely = O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;

// What may be a lock file: a link, of either kind, is another file, and anything else is none.
bool IsPlainFile(const struct stat& status) {
  return S_ISREG(status.st_mode) && status.st_nlink <= 1;
}

// The number of a process and the end of its line, or nothing, if it was torn.
bool LooksLikeALock(int file) {
  std::array<char, kLongestLock + 1> text{};
  const ssize_t size = pread(file, text.data(), text.size(), 0);
  if (size <= 0 || size > static_cast<ssize_t>(kLongestLock)) {
    return size == 0;
  }
  std::size_t digits = 0;
  while (std::isdigit(static_cast<unsigned char>(text.at(digits))) != 0) {
    ++digits;
  }
  return digits > 0 && text.at(digits) == '\n';
}

// The file of another user can be locked without the right to write it.
OpenDescriptor OpenWithRights(const std::string& path) {
  OpenDescriptor opened(open(path.c_str(), O_RDWR | O_CREAT | kSafely, 0644));
  const bool may_not_write = !opened.IsOpen() && (errno == EACCES || errno == EROFS);
  return may_not_write ? OpenDescriptor(open(path.c_str(), O_RDONLY | kSafely)) : std::move(opened);
}

// Nothing, with the reason in errno, where something stands that is no lock file.
OpenDescriptor OpenLockFile(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) == 0 && !IsPlainFile(status)) {
    errno = EEXIST;
    return {};
  }
  OpenDescriptor opened = OpenWithRights(path);
  if (opened.IsOpen() && (fstat(opened.Number(), &status) != 0 || !IsPlainFile(status))) {
    errno = EEXIST;
    return {};
  }
  return opened;
}

}  // namespace

InstanceLock::~InstanceLock() {
  if (is_written_ && file_.IsStillAt(path_)) {
    unlink(path_.c_str());
  }
}

bool InstanceLock::Take() {
  if (IsTaken()) {
    return true;
  }
  problem_.clear();
  const Hold directory = TakeDirectory();
  const Hold file = directory == Hold::kAnothers ? directory : TakeFile();
  if (file == Hold::kAnothers) {
    directory_.Close();
    problem_.clear();
    return false;
  }
  if (IsTaken()) {
    problem_.clear();
  }
  return problem_.empty();
}

InstanceLock::Hold InstanceLock::TakeDirectory() {
  const std::string directory = path_.substr(0, path_.rfind('/') + 1);
  OpenDescriptor opened(
      open(directory.empty() ? "." : directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  return Lock(opened, directory_);
}

// A copy that ends deletes its file: what was opened before and locked behind that is no lock.
InstanceLock::Hold InstanceLock::TakeFile() {
  for (int time = 0; time < kTakeOvers; ++time) {
    OpenDescriptor opened = OpenLockFile(path_);
    const Hold hold = Lock(opened, file_);
    if (hold != Hold::kOurs) {
      return hold;
    }
    if (file_.IsStillAt(path_)) {
      WriteOwner();
      return hold;
    }
    file_.Close();
  }
  problem_ = std::strerror(EBUSY);
  return Hold::kNone;
}

InstanceLock::Hold InstanceLock::Lock(OpenDescriptor& opened, OpenDescriptor& kept) {
  if (opened.IsOpen() && flock(opened.Number(), LOCK_EX | LOCK_NB) == 0) {
    kept = std::move(opened);
    return Hold::kOurs;
  }
  if (opened.IsOpen() && errno == EWOULDBLOCK) {
    return Hold::kAnothers;
  }
  if (errno != ENOENT && errno != ENOTDIR) {
    problem_ = std::strerror(errno);
  }
  return Hold::kNone;
}

// For people who look into it: the number of the process, then the program. Nothing depends on
// whether it can be written; what is no lock file of ours is not written over.
void InstanceLock::WriteOwner() {
  const std::string text = std::to_string(getpid()) + "\nTAVREL\n";
  is_written_ = LooksLikeALock(file_.Number()) && ftruncate(file_.Number(), 0) == 0;
  if (is_written_) {
    [[maybe_unused]] const ssize_t written = pwrite(file_.Number(), text.data(), text.size(), 0);
  }
}

}  // namespace tavrel
