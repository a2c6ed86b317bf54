// A library that is loaded ahead of a program and lets one of its calls to the system fail.
//
//   SWEEP_ROOT      only calls on paths below this directory count
//   SWEEP_LOG       a row for each of them: its number from 1, the call, the path below the root,
//                   and how it ended if that was in another way than it would have
//   SWEEP_AT        the number of the call that fails; 0 or missing: none
//   SWEEP_TIMES     how many calls of that kind and on that path fail from there on; 1 if missing
//   SWEEP_WITH      ENOSPC, EIO, EINTR, EMFILE, or SHORT: half of the bytes are read or written
//
// A call that cannot end in that way is left alone. SweepEnds() lets all later calls through.

#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "tests/sweep/call_ways.h"

namespace {

std::string Setting(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

template <typename Function>
Function Real(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

// What is wanted, and how far it has come.
class Sweep {
 public:
  static Sweep& Instance() {
    static Sweep sweep;
    return sweep;
  }

  // True if this call is to fail, with errno set, or to be short.
  bool Strikes(const char* call, const std::string& path) {
    if (has_ended_ || root_.empty() || path.rfind(root_, 0) != 0) {
      return false;
    }
    ++number_;
    const std::string text = call + (" " + path.substr(root_.size()));
    struck_ = number_ == at_ ? text : struck_;
    const bool strikes = left_ > 0 && text == struck_ && tavrel::CanEndIn(call, with_);
    Log(text + (strikes ? " " + with_ : ""));
    if (strikes) {
      --left_;
      errno = error_;
    }
    return strikes;
  }

  [[nodiscard]] bool IsShort() const { return with_ == tavrel::kShortCount; }
  void End() { has_ended_ = true; }

 private:
  Sweep()
      : root_(Setting("SWEEP_ROOT")),
        log_(Setting("SWEEP_LOG")),
        with_(Setting("SWEEP_WITH")),
        at_(std::atoi(Setting("SWEEP_AT").c_str())),
        left_(std::max(1, std::atoi(Setting("SWEEP_TIMES").c_str()))) {
    error_ = with_ == "ENOSPC"   ? ENOSPC
             : with_ == "EIO"    ? EIO
             : with_ == "EINTR"  ? EINTR
             : with_ == "EMFILE" ? EMFILE
                                 : 0;
  }

  void Log(const std::string& text) const {
    if (log_.empty()) {
      return;
    }
    const int handle = Real<int (*)(const char*, int, ...)>("open")(
        log_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    const std::string row = std::to_string(number_) + " " + text + "\n";
    static_cast<void>(
        Real<ssize_t (*)(int, const void*, size_t)>("write")(handle, row.data(), row.size()));
    close(handle);
  }

  std::string root_;
  std::string log_;
  std::string with_;
  int at_;
  int left_;
  int error_ = 0;
  int number_ = 0;
  std::string struck_;  // the call and path that fail
  bool has_ended_ = false;
};

std::string PathOf(int handle) {
  const std::string link = "/proc/self/fd/" + std::to_string(handle);
  std::string path(4096, '\0');
  const ssize_t size = readlink(link.c_str(), path.data(), path.size());
  path.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
  return path;
}

std::string PathAt(int directory, const char* name) {
  if (name == nullptr || *name == '/' || directory == AT_FDCWD) {
    return name == nullptr ? "" : name;
  }
  return *name == '\0' ? PathOf(directory) : PathOf(directory) + "/" + name;
}

// The bytes that a call takes: half of them if it is to be short, -1 if it is to fail, else all.
ssize_t BytesOf(const char* call, int handle, size_t size) {
  Sweep& sweep = Sweep::Instance();
  if (!sweep.Strikes(call, PathOf(handle)) || (sweep.IsShort() && size < 2)) {
    return static_cast<ssize_t>(size);
  }
  return sweep.IsShort() ? static_cast<ssize_t>(size / 2) : -1;
}

bool Fails(const char* call, const std::string& path) {
  return Sweep::Instance().Strikes(call, path);
}

mode_t ModeOf(int flags, va_list& arguments) {
  return (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
}

}  // namespace

extern "C" {

void SweepEnds() {
  Sweep::Instance().End();
}

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  if (Fails("open", path)) {
    return -1;
  }
  return Real<int (*)(const char*, int, ...)>("open")(path, flags, mode);
}

int openat(int directory, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = ModeOf(flags, arguments);
  va_end(arguments);
  if (Fails("openat", PathAt(directory, path))) {
    return -1;
  }
  return Real<int (*)(int, const char*, int, ...)>("openat")(directory, path, flags, mode);
}

DIR* opendir(const char* path) {
  return Fails("opendir", path) ? nullptr : Real<DIR* (*)(const char*)>("opendir")(path);
}

ssize_t read(int handle, void* bytes, size_t size) {
  const ssize_t taken = BytesOf("read", handle, size);
  return taken < 0 ? -1
                   : Real<ssize_t (*)(int, void*, size_t)>("read")(handle, bytes,
                                                                   static_cast<size_t>(taken));
}

ssize_t pread(int handle, void* bytes, size_t size, off_t place) {
  const ssize_t taken = BytesOf("pread", handle, size);
  return taken < 0 ? -1
                   : Real<ssize_t (*)(int, void*, size_t, off_t)>("pread")(
                         handle, bytes, static_cast<size_t>(taken), place);
}

ssize_t write(int handle, const void* bytes, size_t size) {
  const ssize_t taken = BytesOf("write", handle, size);
  return taken < 0 ? -1
                   : Real<ssize_t (*)(int, const void*, size_t)>("write")(
                         handle, bytes, static_cast<size_t>(taken));
}

ssize_t pwrite(int handle, const void* bytes, size_t size, off_t place) {
  const ssize_t taken = BytesOf("pwrite", handle, size);
  return taken < 0 ? -1
                   : Real<ssize_t (*)(int, const void*, size_t, off_t)>("pwrite")(
                         handle, bytes, static_cast<size_t>(taken), place);
}

int fsync(int handle) {
  return Fails("fsync", PathOf(handle)) ? -1 : Real<int (*)(int)>("fsync")(handle);
}

int fdatasync(int handle) {
  return Fails("fdatasync", PathOf(handle)) ? -1 : Real<int (*)(int)>("fdatasync")(handle);
}

int ftruncate(int handle, off_t size) noexcept {
  return Fails("ftruncate", PathOf(handle)) ? -1
                                            : Real<int (*)(int, off_t)>("ftruncate")(handle, size);
}

int rename(const char* from, const char* to) noexcept {
  return Fails("rename", to) ? -1 : Real<int (*)(const char*, const char*)>("rename")(from, to);
}

int link(const char* from, const char* to) noexcept {
  return Fails("link", to) ? -1 : Real<int (*)(const char*, const char*)>("link")(from, to);
}

int unlink(const char* path) noexcept {
  return Fails("unlink", path) ? -1 : Real<int (*)(const char*)>("unlink")(path);
}

int unlinkat(int directory, const char* path, int flags) noexcept {
  return Fails("unlinkat", PathAt(directory, path))
             ? -1
             : Real<int (*)(int, const char*, int)>("unlinkat")(directory, path, flags);
}

int remove(const char* path) noexcept {
  return Fails("remove", path) ? -1 : Real<int (*)(const char*)>("remove")(path);
}

int mkdir(const char* path, mode_t mode) noexcept {
  return Fails("mkdir", path) ? -1 : Real<int (*)(const char*, mode_t)>("mkdir")(path, mode);
}

int stat(const char* path, struct stat* status) noexcept {
  return Fails("stat", path) ? -1 : Real<int (*)(const char*, struct stat*)>("stat")(path, status);
}

int lstat(const char* path, struct stat* status) noexcept {
  return Fails("lstat", path) ? -1
                              : Real<int (*)(const char*, struct stat*)>("lstat")(path, status);
}

int fstat(int handle, struct stat* status) noexcept {
  return Fails("fstat", PathOf(handle)) ? -1
                                        : Real<int (*)(int, struct stat*)>("fstat")(handle, status);
}

int access(const char* path, int mode) noexcept {
  return Fails("access", path) ? -1 : Real<int (*)(const char*, int)>("access")(path, mode);
}

off_t lseek(int handle, off_t place, int whence) noexcept {
  return Fails("lseek", PathOf(handle))
             ? -1
             : Real<off_t (*)(int, off_t, int)>("lseek")(handle, place, whence);
}

}  // extern "C"
