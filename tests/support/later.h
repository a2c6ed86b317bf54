#ifndef TAVREL_TESTS_SUPPORT_LATER_H_
#define TAVREL_TESTS_SUPPORT_LATER_H_

#include <chrono>
#include <functional>
#include <thread>
#include <utility>

namespace tavrel {

// The other side of a line that acts a while after now, on a thread of its own, while the test
// waits for what comes of it. Joined when it goes.
class Later {
 public:
  Later(std::chrono::milliseconds delay, std::function<void()> act)
      : thread_([when = std::chrono::steady_clock::now() + delay, act = std::move(act)] {
          std::this_thread::sleep_until(when);
          act();
        }) {}
  ~Later() { thread_.join(); }
  Later(const Later&) = delete;
  Later& operator=(const Later&) = delete;

 private:
  std::thread thread_;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_SUPPORT_LATER_H_
