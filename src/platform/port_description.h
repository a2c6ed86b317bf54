#ifndef TAVREL_PLATFORM_PORT_DESCRIPTION_H_
#define TAVREL_PLATFORM_PORT_DESCRIPTION_H_

#include <string>

#include "platform/known_device.h"

namespace tavrel {

// What the system tells of the device behind a port. All texts are as the system has them, any
// bytes but line ends; empty: it does not tell.
struct PortDescription {
  std::string Device;  // its path; a link that leads somewhere is followed
  bool IsThere = false;
  std::string Maker;   // of the adapter: "FTDI"
  std::string Name;    // "FT232R USB UART"
  std::string Serial;  // its serial number
};

// Port COM`number`, found as SerialDevice finds it. A port of the machine for which the system
// has a name but no electronics is not there. A number outside 1..30 has no device and is not
// there.
[[nodiscard]] PortDescription DescribePort(int number, const std::string& program_directory,
                                           const SerialPlaces& places = {});

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_PORT_DESCRIPTION_H_
