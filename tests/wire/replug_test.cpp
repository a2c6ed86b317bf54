#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/known_device_file.h"
#include "tests/support/adapter_tree.h"
#include "tests/support/pseudo_terminal.h"
#include "tests/support/wait_until.h"
#include "tests/wire/live_instrument.h"
#include "tests/wire/wire_program.h"

namespace tavrel {
namespace {

// A link over the real port. COM1 of the program's directory leads to the instruments' end `far`;
// the next name by which COM1 would be found leads to another device, `foreign`.
class Replug : public testing::Test {
 protected:
  Replug() {
    Lay("com1", foreign);
    far = PlugIn();
    link.LinkOpen({"COM1", 0, 4});
    link.ComInet = 1;
    link.ComLetter = "Y";
    link.ComIndex = 1;
  }

  void Lay(const std::string& name, const PseudoTerminal& end) const {
    std::filesystem::remove(home.File(name));
    std::filesystem::create_symlink(end.Device(), home.File(name));
  }
  std::unique_ptr<PseudoTerminal> PlugIn() const {
    auto end = std::make_unique<PseudoTerminal>();
    Lay("COM1", *end);
    return end;
  }
  void PullOut() {
    far->Vanish();
    std::filesystem::remove(home.File("COM1"));
    link.ReadReg();
    ASSERT_FALSE(link.PortOpen);
  }
  // The command of an exchange arrives at that end; nobody answers it.
  void ExpectArrival(const PseudoTerminal& end) {
    link.ReadReg();
    EXPECT_EQ(end.Receive(4), "Y01?");
  }

  TemporaryDirectory home;
  PseudoTerminal foreign;
  std::unique_ptr<PseudoTerminal> far;
  SystemClock clock;
  QtSerialPort port{home.Path()};
  Link link{port, clock};
};

TEST_F(Replug, OpensNoOtherDeviceThatTheNameWouldFallThroughTo) {
  ASSERT_TRUE(link.PortOpen) << link.PortErrorText;
  PullOut();
  for (int ticks = 0; ticks < 9; ++ticks) {
    link.ReopenIfLost();
    EXPECT_FALSE(link.PortOpen);
    link.ReadReg();
    EXPECT_EQ(link.ComResult, LinkResult::kPortError);
  }
  far = PlugIn();
  link.ReopenIfLost();
  ASSERT_TRUE(link.PortOpen) << link.PortErrorText;
  ExpectArrival(*far);
  EXPECT_EQ(foreign.ReceiveWaiting(), "");
}

TEST_F(Replug, OpensTheDeviceAgainEachTimeThatItWasPulledOut) {
  for (int times = 0; times < 3; ++times) {
    PullOut();
    link.ReopenIfLost();
    EXPECT_FALSE(link.PortOpen);
    far = PlugIn();
    link.ReopenIfLost();
    ASSERT_TRUE(link.PortOpen) << link.PortErrorText;
    ExpectArrival(*far);
  }
  EXPECT_EQ(foreign.ReceiveWaiting(), "");
}

TEST_F(Replug, OpensNoDeviceThatIsNoLinkWhereALinkWas) {
  PullOut();
  home.Write("COM1", "");
  link.ReopenIfLost();
  EXPECT_FALSE(link.PortOpen);
}

TEST_F(Replug, SaysThatThePortIsLost) {
  EXPECT_EQ(link.PortLabel, "COM1: 4800,n,8,2");
  PullOut();
  EXPECT_EQ(link.PortLabel, "COM1: (lost)");
  link.ReopenIfLost();
  EXPECT_EQ(link.PortLabel, "COM1: (lost)");
  EXPECT_NE(link.PortError, 0);
  EXPECT_THAT(link.PortErrorText, testing::HasSubstr("COM1 has gone"));
  EXPECT_THAT(link.PortErrorText, testing::HasSubstr(home.File("COM1")));
  far = PlugIn();
  link.ReopenIfLost();
  EXPECT_EQ(link.PortLabel, "COM1: 4800,n,8,2");
  EXPECT_EQ(link.PortErrorText, "");
}

// The settings may be confirmed for another reason. Whoever does it twice means the other device.
TEST_F(Replug, OpensByItsNameAnewWhenTheLineIsChosenTwice) {
  PullOut();
  link.ReopenIfLost();
  link.LinkOpen({"COM1", 0, 4});
  EXPECT_FALSE(link.PortOpen);
  EXPECT_EQ(foreign.ReceiveWaiting(), "");
  EXPECT_THAT(link.PortErrorText, testing::HasSubstr("confirm the settings once more"));
  link.LinkOpen({"COM1", 0, 4});
  ASSERT_TRUE(link.PortOpen) << link.PortErrorText;
  ExpectArrival(foreign);
}

TEST_F(Replug, OpensAnotherNumberAtOnceAndForgetsTheDeviceOfTheOneBefore) {
  PullOut();
  Lay("COM2", foreign);
  link.LinkOpen({"COM2", 0, 4});
  ASSERT_TRUE(link.PortOpen) << link.PortErrorText;
  link.LinkOpen({"COM1", 0, 4});
  ASSERT_TRUE(link.PortOpen) << link.PortErrorText;
}

TEST_F(Replug, FollowsALinkThatTheUserHasLaidAnew) {
  Lay("COM1", foreign);
  link.LinkOpen({"COM1", 0, 4});
  ASSERT_TRUE(link.PortOpen) << link.PortErrorText;
  ExpectArrival(foreign);
}

// COM5 is ttyUSB0 of a device directory, an adapter by what the system tells of it.
class ReplugOfAnAdapter : public testing::Test {
 protected:
  void Open(const TestAdapter& adapter) {
    tree.Plug("ttyUSB0", far->Device(), adapter);
    link.LinkOpen({"COM5", 0, 4});
    ASSERT_TRUE(link.PortOpen) << link.PortErrorText;
  }
  void PullOut() {
    tree.PullOut("ttyUSB0");
    far->Vanish();
    link.ReadReg();
    ASSERT_FALSE(link.PortOpen);
  }
  // Another end at that terminal; true if it is opened and a command arrives there.
  bool IsOpenedAt(const std::string& name, const TestAdapter& adapter) {
    far = std::make_unique<PseudoTerminal>();
    tree.Plug(name, far->Device(), adapter);
    link.ReopenIfLost();
    return link.PortOpen && Arrived() == "Y01?";
  }
  // What arrives at the far end of a command; nobody answers it.
  std::string Arrived() {
    link.ComInet = 1;
    link.ComLetter = "Y";
    link.ComIndex = 1;
    link.ReadReg();
    return far->Receive(4);
  }

  TemporaryDirectory home;
  AdapterTree tree;
  std::unique_ptr<PseudoTerminal> far = std::make_unique<PseudoTerminal>();
  SystemClock clock;
  QtSerialPort port{home.Path(), tree.Places()};
  Link link{port, clock};
};

// A port of the next run of the program, with the same file of what it was before.
class ReplugOverARestart : public ReplugOfAnAdapter {
 protected:
  ReplugOverARestart() { Remember(port); }
  void Remember(QtSerialPort& each) {
    each.RememberIn([this] { return home.File(kKnownDeviceFile); });
  }
  // The program ends with its adapter out.
  void EndWithout(const TestAdapter& adapter) {
    Open(adapter);
    PullOut();
    link.LinkClose();
  }
  bool OpensInTheNextRun() {
    next_link.LinkOpen({"COM5", 0, 4});
    return next_link.PortOpen;
  }

  QtSerialPort next{home.Path(), tree.Places()};
  Link next_link{next, clock};
};

TEST_F(ReplugOverARestart, OpensNoOtherThatHasItsName) {
  Remember(next);
  EndWithout({"A50285BI"});
  far = std::make_unique<PseudoTerminal>();
  tree.Plug("ttyUSB0", far->Device(), {"B7"});
  EXPECT_FALSE(OpensInTheNextRun());
  EXPECT_EQ(far->ReceiveWaiting(), "");
  EXPECT_THAT(next_link.PortErrorText, testing::HasSubstr("serial number A50285BI"));
  EXPECT_TRUE(OpensInTheNextRun()) << "the settings were confirmed: it is meant";
}

TEST_F(ReplugOverARestart, OpensNoDeviceThatItsNameFallsThroughTo) {
  Remember(next);
  EndWithout({"A50285BI"});
  PseudoTerminal foreign;
  std::filesystem::create_symlink(foreign.Device(), tree.Device("ttyS4"));
  std::filesystem::create_symlink(foreign.Device(), home.File("COM5"));
  EXPECT_FALSE(OpensInTheNextRun());
  EXPECT_EQ(foreign.ReceiveWaiting(), "");
}

TEST_F(ReplugOverARestart, OpensItUnderItsNewNumber) {
  Remember(next);
  EndWithout({"A50285BI"});
  far = std::make_unique<PseudoTerminal>();
  tree.Plug("ttyUSB0", far->Device(), {"B7", "1-3"});
  auto same = std::make_unique<PseudoTerminal>();
  tree.Plug("ttyUSB1", same->Device(), {"A50285BI", "2-4"});
  ASSERT_TRUE(OpensInTheNextRun()) << next_link.PortErrorText;
  EXPECT_EQ(next.Device(), tree.Device("ttyUSB1"));
}

TEST_F(ReplugOverARestart, AsksNothingIfAnotherNumberIsChosen) {
  Remember(next);
  EndWithout({"A50285BI"});
  PseudoTerminal other;
  std::filesystem::create_symlink(other.Device(), home.File("COM7"));
  next_link.LinkOpen({"COM7", 0, 4});
  EXPECT_TRUE(next_link.PortOpen) << next_link.PortErrorText;
  EXPECT_FALSE(std::filesystem::exists(home.File(kKnownDeviceFile)))
      << "a device without an adapter cannot be taken for another";
}

// Whatever the file holds, the port opens by its name or is refused in words.
TEST_F(ReplugOverARestart, GoesByTheNameIfTheFileIsSpoilt) {
  Remember(next);
  EndWithout({"A50285BI"});
  const std::string whole = home.Read(kKnownDeviceFile);
  far = std::make_unique<PseudoTerminal>();
  tree.Plug("ttyUSB0", far->Device(), {"B7"});
  for (std::size_t cut = 0; cut + 2 < whole.size(); ++cut) {
    home.Write(kKnownDeviceFile, whole.substr(0, cut));
    EXPECT_EQ(ReadKnownDevice(home.File(kKnownDeviceFile), 5), std::nullopt) << cut;
  }
  EXPECT_TRUE(OpensInTheNextRun()) << next_link.PortErrorText;
}

// A port that is used by another program for a moment is still the same port afterwards.
TEST_F(ReplugOverARestart, WaitsForItAlsoBehindAnOpeningThatWasRefused) {
  Remember(next);
  EndWithout({"A50285BI"});
  far = std::make_unique<PseudoTerminal>();
  tree.Plug("ttyUSB1", "/dev/null", {"A50285BI"});
  EXPECT_FALSE(OpensInTheNextRun()) << "it is no serial port";
  tree.Plug("ttyUSB0", far->Device(), {"B7", "1-3"});
  EXPECT_FALSE(OpensInTheNextRun());
  EXPECT_EQ(far->ReceiveWaiting(), "");
}

TEST_F(ReplugOfAnAdapter, OpensItUnderItsNewNumber) {
  Open({"A50285BI"});
  PullOut();
  EXPECT_TRUE(IsOpenedAt("ttyUSB1", {"A50285BI", "2-4"})) << link.PortErrorText;
}

TEST_F(ReplugOfAnAdapter, OpensNoOtherThatHasItsName) {
  Open({"A50285BI"});
  PullOut();
  EXPECT_FALSE(IsOpenedAt("ttyUSB0", {"B7"}));
  EXPECT_EQ(far->ReceiveWaiting(), "");
  EXPECT_THAT(link.PortErrorText, testing::HasSubstr("serial number A50285BI"));
  EXPECT_TRUE(IsOpenedAt("ttyUSB1", {"A50285BI", "1-3"})) << link.PortErrorText;
}

TEST_F(ReplugOfAnAdapter, OpensOneWithoutASerialNumberAtItsPlaceOnly) {
  Open({""});
  PullOut();
  EXPECT_FALSE(IsOpenedAt("ttyUSB0", {"", "1-3"}));
  EXPECT_TRUE(IsOpenedAt("ttyUSB1", {""})) << link.PortErrorText;
}

// The link of the user still leads to the name, and the name to another adapter.
TEST_F(ReplugOfAnAdapter, OpensNoOtherThatALinkLeadsTo) {
  std::filesystem::create_symlink(tree.Device("ttyUSB0"), home.File("COM5"));
  Open({"A50285BI"});
  PullOut();
  EXPECT_FALSE(IsOpenedAt("ttyUSB0", {"B7"}));
  EXPECT_TRUE(IsOpenedAt("ttyUSB2", {"A50285BI", "1-3"})) << link.PortErrorText;
}

TEST_F(ReplugOfAnAdapter, OpensItUnderItsNewNumberAlsoWhenTheLineIsChosen) {
  Open({"A50285BI"});
  PullOut();
  const PseudoTerminal other;
  tree.Plug("ttyUSB0", other.Device(), {"B7", "1-5"});
  far = std::make_unique<PseudoTerminal>();
  tree.Plug("ttyUSB1", far->Device(), {"A50285BI"});
  link.LinkOpen({"COM5", 0, 4});
  ASSERT_TRUE(link.PortOpen) << link.PortErrorText;
  EXPECT_EQ(Arrived(), "Y01?");
  EXPECT_EQ(other.ReceiveWaiting(), "");
}

// Between the look and the opening the name goes over to another.
TEST_F(ReplugOfAnAdapter, ClosesADeviceThatTurnsOutToBeAnother) {
  Open({"A50285BI"});
  PullOut();
  tree.Plug("ttyUSB1", AdapterTree::NumberOf("/dev/null"), {"A50285BI", "1-3"});
  far = std::make_unique<PseudoTerminal>();
  std::filesystem::create_symlink(far->Device(), tree.Device("ttyUSB1"));
  link.ReopenIfLost();
  EXPECT_FALSE(link.PortOpen);
  EXPECT_THAT(link.PortErrorText, testing::HasSubstr("has gone"));
}

// The program with a recording on a virtual instrument, whose adapter is pulled out and for which
// the ten-second tick comes five times before it is back.
TEST(ReplugOfAProgram, GoesOnWithItsInstrumentAndTalksToNoOther) {
  constexpr int kFaster = 100;
  constexpr int kInet = 4;
  WireProgram program(kFaster);
  const PseudoTerminal foreign;
  std::filesystem::create_symlink(foreign.Device(), program.home.File("com1"));
  LiveInstrument instrument(program.home, true, {"--inet", "4", "--sample", "4=10"});
  ASSERT_TRUE(instrument.IsUp());
  program.Start(true, "M260314A.OVN", BenchProgram::Header(kInet, 2, 3, true));
  for (int times = 0; times < 2; ++times) {
    ASSERT_TRUE(program.RunUntil([&] { return program.link.IsGood(kInet); }));
    ASSERT_TRUE(instrument.Tell("unplug"));
    int tens = 0;
    float next = program.state.TickTen.At;
    ASSERT_TRUE(program.RunUntil([&] {
      tens += program.state.TickTen.At != next ? 1 : 0;
      next = program.state.TickTen.At;
      return tens >= 5 && !program.link.PortOpen;
    }));
    EXPECT_FALSE(program.link.IsGood(kInet));
    EXPECT_EQ(foreign.ReceiveWaiting(), "");
    ASSERT_TRUE(instrument.Tell("plug"));
  }
  EXPECT_TRUE(program.RunUntil([&] { return program.link.IsGood(kInet); }));
  EXPECT_EQ(foreign.ReceiveWaiting(), "");
}

}  // namespace
}  // namespace tavrel
