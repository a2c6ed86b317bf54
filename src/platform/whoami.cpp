#include "platform/whoami.h"

#include <pwd.h>
#include <sys/random.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <span>

#include "platform/random_file.h"

namespace tavrel {
namespace {

constexpr const char* kUnknown = "?";

}  // namespace

std::string ComputerName() {
  std::array<char, 256> name{};
  const bool is_known = gethostname(name.data(), name.size() - 1) == 0 && name.front() != '\0';
  return is_known ? name.data() : kUnknown;
}

std::string LoginName() {
  const passwd* const user = getpwuid(getuid());
  return user != nullptr && user->pw_name != nullptr ? user->pw_name : kUnknown;
}

std::string BootId() {
  RandomFile file;
  std::array<std::byte, 36> bytes{};
  const bool is_read = file.Open("/proc/sys/kernel/random/boot_id", FileAccess::kRead) &&
                       file.ReadAt(0, bytes) == static_cast<std::int64_t>(bytes.size());
  return is_read ? std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size())
                 : kUnknown;
}

std::string RandomId() {
  std::array<unsigned char, 16> bytes{};
  const ssize_t got = getrandom(bytes.data(), bytes.size(), 0);
  std::string text;
  for (const unsigned char byte : bytes) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", byte);
    text += digits;
  }
  return got == static_cast<ssize_t>(bytes.size()) ? text : kUnknown;
}

}  // namespace tavrel
