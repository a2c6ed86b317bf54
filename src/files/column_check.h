#ifndef TAVREL_FILES_COLUMN_CHECK_H_
#define TAVREL_FILES_COLUMN_CHECK_H_

#include <array>
#include <chrono>
#include <cstdint>
#include <vector>

#include "files/unit_record.h"

namespace tavrel {

// Finds out which inputs of a recording have lost a value on the line.
//
// Every input has a queue of its own in the instrument, and register R counts what waits in it.
// The inputs of a recording are sampled in the same instants, so for all of them
//
//   values that belong to the set in hand and have arrived (0 or 1) + values that wait (R)
//
// is the same number. An input that is one short has handed a value over in a reply that never
// came whole, or has lost its oldest value from a full buffer. The counts are read one exchange
// at a time, each between two equal readings of a base input, so that no sampling instant lies
// between them; and they are read twice some time apart, since an instrument may take a moment
// to sample all its inputs. Only what two rounds say alike counts.
class ColumnCheck {
 public:
  // Time between the two rounds: longer than an instrument needs for one set, and no divisor
  // of a sampling interval.
  static constexpr std::chrono::milliseconds kBetweenRounds{1700};

  // Rounds after which nothing can be said. While they last the slot reads no samples, which
  // must not grow into a loss of its own.
  static constexpr int kMostRounds = 8;

  // Begins anew. `base` and `doubted` are inputs 1..15; with no doubted input nothing is to do.
  void Begin(int base, std::vector<int> doubted);

  // True if it was begun with just these and has not been cleared since.
  [[nodiscard]] bool IsFor(int base, const std::vector<int>& doubted) const {
    return state_ != State::kIdle && base_ == base && doubted_ == doubted;
  }

  // True once two rounds on end agree, or all that are worth trying have passed without that.
  [[nodiscard]] bool IsDone() const { return state_ == State::kDone; }

  // True if the rounds agreed, so that Surplus() means something. Inputs that are not sampled
  // in the same instants never agree, and nothing can be said of them.
  [[nodiscard]] bool HasVerdict() const { return IsDone() && agrees_; }

  // Ends without a verdict: the instrument refuses to count.
  void GiveUp() { state_ = State::kDone; }

  // The input whose count is to be read now; 0 if it is not time yet.
  [[nodiscard]] int NextInput(std::chrono::nanoseconds now) const;

  // The count of NextInput() as register R gave it.
  void Take(std::int16_t count, std::chrono::nanoseconds now);

  // How many more values wait for `input` than for the base input.
  [[nodiscard]] int Surplus(int input) const;

  // How many values waited for the base input at its last reading.
  [[nodiscard]] int BaseCount() const { return base_count_; }

  [[nodiscard]] const std::vector<int>& Doubted() const { return doubted_; }
  [[nodiscard]] int Base() const { return base_; }

 private:
  enum class State { kIdle, kRunning, kDone };
  enum class Step { kBaseBefore, kInput, kBaseAfter };
  using Surpluses = std::array<int, kInputs + 1>;

  void TakeBaseAfter(std::int16_t count, std::chrono::nanoseconds now);
  void EndRound(std::chrono::nanoseconds now);

  State state_ = State::kIdle;
  Step step_ = Step::kBaseBefore;
  int base_ = 0;
  std::vector<int> doubted_;
  std::size_t place_ = 0;  // in doubted_
  int base_count_ = 0;
  int input_count_ = 0;
  Surpluses surplus_{};  // of the round that runs
  Surpluses last_round_{};
  int rounds_ = 0;  // that are over
  bool agrees_ = false;
  std::chrono::nanoseconds not_before_{};
};

}  // namespace tavrel

#endif  // TAVREL_FILES_COLUMN_CHECK_H_
