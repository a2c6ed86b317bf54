#include "instrument/options.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <string_view>

#include "instrument/numbers.h"

namespace instrument {
namespace {

constexpr double kHighestSpeedup = 10'000.0;
constexpr int kGreatestDrift = 100;  // steps
// A host's short sequence of commands takes at most this long.
constexpr double kHostSequence = 0.5;  // seconds of real time

// A text cut at the first `mark`; the second half is missing if there is no mark.
struct Halves {
  std::string_view first;
  std::optional<std::string_view> second;
};

Halves CutAt(std::string_view text, char mark) {
  const auto at = text.find(mark);
  if (at == std::string_view::npos) {
    return {text, std::nullopt};
  }
  return {text.substr(0, at), text.substr(at + 1)};
}

std::vector<std::string_view> SplitAt(std::string_view text, char mark) {
  std::vector<std::string_view> parts;
  Halves halves{{}, text};
  while (halves.second) {
    halves = CutAt(*halves.second, mark);
    parts.push_back(halves.first);
  }
  return parts;
}

std::optional<int> ParseInet(std::string_view text) {
  return ParseNumber<int>(text, 1, kHighestInet);
}

std::optional<SamplingOrder> OrderNamed(std::string_view name) {
  static constexpr std::array<std::pair<std::string_view, SamplingOrder>, 4> kOrders{
      {{"together", SamplingOrder::kTogether},
       {"ascending", SamplingOrder::kAscending},
       {"descending", SamplingOrder::kDescending},
       {"random", SamplingOrder::kRandom}}};
  const auto* const found = std::find_if(kOrders.begin(), kOrders.end(),
                                         [&](const auto& order) { return order.first == name; });
  return found == kOrders.end() ? std::nullopt : std::optional(found->second);
}

// "VALUE" for all instruments, "INET:VALUE" for one.
struct Target {
  std::optional<int> inet;  // 0: all; nothing: no such number
  std::string_view value;
};

Target TargetOf(std::string_view text) {
  const Halves halves = CutAt(text, ':');
  if (!halves.second) {
    return {0, text};
  }
  return {ParseInet(halves.first), *halves.second};
}

// What several options say about the instruments before these are made.
struct Fleet {
  std::set<int> numbers{1};
  std::set<int> fast;
  std::set<int> ram_test_clears;
  std::vector<std::pair<int, int>> ovens;                            // instrument, number of ovens
  std::vector<std::pair<int, SamplingOrder>> orders;                 // instrument, 0 for all
  std::vector<std::pair<int, std::chrono::milliseconds>> distances;  // likewise
  std::uint64_t seed = 1;
  int drift = 0;
  double ambient = 22.0;
  bool warm = false;
  std::optional<int> baud;
};

// Reads one option after the other into the options that it builds.
class OptionReader {
 public:
  [[nodiscard]] bool Take(std::string_view name, const std::string& value);
  void TakeFlag(std::string_view name);
  [[nodiscard]] Options Finish();

 private:
  [[nodiscard]] bool TakeMode(std::string_view value);
  [[nodiscard]] bool TakeCount(std::string_view value);
  [[nodiscard]] bool TakeList(std::string_view value, std::set<int>& numbers);
  [[nodiscard]] bool TakeFast(std::string_view value) { return TakeList(value, fleet_.fast); }
  [[nodiscard]] bool TakeRamTestClears(std::string_view value) {
    return TakeList(value, fleet_.ram_test_clears);
  }
  [[nodiscard]] bool TakeTest(std::string_view value);
  [[nodiscard]] bool TakeInets(std::string_view value);
  [[nodiscard]] bool TakeOvenCount(std::string_view value);
  [[nodiscard]] bool TakeOven(std::string_view value);
  [[nodiscard]] bool TakeClimb(std::string_view value);
  [[nodiscard]] bool TakeSampling(std::string_view value);
  [[nodiscard]] bool TakeOrder(std::string_view value);
  [[nodiscard]] bool TakeDistance(std::string_view value);
  [[nodiscard]] bool TakeBacklog(std::string_view value);
  [[nodiscard]] bool TakeFault(std::string_view value);
  [[nodiscard]] bool TakeLineSpeed(std::string_view value);
  [[nodiscard]] bool TakeSpeedup(std::string_view value);
  [[nodiscard]] bool TakeSeed(std::string_view value);
  [[nodiscard]] bool TakeDrift(std::string_view value);
  [[nodiscard]] bool TakeAmbient(std::string_view value);
  [[nodiscard]] std::string* PathOf(std::string_view name);

  Options options_;
  Fleet fleet_;
};

std::string* OptionReader::PathOf(std::string_view name) {
  if (name == "--link") {
    return &options_.link_path;
  }
  if (name == "--control") {
    return &options_.control_path;
  }
  if (name == "--log") {
    return &options_.wire_log_path;
  }
  return name == "--truth" ? &options_.truth_path : nullptr;
}

bool OptionReader::Take(std::string_view name, const std::string& value) {
  using Taker = bool (OptionReader::*)(std::string_view);
  static constexpr std::array<std::pair<std::string_view, Taker>, 19> kTakers{
      {{"--mode", &OptionReader::TakeMode},
       {"--instruments", &OptionReader::TakeCount},
       {"--inet", &OptionReader::TakeInets},
       {"--fast", &OptionReader::TakeFast},
       {"--ram-test-clears", &OptionReader::TakeRamTestClears},
       {"--selftest", &OptionReader::TakeTest},
       {"--ovens", &OptionReader::TakeOvenCount},
       {"--oven", &OptionReader::TakeOven},
       {"--climb", &OptionReader::TakeClimb},
       {"--sample", &OptionReader::TakeSampling},
       {"--sampling-order", &OptionReader::TakeOrder},
       {"--sampling-distance", &OptionReader::TakeDistance},
       {"--backlog", &OptionReader::TakeBacklog},
       {"--fault", &OptionReader::TakeFault},
       {"--line-speed", &OptionReader::TakeLineSpeed},
       {"--speedup", &OptionReader::TakeSpeedup},
       {"--seed", &OptionReader::TakeSeed},
       {"--drift", &OptionReader::TakeDrift},
       {"--start-temp", &OptionReader::TakeAmbient}}};
  if (std::string* path = PathOf(name)) {
    *path = value;
    return !value.empty();
  }
  for (const auto& [known, taker] : kTakers) {
    if (name == known) {
      return (this->*taker)(value);
    }
  }
  return false;
}

void OptionReader::TakeFlag(std::string_view name) {
  fleet_.warm = fleet_.warm || name == "--warm";
  options_.unplugged = options_.unplugged || name == "--unplugged";
  options_.help = options_.help || name == "--help";
}

bool OptionReader::TakeMode(std::string_view value) {
  options_.mode = value == "plugin" ? LineMode::kPlugin : LineMode::kDirect;
  return value == "plugin" || value == "direct";
}

bool OptionReader::TakeCount(std::string_view value) {
  const auto count = ParseInet(value);
  fleet_.numbers.clear();
  for (int inet = 1; inet <= count.value_or(0); ++inet) {
    fleet_.numbers.insert(inet);
  }
  return count.has_value();
}

bool OptionReader::TakeList(std::string_view value, std::set<int>& numbers) {
  for (const std::string_view part : SplitAt(value, ',')) {
    const auto inet = ParseInet(part);
    if (!inet) {
      return false;
    }
    numbers.insert(*inet);
  }
  return true;
}

bool OptionReader::TakeInets(std::string_view value) {
  fleet_.numbers.clear();
  return TakeList(value, fleet_.numbers);
}

bool OptionReader::TakeOvenCount(std::string_view value) {
  const Halves halves = CutAt(value, '=');
  const auto inet = ParseInet(halves.first);
  const auto count = ParseNumber<int>(halves.second.value_or(""), 1, kControllerCount);
  if (inet && count) {
    fleet_.ovens.emplace_back(*inet, *count);
  }
  return inet && count;
}

// "INET.CONTROLLER=off", "...=hold:DEGREES" or "...=ramp:DEGREES:DEGREES_PER_SECOND".
bool OptionReader::TakeOven(std::string_view value) {
  const Halves halves = CutAt(value, '=');
  const Halves place = CutAt(halves.first, '.');
  const auto inet = ParseInet(place.first);
  const auto controller = ParseNumber<int>(place.second.value_or(""), 1, kControllerCount);
  const auto words = SplitAt(halves.second.value_or(""), ':');
  if (!inet || !controller) {
    return false;
  }
  OvenOption oven{*inet, {}};
  oven.start.controller = *controller;
  if (words.size() == 1 && words[0] == "off") {
    options_.ovens.push_back(oven);
    return true;
  }
  const bool ramp = words.size() == 3 && words[0] == "ramp";
  if (!ramp && !(words.size() == 2 && words[0] == "hold")) {
    return false;
  }
  const auto target = ParseNumber<double>(words[1], 0.0, 1000.0);
  // Register I cannot hold a slower ramp: it would stand still.
  const auto rate = ramp ? ParseNumber<double>(words[2], kIncrementUnit, 1.0) : std::optional(0.0);
  if (!target || !rate) {
    return false;
  }
  oven.start.kind = ramp ? OvenStart::Kind::kRamp : OvenStart::Kind::kHold;
  oven.start.target = *target;
  oven.start.rate = *rate;
  options_.ovens.push_back(oven);
  return true;
}

bool OptionReader::TakeClimb(std::string_view value) {
  const Halves halves = CutAt(value, '=');
  const auto inet = ParseInet(halves.first);
  const auto rate = ParseNumber<double>(halves.second.value_or(""), 0.0001, 100.0);
  if (inet && rate) {
    options_.climbs.push_back({*inet, *rate});
  }
  return inet && rate;
}

// "INET=SECONDS" or "INET.INPUT=SECONDS".
bool OptionReader::TakeSampling(std::string_view value) {
  const Halves halves = CutAt(value, '=');
  const Halves place = CutAt(halves.first, '.');
  const auto inet = ParseInet(place.first);
  const auto seconds = ParseNumber<int>(halves.second.value_or(""), 1, 3600);
  SamplingOption sampling;
  if (place.second) {
    sampling.input = ParseNumber<int>(*place.second, 0, kInputCount - 1);
  }
  if (!inet || !seconds || (place.second && !sampling.input)) {
    return false;
  }
  sampling.inet = *inet;
  sampling.seconds = *seconds;
  options_.sampling.push_back(sampling);
  return true;
}

bool OptionReader::TakeOrder(std::string_view value) {
  const Target target = TargetOf(value);
  const auto order = OrderNamed(target.value);
  if (target.inet && order) {
    fleet_.orders.emplace_back(*target.inet, *order);
  }
  return target.inet && order;
}

bool OptionReader::TakeDistance(std::string_view value) {
  const Target target = TargetOf(value);
  const auto distance =
      ParseNumber<int>(target.value, 0, static_cast<int>(kWidestDistance.count()));
  if (target.inet && distance) {
    fleet_.distances.emplace_back(*target.inet, *distance);
  }
  return target.inet && distance;
}

bool OptionReader::TakeBacklog(std::string_view value) {
  const Halves halves = CutAt(value, '=');
  const auto inet = ParseInet(halves.first);
  const auto sets = ParseNumber<int>(halves.second.value_or(""), 1, SampleBuffer::kCapacity);
  if (inet && sets) {
    options_.backlog.push_back({*inet, *sets});
  }
  return inet && sets;
}

// "NAME", "NAME=LEVEL", each with "INET:" in front for a single instrument.
bool OptionReader::TakeFault(std::string_view value) {
  const Target target = TargetOf(value);
  const Halves setting = CutAt(target.value, '=');
  const auto fault = FaultNamed(setting.first);
  if (!target.inet || !fault) {
    return false;
  }
  const auto level = ParseLevel(*fault, setting.second.value_or("on"));
  if (level) {
    options_.faults.push_back({*target.inet, *fault, *level});
  }
  return level.has_value();
}

// "TEST=RESULT", with "INET:" in front for a single instrument.
bool OptionReader::TakeTest(std::string_view value) {
  const Target target = TargetOf(value);
  const Halves setting = CutAt(target.value, '=');
  const auto test = TestNamed(setting.first);
  const auto result = ParseTestResult(setting.second.value_or(""));
  if (target.inet && test && result) {
    options_.tests.push_back({*target.inet, *test, *result});
  }
  return target.inet && test && result;
}

bool OptionReader::TakeLineSpeed(std::string_view value) {
  fleet_.baud = value == "none" ? std::optional(0) : ParseNumber<int>(value, 300, 115200);
  return fleet_.baud.has_value();
}

bool OptionReader::TakeSpeedup(std::string_view value) {
  const auto speedup = ParseNumber<double>(value, 1.0, kHighestSpeedup);
  options_.speedup = speedup.value_or(1.0);
  return speedup.has_value();
}

bool OptionReader::TakeSeed(std::string_view value) {
  const auto seed = ParseNumber<std::uint64_t>(value, 0, 1'000'000'000);
  fleet_.seed = seed.value_or(1);
  return seed.has_value();
}

bool OptionReader::TakeDrift(std::string_view value) {
  const auto steps = ParseNumber<int>(value, -kGreatestDrift, kGreatestDrift);
  fleet_.drift = steps.value_or(0);
  return steps.has_value();
}

bool OptionReader::TakeAmbient(std::string_view value) {
  const auto ambient = ParseNumber<double>(value, -40.0, 60.0);
  fleet_.ambient = ambient.value_or(22.0);
  return ambient.has_value();
}

Options OptionReader::Finish() {
  for (const int inet : fleet_.numbers) {
    InstrumentSettings settings;
    settings.inet = inet;
    settings.fast = fleet_.fast.contains(inet);
    settings.ram_test_clears = fleet_.ram_test_clears.contains(inet);
    settings.seed = fleet_.seed;
    settings.drift = fleet_.drift;
    settings.ambient = fleet_.ambient;
    settings.host_pace = std::max(1.0, kHostSequence * options_.speedup);
    for (const auto& [owner, count] : fleet_.ovens) {
      settings.ovens = owner == inet ? count : settings.ovens;
    }
    for (const auto& [owner, order] : fleet_.orders) {
      settings.scan.order = owner == inet || owner == 0 ? order : settings.scan.order;
    }
    for (const auto& [owner, distance] : fleet_.distances) {
      settings.scan.distance = owner == inet || owner == 0 ? distance : settings.scan.distance;
    }
    options_.instruments.push_back(settings);
  }
  for (OvenOption& oven : options_.ovens) {
    oven.start.warm = fleet_.warm;
  }
  options_.baud = fleet_.baud.value_or(options_.mode == LineMode::kDirect ? 4800 : 9600);
  return options_;
}

// "--send PATH COMMAND...": the words are joined by blanks.
std::optional<Options> ParseClient(const std::vector<std::string>& arguments, std::string& error) {
  if (arguments.size() < 3) {
    error = "--send needs the path of the control socket and a command";
    return std::nullopt;
  }
  Options options;
  options.control_path = arguments[1];
  std::string command = arguments[2];
  for (std::size_t i = 3; i < arguments.size(); ++i) {
    command += ' ' + arguments[i];
  }
  options.command = command;
  return options;
}

bool AllThere(const Options& options, std::string& error) {
  std::set<int> there;
  for (const InstrumentSettings& settings : options.instruments) {
    there.insert(settings.inet);
  }
  std::vector<int> named;
  for (const auto& oven : options.ovens) {
    named.push_back(oven.inet);
  }
  for (const auto& climb : options.climbs) {
    named.push_back(climb.inet);
  }
  for (const auto& sampling : options.sampling) {
    named.push_back(sampling.inet);
  }
  for (const auto& backlog : options.backlog) {
    named.push_back(backlog.inet);
  }
  for (const auto& fault : options.faults) {
    if (fault.inet != 0) {
      named.push_back(fault.inet);
    }
  }
  for (const auto& test : options.tests) {
    if (test.inet != 0) {
      named.push_back(test.inet);
    }
  }
  for (const int inet : named) {
    if (!there.contains(inet)) {
      error = "there is no instrument " + std::to_string(inet);
      return false;
    }
  }
  return true;
}

// An instrument takes no sampling time into which the inputs of a set do not fit.
bool AllFit(const Options& options, std::string& error) {
  for (const SamplingOption& sampling : options.sampling) {
    const auto owner = std::find_if(
        options.instruments.begin(), options.instruments.end(),
        [&](const InstrumentSettings& settings) { return settings.inet == sampling.inet; });
    if (!FitsInto(owner->scan, std::chrono::seconds(sampling.seconds))) {
      error = "the inputs of instrument " + std::to_string(sampling.inet) + " are sampled within " +
              std::to_string(WidthOf(owner->scan).count()) + " ms, which does not fit into " +
              std::to_string(sampling.seconds) + " s";
      return false;
    }
  }
  return true;
}

}  // namespace

std::optional<Options> ParseOptions(const std::vector<std::string>& arguments, std::string& error) {
  if (!arguments.empty() && arguments[0] == "--send") {
    return ParseClient(arguments, error);
  }
  OptionReader reader;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string& name = arguments[i];
    if (name == "--warm" || name == "--unplugged" || name == "--help") {
      reader.TakeFlag(name);
      continue;
    }
    const bool has_value = i + 1 < arguments.size();
    const std::string value = has_value ? arguments[i + 1] : std::string();
    if (!reader.Take(name, value)) {
      error = "not understood: " + name + (has_value ? " " + value : "");
      return std::nullopt;
    }
    ++i;
  }
  Options options = reader.Finish();
  if (!AllThere(options, error) || !AllFit(options, error)) {
    return std::nullopt;
  }
  return options;
}

const char* HelpText() {
  return R"(tavrel-instrument: a line of one to six virtual instruments on a pseudo-terminal

  --mode direct|plugin        kind of line (direct)
  --link PATH                 symbolic link to the pseudo-terminal, such as DIR/COM1
  --instruments N             instruments 1..N (1)
  --inet 1,3                  these instruments instead
  --fast 2[,3]                these instruments are fast: S counts seconds
  --ovens INET=N              number of ovens of an instrument, 1..4 (4)
  --oven INET.C=STATE         off, hold:DEGREES or ramp:DEGREES:DEGREES_PER_SECOND
  --climb INET=RATE           sensors get warmer by RATE degrees a second, whatever the ovens do
  --warm                      ovens begin at their setpoint, ramps on their way
  --start-temp DEGREES        temperature of the room and of cold ovens (22)
  --sample INET[.K]=SECONDS   inputs 1..15 (or K alone) sample from the start
  --sampling-order [INET:]ORDER   together, ascending, descending or random (together)
  --sampling-distance [INET:]MS   from one input to the next, 0..500 ms (0)
  --backlog INET=SETS         run until each sampled input holds so many sets, then go live
  --speedup N                 the instruments' time runs N times faster (1)
  --line-speed none|BAUD      time that characters take (4800 direct, 9600 plug-in)
  --seed N                    noise and faults (1)
  --drift STEPS               values are wrong by so many steps at first, -100..100 (0)
  --fault [INET:]NAME[=LEVEL] a fault from the start
  --selftest [INET:]TEST=RESULT   what the test ram, eprom or watchdog gives; hang: it never ends
  --ram-test-clears 2[,3]     the test of the RAM costs these instruments all stored samples
  --unplugged                 no pseudo-terminal until the command plug
  --control PATH              unix socket for commands while it runs
  --log FILE                  every byte on the line
  --truth FILE                every sample and what became of it
  --send PATH COMMAND         client: send one command to a control socket

Faults: silence, lost-request, lost-reply, late-reply, byte-by-byte, wrong-length, cut-value,
non-hex, refusal, stale, garbage, no-value. LEVEL: on, off, a probability, or milliseconds for
late-reply and byte-by-byte. See instrument/README.md for the control commands and the files.
)";
}

}  // namespace instrument
