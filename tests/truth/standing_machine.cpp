#include "tests/truth/standing_machine.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>

namespace tavrel {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

StandingMachine::StandingMachine() : watch_([this](const std::stop_token& end) { Watch(end); }) {}

void StandingMachine::Watch(const std::stop_token& end) {
  constexpr milliseconds kPause{5};
  std::mutex mutex;
  std::unique_lock lock(mutex);
  std::condition_variable_any until_end;
  while (!end.stop_requested()) {
    const auto before = steady_clock::now();
    until_end.wait_for(lock, end, kPause, [] { return false; });
    const auto stood = duration_cast<milliseconds>(steady_clock::now() - before) - kPause;
    longest_ = std::max(longest_.load(), stood);
  }
}

}  // namespace tavrel
