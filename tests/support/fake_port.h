#ifndef TAVREL_TESTS_SUPPORT_FAKE_PORT_H_
#define TAVREL_TESTS_SUPPORT_FAKE_PORT_H_

#include <algorithm>
#include <chrono>
#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/serial_port.h"
#include "tests/support/fake_clock.h"

namespace tavrel {

// A serial port without a line, on a clock that only its waits move.
// Levers:
//   answer(command)  what the line says to a command, at once; the empty text is silence
//   Arrive(delay, text)  characters that come `delay` after now, whatever is sent
//   DropComing()     what is on its way never comes
//   open_error, open_text, in_use  how the next Open ends
//   Vanish()         the device goes away
//   after_read       runs at the end of each ReadAll, such as a stall of the whole program
class FakePort : public SerialPort {
 public:
  explicit FakePort(FakeClock& clock) : clock_(clock) {}

  std::function<std::string(const std::string&)> answer = [](const std::string&) {
    return std::string();
  };
  std::function<void()> after_read = [] {};
  int open_error = 0;
  std::string open_text;
  bool in_use = false;

  std::vector<std::string> sent;                    // every command, in its order
  std::vector<std::pair<int, std::string>> opened;  // every Open and Reopen: number and settings
  int reopened = 0;                                 // how many of them were a Reopen

  void Arrive(std::chrono::nanoseconds delay, const std::string& text) {
    coming_.emplace_back(clock_.Elapsed() + delay, text);
    std::stable_sort(coming_.begin(), coming_.end(),
                     [](const auto& left, const auto& right) { return left.first < right.first; });
  }
  void DropComing() { coming_.clear(); }
  void Vanish() {
    open_ = false;
    event_ = kLastHarmlessPortEvent + 9;
    coming_.clear();
  }

  [[nodiscard]] PortOpening Open(int number, std::string_view settings) override {
    opened.emplace_back(number, settings);
    open_ = open_error == 0;
    settings_ = settings;
    return {open_error, open_text, in_use};
  }
  [[nodiscard]] PortOpening Reopen() override {
    ++reopened;
    return opened.empty() ? PortOpening{1, "nothing was open"}
                          : Open(opened.back().first, std::string(opened.back().second));
  }
  void Close() override { open_ = false; }
  [[nodiscard]] bool IsOpen() const override { return open_; }
  [[nodiscard]] std::string Settings() const override { return open_ ? settings_ : ""; }
  bool Write(std::string_view bytes) override {
    if (!open_) {
      return false;
    }
    sent.emplace_back(bytes);
    const std::string reply = answer(sent.back());
    if (!reply.empty()) {
      Arrive({}, reply);
    }
    return true;
  }
  [[nodiscard]] std::string ReadAll() override {
    std::string all;
    while (!coming_.empty() && coming_.front().first <= clock_.Elapsed()) {
      all += coming_.front().second;
      coming_.pop_front();
    }
    after_read();
    return all;
  }
  void WaitForData(std::chrono::nanoseconds limit) override {
    const auto end = clock_.Elapsed() + limit;
    const auto next = coming_.empty() ? end : std::min(end, coming_.front().first);
    clock_.Advance(std::max(next - clock_.Elapsed(), std::chrono::nanoseconds(0)));
  }
  [[nodiscard]] int TakeEvent() override { return std::exchange(event_, 0); }

 private:
  FakeClock& clock_;
  bool open_ = false;
  std::string settings_;
  int event_ = 0;
  std::deque<std::pair<std::chrono::nanoseconds, std::string>> coming_;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_FAKE_PORT_H_
