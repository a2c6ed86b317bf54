#include "platform/qt/serial_advice.h"

#include <grp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

namespace tavrel {
namespace {

constexpr gid_t kAdministrators = 0;

constexpr BothLanguages kDoesNotOpen{" does not open: ", " lässt sich nicht öffnen: "};
constexpr BothLanguages kIsItPluggedIn{"Is the adapter plugged in?",
                                       "Ist der Adapter eingesteckt?"};

std::string PortName(int number) {
  return "COM" + std::to_string(number);
}

std::string PortAndDevice(int number, const std::string& device) {
  return PortName(number) + " (" + device + ")";
}

std::string In(const BothLanguages& text, Language language) {
  return std::string(text.In(language));
}

// `program` begins the sentence.
std::string InUseAdvice(int number, const std::string& device, const std::string& program,
                        Language language) {
  constexpr BothLanguages kInUse{" is in use.\n\n", " ist belegt.\n\n"};
  constexpr BothLanguages kClose{
      " has it open. Close that program, or choose another port.",
      " hat sie geöffnet. Beenden Sie dieses Programm, oder wählen Sie eine andere Schnittstelle."};
  return PortAndDevice(number, device) + In(kInUse, language) + program + In(kClose, language);
}

std::string AnotherProgram(Language language) {
  return In({"Another program", "Ein anderes Programm"}, language);
}

std::string PermissionAdvice(int number, const std::string& device, Language language) {
  return MayBeOpened(device) ? InUseAdvice(number, device, AnotherProgram(language), language)
                             : NoRightsAdvice(number, device, GroupThatHelps(device), language);
}

// The name of the device in a rule: all devices of its kind, whatever number they come back with.
std::string KindOf(const std::string& device) {
  const std::string name = std::filesystem::path(device).filename().string();
  const std::string kind = name.substr(0, name.find_last_not_of("0123456789") + 1);
  return kind.size() < name.size() ? kind + "[0-9]*" : name;
}

std::string JoinAdvice(const std::string& group, Language language) {
  constexpr BothLanguages kJoin{
      "It belongs to the group \"%1\". Join the group with\n\nsudo usermod -aG %1 $USER\n\nand log "
      "in again.",
      "Die Schnittstelle gehört der Gruppe \"%1\". In die Gruppe aufnehmen mit\n\nsudo usermod -aG "
      "%1 $USER\n\nund neu anmelden."};
  return kJoin.Text(language, {group});
}

// Devices of the machine's administrator alone: only the system's rules can give them to others.
std::string RuleAdvice(const std::string& device, Language language) {
  constexpr BothLanguages kWhy{
      "No group of users may open it, so joining one does not help. Whoever administers this "
      "computer writes this line into the file /etc/udev/rules.d/70-tavrel.rules:",
      "Keine Benutzergruppe darf die Schnittstelle öffnen, in eine einzutreten hilft also nicht. "
      "Wer diesen "
      "Rechner verwaltet, schreibt diese Zeile in die Datei /etc/udev/rules.d/70-tavrel.rules:"};
  constexpr BothLanguages kThen{
      "Then restart the computer, or pull the adapter out and plug it in again. From then on "
      "members of the group \"dialout\" may open it; join it with",
      "Danach den Rechner neu starten oder den Adapter aus- und wieder einstecken. Von da an "
      "dürfen Mitglieder der Gruppe \"dialout\" sie öffnen; aufnehmen mit"};
  constexpr BothLanguages kLast{"and log in again.", "und neu anmelden."};
  return std::string(kWhy.In(language)) + "\n\nSUBSYSTEM==\"tty\", KERNEL==\"" + KindOf(device) +
         "\", GROUP=\"dialout\", MODE=\"0660\"\n\n" + std::string(kThen.In(language)) +
         "\n\nsudo usermod -aG dialout $USER\n\n" + std::string(kLast.In(language));
}

// "minicom (process 1234)".
std::string NameOfHolder(const PortLock& lock, Language language) {
  if (lock.Process == 0) {
    return AnotherProgram(language);
  }
  constexpr BothLanguages kProcess{"process ", "Prozess "};
  constexpr BothLanguages kTheProcess{"The process ", "Der Prozess "};
  const std::string number = std::to_string(lock.Process);
  return lock.Program.empty() ? In(kTheProcess, language) + number
                              : lock.Program + " (" + In(kProcess, language) + number + ")";
}

std::string HasGone(int number, const KnownDevice& known, Language language) {
  constexpr BothLanguages kHasGone{" has gone (", " ist weg ("};
  constexpr BothLanguages kAdapter{", the adapter with the serial number ",
                                   ", der Adapter mit der Seriennummer "};
  const bool has_serial = known.Plugged && known.HasItsOwnSerial;
  const std::string adapter = has_serial ? In(kAdapter, language) + known.Plugged->Serial : "";
  return PortName(number) + In(kHasGone, language) + known.Path + adapter + ").\n\n";
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
  const std::string port = PortAndDevice(number, device);
  constexpr BothLanguages kNoRight{"You have no right to open %1.\n\n",
                                   "Sie haben kein Recht, %1 zu öffnen.\n\n"};
  const bool helps = !group.empty() && group != "root";
  return kNoRight.Text(language, {port}) +
         (helps ? JoinAdvice(group, language) : RuleAdvice(device, language));
}

std::string LockAdvice(int number, const std::string& device, const std::string& lock_file,
                       const PortLock& lock, Language language) {
  if (lock.State == LockState::kHeld) {
    return InUseAdvice(number, device, NameOfHolder(lock, language), language);
  }
  constexpr BothLanguages kLocked{" is locked: the lock file ", " ist gesperrt: die Sperrdatei "};
  constexpr BothLanguages kLeft{" was left there by a program that does not run any more.\n\n",
                                " stammt von einem Programm, das nicht mehr läuft.\n\n"};
  constexpr BothLanguages kUnknown{" does not say which program has it open.\n\n",
                                   " sagt nicht, welches Programm sie geöffnet hat.\n\n"};
  constexpr BothLanguages kDelete{
      "If no program has the port open, delete this file.",
      "Wenn kein Programm die Schnittstelle geöffnet hat, löschen Sie diese Datei."};
  const BothLanguages& what = lock.State == LockState::kLeft ? kLeft : kUnknown;
  return PortAndDevice(number, device) + In(kLocked, language) + lock_file + In(what, language) +
         In(kDelete, language);
}

std::string NoLockAdvice(int number, const std::string& device, const std::string& lock_file,
                         const std::string& reason, Language language) {
  constexpr BothLanguages kFile{"the lock file ", "die Sperrdatei "};
  constexpr BothLanguages kCannot{" cannot be made: ", " kann nicht angelegt werden: "};
  return PortAndDevice(number, device) + In(kDoesNotOpen, language) + In(kFile, language) +
         lock_file + In(kCannot, language) + reason;
}

std::string NoPortAdvice(int number, Language language) {
  constexpr BothLanguages kNoPort{"There is no port ", "Es gibt keine Schnittstelle "};
  return In(kNoPort, language) + PortName(number) + ".";
}

std::string BadSettingsAdvice(std::string_view settings, Language language) {
  constexpr BothLanguages kBefore{"The port cannot be set to \"",
                                  "Die Schnittstelle lässt sich nicht einstellen auf \""};
  return In(kBefore, language) + std::string(settings) + "\".";
}

std::string GoneAdvice(int number, const KnownDevice& known, Language language) {
  constexpr BothLanguages kComesBack{
      "The same device is opened as soon as it is back. For another one confirm the settings.",
      "Dasselbe Gerät wird geöffnet, sobald es wieder da ist. Für ein anderes bestätigen Sie die "
      "Einstellungen."};
  return HasGone(number, known, language) + In(kComesBack, language);
}

std::string StillGoneAdvice(int number, const KnownDevice& known, Language language) {
  constexpr BothLanguages kOnceMore{
      "\nFor another device confirm the settings once more.",
      "\nFür ein anderes Gerät bestätigen Sie die Einstellungen noch einmal."};
  return HasGone(number, known, language) + In(kIsItPluggedIn, language) + In(kOnceMore, language);
}

std::string AdviceFor(int number, const std::string& device, QSerialPort::SerialPortError error,
                      const std::string& system_text, Language language) {
  if (error == QSerialPort::PermissionError) {
    return PermissionAdvice(number, device, language);
  }
  if (error == QSerialPort::DeviceNotFoundError) {
    constexpr BothLanguages kMissing{" does not exist: there is no device ",
                                     " ist nicht da: es gibt kein Gerät "};
    return PortName(number) + In(kMissing, language) + device + ".\n\n" +
           In(kIsItPluggedIn, language);
  }
  return PortAndDevice(number, device) + In(kDoesNotOpen, language) + system_text;
}

}  // namespace tavrel
