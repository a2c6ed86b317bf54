#include "setup/reading_collector.h"

#include "link/registers.h"
#include "state/run_state.h"

namespace tavrel {
namespace {

constexpr std::chrono::seconds kCount{1};
constexpr int kCountsPerReading = 10;
// Two rows in turn without an answer: the instrument is silent, the others are not waited for.
constexpr Patience kPatienceOfReadings{3, 6};

}  // namespace

void ReadingCollector::Reset() {
  Arm();
  failed_ = 0;
  last_word_ = link_.ComValue;
}

void ReadingCollector::Arm() {
  adj_count_ = -1;
  is_reading_ = false;
  pass_.Drop();
}

void ReadingCollector::Begin(std::optional<std::chrono::seconds> lead) {
  adj_count_ = 0;
  if (lead) {
    adj_next_ = clock_.Elapsed() + *lead;
  }
}

bool ReadingCollector::CountIsDue() {
  const std::chrono::nanoseconds now = clock_.Elapsed();
  if (now <= adj_next_) {
    return false;
  }
  adj_next_ = now + kCount;
  ++adj_count_;
  return true;
}

bool ReadingCollector::Step(const std::vector<int>& rows, const StepTime& time, const Take& take) {
  if (is_reading_) {
    return StepReading(time, take);
  }
  if (!CountIsDue()) {
    return false;
  }
  if (adj_count_ % kCountsPerReading != 0) {
    return true;
  }
  events_.Beep();
  BeginReading(rows);
  return StepReading(time, take);
}

void ReadingCollector::BeginReading(const std::vector<int>& rows) {
  std::vector<ExchangePass::Item> items;
  items.reserve(rows.size());
  for (const int row : rows) {
    items.push_back({{reg::kPresentValue, row}});
  }
  pass_.Begin(std::move(items), kPatienceOfReadings);
  is_reading_ = true;
}

bool ReadingCollector::StepReading(const StepTime& time, const Take& take) {
  is_reading_ = !pass_.Step(link_, inet_, time,
                            [&](const RegisterOfRow& at, std::optional<std::int16_t> word) {
                              const bool failed = !word || *word == kNoData;
                              last_word_ = failed ? last_word_ : *word;
                              failed_ += failed ? 1 : 0;
                              take(at.row, {last_word_, failed});
                            });
  return !is_reading_;
}

}  // namespace tavrel
