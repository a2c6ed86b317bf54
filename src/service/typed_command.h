#ifndef TAVREL_SERVICE_TYPED_COMMAND_H_
#define TAVREL_SERVICE_TYPED_COMMAND_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tavrel {

// A command that takes values out of an instrument's buffer, or clears it.
struct BufferCommand {
  char Letter = 0;  // register 'X' is read, or 'R' or 'S' written
  int Inet = 1;     // 1..6; others are not on the line
  int Input = 0;    // 0..15
  bool IsRead = false;

  [[nodiscard]] bool operator==(const BufferCommand&) const = default;
};

// What a text that a user has typed does to a buffer; empty: nothing. `text` is all that an
// instrument has got of a command, with its last character. It may be in the words of either kind
// of line, "X2F?" or "n2p1F?", in capitals or not, with zeros in front or without the number of the
// instrument, which is 1 then. Characters before the command do not matter: an
// instrument skips them.
[[nodiscard]] std::optional<BufferCommand> BufferCommandIn(std::string_view text);

// A command that writes a register.
struct RegisterWrite {
  char Letter = 0;  // 'G'..'Z'
  int Inet = 1;     // 1..6; others are not on the line
  int Index = 0;
  std::int16_t Word = 0;

  [[nodiscard]] bool operator==(const RegisterWrite&) const = default;
};

// What a text that a user has typed writes, as BufferCommandIn reads it; empty: nothing, or what is
// no word.
[[nodiscard]] std::optional<RegisterWrite> RegisterWriteIn(std::string_view text);

}  // namespace tavrel

#endif  // TAVREL_SERVICE_TYPED_COMMAND_H_
