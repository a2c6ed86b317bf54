#include <gtest/gtest.h>

#include "tests/e2e/installed_program.h"

namespace tavrel {
namespace {

using std::chrono::seconds;

// A slot as the recording must come out.
struct SlotTruth {
  std::string file;
  int inet;
  std::vector<int> inputs;
};

const std::vector<SlotTruth> kSlotTruths = {
    {"M260314A.TUB", 1, {1, 5, 9}}, {"M260314B.CHA", 1, {2, 6}}, {"M260314C.AUT", 2, {1, 5}}};

const std::vector<std::string> kSlotTexts = {
    "slot:number=1,name=Tube oven,ext=TUB,inet=1,ctrl=1,ref=5,inputs=1/5/9",
    "slot:number=2,name=Chamber oven,ext=CHA,inet=1,ctrl=2,ref=6,inputs=2/6",
    "slot:number=3,name=Autoclave,ext=AUT,inet=2,ctrl=1,ref=5,inputs=1/5"};

class Recording : public testing::TestWithParam<const char*> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(screen.IsUp());
    const bool is_direct = std::string(GetParam()) == "direct";
    std::vector<std::string> arguments = {"COMMPORT=COM1", is_direct ? "COMMODE=0" : "COMMODE=2"};
    arguments.insert(arguments.end(), kSlotTexts.begin(), kSlotTexts.end());
    ASSERT_TRUE(program.Prepare(arguments));
    // Ten seconds of the instruments pass in one: seven words a second come from the three
    // slots, of at most twenty that a line can carry.
    ASSERT_TRUE(
        program.StartInstruments({"--mode", GetParam(), "--instruments", "2", "--warm", "--speedup",
                                  "10", "--sample", "1=10", "--sample", "2=10", "--backlog", "1=8",
                                  "--oven", "1.1=hold:200", "--oven", "1.2=ramp:300:0.08"}));
  }

  bool HasRows(std::size_t count) const {
    for (const SlotTruth& slot : kSlotTruths) {
      if (program.Rows(slot.file, static_cast<int>(slot.inputs.size())).size() < count) {
        return false;
      }
    }
    return true;
  }

  // Row 0 is the first set, row r set r: what stands in the file is what was sampled.
  void ExpectTruth() const {
    const Truth truth = program.ReadTruth();
    EXPECT_EQ(truth.overruns, 0);
    EXPECT_EQ(truth.lost, 0);
    for (const SlotTruth& slot : kSlotTruths) {
      const auto rows = program.Rows(slot.file, static_cast<int>(slot.inputs.size()));
      ASSERT_GT(rows.size(), 2U);
      EXPECT_EQ(rows[0], rows[1]) << slot.file;
      for (std::size_t column = 0; column < slot.inputs.size(); ++column) {
        const auto& taken = truth.taken.at({slot.inet, slot.inputs[column]});
        ASSERT_GE(taken.size(), rows.size() - 1);
        for (std::size_t row = 1; row < rows.size(); ++row) {
          ASSERT_EQ(rows[row][column], taken[row - 1])
              << slot.file << " row " << row << " column " << column;
        }
      }
    }
  }

  VirtualScreen screen;
  InstalledProgram program;
};

TEST_P(Recording, HoldsWhatTheInstrumentsSampledWordByWord) {
  ASSERT_TRUE(program.Start());
  ASSERT_TRUE(WaitUntil([this] { return HasRows(25); }, seconds(60)));
  EXPECT_TRUE(program.End());
  ExpectTruth();
}

TEST_P(Recording, GoesOnWithoutAGapAfterTheProgramWasAway) {
  ASSERT_TRUE(program.Start());
  ASSERT_TRUE(WaitUntil([this] { return HasRows(12); }, seconds(60)));
  EXPECT_TRUE(program.End());
  const std::size_t before = program.Rows("M260314A.TUB", 3).size();
  ASSERT_TRUE(program.Tell("fill all 20"));
  ASSERT_TRUE(program.Start());
  ASSERT_TRUE(WaitUntil([this, before] { return HasRows(before + 22); }, seconds(60)));
  EXPECT_TRUE(program.End());
  ExpectTruth();
}

INSTANTIATE_TEST_SUITE_P(BothKindsOfLine, Recording, testing::Values("direct", "plugin"),
                         [](const auto& kind) { return std::string(kind.param); });

}  // namespace
}  // namespace tavrel
