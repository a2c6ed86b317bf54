#include "platform/port_description.h"

#include <gtest/gtest.h>

#include "tests/support/adapter_tree.h"
#include "tests/support/pseudo_terminal.h"

namespace tavrel {
namespace {

// Ports of a machine that a test lays out; each of them leads to a terminal of its own.
class DescribedPort : public testing::Test {
 protected:
  [[nodiscard]] PortDescription Describe(int number) const {
    return DescribePort(number, home.Path(), tree.Places());
  }
  AdapterTree tree;
  TemporaryDirectory home;
  PseudoTerminal terminal;
};

TEST_F(DescribedPort, NamesMakerAndSerialNumberOfTheAdapter) {
  for (int number = 5; number <= 8; ++number) {
    const std::string name = "ttyUSB" + std::to_string(number - 5);
    TestAdapter adapter{"A9007X" + std::to_string(number)};
    adapter.Maker = "FTDI";
    adapter.Name = "FT232R USB UART";
    tree.Plug(name, terminal.Device(), adapter);
    const PortDescription port = Describe(number);
    EXPECT_TRUE(port.IsThere);
    EXPECT_EQ(port.Device, terminal.Device());
    EXPECT_EQ(port.Maker, "FTDI");
    EXPECT_EQ(port.Name, "FT232R USB UART");
    EXPECT_EQ(port.Serial, "A9007X" + std::to_string(number));
    tree.PullOut(name);
    EXPECT_FALSE(Describe(number).IsThere);
    EXPECT_EQ(Describe(number).Device, tree.Device(name));
    EXPECT_EQ(Describe(number).Maker, "");
  }
}

TEST_F(DescribedPort, OfAnAdapterThatTellsNothingHasEmptyTexts) {
  tree.Plug("ttyACM0", terminal.Device(), {""});
  const PortDescription port = Describe(9);
  EXPECT_TRUE(port.IsThere);
  EXPECT_EQ(port.Maker + port.Name + port.Serial, "");
}

TEST_F(DescribedPort, OfTheMachineIsThereOnlyIfTheSystemHasFoundItsElectronics) {
  tree.BuildIn("ttyS0", terminal.Device(), "0");
  EXPECT_FALSE(Describe(1).IsThere);
  tree.BuildIn("ttyS0", terminal.Device(), "4");
  EXPECT_TRUE(Describe(1).IsThere);
  EXPECT_EQ(Describe(1).Maker, "");
}

TEST_F(DescribedPort, FollowsALinkThatWasLaidByHand) {
  const std::string link = home.File("COM12");
  std::filesystem::create_symlink(terminal.Device(), link);
  EXPECT_TRUE(Describe(12).IsThere);
  EXPECT_EQ(Describe(12).Device, terminal.Device());
  std::filesystem::remove(link);
  std::filesystem::create_symlink("/nowhere", link);
  EXPECT_FALSE(Describe(12).IsThere);
  EXPECT_EQ(Describe(12).Device, link);
}

TEST_F(DescribedPort, OfNoNumberIsNotThere) {
  for (const int number : {-1, 0, 31}) {
    EXPECT_FALSE(Describe(number).IsThere);
    EXPECT_EQ(Describe(number).Device, "");
  }
}

}  // namespace
}  // namespace tavrel
