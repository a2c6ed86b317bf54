#ifndef TAVREL_PLATFORM_QT_SERIAL_ADVICE_H_
#define TAVREL_PLATFORM_QT_SERIAL_ADVICE_H_

#include <QSerialPort>
#include <string>
#include <string_view>

#include "base/language.h"
#include "platform/known_device.h"
#include "platform/port_lock.h"

// Why a port does not open, and what the user can do about it, in plain words of either language.
// What the system says itself is passed on as it is.
namespace tavrel {

// `device` is the path that was tried for COM`number`, `error` and `system_text` what the
// system said to it. Looks at the device: a lack of rights and a port that another program has
// open are told apart.
[[nodiscard]] std::string AdviceFor(int number, const std::string& device,
                                    QSerialPort::SerialPortError error,
                                    const std::string& system_text, Language language);

// True if the user has the right to open the device.
[[nodiscard]] bool MayBeOpened(const std::string& device);

// The text for a device that the user may not open. `group` is the group whose members may; empty:
// there is none but the administrators', which nobody is advised to join.
[[nodiscard]] std::string NoRightsAdvice(int number, const std::string& device,
                                         const std::string& group, Language language);

// The group whose members may open the device; empty if there is none to join.
[[nodiscard]] std::string GroupThatHelps(const std::string& device);

// The text for a port whose lock file `lock_file` says `lock`: held by another program, left
// there by a dead one and not to be deleted by us, or not to be understood.
[[nodiscard]] std::string LockAdvice(int number, const std::string& device,
                                     const std::string& lock_file, const PortLock& lock,
                                     Language language);

// The text for a port whose lock file cannot be made, and why.
[[nodiscard]] std::string NoLockAdvice(int number, const std::string& device,
                                       const std::string& lock_file, const std::string& reason,
                                       Language language);

// The text for a number that no port has, and for settings that are none.
[[nodiscard]] std::string NoPortAdvice(int number, Language language);
[[nodiscard]] std::string BadSettingsAdvice(std::string_view settings, Language language);

// The text for a port that has vanished while it was in use and is not back.
[[nodiscard]] std::string GoneAdvice(int number, const KnownDevice& known, Language language);

// The same where the user has just confirmed the settings with its name.
[[nodiscard]] std::string StillGoneAdvice(int number, const KnownDevice& known, Language language);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_QT_SERIAL_ADVICE_H_
