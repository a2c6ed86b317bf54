#include "platform/known_device.h"

#include <gtest/gtest.h>

#include "tests/support/adapter_tree.h"

namespace tavrel {
namespace {

constexpr unsigned kUsbSerial = 188;

class Known : public testing::Test {
 protected:
  // Terminal ttyUSB`number`.
  static std::string Name(int number) { return "ttyUSB" + std::to_string(number); }
  static dev_t Device(int number) { return makedev(kUsbSerial, static_cast<unsigned>(number)); }
  void Plug(int number, const TestAdapter& adapter) {
    tree.Plug(Name(number), Device(number), adapter);
  }
  [[nodiscard]] KnownDevice Opened(int number) const {
    return Recognise(tree.Device(Name(number)), Device(number), tree.Places());
  }
  [[nodiscard]] std::string Where(const KnownDevice& known) const {
    return WhereItIsNow(known, tree.Places());
  }

  AdapterTree tree;
  TemporaryDirectory home;
};

TEST_F(Known, AdapterIsReadFromTheSystem) {
  Plug(3, {"A50285BI", "1-2.4", "1.1", "6010", "2"});
  const auto adapter = AdapterOf(Device(3), tree.Places());
  ASSERT_TRUE(adapter);
  EXPECT_EQ(adapter->Model, "0403:6010");
  EXPECT_EQ(adapter->Serial, "A50285BI");
  EXPECT_TRUE(adapter->Place.ends_with("/usb1/1-2.4"));
  EXPECT_EQ(adapter->Outlet, "1.1/2");
  EXPECT_FALSE(AdapterOf(Device(4), tree.Places()));
}

TEST_F(Known, AdapterIsFoundByItsSerialNumberUnderAnyNameAndAtAnyPlace) {
  for (int number = 0; number < 12; ++number) {
    Plug(0, {"S1"});
    const KnownDevice known = Opened(0);
    tree.PullOut("ttyUSB0");
    EXPECT_EQ(Where(known), "");
    const std::string place = "2-" + std::to_string(number + 1);
    Plug(number, {"S1", place});
    EXPECT_EQ(Where(known), tree.Device(Name(number)));
    EXPECT_TRUE(IsSameDevice(known, Device(number), tree.Places()));
    tree.PullOut(Name(number), place);
  }
}

TEST_F(Known, AdapterWithAnotherSerialNumberUnderTheSameNameIsAnother) {
  Plug(0, {"S1"});
  const KnownDevice known = Opened(0);
  for (const char* other : {"S2", "", "S11", "s1"}) {
    tree.PullOut("ttyUSB0");
    Plug(0, {other});
    EXPECT_EQ(Where(known), "") << other;
    EXPECT_FALSE(IsSameDevice(known, Device(0), tree.Places())) << other;
  }
}

TEST_F(Known, AdapterOfAnotherModelWithTheSameSerialNumberIsAnother) {
  Plug(0, {"0001"});
  const KnownDevice known = Opened(0);
  tree.PullOut("ttyUSB0");
  Plug(0, {"0001", "1-2", "1.0", "6015"});
  EXPECT_EQ(Where(known), "");
}

TEST_F(Known, AdapterWithoutASerialNumberIsFoundAtItsPlaceOnly) {
  Plug(0, {""});
  const KnownDevice known = Opened(0);
  tree.PullOut("ttyUSB0");
  Plug(0, {"", "1-3"});
  EXPECT_EQ(Where(known), "");
  Plug(1, {""});
  EXPECT_EQ(Where(known), tree.Device("ttyUSB1"));
}

TEST_F(Known, AdapterThatSharesItsSerialNumberIsFoundAtItsPlaceOnly) {
  Plug(0, {"0001"});
  Plug(1, {"0001", "1-3"});
  const KnownDevice known = Opened(0);
  EXPECT_FALSE(known.HasItsOwnSerial);
  tree.PullOut("ttyUSB0");
  EXPECT_EQ(Where(known), "");
  EXPECT_FALSE(IsSameDevice(known, Device(1), tree.Places()));
  Plug(2, {"0001"});
  EXPECT_EQ(Where(known), tree.Device("ttyUSB2"));
}

TEST_F(Known, AdapterIsTheOneAtItsPlaceIfOthersCameWithItsNumber) {
  Plug(0, {"0001"});
  const KnownDevice known = Opened(0);
  EXPECT_TRUE(known.HasItsOwnSerial);
  tree.PullOut("ttyUSB0");
  Plug(4, {"0001", "1-4"});
  Plug(5, {"0001", "1-5"});
  EXPECT_EQ(Where(known), "");
  Plug(6, {"0001"});
  EXPECT_EQ(Where(known), tree.Device("ttyUSB6"));
}

TEST_F(Known, AdapterIsToldPortByPort) {
  Plug(0, {"S1"});
  Plug(1, {"S1", "1-2", "1.1"});
  Plug(2, {"S1", "1-2", "1.0", "6001", "1"});
  for (int number = 0; number < 3; ++number) {
    const KnownDevice known = Opened(number);
    EXPECT_TRUE(known.HasItsOwnSerial);
    EXPECT_EQ(Where(known), tree.Device(Name(number)));
    EXPECT_FALSE(IsSameDevice(known, Device((number + 1) % 3), tree.Places()));
  }
}

TEST_F(Known, AdapterInPlaceOfAnotherDeviceIsAnother) {
  home.Write("port", "");
  const KnownDevice known = Recognise(home.File("port"), Device(0), tree.Places());
  EXPECT_FALSE(known.Plugged);
  EXPECT_EQ(Where(known), home.File("port"));
  Plug(0, {"S1"});
  EXPECT_FALSE(IsSameDevice(known, Device(0), tree.Places()));
}

TEST_F(Known, OtherDeviceIsFoundByItsNameOnly) {
  home.Write("port", "");
  std::filesystem::create_symlink(home.File("port"), home.File("COM1"));
  const KnownDevice by_link = Recognise(home.File("COM1"), Device(0), tree.Places());
  const KnownDevice itself = Recognise(home.File("port"), Device(0), tree.Places());
  EXPECT_EQ(Where(by_link), home.File("COM1"));
  std::filesystem::remove(home.File("port"));
  EXPECT_EQ(Where(by_link), "");
  EXPECT_EQ(Where(itself), "");
  std::filesystem::remove(home.File("COM1"));
  EXPECT_EQ(Where(by_link), "");
  home.Write("COM1", "");
  EXPECT_EQ(Where(by_link), "");
  std::filesystem::create_symlink(home.File("COM1"), home.File("port"));
  EXPECT_EQ(Where(itself), "");
}

}  // namespace
}  // namespace tavrel
