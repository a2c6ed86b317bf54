#include "base/numbered.h"

#include <cstdio>
#include <cstdlib>

namespace tavrel {

void EndOnWrongNumber(long long number, int first, int last) {
  static_cast<void>(
      std::fprintf(stderr, "tavrel: %lld is none of the numbers %d..%d\n", number, first, last));
  std::abort();
}

}  // namespace tavrel
