#include "instrument/telegram.h"

#include <array>
#include <cstdio>
#include <utility>

#include "instrument/registers.h"

namespace instrument {
namespace {

constexpr char kCr = '\r';
constexpr char kEsc = '\x1B';
constexpr std::size_t kLongestWord = 4;  // hexadecimal digits
// No command is longer than "n5vFF=FFFF"; what is longer is spoilt and need not be kept.
constexpr std::size_t kLongestCommand = 16;

// Only upper-case digits are digits here: lower-case letters are bank letters on a plug-in line.
std::optional<int> HexDigit(char c) {
  if (c >= '0' && c <= '9') {
    return c - '0';
  }
  if (c >= 'A' && c <= 'F') {
    return c - 'A' + 10;
  }
  return std::nullopt;
}

std::optional<int> HexNumber(std::string_view text) {
  if (text.empty() || text.size() > kLongestWord) {
    return std::nullopt;
  }
  int number = 0;
  for (const char c : text) {
    const auto digit = HexDigit(c);
    if (!digit) {
      return std::nullopt;
    }
    number = number * 16 + *digit;
  }
  return number;
}

// Splits "address, `read_mark`" or "address, `write_mark`, value" and completes `command`.
Command WithAddressAndValue(Command command, std::string_view text, char read_mark,
                            char write_mark) {
  const auto mark = text.find_first_of(std::string{read_mark, write_mark});
  if (mark == std::string_view::npos) {
    return command;
  }
  const auto address = HexNumber(text.substr(0, mark));
  const auto rest = text.substr(mark + 1);
  command.write = text[mark] == write_mark;
  const auto word = command.write ? HexNumber(rest) : std::optional<int>(0);
  if (!address || !word || (!command.write && !rest.empty())) {
    return command;
  }
  command.address = *address;
  command.word = static_cast<std::uint16_t>(*word);
  command.valid = true;
  return command;
}

Command LimitedTo(Command command, int size) {
  command.valid = command.valid && command.address < size;
  return command;
}

Command ParseDirectRegister(std::string_view text) {
  Command command;
  const auto unit = text.size() > 1 ? HexDigit(text[1]) : std::nullopt;
  if (!unit) {
    return command;
  }
  command.inet = *unit + 1;
  command = LimitedTo(WithAddressAndValue(command, text.substr(2), '?', '='), kGroupSize);
  // The index is one digit on this line; a leading zero would be a second one.
  const bool one_digit = text.size() > 3 && !HexDigit(text[3]);
  command.valid = command.valid && one_digit;
  command.address = RegisterNumber(text[0], command.address);
  return command;
}

Command ParseDirectMemory(std::string_view text) {
  Command command;
  command.access = Access::kMemory;
  return LimitedTo(WithAddressAndValue(command, text, '<', '>'), kMemorySize);
}

Command ParseDirectPort(std::string_view text) {
  Command command;
  command.access = Access::kPort;
  return LimitedTo(WithAddressAndValue(command, text, '@', ':'), kPortCount);
}

// `text` begins behind the bank letter.
Command ParseBank(Command command, char bank, std::string_view text) {
  command.access = bank == 'm' ? Access::kMemory : bank == 'o' ? Access::kPort : Access::kRegister;
  command = WithAddressAndValue(command, text, '?', '=');
  switch (bank) {
    case 'v':
      return LimitedTo(command, kBankVSize);
    case 'p':
      command = LimitedTo(command, kBankPSize);
      command.address += kBankVSize;
      return command;
    case 'm':
      return LimitedTo(command, kMemorySize);
    case 'o':
      return LimitedTo(command, kPortCount);
    default:
      command.valid = false;
      return command;
  }
}

}  // namespace

Command ParseDirect(std::string_view text) {
  if (text.empty()) {
    return {};
  }
  if (text[0] >= 'G' && text[0] <= 'Z') {
    return ParseDirectRegister(text);
  }
  return text.find_first_of("@:") == std::string_view::npos ? ParseDirectMemory(text)
                                                            : ParseDirectPort(text);
}

Command ParsePlugin(std::string_view text) {
  Command command;
  if (text.size() < 2 || text[0] != 'n') {
    return command;
  }
  std::size_t bank = 1;
  command.inet = 1;
  if (text[1] >= '0' && text[1] <= '9') {
    // The first instrument has no digit at all, so a 0 is nobody's number.
    command.inet = text[1] == '0' ? 0 : text[1] - '0' + 1;
    bank = 2;
  }
  if (command.inet == 0 || bank >= text.size()) {
    return command;
  }
  return ParseBank(command, text[bank], text.substr(bank + 1));
}

std::string ValueReply(Access access, std::uint16_t word) {
  std::array<char, 8> text{};
  if (access == Access::kPort) {
    std::snprintf(text.data(), text.size(), "%02X\r", word & 0xFFU);
  } else {
    std::snprintf(text.data(), text.size(), "%04X\r", static_cast<unsigned>(word));
  }
  return text.data();
}

void TelegramReader::Clear() {
  text_.clear();
}

bool TelegramReader::EndsCommand(char byte) const {
  if (byte == '?' || byte == kCr) {
    return true;
  }
  return mode_ == LineMode::kDirect && (byte == '<' || byte == '@');
}

std::optional<Command> TelegramReader::Take(char byte) {
  if (byte == kEsc) {
    Clear();
    return std::nullopt;
  }
  if (byte == kCr && text_.empty()) {
    return std::nullopt;
  }
  if (byte != kCr && text_.size() <= kLongestCommand) {
    text_ += byte;
  }
  if (!EndsCommand(byte)) {
    return std::nullopt;
  }
  const std::string text = std::exchange(text_, {});
  if (text.size() > kLongestCommand) {
    return Command{};
  }
  return mode_ == LineMode::kDirect ? ParseDirect(text) : ParsePlugin(text);
}

}  // namespace instrument
