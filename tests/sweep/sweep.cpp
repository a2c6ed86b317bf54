// Lets each call to the system that a short main job of the program makes on its data and settings
// fail once, and looks what is left of the recordings:
//
//   sweep --short            a sample of all
//   sweep --long             every call in every way in which it can end
//     --with WAY             only ENOSPC, EIO, EINTR, EMFILE or SHORT
//     --at N                 only the Nth call; what the job told is shown then
//     --times N              the call fails N times on that path instead of once
//     --keep                 the last installation stays, its place is told
//
// Exit status 1 if a word is wrong, a row torn, a set lost and not told, a key of the settings or
// another file lost, or something left behind.

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "tests/e2e/process.h"
#include "tests/sweep/call_ways.h"
#include "tests/sweep/sweep_judge.h"

namespace tavrel {
namespace {

namespace fs = std::filesystem;

constexpr int kShortRuns = 100;
constexpr const char* kLimit = "60";  // seconds of one run
constexpr const char* kWays[] = {"ENOSPC", "EIO", "EINTR", "EMFILE", "SHORT"};

// What the command line asks for.
struct Wish {
  bool is_long = false;
  bool keep = false;
  std::string with;
  int at = 0;
  int times = 1;
};

// One failing call.
struct Failure {
  int at = 0;
  std::string call;  // and its path
  std::string way;
};

std::string CallOf(const Failure& failure) {
  return failure.call.substr(0, failure.call.find(' '));
}

std::optional<Wish> ReadWish(const std::vector<std::string>& arguments) {
  Wish wish;
  if (arguments.empty() || (arguments[0] != "--short" && arguments[0] != "--long")) {
    return std::nullopt;
  }
  wish.is_long = arguments[0] == "--long";
  for (std::size_t place = 1; place < arguments.size(); ++place) {
    const std::string& word = arguments[place];
    if (word == "--keep") {
      wish.keep = true;
      continue;
    }
    if (++place == arguments.size()) {
      return std::nullopt;
    }
    const std::string& value = arguments[place];
    if (word == "--with") {
      wish.with = value;
    } else if (word == "--at") {
      wish.at = std::atoi(value.c_str());
    } else if (word == "--times") {
      wish.times = std::atoi(value.c_str());
    } else {
      return std::nullopt;
    }
  }
  return wish;
}

// The installation as it is before each run, and the place of the runs.
class Place {
 public:
  Place() : root_(fs::temp_directory_path() / ("tavrel-sweep-" + std::to_string(getpid()))) {
    fs::create_directories(root_);
    // The settings name the directory of the recordings, so it is made in its place.
    is_there_ = RunCommand({SWEEP_JOB, "prepare", Home()}) == 0;
    LayBystanders(Home());
    fs::rename(Home(), Base());
  }
  ~Place() {
    std::error_code ignored;
    if (!keep_) {
      fs::remove_all(root_, ignored);
    }
  }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;

  [[nodiscard]] bool IsThere() const { return is_there_; }
  void Keep() { keep_ = true; }
  [[nodiscard]] std::string Home() const { return root_ + "/home"; }
  [[nodiscard]] std::string Base() const { return root_ + "/base"; }
  [[nodiscard]] SweptPlaces Run(const Failure& failure, int times) const {
    SweptPlaces places;
    places.home = Home();
    places.truth = root_ + "/truth";
    places.told = root_ + "/told";
    places.calls = root_ + "/calls";
    places.user = root_ + "/user";
    places.base = Base();
    places.failed_call = CallOf(failure);
    for (const std::string& old :
         {places.home, places.truth, places.told, places.calls, places.user}) {
      fs::remove_all(old);
    }
    fs::copy(Base(), places.home, fs::copy_options::recursive);
    places.status = RunCommand(
        {"timeout", kLimit, "env", "LD_PRELOAD=" + std::string(FAILING_CALLS),
         "SWEEP_ROOT=" + places.home + "/", "SWEEP_LOG=" + places.calls,
         "SWEEP_AT=" + std::to_string(failure.at), "SWEEP_TIMES=" + std::to_string(times),
         "SWEEP_WITH=" + failure.way, "XDG_DATA_HOME=" + places.user, SWEEP_JOB, "run", places.home,
         places.truth, places.told});
    return places;
  }

 private:
  std::string root_;
  bool is_there_ = false;
  bool keep_ = false;
};

// The calls that the job makes when none fails.
std::vector<Failure> CallsOf(const SweptPlaces& places) {
  std::vector<Failure> calls;
  std::ifstream file(places.calls);
  for (std::string row; std::getline(file, row);) {
    const auto blank = row.find(' ');
    calls.push_back({std::atoi(row.c_str()), row.substr(blank + 1), ""});
  }
  return calls;
}

std::vector<Failure> AllFailures(const std::vector<Failure>& calls, const Wish& wish) {
  std::vector<Failure> failures;
  for (const Failure& call : calls) {
    const std::string name = CallOf(call);
    for (const char* way : kWays) {
      const bool is_wanted = (wish.with.empty() || wish.with == way) &&
                             (wish.at == 0 || wish.at == call.at) && CanEndIn(name, way);
      if (is_wanted) {
        failures.push_back({call.at, call.call, way});
      }
    }
  }
  return failures;
}

// Evenly over all of them.
std::vector<Failure> SampleOf(const std::vector<Failure>& failures) {
  std::vector<Failure> sample;
  const std::size_t step = std::max<std::size_t>(1, failures.size() / kShortRuns);
  for (std::size_t place = 0; place < failures.size(); place += step) {
    sample.push_back(failures[place]);
  }
  return sample;
}

int Sweep(const Wish& wish) {
  Place place;
  if (!place.IsThere()) {
    std::fputs("no installation\n", stderr);
    return 2;
  }
  if (wish.keep) {
    place.Keep();
    std::printf("installation: %s\n", place.Home().c_str());
  }
  const SweptPlaces whole = place.Run({}, 1);
  const SweepVerdict unspoilt = Judge(whole);
  for (const std::string& fault : unspoilt.faults) {
    std::printf("without a failing call: %s\n", fault.c_str());
  }
  const auto all = AllFailures(CallsOf(whole), wish);
  const auto failures = wish.is_long || wish.at > 0 ? all : SampleOf(all);
  int broken = static_cast<int>(unspoilt.faults.size());
  int told = 0;
  for (const Failure& failure : failures) {
    const SweptPlaces places = place.Run(failure, wish.times);
    const SweepVerdict verdict = Judge(places);
    told += verdict.was_told ? 1 : 0;
    broken += verdict.faults.empty() ? 0 : 1;
    if (!verdict.faults.empty() || wish.at > 0) {
      std::printf("%5d %-6s %s%s\n", failure.at, failure.way.c_str(), failure.call.c_str(),
                  verdict.was_told ? " (told)" : "");
    }
    for (const std::string& fault : verdict.faults) {
      std::printf("      %s\n", fault.c_str());
    }
    if (wish.at > 0) {
      std::ifstream texts(places.told);
      std::printf("%s", std::string(std::istreambuf_iterator<char>(texts), {}).c_str());
    }
    std::fflush(stdout);
  }
  std::printf("%zu failing calls of %zu, %d of them told, %d broken\n", failures.size(), all.size(),
              told, broken);
  return broken == 0 ? 0 : 1;
}

}  // namespace
}  // namespace tavrel

int main(int count, char** values) {
  const auto wish = tavrel::ReadWish({values + 1, values + count});
  if (!wish) {
    std::fputs("usage: sweep --short | --long [--with WAY] [--at N] [--times N] [--keep]\n",
               stderr);
    return 2;
  }
  return tavrel::Sweep(*wish);
}
