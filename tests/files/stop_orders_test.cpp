#include "files/stop_orders.h"

#include <gmock/gmock.h>

#include "tests/files/pump_fixture.h"
#include "tests/support/hindrance.h"

namespace tavrel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<StopOrder> EachController() {
  std::vector<StopOrder> orders;
  for (int inet = 1; inet <= kInets; ++inet) {
    for (int ctrl = 1; ctrl <= kControllers; ++ctrl) {
      const int slot = 1 + static_cast<int>(orders.size()) % kSlots;
      orders.push_back(
          {slot, static_cast<std::int16_t>(inet), static_cast<std::int16_t>(ctrl), false});
    }
  }
  return orders;
}

TEST(StopOrdersFile, HoldsALineForEachOrder) {
  EXPECT_EQ(EncodeStopOrders({{3, 2, 1, true}, {12, 6, 4, false}}),
            "Z=0 slot 3 inet 2 controller 1\r\nZ=0 slot 12 inet 6 controller 4\r\nend\r\n");
  EXPECT_EQ(EncodeStopOrders({}), "end\r\n");
}

TEST(StopOrdersFile, GivesBackWhatItWasGiven) {
  const StopOrdersText text = DecodeStopOrders(EncodeStopOrders(EachController()));
  EXPECT_TRUE(text.IsWhole);
  EXPECT_EQ(text.Orders, EachController());
}

TEST(StopOrdersFile, TakesTheOrdersBeforeACut) {
  const std::string whole = EncodeStopOrders(EachController());
  for (std::size_t length = 0; length < whole.size(); ++length) {
    const StopOrdersText text = DecodeStopOrders(whole.substr(0, length));
    EXPECT_FALSE(text.IsWhole) << length;
    ASSERT_LE(text.Orders.size(), EachController().size());
    for (std::size_t place = 0; place < text.Orders.size(); ++place) {
      EXPECT_EQ(text.Orders[place], EachController()[place]) << length;
    }
  }
}

TEST(StopOrdersFile, PassesOverWhatNoOrderIs) {
  for (const char* line :
       {"", "Z=0", "Z=0 slot 0 inet 2 controller 1", "Z=0 slot 13 inet 2 controller 1",
        "Z=0 slot 1 inet 7 controller 1", "Z=0 slot 1 inet 2 controller 5",
        "Z=0 slot 1 inet 0 controller 1", "Z=0 slot 1 inet 2 controller 0",
        "Z=0 slot 1 inet 65538 controller 1", "Z=0 slot 1 inet 2 controller 01",
        "Z=2 slot 1 inet 2 controller 1", "Z=0 slot 1 inet 2 controller 1 ",
        "z=0 slot 1 inet 2 controller 1", "Z=0 slot 99999999999999999999 inet 2 controller 1"}) {
    const StopOrdersText text =
        DecodeStopOrders(std::string(line) + "\r\nZ=0 slot 5 inet 4 controller 3\r\nend\r\n");
    EXPECT_FALSE(text.IsWhole) << line;
    EXPECT_THAT(text.Orders, ElementsAre(StopOrder{5, 4, 3, false})) << line;
  }
  EXPECT_FALSE(DecodeStopOrders("end\r\nend\r\n").IsWhole);
}

TEST(StopOrdersFile, HasOneOrderForAController) {
  const StopOrdersText text = DecodeStopOrders(
      "Z=0 slot 5 inet 4 controller 3\r\nZ=0 slot 6 inet 4 controller 3\r\nend\r\n");
  EXPECT_THAT(text.Orders, ElementsAre(StopOrder{6, 4, 3, false}));
}

// Orders that the slots give at the end of their recordings; a silent instrument is number 2.
class Stops : public testing::Test, public PumpFixture {
 protected:
  Stops() { line.silent = {2}; }

  void End(int slot, int inet, int ctrl) {
    UnitRecord unit = HeaderOf(inet, {1});
    unit.UnitCtrl = static_cast<std::int16_t>(ctrl);
    unit.UnitEndAction = 1;
    Open(slot, std::string("M01111") + static_cast<char>('A' + slot) + "A.NEW", BytesOf(unit));
    engine.EndOfRecording(slot);
  }
  [[nodiscard]] bool HasFile() const { return directory.Exists(kStopOrdersFile); }
  [[nodiscard]] std::vector<StopOrder> OnDisk() const {
    return HasFile() ? DecodeStopOrders(directory.Read(kStopOrdersFile)).Orders
                     : std::vector<StopOrder>();
  }
  void TenSeconds() {
    clock.AdvanceSeconds(10);
    port.sent.clear();
    engine.TenSecondTick();
    Pump(5);
  }

  StopOrders& orders = engine.Orders();
};

TEST_F(Stops, AreOnTheDiskBeforeTheyAreSentAndBeforeTheFileSaysThatItHasEnded) {
  UnitRecord unit = Running(HeaderOf(1, {1}));
  unit.UnitCtrl = 4;
  unit.UnitEndAction = 1;
  Open(7, kNewFile, BytesOf(unit));
  std::vector<StopOrder> on_disk;
  bool is_on = true;
  const auto answer = port.answer;
  port.answer = [&](const std::string& command) {
    on_disk = OnDisk();
    is_on = RecordInFile(kNewFile).UnitRecOn == 1;
    return answer(command);
  };
  engine.EndOfRecording(7);
  EXPECT_THAT(port.sent, ElementsAre("Z04=0\r"));
  EXPECT_THAT(on_disk, ElementsAre(StopOrder{7, 1, 4, false}));
  EXPECT_FALSE(is_on);
  EXPECT_FALSE(HasFile()) << "it was acknowledged";
  EXPECT_FALSE(state.StopPending[7]);
}

TEST_F(Stops, StayOnTheDiskUntilTheyAreAcknowledged) {
  for (int slot = 1; slot <= kSlots; ++slot) {
    line.silent = {2};
    End(slot, 2, 1 + slot % 4);
    EXPECT_TRUE(state.StopPending[slot]);
    EXPECT_EQ(OnDisk().size(), 1U);
    TenSeconds();
    EXPECT_EQ(port.sent.size(), 1U);
    EXPECT_EQ(OnDisk().size(), 1U);
    line.silent.clear();
    TenSeconds();
    EXPECT_EQ(port.sent.size(), 1U);
    EXPECT_FALSE(HasFile());
    EXPECT_FALSE(state.StopPending[slot]);
  }
  EXPECT_THAT(Announced(), IsEmpty());
}

// The slot is given to another controller, and that recording ends, too.
TEST_F(Stops, OfOneSlotForTwoControllersAreBothSent) {
  End(3, 2, 1);
  End(3, 2, 4);
  EXPECT_EQ(OnDisk().size(), 2U);
  line.silent.clear();
  TenSeconds();
  EXPECT_THAT(port.sent, ElementsAre("Z11=0\r", "Z14=0\r"));
  EXPECT_FALSE(HasFile());
}

TEST_F(Stops, AreTakenUpByTheNextProgram) {
  End(3, 2, 1);
  End(9, 2, 4);
  line.silent.clear();
  port.sent.clear();
  state.StopPending.Fill(false);
  StopOrders next({state, link, messages});
  next.Load();
  EXPECT_TRUE(state.StopPending[3] && state.StopPending[9]);
  EXPECT_TRUE(next.HasDue());
  EXPECT_TRUE(next.SendDue());
  EXPECT_THAT(OnDisk(), ElementsAre(StopOrder{9, 2, 4, false}));
  EXPECT_TRUE(next.SendDue());
  EXPECT_FALSE(next.SendDue());
  EXPECT_THAT(port.sent, ElementsAre("Z11=0\r", "Z14=0\r"));
  EXPECT_FALSE(HasFile());
}

TEST_F(Stops, AreVoidOnceSomebodyHasSwitchedTheController) {
  End(3, 2, 1);
  End(4, 2, 2);
  orders.Drop(2, 1);
  EXPECT_FALSE(orders.IsWaiting(2, 1));
  EXPECT_TRUE(orders.IsWaiting(2, 2));
  EXPECT_FALSE(state.StopPending[3]);
  EXPECT_THAT(OnDisk(), ElementsAre(StopOrder{4, 2, 2, false}));
  orders.Drop(2, 3);
  EXPECT_THAT(OnDisk(), ElementsAre(StopOrder{4, 2, 2, false}));
}

TEST_F(Stops, AreVoidOnceTheInstrumentIsAnother) {
  line.silent = {2, 5};
  End(3, 2, 1);
  End(4, 5, 1);
  End(5, 2, 4);
  orders.DropInstrument(2);
  EXPECT_THAT(OnDisk(), ElementsAre(StopOrder{4, 5, 1, false}));
  EXPECT_FALSE(state.StopPending[3] || state.StopPending[5]);
  EXPECT_TRUE(state.StopPending[4]);
}

TEST_F(Stops, WaitForARealLine) {
  End(3, 2, 1);
  link.LinkOpen({"----", 0});
  TenSeconds();
  orders.Drop(2, 1);
  EXPECT_FALSE(orders.CanSend());
  EXPECT_EQ(OnDisk().size(), 1U) << "the store in memory is not the instrument";
  End(4, 2, 2);
  EXPECT_EQ(OnDisk().size(), 1U) << "that one was simulated as well";
  EXPECT_FALSE(state.StopPending[4]);
  line.silent.clear();
  link.LinkOpen({"COM1", 0});
  TenSeconds();
  EXPECT_THAT(port.sent, ElementsAre("Z11=0\r"));
  EXPECT_FALSE(HasFile());
}

TEST_F(Stops, AreSentEvenIfTheDiskDoesNotTakeThem) {
  state.DataHome = directory.Path() + "/gone/";
  End(3, 1, 1);
  EXPECT_THAT(Announced(), IsEmpty()) << "it was acknowledged at once";
  line.silent = {2};
  const Messages::Deferral deferral(messages);
  End(4, 2, 1);
  TenSeconds();
  TenSeconds();
  EXPECT_THAT(Announced(), ElementsAre("TAVREL.OFF | Cannot write file."));
  EXPECT_FALSE(orders.Save().empty());
  std::filesystem::create_directory(state.DataHome);
  TenSeconds();
  EXPECT_EQ(DecodeStopOrders(directory.Read("gone/TAVREL.OFF")).Orders.size(), 1U);
  EXPECT_TRUE(orders.Save().empty());
}

TEST_F(Stops, TellThatTheirFileIsDamaged) {
  const Messages::Deferral deferral(messages);
  directory.Write(kStopOrdersFile, "Z=0 slot 3 inet 2 controller 1\r\nZ=0 slo");
  orders.Load();
  EXPECT_EQ(orders.All().size(), 1U);
  directory.Write(kStopOrdersFile, std::string(20'000, 'Z'));
  StopOrders next({state, link, messages});
  next.Load();
  EXPECT_TRUE(next.All().empty());
  EXPECT_THAT(Announced(), ElementsAre("Read  file | TAVREL.OFF  is damaged !",
                                       "Read  file | TAVREL.OFF  is damaged !"));
}

TEST_F(Stops, OfTheProgramBeforeAreReadAsSoonAsTheDiskGivesThem) {
  const Messages::Deferral deferral(messages);
  MakeUnreadable(directory.File(kStopOrdersFile));
  orders.Load();
  End(4, 2, 1);
  TenSeconds();
  EXPECT_TRUE(std::filesystem::is_symlink(directory.File(kStopOrdersFile)))
      << "what it holds is not known yet";
  EXPECT_THAT(Announced(), ElementsAre(testing::StartsWith("Read  file | TAVREL.OFF: "),
                                       "TAVREL.OFF | Cannot write file."));
  orders.Drop(2, 3);
  std::filesystem::remove(directory.File(kStopOrdersFile));
  directory.Write(kStopOrdersFile,
                  EncodeStopOrders({{9, 2, 4, false}, {8, 2, 1, false}, {7, 2, 3, false}}));
  TenSeconds();
  EXPECT_FALSE(orders.IsWaiting(2, 3)) << "somebody has switched it meanwhile";
  EXPECT_THAT(OnDisk(), ElementsAre(StopOrder{4, 2, 1, false}, StopOrder{9, 2, 4, false}));
  EXPECT_TRUE(state.StopPending[9]);
  line.silent.clear();
  TenSeconds();
  EXPECT_FALSE(directory.Exists(kStopOrdersFile));
}

TEST_F(Stops, AreNotTouchedWhereThereAreNone) {
  orders.Load();
  orders.Repeat();
  EXPECT_FALSE(orders.SendDue());
  EXPECT_EQ(orders.Save(), "");
  EXPECT_FALSE(HasFile());
  EXPECT_THAT(Announced(), IsEmpty());
}

}  // namespace
}  // namespace tavrel
