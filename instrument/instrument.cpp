#include "instrument/instrument.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace instrument {
namespace {

using std::chrono::seconds;

constexpr std::chrono::milliseconds kSecond = seconds(1);
constexpr double kControlCycle = 1.0;  // seconds
constexpr int kSlowSamplingUnit = 10;  // seconds
// The firmware takes in a switch to "dynamic" within this time, see `Controller`.
constexpr double kRampPatience = 20.0;
constexpr std::chrono::days kLongestFill{40};

std::int16_t HeldWord(double value) {
  return static_cast<std::int16_t>(std::lrint(std::clamp(value, -32768.0, 32767.0)));
}

bool IsController(int index) {
  return index >= 1 && index <= kControllerCount;
}

// Lets the noise of instruments differ: a seed for each.
std::uint64_t SeedOf(const InstrumentSettings& settings) {
  return settings.seed * 8U + static_cast<std::uint64_t>(settings.inet);
}

// The groups that the instrument keeps without power, apart from single registers.
bool IsKeptGroup(char letter) {
  switch (letter) {
    case 'J':
    case 'K':
    case 'L':
    case 'O':
    case 'S':
      return true;
    default:
      return false;
  }
}

bool IsKept(int reg) {
  const char letter = LetterOf(reg);
  const int index = IndexOf(reg);
  if (IsKeptGroup(letter)) {
    return true;
  }
  if (letter == 'P' || letter == 'N' || letter == 'V' || letter == 'T') {
    return IsController(index);
  }
  return letter == 'Z' && index >= 6;
}

}  // namespace

Instrument::Instrument(const InstrumentSettings& settings, TruthLog& truth)
    : settings_(settings),
      truth_(truth),
      inet_(settings.inet),
      measuring_(SeedOf(settings), settings.drift),
      sampler_(seconds(static_cast<int>(std::ceil(settings.host_pace))), settings.scan,
               SeedOf(settings)),
      memory_(kMemorySize, 0) {
  settings_.ovens = std::clamp(settings_.ovens, 1, kControllerCount);
  for (int controller = 1; controller <= kControllerCount; ++controller) {
    controllers_.emplace_back(std::max(kRampPatience, settings.host_pace));
  }
  for (int oven = 0; oven < settings_.ovens; ++oven) {
    ovens_.emplace_back(OvenBehind(oven + 1), settings_.ambient);
  }
  SetFactoryRegisters();
  SetPowerUpRegisters();
}

std::int16_t Instrument::Stored(char letter, int index) const {
  return registers_.at(static_cast<std::size_t>(RegisterNumber(letter, index)));
}

void Instrument::Keep(char letter, int index, double word) {
  registers_.at(static_cast<std::size_t>(RegisterNumber(letter, index))) = HeldWord(word);
}

Controller& Instrument::ControllerAt(int controller) {
  return controllers_.at(static_cast<std::size_t>(controller - 1));
}

void Instrument::SetFactoryRegisters() {
  for (int input = 0; input < kInputCount; ++input) {
    const Calibration factory = measuring_.Factory(input);
    Keep('O', input, factory.offset);
    Keep('J', input, factory.divisor_whole);
    registers_.at(static_cast<std::size_t>(RegisterNumber('K', input))) =
        static_cast<std::int16_t>(factory.divisor_fraction);
    Keep('L', input, factory.code);
  }
  for (int controller = 1; controller <= kControllerCount; ++controller) {
    const OvenBuild& oven = OvenBehind(controller);
    Keep('P', controller, oven.band * kStepsPerDegree);
    Keep('N', controller, oven.integral_time);
    Keep('V', controller, oven.derivative_time);
  }
  // Quality data: serial number 14001 and up, set up on 12.03.24 and checked on 04.06.25 by "KH".
  constexpr int kInitials = 'K' * 100 + 'H';
  constexpr std::array<int, 10> kQuality{1, 4000, 100, 1203, 24, kInitials, 406, 25, kInitials, 0};
  for (std::size_t i = 0; i < kQuality.size(); ++i) {
    Keep('Z', static_cast<int>(i) + 6, kQuality.at(i));
  }
  Keep('Z', 7, kQuality[1] + inet_);
  Keep('Z', 8, kQuality[2] + inet_);
}

void Instrument::SetPowerUpRegisters() {
  for (int reg = 0; reg < kRegisterCount; ++reg) {
    if (!IsKept(reg)) {
      registers_.at(static_cast<std::size_t>(reg)) = 0;
    }
  }
  Keep('G', 9, SelfTest::kFirmwareVersion);
  Keep('H', 0, 12);    // the converter's zero, in its own counts
  Keep('I', 0, 2406);  // firmware of June 2024
  Keep('T', 0, SamplingUnit());
  for (int controller = 1; controller <= kControllerCount; ++controller) {
    Keep('H', controller, OvenBehind(controller).upper_limit * kStepsPerDegree);
  }
  std::fill(memory_.begin(), memory_.end(), std::uint16_t{0});
  memory_.at(kUnitNumberAddress) = static_cast<std::uint16_t>(inet_ - 1);
  ports_.fill(0);
}

void Instrument::Restart() {
  SetPowerUpRegisters();
  tests_.Abort();
  for (Controller& controller : controllers_) {
    controller = Controller(std::max(kRampPatience, settings_.host_pace));
  }
  ForgetSamples();
  sampler_.Restart(now_);
}

void Instrument::ForgetSamples() {
  truth_.Restart(Seconds(), inet_);
  for (SampleBuffer& buffer : buffers_) {
    buffer.Clear();
  }
}

// Sampling goes on meanwhile; what was stored until the end of the test is gone.
void Instrument::EndTest(std::int16_t result) {
  Keep('G', 8, result);
  Keep('G', 0, 0);
  if (settings_.ram_test_clears && tests_.Running() == SelfTest::kRam) {
    ForgetSamples();
  }
}

void Instrument::Advance(Time time, Pace pace) {
  const Time end = now_ + time;
  while (now_ < end) {
    const bool is_coarse =
        pace == Pace::kCoarse && oven_time_ % kSecond == Time(0) && end - oven_time_ >= kSecond;
    const Time oven_instant = oven_time_ + (is_coarse ? kSecond : kOvenStep);
    now_ = std::min({end, oven_instant, NextSample().value_or(end)});
    if (now_ == oven_instant) {
      StepOvens();
    }
    SampleInputs();
    if (now_ % kSecond == Time(0)) {
      RunControllers(Second());
    }
  }
}

void Instrument::StepOvens() {
  const double seconds = std::chrono::duration<double>(now_ - oven_time_).count();
  oven_time_ = now_;
  for (std::size_t oven = 0; oven < ovens_.size(); ++oven) {
    ovens_[oven].Step(controllers_[oven].HeaterPower(), seconds);
  }
  if (const auto result = tests_.Advance(seconds)) {
    EndTest(*result);
  }
}

std::optional<Instrument::Time> Instrument::NextSample() const {
  std::optional<Time> next;
  for (int input = 0; input < kInputCount; ++input) {
    if (const auto instant = sampler_.NextInstant(input, now_)) {
      next = std::min(next.value_or(*instant), *instant);
    }
  }
  return next;
}

void Instrument::SampleInputs() {
  for (int input = 0; input < kInputCount; ++input) {
    if (sampler_.NextInstant(input, now_ - Time(1)) == now_) {
      Store(input);
    }
  }
}

void Instrument::Store(int input) {
  const std::int16_t word = Shown(input, Second());
  std::optional<StoredSample> lost;
  const int number = buffers_.at(static_cast<std::size_t>(input)).Store(word, lost);
  if (lost) {
    truth_.Overrun(Seconds(), {inet_, input, lost->number});
  }
  truth_.Sample(Seconds(), {inet_, input, number}, word);
}

void Instrument::RunControllers(std::int64_t second) {
  for (int number = 1; number <= kControllerCount; ++number) {
    Controller& controller = ControllerAt(number);
    if (controller.Status() == kOff && controller.Output() == 0.0) {
      continue;
    }
    const double measured = Shown(number, second) / kStepsPerDegree;
    controller.Step(SettingsOf(number), measured, measuring_.IsBroken(number), kControlCycle);
  }
}

double Instrument::SensorDegrees(int input) const {
  const Oven& oven = OvenAt(OvenOf(input));
  switch (PlaceInOven(input)) {
    case 0:
      return oven.ControlSensor();
    case 1:
      return oven.Sample();
    default:
      return oven.Towards(PlaceInOven(input) - 2);
  }
}

std::int16_t Instrument::Shown(int input, std::int64_t second) const {
  const std::int16_t reference = ShownWord(CalibrationOf(0), measuring_.Raw(0, 0.0, second), 0.0);
  if (input == 0) {
    return reference;
  }
  const int raw = measuring_.Raw(input, SensorDegrees(input), second);
  return ShownWord(CalibrationOf(input), raw, reference / kReferenceStepsPerDegree);
}

Calibration Instrument::CalibrationOf(int input) const {
  return {.offset = Stored('O', input),
          .divisor_whole = Stored('J', input),
          .divisor_fraction = static_cast<std::uint16_t>(Stored('K', input)),
          .code = Stored('L', input)};
}

ControllerSettings Instrument::SettingsOf(int controller) const {
  ControllerSettings settings;
  settings.pid.band = Stored('P', controller) / kStepsPerDegree;
  settings.pid.integral_time = Stored('N', controller);
  settings.pid.derivative_time = Stored('V', controller);
  settings.filter_time = Stored('T', controller);
  settings.lower_limit = Stored('G', controller) / kStepsPerDegree;
  settings.upper_limit = Stored('H', controller) / kStepsPerDegree;
  settings.increment = Stored('I', controller) * kIncrementUnit;
  settings.final_value = Stored('M', controller) / kStepsPerDegree;
  settings.test_power = Stored('Q', controller);
  return settings;
}

std::int16_t Instrument::ReadController(char letter, int controller) const {
  const Controller& state = controllers_.at(static_cast<std::size_t>(controller - 1));
  switch (letter) {
    case 'U':
      return HeldWord(state.Output());
    case 'W':
      return HeldWord(state.Setpoint() * kStepsPerDegree);
    case 'Z':
      return static_cast<std::int16_t>(state.Status());
    default:
      return Stored(letter, controller);
  }
}

bool Instrument::WriteController(char letter, int controller, std::int16_t word) {
  switch (letter) {
    case 'U':
      ControllerAt(controller).SetOutput(std::clamp<double>(word, 0.0, 100.0));
      return true;
    case 'W':
      ControllerAt(controller).SetSetpoint(word / kStepsPerDegree);
      return true;
    case 'Z':
      return ControllerAt(controller).SetStatus(word);
    default:
      Keep(letter, controller, word);
      return true;
  }
}

RegisterReading Instrument::ReadRegister(int reg) {
  const char letter = LetterOf(reg);
  const int index = IndexOf(reg);
  SampleBuffer& buffer = buffers_.at(static_cast<std::size_t>(index));
  switch (letter) {
    case 'R':
      return {static_cast<std::int16_t>(buffer.Count()), std::nullopt};
    case 'X': {
      const auto oldest = buffer.TakeOldest();
      return {oldest ? oldest->word : std::int16_t{-32768}, oldest};
    }
    case 'Y':
      return {Shown(index, Second()), std::nullopt};
    default:
      break;
  }
  return {IsController(index) ? ReadController(letter, index) : Stored(letter, index),
          std::nullopt};
}

void Instrument::ClearSeries(int input) {
  buffers_.at(static_cast<std::size_t>(input)).Clear();
  sampler_.Start(input, now_);
  truth_.Clear(Seconds(), inet_, input);
}

bool Instrument::WriteRegister(int reg, std::int16_t word) {
  const char letter = LetterOf(reg);
  const int index = IndexOf(reg);
  switch (letter) {
    case 'R':
      if (word == 0) {
        ClearSeries(index);
      }
      return true;
    case 'X':
    case 'Y':
      return true;
    case 'S':
      return WriteSamplingTime(index, word);
    default:
      break;
  }
  if (reg == RegisterNumber('T', 0)) {
    return true;
  }
  if (reg == RegisterNumber('G', 0)) {
    return WriteMailbox(word);
  }
  if (IsController(index)) {
    return WriteController(letter, index, word);
  }
  registers_.at(static_cast<std::size_t>(reg)) = word;
  return true;
}

bool Instrument::WriteSamplingTime(int input, std::int16_t word) {
  if (!sampler_.SetInterval(input, seconds(word * SamplingUnit()), now_)) {
    return false;
  }
  Keep('S', input, word);
  return true;
}

bool Instrument::WriteMailbox(int command) {
  if (command != 0 && !SelfTest::Knows(command)) {
    return false;
  }
  Keep('G', 0, command);
  if (command == 0) {
    tests_.Abort();
  } else {
    tests_.Begin(command);
  }
  return true;
}

std::uint16_t Instrument::ReadMemory(int address) const {
  return memory_.at(static_cast<std::size_t>(address));
}

bool Instrument::WriteMemory(int address, std::uint16_t word) {
  if (address == kUnitNumberAddress) {
    if (word >= kHighestInet) {
      return false;
    }
    truth_.Renumber(Seconds(), inet_, word + 1);
    inet_ = word + 1;
  }
  memory_.at(static_cast<std::size_t>(address)) = word;
  return true;
}

std::uint8_t Instrument::ReadPort(int address) const {
  return ports_.at(static_cast<std::size_t>(address));
}

void Instrument::WritePort(int address, std::uint8_t value) {
  ports_.at(static_cast<std::size_t>(address)) = value;
}

void Instrument::StartOven(const OvenStart& start) {
  Controller& controller = ControllerAt(start.controller);
  const bool ramp = start.kind == OvenStart::Kind::kRamp;
  const bool has_oven = start.controller <= settings_.ovens;
  const double ambient = settings_.ambient;
  if (start.kind == OvenStart::Kind::kOff || !has_oven) {
    static_cast<void>(controller.SetStatus(kOff));
    return;
  }
  Oven& oven = ovens_.at(static_cast<std::size_t>(start.controller - 1));
  // A warm ramp is a third of its way up already.
  const double way = ramp ? 1.0 / 3.0 : 1.0;
  const double begin = start.warm ? ambient + way * (start.target - ambient) : ambient;
  Keep('M', start.controller, start.target * kStepsPerDegree);
  Keep('I', start.controller, start.rate / kIncrementUnit);
  static_cast<void>(controller.SetStatus(ramp ? kDynamic : kIsotherm));
  controller.SetSetpoint(ramp ? begin : start.target);
  if (start.warm) {
    oven.SettleAt(begin);
    controller.Settle(begin, oven.PowerFor(begin, ramp ? start.rate : 0.0));
  }
}

int Instrument::SamplingUnit() const {
  return settings_.fast ? 1 : kSlowSamplingUnit;
}

bool Instrument::StartSampling(std::optional<int> input, int seconds) {
  if (seconds % SamplingUnit() != 0) {
    return false;
  }
  const int units = seconds / SamplingUnit();
  const int last = input.value_or(kInputCount - 1);
  bool is_taken = true;
  for (int each = input.value_or(1); each <= last; ++each) {
    is_taken = is_taken && WriteSamplingTime(each, static_cast<std::int16_t>(units));
  }
  return is_taken;
}

int Instrument::LongestSeries() const {
  int longest = 0;
  for (const SampleBuffer& buffer : buffers_) {
    longest = std::max(longest, buffer.Count());
  }
  return longest;
}

bool Instrument::Fill(int sets) {
  const int wanted = std::min(sets, SampleBuffer::kCapacity);
  Time longest{0};
  for (int input = 0; input < kInputCount; ++input) {
    longest = std::max(longest, sampler_.Interval(input));
  }
  if (longest == Time(0) || longest * wanted > kLongestFill) {
    return false;
  }
  while (!Holds(wanted)) {
    Advance(NextSample().value_or(now_) - now_, Pace::kFine);
  }
  return true;
}

bool Instrument::Holds(int sets) const {
  for (int input = 0; input < kInputCount; ++input) {
    const int count = buffers_.at(static_cast<std::size_t>(input)).Count();
    if (sampler_.Interval(input) > Time(0) && count < sets) {
      return false;
    }
  }
  return true;
}

void Instrument::Connect(int input, const Connection& connection) {
  measuring_.Connect(input, connection);
}

}  // namespace instrument
