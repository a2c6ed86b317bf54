#ifndef TAVREL_LINK_FRAME_H_
#define TAVREL_LINK_FRAME_H_

#include <cstdint>
#include <string>
#include <string_view>

#include "link/line_mode.h"

// The commands as they go on the line, byte for byte. Pure functions: values in, text out. A
// read ends with its command character; a write ends with a carriage return.
namespace tavrel {

inline constexpr char kCarriageReturn = '\r';
inline constexpr char kEscape = '\x1b';

// Who is addressed: the instrument's number and, in a variant-1 network, the number inside it.
struct LineAddress {
  std::int16_t Inet = 0;
  std::int16_t Snet = 0;
};

// The address in front of a command on a line that carries one. `com_cmd` is the bank or
// command letter; it goes out in lower case behind an address, as it is without one.
// Instrument 1 carries no digit at all and instrument n the digit n - 1; variant 1 alone sends
// the number unchanged.
[[nodiscard]] std::string LinkPrefix(const LineMode& mode, char com_cmd, LineAddress address);

// A register, named by letter and index.
struct RegisterName {
  std::string_view Letter;
  std::int16_t Index = 0;
};
[[nodiscard]] std::string RegisterReadFrame(const LineMode& mode, LineAddress address,
                                            RegisterName name);
[[nodiscard]] std::string RegisterWriteFrame(const LineMode& mode, LineAddress address,
                                             RegisterName name, std::int16_t value);

// What lies behind an address text: memory or the processor's input/output registers.
enum class Space { kMemory, kPort };

// `place` is hexadecimal text and goes out as the caller gave it. On a direct line the frame
// carries no instrument number: it reaches whatever answers.
[[nodiscard]] std::string SpaceReadFrame(const LineMode& mode, LineAddress address, Space space,
                                         std::string_view place);
[[nodiscard]] std::string SpaceWriteFrame(const LineMode& mode, LineAddress address, Space space,
                                          std::string_view place, std::int16_t value);

}  // namespace tavrel

#endif  // TAVREL_LINK_FRAME_H_
