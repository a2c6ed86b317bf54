#include "service/service_screen.h"

#include <gtest/gtest.h>

#include "link/register_access.h"
#include "service/instrument_use.h"
#include "tests/service/service_bench.h"

namespace tavrel {
namespace {

// A service screen that reads one register a step.
class ProbeScreen : public ServiceScreen {
 public:
  explicit ProbeScreen(const ServiceParts& parts) : ServiceScreen(parts, View::kAllRam) {}
  void Open() override { OpenScreen(); }
  [[nodiscard]] std::string Caption() const override { return InstrumentName(); }

  int set_back = LinkWatch::kMostMisses;
  int silences_told = 0;

 protected:
  void TakeStep() override {
    const LinkResult result = Read(Parts().link, Register{Inet(), "Y", 1}).status;
    silences_told += MissesAnswer(result, set_back) ? 1 : 0;
  }
};

class AServiceScreen : public ServiceBench {
 protected:
  ProbeScreen screen{bench.service};
};

TEST_F(AServiceScreen, IsThatOfTheSelectedInstrumentOrOfTheFirst) {
  Start();
  Open(screen);
  EXPECT_EQ(screen.Inet(), 1) << "none is selected";
  EXPECT_EQ(screen.Caption(), " Tavrel-1");
  screen.CloseNow();
  bench.state.ActiveInet = 6;
  Open(screen);
  EXPECT_EQ(screen.Caption(), " Tavrel-6");
  EXPECT_EQ(bench.state.ActiveView, View::kAllRam);
}

TEST_F(AServiceScreen, HasOneStepAtEachTurnOfTheCycleAndNoneWhileThePortIsLost) {
  Start();
  bench.state.ActiveInet = 3;
  Open(screen);
  EXPECT_EQ(Pulses(2), (Texts{"Y21?", "Y21?"}));
  bench.link.PortOpen = false;
  screen.Step();
  EXPECT_TRUE(bench.port.sent.empty());
  bench.link.PortOpen = true;
  screen.CloseNow();
  screen.Step();
  EXPECT_TRUE(bench.port.sent.empty());
}

TEST_F(AServiceScreen, SaysWithTheThirdSilenceInARowThatThereIsNoConnection) {
  Start();
  Open(screen);
  bench.port.answer = [](const std::string&) { return ""; };
  Pulses(2);
  EXPECT_FALSE(screen.ComIcon());
  Pulses(1);
  EXPECT_TRUE(screen.ComIcon());
  EXPECT_EQ(bench.link_watch.LinkMisses, 2);
  Pulses(1);
  EXPECT_EQ(screen.silences_told, 2) << "each further silence says so again";
  bench.port.answer = [](const std::string&) { return "?"; };
  Pulses(1);
  EXPECT_FALSE(screen.ComIcon()) << "a refusal is an answer";
  EXPECT_EQ(bench.link_watch.LinkMisses, 0);
}

TEST_F(AServiceScreen, GoesOnWithTheCountOfTheOneBefore) {
  Start();
  bench.port.answer = [](const std::string&) { return ""; };
  Open(screen);
  Pulses(2);
  screen.CloseNow();
  ProbeScreen other{bench.service};
  Open(other);
  Pulses(1);
  EXPECT_TRUE(other.ComIcon());
}

TEST_F(AServiceScreen, ThatSetsTheCountBackByTwoSaysSoAtEverySecondSilence) {
  Start();
  bench.port.answer = [](const std::string&) { return ""; };
  screen.set_back = 1;
  Open(screen);
  Pulses(3);
  EXPECT_EQ(screen.silences_told, 1);
  Pulses(1);
  EXPECT_EQ(screen.silences_told, 1);
  EXPECT_TRUE(screen.ComIcon()) << "no answer has come";
  Pulses(1);
  EXPECT_EQ(screen.silences_told, 2);
}

TEST_F(AServiceScreen, GivesTheNormalPointerBackWhenItCloses) {
  Start();
  Open(screen);
  bench.events.SetPointer(Pointer::kHourglass);
  screen.Quit();
  EXPECT_EQ(bench.events.pointers.back(), Pointer::kNormal);
}

TEST_F(AServiceScreen, EndsTheHourglassOfTheMenuWhenItOpens) {
  Start();
  bench.events.SetPointer(Pointer::kHourglass);
  Open(screen);
  EXPECT_EQ(bench.events.pointers.back(), Pointer::kNormal);
}

TEST_F(AServiceScreen, KnowsTheTestsThatRecordAnInput) {
  bench.Install(3, "M260301A.OVN", BenchProgram::Header(4, 1, 5, true));
  bench.Install(11, "M260302A.OVN", BenchProgram::Header(4, 1, 4, false));
  bench.Install(12, "M260303A.OVN", BenchProgram::Header(4, 1, 15, true));
  Start();
  EXPECT_EQ(SlotsThatRecord(bench.state, 4, 5), (std::vector{3, 12}));
  EXPECT_EQ(SlotsThatRecord(bench.state, 4, 15), (std::vector{12}));
  EXPECT_TRUE(SlotsThatRecord(bench.state, 4, 0).empty());
  EXPECT_TRUE(SlotsThatRecord(bench.state, 5, 5).empty());
  bench.state.Unit[3].SetApparatusName("Oven");
  bench.state.Unit[12].SetApparatusName("Autoclave");
  EXPECT_EQ(TestsThatRecord(bench.state, 4), "row 3:  Oven\nrow 12:  Autoclave");
  EXPECT_EQ(TestsThatRecord(bench.state, 2), "");
}

}  // namespace
}  // namespace tavrel
