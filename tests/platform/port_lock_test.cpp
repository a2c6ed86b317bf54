#include "platform/port_lock.h"

#include <gtest/gtest.h>

#include <algorithm>

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

TEST(PortLock, OfALivingProgramIsNotRemoved) {
  const TemporaryDirectory home;
  home.Write("LCK..x", "         1\n");
  EXPECT_EQ(LookAtPortLock(home.File("LCK..x")).State, LockState::kHeld);
  EXPECT_EQ(LookAtPortLock(home.File("LCK..x")).Process, 1);
  EXPECT_FALSE(RemovePortLock(home.File("LCK..x")));
  EXPECT_TRUE(home.Exists("LCK..x"));
}

}  // namespace
}  // namespace tavrel
