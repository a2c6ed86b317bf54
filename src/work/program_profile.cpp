#include "work/program_profile.h"

#include <algorithm>
#include <cmath>
#include <optional>

#include "base/units.h"
#include "link/registers.h"

namespace tavrel {
namespace {

constexpr double kIncrementsPerDegree = 100;  // a second

// Where a profile has come to; no level: nobody knows the temperature.
struct Progress {
  double minutes = 0;
  std::optional<double> level;
};

void AddRamp(const ProgramStep& step, double aim, Progress& at, std::vector<ProfilePiece>& pieces) {
  const double end = at.minutes + step.Time;
  if (!at.level) {
    pieces.push_back({at.minutes, aim, end, aim, true});
    at = {end, aim};
    return;
  }
  const double rate =
      std::max<double>(step.Increment, 0) / kIncrementsPerDegree * kSecondsPerMinute;
  const double way = aim - *at.level;
  const double needed = rate > 0 ? std::abs(way) / rate : 0;
  const bool is_reached = way == 0 || (rate > 0 && needed <= step.Time);
  const double reached = is_reached ? aim : *at.level + std::copysign(rate * step.Time, way);
  const double turn = is_reached ? at.minutes + needed : end;
  if (turn > at.minutes) {
    pieces.push_back({at.minutes, *at.level, turn, reached});
  }
  if (turn < end) {
    pieces.push_back({turn, reached, end, reached});
  }
  at = {end, reached};
}

void AddHold(const ProgramStep& step, double aim, Progress& at, std::vector<ProfilePiece>& pieces) {
  if (at.level && *at.level != aim) {
    pieces.push_back({at.minutes, *at.level, at.minutes, aim});
  }
  pieces.push_back({at.minutes, aim, at.minutes + step.Time, aim});
  at = {at.minutes + step.Time, aim};
}

}  // namespace

std::vector<ProfilePiece> ProgramProfile(const ProgramRows& rows) {
  std::vector<ProfilePiece> pieces;
  Progress at;
  for (const ProgramStep& step : rows) {
    if (step.Status < 0 || step.Time < 1 || step.Setpoint < 1) {
      continue;
    }
    const double aim = step.Setpoint / kStepsPerDegree;
    if (step.Status == controller::kOff) {
      at = {at.minutes + step.Time, std::nullopt};
    } else if (step.Status >= controller::kDynamic) {
      AddRamp(step, aim, at, pieces);
    } else {
      AddHold(step, aim, at, pieces);
    }
  }
  return pieces;
}

}  // namespace tavrel
