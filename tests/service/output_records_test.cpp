#include "service/output_records.h"

#include <gtest/gtest.h>

#include "tests/support/fake_screen.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

const std::vector<OutputRecord> kTwo = {{2, 1, 3}, {6, 4, -1}};
constexpr const char* kTwoText = "inet 2 controller 1 Z=3\r\ninet 6 controller 4 Z=-1\r\nend\r\n";

TEST(OutputRecordsText, IsALineForEachRecordAndALastOne) {
  EXPECT_EQ(EncodeOutputRecords(kTwo), kTwoText);
  EXPECT_EQ(EncodeOutputRecords({{1, 1, 7}}), "inet 1 controller 1 Z=0\r\nend\r\n")
      << "no instrument has that status";
  const OutputRecordsText read = DecodeOutputRecords(kTwoText);
  EXPECT_TRUE(read.IsWhole);
  EXPECT_EQ(read.Records, kTwo);
}

TEST(OutputRecordsText, SaysOffWhereverItIsCut) {
  const std::string whole = kTwoText;
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const OutputRecordsText read = DecodeOutputRecords(whole.substr(0, length));
    EXPECT_FALSE(read.IsWhole) << length;
    for (const OutputRecord& record : read.Records) {
      EXPECT_EQ(record.Before, 0) << length;
    }
  }
}

TEST(OutputRecordsText, OfSomebodyElseSwitchesNothingOn) {
  for (const char* text :
       {"inet 0 controller 1 Z=2\r\nend\r\n", "inet 7 controller 1 Z=2\r\nend\r\n",
        "inet 1 controller 5 Z=2\r\nend\r\n", "inet 1 controller 1 Z=6\r\nend\r\n",
        "inet 1 controller 1 Z=2 \r\nend\r\n", "inet 1 controller 1 Z=+2\r\nend\r\n",
        "inet 99999999999 controller 1 Z=2\r\nend\r\n", "end\r\nend\r\n", "\r\n", "\0\0\0\0",
        "inet 1 controller 1 Z=2\nend\n"}) {
    const OutputRecordsText read = DecodeOutputRecords(text);
    EXPECT_FALSE(read.IsWhole) << text;
    EXPECT_TRUE(read.Records.empty()) << text;
  }
  const OutputRecordsText twice =
      DecodeOutputRecords("inet 1 controller 1 Z=2\r\ninet 1 controller 1 Z=3\r\nend\r\n");
  EXPECT_FALSE(twice.IsWhole);
  EXPECT_EQ(twice.Records, (std::vector<OutputRecord>{{1, 1, 0}}));
}

class TheFileOfOutputs : public testing::Test {
 protected:
  void SetUp() override { state.DataHome = home.Path() + "/"; }

  TemporaryDirectory home;
  RunState state;
  FakeDialogs dialogs;
  Messages messages{dialogs};
};

TEST_F(TheFileOfOutputs, HoldsTheRecordsOfEachInstrumentAndGoesWithTheLast) {
  OutputRecords records(state, messages);
  ASSERT_TRUE(records.Load());
  EXPECT_EQ(records.Put(2, {{2, 1, 3}}), "");
  EXPECT_EQ(records.Put(6, {{6, 4, -1}}), "");
  EXPECT_EQ(home.Read(kOutputRecordsFile), kTwoText);
  OutputRecords next(state, messages);
  ASSERT_TRUE(next.Load());
  EXPECT_EQ(next.All(), kTwo);
  EXPECT_TRUE(next.Has(6));
  EXPECT_EQ(next.Put(2, {}), "");
  EXPECT_FALSE(next.Has(2));
  EXPECT_TRUE(home.Exists(kOutputRecordsFile));
  EXPECT_EQ(next.Put(6, {}), "");
  EXPECT_FALSE(home.Exists(kOutputRecordsFile));
  EXPECT_TRUE(dialogs.boxes.empty());
}

TEST_F(TheFileOfOutputs, IsToldToBeDamagedAndTakesNothingFromAFarTooLargeOne) {
  home.Write(kOutputRecordsFile, "inet 3 controller 2 Z=2\r\nrubbish");
  OutputRecords records(state, messages);
  EXPECT_TRUE(records.Load());
  EXPECT_TRUE(records.Load());
  EXPECT_EQ(records.All(), (std::vector<OutputRecord>{{3, 2, 0}}));
  ASSERT_EQ(dialogs.boxes.size(), 1U);
  EXPECT_EQ(dialogs.boxes[0].Text, "TAVREL.OUT  is damaged !");
  home.Write(kOutputRecordsFile, std::string(20'000, 'x'));
  OutputRecords other(state, messages);
  EXPECT_TRUE(other.Load());
  EXPECT_TRUE(other.All().empty());
  EXPECT_EQ(dialogs.boxes.size(), 2U);
}

TEST_F(TheFileOfOutputs, IsPutToTheDiskLaterIfItCannotBeNow) {
  OutputRecords records(state, messages);
  ASSERT_TRUE(records.Load());
  state.DataHome = home.File("away") + "/";
  EXPECT_NE(records.Put(1, {{1, 1, 2}}), "");
  records.Save();
  records.Save();
  EXPECT_EQ(dialogs.boxes.size(), 1U) << "told once";
  std::filesystem::create_directory(home.File("away"));
  records.Save();
  EXPECT_EQ(home.Read("away/TAVREL.OUT"), "inet 1 controller 1 Z=2\r\nend\r\n");
}

TEST_F(TheFileOfOutputs, FollowsAnInstrumentToItsNewNumber) {
  OutputRecords records(state, messages);
  ASSERT_TRUE(records.Load());
  ASSERT_EQ(records.Put(2, {{2, 1, 3}}), "");
  ASSERT_EQ(records.Put(6, {{6, 4, -1}}), "");
  records.Renumber(2, 6);
  OutputRecords next(state, messages);
  ASSERT_TRUE(next.Load());
  EXPECT_EQ(next.All(), (std::vector<OutputRecord>{{6, 1, 3}})) << "the other 6 is out of reach";
  next.Renumber(1, 2);
  EXPECT_EQ(next.All(), (std::vector<OutputRecord>{{6, 1, 3}}));
}

}  // namespace
}  // namespace tavrel
