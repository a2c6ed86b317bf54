#include "platform/print_queues.h"

namespace tavrel {

bool TakesPages(const PrintQueue& queue) {
  constexpr const char* kStopped = "5";
  constexpr const char* kRejects = "false";
  return queue.IsThere && queue.State != kStopped && queue.Accepts != kRejects;
}

bool BeginsInColour(const PrinterInks& inks) {
  return inks.SaysNothing || !inks.KnowsColours || !inks.PrefersGrey;
}

bool GetsColours(const PrinterInks& inks, bool is_colour_chosen) {
  return is_colour_chosen && (inks.SaysNothing || inks.KnowsColours);
}

}  // namespace tavrel
