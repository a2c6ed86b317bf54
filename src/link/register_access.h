#ifndef TAVREL_LINK_REGISTER_ACCESS_H_
#define TAVREL_LINK_REGISTER_ACCESS_H_

#include <cstdint>
#include <optional>
#include <string_view>

#include "link/link.h"

// The exchanges of a link with their arguments and results as values. Each call sets the argument
// block of the link afresh, so it does not matter what other callers have left there.
namespace tavrel {

// A register of an instrument.
struct Register {
  int inet = 0;             // 1..6 in use
  std::string_view letter;  // "G".."Z", see reg in link/registers.h
  int index = 0;            // 0..15
};

// A place in the memory of an instrument. On a direct line it carries no instrument number.
struct MemoryPlace {
  int inet = 0;
  std::string_view address;  // hexadecimal text, sent as it stands
};

// One of the processor's input/output registers. On a direct line it carries no instrument number.
struct PortPlace {
  int inet = 0;
  std::string_view address;  // hexadecimal text, sent as it stands
};

// What a reading gave.
struct Reading {
  LinkResult status = LinkResult::kNone;
  std::int16_t word = 0;  // only if IsGood(); raw, 16 bits

  [[nodiscard]] bool IsGood() const { return tavrel::IsGood(status); }
  [[nodiscard]] std::optional<std::int16_t> Word() const {
    return IsGood() ? std::optional(word) : std::nullopt;
  }
  [[nodiscard]] std::int16_t WordOr(std::int16_t otherwise) const {
    return IsGood() ? word : otherwise;
  }
};

[[nodiscard]] Reading Read(Link& link, const Register& from);
[[nodiscard]] Reading Read(Link& link, const MemoryPlace& from);
[[nodiscard]] Reading Read(Link& link, const PortPlace& from);

// As Read, and the line stays silent behind the reply (see Link::NoTrailingBytes): for a value that
// must not be another command's.
[[nodiscard]] Reading ReadAlone(Link& link, const Register& from);
[[nodiscard]] Reading ReadAlone(Link& link, const PortPlace& from);

// kGood if the write was acknowledged. Otherwise nobody knows what the instrument holds.
[[nodiscard]] LinkResult Write(Link& link, const Register& to, std::int16_t word);
[[nodiscard]] LinkResult Write(Link& link, const MemoryPlace& to, std::int16_t word);
[[nodiscard]] LinkResult Write(Link& link, const PortPlace& to, std::int16_t word);

}  // namespace tavrel

#endif  // TAVREL_LINK_REGISTER_ACCESS_H_
