#ifndef TAVREL_TESTS_FUZZ_FUZZ_INPUT_H_
#define TAVREL_TESTS_FUZZ_FUZZ_INPUT_H_

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace tavrel {

// Ends the process with the broken rule in words; the fuzzer keeps the input.
inline void Require(bool holds, const char* rule) {
  if (!holds) {
    std::fprintf(stderr, "Broken rule: %s\n", rule);
    std::abort();
  }
}

inline std::string TextOf(const std::uint8_t* data, std::size_t size) {
  return {data, data + size};
}

// The bytes of one run, handed out from the front. What lies behind their end is zero.
class FuzzInput {
 public:
  explicit FuzzInput(std::string_view bytes) : left_(bytes) {}

  [[nodiscard]] bool IsEmpty() const { return left_.empty(); }

  // At most `count` bytes.
  std::string Text(std::size_t count) {
    std::string text(left_.substr(0, count));
    left_.remove_prefix(text.size());
    return text;
  }
  int Byte() {
    const std::string text = Text(1);
    return text.empty() ? 0 : static_cast<unsigned char>(text[0]);
  }
  // 0..count - 1.
  int Choice(int count) { return Byte() % count; }
  bool Flag() { return Choice(2) == 1; }

  // A number of any bits.
  template <typename T>
  T Bits() {
    const std::string text = Text(sizeof(T));
    T value{};
    std::memcpy(&value, text.data(), text.size());
    return value;
  }
  std::int16_t Word() { return Bits<std::int16_t>(); }

 private:
  std::string_view left_;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_FUZZ_FUZZ_INPUT_H_
