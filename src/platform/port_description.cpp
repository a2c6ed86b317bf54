#include "platform/port_description.h"

#include <sys/stat.h>

#include <filesystem>
#include <system_error>

#include "platform/serial_names.h"

namespace tavrel {
namespace {

std::string WhereItLeads(const std::string& path) {
  std::error_code error;
  const std::filesystem::path real = std::filesystem::canonical(path, error);
  return error ? path : real.string();
}

}  // namespace

PortDescription DescribePort(int number, const std::string& program_directory,
                             const SerialPlaces& places) {
  PortDescription port;
  const std::string path = SerialDevice(number, program_directory, places.DeviceDirectory);
  struct stat status {};
  if (path.empty() || stat(path.c_str(), &status) != 0) {
    port.Device = path;
    return port;
  }
  port.Device = WhereItLeads(path);
  port.IsThere = HasElectronics(status.st_rdev, places);
  if (const auto adapter = AdapterOf(status.st_rdev, places)) {
    const AdapterNames names = NamesOf(*adapter);
    port.Maker = names.Maker;
    port.Name = names.Product;
    port.Serial = adapter->Serial;
  }
  return port;
}

}  // namespace tavrel
