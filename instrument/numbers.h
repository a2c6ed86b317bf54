#ifndef TAVREL_INSTRUMENT_NUMBERS_H_
#define TAVREL_INSTRUMENT_NUMBERS_H_

#include <charconv>
#include <optional>
#include <string_view>

namespace instrument {

// Reads the whole of `text` as a decimal number from `low` to `high`; nothing otherwise. The
// decimal mark is a point, whatever the locale.
template <typename Number>
[[nodiscard]] std::optional<Number> ParseNumber(std::string_view text, Number low, Number high) {
  Number number{};
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, number);
  if (error != std::errc{} || stop != end || !(number >= low) || !(number <= high)) {
    return std::nullopt;
  }
  return number;
}

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_NUMBERS_H_
