#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <string>
#include <vector>

#include "tests/e2e/process.h"

namespace tavrel {
namespace {

using std::chrono::seconds;

// The program where there is no display, as in a script.
class CommandLine : public testing::Test {
 protected:
  CommandLine() {
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
      unsetenv(name);
    }
  }
  // Its first line for one argument, and its exit status.
  static std::pair<std::string, int> Ask(const std::string& argument) {
    Process program({TAVREL_PROGRAM, argument});
    std::string line = program.ReadLine(seconds(10));
    return {line, program.Wait(seconds(10))};
  }
};

TEST_F(CommandLine, SaysTheVersion) {
  EXPECT_EQ(Ask("--version"), (std::pair<std::string, int>("tavrel 6.1", 0)));
}

TEST_F(CommandLine, SaysHowTheProgramIsCalled) {
  EXPECT_EQ(Ask("--help"),
            (std::pair<std::string, int>("usage: tavrel [--help | --version | FILE]", 0)));
}

TEST_F(CommandLine, RefusesAnOptionThatIsNotKnown) {
  EXPECT_EQ(Ask("--record"), (std::pair<std::string, int>("", 2)));
}

}  // namespace
}  // namespace tavrel
