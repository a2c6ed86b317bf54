#ifndef TAVREL_PLATFORM_SHA256_H_
#define TAVREL_PLATFORM_SHA256_H_

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace tavrel {

// A SHA-256 that is carried on: bytes are added in their order, in pieces of any size, and what
// they come to so far can be asked for at any time. A copy goes on by itself.
//
// Where the library gives no hash (no memory), Hex() is empty from then on, and fits nothing.
class Sha256 {
 public:
  Sha256();
  ~Sha256();
  Sha256(const Sha256& other);
  Sha256& operator=(const Sha256& other);
  Sha256(Sha256&& other) noexcept;
  Sha256& operator=(Sha256&& other) noexcept;

  void Add(std::span<const std::byte> bytes);
  void Add(std::string_view bytes);

  // Of all bytes so far: 64 lower-case hexadecimal digits. More bytes may follow.
  [[nodiscard]] std::string Hex() const;

 private:
  struct State;
  std::unique_ptr<State> state_;  // empty: the library has failed
};

// Of these bytes alone.
[[nodiscard]] std::string Sha256Of(std::span<const std::byte> bytes);
[[nodiscard]] std::string Sha256Of(std::string_view bytes);

}  // namespace tavrel

#endif  // TAVREL_PLATFORM_SHA256_H_
