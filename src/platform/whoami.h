#ifndef TAVREL_PLATFORM_WHOAMI_H_
#define TAVREL_PLATFORM_WHOAMI_H_

#include <string>

// Who runs the program, where, and since which start of the machine. Each answer is "?" where the
// system gives none.
namespace tavrel {

[[nodiscard]] std::string ComputerName();

// The name under which the user has logged in, by the system's list of users.
[[nodiscard]] std::string LoginName();

// A text that is another one after each start of the machine. Clock::Elapsed() of two boots cannot
// be compared.
[[nodiscard]] std::string BootId();

// 32 hexadecimal digits that nobody has had before.
[[nodiscard]] std::string RandomId();

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_WHOAMI_H_
