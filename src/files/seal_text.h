#ifndef TAVREL_FILES_SEAL_TEXT_H_
#define TAVREL_FILES_SEAL_TEXT_H_

#include <string>
#include <string_view>

#include "base/language.h"

namespace tavrel {

// What the last seal of a journal says, in one line: "seal: 2134 rows, 8c6976e5b5410415,
// 2026-03-14 10:00:00 +01:00", with the first 16 digits of the hash of the rows. Empty if there is
// none. Only the end of a long journal is looked at.
[[nodiscard]] std::string LastSealText(std::string_view journal, Language language);

}  // namespace tavrel

#endif  // TAVREL_FILES_SEAL_TEXT_H_
