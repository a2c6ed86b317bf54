#include "platform/port_lock.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <filesystem>

#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

bool Holds(const std::vector<std::string>& all, const char* one) {
  return std::find(all.begin(), all.end(), one) != all.end();
}

TEST(PortLockFiles, StandUnderEachNameOfTheDevice) {
  const auto files =
      PortLockFiles({"/home/maria/COM5", "/dev/serial/by-id/adapter", "/dev/ttyUSB0"}, "/dev");
  EXPECT_TRUE(Holds(files, "/var/lock/LCK..ttyUSB0"));
  EXPECT_TRUE(Holds(files, "/var/lock/lockdev/LCK..ttyUSB0"));
  EXPECT_TRUE(Holds(files, "/run/lock/LCK..adapter"));
  EXPECT_TRUE(Holds(files, "/run/lock/LCK..serial_by-id_adapter"));
  EXPECT_FALSE(Holds(files, "/var/lock/LCK..COM5"));
}

TEST(PortLockFiles, AreNoneForAFileElsewhere) {
  EXPECT_TRUE(PortLockFiles({"/home/maria/COM5"}, "/dev").empty());
}

TEST(PortLock, IsFreeWhereNothingStandsOrNoDirectoryIs) {
  const TemporaryDirectory home;
  EXPECT_EQ(LookAtPortLock(home.File("LCK..x")).State, LockState::kFree);
  EXPECT_EQ(LookAtPortLock(home.File("missing/LCK..x")).State, LockState::kFree);
  EXPECT_TRUE(RemovePortLock(home.File("LCK..x")));
}

struct LockText {
  std::string text;
  LockState state;
  pid_t process;
};

// Process 1 lives always; no system has a number as high as the other one.
TEST(PortLock, IsReadInEveryForm) {
  constexpr pid_t kNobody = 999999999;
  const std::string nobody = std::to_string(kNobody);
  std::string own(sizeof(pid_t), '\0');
  const pid_t first = 1;
  std::memcpy(own.data(), &first, sizeof first);
  const std::vector<LockText> texts = {
      {"1\n", LockState::kHeld, 1},
      {"         1", LockState::kHeld, 1},
      {"1 program root\n", LockState::kHeld, 1},
      {"1\r\n", LockState::kHeld, 1},
      {own, LockState::kHeld, 1},
      {"1x\n", LockState::kUnclear, 0},
      {"0\n", LockState::kUnclear, 0},
      {"-5\n", LockState::kUnclear, 0},
      {"text", LockState::kUnclear, 0},
      {"99999999999999999999\n", LockState::kUnclear, 0},
      {nobody + "\n", LockState::kLeft, kNobody},
      {nobody, LockState::kLeft, kNobody},
      {std::to_string(getpid()) + "\n", LockState::kLeft, getpid()},
      {"1\nprogram\nhost\n", LockState::kLeft, 1},
      {"1\n\n", LockState::kHeld, 1},
  };
  for (const LockText& each : texts) {
    const TemporaryDirectory home;
    home.Write("LCK..x", each.text);
    const PortLock lock = LookAtPortLock(home.File("LCK..x"));
    EXPECT_EQ(lock.State, each.state) << each.text;
    EXPECT_EQ(lock.Process, each.process) << each.text;
    EXPECT_EQ(lock.Program.empty(), each.state != LockState::kHeld) << each.text;
    EXPECT_EQ(RemovePortLock(home.File("LCK..x")), each.state == LockState::kLeft) << each.text;
    EXPECT_EQ(home.Exists("LCK..x"), each.state != LockState::kLeft) << each.text;
  }
}

// The kernel's lock tells more than what stands in the file.
TEST(PortLock, OfTheKernelCountsWhateverTheFileSays) {
  for (const char* text : {"999999999\n", "999999999\nprogram\nhost\n", "text", "1\n"}) {
    const TemporaryDirectory home;
    home.Write("LCK..x", text);
    const int handle = open(home.File("LCK..x").c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(flock(handle, LOCK_EX | LOCK_NB), 0);
    EXPECT_EQ(LookAtPortLock(home.File("LCK..x")).State, LockState::kHeld) << text;
    EXPECT_FALSE(RemovePortLock(home.File("LCK..x")));
    close(handle);
    EXPECT_NE(LookAtPortLock(home.File("LCK..x")).State, LockState::kFree) << text;
  }
}

// A young one may just be being written.
TEST(PortLock, ThatIsEmptyAndOldWasLeft) {
  const TemporaryDirectory home;
  home.Write("LCK..x", "");
  std::filesystem::last_write_time(
      home.File("LCK..x"), std::filesystem::file_time_type::clock::now() - std::chrono::hours(1));
  EXPECT_EQ(LookAtPortLock(home.File("LCK..x")).State, LockState::kLeft);
  EXPECT_TRUE(RemovePortLock(home.File("LCK..x")));
  EXPECT_FALSE(home.Exists("LCK..x"));
}

TEST(PortLock, OfALivingProgramIsNotRemoved) {
  const TemporaryDirectory home;
  home.Write("LCK..x", "         1\n");
  EXPECT_EQ(LookAtPortLock(home.File("LCK..x")).State, LockState::kHeld);
  EXPECT_EQ(LookAtPortLock(home.File("LCK..x")).Process, 1);
  EXPECT_FALSE(RemovePortLock(home.File("LCK..x")));
  EXPECT_TRUE(home.Exists("LCK..x"));
}

TEST(PortLock, IsTriedWhereNoneStandsYetAndLeavesNothing) {
  const TemporaryDirectory home;
  EXPECT_EQ(WhyNoPortLock(home.File("LCK..x")), "");
  EXPECT_FALSE(home.Exists("LCK..x"));
  EXPECT_EQ(WhyNoPortLock(home.File("missing/LCK..x")), "No such file or directory");
}

TEST(PortLock, ThatStandsIsLeftAsItIsWhenOneIsTried) {
  const TemporaryDirectory home;
  home.Write("LCK..x", "      1234\n");
  EXPECT_EQ(WhyNoPortLock(home.File("LCK..x")), "");
  EXPECT_EQ(home.Read("LCK..x"), "      1234\n");
}

}  // namespace
}  // namespace tavrel
