#include "platform/system_language.h"

#include <cstdlib>

namespace tavrel {

// The first that is set and not empty counts.
Language SystemLanguage() {
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    const char* const value = std::getenv(name);
    const std::string_view locale = value != nullptr ? value : "";
    if (!locale.empty()) {
      return locale.starts_with("de") ? Language::kGerman : Language::kEnglish;
    }
  }
  return Language::kEnglish;
}

}  // namespace tavrel
