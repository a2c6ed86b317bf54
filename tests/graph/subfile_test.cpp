#include "graph/subfile.h"

#include <gtest/gtest.h>

#include "tests/files/recording_fixture.h"

namespace tavrel {
namespace {

// A recording of the inputs 1, 3, 4, 7 of which 3 is hidden and 4 the hidden reference.
class TheSubfile : public testing::Test {
 protected:
  TheSubfile() {
    source = HeaderOf(0);
    for (const int input : {1, 3, 4, 7}) {
      source.UnitRole[input] = 1;
      source.UnitInputName[input].Set("input");
    }
    source.UnitColour.Fill(0);
    source.UnitColour[1] = 4;
    source.UnitColour[5] = 3;  // not recorded
    source.UnitColour[7] = 2;
    source.UnitChannels = 4;
    source.UnitRef = 4;
    source.UnitView = {7600, 5000, 10000, 9000};
    source.UnitMarks = 2;
    source.UnitGraphMode = 1;
    home.Write("M260314A.OVN", BytesOf(source) + Words({0, 0, 0, 0, 11, 13, 14, 17, 21, 23, 24, 27,
                                                        31, 33, 34, 37}));
    EXPECT_TRUE(file.Open(home.File("M260314A.OVN"), FileAccess::kRead));
  }
  UnitRecord Header() { return SubfileHeader(source, cut); }
  std::string Rows() {
    SampleReader reader(file);
    return SubfileBytes(source, Header(), cut, reader).value().substr(kHeaderBytes);
  }

  TemporaryDirectory home;
  RandomFile file;
  UnitRecord source{};
  SubfileCut cut{504, 508, 12.4, "M260314A.OVN"};
};

TEST_F(TheSubfile, KeepsTheCurvesAndTheReference) {
  std::vector<int> kept;
  for (int input = 1; input <= kInputs; ++input) {
    if (IsKept(source, input)) {
      kept.push_back(input);
    }
  }
  EXPECT_EQ(kept, (std::vector<int>{1, 4, 7}));
}

TEST_F(TheSubfile, HasAHeaderOfItsOwn) {
  const UnitRecord header = Header();
  EXPECT_EQ(header.UnitChannels, 3);
  EXPECT_EQ(header.UnitXmax, 12);
  EXPECT_EQ(header.UnitView, (std::array<std::int16_t, 4>{7689, 5000, 29211, 9000}));
  EXPECT_EQ(header.UnitOrigin.Get(), "M260314A.OVN");
  EXPECT_EQ(header.UnitRole[3], 0);
  EXPECT_EQ(header.UnitInputName[3].Get(), "");
  EXPECT_EQ(header.UnitRole[4], 1);
  EXPECT_EQ(header.UnitInputName[4].Get(), "input");
}

TEST_F(TheSubfile, LeavesAllElseAsItWas) {
  UnitRecord expected = source;
  expected.UnitChannels = 3;
  expected.UnitXmax = 12;
  expected.UnitView[0] = 7689;
  expected.UnitView[2] = 29211;
  expected.UnitOrigin.Set("M260314A.OVN");
  expected.UnitRole[3] = 0;
  expected.UnitInputName[3].Set("");
  EXPECT_EQ(BytesOf(Header()), BytesOf(expected));
}

TEST_F(TheSubfile, HoldsTheRowsFromTheFirstToTheLast) {
  EXPECT_EQ(Rows(), Words({11, 14, 17, 21, 24, 27}));
  cut.LastRecord = 512;
  EXPECT_EQ(Rows(), Words({11, 14, 17, 21, 24, 27, 31, 34, 37}));
  cut.LastRecord = 504;
  EXPECT_EQ(Rows(), Words({11, 14, 17}));
  cut.LastRecord = 500;
  EXPECT_EQ(Rows(), "");
}

TEST_F(TheSubfile, KeepsTheLastInput) {
  source.UnitRole[7] = 0;
  source.UnitColour[7] = 0;
  source.UnitRole[15] = 1;
  source.UnitColour[15] = 2;
  EXPECT_EQ(Header().UnitChannels, 3);
  EXPECT_EQ(Header().UnitRole[15], 1);
  EXPECT_EQ(Rows(), Words({11, 14, 17, 21, 24, 27}));
}

TEST_F(TheSubfile, RoundsTheLengthOfItsAxisToEven) {
  cut.Minutes = 12.5;
  EXPECT_EQ(Header().UnitXmax, 12);
  cut.Minutes = 13.5;
  EXPECT_EQ(Header().UnitXmax, 14);
}

TEST_F(TheSubfile, BeginsWithTheHeaderInFileOrder) {
  SampleReader reader(file);
  EXPECT_EQ(SubfileBytes(source, Header(), cut, reader).value().substr(0, kHeaderBytes),
            BytesOf(Header()));
}

TEST_F(TheSubfile, IsNoneWhereTheFileEndsBeforeItsRows) {
  cut.LastRecord = 516;
  SampleReader reader(file);
  EXPECT_EQ(SubfileBytes(source, Header(), cut, reader), std::nullopt);
}

TEST(SubfileName, HasAnSForItsFirstLetter) {
  EXPECT_EQ(SubfileName("M260314A.OVN"), "S260314A.OVN");
  EXPECT_EQ(SubfileName("S260314A.OVN"), "S260314A.OVN");
  EXPECT_EQ(SubfileName("Ö1.OVN"), "S1.OVN");
  EXPECT_EQ(SubfileName(""), "");
  EXPECT_TRUE(IsSubfileName("s1.ovn"));
  EXPECT_TRUE(IsSubfileName("S"));
  EXPECT_FALSE(IsSubfileName("M260314A.OVN"));
  EXPECT_FALSE(IsSubfileName(""));
}

}  // namespace
}  // namespace tavrel
