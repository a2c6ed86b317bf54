#include "instrument/sampler.h"

#include <algorithm>
#include <numeric>
#include <random>

namespace instrument {
namespace {

using Time = Sampler::Time;

constexpr int kMeasuringInputs = kInputCount - 1;

// The measuring inputs in the order in which they are sampled.
std::array<int, kMeasuringInputs> InputsInOrder(SamplingOrder order, std::uint64_t seed) {
  std::array<int, kMeasuringInputs> inputs{};
  std::iota(inputs.begin(), inputs.end(), 1);
  if (order == SamplingOrder::kDescending) {
    std::reverse(inputs.begin(), inputs.end());
  } else if (order == SamplingOrder::kRandom) {
    std::shuffle(inputs.begin(), inputs.end(), std::mt19937_64(seed));
  }
  return inputs;
}

// The next whole multiple of `interval` that is not below `time`.
Time MultipleFrom(Time time, Time interval) {
  return (time + interval - Time(1)) / interval * interval;
}

}  // namespace

Time WidthOf(const Scan& scan) {
  return scan.order == SamplingOrder::kTogether ? Time(0) : scan.distance * (kMeasuringInputs - 1);
}

bool FitsInto(const Scan& scan, Time interval) {
  return WidthOf(scan) < interval;
}

Sampler::Sampler(Time hold_off, const Scan& scan, std::uint64_t seed)
    : hold_off_(hold_off), scan_(scan) {
  if (scan.order == SamplingOrder::kTogether) {
    return;
  }
  Time offset{0};
  for (const int input : InputsInOrder(scan.order, seed)) {
    series_.at(static_cast<std::size_t>(input)).offset = offset;
    offset += scan.distance;
  }
}

bool Sampler::SetInterval(int input, Time interval, Time now) {
  Series& series = series_.at(static_cast<std::size_t>(input));
  const Time held = std::max(interval, Time(0));
  if (held > Time(0) && !FitsInto(scan_, held)) {
    return false;
  }
  if (held != series.interval) {
    series.interval = held;
    Start(input, now);
  }
  return true;
}

void Sampler::Start(int input, Time now) {
  Series& started = series_.at(static_cast<std::size_t>(input));
  if (started.interval == Time(0)) {
    return;
  }
  const Time first_set =
      MultipleFrom(now + std::max(started.interval, hold_off_), started.interval);
  started.first_set = first_set;
  for (Series& series : series_) {
    const bool is_waiting = series.interval == started.interval && now < series.first_set;
    series.first_set = is_waiting ? first_set : series.first_set;
  }
}

void Sampler::Restart(Time now) {
  for (Series& series : series_) {
    if (series.interval > Time(0)) {
      series.first_set = std::max(series.first_set, MultipleFrom(now + Time(1), series.interval));
    }
  }
}

std::optional<Time> Sampler::NextInstant(int input, Time now) const {
  const Series& series = At(input);
  if (series.interval == Time(0)) {
    return std::nullopt;
  }
  const Time next_set =
      MultipleFrom(std::max(now - series.offset + Time(1), Time(0)), series.interval);
  return std::max(next_set, series.first_set) + series.offset;
}

}  // namespace instrument
