#ifndef TAVREL_TESTS_E2E_INSTALLED_PROGRAM_H_
#define TAVREL_TESTS_E2E_INSTALLED_PROGRAM_H_

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/e2e/process.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {

// A screen that nobody sees, for a program with windows. Up as long as this lives; DISPLAY
// names it.
class VirtualScreen {
 public:
  VirtualScreen();
  [[nodiscard]] bool IsUp() const { return !number_.empty(); }

 private:
  Process server_;
  std::string number_;
};

// One row of the truth file: a sample that an input took, by its running number.
struct Truth {
  // By instrument and input: the words in the order in which they were taken.
  std::map<std::pair<int, int>, std::vector<std::int16_t>> taken;
  // The same for those that were handed over, with their running numbers.
  std::map<std::pair<int, int>, std::vector<std::pair<int, std::int16_t>>> handed;
  int lost = 0;  // handed over, but never whole on the line
  int overruns = 0;
};

// Which clocks of a program a test can set.
enum class OwnClock {
  kNone,  // the program runs by the machine's clocks
  kWall,  // the time of day alone, as a user or summer time does
  kAll,   // the time since boot too, as if the machine had slept
};

// The program as a user gets it: installed into a directory of its own, with settings and
// recording files, started beside a line of virtual instruments.
class InstalledProgram {
 public:
  InstalledProgram();

  [[nodiscard]] const std::string& Directory() const { return directory_.Path(); }

  // What a file of the installation holds; empty if there is none.
  [[nodiscard]] std::string Read(const std::string& file) const { return directory_.Read(file); }

  // Settings and slots in the words of prepare_installation.
  [[nodiscard]] bool Prepare(const std::vector<std::string>& arguments) const;

  // Starts tavrel-instrument with `options`, linked as Port(); true once the line is up.
  [[nodiscard]] bool StartInstruments(const std::vector<std::string>& options);

  // One control command; true if it was answered by ok.
  [[nodiscard]] bool Tell(const std::string& command) const;

  // No command and no reply is under way; see the command `rest`.
  [[nodiscard]] bool IsLineAtRest() const;

  // What the instruments answer to the command `status`.
  [[nodiscard]] std::string Status() const;

  // The number of the port under which the instruments are linked beside the program; 1 unless
  // it is said before they start.
  void UsePort(int number) { port_ = "COM" + std::to_string(number); }
  [[nodiscard]] const std::string& Port() const { return port_; }

  // From the next start on the program is given that file on its command line.
  void GiveFile(const std::string& path) { file_ = path; }

  // From the next start on all that the program tells its user is kept: notices and boxes, each as
  // one text with "\n" for its line breaks. A box that knows one answer only is answered.
  // A window of the program with that regular expression in its title, as the screen's number for
  // it; empty if there is none.
  [[nodiscard]] std::string WindowCalled(const std::string& title) const;

  void KeepShownTexts() { keeps_texts_ = true; }
  [[nodiscard]] std::vector<std::string> ShownTexts() const;

  // From the next start on what a user sees of the forms is kept (tests/e2e/users_keyboard.h), in
  // the order in which it came, one thing a line: "keyboard NAME", the control that has the
  // keyboard now, and "prompt TEXT".
  void WatchForms() { watches_forms_ = true; }
  [[nodiscard]] std::vector<std::string> SeenForms() const;

  // From the next start on the program has a clock that SetClock sets, in a place of the world
  // with summer time: Central Europe.
  void UseClock(OwnClock clock) { clock_ = clock; }
  // How far that clock is ahead of the machine's from this moment on; negative: behind.
  void SetClock(std::chrono::seconds ahead) const;

  // Starts the program, which shows its splash next.
  void Begin();

  // The same, and leaves the splash as a user does; true once the main form is there.
  [[nodiscard]] bool Start();

  // Asks the program to end as its close box does; true if it ended by itself, in time.
  [[nodiscard]] bool End();

  // Waits until the program has ended by what its user did; true if that was in time.
  [[nodiscard]] bool Ends();

  // Kills it in the middle of whatever it does.
  void Kill();

  void Signal(int number) const { program_.Signal(number); }
  [[nodiscard]] pid_t Pid() const { return program_.Pid(); }

  // Samples of a recording, rows of `channels` words.
  [[nodiscard]] std::vector<std::vector<std::int16_t>> Rows(const std::string& file,
                                                            int channels) const;
  [[nodiscard]] Truth ReadTruth() const;

 private:
  [[nodiscard]] std::vector<std::string> StartCommand() const;
  [[nodiscard]] std::vector<std::string> Lines(const std::string& file) const;

  TemporaryDirectory directory_;
  std::string port_ = "COM1";
  bool keeps_texts_ = false;
  bool watches_forms_ = false;
  std::string file_;
  OwnClock clock_ = OwnClock::kNone;
  Process instruments_;
  Process program_;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_E2E_INSTALLED_PROGRAM_H_
