#include "files/column_check.h"

#include <utility>

namespace tavrel {

void ColumnCheck::Begin(int base, std::vector<int> doubted) {
  *this = ColumnCheck();
  base_ = base;
  doubted_ = std::move(doubted);
  if (doubted_.empty()) {
    GiveUp();
    return;
  }
  state_ = State::kRunning;
}

int ColumnCheck::NextInput(std::chrono::nanoseconds now) const {
  if (state_ != State::kRunning || now < not_before_) {
    return 0;
  }
  return step_ == Step::kInput ? doubted_[place_] : base_;
}

void ColumnCheck::Take(std::int16_t count, std::chrono::nanoseconds now) {
  switch (step_) {
    case Step::kBaseBefore:
      base_count_ = count;
      step_ = Step::kInput;
      return;
    case Step::kInput:
      input_count_ = count;
      step_ = Step::kBaseAfter;
      return;
    case Step::kBaseAfter:
      TakeBaseAfter(count, now);
      return;
  }
}

// The base's last reading serves the next input as its first one.
void ColumnCheck::TakeBaseAfter(std::int16_t count, std::chrono::nanoseconds now) {
  const bool is_steady = count == base_count_;
  base_count_ = count;
  step_ = Step::kInput;
  if (!is_steady) {
    return;
  }
  surplus_[doubted_[place_]] = input_count_ - count;
  ++place_;
  if (place_ == doubted_.size()) {
    EndRound(now);
  }
}

void ColumnCheck::EndRound(std::chrono::nanoseconds now) {
  agrees_ = rounds_ > 0 && surplus_ == last_round_;
  ++rounds_;
  if (agrees_ || rounds_ == kMostRounds) {
    state_ = State::kDone;
    return;
  }
  last_round_ = surplus_;
  place_ = 0;
  step_ = Step::kBaseBefore;
  not_before_ = now + kBetweenRounds;
}

int ColumnCheck::Surplus(int input) const {
  const bool is_input = input >= 1 && input <= kInputs;
  return is_input ? surplus_[input] : 0;
}

}  // namespace tavrel
