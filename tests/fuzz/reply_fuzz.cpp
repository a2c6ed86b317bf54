#include "link/reply.h"

#include "base/number.h"
#include "link/frame.h"
#include "tests/fuzz/fuzz_input.h"

namespace tavrel {
namespace {

bool Holds(std::string_view text, std::string_view any_of) {
  return text.find_first_of(any_of) != std::string_view::npos;
}

bool AreDigits(std::string_view text) {
  return text.find_first_not_of("0123456789ABCDEF") == std::string_view::npos;
}

void CheckGood(std::string_view received, const std::string& digits, ValueDigits value_digits) {
  const bool is_two = digits.size() == 2 && value_digits != ValueDigits::kFour;
  const bool is_four = digits.size() == 4 && value_digits != ValueDigits::kTwo;
  Require(is_two || is_four, "a good value has the digits that it must have");
  Require(AreDigits(digits), "a good value has digits only");
  Require(received.size() <= 5, "what is longer than four digits and their end is no value");
  Require(digits.size() == 4 || ReadHex(digits) >= 0, "two digits are never negative");
}

void CheckValue(std::string_view received, ValueDigits value_digits) {
  const auto verdict = JudgeValue(received, value_digits);
  const std::size_t end = received.find(kCarriageReturn);
  Require(verdict.has_value() == Holds(received, "\r?\x1b"), "a verdict needs an end or a refusal");
  if (!verdict) {
    return;
  }
  const LinkResult result = verdict->Result;
  Require((result == LinkResult::kRejected) == (end == std::string_view::npos),
          "a carriage return decides before a refusal");
  Require(verdict->ReplyText == (end == std::string_view::npos ? "" : received.substr(0, end)),
          "the reply is what stands before the first carriage return");
  if (result == LinkResult::kGood) {
    CheckGood(received, verdict->ReplyText, value_digits);
  }
  if (result == LinkResult::kNotHex) {
    Require(!AreDigits(verdict->ReplyText), "something must be no digit");
  }
}

void CheckAck(std::string_view received) {
  const auto result = JudgeAck(received);
  const bool is_good = Holds(received, ".");
  Require(result.has_value() == (is_good || Holds(received, "?\x1b")),
          "a verdict needs an acknowledge or a refusal");
  Require((result == LinkResult::kGood) == is_good, "a point anywhere is an acknowledge");
}

}  // namespace
}  // namespace tavrel

// The characters of a line as they come, one more at each look. No line holds more at once.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string received = tavrel::TextOf(data, std::min<std::size_t>(size, 64));
  for (std::size_t count = 0; count <= received.size(); ++count) {
    const std::string_view so_far = std::string_view(received).substr(0, count);
    for (const auto digits :
         {tavrel::ValueDigits::kFour, tavrel::ValueDigits::kTwo, tavrel::ValueDigits::kTwoOrFour}) {
      tavrel::CheckValue(so_far, digits);
    }
    tavrel::CheckAck(so_far);
  }
  return 0;
}
