// Records under faults and compares every word with what the instruments took:
//
//   truth_bench --short | --long [CASE]     one line of a table for each case and kind of line
//   truth_bench --list                      names of the cases of a short run
//
// Exit status 1 if a word that arrived is wrong, missing, twice or in another place.

#include <array>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "tests/truth/truth_cases.h"

namespace tavrel {
namespace {

using std::chrono::hours;
using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr std::array<const char*, 2> kLines = {"direct", "plugin"};

void PrintHeading() {
  std::printf("%-22s %-7s %5s %6s %6s %5s %5s %5s %6s %6s %6s %7s %5s  %s\n", "case", "line",
              "secs", "rows", "wrong", "torn", "lost", "twice", "shift", "handed", "onLine",
              "excused", "over", "verdict");
  std::fflush(stdout);
}

// One case on one kind of line: the table's row, then what was found in words. True if good.
bool RunHere(const TruthCase& truth_case, const std::string& line, bool is_long) {
  Bench bench = truth_case.bench;
  bench.line = line;
  TruthRun run(bench);
  Findings found;
  const auto begin = steady_clock::now();
  bool is_good = run.Begin();
  if (is_good) {
    truth_case.deed(run, is_long ? truth_case.long_amount : truth_case.short_amount);
    is_good = run.End(found);
  }
  const auto took = std::chrono::duration_cast<seconds>(steady_clock::now() - begin);
  const LineTruth truth = run.Truth();
  is_good = is_good && found.IsTrue();
  std::printf("%-22s %-7s %5d %6d %6d %5d %5d %5d %6d %6d %6d %7d %5d  %s %s\n", truth_case.name,
              line.c_str(), static_cast<int>(took.count()), found.rows, found.wrong, found.torn,
              found.lost, found.doubled, found.shifted, truth.handed, truth.lost, found.excused,
              truth.overruns, is_good ? "true" : "BROKEN", run.Problem().c_str());
  for (const std::string& detail : found.details) {
    std::printf("    %s\n", detail.c_str());
  }
  return is_good;
}

// Both kinds of line at the same time, each in a process of its own.
bool RunBoth(const std::string& program, const TruthCase& truth_case, const char* length) {
  std::vector<Process> runs;
  runs.reserve(kLines.size());
  for (const char* line : kLines) {
    runs.emplace_back(std::vector<std::string>{program, length, truth_case.name, "--line", line});
  }
  bool is_good = true;
  for (Process& run : runs) {
    for (std::string text = run.ReadLine(hours(3)); !text.empty(); text = run.ReadLine(hours(3))) {
      std::printf("%s\n", text.c_str());
      std::fflush(stdout);
    }
    is_good = run.Wait(hours(1)) == 0 && is_good;
  }
  return is_good;
}

int List() {
  for (const TruthCase& truth_case : TruthCases()) {
    if (truth_case.short_amount > 0) {
      std::printf("%s\n", truth_case.name);
    }
  }
  return 0;
}

int Main(const std::vector<std::string>& arguments) {
  const std::string length = arguments.size() > 1 ? arguments[1] : "";
  if (length == "--list") {
    return List();
  }
  if (length != "--short" && length != "--long") {
    std::fprintf(stderr, "usage: truth_bench --short | --long [CASE] | --list\n");
    return 2;
  }
  const std::string wanted = arguments.size() > 2 ? arguments[2] : "";
  const std::string line = arguments.size() > 4 ? arguments[4] : "";
  const bool is_long = length == "--long";
  bool is_good = true;
  bool any = false;
  if (line.empty()) {
    PrintHeading();
  }
  for (const TruthCase& truth_case : TruthCases()) {
    const bool is_wanted =
        wanted.empty() ? is_long || truth_case.short_amount > 0 : wanted == truth_case.name;
    if (is_wanted) {
      any = true;
      is_good = (line.empty() ? RunBoth(arguments[0], truth_case, length.c_str())
                              : RunHere(truth_case, line, is_long)) &&
                is_good;
    }
  }
  return any && is_good ? 0 : 1;
}

}  // namespace
}  // namespace tavrel

int main(int count, char** values) {
  return tavrel::Main({values, values + count});
}
