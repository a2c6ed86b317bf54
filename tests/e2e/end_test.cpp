#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "tests/e2e/installed_program.h"

namespace tavrel {
namespace {

// The process has ended, whether or not somebody has asked how.
bool HasEnded(pid_t pid) {
  std::ifstream status("/proc/" + std::to_string(pid) + "/stat");
  std::string line;
  return !std::getline(status, line) || line.find(") Z ") != std::string::npos;
}

// The first start has made a test, which the settings have to name. They cannot be saved: a
// directory stands in their place. Nobody is there to read a box about that.
TEST(EndBySignal, TellsOnTheErrorOutputThatTheSettingsCannotBeSaved) {
  testing::internal::CaptureStderr();  // that of the program, too
  const VirtualScreen screen;
  ASSERT_TRUE(screen.IsUp());
  InstalledProgram program;
  ASSERT_TRUE(program.Prepare({"COMMPORT=----", "COMMODE=0"}));
  ASSERT_TRUE(program.Start());
  const std::string settings = program.Directory() + "/TAVREL.USR";
  std::filesystem::remove(settings);
  std::filesystem::create_directories(settings + "/in the way");
  program.Signal(SIGTERM);
  EXPECT_TRUE(WaitUntil([&program] { return HasEnded(program.Pid()); }, std::chrono::seconds(1)));
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              testing::HasSubstr("tavrel: TAVREL.USR: Cannot write file.\n"));
}

}  // namespace
}  // namespace tavrel
