#include "tests/e2e/installed_program.h"

#include <sched.h>
#include <semaphore.h>
#include <signal.h>
#include <sys/mman.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace tavrel {

namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr int kHeader = 1000;  // bytes
constexpr const char* kShownTexts = "shown.txt";
constexpr const char* kSeenForms = "seen.txt";

void AddLibrary(std::string& libraries, const std::string& library) {
  libraries += (libraries.empty() ? "" : ":") + library;
}

// The window of the program with `pid`, as the screen's number for it; empty if there is none.
std::string WindowOf(pid_t pid, const std::string& name) {
  Process search({"xdotool", "search", "--onlyvisible", "--all", "--pid", std::to_string(pid),
                  "--name", name});
  return search.ReadLine(seconds(5));
}

// What the library of the clock keeps for a process, and does not remove if that is killed: another
// process of the same number could not start.
void RemoveRestsOfClock(pid_t pid) {
  const std::string number = std::to_string(pid);
  sem_unlink(("/faketime_sem_" + number).c_str());
  shm_unlink(("/faketime_shm_" + number).c_str());
}

// Two bytes of a sample, little-endian.
std::int16_t WordAt(const std::string& bytes, std::size_t place) {
  std::int16_t word = 0;
  std::memcpy(&word, bytes.data() + place, sizeof word);
  return word;
}

}  // namespace

VirtualScreen::VirtualScreen()
    : server_({"Xvfb", "-displayfd", "1", "-screen", "0", "1280x800x24", "-nolisten", "tcp",
               "-noreset"}) {
  number_ = server_.ReadLine(seconds(20));
  setenv("DISPLAY", (":" + number_).c_str(), 1);
  setenv("QT_QPA_PLATFORM", "xcb", 1);
}

InstalledProgram::InstalledProgram() {
  RunCommand({"cmake", "--install", TAVREL_BUILD_DIRECTORY, "--prefix", Directory()});
}

bool InstalledProgram::Prepare(const std::vector<std::string>& arguments) const {
  std::vector<std::string> command = {PREPARE_INSTALLATION, Directory()};
  command.insert(command.end(), arguments.begin(), arguments.end());
  return RunCommand(command) == 0;
}

bool InstalledProgram::StartInstruments(const std::vector<std::string>& options) {
  std::vector<std::string> command = {
      directory_.File("tavrel-instrument"), "--link",  directory_.File(port_),      "--control",
      directory_.File("control"),           "--truth", directory_.File("truth.txt")};
  command.insert(command.end(), options.begin(), options.end());
  instruments_ = Process(command);
  // Instruments have a processor of their own. On a busy machine they would take commands in too
  // late to say of a reply whether it comes in time. Where the rights are missing all stays as it
  // is; a lower niceness would not reach beyond the processes of this session.
  const sched_param before_others{1};
  sched_setscheduler(instruments_.Pid(), SCHED_RR, &before_others);
  return instruments_.ReadLine(seconds(20)).rfind("ready", 0) == 0;
}

bool InstalledProgram::IsLineAtRest() const {
  return Tell("rest");
}

bool InstalledProgram::Tell(const std::string& command) const {
  return RunCommand({directory_.File("tavrel-instrument"), "--send", directory_.File("control"),
                     command}) == 0;
}

std::string InstalledProgram::Status() const {
  Process client(
      {directory_.File("tavrel-instrument"), "--send", directory_.File("control"), "status"});
  std::string status;
  for (std::string line = client.ReadLine(seconds(5)); !line.empty();
       line = client.ReadLine(seconds(5))) {
    status += line + "\n";
  }
  return status;
}

// In one step: the program looks at it all the time.
void InstalledProgram::SetClock(seconds ahead) const {
  const std::string number = std::to_string(ahead.count());
  directory_.Write("clock.new", (ahead.count() < 0 ? "" : "+") + number);
  std::filesystem::rename(directory_.File("clock.new"), directory_.File("clock.txt"));
}

std::vector<std::string> InstalledProgram::StartCommand() const {
  std::vector<std::string> command = {"env"};
  std::string libraries;
  if (keeps_texts_) {
    AddLibrary(libraries, SHOWN_TEXTS_LIBRARY);
    command.push_back("TAVREL_SHOWN_TEXTS=" + directory_.File(kShownTexts));
  }
  if (watches_forms_) {
    AddLibrary(libraries, SEEN_FORMS_LIBRARY);
    command.push_back("TAVREL_SEEN_FORMS=" + directory_.File(kSeenForms));
  }
  if (clock_ != OwnClock::kNone) {
    AddLibrary(libraries, FAKETIME_LIBRARY);
    command.insert(
        command.end(),
        {"FAKETIME_TIMESTAMP_FILE=" + directory_.File("clock.txt"), "FAKETIME_NO_CACHE=1",
         clock_ == OwnClock::kWall ? "DONT_FAKE_MONOTONIC=1" : "DONT_FAKE_MONOTONIC=0",
         "TZ=CET-1CEST,M3.5.0,M10.5.0/3"});
  }
  if (!libraries.empty()) {
    command.push_back("LD_PRELOAD=" + libraries);
  }
  command.push_back(directory_.File("tavrel"));
  if (!file_.empty()) {
    command.push_back(file_);
  }
  return command;
}

std::string InstalledProgram::WindowCalled(const std::string& title) const {
  return WindowOf(program_.Pid(), title);
}

std::vector<std::string> InstalledProgram::ShownTexts() const {
  return Lines(kShownTexts);
}

std::vector<std::string> InstalledProgram::SeenForms() const {
  return Lines(kSeenForms);
}

// A line that is still being written is none yet.
std::vector<std::string> InstalledProgram::Lines(const std::string& file) const {
  std::vector<std::string> lines;
  std::ifstream input(directory_.File(file));
  for (std::string line; std::getline(input, line) && !input.eof();) {
    lines.push_back(line);
  }
  return lines;
}

void InstalledProgram::Begin() {
  program_ = Process(StartCommand());
}

bool InstalledProgram::Start() {
  Begin();
  const auto splash_is_left = [this] {
    const std::string splash = WindowOf(program_.Pid(), ".");
    if (!splash.empty()) {
      RunCommand({"xdotool", "mousemove", "--window", splash, "60", "200", "click", "1"});
    }
    return !WindowOf(program_.Pid(), "TAVREL  6.1").empty();
  };
  return WaitUntil(splash_is_left, seconds(40));
}

bool InstalledProgram::End() {
  program_.Signal(SIGTERM);
  return Ends();
}

bool InstalledProgram::Ends() {
  return program_.Wait(seconds(20)) == 0;
}

void InstalledProgram::Kill() {
  const pid_t pid = program_.Pid();
  program_ = Process();
  if (clock_ != OwnClock::kNone) {
    RemoveRestsOfClock(pid);
  }
}

std::vector<std::vector<std::int16_t>> InstalledProgram::Rows(const std::string& file,
                                                              int channels) const {
  const std::string bytes = directory_.Read("tavdat/" + file);
  std::vector<std::vector<std::int16_t>> rows;
  const std::size_t row_bytes = 2 * static_cast<std::size_t>(channels);
  for (std::size_t start = kHeader; start + row_bytes <= bytes.size(); start += row_bytes) {
    rows.emplace_back();
    for (std::size_t place = start; place < start + row_bytes; place += 2) {
      rows.back().push_back(WordAt(bytes, place));
    }
  }
  return rows;
}

Truth InstalledProgram::ReadTruth() const {
  Truth truth;
  std::ifstream file(directory_.File("truth.txt"));
  for (std::string line; std::getline(file, line);) {
    std::istringstream fields(line);
    std::string kind;
    std::string fate;
    double time = 0;
    int inet = 0;
    int input = 0;
    int number = 0;
    int word = 0;
    fields >> kind >> time >> inet >> input >> number >> word >> fate;
    if (kind == "sample") {
      truth.taken[{inet, input}].push_back(static_cast<std::int16_t>(word));
    } else if (kind == "handed") {
      truth.handed[{inet, input}].emplace_back(number, static_cast<std::int16_t>(word));
      truth.lost += fate == "good" ? 0 : 1;
    } else if (kind == "overrun") {
      ++truth.overruns;
    }
  }
  return truth;
}

}  // namespace tavrel
