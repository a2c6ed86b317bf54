#include "files/controller_journal.h"

#include <string_view>

#include "link/registers.h"

namespace tavrel {
namespace {

// A register that each of the controllers 1..4 has, and what the journal calls it.
struct ControllerRegister {
  std::string_view Letter;
  const char* Name;
};

constexpr ControllerRegister kRegisters[] = {
    {reg::kControllerState, "status"},
    {reg::kSetpoint, "setpoint"},
    {reg::kFinalValue, "final value"},
    {reg::kIncrement, "increment"},
    {reg::kLowerLimit, "lower limit"},
    {reg::kUpperLimit, "upper limit"},
    {reg::kProportional, "proportional"},
    {reg::kIntegralTime, "integral time"},
    {reg::kDerivativeTime, "derivative time"},
    {reg::kSetpointFilter, "setpoint filter"},
    {reg::kOutput, "output"},
    {reg::kTestOutput, "test output"},
};

// Null for a register that is none of a controller's.
const char* NameOf(std::string_view letter) {
  for (const ControllerRegister& each : kRegisters) {
    if (each.Letter == letter) {
      return each.Name;
    }
  }
  return nullptr;
}

JsonValue ValueOf(const std::optional<std::int16_t>& word) {
  return word ? JsonValue(int{*word}) : JsonValue();
}

}  // namespace

ControllerJournal::ControllerJournal(RunState& state, Link& link, RecordingFiles& files)
    : state_(state), link_(link), files_(files) {
  link_.Observe([this](const Link::Exchange& exchange) { Take(exchange); });
}

ControllerJournal::~ControllerJournal() {
  link_.Observe({});
}

void ControllerJournal::Take(const Link::Exchange& exchange) {
  const char* const name = NameOf(exchange.letter);
  if (name == nullptr || !IsInet(exchange.inet) || !IsController(exchange.index)) {
    return;
  }
  const auto place = static_cast<std::size_t>(exchange.letter.front() - 'G');
  auto& known = known_[exchange.inet][exchange.index].at(place);
  if (exchange.is_write) {
    Note(exchange, name, known);
  }
  if (IsGood(exchange.result)) {
    known = exchange.word;
  } else if (exchange.is_write) {
    known.reset();
  }
}

void ControllerJournal::CaughtUp(int minutes) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    if (state_.ProgRunning[slot]) {
      files_.Journals().Note(slot, "caught up", {{"minutes", minutes}});
    }
  }
}

void ControllerJournal::Note(const Link::Exchange& exchange, const char* what,
                             const std::optional<std::int16_t>& old_word) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    const UnitRecord& unit = state_.Unit[slot];
    if (unit.UnitInet != exchange.inet || unit.UnitCtrl != exchange.index) {
      continue;
    }
    files_.Journals().Note(slot, "controller",
                           {{"by", actor_},
                            {"what", what},
                            {"old", ValueOf(old_word)},
                            {"new", int{exchange.word}},
                            {"acknowledged", IsGood(exchange.result)}});
  }
}

}  // namespace tavrel
