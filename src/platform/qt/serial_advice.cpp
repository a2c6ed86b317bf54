#include "platform/qt/serial_advice.h"

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tavrel {
namespace {

// The group that owns the device; on this system serial ports belong to dialout.
std::string OwnerGroup(const std::string& device) {
  struct stat status {};
  if (stat(device.c_str(), &status) != 0) {
    return "dialout";
  }
  const group* owner = getgrgid(status.st_gid);
  return owner == nullptr ? "dialout" : owner->gr_name;
}

std::string PortName(int number) {
  return "COM" + std::to_string(number);
}

std::string InUseAdvice(int number, const std::string& device, const std::string& program) {
  return PortName(number) + " (" + device + ") is in use.\n\n" + program +
         " has it open. Close that program, or choose another port.";
}

std::string PermissionAdvice(int number, const std::string& device) {
  return MayBeOpened(device) ? InUseAdvice(number, device, "Another program")
                             : NoRightsAdvice(number, device, OwnerGroup(device));
}

// "minicom (process 1234)".
std::string NameOfHolder(const PortLock& lock) {
  if (lock.Process == 0) {
    return "Another program";
  }
  const std::string number = "process " + std::to_string(lock.Process);
  return lock.Program.empty() ? "The " + number : lock.Program + " (" + number + ")";
}

std::string HasGone(int number, const KnownDevice& known) {
  const bool has_serial = known.Plugged && known.HasItsOwnSerial;
  const std::string adapter =
      has_serial ? ", the adapter with the serial number " + known.Plugged->Serial : "";
  return PortName(number) + " has gone (" + known.Path + adapter + ").\n\n";
}

}  // namespace

bool MayBeOpened(const std::string& device) {
  return access(device.c_str(), R_OK | W_OK) == 0;
}

std::string NoRightsAdvice(int number, const std::string& device, const std::string& group) {
  return "You have no right to open " + PortName(number) + " (" + device + ").\n\n" +
         "It belongs to the group \"" + group + "\". Join the group with\n\n" +
         "sudo usermod -aG " + group + " $USER\n\n" + "and log in again.";
}

std::string LockAdvice(int number, const std::string& device, const std::string& lock_file,
                       const PortLock& lock) {
  if (lock.State == LockState::kHeld) {
    return InUseAdvice(number, device, NameOfHolder(lock));
  }
  const std::string what = lock.State == LockState::kLeft
                               ? "was left there by a program that does not run any more"
                               : "does not say which program has it open";
  return PortName(number) + " (" + device + ") is locked: the lock file " + lock_file + " " + what +
         ".\n\n" + "If no program has the port open, delete this file.";
}

std::string NoLockAdvice(int number, const std::string& device, const std::string& lock_file,
                         const std::string& reason) {
  return PortName(number) + " (" + device + ") does not open: the lock file " + lock_file +
         " cannot be made: " + reason;
}

std::string GoneAdvice(int number, const KnownDevice& known) {
  return HasGone(number, known) +
         "The same device is opened as soon as it is back. For another one confirm the settings.";
}

std::string StillGoneAdvice(int number, const KnownDevice& known) {
  return HasGone(number, known) +
         "Is the adapter plugged in?\nFor another device confirm the settings once more.";
}

std::string AdviceFor(int number, const std::string& device, QSerialPort::SerialPortError error,
                      const std::string& system_text) {
  if (error == QSerialPort::PermissionError) {
    return PermissionAdvice(number, device);
  }
  if (error == QSerialPort::DeviceNotFoundError) {
    return PortName(number) + " does not exist: there is no device " + device + ".\n\n" +
           "Is the adapter plugged in?";
  }
  return PortName(number) + " (" + device + ") does not open: " + system_text;
}

}  // namespace tavrel
