#ifndef TAVREL_SERVICE_QUALITY_TEXTS_H_
#define TAVREL_SERVICE_QUALITY_TEXTS_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/regional.h"

// Dates and names of the quality data: as the instrument keeps them, as the user sees and types
// them. A date is kept as "ddmmyy"; its two-digit year is one of 1980 to 2079.
namespace tavrel {

// The day as "ddmmyy".
[[nodiscard]] std::string DateDigits(const WallTime& day);

// A date of the instrument in the region's short form. A text that is not a date, also the empty
// one, gives "-". A text of five digits has lost its leading zero.
[[nodiscard]] std::string ShownDate(const std::string& digits, const Regional& regional);

// What the user has typed, as "ddmmyy"; nothing if it is no date. The region's short form is tried
// first, then dd.mm.yy and dd.mm.yyyy. A year of two digits becomes four before the date is tested,
// and a year outside 1980 to 2079, which its last two digits do not give, is refused.
[[nodiscard]] std::optional<std::string> ReadDate(std::string_view text, const Regional& regional);

// Two characters in one decimal number: the code of the first times 100 and that of the second. One
// that is missing is a blank: "AB" is 6566, "A" 6532. Only for IsInitials and the empty text.
[[nodiscard]] std::int16_t NameWord(std::string_view name);

// The characters back again. A code below 33 makes the name empty, also that of a name of one
// letter.
[[nodiscard]] std::string NameText(std::int16_t word);

// True for one or two characters with codes of two digits: capital letters, figures and most signs,
// but no letter outside A to Z.
[[nodiscard]] bool IsInitials(std::string_view name);

}  // namespace tavrel

#endif  // TAVREL_SERVICE_QUALITY_TEXTS_H_
