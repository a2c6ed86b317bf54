#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
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

// The first test of an installation is there. Its window is there a moment before.
bool HasFirstTest(const std::string& directory) {
  namespace fs = std::filesystem;
  const auto is_test = [](const fs::directory_entry& entry) {
    return entry.path().extension() == ".NEW";
  };
  const fs::recursive_directory_iterator all(directory);
  return std::any_of(begin(all), end(all), is_test);
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
  ASSERT_TRUE(WaitUntil([&program] { return HasFirstTest(program.Directory()); },
                        std::chrono::seconds(10)));
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
