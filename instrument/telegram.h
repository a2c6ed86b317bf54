#ifndef TAVREL_INSTRUMENT_TELEGRAM_H_
#define TAVREL_INSTRUMENT_TELEGRAM_H_

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace instrument {

// The two kinds of line: a direct one (4800 baud, 8N2) and one through a plug-in interface
// (9600 baud, 8E1). They differ in the whole command syntax.
enum class LineMode : std::uint8_t { kDirect, kPlugin };

enum class Access : std::uint8_t { kRegister, kMemory, kPort };

// One command as it came over the line.
struct Command {
  // False: the text makes no sense or names a place that does not exist. Only `inet` counts then.
  bool valid = false;
  // 1 and up: the instrument that is meant, which need not be there. 0: the command names none.
  int inet = 0;
  Access access = Access::kRegister;
  bool write = false;
  // Register number 0..319, memory address 0..65535 or port 0..127.
  int address = 0;
  std::uint16_t word = 0;  // only of a write
};

// Judge one complete command text: a read with its ending character, a write without its
// carriage return.
[[nodiscard]] Command ParseDirect(std::string_view text);
[[nodiscard]] Command ParsePlugin(std::string_view text);

// Four upper-case hexadecimal digits (two for a port) and a carriage return.
[[nodiscard]] std::string ValueReply(Access access, std::uint16_t word);

// Collects the bytes of one command after the other. A command ends with its reading character
// or a carriage return; whatever stood before belongs to it, so noise spoils the command that
// follows it, as it does in the instrument.
class TelegramReader {
 public:
  explicit TelegramReader(LineMode mode) : mode_(mode) {}

  // Takes one byte; a command is returned when the byte ends one. An ESC clears what came so far.
  [[nodiscard]] std::optional<Command> Take(char byte);
  void Clear();

 private:
  [[nodiscard]] bool EndsCommand(char byte) const;

  LineMode mode_;
  std::string text_;
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_TELEGRAM_H_
