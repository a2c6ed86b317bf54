#ifndef TAVREL_PLATFORM_QT_SERIAL_DEVICE_H_
#define TAVREL_PLATFORM_QT_SERIAL_DEVICE_H_

#include <QString>
#include <string>
#include <vector>

// What a process that was killed leaves on the device of a serial port, and how the next one
// gets rid of it.
namespace tavrel {

// The lock file that QSerialPort keeps for `device`, such as "/dev/ttyUSB0"; empty if no
// directory for it can be used.
[[nodiscard]] QString SerialLockFile(const QString& device);

// All names of the device that `device` leads to: itself, each link on the way, the device.
[[nodiscard]] std::vector<std::string> DeviceNames(const std::string& device);

// Changes one setting of `device` that every opening changes back. Without parity generators, as
// on a pseudo-terminal, the C library refuses a change of settings in which nothing but the
// parity is asked for; so it is after a process that was killed and left all others as they have
// to be. True if it was done.
bool UnsettleDevice(const QString& device);

// Lets go of the exclusive use of a pseudo-terminal that is open as `descriptor`; nothing happens
// to any other device. A pseudo-terminal keeps that mark when its process is killed, as long as
// its far end lives, and nobody could open it again.
void ShareIfPseudoTerminal(const QString& device, int descriptor);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_SERIAL_DEVICE_H_
