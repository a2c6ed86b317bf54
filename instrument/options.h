#ifndef TAVREL_INSTRUMENT_OPTIONS_H_
#define TAVREL_INSTRUMENT_OPTIONS_H_

#include <optional>
#include <string>
#include <vector>

#include "instrument/faults.h"
#include "instrument/instrument.h"
#include "instrument/telegram.h"

namespace instrument {

// Sampling from the start: one input, or all 1..15 of the instrument.
struct SamplingOption {
  int inet = 1;
  std::optional<int> input;
  int seconds = 10;
};

// --oven: how one oven begins.
struct OvenOption {
  int inet = 1;
  OvenStart start;
};

// --climb: sensors that get warmer all the time.
struct ClimbOption {
  int inet = 1;
  double rate = 0.0;  // degrees per second
};

// --backlog: sets that an instrument holds before the line goes up.
struct BacklogOption {
  int inet = 1;
  int sets = 0;
};

// --fault: a fault from the start.
struct FaultOption {
  int inet = 0;  // 0: all instruments
  Fault fault = Fault::kSilence;
  FaultLevel level;
};

// --selftest: what a test of the firmware gives.
struct TestOption {
  int inet = 0;  // 0: all instruments
  int command = SelfTest::kRam;
  SelfTest::Result result;
};

// All that the command line says.
struct Options {
  LineMode mode = LineMode::kDirect;
  std::string link_path;
  std::string control_path;
  std::string wire_log_path;
  std::string truth_path;
  std::vector<InstrumentSettings> instruments;
  double speedup = 1.0;
  int baud = 4800;  // 0: characters take no time
  std::vector<SamplingOption> sampling;
  std::vector<OvenOption> ovens;
  std::vector<ClimbOption> climbs;
  std::vector<BacklogOption> backlog;
  std::vector<FaultOption> faults;
  std::vector<TestOption> tests;
  bool unplugged = false;  // the line begins unplugged
  bool help = false;
  // Set for the client: send `command` to the control socket at `control_path` and end.
  std::optional<std::string> command;
};

// Reads the command line without the program's name. Nothing and a sentence in `error` if it
// makes no sense.
[[nodiscard]] std::optional<Options> ParseOptions(const std::vector<std::string>& arguments,
                                                  std::string& error);

[[nodiscard]] const char* HelpText();

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_OPTIONS_H_
