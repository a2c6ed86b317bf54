#include "graph/axis_ticks.h"

#include <array>
#include <cmath>
#include <cstdint>
#include <span>

#include "base/number.h"

namespace tavrel {
namespace {

struct StepRule {
  double from;  // span
  double step;
};

constexpr std::array<StepRule, 14> kStepsY = {{{30000, 10000},
                                               {12000, 5000},
                                               {6000, 2000},
                                               {3000, 1000},
                                               {1200, 500},
                                               {600, 200},
                                               {300, 100},
                                               {120, 50},
                                               {60, 20},
                                               {30, 10},
                                               {12, 5},
                                               {6, 2},
                                               {3, 1},
                                               {1, 0.5}}};
constexpr double kSmallestStepY = 0.1;

constexpr std::array<StepRule, 14> kStepsX = {{{600000, 300000},
                                               {300000, 120000},
                                               {120000, 60000},
                                               {60000, 30000},
                                               {30000, 12000},
                                               {12000, 6000},
                                               {6000, 3000},
                                               {3000, 1200},
                                               {1200, 600},
                                               {600, 300},
                                               {300, 120},
                                               {120, 60},
                                               {60, 20},
                                               {30, 10}}};
constexpr double kSmallestStepX = 5;

constexpr int kWholeHour = 60;           // minutes
constexpr const char* kWhole = "####0";  // masks of the labels
constexpr const char* kTenths = "###0.0";

double StepOf(std::span<const StepRule> rules, double smallest, double span) {
  for (const StepRule& rule : rules) {
    if (span >= rule.from) {
      return rule.step;
    }
  }
  return smallest;
}

}  // namespace

double StepY(double span) {
  return StepOf(kStepsY, kSmallestStepY, span);
}

double StepX(double span) {
  return StepOf(kStepsX, kSmallestStepX, span);
}

std::vector<AxisTick> TimeTicks(const ViewFrame& view, const TextWidthOf& width_of) {
  std::vector<AxisTick> ticks;
  const double step = StepX(view.XRight - view.XLeft);
  // Counted in whole steps: a sum of steps would stall or drift.
  for (std::int32_t n = IntFloor(view.XLeft / step); n * step <= view.XRight; ++n) {
    const double x = n * step;
    if (view.IsInHours() && IntFloor(x) % kWholeHour > 1) {
      continue;
    }
    AxisTick tick{x, FormatMask(view.IsInHours() ? x / kMinutesOfHour : x, kWhole), 0};
    tick.Width = width_of(tick.Text);
    const double half = tick.Width / 2;
    if (x - half <= view.XLeft || x + half >= view.XRight) {
      tick.Text.clear();
    }
    ticks.push_back(std::move(tick));
  }
  return ticks;
}

std::vector<AxisTick> ValueTicks(const ViewFrame& view, double text_height,
                                 const TextWidthOf& width_of) {
  std::vector<AxisTick> ticks;
  const double step = StepY(view.YTop - view.YBottom);
  for (std::int32_t n = IntFloor(view.YBottom / step); n * step <= view.YTop; ++n) {
    const double y = n * step;
    AxisTick tick{y, "", 0};
    const bool has_room = y < view.YTop - text_height && y > view.YBottom + text_height / 2;
    if (has_room) {
      tick.Text = FormatMask(y, step < 1 ? kTenths : kWhole);
      tick.Width = width_of(tick.Text);
    }
    ticks.push_back(std::move(tick));
  }
  return ticks;
}

std::string AxisUnit(const ViewFrame& view, bool is_reference_axis) {
  if (is_reference_axis) {
    return "°C ";
  }
  return view.IsInHours() ? "h  " : "min";
}

void ReferenceTicks::Add(double x, const std::string& text) {
  if (AxisTickCount >= kMaxAxisTicks) {
    return;
  }
  AxisTickX[AxisTickCount] = x;
  AxisTickText[AxisTickCount] = text;
  ++AxisTickCount;
}

}  // namespace tavrel
