#ifndef TAVREL_LINK_ANSWER_COUNT_H_
#define TAVREL_LINK_ANSWER_COUNT_H_

#include <array>
#include <chrono>
#include <cstdint>

namespace tavrel {

// How many exchanges were answered in the last minute: one number for each of its seconds, however
// many exchanges there are. Times are those of Clock::Elapsed() and never go back.
class AnswerCount {
 public:
  void Note(std::chrono::nanoseconds now);

  // In the second of `now` and the 59 before it.
  [[nodiscard]] int InLastMinute(std::chrono::nanoseconds now) const;

 private:
  static constexpr std::int64_t kSeconds = 60;

  [[nodiscard]] static std::size_t PlaceOf(std::int64_t second) {
    return static_cast<std::size_t>(second % kSeconds);
  }

  std::array<int, kSeconds> counts_{};  // by the second, modulo 60
  std::int64_t last_ = 0;               // the second that was counted last
};

}  // namespace tavrel

#endif  // TAVREL_LINK_ANSWER_COUNT_H_
