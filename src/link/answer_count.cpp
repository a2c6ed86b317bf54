#include "link/answer_count.h"

#include <algorithm>

namespace tavrel {
namespace {

std::int64_t SecondOf(std::chrono::nanoseconds time) {
  return std::chrono::duration_cast<std::chrono::seconds>(time).count();
}

}  // namespace

void AnswerCount::Note(std::chrono::nanoseconds now) {
  const std::int64_t second = SecondOf(now);
  for (std::int64_t passed = std::max(last_ + 1, second - kSeconds + 1); passed <= second;
       ++passed) {
    counts_.at(PlaceOf(passed)) = 0;
  }
  last_ = second;
  ++counts_.at(PlaceOf(second));
}

int AnswerCount::InLastMinute(std::chrono::nanoseconds now) const {
  int sum = 0;
  const std::int64_t first = std::max<std::int64_t>(SecondOf(now) - kSeconds + 1, 0);
  for (std::int64_t second = first; second <= last_; ++second) {
    sum += counts_.at(PlaceOf(second));
  }
  return sum;
}

}  // namespace tavrel
