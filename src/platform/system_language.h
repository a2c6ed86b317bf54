#ifndef TAVREL_PLATFORM_SYSTEM_LANGUAGE_H_
#define TAVREL_PLATFORM_SYSTEM_LANGUAGE_H_

#include "base/language.h"

namespace tavrel {

// The language of the user's session, for what is to be said before the settings are known.
[[nodiscard]] Language SystemLanguage();

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_SYSTEM_LANGUAGE_H_
