#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <span>

#include "files/held_set.h"
#include "tests/files/pump_room.h"

namespace tavrel {
namespace {

constexpr const char* kName = "M260314A.OVN";
constexpr const char* kHeldName = ".M260314A.OVN.set";
constexpr int kSlot = 12;

// A recording of inputs 1, 2 and 3 of one instrument whose samples tell their set and input: set
// s of input k is 100 s + k. Replies can be swallowed after they were carried out.
class LostValue : public testing::Test {
 protected:
  LostValue() {
    room.port.answer = [this](const std::string& command) {
      const std::string reply = room.line.Answer(command);
      return swallowed.erase(command) != 0 ? "" : reply;
    };
    room.Open(kSlot, kName, BytesOf(Running(HeaderOf(1, {1, 2, 3}))));
  }

  // Samples the sets `first` to `last`.
  void Sample(int first, int last) {
    for (int set = first; set <= last; ++set) {
      for (const int input : {1, 2, 3}) {
        room.Store(1, input, {100 * set + input});
      }
    }
  }

  // The cycle for some seconds: free ticks, and every ten seconds the retry.
  void Run(double seconds) {
    for (int tick = 1; tick <= static_cast<int>(seconds * 20); ++tick) {
      room.clock.AdvanceSeconds(0.05);
      if (tick % 200 == 0) {
        room.engine.TenSecondTick();
      }
      room.engine.PumpOnce();
    }
  }

  // One value, whether or not the slot sleeps.
  void ReadOne() {
    room.engine.TenSecondTick();
    room.engine.PumpOnce();
  }

  // Sets as they stand in the file from row 1 on, with each word as set * 100 + input.
  [[nodiscard]] std::string Rows() const { return room.SamplesInFile(kName); }

  // The program is killed where it stands and started again.
  void KillAndStart() {
    for (RandomFile& file : room.state.SlotFileNo) {
      file.Close();
    }
    room.state.SampleSeen = {};
    room.state.SampleValue = {};
    room.state.ReadState = {};
    room.Name(kSlot, kName);
    room.files.OpenRecordingFile(kSlot);
  }

  // What the file beside the recording holds now.
  [[nodiscard]] HeldSet Held() const {
    const std::string bytes = room.directory.Read(kHeldName);
    return DecodeHeldSet(std::as_bytes(std::span(bytes))).value_or(HeldSet{-1, -1, {}, {}});
  }
  void Hold(const HeldSet& held) {
    const auto bytes = EncodeHeldSet(held);
    room.directory.Write(kHeldName,
                         std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
  }

  std::set<std::string> swallowed;
  PumpRoom room;
};

TEST_F(LostValue, IsFilledWithTheOneBeforeAndShiftsNothing) {
  Sample(1, 1);
  Run(1);
  swallowed = {"X02?"};
  Sample(2, 4);
  Run(40);
  EXPECT_EQ(Rows(),
            Words({101, 102, 103, 101, 102, 103, 201, 102, 203, 301, 302, 303, 401, 402, 403}));
}

TEST_F(LostValue, IsToldOnceWithoutStoppingTheCycle) {
  Sample(1, 1);
  Run(1);
  for (int set = 2; set <= 4; ++set) {
    swallowed = {"X03?"};
    Sample(set, set);
    Run(40);
  }
  EXPECT_EQ(Rows().size(), 15U * 2);
  EXPECT_EQ(room.Announced(),
            std::vector<std::string>{"Read  Tavrel | M260314A.OVN: values were lost on the line; "
                                     "the values before them stand in their places"});
}

TEST_F(LostValue, OfTheFirstInputOfASetIsFoundToo) {
  Sample(1, 1);
  Run(1);
  swallowed = {"X03?"};
  Sample(2, 3);
  Run(40);
  EXPECT_EQ(Rows(), Words({101, 102, 103, 101, 102, 103, 201, 202, 103, 301, 302, 303}));
}

TEST_F(LostValue, OfTheVeryFirstSetIsFilledWithThePresentOne) {
  room.line.registers[{1, 'Y', 2}] = 777;
  swallowed = {"X02?"};
  Sample(1, 2);
  Run(40);
  EXPECT_EQ(Rows(), Words({101, 777, 103, 101, 777, 103, 201, 202, 203}));
}

TEST_F(LostValue, IsNotSuspectedWhereTheRequestWasLost) {
  Sample(1, 1);
  Run(1);
  Sample(2, 3);
  room.line.silent = {1};
  Run(12);
  room.line.silent.clear();
  Run(30);
  EXPECT_EQ(Rows(), Words({101, 102, 103, 101, 102, 103, 201, 202, 203, 301, 302, 303}));
  EXPECT_TRUE(room.Announced().empty());
}

TEST_F(LostValue, IsFoundThoughCountingFailsAtFirst) {
  Sample(1, 1);
  Run(1);
  swallowed = {"X02?", "R03?", "R02?"};
  Sample(2, 3);
  Run(60);
  EXPECT_EQ(Rows(), Words({101, 102, 103, 101, 102, 103, 201, 102, 203, 301, 302, 303}));
}

TEST_F(LostValue, DoesNotHoldUpARecordingWhoseInstrumentCannotCount) {
  Sample(1, 1);
  Run(1);
  room.line.refused = {'R'};
  room.line.silent = {1};
  Sample(2, 2);
  Run(12);
  room.line.silent.clear();
  Run(20);
  EXPECT_EQ(Rows(), Words({101, 102, 103, 101, 102, 103, 201, 202, 203}));
}

TEST_F(LostValue, OfOneInputAloneCannotBeSeenAndDoesNoHarm) {
  room.Open(kSlot, "M260314B.OVN", BytesOf(Running(HeaderOf(1, {2}))));
  Sample(1, 1);
  Run(1);
  swallowed = {"X02?"};
  Sample(2, 3);
  Run(25);
  EXPECT_EQ(room.SamplesInFile("M260314B.OVN"), Words({102, 102, 302}));
}

TEST_F(LostValue, ByAnInstrumentThatWasRestartedInTheMiddleOfASet) {
  Sample(1, 1);
  Run(1);
  Sample(2, 2);
  ReadOne();
  ASSERT_TRUE(room.engine.HoldsSet(kSlot));
  room.line.buffers.clear();
  Run(35);
  Sample(5, 6);
  Run(20);
  EXPECT_EQ(Rows(),
            Words({101, 102, 103, 101, 102, 103, 101, 102, 203, 501, 502, 503, 601, 602, 603}));
}

TEST_F(LostValue, ByARestartIsFoundThoughTheInstrumentSamplesAgainAtOnce) {
  Sample(1, 1);
  Run(1);
  Sample(2, 2);
  ReadOne();
  ASSERT_TRUE(room.engine.HoldsSet(kSlot));
  room.line.buffers.clear();
  Run(2);  // finds no rest of the set
  Sample(5, 7);
  Run(40);
  EXPECT_EQ(Rows(), Words({101, 102, 103, 101, 102, 103, 101, 102, 203, 501, 502, 503, 601, 602,
                           603, 701, 702, 703}));
}

TEST_F(LostValue, IsNotSuspectedWhenTheRestOfASetComesLate) {
  Sample(1, 1);
  Run(1);
  room.Store(1, 3, {203});
  Run(15);
  EXPECT_TRUE(room.engine.HoldsSet(kSlot));
  room.Store(1, 2, {202});
  room.Store(1, 1, {201});
  Run(15);
  EXPECT_EQ(Rows(), Words({101, 102, 103, 101, 102, 103, 201, 202, 203}));
  EXPECT_TRUE(room.Announced().empty());
}

TEST_F(LostValue, BehindACopyOfTheReplyBeforeIsFoundThoughTheCopyLooksGood) {
  Sample(1, 1);
  Run(1);
  const auto answer = room.port.answer;
  bool is_copied = false;
  room.port.answer = [this, answer, &is_copied](const std::string& command) {
    std::string reply = answer(command);
    if (is_copied || command != "X02?" || room.line.buffers[{1, 3}].size() > 1) {
      return reply;
    }
    is_copied = true;
    room.port.Arrive(std::chrono::milliseconds(20), reply);
    return std::string("8000\r");
  };
  Sample(2, 3);
  Run(40);
  EXPECT_TRUE(is_copied);
  EXPECT_EQ(Rows(), Words({101, 102, 103, 101, 102, 103, 201, 102, 203, 301, 302, 303}));
}

TEST_F(LostValue, OfAHalfReadSetDoesNotHappenWhenTheProgramIsKilled) {
  Sample(1, 3);
  for (int killed_after = 1; killed_after <= 8; ++killed_after) {
    room.engine.PumpOnce();
    KillAndStart();
    Run(5);
  }
  Run(30);
  EXPECT_EQ(Rows(), Words({101, 102, 103, 101, 102, 103, 201, 202, 203, 301, 302, 303}));
  EXPECT_TRUE(room.Announced().empty());
}

TEST_F(LostValue, InAReplyThatNoProgramWasThereToTakeIsFound) {
  Sample(1, 1);
  Run(1);
  Sample(2, 3);
  ReadOne();
  ReadOne();
  KillAndStart();
  ASSERT_TRUE(room.state.SampleSeen[kSlot][2]);

  // The same moment, but killed while the reply of input 2 was on the line: the instrument has
  // handed it over, the file beside the recording says only that it was asked for.
  auto bytes = EncodeHeldSet({2, 2, {}, {}});
  auto asked = DecodeHeldSet(bytes);
  asked->Seen[3] = true;
  asked->Value[3] = 203;
  bytes = EncodeHeldSet(*asked);
  room.directory.Write(kHeldName,
                       std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
  KillAndStart();
  Run(20);
  EXPECT_EQ(Rows(), Words({101, 102, 103, 101, 102, 103, 201, 102, 203, 301, 302, 303}));
}

TEST_F(LostValue, FromAFullBufferWhileASetWasHalfRead) {
  Sample(1, 1);
  Run(1);
  Sample(2, 2);
  ReadOne();  // 203 is in hand, the buffers hold sets of unequal number
  for (const int input : {1, 2, 3}) {
    room.line.buffers[{1, input}].clear();
  }
  Sample(50, 50 + kBufferSets - 1);
  KillAndStart();
  Run(200);
  const std::string rows = Rows();
  ASSERT_EQ(rows.size(), 2U * 3 * (3 + kBufferSets));
  EXPECT_EQ(rows.substr(12, 12), Words({101, 102, 203, 5001, 5002, 5003}));
  const int last = 50 + kBufferSets - 1;
  EXPECT_EQ(rows.substr(rows.size() - 6), Words({100 * last + 1, 100 * last + 2, 100 * last + 3}));
}

TEST_F(LostValue, IsNotSoughtWithTheHeldSetOfAnotherRow) {
  Sample(1, 1);
  Run(1);
  const auto bytes = EncodeHeldSet({1, 2, {}, {}});
  room.directory.Write(kHeldName,
                       std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
  KillAndStart();
  EXPECT_FALSE(room.state.ColumnsInDoubt[kSlot]);
}

TEST_F(LostValue, OfTheFirstInputOfASetIsSoughtAfterAKillToo) {
  Sample(1, 1);
  Run(1);
  Sample(2, 3);
  room.line.buffers[{1, 3}].pop_front();
  Hold({2, 3, {}, {}});
  KillAndStart();
  Run(20);
  EXPECT_EQ(Rows(), Words({101, 102, 103, 101, 102, 103, 201, 202, 103, 301, 302, 303}));
}

TEST_F(LostValue, IsNotSoughtForAnInputThatIsNotRecorded) {
  Sample(1, 1);
  Run(1);
  HeldSet held{2, 0, {}, {}};
  held.Seen[9] = true;
  Hold(held);
  KillAndStart();
  EXPECT_FALSE(room.state.ColumnsInDoubt[kSlot]);
  EXPECT_FALSE(room.state.SampleSeen[kSlot][9]);
}

TEST_F(LostValue, IsPreparedForBeforeTheValueIsAskedFor) {
  std::vector<int> asked;
  const auto answer = room.port.answer;
  room.port.answer = [this, answer, &asked](const std::string& command) {
    asked.push_back(Held().AskedInput);
    return answer(command);
  };
  Sample(1, 1);
  room.Pump(3);
  EXPECT_EQ(asked, (std::vector<int>{3, 2, 1}));
  EXPECT_EQ(Held().SampleCount, 0);
  room.Pump(1);
  EXPECT_EQ(asked.back(), 3);
  EXPECT_EQ(Held(), (HeldSet{2, 0, {}, room.state.SampleValue[kSlot]}))
      << "nothing is doubted after an answer without data";
}

TEST_F(LostValue, DoesNotHappenToAWholeSetOnAFullDiskWhenTheProgramIsKilled) {
  Sample(1, 1);
  Run(1);
  Sample(2, 3);
  {
    const FullDisk full(kHeaderBytes + static_cast<std::size_t>(Rows().size()));
    Run(12);
    EXPECT_TRUE(room.state.WriteFailed[kSlot]);
    KillAndStart();
  }
  Run(20);
  EXPECT_EQ(Rows(), Words({101, 102, 103, 101, 102, 103, 201, 202, 203, 301, 302, 303}));
}

TEST_F(LostValue, IsFoundWithoutAnotherSetBehindIt) {
  Sample(1, 1);
  Run(1);
  swallowed = {"X02?"};
  Sample(2, 2);
  Run(25);
  EXPECT_EQ(Rows(), Words({101, 102, 103, 101, 102, 103, 201, 102, 203}));
}

TEST_F(LostValue, IsFoundAmongInputsThatAreNoNeighbours) {
  constexpr const char* kApart = "M260314B.OVN";
  room.Open(kSlot, kApart, BytesOf(Running(HeaderOf(1, {1, 5, 9}))));
  for (const int set : {1, 2}) {
    for (const int input : {1, 5, 9}) {
      room.Store(1, input, {100 * set + input});
    }
    Run(12);
    swallowed = {"X05?"};
  }
  Run(30);
  EXPECT_EQ(room.SamplesInFile(kApart), Words({101, 105, 109, 101, 105, 109, 201, 105, 209}));
}

TEST_F(LostValue, IsNotSuspectedWhileTheRestOfASetMayStillBeSampled) {
  Sample(1, 1);
  Run(1);
  room.Store(1, 3, {203});
  ReadOne();
  Run(25);
  EXPECT_TRUE(room.engine.HoldsSet(kSlot)) << "two ticks";
  Run(14);
  EXPECT_EQ(Rows(), Words({101, 102, 103, 101, 102, 103, 101, 102, 203})) << "three ticks";
}

TEST_F(LostValue, IsNotFilledByAnInstrumentThatCannotCount) {
  Sample(1, 1);
  Run(1);
  Sample(2, 2);
  ReadOne();
  room.line.refused = {'R'};
  room.line.silent = {1};
  Run(1);
  room.line.silent.clear();
  Run(25);
  EXPECT_EQ(Rows(), Words({101, 102, 103, 101, 102, 103, 201, 202, 203}));
}

TEST_F(LostValue, OfTheVeryFirstSetWaitsForAPresentOne) {
  room.line.registers[{1, 'Y', 2}] = kNoData;
  swallowed = {"X02?"};
  Sample(1, 2);
  Run(30);
  EXPECT_EQ(Rows(), "");
  room.line.registers[{1, 'Y', 2}] = 777;
  Run(30);
  EXPECT_EQ(Rows(), Words({101, 777, 103, 101, 777, 103, 201, 202, 203}));
}

// Of two replies nobody can tell which one is the answer.
TEST_F(LostValue, IsSuspectedIfASecondReplyFollows) {
  const auto answer = room.port.answer;
  room.port.answer = [this, answer](const std::string& command) {
    room.port.Arrive(std::chrono::milliseconds(20), "0FFF\r");
    return answer(command);
  };
  Sample(1, 1);
  room.Pump(1);
  EXPECT_FALSE(room.state.SampleSeen[kSlot][3]);
  EXPECT_TRUE(room.state.ColumnsInDoubt[kSlot]);
  EXPECT_EQ(room.state.ReadState[kSlot], ReadState::kWaiting);
}

TEST_F(LostValue, IsNotJudgedByACountBehindWhichASecondReplyFollows) {
  Sample(1, 1);
  Run(1);
  swallowed = {"X02?"};
  Sample(2, 3);
  const auto answer = room.port.answer;
  int copies = 0;
  room.port.answer = [this, answer, &copies](const std::string& command) {
    if (command != "R02?" || copies == 2) {
      return answer(command);
    }
    ++copies;
    room.port.Arrive(std::chrono::milliseconds(20), answer(command));
    return std::string("0002\r");
  };
  Run(60);
  EXPECT_EQ(copies, 2);
  EXPECT_EQ(Rows(), Words({101, 102, 103, 101, 102, 103, 201, 102, 203, 301, 302, 303}));
}

TEST_F(LostValue, LeavesNoFileBehindARecordingThatIsOver) {
  Sample(1, 1);
  Run(1);
  EXPECT_TRUE(room.directory.Exists(kHeldName));
  room.engine.StopRecording(kSlot);
  EXPECT_FALSE(room.directory.Exists(kHeldName));
}

TEST_F(LostValue, IsSoughtInTheNextFileThoughTheProgramIsKilledBeforeItReads) {
  room.Store(1, 3, {103});
  room.Pump(1);
  room.state.Unit[kSlot].UnitEndAction = 2;
  room.engine.EndOfRecording(kSlot);
  ASSERT_EQ(room.state.SlotFile[kSlot], "M260314B.OVN");
  room.state.SampleSeen = {};
  room.files.CloseRecordingFile(kSlot);
  room.files.OpenRecordingFile(kSlot);
  EXPECT_TRUE(room.state.SampleSeen[kSlot][3]);
  EXPECT_EQ(room.state.SampleValue[kSlot][3], 103);
}

TEST_F(LostValue, GoesOnLookingInTheNextFile) {
  room.state.Unit[kSlot].UnitEndAction = 2;
  room.state.SampleLimit[kSlot] = 1;
  Sample(1, 1);
  Run(0.15);
  room.Store(1, 3, {203});
  room.state.SampleCount[kSlot] = 1;
  room.engine.PumpOnce();
  room.state.SampleCount[kSlot] = 2;
  Run(0.1);
  EXPECT_EQ(room.state.SlotFile[kSlot], "M260314B.OVN");
  EXPECT_TRUE(room.state.SampleSeen[kSlot][3]);
  KillAndStart();
  room.Name(kSlot, "M260314B.OVN");
  room.files.OpenRecordingFile(kSlot);
  EXPECT_TRUE(room.state.SampleSeen[kSlot][3]);
  EXPECT_EQ(room.state.SampleValue[kSlot][3], 203);
}

}  // namespace
}  // namespace tavrel
