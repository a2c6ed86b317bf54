#include "service/output_recovery.h"

#include <algorithm>
#include <cstddef>

#include "link/register_access.h"
#include "link/registers.h"
#include "service/service_texts.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

constexpr std::chrono::seconds kTryAgain{10};

bool IsOn(std::int16_t status) {
  return status >= controller::kIsotherm && status <= controller::kTest;
}

bool IsOfTest(std::int16_t status) {
  return status == controller::kFail || status == controller::kTest;
}

}  // namespace

bool OutputRecovery::Step() {
  TendFile();
  if (parts_.link.Simulated || !is_loaded_) {
    return false;
  }
  TakeRecords();
  const bool has_port = parts_.link.PortOpen;
  const Time now = parts_.clock.Elapsed();
  for (Debt& debt : debts_) {
    debt.due = has_port ? debt.due : now;
  }
  const auto due = std::find_if(debts_.begin(), debts_.end(), [now](const Debt& debt) {
    return debt.stage != Stage::kDone && debt.due <= now;
  });
  if (!has_port) {
    return false;
  }
  if (due == debts_.end()) {
    return StepReturn();
  }
  Work(*due);
  return true;
}

void OutputRecovery::Renumber(int from, int to) {
  if (from == to || parts_.link.Simulated) {
    return;
  }
  ++numberings_;
  std::erase_if(debts_, [from, to](const Debt& debt) {
    return debt.record.Inet == from || debt.record.Inet == to;
  });
  parts_.records.Renumber(from, to);
}

// What the disk refuses now is tried again every ten seconds.
void OutputRecovery::TendFile() {
  const Time now = parts_.clock.Elapsed();
  if (now >= next_look_) {
    next_look_ = now + kTryAgain;
    is_loaded_ = parts_.records.Load();
    parts_.records.Save();
  }
}

bool OutputRecovery::IsHeld(const OutputRecord& record) const {
  return parts_.state.IsHeld(record.Inet, record.Controller);
}

// The records of a test that goes on belong to its screen.
void OutputRecovery::TakeRecords() {
  for (const OutputRecord& record : parts_.records.All()) {
    const bool is_known = std::any_of(debts_.begin(), debts_.end(), [&](const Debt& debt) {
      return debt.record.Inet == record.Inet && debt.record.Controller == record.Controller;
    });
    if (!is_known && !IsHeld(record)) {
      debts_.push_back({record});
    }
  }
}

void OutputRecovery::Work(Debt& debt) {
  const int inet = debt.record.Inet;
  const LinkResult result = DoStage(debt);
  if (IsGood(result)) {
    EndIfDone(inet);
  } else {
    PutOff(debt, result);
  }
}

// A stage that is done is followed by the next one.
LinkResult OutputRecovery::DoStage(Debt& debt) {
  const auto write = [&](const char* letter, std::int16_t word) {
    return Write(parts_.link, {debt.record.Inet, letter, debt.record.Controller}, word);
  };
  LinkResult result = LinkResult::kNone;
  switch (debt.stage) {
    case Stage::kPower:
      result = write(reg::kOutput, 0);
      break;
    case Stage::kTestPower:
      result = write(reg::kTestOutput, 0);
      break;
    case Stage::kLookAtStatus:
      return LookAtStatus(debt);
    case Stage::kSwitchOff:
      result = write(reg::kControllerState, controller::kOff);
      break;
    case Stage::kDone:
      return LinkResult::kGood;
  }
  if (IsGood(result)) {
    debt.stage = static_cast<Stage>(static_cast<int>(debt.stage) + 1);
  }
  return result;
}

// Somebody has switched the controller meanwhile: that ends its test.
LinkResult OutputRecovery::LookAtStatus(Debt& debt) {
  const Register status{debt.record.Inet, reg::kControllerState, debt.record.Controller};
  const Reading reading = ReadAlone(parts_.link, status);
  if (reading.IsGood()) {
    debt.was_on = IsOfTest(reading.word);
    debt.stage = debt.was_on ? Stage::kSwitchOff : Stage::kDone;
  }
  return reading.status;
}

// A controller that refuses does not hold up the others; an instrument that does not answer is
// asked once.
void OutputRecovery::PutOff(const Debt& debt, LinkResult result) {
  const OutputRecord failed = debt.record;
  const Time due = parts_.clock.Elapsed() + kTryAgain;
  for (Debt& other : debts_) {
    const bool is_same = other.record.Controller == failed.Controller;
    if (other.record.Inet == failed.Inet && (is_same || result != LinkResult::kRejected)) {
      other.due = due;
    }
  }
}

void OutputRecovery::EndIfDone(int inet) {
  std::vector<Return> returns;
  for (const Debt& debt : debts_) {
    if (debt.record.Inet != inet) {
      continue;
    }
    if (debt.stage != Stage::kDone) {
      return;
    }
    const int ctrl = debt.record.Controller;
    if (debt.was_on && IsOn(debt.record.Before) && !parts_.orders.IsWaiting(inet, ctrl)) {
      returns.push_back({debt.record, parts_.orders.Count(inet, ctrl), numberings_});
    }
  }
  std::erase_if(debts_, [inet](const Debt& debt) { return debt.record.Inet == inet; });
  static_cast<void>(parts_.records.Put(inet, {}));
  Tell(inet, returns);
}

// The box stands beside the forms: it may be answered long afterwards, or never.
void OutputRecovery::Tell(int inet, const std::vector<Return>& returns) {
  const Language language = UserLanguage(parts_.state);
  std::string text = service_text::kNotEnded.Text(language, {std::to_string(inet)});
  if (returns.empty()) {
    parts_.dialogs.Announce({text, kOutputTestTitle});
    return;
  }
  std::string controllers;
  for (const Return& wish : returns) {
    controllers += service_text::kStatus.Text(
        language, {std::to_string(wish.record.Controller), controller::WordOf(wish.record.Before)});
  }
  text += service_text::kWereOn.Text(language, {controllers});
  parts_.dialogs.AskBeside({text, kOutputTestTitle, BoxIcon::kQuestion, true},
                           [this, returns](bool yes) {
                             if (yes) {
                               returns_.insert(returns_.end(), returns.begin(), returns.end());
                             }
                           });
}

bool OutputRecovery::IsVoid(const Return& wish) const {
  const OutputRecord& record = wish.record;
  return IsHeld(record) || parts_.records.Has(record.Inet) ||
         parts_.orders.Count(record.Inet, record.Controller) != wish.orders ||
         wish.numberings != numberings_;
}

// Only a controller that is still off gets its status back: one that was switched meanwhile is left
// as it is.
bool OutputRecovery::StepReturn() {
  std::erase_if(returns_, [this](const Return& wish) { return IsVoid(wish); });
  const Time now = parts_.clock.Elapsed();
  const auto due = std::find_if(returns_.begin(), returns_.end(),
                                [now](const Return& wish) { return wish.due <= now; });
  if (due == returns_.end()) {
    return false;
  }
  if (GiveBack(*due)) {
    returns_.erase(due);
  } else {
    due->due = now + kTryAgain;
  }
  return true;
}

// False if the instrument is to be asked once more.
bool OutputRecovery::GiveBack(Return& wish) {
  const OutputRecord& record = wish.record;
  const Register status{record.Inet, reg::kControllerState, record.Controller};
  const Reading now = ReadAlone(parts_.link, status);
  if (!now.IsGood() || now.word != controller::kOff) {
    return now.IsGood();
  }
  const LinkResult result = Write(parts_.link, status, record.Before);
  if (result == LinkResult::kRejected) {
    parts_.dialogs.Announce({service_text::kRefuses.Text(
                                 UserLanguage(parts_.state),
                                 {std::to_string(record.Inet), std::to_string(record.Controller)}),
                             kOutputTestTitle});
  }
  return IsGood(result) || result == LinkResult::kRejected;
}

}  // namespace tavrel
