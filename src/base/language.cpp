#include "base/language.h"

namespace tavrel {

std::string FilledIn(std::string_view pattern, std::initializer_list<std::string_view> values) {
  std::string text;
  for (std::size_t place = 0; place < pattern.size(); ++place) {
    const char next = place + 1 < pattern.size() ? pattern[place + 1] : '0';
    const bool is_place = pattern[place] == '%' && next >= '1' && next <= '9';
    const auto number = static_cast<std::size_t>(is_place ? next - '1' : 0);
    if (is_place && number < values.size()) {
      text += values.begin()[number];
      ++place;
    } else {
      text += pattern[place];
    }
  }
  return text;
}

}  // namespace tavrel
