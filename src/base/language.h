#ifndef TAVREL_BASE_LANGUAGE_H_
#define TAVREL_BASE_LANGUAGE_H_

#include <string_view>

namespace tavrel {

enum class Language { kEnglish, kGerman };

// A first letter G or g is German, anything else English, the empty text too.
[[nodiscard]] constexpr Language LanguageOf(std::string_view help_language) {
  const bool german = !help_language.empty() && (help_language[0] | 0x20) == 'g';
  return german ? Language::kGerman : Language::kEnglish;
}

// A text in both languages of the program.
struct BothLanguages {
  std::string_view English;
  std::string_view German;

  [[nodiscard]] constexpr std::string_view In(Language language) const {
    return language == Language::kGerman ? German : English;
  }
};

}  // namespace tavrel

#endif  // TAVREL_BASE_LANGUAGE_H_
