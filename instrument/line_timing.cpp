#include "instrument/line_timing.h"

#include <algorithm>

namespace instrument {

void IncomingBytes::Add(std::string_view bytes, Moment now, std::chrono::nanoseconds unseen) {
  for (const char byte : bytes) {
    last_ = std::max(last_, now) + char_time_;
    bytes_.push_back({last_, byte, unseen});
  }
}

std::optional<TimedByte> IncomingBytes::Take(Moment now) {
  if (bytes_.empty() || bytes_.front().when > now) {
    return std::nullopt;
  }
  const TimedByte byte = bytes_.front();
  bytes_.pop_front();
  return byte;
}

std::optional<Moment> IncomingBytes::NextDue() const {
  return bytes_.empty() ? std::nullopt : std::optional(bytes_.front().when);
}

void OutgoingBytes::Add(const Reply& reply, Moment asked, std::chrono::nanoseconds unseen) {
  const bool late = reply.delay.count() > 0;
  Moment when = late ? asked + reply.delay : std::max(asked, busy_until_);
  for (std::size_t i = 0; i < reply.bytes.size(); ++i) {
    when += char_time_ + (i > 0 ? reply.pause : std::chrono::milliseconds(0));
    const bool last = i + 1 == reply.bytes.size();
    items_.emplace(when, Item{reply.bytes[i], last ? reply.handed : std::nullopt, asked, unseen});
  }
  if (!late) {
    busy_until_ = when;
  }
}

OutgoingBytes::Due OutgoingBytes::TakeDue(Moment now) {
  Due due;
  while (!items_.empty() && items_.begin()->first <= now) {
    const auto first = items_.begin();
    due.bytes.push_back({first->first, first->second.byte});
    if (first->second.completes) {
      due.handed.push_back(HandedAt(now, first->second));
    }
    items_.erase(first);
  }
  return due;
}

HandedSample OutgoingBytes::HandedAt(Moment now, const Item& item) {
  HandedSample handed = *item.completes;
  if (handed.fate != Fate::kGood) {
    return handed;
  }
  const auto least = now - item.asked;
  if (least > kInTime) {
    handed.fate = Fate::kLate;
  } else if (least + item.unseen > kInTime) {
    handed.fate = Fate::kDoubtful;
  }
  return handed;
}

std::optional<Moment> OutgoingBytes::NextDue() const {
  return items_.empty() ? std::nullopt : std::optional(items_.begin()->first);
}

std::vector<HandedSample> OutgoingBytes::DropAll() {
  std::vector<HandedSample> lost;
  for (const auto& [when, item] : items_) {
    if (item.completes) {
      lost.push_back(*item.completes);
      lost.back().fate = Fate::kLost;
    }
  }
  items_.clear();
  return lost;
}

}  // namespace instrument
