#ifndef TAVREL_PLATFORM_KNOWN_DEVICE_FILE_H_
#define TAVREL_PLATFORM_KNOWN_DEVICE_FILE_H_

#include <optional>
#include <string>

#include "platform/known_device.h"

// The adapter behind the port number in use, kept between the runs of the program: the machine may
// start without it, and its name may then lead to another device.
namespace tavrel {

inline constexpr const char* kKnownDeviceFile = "TAVREL.DEV";

// The adapter that the port COM`number` was when the file at `path` was written. Empty if it was no
// adapter, another number was in use, or the file is missing or spoilt.
[[nodiscard]] std::optional<KnownDevice> ReadKnownDevice(const std::string& path, int number);

// Keeps the device that is open as COM`number`; one that belongs to no adapter cannot be taken for
// another, and nothing is kept. The file is written only if it says something else. Where it cannot
// be written the next start opens the port by its name.
void KeepKnownDevice(const std::string& path, int number, const KnownDevice& known);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_KNOWN_DEVICE_FILE_H_
