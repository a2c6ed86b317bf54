#ifndef TAVREL_TESTS_STANDSTILL_WORST_DATA_H_
#define TAVREL_TESTS_STANDSTILL_WORST_DATA_H_

#include <string>

#include "tests/support/temporary_directory.h"

namespace tavrel {

// The most that a user can have: twelve recordings of noise in all 15 inputs, nearly full, among
// very many files. Each run of the program begins with the same.
class WorstData {
 public:
  // `files` is how many recordings of other days there are in the directory.
  explicit WorstData(int files);

  // Recordings and settings as at the beginning; what a run has left behind is gone.
  void Restore() const;

  // The program's directory, with a separator at its end.
  [[nodiscard]] std::string Home() const { return directory_.Path() + "/"; }
  [[nodiscard]] std::string File(const std::string& name) const { return directory_.File(name); }

 private:
  void MakeOldRecordings(int files) const;

  TemporaryDirectory directory_;
  std::string noise_;     // samples of a recording
  std::string settings_;  // the settings file
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_STANDSTILL_WORST_DATA_H_
