#include "tests/platform/calls_of_files.h"

#include <dirent.h>
#include <dlfcn.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace tavrel {
namespace {

CallsOfFiles::Levers& LeversInForce() {
  static CallsOfFiles::Levers levers;
  return levers;
}

int& SyncsSoFar() {
  static int syncs = 0;
  return syncs;
}

int& NamesSoFar() {
  static int names = 0;
  return names;
}

std::function<void()>& CallBeforeRead() {
  static std::function<void()> call;
  return call;
}

void TellOfRead() {
  if (const auto call = std::exchange(CallBeforeRead(), {})) {
    call();
    CallBeforeRead() = call;
  }
}

// True if the call is to fail; `good` are those that are still to go well.
bool Fails(int& good) {
  if (good == 0) {
    errno = EIO;
    return true;
  }
  good -= good > 0 ? 1 : 0;
  return false;
}

}  // namespace

CallsOfFiles::CallsOfFiles(Levers levers) {
  LeversInForce() = levers;
  SyncsSoFar() = 0;
  NamesSoFar() = 0;
}

int CallsOfFiles::NamesListed() {
  return NamesSoFar();
}

void CallsOfFiles::BeforeRead(std::function<void()> call) {
  CallBeforeRead() = std::move(call);
}

int CallsOfFiles::Syncs() {
  return SyncsSoFar();
}

CallsOfFiles::~CallsOfFiles() {
  LeversInForce() = Levers();
  CallBeforeRead() = {};
}

}  // namespace tavrel

// The program's own definitions go before those of the C library.
extern "C" {

dirent* readdir(DIR* directory) {
  using Call = dirent*(DIR*);
  static auto* const system_call = reinterpret_cast<Call*>(dlsym(RTLD_NEXT, "readdir"));
  ++tavrel::NamesSoFar();
  return system_call(directory);
}

ssize_t pread(int handle, void* bytes, size_t size, off_t place) {
  tavrel::TellOfRead();
  auto& levers = tavrel::LeversInForce();
  if (tavrel::Fails(levers.good_reads)) {
    return -1;
  }
  return syscall(SYS_pread64, handle, bytes, std::min(size, levers.longest), place);
}

ssize_t pwrite(int handle, const void* bytes, size_t size, off_t place) {
  auto& levers = tavrel::LeversInForce();
  if (levers.kill_at == 0) {
    const auto parts = static_cast<std::size_t>(levers.kill_after_parts);
    syscall(SYS_pwrite64, handle, bytes, size * parts / 2, place);
    _exit(9);
  }
  levers.kill_at -= levers.kill_at > 0 ? 1 : 0;
  const std::size_t longest = levers.longest;
  return syscall(SYS_pwrite64, handle, bytes, std::min(size, longest), place);
}

int fsync(int handle) {
  ++tavrel::SyncsSoFar();
  return tavrel::Fails(tavrel::LeversInForce().good_syncs)
             ? -1
             : static_cast<int>(syscall(SYS_fsync, handle));
}

}  // extern "C"
