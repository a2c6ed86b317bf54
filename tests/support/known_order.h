#ifndef TAVREL_TESTS_SUPPORT_KNOWN_ORDER_H_
#define TAVREL_TESTS_SUPPORT_KNOWN_ORDER_H_

#include "state/column_memory.h"

namespace tavrel {

// An order of sampling, all inputs together with `base`: nothing is to be learned.
inline SamplingOrder KnownOrder(int base) {
  SamplingOrder order;
  order.Base = base;
  order.IntervalLow = order.IntervalHigh = 10;
  return order;
}

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_KNOWN_ORDER_H_
