#ifndef TAVREL_LINK_REPLY_H_
#define TAVREL_LINK_REPLY_H_

#include <optional>
#include <string>
#include <string_view>

#include "link/result.h"

// What the characters received since a command say. Pure functions that know no port and no
// clock; any bytes whatever are judged.
namespace tavrel {

// A judged value reply. `ReplyText` is what came before the carriage return, if one came.
struct ValueVerdict {
  LinkResult Result = LinkResult::kNone;
  std::string ReplyText;
};

// How many digits a value has by what was read. A reply that has lost some of its characters may
// still look like a value, and a false one: what always has the same number of digits is not
// taken with fewer.
enum class ValueDigits {
  kFour,       // a register
  kTwo,        // a port of the processor
  kTwoOrFour,  // memory: a byte or a word
};

// The digits 0..9, A..F in that number and a carriage return are good. Empty: nothing that can
// be judged has come yet. Conditions in the order in which they decide:
//  - a carriage return; if fewer than 6 characters came in all and the right number of them
//    stands before it, the digits decide between good and kNotHex, otherwise kLength (a late
//    reply of an older exchange makes the buffer too long, and both are refused);
//  - ESC or "?": kRejected.
[[nodiscard]] std::optional<ValueVerdict> JudgeValue(std::string_view rx_buffer,
                                                     ValueDigits value_digits);

// A "." anywhere is good; else a "?" or ESC is kRejected. Empty: nothing yet.
[[nodiscard]] std::optional<LinkResult> JudgeAck(std::string_view rx_buffer);

}  // namespace tavrel

#endif  // TAVREL_LINK_REPLY_H_
