#include "platform/qt/serial_advice.h"

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace tavrel {
namespace {

constexpr gid_t kAdministrators = 0;

std::string PortName(int number) {
  return "COM" + std::to_string(number);
}

std::string InUseAdvice(int number, const std::string& device, const std::string& program) {
  return PortName(number) + " (" + device + ") is in use.\n\n" + program +
         " has it open. Close that program, or choose another port.";
}

std::string PermissionAdvice(int number, const std::string& device, Language language) {
  return MayBeOpened(device) ? InUseAdvice(number, device, "Another program")
                             : NoRightsAdvice(number, device, GroupThatHelps(device), language);
}

// The name of the device in a rule: all devices of its kind, whatever number they come back with.
std::string KindOf(const std::string& device) {
  const std::string name = std::filesystem::path(device).filename().string();
  const std::string kind = name.substr(0, name.find_last_not_of("0123456789") + 1);
  return kind.size() < name.size() ? kind + "[0-9]*" : name;
}

std::string JoinAdvice(const std::string& group, Language language) {
  const bool german = language == Language::kGerman;
  const std::string command = "sudo usermod -aG " + group + " $USER";
  return german ? "Er gehört der Gruppe \"" + group + "\". In die Gruppe aufnehmen mit\n\n" +
                      command + "\n\nund neu anmelden."
                : "It belongs to the group \"" + group + "\". Join the group with\n\n" + command +
                      "\n\nand log in again.";
}

// Devices of the machine's administrator alone: only the system's rules can give them to others.
std::string RuleAdvice(const std::string& device, Language language) {
  constexpr BothLanguages kWhy{
      "No group of users may open it, so joining one does not help. Whoever administers this "
      "computer writes this line into the file /etc/udev/rules.d/70-tavrel.rules:",
      "Keine Benutzergruppe darf ihn öffnen, in eine einzutreten hilft also nicht. Wer diesen "
      "Rechner verwaltet, schreibt diese Zeile in die Datei /etc/udev/rules.d/70-tavrel.rules:"};
  constexpr BothLanguages kThen{
      "Then restart the computer, or pull the adapter out and plug it in again. From then on "
      "members of the group \"dialout\" may open it; join it with",
      "Danach den Rechner neu starten oder den Adapter aus- und wieder einstecken. Von da an "
      "dürfen ihn Mitglieder der Gruppe \"dialout\" öffnen; aufnehmen mit"};
  constexpr BothLanguages kLast{"and log in again.", "und neu anmelden."};
  return std::string(kWhy.In(language)) + "\n\nSUBSYSTEM==\"tty\", KERNEL==\"" + KindOf(device) +
         "\", GROUP=\"dialout\", MODE=\"0660\"\n\n" + std::string(kThen.In(language)) +
         "\n\nsudo usermod -aG dialout $USER\n\n" + std::string(kLast.In(language));
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

std::string GroupThatHelps(const std::string& device) {
  struct stat status {};
  const bool is_there = stat(device.c_str(), &status) == 0;
  constexpr mode_t kBoth = S_IRGRP | S_IWGRP;
  if (!is_there || status.st_gid == kAdministrators || (status.st_mode & kBoth) != kBoth) {
    return "";
  }
  const group* owner = getgrgid(status.st_gid);
  return owner == nullptr ? "" : owner->gr_name;
}

std::string NoRightsAdvice(int number, const std::string& device, const std::string& group,
                           Language language) {
  const std::string port = PortName(number) + " (" + device + ")";
  const std::string what = language == Language::kGerman
                               ? "Sie haben kein Recht, " + port + " zu öffnen."
                               : "You have no right to open " + port + ".";
  const bool helps = !group.empty() && group != "root";
  return what + "\n\n" + (helps ? JoinAdvice(group, language) : RuleAdvice(device, language));
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
                      const std::string& system_text, Language language) {
  if (error == QSerialPort::PermissionError) {
    return PermissionAdvice(number, device, language);
  }
  if (error == QSerialPort::DeviceNotFoundError) {
    return PortName(number) + " does not exist: there is no device " + device + ".\n\n" +
           "Is the adapter plugged in?";
  }
  return PortName(number) + " (" + device + ") does not open: " + system_text;
}

}  // namespace tavrel
