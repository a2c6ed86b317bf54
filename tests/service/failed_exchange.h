#ifndef TAVREL_TESTS_SERVICE_FAILED_EXCHANGE_H_
#define TAVREL_TESTS_SERVICE_FAILED_EXCHANGE_H_

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

#include "tests/support/line_failure.h"

namespace tavrel {

// An exchange of a round that fails, for tests of each in turn.
struct FailedExchange {
  int com_mode = 0;
  int exchange = 0;  // of the round, from 0
  LineFailure failure{};
};

inline std::string NameOfExchange(const testing::TestParamInfo<FailedExchange>& info) {
  return "mode_" + std::to_string(info.param.com_mode) + "_exchange_" +
         std::to_string(info.param.exchange) + "_" + NameOf(info.param.failure);
}

// Each of a round of `exchanges`, with each failure, on each kind of line.
inline std::vector<FailedExchange> EachExchange(std::initializer_list<int> com_modes,
                                                int exchanges) {
  std::vector<FailedExchange> cases;
  for (const int com_mode : com_modes) {
    for (int exchange = 0; exchange < exchanges; ++exchange) {
      cases.push_back({com_mode, exchange, {}});
    }
  }
  return WithEachFailure(cases);
}

}  // namespace tavrel

#endif  // TAVREL_TESTS_SERVICE_FAILED_EXCHANGE_H_
