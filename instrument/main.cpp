#include <cstdio>
#include <string>
#include <vector>

#include "instrument/app.h"
#include "instrument/control_socket.h"
#include "instrument/options.h"

namespace {

int Fail(const std::string& sentence) {
  std::fprintf(stderr, "tavrel-instrument: %s\n", sentence.c_str());
  return 1;
}

int SendAndPrint(const instrument::Options& options) {
  std::string answer;
  const bool good = instrument::SendCommand(options.control_path, *options.command, answer);
  if (!good) {
    return Fail(answer);
  }
  std::printf("%sok\n", answer.c_str());
  return 0;
}

int RunLine(const instrument::Options& options) {
  instrument::App app(options);
  std::string error;
  if (!app.Start(error)) {
    return Fail(error);
  }
  const std::string port = app.PortPath();
  std::printf("ready %s\n", port.empty() ? "unplugged" : port.c_str());
  std::fflush(stdout);
  app.Run();
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  std::string error;
  const auto options = instrument::ParseOptions(arguments, error);
  if (!options) {
    return Fail(error + ", see --help");
  }
  if (options->help) {
    std::fputs(instrument::HelpText(), stdout);
    return 0;
  }
  return options->command ? SendAndPrint(*options) : RunLine(*options);
}
