#include "platform/serial_names.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

class SerialDeviceTest : public testing::Test {
 protected:
  TemporaryDirectory program_;
  TemporaryDirectory devices_;

  [[nodiscard]] std::string Device(int number) const {
    return SerialDevice(number, program_.Path() + "/", devices_.Path());
  }
};

TEST_F(SerialDeviceTest, FallsBackOnTheNamesOfTheSystem) {
  EXPECT_EQ(Device(1), devices_.File("ttyS0"));
  EXPECT_EQ(Device(4), devices_.File("ttyS3"));
  EXPECT_EQ(Device(5), devices_.File("ttyUSB0"));
  EXPECT_EQ(Device(8), devices_.File("ttyUSB3"));
  EXPECT_EQ(Device(9), devices_.File("ttyACM0"));
  EXPECT_EQ(Device(10), devices_.File("ttyS9"));
  EXPECT_EQ(Device(30), devices_.File("ttyS29"));
}

TEST_F(SerialDeviceTest, HasNoneOutsideOneToThirty) {
  EXPECT_EQ(Device(0), "");
  EXPECT_EQ(Device(-1), "");
  EXPECT_EQ(Device(31), "");
}

TEST_F(SerialDeviceTest, PrefersTheProgramsDirectoryThenTheDevices) {
  devices_.Write("COM3", "");
  EXPECT_EQ(Device(3), devices_.File("COM3"));
  program_.Write("COM3", "");
  EXPECT_EQ(Device(3), program_.File("COM3"));
}

TEST_F(SerialDeviceTest, DoesNotTakeCom12ForCom1) {
  program_.Write("COM12", "");
  EXPECT_EQ(Device(1), devices_.File("ttyS0"));
  EXPECT_EQ(Device(12), program_.File("COM12"));
}

TEST_F(SerialDeviceTest, KeepsToALinkWhoseAdapterIsPulledOut) {
  std::filesystem::create_symlink("/nowhere/adapter", program_.File("COM5"));
  EXPECT_EQ(Device(5), program_.File("COM5"));
}

TEST_F(SerialDeviceTest, FindsSmallLettersBehindTheExactSpelling) {
  program_.Write("com2", "");
  EXPECT_EQ(Device(2), program_.File("com2"));
  program_.Write("COM2", "");
  EXPECT_EQ(Device(2), program_.File("COM2"));
}

TEST(SerialDevice, StandsInDevUnlessToldOtherwise) {
  const TemporaryDirectory program;
  EXPECT_TRUE(SerialDevice(30, program.Path()).starts_with("/dev/"));
}

}  // namespace
}  // namespace tavrel
