#include "work/program_profile.h"

#include <gmock/gmock.h>

#include <ostream>

namespace tavrel {

void PrintTo(const ProfilePiece& piece, std::ostream* to) {
  *to << piece.FromMinutes << " min " << piece.FromDegrees << " to " << piece.ToMinutes << " min "
      << piece.ToDegrees << (piece.IsAim ? " aim" : "");
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::int16_t kIsothermal = 2;
constexpr std::int16_t kRamp = 3;

ProgramRows RowsFrom(const std::vector<ProgramStep>& steps, std::size_t first = 0) {
  ProgramRows rows;
  std::copy(steps.begin(), steps.end(), rows.begin() + static_cast<std::ptrdiff_t>(first));
  return rows;
}

TEST(Profile, OfAnEmptyProgramIsEmpty) {
  EXPECT_THAT(ProgramProfile({}), IsEmpty());
}

TEST(Profile, HoldsASetpointAndJumpsToTheNext) {
  for (const std::size_t first : {0U, 20U, 48U}) {
    const auto pieces =
        ProgramProfile(RowsFrom({{kIsothermal, -1, 2000, 30}, {kIsothermal, -1, 1000, 10}}, first));
    EXPECT_THAT(pieces, ElementsAre(ProfilePiece{0, 100, 30, 100}, ProfilePiece{30, 100, 30, 50},
                                    ProfilePiece{30, 50, 40, 50}));
  }
}

// 5 hundredths of a degree in a second are 3 degrees in a minute.
TEST(Profile, RampsFromWhereTheStepBeforeEndedAndHoldsTheRest) {
  EXPECT_THAT(ProgramProfile(RowsFrom({{kIsothermal, -1, 2000, 10}, {kRamp, 5, 3200, 60}})),
              ElementsAre(ProfilePiece{0, 100, 10, 100}, ProfilePiece{10, 100, 30, 160},
                          ProfilePiece{30, 160, 70, 160}));
  EXPECT_THAT(ProgramProfile(RowsFrom({{kIsothermal, -1, 2000, 10}, {kRamp, 5, 1400, 60}})),
              ElementsAre(ProfilePiece{0, 100, 10, 100}, ProfilePiece{10, 100, 20, 70},
                          ProfilePiece{20, 70, 70, 70}));
}

TEST(Profile, EndsARampThatIsTooSlowBeforeItsFinalValue) {
  EXPECT_THAT(ProgramProfile(RowsFrom(
                  {{kIsothermal, -1, 2000, 10}, {kRamp, 5, 3200, 5}, {kIsothermal, -1, 3200, 1}})),
              ElementsAre(ProfilePiece{0, 100, 10, 100}, ProfilePiece{10, 100, 15, 115},
                          ProfilePiece{15, 115, 15, 160}, ProfilePiece{15, 160, 16, 160}));
  for (const std::int16_t none : {std::int16_t{0}, kEmptyCell}) {
    EXPECT_THAT(ProgramProfile(RowsFrom({{kIsothermal, -1, 2000, 10}, {kRamp, none, 3200, 5}})),
                ElementsAre(ProfilePiece{0, 100, 10, 100}, ProfilePiece{10, 100, 15, 100}));
  }
}

TEST(Profile, OfARampThatBeginsNobodyKnowsWhereIsItsFinalValue) {
  EXPECT_THAT(
      ProgramProfile(RowsFrom({{kRamp, 5, 2000, 10}, {0, -1, 200, 20}, {kRamp, 5, 1000, 10}})),
      ElementsAre(ProfilePiece{0, 100, 10, 100, true}, ProfilePiece{30, 50, 40, 50, true}));
}

TEST(Profile, PassesOverRowsThatAreNotWhole) {
  EXPECT_THAT(ProgramProfile(RowsFrom(
                  {{kIsothermal, -1, -1, 30}, {kIsothermal, -1, 2000, -1}, {-1, 5, 2000, 30}})),
              IsEmpty());
}

TEST(Profile, SurvivesEveryWord) {
  for (const std::int16_t word : {std::int16_t{-32768}, std::int16_t{32767}}) {
    ProgramRows rows;
    rows.fill({word, word, word, word});
    const auto pieces = ProgramProfile(rows);
    EXPECT_LE(pieces.size(), 3U * kProgramRows);
  }
}

}  // namespace
}  // namespace tavrel
