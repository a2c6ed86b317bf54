#ifndef TAVREL_PLATFORM_QT_SERIAL_ADVICE_H_
#define TAVREL_PLATFORM_QT_SERIAL_ADVICE_H_

#include <QSerialPort>
#include <string>

#include "base/language.h"
#include "platform/known_device.h"
#include "platform/port_lock.h"

// Why a port does not open, and what the user can do about it, in plain words.
namespace tavrel {

// `device` is the path that was tried for COM`number`, `error` and `system_text` what the
// system said to it. Looks at the device: a lack of rights and a port that another program has
// open are told apart.
[[nodiscard]] std::string AdviceFor(int number, const std::string& device,
                                    QSerialPort::SerialPortError error,
                                    const std::string& system_text,
                                    Language language = Language::kEnglish);

// True if the user has the right to open the device.
[[nodiscard]] bool MayBeOpened(const std::string& device);

// The text for a device that the user may not open. `group` is the group whose members may; empty:
// there is none but the administrators', which nobody is advised to join.
[[nodiscard]] std::string NoRightsAdvice(int number, const std::string& device,
                                         const std::string& group,
                                         Language language = Language::kEnglish);

// The group whose members may open the device; empty if there is none to join.
[[nodiscard]] std::string GroupThatHelps(const std::string& device);

// The text for a port whose lock file `lock_file` says `lock`: held by another program, left
// there by a dead one and not to be deleted by us, or not to be understood.
[[nodiscard]] std::string LockAdvice(int number, const std::string& device,
                                     const std::string& lock_file, const PortLock& lock);

// The text for a port whose lock file cannot be made, and why.
[[nodiscard]] std::string NoLockAdvice(int number, const std::string& device,
                                       const std::string& lock_file, const std::string& reason);

// The text for a port that has vanished while it was in use and is not back.
[[nodiscard]] std::string GoneAdvice(int number, const KnownDevice& known);

// The same where the user has just confirmed the settings with its name.
[[nodiscard]] std::string StillGoneAdvice(int number, const KnownDevice& known);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_SERIAL_ADVICE_H_
