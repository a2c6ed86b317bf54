#ifndef TAVREL_SETUP_READING_COLLECTOR_H_
#define TAVREL_SETUP_READING_COLLECTOR_H_

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "link/link.h"
#include "platform/clock.h"
#include "platform/events.h"
#include "setup/adjustment_journal.h"
#include "setup/exchange_pass.h"

namespace tavrel {

// Collects readings for an adjustment: counts seconds and reads the present values at each tenth of
// them, ten times in a hundred. Where a reading takes longer than a second the seconds it took are
// not counted.
class ReadingCollector {
 public:
  static constexpr int kCounts = 100;

  // What a reading gave for a row.
  using Take = std::function<void(int row, const AdjustmentReading& reading)>;

  // All outlive this.
  ReadingCollector(Link& link, int inet, Events& events, const Clock& clock)
      : link_(link), inet_(inet), events_(events), clock_(clock) {}

  // A new run: no reading has failed yet.
  void Reset();

  // The next collecting has not begun yet.
  void Arm();
  [[nodiscard]] bool HasBegun() const { return adj_count_ >= 0; }

  // Begins to count; the first count comes later than `lead` from now. Without a lead it is due
  // when it would have been in the collecting before.
  void Begin(std::optional<std::chrono::seconds> lead);

  // Counts if it is time, and reads `rows` at a tenth count. True if a count is over with this
  // step, its reading included. A read that fails is tried twice more; then the word before it is
  // taken.
  bool Step(const std::vector<int>& rows, const StepTime& time, const Take& take);

  [[nodiscard]] int AdjCount() const { return adj_count_; }     // -1: not begun
  [[nodiscard]] int FailedReadings() const { return failed_; }  // of the run

 private:
  [[nodiscard]] bool CountIsDue();
  void BeginReading(const std::vector<int>& rows);
  bool StepReading(const StepTime& time, const Take& take);

  Link& link_;
  int inet_;
  Events& events_;
  const Clock& clock_;
  ExchangePass pass_;
  bool is_reading_ = false;
  int adj_count_ = -1;
  std::chrono::nanoseconds adj_next_{};
  std::int16_t last_word_ = 0;
  int failed_ = 0;
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_READING_COLLECTOR_H_
