#include "platform/print_queues.h"

namespace tavrel {

bool TakesPages(const PrintQueue& queue) {
  constexpr const char* kStopped = "5";
  constexpr const char* kRejects = "false";
  return queue.IsThere && queue.State != kStopped && queue.Accepts != kRejects;
}

}  // namespace tavrel
