#include "files/pump_order.h"

namespace tavrel {
namespace {

int Below(int slot) {
  return slot > 1 ? slot - 1 : kSlots;
}

}  // namespace

void PumpOrder::TakeReading(int slot, int sets, std::chrono::seconds interval, Time now) {
  Entry& entry = entries_[slot];
  entry.fill.TakeReading(sets, interval, now);
  entry.is_wanted = false;
  entry.failing_since.reset();
}

void PumpOrder::TakeRefusal(int slot) {
  entries_[slot].is_wanted = false;
  entries_[slot].failing_since.reset();
}

void PumpOrder::TakeSet(int slot, Time now) {
  entries_[slot].fill.TakeSet(now);
  turn_ = Below(slot);
}

void PumpOrder::TakeFailure(int slot, Time now) {
  Entry& entry = entries_[slot];
  entry.failing_since = entry.failing_since.value_or(now);
  turn_ = Below(slot);
}

bool PumpOrder::MayTryAgain(int slot, Time now) const {
  const Entry& entry = entries_[slot];
  const bool is_bad_line = entry.failing_since && now - *entry.failing_since < kBadLine;
  return is_bad_line && entry.fill.IsInDanger(now);
}

bool PumpOrder::WantsReading(int slot, Time now) const {
  const Entry& entry = entries_[slot];
  const bool was_away = entry.failing_since && now - *entry.failing_since >= kOutage;
  return entry.is_wanted || was_away;
}

std::vector<int> PumpOrder::First(const BySlot<ReadState>& read_state, Time now) const {
  std::vector<int> wanted;
  std::vector<int> in_danger;
  int slot = turn_;
  for (int count = 1; count <= kSlots; ++count, slot = Below(slot)) {
    if (read_state[slot] != ReadState::kReading) {
      continue;
    }
    if (WantsReading(slot, now)) {
      wanted.push_back(slot);
    } else if (entries_[slot].fill.IsInDanger(now)) {
      in_danger.push_back(slot);
    }
  }
  wanted.insert(wanted.end(), in_danger.begin(), in_danger.end());
  return wanted;
}

}  // namespace tavrel
