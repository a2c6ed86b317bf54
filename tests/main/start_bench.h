#ifndef TAVREL_TESTS_FRAME_START_BENCH_H_
#define TAVREL_TESTS_FRAME_START_BENCH_H_

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>

#include "tests/support/bench_program.h"

namespace tavrel {

// The start of the program, which goes to another directory.
class Start : public testing::Test {
 protected:
  ~Start() override { std::filesystem::current_path(began_in_); }

  // Starts with twelve slots on six instruments.
  std::chrono::nanoseconds LongestTimeWithoutPaint() {
    for (int slot = 1; slot <= kSlots; ++slot) {
      bench.Install(slot, "M260314" + std::string(1, static_cast<char>('A' + slot)) + ".OVN",
                    BenchProgram::Header((slot + 1) / 2, 1 + slot % 2, 2, true));
    }
    std::chrono::nanoseconds longest{0};
    auto painted = bench.clock.Elapsed();
    bench.events.on_repaint = [&] {
      longest = std::max(longest, bench.clock.Elapsed() - painted);
      painted = bench.clock.Elapsed();
    };
    bench.events.on_rest = [&](std::chrono::milliseconds time) {
      bench.events.on_repaint();
      bench.clock.Advance(time);
      painted = bench.clock.Elapsed();
    };
    bench.Start();
    return longest;
  }

  BenchProgram bench;

 private:
  std::filesystem::path began_in_ = std::filesystem::current_path();
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_FRAME_START_BENCH_H_
