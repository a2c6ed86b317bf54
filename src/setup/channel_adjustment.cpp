#include "setup/channel_adjustment.h"

namespace tavrel {
namespace {

constexpr std::chrono::seconds kRefresh{5};
constexpr int kFirstInet = 1;  // of the instrument while none is selected

// True while it lives. They may be nested.
class Busy {
 public:
  explicit Busy(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
  ~Busy() { flag_ = before_; }
  Busy(const Busy&) = delete;
  Busy& operator=(const Busy&) = delete;

 private:
  bool& flag_;
  bool before_;
};

}  // namespace

ChannelAdjustment::ChannelAdjustment(const Parts& parts)
    : ModalScreen(parts.state, View::kTavChann), parts_(parts) {}

void ChannelAdjustment::Open() {
  CloseNow();
  inet_ = parts_.state.ActiveInet > 0 ? parts_.state.ActiveInet : kFirstInet;
  const bool answers = parts_.link.IsGood(inet_);
  adj_state_ = answers ? AdjState::kEmptySheet : AdjState::kNoLink;
  parts_.events.SetPointer(answers ? Pointer::kHourglass : Pointer::kNormal);
  values_ = {};
  values_.Caption = " Tavrel-" + std::to_string(inet_) + ":   Channels";
  is_refreshing_ = false;
  sheet_.emplace(parts_.link, inet_, values_);
  run_.emplace(AdjustmentRun::Parts{parts_.state, parts_.link, parts_.dialogs, parts_.events,
                                    parts_.clock, *sheet_, values_, adj_state_},
               inet_);
  transfer_.emplace(VariableTransfer::Parts{parts_.state, parts_.link, parts_.dialogs,
                                            parts_.events, parts_.clock, values_, adj_state_},
                    inet_);
  ShowConnection();
  OpenScreen();
}

// The hourglass of the first steps ends with the form. No box says here what a run has written: it
// would hold up the end of the program, and the journal has it.
void ChannelAdjustment::CloseNow() {
  if (IsOpen()) {
    parts_.events.SetPointer(Pointer::kNormal);
  }
  if (run_ && run_->AdjSensor() != sensor::kNone) {
    static_cast<void>(run_->Drop(kEndedWithProgram));
  }
  values_.MenusEnabled = false;
  CloseScreen();
}

void ChannelAdjustment::ShowConnection() {
  values_.ComIcon = !parts_.link.IsGood(inet_);
}

void ChannelAdjustment::Timer_chann() {
  if (is_busy_ || !IsOpen()) {
    return;
  }
  if (parts_.link.PortOpen) {
    const Busy busy(is_busy_);
    Step();
  } else {
    run_->PortIsAway();
  }
  ShowConnection();
}

void ChannelAdjustment::Change(bool is_over, AdjState from, AdjState to) {
  if (is_over && adj_state_ == from) {
    adj_state_ = to;
  }
}

void ChannelAdjustment::Step() {
  const StepTime time(parts_.link, parts_.clock);
  switch (adj_state_) {
    case AdjState::kEmptySheet:
      EmptySheet();
      return;
    case AdjState::kReadSensors:
      ReadSensors(time);
      return;
    case AdjState::kReadSampling:
      Change(sheet_->ReadSampling(time), AdjState::kReadSampling, AdjState::kReadOffsets);
      return;
    case AdjState::kReadOffsets:
      Change(sheet_->ReadOffsets(time), AdjState::kReadOffsets, AdjState::kReadDivisors);
      return;
    case AdjState::kReadDivisors:
      Change(sheet_->ReadDivisors(time), AdjState::kReadDivisors, AdjState::kReadActual);
      return;
    case AdjState::kReadActual:
      ReadActual(time);
      return;
    case AdjState::kReadBuffers:
      ReadBuffers(time);
      return;
    case AdjState::kIdle:
      Idle(time);
      return;
    default:
      run_->Step(time);
  }
}

void ChannelAdjustment::EmptySheet() {
  values_.CmdOKShown = false;
  values_.pBarShown = false;
  values_.Lbl_InstrShown = false;
  values_.txt_FinalShown = false;
  sheet_->Clear();
  adj_state_ = AdjState::kReadSensors;
}

void ChannelAdjustment::ReadSensors(const StepTime& time) {
  parts_.events.SetPointer(Pointer::kHourglass);
  Change(sheet_->ReadSensors(time), AdjState::kReadSensors, AdjState::kReadSampling);
}

// The five seconds count from the first of its steps.
void ChannelAdjustment::ReadActual(const StepTime& time) {
  if (!is_refreshing_) {
    adj_next_ = parts_.clock.Elapsed() + kRefresh;
    is_refreshing_ = true;
  }
  const bool is_over = sheet_->ReadActual(time);
  is_refreshing_ = !is_over;
  Change(is_over, AdjState::kReadActual, AdjState::kReadBuffers);
}

void ChannelAdjustment::ReadBuffers(const StepTime& time) {
  if (!sheet_->ReadBuffers(time)) {
    return;
  }
  values_.MenusEnabled = true;
  parts_.events.SetPointer(Pointer::kNormal);
  Change(true, AdjState::kReadBuffers, AdjState::kIdle);
}

void ChannelAdjustment::Idle(const StepTime& time) {
  if (parts_.clock.Elapsed() <= adj_next_) {
    sheet_->ReadMissing(time);
    return;
  }
  sheet_->Drop();
  Change(true, AdjState::kIdle, AdjState::kReadActual);
}

void ChannelAdjustment::BeginInputs(std::int16_t sensor_code) {
  if (!MayChooseMenu()) {
    return;
  }
  sheet_->Drop();
  is_refreshing_ = false;
  run_->BeginInputs(sensor_code);
}

void ChannelAdjustment::Mnu_RTD_Click() {
  if (!MayChooseMenu()) {
    return;
  }
  const Busy busy(is_busy_);
  const Notice factory = {"Warning:  this should be performed by the factory", "RTD",
                          BoxIcon::kCritical, true};
  const Notice sure = {"Warning:  are you sure ?", "RTD", BoxIcon::kCritical, true};
  if (parts_.dialogs.AskOk(factory) && parts_.dialogs.AskYes(sure)) {
    sheet_->Drop();
    is_refreshing_ = false;
    run_->BeginReference();
  }
}

void ChannelAdjustment::Mnu_Save_Click(const std::function<void()>& show) {
  if (!MayChooseMenu()) {
    return;
  }
  const Busy busy(is_busy_);
  transfer_->Save(show);
}

void ChannelAdjustment::Mnu_Load_Click(const std::function<void()>& show) {
  if (!MayChooseMenu()) {
    return;
  }
  const Busy busy(is_busy_);
  transfer_->Load(show);
  if (adj_state_ == AdjState::kReadSensors) {
    sheet_->Drop();
    is_refreshing_ = false;
  }
}

void ChannelAdjustment::Sheet_Click(int row) {
  const bool is_input = row > kReferenceRow && row < kChannelRows;
  if (!IsOpen() || adj_state_ != AdjState::kSelect || is_busy_ || !is_input) {
    return;
  }
  sheet_->Select(row, run_->AdjSensor());
  values_.CmdOKShown = true;
}

void ChannelAdjustment::CmdOK_Click() {
  if (!IsOpen() || !values_.CmdOKShown || is_busy_) {
    return;
  }
  const Busy busy(is_busy_);
  switch (adj_state_) {
    case AdjState::kSelect:
      run_->TakeSelection();
      return;
    case AdjState::kAwaitShorted:
      adj_state_ = AdjState::kCollectOffset;
      return;
    case AdjState::kAwaitRaised:
      adj_state_ = AdjState::kCollectGain;
      return;
    case AdjState::kAwaitFinal:
      adj_state_ = AdjState::kCompute;
      return;
    case AdjState::kAwaitZero:
      adj_state_ = AdjState::kCollectZero;
      return;
    case AdjState::kAwaitSpan:
      adj_state_ = AdjState::kCollectSpan;
      return;
    default:
      return;
  }
}

void ChannelAdjustment::Quit() {
  if (!IsOpen()) {
    return;
  }
  if (run_->AdjSensor() != sensor::kNone) {
    DropRun();
  } else if (adj_state_ == AdjState::kSaving || adj_state_ == AdjState::kLoading) {
    adj_state_ = AdjState::kCancelled;
  } else {
    CloseNow();
  }
}

void ChannelAdjustment::DropRun() {
  const Busy busy(is_busy_);
  const std::string changed = run_->Drop("dropped");
  if (!changed.empty()) {
    parts_.dialogs.Message({changed, "adjustment", BoxIcon::kWarning});
  }
}

}  // namespace tavrel
