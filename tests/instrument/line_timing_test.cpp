#include "instrument/line_timing.h"

#include <gtest/gtest.h>

namespace instrument {
namespace {

using std::chrono::milliseconds;

constexpr Moment kStart{};

Reply ReplyOf(const char* bytes, milliseconds delay = milliseconds(0)) {
  Reply reply;
  reply.bytes = bytes;
  reply.delay = delay;
  return reply;
}

// A reply that hands sample number 3 of input 2 of instrument 1 over.
Reply HandingReply() {
  Reply reply = ReplyOf("12\r");
  reply.handed = HandedSample{1.0, {1, 2, 3}, 18, Fate::kGood};
  return reply;
}

TEST(CharTime, IsElevenBits) {
  EXPECT_EQ(CharTimeAt(4800).count(), 2'291'666);
  EXPECT_EQ(CharTimeAt(9600).count(), 1'145'833);
  EXPECT_EQ(CharTimeAt(0).count(), 0);
}

TEST(IncomingBytes, ArriveOneAfterTheOther) {
  IncomingBytes bytes(milliseconds(2));
  bytes.Add("ab", kStart);
  EXPECT_FALSE(bytes.Take(kStart + milliseconds(1)));
  EXPECT_EQ(bytes.NextDue(), kStart + milliseconds(2));
  EXPECT_EQ(bytes.Take(kStart + milliseconds(3))->when, kStart + milliseconds(2));
  EXPECT_FALSE(bytes.Take(kStart + milliseconds(3)));
  EXPECT_EQ(bytes.Take(kStart + milliseconds(9))->byte, 'b');
  EXPECT_FALSE(bytes.NextDue());
}

TEST(OutgoingBytes, FollowTheRequestCharacterByCharacter) {
  OutgoingBytes bytes(milliseconds(2));
  bytes.Add(ReplyOf("12\r"), kStart);
  EXPECT_TRUE(bytes.TakeDue(kStart + milliseconds(1)).bytes.empty());
  EXPECT_EQ(bytes.TakeDue(kStart + milliseconds(4)).bytes.size(), 2U);
  EXPECT_EQ(bytes.NextDue(), kStart + milliseconds(6));
}

TEST(OutgoingBytes, ReplyWaitsForTheOneBefore) {
  OutgoingBytes bytes(milliseconds(2));
  bytes.Add(ReplyOf("12\r"), kStart);
  bytes.Add(ReplyOf("."), kStart);
  EXPECT_EQ(bytes.TakeDue(kStart + milliseconds(7)).bytes.size(), 3U);
  EXPECT_EQ(bytes.TakeDue(kStart + milliseconds(8)).bytes.at(0).byte, '.');
}

TEST(OutgoingBytes, LateReplyLetsTheNextOnePass) {
  OutgoingBytes bytes(milliseconds(2));
  bytes.Add(ReplyOf("A", milliseconds(100)), kStart);
  bytes.Add(ReplyOf("B"), kStart + milliseconds(50));
  EXPECT_EQ(bytes.TakeDue(kStart + milliseconds(60)).bytes.at(0).byte, 'B');
  EXPECT_EQ(bytes.NextDue(), kStart + milliseconds(102));
}

TEST(OutgoingBytes, PausesStandBetweenTheBytes) {
  OutgoingBytes bytes(milliseconds(2));
  Reply reply = ReplyOf("12");
  reply.pause = milliseconds(10);
  bytes.Add(reply, kStart);
  EXPECT_EQ(bytes.TakeDue(kStart + milliseconds(2)).bytes.size(), 1U);
  EXPECT_EQ(bytes.NextDue(), kStart + milliseconds(14));
}

TEST(OutgoingBytes, SampleIsHandedWithTheLastByte) {
  OutgoingBytes bytes(milliseconds(2));
  bytes.Add(HandingReply(), kStart);
  EXPECT_TRUE(bytes.TakeDue(kStart + milliseconds(5)).handed.empty());
  EXPECT_EQ(bytes.TakeDue(kStart + milliseconds(6)).handed.at(0).place.number, 3);
}

// What became of the sample in a reply of three characters of 2 ms, with that pause between them.
Fate FateAfter(milliseconds pause, milliseconds looked_at) {
  OutgoingBytes bytes(milliseconds(2));
  Reply reply = HandingReply();
  reply.pause = pause;
  bytes.Add(reply, kStart);
  return bytes.TakeDue(kStart + looked_at).handed.at(0).fate;
}

TEST(OutgoingBytes, SampleIsLateIfItsReplyTakesLongerThanAHostWaits) {
  EXPECT_EQ(FateAfter(milliseconds(42), milliseconds(90)), Fate::kGood);
  EXPECT_EQ(FateAfter(milliseconds(43), milliseconds(92)), Fate::kLate);
}

TEST(OutgoingBytes, SampleThatIsSpoiledStaysSoHoweverLateItIs) {
  OutgoingBytes bytes(milliseconds(2));
  Reply reply = HandingReply();
  reply.handed->fate = Fate::kSpoiled;
  bytes.Add(reply, kStart);
  EXPECT_EQ(bytes.TakeDue(kStart + milliseconds(200)).handed.at(0).fate, Fate::kSpoiled);
}

TEST(OutgoingBytes, SampleIsLateIfTheMachineSendsItsReplyTooLate) {
  EXPECT_EQ(FateAfter(milliseconds(0), milliseconds(91)), Fate::kLate);
}

// What became of the sample in a reply that was over at 60 ms, when nobody had looked at the line
// for that time before its command was seen.
Fate FateUnseenFor(milliseconds unseen) {
  IncomingBytes incoming(milliseconds(0));
  incoming.Add("?", kStart, unseen);
  OutgoingBytes outgoing(milliseconds(2));
  const auto byte = incoming.Take(kStart);
  outgoing.Add(HandingReply(), byte->when, byte->unseen);
  return outgoing.TakeDue(kStart + milliseconds(60)).handed.at(0).fate;
}

TEST(OutgoingBytes, SampleIsInDoubtIfItsCommandMayHaveComeTooEarly) {
  EXPECT_EQ(FateUnseenFor(milliseconds(30)), Fate::kGood);
  EXPECT_EQ(FateUnseenFor(milliseconds(31)), Fate::kDoubtful);
}

TEST(OutgoingBytes, SampleInADroppedReplyIsLost) {
  OutgoingBytes bytes(milliseconds(2));
  bytes.Add(HandingReply(), kStart);
  static_cast<void>(bytes.TakeDue(kStart + milliseconds(5)));
  const auto lost = bytes.DropAll();
  ASSERT_EQ(lost.size(), 1U);
  EXPECT_EQ(lost[0].fate, Fate::kLost);
  EXPECT_FALSE(bytes.NextDue());
}

}  // namespace
}  // namespace instrument
