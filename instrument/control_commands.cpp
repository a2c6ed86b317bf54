#include "instrument/control_commands.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <sstream>

#include "instrument/numbers.h"

namespace instrument {
namespace {

constexpr int kLongestPass = 40 * 24 * 3600;  // seconds
constexpr const char* kNoInstrument = "no such instrument";

std::vector<std::string_view> WordsOf(std::string_view text) {
  std::vector<std::string_view> words;
  constexpr std::string_view kBlanks = " \t\r";
  auto begin = text.find_first_not_of(kBlanks);
  while (begin != std::string_view::npos) {
    const auto end = std::min(text.find_first_of(kBlanks, begin), text.size());
    words.push_back(text.substr(begin, end - begin));
    begin = text.find_first_not_of(kBlanks, end);
  }
  return words;
}

std::optional<Connection> ParseConnection(const std::vector<std::string_view>& words) {
  using Kind = Connection::Kind;
  if (words.size() == 1) {
    const std::string_view word = words[0];
    const bool known = word == "oven" || word == "short" || word == "break";
    const Kind kind = word == "short" ? Kind::kShorted : Kind::kSensor;
    return known ? std::optional(Connection{word == "break" ? Kind::kBroken : kind, 0.0})
                 : std::nullopt;
  }
  const bool level = words.size() == 2 && words[0] == "level";
  if (words.size() != 2 || !(level || words[0] == "temp")) {
    return std::nullopt;
  }
  const auto value = ParseNumber<double>(words[1], -32768.0, 32767.0);
  return value ? std::optional(Connection{level ? Kind::kLevel : Kind::kTemperature, *value})
               : std::nullopt;
}

}  // namespace

std::vector<int> ControlCommands::Targets(std::string_view word) {
  if (word == "all") {
    return line_.Numbers();
  }
  const auto inet = ParseNumber<int>(word, 1, kHighestInet);
  return inet && line_.Find(*inet) != nullptr ? std::vector<int>{*inet} : std::vector<int>{};
}

// "fault TARGET NAME [LEVEL [times N]]" or "fault TARGET none".
std::string ControlCommands::DoFault(const Words& words) {
  if (words.size() < 3) {
    return "fault TARGET NAME [LEVEL [times N]]";
  }
  const auto targets = Targets(words[1]);
  if (targets.empty()) {
    return kNoInstrument;
  }
  if (words[2] == "none" && words.size() == 3) {
    for (const int inet : targets) {
      line_.FaultsOf(inet)->Clear();
    }
    return {};
  }
  const auto fault = FaultNamed(words[2]);
  auto level = fault ? ParseLevel(*fault, words.size() > 3 ? words[3] : "on") : std::nullopt;
  if (!level) {
    return "no such fault or level";
  }
  if (words.size() > 4) {
    const bool said = words.size() == 6 && words[4] == "times";
    level->times = said ? ParseNumber<int>(words[5], 1, 1'000'000) : std::nullopt;
    if (!level->times) {
      return "times N, N from 1";
    }
  }
  for (const int inet : targets) {
    line_.FaultsOf(inet)->Set(*fault, *level);
  }
  return {};
}

std::string ControlCommands::DoRestart(const Words& words) {
  const auto targets = words.size() == 2 ? Targets(words[1]) : std::vector<int>{};
  for (const int inet : targets) {
    line_.Find(inet)->Restart();
  }
  return targets.empty() ? kNoInstrument : std::string();
}

// "attach INET [fast]".
std::string ControlCommands::DoAttach(const Words& words) {
  const auto inet = words.size() > 1 ? ParseNumber<int>(words[1], 1, kHighestInet) : std::nullopt;
  const bool is_fast = words.size() == 3 && words[2] == "fast";
  if (!inet || words.size() > 3 || (words.size() == 3 && !is_fast)) {
    return "attach INET [fast], INET 1..6";
  }
  return line_.Attach(*inet, is_fast) ? std::string() : "no room for more instruments";
}

// "detach INET".
std::string ControlCommands::DoDetach(const Words& words) {
  const auto inet = words.size() == 2 ? ParseNumber<int>(words[1], 1, kHighestInet) : std::nullopt;
  return inet && line_.Detach(*inet) ? std::string() : kNoInstrument;
}

std::string ControlCommands::DoFill(const Words& words) {
  const auto targets = words.size() == 3 ? Targets(words[1]) : std::vector<int>{};
  const auto sets =
      words.size() == 3 ? ParseNumber<int>(words[2], 1, SampleBuffer::kCapacity) : std::nullopt;
  if (targets.empty() || !sets) {
    return "fill TARGET SETS, SETS 1..896";
  }
  for (const int inet : targets) {
    if (!line_.Find(inet)->Fill(*sets)) {
      return "instrument " + std::to_string(inet) + " samples nothing or would take too long";
    }
  }
  return {};
}

std::string ControlCommands::DoPass(const Words& words) {
  const auto targets = words.size() == 3 ? Targets(words[1]) : std::vector<int>{};
  const auto time = words.size() == 3 ? ParseNumber<int>(words[2], 1, kLongestPass) : std::nullopt;
  if (targets.empty() || !time) {
    return "pass TARGET SECONDS, SECONDS 1..3456000";
  }
  for (const int inet : targets) {
    line_.Find(inet)->Pass(std::chrono::seconds(*time));
  }
  return {};
}

// "sensor INET.INPUT oven|short|break|temp DEGREES|level STEPS".
std::string ControlCommands::DoSensor(const Words& words) {
  const auto point = words.size() > 1 ? words[1].find('.') : std::string_view::npos;
  if (point == std::string_view::npos) {
    return "sensor INET.INPUT oven|short|break|temp DEGREES|level STEPS";
  }
  const auto targets = Targets(words[1].substr(0, point));
  const auto input = ParseNumber<int>(words[1].substr(point + 1), 0, kInputCount - 1);
  const auto connection = ParseConnection({words.begin() + 2, words.end()});
  if (targets.empty() || !input || !connection) {
    return "no such instrument, input or connection";
  }
  for (const int inet : targets) {
    line_.Find(inet)->Connect(*input, *connection);
  }
  return {};
}

// "selftest TARGET ram|eprom|watchdog RESULT|hang".
std::string ControlCommands::DoTestResult(const Words& words) {
  const auto targets = words.size() == 4 ? Targets(words[1]) : std::vector<int>{};
  const auto test = words.size() == 4 ? TestNamed(words[2]) : std::nullopt;
  const auto result = words.size() == 4 ? ParseTestResult(words[3]) : std::nullopt;
  if (targets.empty() || !test || !result) {
    return "selftest TARGET ram|eprom|watchdog RESULT|hang";
  }
  for (const int inet : targets) {
    line_.Find(inet)->SetTestResult(*test, *result);
  }
  return {};
}

namespace {

// Of each controller the power at its heater output in percent, whether its safety contact is
// closed, and the power that reaches the oven.
std::string OutputsOf(const Instrument& instrument) {
  std::ostringstream outputs;
  std::ostringstream contacts;
  std::ostringstream heat;
  for (int number = 1; number <= kControllerCount; ++number) {
    const Controller& controller = instrument.ControllerOf(number);
    outputs << ' ' << std::lround(controller.Output());
    contacts << (controller.IsContactClosed() ? " closed" : " open");
    heat << ' ' << std::lround(controller.HeaterPower());
  }
  return " outputs" + outputs.str() + " contacts" + contacts.str() + " heat" + heat.str();
}

}  // namespace

std::string ControlCommands::Status() {
  std::ostringstream text;
  const std::string port = switchboard_.PortPath();
  text << "line " << (port.empty() ? "unplugged" : port) << '\n';
  for (const int inet : line_.Numbers()) {
    Instrument& instrument = *line_.Find(inet);
    text << "instrument " << inet << " time " << std::fixed << std::setprecision(2)
         << instrument.Seconds() << " stored " << instrument.LongestSeries() << " controllers";
    for (int controller = 1; controller <= kControllerCount; ++controller) {
      text << ' ' << instrument.ControllerStatusOf(controller);
    }
    text << OutputsOf(instrument);
    const std::string faults = line_.FaultsOf(inet)->Text();
    text << " faults " << (faults.empty() ? "none" : faults) << '\n';
  }
  return text.str();
}

std::string ControlCommands::Dispatch(const Words& words, std::string& answer) {
  const std::string_view verb = words.empty() ? std::string_view() : words[0];
  if (verb == "fault") {
    return DoFault(words);
  }
  if (verb == "restart") {
    return DoRestart(words);
  }
  if (verb == "attach") {
    return DoAttach(words);
  }
  if (verb == "detach") {
    return DoDetach(words);
  }
  if (verb == "fill") {
    return DoFill(words);
  }
  if (verb == "pass") {
    return DoPass(words);
  }
  if (verb == "sensor") {
    return DoSensor(words);
  }
  if (verb == "selftest") {
    return DoTestResult(words);
  }
  std::string error;
  if (verb == "status") {
    answer = Status();
  } else if (verb == "unplug") {
    switchboard_.Unplug();
  } else if (verb == "plug") {
    static_cast<void>(switchboard_.Plug(error));
  } else if (verb == "rest") {
    error = switchboard_.IsAtRest() ? "" : "the line is in use";
  } else if (verb == "quit") {
    switchboard_.Quit();
  } else {
    error = "unknown command";
  }
  return error;
}

std::string ControlCommands::Execute(const std::string& text) {
  std::string answer;
  const std::string error = Dispatch(WordsOf(text), answer);
  return error.empty() ? answer + "ok\n" : "error: " + error + '\n';
}

}  // namespace instrument
