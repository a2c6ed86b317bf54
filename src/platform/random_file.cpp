#include "platform/random_file.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

#include "platform/error_text.h"

namespace tavrel {
namespace {

constexpr mode_t kNewFileMode = 0666;  // less what the user's mask takes away

// Repeats a call to the system that a signal interrupted.
template <typename Call>
auto Uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) {
    result = call();
  }
  return result;
}

// O_NONBLOCK: opening a pipe or a modem line would else wait for the other end. It has no
// effect on plain files.
int OpenFlags(FileAccess access) {
  constexpr int kAlways = O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
  switch (access) {
    case FileAccess::kRead:
      return kAlways | O_RDONLY;
    case FileAccess::kUpdate:
      return kAlways | O_RDWR;
    case FileAccess::kCreate:
      return kAlways | O_RDWR | O_CREAT | O_NOFOLLOW;
    case FileAccess::kCreateNew:
      return kAlways | O_RDWR | O_CREAT | O_EXCL;
  }
  return kAlways | O_RDONLY;
}

// 0 if the handle leads to a plain file, else the error number that says what is wrong.
int RefusalOf(int handle) {
  struct stat status {};
  if (fstat(handle, &status) != 0) {
    return errno;
  }
  if (S_ISDIR(status.st_mode)) {
    return EISDIR;
  }
  return S_ISREG(status.st_mode) ? 0 : EOPNOTSUPP;
}

// There a lock would keep readers away, too.
bool IsOnWindowsShare(int handle) {
  struct statfs medium {};
  if (fstatfs(handle, &medium) != 0) {
    return false;
  }
  const auto kind = static_cast<std::uint32_t>(medium.f_type);
  return kind == CIFS_SUPER_MAGIC || kind == SMB2_SUPER_MAGIC;
}

}  // namespace

Failure FailureOf(int error_number) {
  switch (error_number) {
    case 0:
      return Failure::kNone;
    case ENOENT:
    case ENOTDIR:
    case ENAMETOOLONG:
    case EINVAL:  // no name of a file: it has a zero byte
      return Failure::kMissing;
    case EISDIR:
    case EOPNOTSUPP:
      return Failure::kNoPlainFile;
    case EACCES:
    case EPERM:
    case EROFS:
      return Failure::kNotAllowed;
    default:
      return Failure::kOther;
  }
}

RandomFile::~RandomFile() {
  Close();
}

RandomFile::RandomFile(RandomFile&& other) noexcept
    : handle_(std::exchange(other.handle_, -1)),
      error_(std::move(other.error_)),
      why_(other.why_) {}

RandomFile& RandomFile::operator=(RandomFile&& other) noexcept {
  if (this != &other) {
    Close();
    handle_ = std::exchange(other.handle_, -1);
    error_ = std::move(other.error_);
    why_ = other.why_;
  }
  return *this;
}

bool RandomFile::Open(const std::string& path, FileAccess access) {
  Close();
  // The system would end the path at the zero byte and open another file.
  if (path.find('\0') != std::string::npos) {
    return Fail(EINVAL);
  }
  const int flags = OpenFlags(access);
  handle_ = Uninterrupted([&] { return open(path.c_str(), flags, kNewFileMode); });
  if (handle_ < 0) {
    return Fail(errno);
  }
  const int refusal = RefusalOf(handle_);
  if (refusal != 0) {
    Close();
    // A new file that is refused is removed here, because nobody else would do it.
    if (access == FileAccess::kCreateNew) {
      unlink(path.c_str());
    }
    return Fail(refusal);
  }
  return true;
}

void RandomFile::Close() {
  // Never repeated: the handle is gone even if the call reports an interruption.
  if (handle_ >= 0) {
    close(std::exchange(handle_, -1));
  }
}

std::optional<FileIdentity> RandomFile::Identity() const {
  struct stat status {};
  if (!IsOpen() || fstat(handle_, &status) != 0) {
    return std::nullopt;
  }
  return FileIdentity{status.st_dev, status.st_ino};
}

bool RandomFile::IsNameless() const {
  struct stat status {};
  return IsOpen() && fstat(handle_, &status) == 0 && status.st_nlink == 0;
}

bool RandomFile::Lock() {
  if (!IsOpen()) {
    return Fail(EBADF);
  }
  if (IsOnWindowsShare(handle_)) {
    return true;
  }
  const int result = Uninterrupted([&] { return flock(handle_, LOCK_EX | LOCK_NB); });
  return result == 0 || errno != EWOULDBLOCK || Fail(errno);
}

// The end of a plain file is its length. Asking for the whole status instead takes longer than
// writing a row. The position that this moves is used by nobody.
std::int64_t RandomFile::Size() {
  const off_t end = lseek(handle_, 0, SEEK_END);
  if (end < 0) {
    Fail(errno);
    return -1;
  }
  return end;
}

std::int64_t RandomFile::ReadAt(std::int64_t offset, std::span<std::byte> bytes) {
  if (!IsOpen()) {
    Fail(EBADF);
    return -1;
  }
  std::size_t done = 0;
  while (done < bytes.size()) {
    const auto place = static_cast<off_t>(offset) + static_cast<off_t>(done);
    const ssize_t got = Uninterrupted(
        [&] { return pread(handle_, bytes.data() + done, bytes.size() - done, place); });
    if (got < 0) {
      Fail(errno);
      return -1;
    }
    if (got == 0) {
      break;
    }
    done += static_cast<std::size_t>(got);
  }
  return static_cast<std::int64_t>(done);
}

bool RandomFile::WriteAt(std::int64_t offset, std::span<const std::byte> bytes) {
  if (!IsOpen()) {
    return Fail(EBADF);
  }
  std::size_t done = 0;
  while (done < bytes.size()) {
    const auto place = static_cast<off_t>(offset) + static_cast<off_t>(done);
    const ssize_t put = Uninterrupted(
        [&] { return pwrite(handle_, bytes.data() + done, bytes.size() - done, place); });
    if (put <= 0) {
      return Fail(put < 0 ? errno : ENOSPC);
    }
    done += static_cast<std::size_t>(put);
  }
  return true;
}

bool RandomFile::Sync() {
  const int result = Uninterrupted([&] { return fsync(handle_); });
  return result == 0 || Fail(errno);
}

bool RandomFile::Fail(int error_number) {
  error_ = ErrorText(error_number);
  why_ = FailureOf(error_number);
  return false;
}

}  // namespace tavrel
