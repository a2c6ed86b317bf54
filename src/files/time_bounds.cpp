#include "files/time_bounds.h"

#include <algorithm>
#include <limits>

namespace tavrel {

namespace {
constexpr double kUnknown = std::numeric_limits<double>::infinity();
}

void TimeBounds::Clear() {
  most_.fill(kUnknown);
  for (int node = 0; node < kNodes; ++node) {
    most_[Place(node, node)] = 0;
  }
}

bool TimeBounds::Tighten(int i, int j, double bound) {
  if (bound + Most(j, i) < 0) {
    return false;
  }
  if (bound >= Most(i, j)) {
    return true;
  }
  for (int from = 0; from < kNodes; ++from) {
    for (int to = 0; to < kNodes; ++to) {
      const double through = Most(from, i) + bound + Most(j, to);
      most_[Place(from, to)] = std::min(Most(from, to), through);
    }
  }
  return true;
}

void TimeBounds::Free(int node) {
  for (int other = 0; other < kNodes; ++other) {
    if (other != node) {
      most_[Place(node, other)] = kUnknown;
      most_[Place(other, node)] = kUnknown;
    }
  }
}

void TimeBounds::Loosen(double by) {
  for (int node = 1; node < kNodes; ++node) {
    most_[Place(node, 0)] += by;
    most_[Place(0, node)] += by;
  }
}

}  // namespace tavrel
