#include "link/register_access.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "link/registers.h"
#include "tests/support/fake_port.h"

namespace tavrel {
namespace {

class RegisterAccess : public testing::Test {
 protected:
  void Open(int com_mode) { link.LinkOpen({"COM3", com_mode, 4}); }
  void Answer(const std::string& reply) {
    port.answer = [reply](const std::string&) { return reply; };
  }

  FakeClock clock;
  FakePort port{clock};
  Link link{port, clock};
};

TEST_F(RegisterAccess, ReadsARegisterOfTheInstrumentThatIsNamed) {
  Open(2);
  Answer("0FA1\r");
  const Reading reading = Read(link, Register{6, reg::kPresentValue, 15});
  EXPECT_TRUE(reading.IsGood());
  EXPECT_EQ(reading.word, 4001);
  EXPECT_EQ(reading.Word(), 4001);
  EXPECT_EQ(port.sent.back(), RegisterReadFrame(link.Mode(), {6, 0}, {"Y", 15}));
}

TEST_F(RegisterAccess, HasNoWordWithoutAGoodReply) {
  Open(2);
  Answer("?");
  const Reading refused = Read(link, Register{1, "X", 3});
  EXPECT_EQ(refused.status, LinkResult::kRejected);
  EXPECT_EQ(refused.Word(), std::nullopt);
  Answer("");
  EXPECT_EQ(Read(link, Register{1, "X", 3}).status, LinkResult::kTimeOut);
}

TEST_F(RegisterAccess, WritesARegister) {
  Open(2);
  Answer(".");
  EXPECT_EQ(Write(link, Register{3, reg::kSetpoint, 4}, -2), LinkResult::kGood);
  EXPECT_EQ(port.sent.back(), RegisterWriteFrame(link.Mode(), {3, 0}, {"W", 4}, -2));
  Answer("");
  EXPECT_EQ(Write(link, Register{3, reg::kSetpoint, 4}, -2), LinkResult::kTimeOut);
}

TEST_F(RegisterAccess, ReadsAndWritesMemoryAndPorts) {
  Open(2);
  Answer("00A5\r");
  EXPECT_EQ(Read(link, MemoryPlace{2, "FF80"}).Word(), 0x00A5);
  EXPECT_EQ(port.sent.back(), SpaceReadFrame(link.Mode(), {2, 0}, Space::kMemory, "FF80"));
  Answer("7F\r");
  EXPECT_EQ(Read(link, PortPlace{2, "05"}).Word(), 0x007F);
  EXPECT_EQ(port.sent.back(), SpaceReadFrame(link.Mode(), {2, 0}, Space::kPort, "05"));
  Answer(".");
  EXPECT_TRUE(IsGood(Write(link, MemoryPlace{5, "0102"}, 7)));
  EXPECT_EQ(port.sent.back(), SpaceWriteFrame(link.Mode(), {5, 0}, Space::kMemory, "0102", 7));
  EXPECT_TRUE(IsGood(Write(link, PortPlace{5, "1A"}, 9)));
  EXPECT_EQ(port.sent.back(), SpaceWriteFrame(link.Mode(), {5, 0}, Space::kPort, "1A", 9));
}

// What another caller has left in the argument block of the link is of no matter.
TEST_F(RegisterAccess, SetsAllArgumentsAfresh) {
  Open(2);
  Answer(".");
  link.ComInet = 4;
  link.ComLetter = "Q";
  link.ComIndex = 9;
  link.ComValue = 77;
  EXPECT_TRUE(IsGood(Write(link, Register{1, "Z", 2}, 0)));
  EXPECT_EQ(port.sent.back(), RegisterWriteFrame(link.Mode(), {1, 0}, {"Z", 2}, 0));
  EXPECT_EQ(link.ComStatus(1), LinkResult::kGood);
  EXPECT_EQ(link.ComStatus(4), LinkResult::kNone);
}

// Whoever watches the line learns of each exchange where, what, whether it wrote and how it ended.
TEST_F(RegisterAccess, IsSeenByTheObserverOfTheLine) {
  Open(2);
  std::vector<Link::Exchange> seen;
  link.Observe([&](const Link::Exchange& exchange) { seen.push_back(exchange); });
  Answer("0FA1\r");
  static_cast<void>(Read(link, Register{6, reg::kPresentValue, 15}));
  Answer("?");
  static_cast<void>(Write(link, Register{3, reg::kSetpoint, 4}, 1234));
  ASSERT_EQ(seen.size(), 2U);
  EXPECT_EQ(seen[0].inet, 6);
  EXPECT_EQ(seen[0].letter, reg::kPresentValue);
  EXPECT_EQ(seen[0].index, 15);
  EXPECT_EQ(seen[0].word, 4001);
  EXPECT_FALSE(seen[0].is_write);
  EXPECT_EQ(seen[0].result, LinkResult::kGood);
  EXPECT_EQ(seen[1].inet, 3);
  EXPECT_EQ(seen[1].letter, reg::kSetpoint);
  EXPECT_EQ(seen[1].index, 4);
  EXPECT_EQ(seen[1].word, 1234);
  EXPECT_TRUE(seen[1].is_write);
  EXPECT_EQ(seen[1].result, LinkResult::kRejected);
}

TEST_F(RegisterAccess, DistrustsAReplyThatIsNotAlone) {
  Open(2);
  Answer("0FA1\r");
  EXPECT_EQ(ReadAlone(link, Register{1, "X", 3}).Word(), 4001);
  port.answer = [this](const std::string&) {
    port.Arrive(std::chrono::milliseconds(10), "0");
    return std::string("0FA2\r");
  };
  clock.AdvanceSeconds(1);
  const Reading mixed = ReadAlone(link, Register{1, "X", 3});
  EXPECT_EQ(mixed.status, LinkResult::kLength);
  EXPECT_EQ(mixed.Word(), std::nullopt);
}

}  // namespace
}  // namespace tavrel
