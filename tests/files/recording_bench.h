#ifndef TAVREL_TESTS_FILES_RECORDING_BENCH_H_
#define TAVREL_TESTS_FILES_RECORDING_BENCH_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cstring>
#include <numeric>
#include <span>
#include <string>
#include <vector>

#include "files/held_set.h"
#include "tests/files/pump_fixture.h"
#include "tests/support/set_line.h"

namespace tavrel {

inline constexpr const char* kName = "M260314A.OVN";
inline constexpr const char* kHeldName = ".M260314A.OVN.set";
inline constexpr int kSlot = 12;

// The order in which the inputs of a set are sampled, and the distance of one to the next.
struct Sampling {
  std::string order;
  int distance;  // milliseconds
};

// A recording by the cycle: a call of the pump every 50 ms, the tick of ten seconds, the wait bar.
struct RecordingBench {
  PumpFixture fixture;
  SetLine line{fixture.clock, fixture.port};
  std::vector<int> inputs;
  int ticks = 0;
  bool wall_runs = false;  // the wall clock goes on with the other one

  explicit RecordingBench(const Sampling& sampling = {"together", 0},
                          const std::vector<int>& recorded = {1, 2, 3}, int interval = 10)
      : inputs(recorded) {
    line.interval = std::chrono::seconds(interval);
    line.registers[{1, 'T', 0}] = 1;  // a fast instrument
    Place(sampling);
    fixture.screens.on_show = [this](View) { Run(10); };
  }

  void Place(const Sampling& sampling) {
    std::vector<int> in_order = inputs;
    if (sampling.order == "descending") {
      std::ranges::reverse(in_order);
    } else if (sampling.order == "random") {
      std::rotate(in_order.begin(), in_order.begin() + static_cast<int>(in_order.size()) / 3,
                  in_order.end());
    }
    int place = 0;
    for (const int input : in_order) {
      line.places[input] = std::chrono::milliseconds(place);
      place += sampling.order == "together" ? 0 : sampling.distance;
    }
  }

  [[nodiscard]] UnitRecord Header() const {
    UnitRecord unit = HeaderOf(1, {});
    unit.UnitChannels = static_cast<std::int16_t>(inputs.size());
    for (const int input : inputs) {
      unit.UnitRole[input] = 1;
    }
    unit.UnitFast = 1;
    unit.UnitInterval = static_cast<std::int16_t>(line.interval / std::chrono::seconds(1));
    return unit;
  }

  // By the user: the series are cleared and the first samples watched.
  void Start() {
    fixture.Open(kSlot, kName, BytesOf(Header()));
    fixture.engine.StartRecording(kSlot);
  }

  void Run(double time) {
    const auto end =
        fixture.clock.Elapsed() + std::chrono::milliseconds(static_cast<int>(time * 1000));
    while (fixture.clock.Elapsed() < end) {
      fixture.clock.Advance(std::chrono::milliseconds(50));
      SetWall();
      if (++ticks % 200 == 0) {
        fixture.engine.TenSecondTick();
      }
      if (fixture.link.IsSettled()) {
        // What others have asked last is no business of the pump.
        fixture.link.ComInet = kInets;
        fixture.link.ComLetter = "Z";
        fixture.link.ComIndex = kInputs;
        fixture.engine.PumpOnce();
      }
    }
  }

  void SetWall() {
    const std::chrono::hh_mm_ss time(
        std::chrono::floor<std::chrono::seconds>(fixture.clock.Elapsed()));
    if (wall_runs) {
      fixture.clock.wall.Hour = static_cast<int>(time.hours().count());
      fixture.clock.wall.Minute = static_cast<int>(time.minutes().count());
      fixture.clock.wall.Second = static_cast<int>(time.seconds().count());
    }
  }

  // False if it does not come to so many rows.
  bool RunToRows(int rows) {
    for (int turn = 0; turn < 4000 && fixture.state.SampleCount[kSlot] < rows; ++turn) {
      Run(std::chrono::duration<double>(line.interval).count() / 8);
    }
    return fixture.state.SampleCount[kSlot] >= rows;
  }

  static std::string Question(int input) {
    char command[8];
    std::snprintf(command, sizeof command, "X0%X?", static_cast<unsigned>(input));
    return command;
  }

  // The next exchange that would hand a value of that input over fails: its reply is lost, or the
  // command does not arrive.
  void FailNext(int input, bool is_lost) {
    line.on_command = [this, input, is_lost](const std::string& each) {
      if (each == Question(input) && !line.buffers[{1, input}].empty()) {
        (is_lost ? line.swallowed : line.dropped).insert(each);
        line.on_command = [](const std::string&) {};
      }
    };
  }

  // False if nothing comes in doubt for a long time.
  bool RunToDoubt() {
    for (int turn = 0; turn < 20000 && !fixture.state.ColumnsInDoubt[kSlot]; ++turn) {
      Run(0.05);
    }
    return fixture.state.ColumnsInDoubt[kSlot];
  }

  // The program is killed where it stands and started again.
  void KillAndStart() {
    for (RandomFile& file : fixture.state.SlotFileNo) {
      file.Close();
    }
    fixture.state.SampleSeen = {};
    fixture.state.SampleValue = {};
    fixture.state.ReadState = {};
    fixture.state.Columns = {};
    fixture.Name(kSlot, kName);
    fixture.files.OpenRecordingFile(kSlot);
  }

  // Each row as the sets its words are of, the first one left out.
  [[nodiscard]] std::vector<std::vector<int>> Rows(const std::string& name = kName) const {
    const std::string bytes = fixture.SamplesInFile(name);
    std::vector<std::int16_t> words(bytes.size() / 2);
    std::memcpy(words.data(), bytes.data(), words.size() * 2);
    std::vector<std::vector<int>> rows;
    for (std::size_t word = inputs.size(); word < words.size(); ++word) {
      const std::size_t column = word % inputs.size();
      if (column == 0) {
        rows.emplace_back();
      }
      EXPECT_EQ(words[word] % 100, inputs[column]) << "word " << word;
      rows.back().push_back(words[word] / 100);
    }
    return rows;
  }

  // Row r holds set r in all columns, but for the one place that is named, with its set.
  void ExpectRows(int wrong_row = -1, int wrong_input = 0, int its_set = 0) const {
    const auto rows = Rows();
    for (std::size_t place = 0; place < rows.size(); ++place) {
      const int row = static_cast<int>(place) + 1;
      for (std::size_t column = 0; column < inputs.size(); ++column) {
        const bool is_wrong = row == wrong_row && inputs[column] == wrong_input;
        EXPECT_EQ(rows[place][column], is_wrong ? its_set : row)
            << "row " << row << ", input " << inputs[column];
      }
    }
  }

  [[nodiscard]] HeldSet Held() const {
    const std::string bytes = fixture.directory.Read(kHeldName);
    return DecodeHeldSet(std::as_bytes(std::span(bytes))).value_or(HeldSet{-1, -1, {}, {}, {}});
  }
  void Hold(const HeldSet& held) const {
    const auto bytes = EncodeHeldSet(held);
    fixture.directory.Write(kHeldName,
                            std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
  }
};

inline std::vector<int> AllInputs() {
  std::vector<int> all(kInputs);
  std::iota(all.begin(), all.end(), 1);
  return all;
}

}  // namespace tavrel

#endif  // TAVREL_TESTS_FILES_RECORDING_BENCH_H_
