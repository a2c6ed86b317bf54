#ifndef TAVREL_BASE_NUMBERED_H_
#define TAVREL_BASE_NUMBERED_H_

#include <array>
#include <concepts>
#include <cstddef>
#include <type_traits>

namespace tavrel {

// Ends the program with a message: `number` is none of first..last.
[[noreturn]] void EndOnWrongNumber(long long number, int first, int last);

// An integer, or an enumerator that stands for one by itself.
template <typename T>
concept PlainNumber = std::integral<T> ||(std::is_enum_v<T>&& std::convertible_to<T, int>);

// One value for each of the numbers kFirst..kLast. Another number ends the program: it would be a
// fault of the program itself, and what is written elsewhere could be an oven's setpoint.
template <typename T, int kFirst, int kLast>
struct Numbered {
  std::array<T, kLast - kFirst + 1> Values{};  // in the order of the numbers

  template <PlainNumber Number>
  [[nodiscard]] constexpr T& operator[](Number number) {
    return Values[OffsetOf(number)];
  }
  template <PlainNumber Number>
  [[nodiscard]] constexpr const T& operator[](Number number) const {
    return Values[OffsetOf(number)];
  }

  [[nodiscard]] constexpr auto begin() { return Values.begin(); }
  [[nodiscard]] constexpr auto end() { return Values.end(); }
  [[nodiscard]] constexpr auto begin() const { return Values.begin(); }
  [[nodiscard]] constexpr auto end() const { return Values.end(); }

  constexpr void Fill(const T& value) { Values.fill(value); }

  [[nodiscard]] constexpr bool operator==(const Numbered& other) const {
    return Values == other.Values;
  }

 private:
  template <PlainNumber Number>
  [[nodiscard]] static constexpr std::size_t OffsetOf(Number number) {
    const auto wide = static_cast<long long>(number);
    if (wide < kFirst || wide > kLast) {
      EndOnWrongNumber(wide, kFirst, kLast);
    }
    return static_cast<std::size_t>(wide - kFirst);
  }
};

}  // namespace tavrel

#endif  // TAVREL_BASE_NUMBERED_H_
