#include "work/unsure_registers.h"

#include <algorithm>
#include <string_view>

#include "base/number.h"
#include "link/register_access.h"
#include "link/registers.h"
#include "state/user_language.h"
#include "work/work_texts.h"

namespace tavrel {
namespace {

constexpr std::chrono::seconds kRetry{10};
constexpr int kMostQuickTries = 2;

std::string TextOf(const UnsureRegister& unsure, std::int16_t raw) {
  return FormatMask(raw / unsure.PerUnit, unsure.Mask);
}

bool IsRegister(const UnsureRegister& unsure, int inet, std::string_view letter, int index) {
  return unsure.Inet == inet && unsure.Index == index && letter == unsure.Letter;
}

bool IsSetpoint(const UnsureRegister& unsure) {
  return std::string_view(unsure.Letter) == reg::kSetpoint;
}

bool IsOnRamp(std::int16_t controller_state) {
  return controller_state == controller::kDynamic ||
         controller_state == controller::kDynamicFalling;
}

}  // namespace

void UnsureRegisters::Add(const UnsureRegister& unsure) {
  const auto older = Find(unsure.Inet, unsure.Letter, unsure.Index);
  if (older == unsure_.end()) {
    unsure_.push_back(unsure);
    return;
  }
  const std::optional<std::int16_t> before = older->Before;
  *older = unsure;
  older->Before = before;
}

std::vector<UnsureRegister>::iterator UnsureRegisters::Find(int inet, const char* letter,
                                                            int index) {
  return std::find_if(unsure_.begin(), unsure_.end(), [=](const UnsureRegister& unsure) {
    return IsRegister(unsure, inet, letter, index);
  });
}

void UnsureRegisters::Settle(int inet, const char* letter, int index) {
  std::erase_if(unsure_, [=](const UnsureRegister& unsure) {
    return IsRegister(unsure, inet, letter, index);
  });
}

void UnsureRegisters::Leave(std::span<const NumberBox> boxes) {
  for (UnsureRegister& unsure : unsure_) {
    for (const NumberBox& box : boxes) {
      unsure.Box = unsure.Box == &box ? nullptr : unsure.Box;
    }
  }
}

bool UnsureRegisters::ReadBack() {
  const auto now = parts_.clock.Elapsed();
  const auto due =
      std::find_if(unsure_.begin(), unsure_.end(),
                   [now](const UnsureRegister& unsure) { return unsure.DueAt <= now; });
  if (due == unsure_.end()) {
    return false;
  }
  const UnsureRegister unsure = *due;
  const Moves moves = IsSetpoint(unsure) ? AskWhetherItMoves(unsure) : Moves::kNo;
  if (moves == Moves::kYes) {
    Settle(unsure.Inet, unsure.Letter, unsure.Index);
  }
  const std::optional<std::int16_t> held =
      moves == Moves::kNo ? ReadRegister(unsure, unsure.Letter) : std::nullopt;
  if (held) {
    Settle(unsure.Inet, unsure.Letter, unsure.Index);
    Take(unsure, *held);
  }
  PutOff(unsure);
  return true;
}

// A register that is still unsure. Where characters of an older exchange were in the way nothing
// was asked.
void UnsureRegisters::PutOff(const UnsureRegister& unsure) {
  const auto same = Find(unsure.Inet, unsure.Letter, unsure.Index);
  if (same == unsure_.end()) {
    return;
  }
  const bool was_kept_off = parts_.link.ComResult == LinkResult::kLength;
  if (was_kept_off && same->QuickTries < kMostQuickTries) {
    ++same->QuickTries;
    return;
  }
  same->QuickTries = 0;
  same->DueAt = parts_.clock.Elapsed() + kRetry;
}

UnsureRegisters::Moves UnsureRegisters::AskWhetherItMoves(const UnsureRegister& unsure) {
  const std::optional<std::int16_t> state = ReadRegister(unsure, reg::kControllerState);
  if (!state) {
    return Moves::kUnknown;
  }
  return IsOnRamp(*state) ? Moves::kYes : Moves::kNo;
}

std::optional<std::int16_t> UnsureRegisters::ReadRegister(const UnsureRegister& unsure,
                                                          const char* letter) {
  return Read(parts_.link, Register{unsure.Inet, letter, unsure.Index}).Word();
}

void UnsureRegisters::Take(const UnsureRegister& unsure, std::int16_t held) {
  RunState& state = parts_.state;
  UnitRecord& unit = state.Unit[unsure.Slot];
  const bool is_same = unit.UnitInet == unsure.Inet && unit.UnitCtrl == unsure.Index;
  if (is_same && unsure.HeaderCopy != nullptr && unit.*unsure.HeaderCopy != held) {
    unit.*unsure.HeaderCopy = held;
    state.SlotDirty[unsure.Slot] = true;
  }
  if (unsure.Box != nullptr) {
    unsure.Box->Hold(TextOf(unsure, held), held);
  }
  const std::optional<std::int16_t> seen = unsure.Box != nullptr ? unsure.Sent : unsure.Before;
  if (seen != held) {
    Tell(unsure, held);
  }
}

void UnsureRegisters::Tell(const UnsureRegister& unsure, std::int16_t held) {
  const std::string text = work_text::kNotAcknowledged.Text(
      UserLanguage(parts_.state), {unsure.Name, TextOf(unsure, unsure.Sent), TextOf(unsure, held)});
  parts_.messages.Report(0, {text, "check"});
}

}  // namespace tavrel
