#include "setup/exchange_pass.h"

#include <algorithm>
#include <utility>

#include "link/register_access.h"

namespace tavrel {

void ExchangePass::Begin(std::vector<Item> items, const Patience& patience) {
  items_ = std::move(items);
  next_ = 0;
  patience_ = patience;
  tries_ = 0;
  failures_ = 0;
}

void ExchangePass::DropRow(int row) {
  const auto rest = items_.begin() + static_cast<std::ptrdiff_t>(std::min(next_, items_.size()));
  items_.erase(
      std::remove_if(rest, items_.end(), [row](const Item& item) { return item.at.row == row; }),
      items_.end());
}

std::optional<RegisterOfRow> ExchangePass::InDoubt() const {
  return tries_ > 0 && !IsOver() ? std::optional(items_.at(next_).at) : std::nullopt;
}

std::optional<std::int16_t> ExchangePass::Exchange(Link& link, int inet, const Item& item) const {
  const Register place{inet, item.at.letter, item.at.row};
  if (!item.word) {
    return Read(link, place).Word();
  }
  return IsGood(Write(link, place, *item.word)) ? item.word : std::nullopt;
}

void ExchangePass::Finish(std::optional<std::int16_t> word, const Take& take) {
  const RegisterOfRow at = items_.at(next_).at;
  ++next_;
  tries_ = 0;
  take(at, word);
}

bool ExchangePass::Step(Link& link, int inet, const StepTime& time, const Take& take) {
  while (!IsOver()) {
    if (failures_ >= patience_.most_failures) {
      Finish(std::nullopt, take);
      continue;
    }
    if (!time.AllowsExchange()) {
      return false;
    }
    if (const auto word = Exchange(link, inet, items_.at(next_))) {
      failures_ = 0;
      Finish(word, take);
      continue;
    }
    ++failures_;
    if (++tries_ >= patience_.tries) {
      Finish(std::nullopt, take);
    }
    if (failures_ < patience_.most_failures) {
      return IsOver();
    }
  }
  return true;
}

}  // namespace tavrel
