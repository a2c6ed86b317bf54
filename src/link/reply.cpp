#include "link/reply.h"

#include <algorithm>

#include "link/frame.h"

namespace tavrel {
namespace {

constexpr std::size_t kTooLong = 6;  // four digits and a carriage return are 5 characters

bool IsReplyDigit(char character) {
  return (character >= '0' && character <= '9') || (character >= 'A' && character <= 'F');
}

bool HasRightNumber(std::string_view digits, ValueDigits value_digits) {
  const bool may_be_four = value_digits != ValueDigits::kTwo;
  const bool may_be_two = value_digits != ValueDigits::kFour;
  return (digits.size() == 4 && may_be_four) || (digits.size() == 2 && may_be_two);
}

LinkResult JudgeLine(std::string_view rx_buffer, std::string_view digits,
                     ValueDigits value_digits) {
  if (rx_buffer.size() >= kTooLong || !HasRightNumber(digits, value_digits)) {
    return LinkResult::kLength;
  }
  return std::all_of(digits.begin(), digits.end(), IsReplyDigit) ? LinkResult::kGood
                                                                 : LinkResult::kNotHex;
}

bool Holds(std::string_view text, char character) {
  return text.find(character) != std::string_view::npos;
}

bool HoldsRejection(std::string_view rx_buffer) {
  return Holds(rx_buffer, kEscape) || Holds(rx_buffer, '?');
}

}  // namespace

std::optional<ValueVerdict> JudgeValue(std::string_view rx_buffer, ValueDigits value_digits) {
  const std::size_t end = rx_buffer.find(kCarriageReturn);
  if (end != std::string_view::npos) {
    const std::string_view digits = rx_buffer.substr(0, end);
    return ValueVerdict{JudgeLine(rx_buffer, digits, value_digits), std::string(digits)};
  }
  if (HoldsRejection(rx_buffer)) {
    return ValueVerdict{LinkResult::kRejected, {}};
  }
  return std::nullopt;
}

std::optional<LinkResult> JudgeAck(std::string_view rx_buffer) {
  if (Holds(rx_buffer, '.')) {
    return LinkResult::kGood;
  }
  if (HoldsRejection(rx_buffer)) {
    return LinkResult::kRejected;
  }
  return std::nullopt;
}

}  // namespace tavrel
