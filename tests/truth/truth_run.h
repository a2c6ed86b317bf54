#ifndef TAVREL_TESTS_TRUTH_TRUTH_RUN_H_
#define TAVREL_TESTS_TRUTH_TRUTH_RUN_H_

#include <chrono>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "tests/e2e/installed_program.h"
#include "tests/truth/comparison.h"
#include "tests/truth/foreign_device.h"
#include "tests/truth/ledger_verdict.h"

namespace tavrel {

// The order and the distance in time in which the instruments sample the inputs of a set.
struct SamplingScan {
  std::string order = "together";  // or "ascending", "descending", "random"
  int distance = 0;                // milliseconds of the instruments' time
};

// What is recorded.
enum class Recordings {
  kThree,   // three of two and three inputs, on two instruments
  kSingle,  // one input
  kPair,    // two inputs
  kWide,    // all fifteen inputs of one instrument
  kTwelve,  // twelve of two inputs, on six instruments
};

// Where and how fast a case records.
struct Bench {
  std::string line = "direct";  // or "plugin"
  SamplingScan scan{};
  Recordings recordings = Recordings::kThree;
  // Seconds of the instruments between two sets, and how much faster than the program's their
  // time runs. For the program there are interval / speedup whole seconds between two sets.
  int interval = 10;
  int speedup = 10;
  int backlog = 8;          // sets that the instruments have taken before the program starts
  bool small_disk = false;  // the data stand on a small file system of their own
  bool overruns = false;    // more may pass than the instruments' buffers hold
  int slept_sets = 0;       // that pass while the machine sleeps, about
  bool is_seldom = false;   // sets are so far apart that the last ones are slept for, too
  bool foreign = false;     // another device stands where the port's name falls through to
  OwnClock clock = OwnClock::kNone;
  std::chrono::sys_seconds begins_at{};  // what that clock shows at first
};

// The installed program beside two instruments, recording; what a case does to them; and the
// comparison with the truth at the end.
class TruthRun {
 public:
  explicit TruthRun(Bench bench);
  ~TruthRun();
  TruthRun(const TruthRun&) = delete;
  TruthRun& operator=(const TruthRun&) = delete;

  // Installs, starts the instruments and the program and waits for the first rows. False with
  // Problem() if something does not come up.
  [[nodiscard]] bool Begin();

  // Drains what the instruments hold, ends the program as its close box does, and compares.
  // False with Problem() if the recording does not catch up or the program does not end.
  [[nodiscard]] bool End(Findings& findings, LedgerVerdict& ledgers);

  // What a case may do.
  void Tell(const std::string& command);  // to the instruments
  void GoOn(std::chrono::milliseconds duration);
  void GoOnUntilRowsCome(std::chrono::seconds limit);
  void Kill();
  void Start();
  void Signal(int number);
  // No file can become longer than it is now, as on a full disk; and no longer so.
  void FillDisk();
  void FreeDisk();
  // What the clock of the program shows from this moment on, and how far it jumps ahead.
  void SetClock(std::chrono::sys_seconds now);
  void PassTime(std::chrono::seconds time);
  // So much passes at once for the program's clocks and for the instruments, as if the machine
  // had slept; or as much as the instruments need for so many sets. The clocks of the instruments
  // are slow by `slow_ppm` millionths of the time.
  void SleepFor(std::chrono::seconds time, double slow_ppm = 0);
  void SleepForSets(int sets, double slow_ppm = 0);
  // Until no more waits in the instruments than they take while a slot sleeps.
  void GoOnUntilCaughtUp();
  // Opens an entry of the menu "Diagnostic", the first is 1, as a user does, and presses keys in
  // the window that comes; `title` is a part of its title. The last key leaves it.
  void UseScreen(int entry, const std::string& title, const std::vector<std::string>& keys,
                 std::chrono::milliseconds between_keys);
  void RenameData(const std::string& from, const std::string& to);
  // Marks that whatever is on its way now has no one to take it.
  void NoteCut();
  [[nodiscard]] int Draw(int below);
  void Fail(const std::string& problem);

  // Copies all that the installed program and the instruments have written to that directory.
  void Keep(const std::string& directory) const;

  [[nodiscard]] const std::string& Problem() const { return problem_; }
  [[nodiscard]] LineTruth Truth() const;
  // Telegrams that were sent to the device that is not the instruments'.
  [[nodiscard]] int HeardByForeign() const { return foreign_.Heard(); }
  // What the program told its user, see InstalledProgram.
  [[nodiscard]] std::vector<std::string> ShownTexts() const { return program_.ShownTexts(); }
  // True while nothing was done to the line, the instruments or the program.
  [[nodiscard]] bool IsHealthy() const { return is_healthy_; }

 private:
  [[nodiscard]] bool MountData();
  void LayForeignDevice();
  [[nodiscard]] std::vector<std::string> ClimbOptions(int instruments) const;
  [[nodiscard]] std::vector<std::string> InstrumentOptions() const;
  [[nodiscard]] std::string Samples(const RecordedSlot& slot) const;
  [[nodiscard]] LedgerFigures Ledger(const RecordedSlot& slot) const;
  [[nodiscard]] int Rows(const RecordedSlot& slot) const;
  [[nodiscard]] std::vector<int> RowsOfAll() const;
  [[nodiscard]] bool HasGrown(const std::vector<int>& before, int by) const;
  [[nodiscard]] bool HasCaughtUp() const;

  Bench bench_;
  std::vector<RecordedSlot> slots_;
  VirtualScreen screen_;
  InstalledProgram program_;
  ForeignDevice foreign_;
  bool is_healthy_ = true;
  std::vector<int> cuts_;
  std::chrono::seconds clock_ahead_{0};
  std::mt19937 random_{7};
  bool is_mounted_ = false;
  std::string problem_;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_TRUTH_TRUTH_RUN_H_
