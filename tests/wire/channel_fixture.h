#ifndef TAVREL_TESTS_WIRE_CHANNEL_FIXTURE_H_
#define TAVREL_TESTS_WIRE_CHANNEL_FIXTURE_H_

#include <gtest/gtest.h>

#include <QTest>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "link/register_access.h"
#include "platform/system_clock.h"
#include "setup/channel_adjustment.h"
#include "tests/wire/live_instrument.h"
#include "tests/wire/wire_program.h"

namespace tavrel {

// The machine's clock that a test also moves in leaps. Levers: Leap().
class LeapClock : public Clock {
 public:
  void Leap(std::chrono::nanoseconds time) { moved_ += time; }

  [[nodiscard]] double Timer() const override { return clock_.Timer(); }
  [[nodiscard]] std::chrono::nanoseconds Elapsed() const override {
    return clock_.Elapsed() + moved_;
  }
  [[nodiscard]] WallTime Now() const override { return clock_.Now(); }

 private:
  SystemClock clock_;
  std::chrono::nanoseconds moved_{0};
};

// TavChann on the real serial port with a virtual instrument behind it. Its seconds go by in leaps;
// the waits on the line last as long as ever.
class ChannelFixture {
 protected:
  static constexpr int kInet = 2;
  static constexpr int kPatience = 20000;  // steps

  explicit ChannelFixture(bool plugin,
                          const std::vector<std::string>& options = {"--instruments", "2",
                                                                     "--line-speed", "none"})
      : is_plugin(plugin), instrument(program.home, plugin, options) {}

  void Connect() {
    ASSERT_TRUE(instrument.IsUp());
    program.link.LinkOpen({"COM1", is_plugin ? 2 : 0, 4});
    ASSERT_TRUE(program.link.PortOpen) << program.link.PortErrorText;
    program.state.ActiveInet = kInet;
    program.state.ActiveView = View::kMainSheet;
    program.port.before_write = [this] { CountExchange(); };
    Greet();
  }

  // An instrument that answers again; nothing of before is on the line any more. That the rest of a
  // late reply is met here is no disturbance.
  void Greet() {
    fails = [] { return false; };
    EXPECT_TRUE(instrument.Tell("fault all none"));
    const int before = disturbances;
    EXPECT_TRUE(ForSure('Y', 0));
    disturbances = before;
  }
  // On a busy machine any exchange may fail.
  std::optional<std::int16_t> ForSure(char letter, int row, int inet = kInet) {
    for (int attempt = 0; attempt < 5; ++attempt) {
      const Reading reading = Read(program.link, Register{inet, std::string_view(&letter, 1), row});
      if (reading.IsGood()) {
        return reading.word;
      }
    }
    return std::nullopt;
  }
  int Held(char letter, int row) { return ForSure(letter, row).value_or(kNoData); }

  // On a busy machine exchanges fail that were not meant to, and a late reply comes before the
  // program has looked at its clock: the action is done again then. True if it was done without
  // that, and has come to its end. Until then it must not judge what it sees.
  bool Undisturbed(const std::function<bool()>& action) {
    for (int attempt = 0; attempt < 6; ++attempt) {
      disturbances = 0;
      const bool is_done = action();
      NoteResult();
      if (disturbances == 0) {
        return is_done;
      }
    }
    return false;
  }

  // Exchanges are counted from here on.
  void Count() {
    exchanges = 0;
    instrument.Forget();
  }
  void CountExchange() {
    NoteResult();
    ++exchanges;
    has_failed = fails();
    if (has_failed) {
      EXPECT_TRUE(instrument.Tell("fault 2 " + fault + " times 1"));
    }
  }

  void NoteResult() {
    disturbances += exchanges > 0 && has_failed == program.link.IsGood(kInet) ? 1 : 0;
  }

  void Step() {
    channels.Timer_chann();
    clock.Leap(std::chrono::milliseconds(ChannelAdjustment::kTickMilliseconds));
    EXPECT_TRUE(QTest::qWaitFor([this] { return program.link.IsSettled(); }, 1000));
  }
  bool StepTo(AdjState state) {
    for (int step = 0; step < kPatience && channels.State() != state; ++step) {
      Step();
    }
    return channels.State() == state;
  }
  void OpenIdle() {
    channels.Open();
    ASSERT_TRUE(StepTo(AdjState::kIdle));
    Count();
  }

  const bool is_plugin;
  WireProgram program{1};
  LiveInstrument instrument;
  LeapClock clock;
  ChannelAdjustment channels{{program.state, program.link, program.dialogs, program.events, clock}};
  int exchanges = 0;
  int disturbances = 0;  // exchanges that did not end as they were meant to
  bool has_failed = false;
  // Whether the command that goes out now fails, and how.
  std::function<bool()> fails = [] { return false; };
  std::string fault;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_WIRE_CHANNEL_FIXTURE_H_
