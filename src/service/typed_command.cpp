#include "service/typed_command.h"

#include <algorithm>
#include <cstddef>

#include "base/text.h"
#include "link/registers.h"

namespace tavrel {
namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";
constexpr int kTooLarge = 1 << 16;
constexpr std::string_view kOfBuffers = "XRS";
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
  std::string_view value;  // of a write
  bool is_read = false;
};

// "...?" or "...=value" CR.
std::optional<Access> AccessIn(std::string_view text) {
  const char end = TakeLast(text);
  if (end == '?') {
    return Access{text, "", true};
  }
  if (end != '\r') {
    return std::nullopt;
  }
  const std::size_t mark = text.rfind('=');
  return mark == std::string_view::npos
             ? std::nullopt
             : std::optional(Access{text.substr(0, mark), text.substr(mark + 1), false});
}

// One of the registers of an instrument.
struct Place {
  char letter = 0;
  int inet = 1;
  int index = 0;
};

// "n2p1F": number of the instrument less 1, bank, address in it.
std::optional<Place> PlugInPlace(std::string_view place, std::string_view letters) {
  const std::string_view address = TakeDigits(place);
  const char bank = TakeLast(place);
  const std::string_view number = TakeDigits(place);
  if (TakeLast(place) != 'N' || (bank != 'V' && bank != 'P')) {
    return std::nullopt;
  }
  for (const char& letter : letters) {
    const RegisterPlace first = RegisterPlaceOf(kTypeSel, std::string_view(&letter, 1), 0);
    const int index = NumberOf(address) - first.Address;
    if (first.Bank == bank && index >= 0 && index < kRegistersPerLetter) {
      return Place{letter, NumberOf(number) + 1, index};
    }
  }
  return std::nullopt;
}

// "X2F": letter, number of the instrument less 1, index.
std::optional<Place> DirectPlace(std::string_view place, std::string_view letters) {
  const std::string_view digits = TakeDigits(place);
  const char letter = TakeLast(place);
  if (digits.empty() || letters.find(letter) == std::string_view::npos) {
    return std::nullopt;
  }
  const std::string_view number = digits.substr(0, digits.size() - 1);
  return Place{letter, NumberOf(number) + 1, NumberOf(digits.substr(digits.size() - 1))};
}

std::optional<Place> PlaceIn(std::string_view place, std::string_view letters) {
  const auto plug_in = PlugInPlace(place, letters);
  return plug_in ? plug_in : DirectPlace(place, letters);
}

}  // namespace

std::optional<BufferCommand> BufferCommandIn(std::string_view text) {
  const std::string upper = UpperCase(text);
  const std::optional<Access> access = AccessIn(upper);
  const auto place = access ? PlaceIn(access->place, kOfBuffers) : std::nullopt;
  const bool reads_x = place && place->letter == *reg::kOldestValue;
  if (!place || reads_x != access->is_read) {
    return std::nullopt;
  }
  return BufferCommand{place->letter, place->inet, place->index, access->is_read};
}

// Digits that an instrument does not take for a value make no word of it.
std::optional<RegisterWrite> RegisterWriteIn(std::string_view text) {
  const std::string upper = UpperCase(text);
  const std::optional<Access> access = AccessIn(upper);
  const auto place =
      access && !access->is_read ? PlaceIn(access->place, kRegisterLetters) : std::nullopt;
  const bool is_word = place &&
                       access->value.find_first_not_of(kDigits) == std::string_view::npos &&
                       NumberOf(access->value) < kTooLarge;
  if (!is_word) {
    return std::nullopt;
  }
  const auto word = static_cast<std::int16_t>(static_cast<std::uint16_t>(NumberOf(access->value)));
  return RegisterWrite{place->letter, place->inet, place->index, word};
}

}  // namespace tavrel
