#include "tests/platform/calls_of_files.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace tavrel {
namespace {

CallsOfFiles::Levers& LeversInForce() {
  static CallsOfFiles::Levers levers;
  return levers;
}

}  // namespace

CallsOfFiles::CallsOfFiles(Levers levers) {
  LeversInForce() = levers;
}

CallsOfFiles::~CallsOfFiles() {
  LeversInForce() = Levers();
}

}  // namespace tavrel

// The program's own definitions go before those of the C library.
extern "C" {

ssize_t pread(int handle, void* bytes, size_t size, off_t place) {
  auto& levers = tavrel::LeversInForce();
  if (levers.good_reads == 0) {
    errno = EIO;
    return -1;
  }
  levers.good_reads -= levers.good_reads > 0 ? 1 : 0;
  return syscall(SYS_pread64, handle, bytes, std::min(size, levers.longest), place);
}

ssize_t pwrite(int handle, const void* bytes, size_t size, off_t place) {
  const std::size_t longest = tavrel::LeversInForce().longest;
  return syscall(SYS_pwrite64, handle, bytes, std::min(size, longest), place);
}

}  // extern "C"
