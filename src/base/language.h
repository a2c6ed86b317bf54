#ifndef TAVREL_BASE_LANGUAGE_H_
#define TAVREL_BASE_LANGUAGE_H_

#include <initializer_list>
#include <string>
#include <string_view>

namespace tavrel {

enum class Language { kEnglish, kGerman };

// A first letter G or g is German, anything else English, the empty text too.
[[nodiscard]] constexpr Language LanguageOf(std::string_view help_language) {
  const bool german = !help_language.empty() && (help_language[0] | 0x20) == 'g';
  return german ? Language::kGerman : Language::kEnglish;
}

// `pattern` with "%1" to "%9" replaced by the values; what a value holds is not looked at.
[[nodiscard]] std::string FilledIn(std::string_view pattern,
                                   std::initializer_list<std::string_view> values);

// Not defined: a text that is missing in one of the languages does not compile.
void TextIsMissingInOneLanguage();

// A text in both languages of the program.
struct BothLanguages {
  std::string_view English;
  std::string_view German;

  // No text.
  constexpr BothLanguages() = default;

  consteval BothLanguages(std::string_view english, std::string_view german)
      : English(english), German(german) {
    if (english.empty() || german.empty() || english == german) {
      TextIsMissingInOneLanguage();
    }
  }

  // What is called the same in both, such as a key.
  [[nodiscard]] static consteval BothLanguages Same(std::string_view text) {
    BothLanguages both;
    both.English = text;
    both.German = text;
    return both;
  }

  [[nodiscard]] constexpr std::string_view In(Language language) const {
    return language == Language::kGerman ? German : English;
  }

  // With its places "%1" to "%9" filled in.
  [[nodiscard]] std::string Text(Language language,
                                 std::initializer_list<std::string_view> values = {}) const {
    return FilledIn(In(language), values);
  }
};

}  // namespace tavrel

#endif  // TAVREL_BASE_LANGUAGE_H_
