#ifndef TAVREL_MAIN_UNTOLD_NOTICES_H_
#define TAVREL_MAIN_UNTOLD_NOTICES_H_

#include <string>
#include <vector>

#include "base/language.h"
#include "platform/clock.h"
#include "platform/dialogs.h"

namespace tavrel {

// What is found while the program ends, when no window can tell it any more, waits in this file
// beside the settings for the next start. One JSON object a line.
inline constexpr const char* kUntoldFile = "TAVREL.MSG";

// Puts the notices behind those that wait already; of too many the oldest go. Returns the empty
// text on success, else why nothing was kept.
[[nodiscard]] std::string KeepUntold(const std::string& directory,
                                     const std::vector<Notice>& notices, const WallTime& now);

// Takes the notices out of the file, in their order, each with the time of its end of the program.
// A file that cannot be read now stays for the next start. A line that is none is told, too.
[[nodiscard]] std::vector<Notice> TakeUntold(const std::string& directory, Language language);

}  // namespace tavrel

#endif  // TAVREL_MAIN_UNTOLD_NOTICES_H_
