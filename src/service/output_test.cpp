#include "service/output_test.h"

#include <algorithm>

#include "dialogs/checks.h"
#include "files/reasons.h"
#include "link/register_access.h"
#include "link/registers.h"
#include "service/service_texts.h"
#include "state/box_titles.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

constexpr std::chrono::seconds kClosingGuard{3};  // without a good answer
constexpr int kMostRefusals = 3;                  // of a status that is given back
constexpr std::int16_t kFullPower = 100;          // percent

bool IsControlling(std::int16_t status) {
  return status >= controller::kIsotherm && status <= controller::kDynamicFalling;
}

}  // namespace

void OutputTest::Open() {
  const int inet = std::max(Parts().state.ActiveInet, 1);
  if (!Parts().link.PortOpen) {
    ShowNotConnected(Parts().dialogs);
    return;
  }
  if (!records_.Load() || records_.Has(inet)) {
    Parts().dialogs.Message(
        {service_text::kStillOn.Text(UserLanguage(Parts().state), {std::to_string(inet)}),
         kOutputTestTitle});
    return;
  }
  OpenScreen();
  channels_ = {};
  for (int ctrl = 1; ctrl <= kControllers; ++ctrl) {
    channels_[ctrl].orders = Parts().engine.Orders().Count(Inet(), ctrl);
    channels_[ctrl].has_ended = Parts().engine.Orders().IsWaiting(Inet(), ctrl);
  }
  Hold(true);
  OutStep = 0;
}

void OutputTest::Hold(bool holds) {
  for (int ctrl = 1; ctrl <= kControllers && IsInet(Inet()); ++ctrl) {
    Parts().state.OutputTestHolds[Inet()][ctrl] = holds;
  }
}

void OutputTest::Opt_Click(int controller, OutputOption option) {
  if (IsController(controller) && OutStep < kClosing) {
    channels_[controller].chosen = option;
  }
}

OutputOption OutputTest::Chosen(int controller) const {
  return channels_[controller].chosen;
}

OutputLamp OutputTest::HeaterLamp(int controller) const {
  return LampOf(controller, OutputOption::kHeater);
}

OutputLamp OutputTest::SafetyLamp(int controller) const {
  return LampOf(controller, OutputOption::kSafety);
}

OutputLamp OutputTest::LampOf(int controller, OutputOption option) const {
  const std::optional<OutputOption>& shown = channels_[controller].shown;
  if (!shown) {
    return OutputLamp::kUnknown;
  }
  return *shown == option ? OutputLamp::kOn : OutputLamp::kOff;
}

void OutputTest::Quit() {
  if (OutStep >= kClosing) {
    return;
  }
  OutStep = kClosing;
  if (!Parts().link.PortOpen) {
    GiveUp();
  }
}

void OutputTest::CloseNow() {
  if (IsOpen()) {
    Leave();
  }
}

void OutputTest::TakeStep() {
  NoteOrders();
  if (OutStep < kClosing && Parts().events.EndIsWanted()) {
    OutStep = kClosing;
  }
  if (OutStep >= kClosing) {
    StepClosing();
  } else if (OutStep >= kFirstLook) {
    StepLook();
  } else {
    StepEntry();
  }
}

// The steps stand still and wait for the port, but not those that end the test: the controllers
// are left to the record.
void OutputTest::StepWithoutPort() {
  NoteOrders();
  if (OutStep >= kClosing || Parts().events.EndIsWanted()) {
    GiveUp();
  }
}

void OutputTest::StepEntry() {
  if (OutStep < kFirstStatus) {
    Parts().link.LinkAbort();
    OutStep = kFirstStatus;
  } else if (OutStep < kFirstTestPower) {
    ReadStatus(OutStep);
  } else if (OutStep < kFirstPower) {
    if (KeepRecord()) {
      ContinueIfGood(WriteTo(reg::kTestOutput, OutStep - kFirstTestPower + 1, 0));
    }
  } else if (OutStep < kFirstTake) {
    ContinueIfGood(WriteTo(reg::kOutput, OutStep - kFirstPower + 1, 0));
  } else {
    Take(OutStep - kFirstTake + 1);
  }
}

void OutputTest::ContinueIfGood(LinkResult result) {
  if (IsGood(result) && IsOpen()) {
    ++OutStep;
  }
}

// The status is given back later: it must not be the answer to another command.
void OutputTest::ReadStatus(int ctrl) {
  const Reading status = ReadAlone(Parts().link, Register{Inet(), reg::kControllerState, ctrl});
  NoteResult(status.status);
  if (status.IsGood()) {
    channels_[ctrl].found = status.word;
    ++OutStep;
  }
}

// False: the records cannot be written, and the test does not begin.
bool OutputTest::KeepRecord() {
  if (unfinished_) {
    return true;
  }
  const std::string problem = Parts().link.Simulated ? "" : records_.Put(Inet(), Records());
  if (!problem.empty()) {
    static_cast<void>(records_.Put(Inet(), {}));
    const Language language = UserLanguage(Parts().state);
    Parts().dialogs.Announce(
        {service_text::kNoRecord.Text(language, {kOutputRecordsFile, ReasonIn(language, problem)}),
         kWriteTitle});
    Leave();
    return false;
  }
  unfinished_.emplace(Parts().state);
  return true;
}

// A controller that was on has gone on to write its own power into U until now.
void OutputTest::Take(int ctrl) {
  Channel& channel = channels_[ctrl];
  const LinkResult result = WriteTo(reg::kControllerState, ctrl, controller::kFail);
  channel.is_taken = channel.is_taken || result != LinkResult::kRejected;
  if (IsGood(result)) {
    channel.shown = OutputOption::kOff;
    if (!IsControlling(channel.found)) {
      channel.have = OutputOption::kOff;
    }
  }
  if (IsGood(result) || result == LinkResult::kRejected) {
    OutStep = ctrl < kControllers ? OutStep + 1 : kFirstLook;
  }
}

void OutputTest::StepLook() {
  const int ctrl = (OutStep - kFirstLook) / kStepsOfLook + 1;
  const int place = (OutStep - kFirstLook) % kStepsOfLook;
  Channel& channel = channels_[ctrl];
  if (place == 0) {
    channel.wanted = channel.chosen;
    ++OutStep;
  } else if (channel.have != channel.wanted) {
    WriteOption(ctrl, place - 1);
  } else {
    GoOnBehind(ctrl, place);
  }
}

void OutputTest::GoOnBehind(int ctrl, int place) {
  if (place < kWritesOfOption) {
    ++OutStep;
  } else {
    OutStep = kFirstLook + ctrl % kControllers * kStepsOfLook;
  }
}

// The powers, then the status. Where the contact is closed, or may be, it is opened first: full
// power behind a closed contact would heat the oven if the line died there.
OutputTest::WritesOfOption OutputTest::WritesFor(const Channel& channel) {
  const std::int16_t power = channel.wanted == OutputOption::kHeater ? kFullPower : 0;
  const RegisterWrite u{reg::kOutput, power};
  const RegisterWrite q{reg::kTestOutput, power};
  if (channel.wanted == OutputOption::kSafety) {
    return {u, q, {reg::kControllerState, controller::kTest}};
  }
  const RegisterWrite open_contact{reg::kControllerState, controller::kFail};
  const bool is_open = channel.have && *channel.have != OutputOption::kSafety;
  return is_open ? WritesOfOption{{u, q, open_contact}} : WritesOfOption{{open_contact, u, q}};
}

// A status that is refused is left to the next round, so that the others have their turn.
void OutputTest::WriteOption(int ctrl, int place) {
  Channel& channel = channels_[ctrl];
  const RegisterWrite write = WritesFor(channel)[place];
  const LinkResult result = WriteTo(write.letter, ctrl, write.word);
  const bool is_status = write.letter == reg::kControllerState;
  if (is_status) {
    channel.is_taken = channel.is_taken || result != LinkResult::kRejected;
  }
  if (is_status && result == LinkResult::kRejected) {
    channel.have.reset();
    GoOnBehind(ctrl, kWritesOfOption);
    return;
  }
  if (!IsGood(result)) {
    return;
  }
  if (place + 1 == kWritesOfOption) {
    channel.have = channel.wanted;
    channel.shown = channel.wanted;
  }
  GoOnBehind(ctrl, place + 1);
}

void OutputTest::StepClosing() {
  if (OutStep == kClosing) {
    Parts().events.SetPointer(Pointer::kHourglass);
    out_deadline_ = Parts().clock.Elapsed() + kClosingGuard;
    ++OutStep;
  } else if (OutStep < kFirstGiveBack) {
    SwitchPowerOff(OutStep - kFirstPowerOff);
  } else if (OutStep < kLast) {
    GiveBack(OutStep - kFirstGiveBack + 1);
  } else {
    Leave();
  }
}

// Of all controllers register U, then Q; `place` counts from 0.
void OutputTest::SwitchPowerOff(int place) {
  const char* letter = place < kControllers ? reg::kOutput : reg::kTestOutput;
  const LinkResult result = WriteTo(letter, place % kControllers + 1, 0);
  if (IsGood(result) && OutStep + 1 == kFirstGiveBack) {
    OutStep = StepToGiveBack(0);
  } else {
    ContinueIfGood(result);
  }
}

// The step of the next controller behind that one, in turn, that has to be given back.
int OutputTest::StepToGiveBack(int after) const {
  for (int ahead = 0; ahead < kControllers; ++ahead) {
    const int ctrl = (after + ahead) % kControllers + 1;
    if (channels_[ctrl].is_taken) {
      return kFirstGiveBack + ctrl - 1;
    }
  }
  return kLast;
}

std::int16_t OutputTest::StatusToGiveBack(const Channel& channel) {
  return channel.has_ended || channel.refusals >= kMostRefusals ? controller::kOff : channel.found;
}

void OutputTest::GiveBack(int ctrl) {
  Channel& channel = channels_[ctrl];
  const std::int16_t status = StatusToGiveBack(channel);
  const LinkResult result = WriteTo(reg::kControllerState, ctrl, status);
  if (!IsOpen()) {
    return;
  }
  if (IsGood(result)) {
    channel.is_taken = false;
    if (status == controller::kOff) {
      Parts().engine.Orders().Drop(Inet(), ctrl);
    }
  }
  channel.refusals += result == LinkResult::kRejected ? 1 : 0;
  if (IsGood(result) || result == LinkResult::kRejected) {
    OutStep = StepToGiveBack(ctrl);
  }
}

LinkResult OutputTest::WriteTo(const char* letter, int ctrl, std::int16_t word) {
  const LinkResult result = Write(Parts().link, {Inet(), letter, ctrl}, word);
  NoteResult(result);
  return result;
}

// While the screen closes each good answer gives the instrument its time anew.
void OutputTest::NoteResult(LinkResult result) {
  static_cast<void>(MissesAnswer(result));
  if (OutStep < kClosing) {
    return;
  }
  const Time now = Parts().clock.Elapsed();
  if (IsGood(result)) {
    out_deadline_ = now + kClosingGuard;
  } else if (now > out_deadline_) {
    GiveUp();
  }
}

// An end action switches the controller off beneath the test: what is in force is not known any
// more, and the controller stays off behind the test.
void OutputTest::NoteOrders() {
  for (int ctrl = 1; ctrl <= kControllers; ++ctrl) {
    Channel& channel = channels_[ctrl];
    const std::uint32_t orders = Parts().engine.Orders().Count(Inet(), ctrl);
    if (orders == channel.orders) {
      continue;
    }
    channel.orders = orders;
    channel.has_ended = true;
    channel.have.reset();
    const int look = kFirstLook + (ctrl - 1) * kStepsOfLook;
    OutStep = OutStep > look && OutStep < look + kStepsOfLook ? look : OutStep;
    if (unfinished_ && !Parts().link.Simulated) {
      static_cast<void>(records_.Put(Inet(), Records()));
    }
  }
}

// Writes the records that the next program needs if this one is killed now.
std::vector<OutputRecord> OutputTest::Records() const {
  std::vector<OutputRecord> records;
  for (int ctrl = 1; ctrl <= kControllers; ++ctrl) {
    records.push_back({Inet(), ctrl, StatusToGiveBack(channels_[ctrl])});
  }
  return records;
}

// Those of the controllers that have not been given back.
std::vector<OutputRecord> OutputTest::Unfinished() const {
  std::vector<OutputRecord> records = Records();
  std::erase_if(records, [this](const OutputRecord& record) {
    return !channels_[record.Controller].is_taken;
  });
  return records;
}

void OutputTest::GiveUp() {
  if (!Unfinished().empty()) {
    Parts().dialogs.Announce(
        {service_text::kMayBeOn.Text(UserLanguage(Parts().state), {std::to_string(Inet())}),
         kOutputTestTitle});
  }
  Leave();
}

void OutputTest::Leave() {
  if (unfinished_ && !Parts().link.Simulated) {
    static_cast<void>(records_.Put(Inet(), Unfinished()));
  }
  Hold(false);
  unfinished_.reset();
  OutStep = kStopped;
  ServiceScreen::CloseNow();
}

}  // namespace tavrel
