#ifndef TAVREL_TESTS_SUPPORT_LINE_FAILURE_H_
#define TAVREL_TESTS_SUPPORT_LINE_FAILURE_H_

#include <array>
#include <chrono>
#include <string>
#include <vector>

#include "tests/support/fake_port.h"

namespace tavrel {

// How an exchange fails on a line.
enum class LineFailure {
  kRefusal,      // answered by "?"
  kLostRequest,  // the command does not arrive
  kLostReply,    // it is carried out, and nobody hears of it
  kLateReply,    // it is carried out, and the reply comes after its limit
};

inline constexpr std::array kLineFailures = {LineFailure::kRefusal, LineFailure::kLostRequest,
                                             LineFailure::kLostReply, LineFailure::kLateReply};

inline bool IsCarriedOut(LineFailure failure) {
  return failure == LineFailure::kLostReply || failure == LineFailure::kLateReply;
}

inline const char* NameOf(LineFailure failure) {
  constexpr std::array kNames = {"refusal", "lost_request", "lost_reply", "late_reply"};
  return kNames.at(static_cast<std::size_t>(failure));
}

// What a command is answered at once that fails so; `carry_out` does it and gives the reply.
template <typename CarryOut>
std::string FailedReply(LineFailure failure, FakePort& port, CarryOut carry_out) {
  constexpr std::chrono::milliseconds kLate{130};
  const std::string reply = IsCarriedOut(failure) ? carry_out() : std::string();
  if (failure == LineFailure::kLateReply) {
    port.Arrive(kLate, reply);
  }
  return failure == LineFailure::kRefusal ? "?" : "";
}

// Each of the parameters with each failure.
template <typename Parameter>
std::vector<Parameter> WithEachFailure(const std::vector<Parameter>& parameters) {
  std::vector<Parameter> all;
  for (Parameter each : parameters) {
    for (const LineFailure failure : kLineFailures) {
      each.failure = failure;
      all.push_back(each);
    }
  }
  return all;
}

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_LINE_FAILURE_H_
