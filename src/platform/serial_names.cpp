#include "platform/serial_names.h"

#include <filesystem>
#include <system_error>

#include "base/text.h"
#include "platform/file_system.h"

namespace tavrel {
namespace {

namespace fs = std::filesystem;

constexpr int kLastUsualLine = 4;   // COM1..4: the sockets of the machine
constexpr int kLastUsbAdapter = 8;  // COM5..8
constexpr int kModemAdapter = 9;    // COM9: adapters that the system takes for modems

// Not followed: a link whose adapter is pulled out still says where the port comes back.
bool IsThere(const std::string& path) {
  std::error_code error;
  return fs::exists(fs::symlink_status(path, error));
}

// `name` in `directory` whatever its case, the exact spelling first; empty if it is not there.
std::string FindEntry(const std::string& directory, const std::string& name) {
  std::string exact = JoinPath(directory, name);
  if (IsThere(exact)) {
    return exact;
  }
  std::string small = JoinPath(directory, LowerCase(name));
  return IsThere(small) ? small : "";
}

std::string SystemName(int number) {
  if (number <= kLastUsualLine) {
    return "ttyS" + std::to_string(number - 1);
  }
  if (number <= kLastUsbAdapter) {
    return "ttyUSB" + std::to_string(number - kLastUsualLine - 1);
  }
  if (number == kModemAdapter) {
    return "ttyACM0";
  }
  return "ttyS" + std::to_string(number - 1);
}

}  // namespace

std::string SerialDevice(int number, const std::string& program_directory,
                         const std::string& device_directory) {
  if (number < 1 || number > kSerialPorts) {
    return "";
  }
  const std::string name = "COM" + std::to_string(number);
  for (const std::string& directory : {program_directory, device_directory}) {
    std::string entry = FindEntry(directory, name);
    if (!entry.empty()) {
      return entry;
    }
  }
  return JoinPath(device_directory, SystemName(number));
}

bool IsLaidByHand(int number, const std::string& device, const std::string& device_directory) {
  return device != JoinPath(device_directory, SystemName(number));
}

}  // namespace tavrel
