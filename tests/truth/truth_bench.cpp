// Records under faults and compares every word with what the instruments took:
//
//   truth_bench --list                    names of the cases of a short run
//   truth_bench --list-long               names of all cases
//   truth_bench --short [CASE...]         each case once
//   truth_bench --long [CASE...]          each case over the orders and distances of sampling
//     --line direct | plugin              on one kind of line instead of both
//     --order ORDER  --distance MS        sampled in that way instead
//     --keep DIRECTORY                    what a run that is not true has left is copied there
//
// One row of a table for each case, kind of line and way of sampling. Exit status 1 if a word is
// wrong, missing, twice or in another place and the user was not told so, or if the ledger of a
// recording is not what the truth says: "same", or "in 2" where its bounds hold the truth and are
// two sets apart. "disturbed" is a run in which nothing is wrong but the count of what was told,
// while the machine stood still: the instruments cannot know which of their replies came too late
// for the program then. It fails as well, and is to be run again.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

#include "tests/truth/standing_machine.h"
#include "tests/truth/truth_cases.h"

namespace tavrel {
namespace {

using std::chrono::hours;
using std::chrono::milliseconds;
using std::chrono::seconds;
using std::chrono::steady_clock;

constexpr std::array<const char*, 2> kLines = {"direct", "plugin"};
constexpr std::array<const char*, 3> kOrders = {"ascending", "descending", "random"};
constexpr std::array<int, 3> kDistances = {30, 200, 500};

// A reply has 110 ms and is there after 25 to 60 ms, as long as both ends of the line run.
constexpr milliseconds kLongStand{25};
constexpr std::size_t kMostTexts = 12;  // of a case that is broken

// What the command line asks for.
struct Wish {
  bool is_long = false;
  std::vector<std::string> cases;  // none: all
  std::string line;                // empty: both
  std::string order;               // empty: as the case has it
  std::optional<int> distance;
  std::string keep;  // empty: nothing is kept
};

std::optional<Wish> ReadWish(const std::vector<std::string>& arguments) {
  Wish wish;
  const std::string length = arguments.size() > 1 ? arguments[1] : "";
  wish.is_long = length == "--long";
  if (!wish.is_long && length != "--short") {
    return std::nullopt;
  }
  for (std::size_t place = 2; place < arguments.size(); ++place) {
    const std::string& word = arguments[place];
    if (word.rfind("--", 0) != 0) {
      wish.cases.push_back(word);
      continue;
    }
    if (++place == arguments.size()) {
      return std::nullopt;
    }
    if (word == "--line") {
      wish.line = arguments[place];
    } else if (word == "--order") {
      wish.order = arguments[place];
    } else if (word == "--distance") {
      wish.distance = std::atoi(arguments[place].c_str());
    } else if (word == "--keep") {
      wish.keep = arguments[place];
    } else {
      return std::nullopt;
    }
  }
  return wish;
}

// All ways of sampling: together, and each order at each distance.
std::vector<SamplingScan> AllScans() {
  std::vector<SamplingScan> scans = {{}};
  for (const char* order : kOrders) {
    for (const int distance : kDistances) {
      scans.push_back({order, distance});
    }
  }
  return scans;
}

// Each order once.
std::vector<SamplingScan> FewScans() {
  return {{}, {"ascending", 200}, {"descending", 500}, {"random", 500}};
}

// A short run has one way for each case, another one for the next case.
std::vector<SamplingScan> ScansOf(const Wish& wish, const TruthCase& truth_case,
                                  std::size_t place) {
  if (!wish.order.empty() || wish.distance) {
    return {{wish.order.empty() ? "random" : wish.order, wish.distance.value_or(0)}};
  }
  if (wish.is_long) {
    return truth_case.is_heavy ? FewScans() : AllScans();
  }
  const auto all = AllScans();
  return {all[place * 3 % all.size()]};
}

void PrintHeading() {
  std::printf("%-22s %-7s %-14s %5s %5s %5s %5s %5s %5s %5s %5s %5s %5s %5s %6s %6s %5s %6s  %s\n",
              "case", "line", "sampled", "secs", "sets", "wrong", "told", "inv", "torn", "lost",
              "given", "told", "twice", "shift", "onLine", "unsure", "over", "ledger", "verdict");
  std::fflush(stdout);
}

void PrintRow(const std::string& name, const Bench& bench, seconds took, const Findings& found,
              int overruns, const LedgerVerdict& ledgers) {
  const std::string scan = bench.scan.order + " " + std::to_string(bench.scan.distance);
  std::printf("%-22s %-7s %-14s %5d %5d %5d %5d %5d %5d %5d %5d %5d %5d %5d %6d %6d %5d %6s  ",
              name.c_str(), bench.line.c_str(), scan.c_str(), static_cast<int>(took.count()),
              found.rows, found.wrong, found.excused, found.invented, found.torn, found.lost,
              found.given_up, found.told_lost, found.doubled, found.shifted, found.losses,
              found.in_doubt, overruns, ledgers.Text().c_str());
}

// One case on one kind of line: the table's row, then what was found in words. True if good.
bool RunHere(const TruthCase& truth_case, const Bench& bench, const Wish& wish) {
  const StandingMachine machine;
  TruthRun run(bench);
  Findings found;
  LedgerVerdict ledgers;
  const auto begin = steady_clock::now();
  bool is_good = run.Begin();
  bool is_healthy = false;
  if (is_good) {
    truth_case.action(run, wish.is_long ? truth_case.long_amount : truth_case.short_amount);
    is_healthy = run.IsHealthy();
    is_good = run.End(found, ledgers);
  }
  const auto took = std::chrono::duration_cast<seconds>(steady_clock::now() - begin);
  const int overruns = run.Truth().overruns;
  PrintRow(truth_case.name, bench, took, found, overruns, ledgers);
  std::string verdict = run.Problem();
  const auto object = [&](bool is_wrong, const char* text) {
    verdict += is_wrong ? (verdict.empty() ? "" : ", ") + std::string(text) : "";
  };
  const bool has_stood = machine.Longest() >= kLongStand;
  object(is_healthy && !has_stood && found.told_filled + found.told_uncertain > 0,
         "doubts on a healthy line");
  object(!bench.overruns && overruns > 0, "sets lost within the buffer");
  object(run.HeardByForeign() > 0, "commands to a foreign device");
  object(!ledgers.Agrees(), "the ledger differs");
  is_good = is_good && verdict.empty() && found.Agrees();
  found.details.insert(found.details.end(), ledgers.problems.begin(), ledgers.problems.end());
  const bool is_disturbed = has_stood && verdict.empty() && found.HoldsTheTruth();
  std::printf("%s %s\n", is_good ? "true" : (is_disturbed ? "disturbed" : "BROKEN"),
              verdict.c_str());
  if (has_stood) {
    std::printf("    the machine stood still for %d ms\n",
                static_cast<int>(machine.Longest().count()));
  }
  for (const std::string& detail : is_good ? std::vector<std::string>() : found.details) {
    std::printf("    %s\n", detail.c_str());
  }
  const auto texts = is_good ? std::vector<std::string>() : run.ShownTexts();
  for (std::size_t place = 0; place < std::min(texts.size(), kMostTexts); ++place) {
    std::printf("    told: %s\n", texts[place].c_str());
  }
  if (!is_good && !wish.keep.empty()) {
    run.Keep(wish.keep + "/" + truth_case.name + " " + bench.line);
  }
  return is_good;
}

// Each kind of line in a process of its own, at the same time.
bool RunLines(const std::string& program, const TruthCase& truth_case, const SamplingScan& scan,
              const Wish& wish) {
  std::vector<Process> runs;
  runs.reserve(kLines.size());
  for (const char* line : kLines) {
    std::vector<std::string> call = {program,
                                     wish.is_long ? "--long" : "--short",
                                     truth_case.name,
                                     "--line",
                                     line,
                                     "--order",
                                     scan.order,
                                     "--distance",
                                     std::to_string(scan.distance)};
    if (!wish.keep.empty()) {
      call.insert(call.end(), {"--keep", wish.keep});
    }
    runs.emplace_back(call);
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

bool RunCase(const std::string& program, const Wish& wish, const TruthCase& truth_case,
             const SamplingScan& scan) {
  if (wish.line.empty()) {
    return RunLines(program, truth_case, scan, wish);
  }
  Bench bench = truth_case.bench;
  bench.line = wish.line;
  bench.scan = scan;
  return RunHere(truth_case, bench, wish);
}

bool IsWanted(const Wish& wish, const TruthCase& truth_case) {
  if (wish.cases.empty()) {
    return wish.is_long || truth_case.short_amount > 0;
  }
  return std::find(wish.cases.begin(), wish.cases.end(), truth_case.name) != wish.cases.end();
}

int List(bool all) {
  for (const TruthCase& truth_case : TruthCases()) {
    if (all || truth_case.short_amount > 0) {
      std::printf("%s\n", truth_case.name);
    }
  }
  return 0;
}

int Main(const std::vector<std::string>& arguments) {
  const std::string first = arguments.size() > 1 ? arguments[1] : "";
  if (first == "--list" || first == "--list-long") {
    return List(first == "--list-long");
  }
  const auto wish = ReadWish(arguments);
  if (!wish) {
    std::fprintf(stderr,
                 "usage: truth_bench --short | --long [CASE...] [--line LINE] [--order ORDER] "
                 "[--distance MS] [--keep DIRECTORY]\n       truth_bench --list | --list-long\n");
    return 2;
  }
  bool is_good = true;
  bool any = false;
  if (wish->line.empty()) {
    PrintHeading();
  }
  for (std::size_t place = 0; place < TruthCases().size(); ++place) {
    const TruthCase& truth_case = TruthCases()[place];
    if (!IsWanted(*wish, truth_case)) {
      continue;
    }
    any = true;
    for (const SamplingScan& scan : ScansOf(*wish, truth_case, place)) {
      is_good = RunCase(arguments[0], *wish, truth_case, scan) && is_good;
    }
  }
  return any && is_good ? 0 : 1;
}

}  // namespace
}  // namespace tavrel

int main(int count, char** values) {
  return tavrel::Main({values, values + count});
}
