#include "state/form_sizes.h"

#include <gtest/gtest.h>

#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

class WindowSizes : public testing::Test {
 protected:
  WindowSizes() { state.DataHome = home.Path() + "/"; }

  TemporaryDirectory home;
  RunState state;
};

TEST_F(WindowSizes, AreThereInTheNextRun) {
  FormSizes first(state);
  EXPECT_EQ(first.Of("TavGraph"), std::nullopt);
  first.Keep("TavGraph", {900, 600});
  first.Keep("TavWork", {700, 500});
  first.Keep("TavGraph", {800, 650});
  FormSizes next(state);
  EXPECT_EQ(next.Of("TavGraph"), (FormSize{800, 650}));
  EXPECT_EQ(next.Of("TavWork"), (FormSize{700, 500}));
  EXPECT_EQ(next.Of("ALL_OPEN"), std::nullopt);
}

TEST_F(WindowSizes, StandInAFileOfTheirOwn) {
  FormSizes(state).Keep("TavGraph", {900, 600});
  EXPECT_EQ(home.Read(kFormSizesFile), "TavGraph 900 600\n");
  EXPECT_FALSE(std::filesystem::exists(home.File("TAVREL.USR")));
}

TEST_F(WindowSizes, TakeNothingThatIsNoSize) {
  for (const std::string& line :
       {std::string("TavGraph"), std::string("TavGraph 900"), std::string("TavGraph x 600"),
        std::string("TavGraph -900 600"), std::string("TavGraph 0 0"),
        std::string("TavGraph 99999999999999999999 600"), std::string("Tav/Graph 900 600"),
        std::string(40, 'a') + " 900 600", std::string("\0\xFF 900 600", 10)}) {
    home.Write(kFormSizesFile, line + "\nTavWork 700 500\n");
    FormSizes sizes(state);
    EXPECT_EQ(sizes.Of("TavGraph"), std::nullopt) << line;
    EXPECT_EQ(sizes.Of("TavWork"), (FormSize{700, 500})) << line;
  }
}

TEST_F(WindowSizes, HaveSidesOf50To16384Dots) {
  FormSizes sizes(state);
  for (const FormSize possible : {FormSize{50, 16384}, FormSize{16384, 50}}) {
    sizes.Keep("TavGraph", possible);
    EXPECT_EQ(sizes.Of("TavGraph"), possible);
    EXPECT_EQ(FormSizes(state).Of("TavGraph"), possible) << "in the next run";
  }
  sizes.Keep("TavGraph", {900, 600});
  for (const FormSize other :
       {FormSize{49, 600}, FormSize{900, 49}, FormSize{16385, 600}, FormSize{900, 16385}}) {
    sizes.Keep("TavGraph", other);
    EXPECT_EQ(sizes.Of("TavGraph"), (FormSize{900, 600})) << other.Width << " " << other.Height;
  }
}

TEST_F(WindowSizes, AreBoundedWhateverTheFileHolds) {
  std::string lines;
  for (int form = 0; form < 100; ++form) {
    lines += "f" + std::to_string(form) + " 900 600\n";
  }
  home.Write(kFormSizesFile, lines);
  FormSizes sizes(state);
  EXPECT_EQ(sizes.Of("f63"), (FormSize{900, 600}));
  EXPECT_EQ(sizes.Of("f64"), std::nullopt);
  sizes.Keep("more", {900, 600});
  EXPECT_EQ(sizes.Of("more"), std::nullopt);
  sizes.Keep("f7", {800, 650});
  EXPECT_EQ(sizes.Of("f7"), (FormSize{800, 650})) << "one that is there is no more than before";
  home.Write(kFormSizesFile, std::string(5000, ' ') + "\nTavWork 700 500\n");
  EXPECT_EQ(FormSizes(state).Of("TavWork"), std::nullopt);
}

TEST_F(WindowSizes, AreOnlyLostWhereTheDirectoryTakesNothing) {
  state.DataHome = home.Path() + "/nowhere/";
  FormSizes sizes(state);
  sizes.Keep("TavGraph", {900, 600});
  EXPECT_EQ(sizes.Of("TavGraph"), (FormSize{900, 600}));
}

}  // namespace
}  // namespace tavrel
