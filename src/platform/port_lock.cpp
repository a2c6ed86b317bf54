#include "platform/port_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstring>
#include <fstream>
#include <set>
#include <string_view>
#include <thread>

#include "platform/file_system.h"
#include "platform/open_descriptor.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;

constexpr std::size_t kLongestDescriptor = 1024;  // characters; known forms have some hundred
constexpr milliseconds kBeingWritten{200};        // how long an empty lock file counts as young
constexpr milliseconds kLookAgain{20};

// A pipe would keep the opening waiting, a device would notice it, and where a link leads is
// another's: only plain files are opened.
OpenDescriptor OpenPlainFile(const std::string& path) {
  struct stat status {};
  if (lstat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) {
    return {};
  }
  return OpenDescriptor(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
}

// True also where the directory is missing or may not be entered.
bool IsNothingAt(const std::string& path) {
  struct stat status {};
  return lstat(path.c_str(), &status) != 0;
}

std::string TextOf(const OpenDescriptor& file) {
  std::array<char, kLongestDescriptor> text{};
  const ssize_t came = pread(file.Number(), text.data(), text.size(), 0);
  return {text.data(), static_cast<std::size_t>(came > 0 ? came : 0)};
}

// True while a process holds the kernel's lock on the file.
bool IsLockedByKernel(const OpenDescriptor& file) {
  if (flock(file.Number(), LOCK_EX | LOCK_NB) != 0) {
    return errno == EWOULDBLOCK;
  }
  flock(file.Number(), LOCK_UN);
  return false;
}

// The number of a process in `text`; 0 if there is none that can be.
pid_t ProcessIn(const std::string& text) {
  pid_t process = 0;
  if (text.size() == sizeof process && text.find('\0') != std::string::npos) {
    std::memcpy(&process, text.data(), sizeof process);
    return std::max(process, 0);
  }
  const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
  const char* const end = text.data() + text.size();
  const auto [behind, error] = std::from_chars(text.data() + begin, end, process);
  const bool is_number =
      error == std::errc() &&
      (behind == end || std::string_view(" \n\r").find(*behind) != std::string_view::npos);
  return is_number ? std::max(process, 0) : 0;
}

// The toolkit writes the name of the program into the second line.
bool IsToolkitsForm(const std::string& text) {
  const std::size_t end = text.find('\n');
  return end != std::string::npos && end + 1 < text.size() && text[end + 1] != '\n';
}

// What the line `name` of the system's description of a process says.
std::string LineOfStatus(pid_t process, std::string_view name) {
  std::ifstream file("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(name)) {
      const std::size_t begin = line.find_first_not_of(" \t", name.size());
      return begin == std::string::npos ? "" : line.substr(begin);
    }
  }
  return "";
}

// A process that nobody has waited for keeps its number though it is dead and has nothing open.
// The first thread of a program may have ended like that while others of it go on.
bool IsAlive(pid_t process) {
  if (kill(process, 0) != 0 && errno == ESRCH) {
    return false;
  }
  const std::string state = LineOfStatus(process, "State:");
  const bool has_ended = state.starts_with('Z') || state.starts_with('X');
  return !has_ended || LineOfStatus(process, "Threads:") != "1";
}

PortLock HeldBy(pid_t process) {
  return {LockState::kHeld, process, process > 0 ? LineOfStatus(process, "Name:") : ""};
}

// What this process has open itself is locked in the toolkit's form: our own number in another
// form was left by a process that had it before.
PortLock Judge(const std::string& text, bool is_locked) {
  const pid_t process = ProcessIn(text);
  if (is_locked) {
    return HeldBy(process);
  }
  if (text.empty() || (process > 0 && IsToolkitsForm(text))) {
    return {LockState::kLeft, process, ""};
  }
  if (process == 0) {
    return {LockState::kUnclear, 0, ""};
  }
  return process != getpid() && IsAlive(process) ? HeldBy(process)
                                                 : PortLock{LockState::kLeft, process, ""};
}

bool IsYoung(const OpenDescriptor& file) {
  struct stat status {};
  timespec now{};
  if (fstat(file.Number(), &status) != 0 || clock_gettime(CLOCK_REALTIME, &now) != 0) {
    return false;
  }
  const auto age = std::chrono::seconds(now.tv_sec - status.st_mtim.tv_sec) +
                   std::chrono::nanoseconds(now.tv_nsec - status.st_mtim.tv_nsec);
  return age.count() >= 0 && age < kBeingWritten;
}

PortLock JudgeOpen(const OpenDescriptor& file) {
  for (milliseconds waited{0}; waited < kBeingWritten; waited += kLookAgain) {
    if (!TextOf(file).empty() || !IsYoung(file)) {
      break;
    }
    std::this_thread::sleep_for(kLookAgain);
  }
  return Judge(TextOf(file), IsLockedByKernel(file));
}

}  // namespace

const std::vector<std::string>& PortLockDirectories() {
  static const std::vector<std::string> directories = {
      "/var/lock", "/etc/locks", "/var/spool/locks",  "/var/spool/uucp",
      "/tmp",      "/var/tmp",   "/var/lock/lockdev", "/run/lock"};
  return directories;
}

std::vector<std::string> PortLockFiles(const std::vector<std::string>& devices,
                                       const std::string& device_directory) {
  std::set<std::string> names;
  for (const std::string& device : devices) {
    for (const std::string& room : {AddSeparator(device_directory), std::string("/dev/")}) {
      if (device.starts_with(room)) {
        std::string name = device.substr(room.size());
        names.insert(name.substr(name.rfind('/') + 1));
        std::replace(name.begin(), name.end(), '/', '_');
        names.insert(name);
      }
    }
  }
  std::vector<std::string> paths;
  for (const std::string& name : names) {
    for (const std::string& directory : PortLockDirectories()) {
      paths.push_back(JoinPath(directory, "LCK.." + name));
    }
  }
  return paths;
}

PortLock LookAtPortLock(const std::string& path) {
  const OpenDescriptor file = OpenPlainFile(path);
  if (file.IsOpen()) {
    return JudgeOpen(file);
  }
  return {IsNothingAt(path) ? LockState::kFree : LockState::kUnclear, 0, ""};
}

// Another program that takes the lock over at the same moment has put another file in its place.
bool RemovePortLock(const std::string& path) {
  const OpenDescriptor file = OpenPlainFile(path);
  if (!file.IsOpen()) {
    return IsNothingAt(path);
  }
  const bool is_left = Judge(TextOf(file), IsLockedByKernel(file)).State == LockState::kLeft;
  return is_left && file.IsStillAt(path) && unlink(path.c_str()) == 0;
}

std::string WhyNoPortLock(const std::string& path) {
  const OpenDescriptor file(
      open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0644));
  if (!file.IsOpen()) {
    return errno == EEXIST ? "" : std::strerror(errno);
  }
  const char mark = '0';
  const int error = write(file.Number(), &mark, sizeof mark) == 1 ? 0 : errno;
  unlink(path.c_str());
  return error == 0 ? "" : std::strerror(error);
}

}  // namespace tavrel
