#include "service/typed_command.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "base/text.h"
#include "link/registers.h"

namespace tavrel {
namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";
constexpr int kTooLarge = 1 << 16;
constexpr int kTypeSel = 4;  // of the instruments in use

// A number in hexadecimal digits; none of them is 0. Held where it is larger than any place.
int NumberOf(std::string_view digits) {
  int number = 0;
  for (const char digit : digits) {
    number = std::min(number * 16 + static_cast<int>(kDigits.find(digit)), kTooLarge);
  }
  return number;
}

// The digits at the end of the text, which lose them.
std::string_view TakeDigits(std::string_view& text) {
  const std::size_t last = text.find_last_not_of(kDigits);
  const std::size_t begin = last == std::string_view::npos ? 0 : last + 1;
  const std::string_view digits = text.substr(begin);
  text = text.substr(0, begin);
  return digits;
}

char TakeLast(std::string_view& text) {
  const char last = text.empty() ? '\0' : text.back();
  text.remove_suffix(text.empty() ? 0 : 1);
  return last;
}

struct Access {
  std::string_view place;  // all before the mark of a read or a write
  bool is_read = false;
};

// "...?" or "...=value" CR.
std::optional<Access> AccessIn(std::string_view text) {
  const char end = TakeLast(text);
  if (end == '?') {
    return Access{text, true};
  }
  if (end != '\r') {
    return std::nullopt;
  }
  const std::size_t mark = text.rfind('=');
  return mark == std::string_view::npos ? std::nullopt
                                        : std::optional(Access{text.substr(0, mark), false});
}

// "n2p1F": number of the instrument less 1, bank, address in it.
std::optional<BufferCommand> PlugInPlace(std::string_view place) {
  const std::string_view address = TakeDigits(place);
  const char bank = TakeLast(place);
  const std::string_view number = TakeDigits(place);
  if (TakeLast(place) != 'N' || (bank != 'V' && bank != 'P')) {
    return std::nullopt;
  }
  for (const char* letter : {reg::kOldestValue, reg::kBuffered, reg::kSampling}) {
    const RegisterPlace first = RegisterPlaceOf(kTypeSel, letter, 0);
    const int input = NumberOf(address) - first.Address;
    if (first.Bank == bank && input >= 0 && input < kRegistersPerLetter) {
      return BufferCommand{*letter, NumberOf(number) + 1, input};
    }
  }
  return std::nullopt;
}

// "X2F": letter, number of the instrument less 1, input.
std::optional<BufferCommand> DirectPlace(std::string_view place) {
  const std::string_view digits = TakeDigits(place);
  const char letter = TakeLast(place);
  if (digits.empty() || std::string_view("XRS").find(letter) == std::string_view::npos) {
    return std::nullopt;
  }
  const std::string_view number = digits.substr(0, digits.size() - 1);
  return BufferCommand{letter, NumberOf(number) + 1, NumberOf(digits.substr(digits.size() - 1))};
}

}  // namespace

std::optional<BufferCommand> BufferCommandIn(std::string_view text) {
  const std::string upper = UpperCase(text);
  const std::optional<Access> access = AccessIn(upper);
  if (!access) {
    return std::nullopt;
  }
  std::optional<BufferCommand> command = PlugInPlace(access->place);
  command = command ? command : DirectPlace(access->place);
  const bool reads_x = command && command->Letter == *reg::kOldestValue;
  if (!command || reads_x != access->is_read) {
    return std::nullopt;
  }
  command->IsRead = access->is_read;
  return command;
}

}  // namespace tavrel
