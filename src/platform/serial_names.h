#ifndef TAVREL_PLATFORM_SERIAL_NAMES_H_
#define TAVREL_PLATFORM_SERIAL_NAMES_H_

#include <string>

namespace tavrel {

inline constexpr int kSerialPorts = 30;  // COM1 to COM30

// The device behind port COM`number`, by the first of these that exists:
//   1. COMn in `program_directory`: a link laid there by the user says which adapter it is
//   2. COMn in `device_directory`: the same by a rule of the system
//   3. the names of the system: COM1..4 ttyS0..3, COM5..8 ttyUSB0..3, COM9 ttyACM0,
//      COM10..30 ttyS9..29
// In 1 and 2 a link counts even while it leads nowhere (the adapter is pulled out), and "com1"
// counts where no "COM1" stands. The device of 3 need not exist. A number outside 1..30 has no
// device: the empty text.
[[nodiscard]] std::string SerialDevice(int number, const std::string& program_directory,
                                       const std::string& device_directory = "/dev");

// True if that path of SerialDevice is one of 1 and 2: somebody has said which device it is.
[[nodiscard]] bool IsLaidByHand(int number, const std::string& device,
                                const std::string& device_directory = "/dev");

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_SERIAL_NAMES_H_
