#ifndef TAVREL_SETUP_EXCHANGE_PASS_H_
#define TAVREL_SETUP_EXCHANGE_PASS_H_

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "link/link.h"
#include "platform/clock.h"

namespace tavrel {

// The time that one step of a dialog may hold the window.
class StepTime {
 public:
  static constexpr std::chrono::milliseconds kLimit{500};
  static constexpr std::chrono::milliseconds kLongestExchange{120};

  // Begins now. Both outlive this.
  StepTime(const Link& link, const Clock& clock)
      : link_(link), clock_(clock), begin_(clock.Elapsed()) {}

  // True if one more exchange can begin now and ends within that time, answered or not.
  [[nodiscard]] bool AllowsExchange() const {
    return link_.IsSettled() && clock_.Elapsed() - begin_ + kLongestExchange <= kLimit;
  }

 private:
  const Link& link_;
  const Clock& clock_;
  std::chrono::nanoseconds begin_;
};

// A register of the instrument that the dialog is open for.
struct RegisterOfRow {
  const char* letter = "";
  int row = 0;  // 0..15
};

// How often an exchange is tried, and when the instrument counts as silent.
struct Patience {
  int tries = 1;          // of one exchange, the first included
  int most_failures = 1;  // in a row; behind them nothing of the pass is tried any more
};

// Registers that are read or written one after another over several steps. An exchange that fails
// ends its step; it is tried again in the next one, and the pass goes on behind it when its tries
// are used up.
class ExchangePass {
 public:
  struct Item {
    RegisterOfRow at;
    std::optional<std::int16_t> word{};  // to be written; empty: the register is read
  };

  // How an item ended: the word that was read or written, or nothing.
  using Take = std::function<void(const RegisterOfRow& at, std::optional<std::int16_t> word)>;

  void Begin(std::vector<Item> items, const Patience& patience);

  // Forgets the registers that are left.
  void Drop() { items_.clear(), next_ = 0; }

  // Leaves out the rest of that row. Called from within `take`, it begins behind the present item.
  void DropRow(int row);

  // A register that was tried and is still to be repeated: nobody knows whether the instrument has
  // taken the write.
  [[nodiscard]] std::optional<RegisterOfRow> InDoubt() const;

  [[nodiscard]] bool IsOver() const { return next_ >= items_.size(); }

  // Makes as many exchanges as the time of a step allows. True once no register is left.
  bool Step(Link& link, int inet, const StepTime& time, const Take& take);

 private:
  [[nodiscard]] std::optional<std::int16_t> Exchange(Link& link, int inet, const Item& item) const;
  void Finish(std::optional<std::int16_t> word, const Take& take);

  std::vector<Item> items_;
  std::size_t next_ = 0;
  Patience patience_;
  int tries_ = 0;     // of the next one that have failed
  int failures_ = 0;  // in a row
};

}  // namespace tavrel

#endif  // TAVREL_SETUP_EXCHANGE_PASS_H_
