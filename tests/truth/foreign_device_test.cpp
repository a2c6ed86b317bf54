#include "tests/truth/foreign_device.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "tests/e2e/installed_program.h"

namespace tavrel {
namespace {

TEST(ForeignDevice, HearsWhatIsSentToItsName) {
  const InstalledProgram program;
  std::string name;
  {
    ForeignDevice device;
    if (!device.LayDown(program.Directory(), {"--line-speed", "none"})) {
      EXPECT_NE(access("/dev", W_OK), 0) << "with the rights for it the name has to be there";
      return;
    }
    name = "/dev/COM" + std::to_string(device.Port());
    EXPECT_EQ(device.Heard(), 0);
    const int line = open(name.c_str(), O_RDWR | O_NOCTTY);
    ASSERT_GE(line, 0);
    EXPECT_EQ(write(line, "W01?W02?", 8), 8);
    EXPECT_TRUE(WaitUntil([&] { return device.Heard() == 2; }, std::chrono::seconds(10)));
    close(line);
  }
  EXPECT_FALSE(std::filesystem::is_symlink(name));
}

}  // namespace
}  // namespace tavrel
