#ifndef TAVREL_INSTRUMENT_INSTRUMENT_H_
#define TAVREL_INSTRUMENT_INSTRUMENT_H_

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "instrument/controller.h"
#include "instrument/measuring.h"
#include "instrument/oven.h"
#include "instrument/registers.h"
#include "instrument/sample_buffer.h"
#include "instrument/sampler.h"
#include "instrument/self_test.h"
#include "instrument/truth_log.h"

namespace instrument {

// How an instrument is built; it does not change while it runs.
struct InstrumentSettings {
  int inet = 1;       // 1..6
  bool fast = false;  // S counts seconds instead of tens of seconds
  int ovens = 4;      // 1..4, see `Instrument::OvenOf`
  std::uint64_t seed = 1;
  int drift = 0;                 // of the amplifiers since the factory calibration, see Measuring
  double ambient = 22.0;         // degrees Celsius
  bool ram_test_clears = false;  // the test of the RAM costs all stored samples
  // How many seconds of the instrument's time a host's short sequence of commands may take.
  // Above 1 when the instrument's time runs faster than the host's.
  double host_pace = 1.0;
  Scan scan;
};

// Of register I: degrees per second.
inline constexpr double kIncrementUnit = 0.01;

// In which state a controller and its oven begin.
struct OvenStart {
  enum class Kind : std::uint8_t { kOff, kHold, kRamp };
  int controller = 1;  // 1..4
  Kind kind = Kind::kOff;
  double target = 0.0;  // degrees
  double rate = 0.0;    // degrees per second, for a ramp
  bool warm = false;    // already at the target, a ramp on its way
};

// What a register read gives; `sample` only if it handed over a stored one.
struct RegisterReading {
  std::int16_t word = 0;
  std::optional<StoredSample> sample;
};

// One instrument with its ovens: the register file that the line sees, and behind it the
// firmware that samples, controls and tests itself in its own time.
class Instrument {
 public:
  using Time = Sampler::Time;
  // The ovens are computed in steps of this time.
  static constexpr Time kOvenStep{250};
  enum class Pace : std::uint8_t { kFine, kCoarse };

  // `truth` outlives the instrument.
  Instrument(const InstrumentSettings& settings, TruthLog& truth);

  // Runs `time` of its own time. The coarse pace computes the ovens once a second only, to catch
  // up over days; samples and control cycles fall on the same instants in both.
  void Advance(Time time, Pace pace);

  // `reg` is 0..319. Reading X takes the sample out of its buffer.
  [[nodiscard]] RegisterReading ReadRegister(int reg);
  // False: the instrument refuses the value. Registers that only show something take a value
  // and forget it.
  [[nodiscard]] bool WriteRegister(int reg, std::int16_t word);

  [[nodiscard]] std::uint16_t ReadMemory(int address) const;
  // False: no such unit number. Writing the unit number renumbers the instrument at once.
  [[nodiscard]] bool WriteMemory(int address, std::uint16_t word);
  [[nodiscard]] std::uint8_t ReadPort(int address) const;
  void WritePort(int address, std::uint8_t value);

  // As if switched off and on: buffers empty, controllers off. Calibration, controller
  // parameters, sampling times and quality data are kept, and the ovens keep their heat.
  void Restart();

  void StartOven(const OvenStart& start);
  // Lets input 0..15 (none given: 1..15) sample every `seconds`, 1..3600, at once. False: an
  // instrument that is not fast counts whole tens of seconds only, or the inputs of a set do not
  // fit into the time.
  [[nodiscard]] bool StartSampling(std::optional<int> input, int seconds);
  // Lets its own time run until each sampled input holds `sets` samples. False: no input is
  // sampled, or it would take longer than 40 days.
  [[nodiscard]] bool Fill(int sets);
  // Lets its own time run on at once, whatever overruns by it.
  void Pass(std::chrono::seconds time) { Advance(time, Pace::kCoarse); }
  void Connect(int input, const Connection& connection);
  void SetTestResult(int command, SelfTest::Result result) { tests_.SetResult(command, result); }

  // The oven 0.. in which the sensor of input 1..15 sits, and its place there: input k is in
  // oven (k - 1) mod ovens; the first round are the controllers' sensors, the second the
  // references in the samples, the further ones stand towards the door.
  [[nodiscard]] int OvenOf(int input) const { return (input - 1) % settings_.ovens; }
  [[nodiscard]] int PlaceInOven(int input) const { return (input - 1) / settings_.ovens; }

  [[nodiscard]] int Inet() const { return inet_; }
  [[nodiscard]] double Seconds() const { return std::chrono::duration<double>(now_).count(); }
  // Controller 1..4.
  [[nodiscard]] const Controller& ControllerOf(int controller) const {
    return controllers_.at(static_cast<std::size_t>(controller - 1));
  }
  [[nodiscard]] int ControllerStatusOf(int controller) const {
    return ControllerOf(controller).Status();
  }
  // The number of samples in the fullest buffer.
  [[nodiscard]] int LongestSeries() const;
  [[nodiscard]] const Oven& OvenAt(int oven) const {
    return ovens_.at(static_cast<std::size_t>(oven));
  }

 private:
  void SetFactoryRegisters();
  void SetPowerUpRegisters();
  void ClearSeries(int input);
  void ForgetSamples();
  void EndTest(std::int16_t result);
  [[nodiscard]] int SamplingUnit() const;
  [[nodiscard]] bool Holds(int sets) const;
  [[nodiscard]] bool WriteMailbox(int command);
  [[nodiscard]] bool WriteSamplingTime(int input, std::int16_t word);
  void StepOvens();
  void SampleInputs();
  // The next instant at which an input is sampled; nothing while none is.
  [[nodiscard]] std::optional<Time> NextSample() const;
  void Store(int input);
  void RunControllers(std::int64_t second);
  [[nodiscard]] std::int64_t Second() const {
    return std::chrono::floor<std::chrono::seconds>(now_).count();
  }
  [[nodiscard]] double SensorDegrees(int input) const;
  [[nodiscard]] std::int16_t Shown(int input, std::int64_t second) const;
  [[nodiscard]] Calibration CalibrationOf(int input) const;
  [[nodiscard]] ControllerSettings SettingsOf(int controller) const;
  [[nodiscard]] bool WriteController(char letter, int controller, std::int16_t word);
  [[nodiscard]] std::int16_t ReadController(char letter, int controller) const;
  [[nodiscard]] std::int16_t Stored(char letter, int index) const;
  void Keep(char letter, int index, double word);
  [[nodiscard]] Controller& ControllerAt(int controller);

  InstrumentSettings settings_;
  TruthLog& truth_;
  int inet_;
  Time now_{0};
  Time oven_time_{0};  // to which the ovens are computed
  Measuring measuring_;
  Sampler sampler_;
  SelfTest tests_;
  std::vector<Oven> ovens_;
  std::vector<Controller> controllers_;
  std::array<SampleBuffer, kInputCount> buffers_;
  std::array<std::int16_t, kRegisterCount> registers_{};
  std::vector<std::uint16_t> memory_;
  std::array<std::uint8_t, kPortCount> ports_{};
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_INSTRUMENT_H_
