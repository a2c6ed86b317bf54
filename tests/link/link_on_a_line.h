#ifndef TAVREL_TESTS_LINK_LINK_ON_A_LINE_H_
#define TAVREL_TESTS_LINK_LINK_ON_A_LINE_H_

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <functional>

#include "link/link.h"
#include "tests/support/fake_port.h"

namespace tavrel {

// A link on a port without a device: what comes from it and when is up to the test.
class LinkOnALine : public testing::Test {
 protected:
  void Open(int com_mode) { link.LinkOpen({"COM3", com_mode, 4}); }

  void Ask(std::int16_t inet, const char* letter, std::int16_t index) {
    link.ComInet = inet;
    link.ComLetter = letter;
    link.ComIndex = index;
    link.ReadReg();
  }

  void Write(std::int16_t inet, const char* letter, std::int16_t index, std::int16_t value) {
    link.ComInet = inet;
    link.ComLetter = letter;
    link.ComIndex = index;
    link.ComValue = value;
    link.WriteReg();
  }

  // Lets the time pass in which a late reply of a failed exchange is waited for.
  void LetTheLineRest() { clock.AdvanceSeconds(1); }

  std::chrono::milliseconds Took(const std::function<void()>& exchange) {
    const auto start = clock.Elapsed();
    exchange();
    return std::chrono::duration_cast<std::chrono::milliseconds>(clock.Elapsed() - start);
  }

  FakeClock clock;
  FakePort port{clock};
  Link link{port, clock};
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_LINK_LINK_ON_A_LINE_H_
