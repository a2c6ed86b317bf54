#ifndef TAVREL_LINK_RESULT_H_
#define TAVREL_LINK_RESULT_H_

namespace tavrel {

// How an exchange ended. Callers treat everything but kGood as a missing answer; only the
// communication test tells the faults apart.
enum class LinkResult : int {
  kNone = 0,       // no exchange with this address yet
  kGood = 1,       // the instrument answered as it should
  kTimeOut = 3,    // neither a terminator nor a rejection within the wait
  kPortError = 4,  // the port reported an error, or is gone
  kNotHex = 5,     // a digit of the reply lies outside 0..9, A..F
  kLength = 6,     // the reply is too long or too short, or an older one came with it
  kRejected = 7,   // the instrument refused the command by "?" or ESC
};

[[nodiscard]] constexpr bool IsGood(LinkResult result) {
  return result == LinkResult::kGood;
}

}  // namespace tavrel

#endif  // TAVREL_LINK_RESULT_H_
