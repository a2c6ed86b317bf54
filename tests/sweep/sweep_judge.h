#ifndef TAVREL_TESTS_SWEEP_SWEEP_JUDGE_H_
#define TAVREL_TESTS_SWEEP_SWEEP_JUDGE_H_

#include <string>
#include <vector>

namespace tavrel {

// What one run of the job has left.
struct SweptPlaces {
  std::string home;   // the installation
  std::string truth;  // what the instruments took
  std::string told;   // what the user was told, a row for each text and stage
  std::string calls;
  std::string user;         // the user's own data directory, which the program need not use
  std::string base;         // the installation before the run
  std::string failed_call;  // such as "unlink"; empty if none failed
  int status = 0;           // of the job
};

struct SweepVerdict {
  std::vector<std::string> faults;
  bool was_told = false;  // something, before the last start
};

// Files that are no concern of the job, but lie beside its own.
void LayBystanders(const std::string& home);

[[nodiscard]] SweepVerdict Judge(const SweptPlaces& places);

}  // namespace tavrel

#endif  // TAVREL_TESTS_SWEEP_SWEEP_JUDGE_H_
