#ifndef TAVREL_BASE_TEXT_H_
#define TAVREL_BASE_TEXT_H_

#include <string>
#include <string_view>

// Small operations on texts. Inside the program every text is UTF-8; in files it is
// Windows-1252, one byte a character.
namespace tavrel {

// Without blanks, tabs and zero bytes at both ends.
[[nodiscard]] std::string Trim(std::string_view text);

// Without them at the right end only.
[[nodiscard]] std::string TrimRight(std::string_view text);

[[nodiscard]] constexpr bool IsDigit(char character) {
  return character >= '0' && character <= '9';
}

// Letters A to Z only, and the letters of Windows-1252 that have a partner in the other case
// (file names may hold umlauts).
[[nodiscard]] std::string UpperCase(std::string_view utf8);
[[nodiscard]] std::string LowerCase(std::string_view utf8);

// True if both texts are the same but for case, by the rule of UpperCase.
[[nodiscard]] bool EqualNoCase(std::string_view left, std::string_view right);

// At most the first `count` characters (not bytes), never cutting one in half.
[[nodiscard]] std::string FirstCharacters(std::string_view utf8, std::size_t count);

// What stands behind the first `count` characters.
[[nodiscard]] std::string AfterCharacters(std::string_view utf8, std::size_t count);

// With a blank in place of each control character, of which a text on one line has none.
[[nodiscard]] std::string WithoutControls(std::string_view utf8);

// A character that Windows-1252 does not know, and each broken byte of the UTF-8, becomes "?".
[[nodiscard]] std::string ToWindows1252(std::string_view utf8);

// The five bytes that Windows-1252 leaves undefined become the control characters of the same
// number, so that every byte survives the way there and back.
[[nodiscard]] std::string FromWindows1252(std::string_view bytes);

}  // namespace tavrel

#endif  // TAVREL_BASE_TEXT_H_
