#include "tests/truth/truth_run.h"

#include <sys/mount.h>
#include <sys/resource.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <regex>
#include <span>
#include <utility>

#include "main/untold_notices.h"

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr int kHeader = 1000;  // bytes
constexpr int kControllers = 4;
constexpr double kClimb = 280;         // degrees that an oven has before it before it is hot
constexpr double kSlowestRamp = 0.02;  // degrees per second; a controller counts in 0.01
constexpr double kClimbOfSet = 0.6;    // degrees, twenty times the noise
constexpr int kMostSets = 300;   // that a case takes, but for those that sleep or have a backlog
constexpr int kFirstRows = 4;    // rows before a case begins
constexpr int kProofOfLife = 2;  // rows that have to come after all
constexpr int kSleep = 14;       // seconds that a slot may sleep before it reads again
constexpr seconds kFirstRowsLimit{60};
constexpr int kFirstRowsIntervals = 8;  // and so many more, for the comparison of a full buffer
constexpr seconds kDrainLimit{2400};
// Without a new row: a comparison of columns may take many intervals.
constexpr seconds kStallLimit{120};
// The truth of a long run takes long to read.
constexpr milliseconds kBetweenLooks{500};

// Of a command and its reply: the time that they take, and how long a machine may stand meanwhile.
constexpr milliseconds kOnItsWay{60};
constexpr seconds kRestLimit{5};
constexpr const char* kBallast = "tavdat/ballast.bin";
constexpr const char* kDiskSize = "size=256k";

// Two on each of six instruments.
std::vector<RecordedSlot> TwelveSlots() {
  std::vector<RecordedSlot> slots;
  for (int slot = 0; slot < 12; ++slot) {
    const std::string letter(1, static_cast<char>('A' + slot));
    const bool is_first = slot % 2 == 0;
    slots.push_back({"M260314" + letter + (is_first ? ".TUB" : ".CHA"), slot / 2 + 1,
                     is_first ? std::vector<int>{1, 5} : std::vector<int>{2, 6}});
  }
  return slots;
}

std::vector<RecordedSlot> SlotsOf(const Bench& bench) {
  switch (bench.recordings) {
    case Recordings::kSingle:
      return {{"M260314A.TUB", 1, {7}}};
    case Recordings::kPair:
      return {{"M260314A.TUB", 1, {3, 11}}};
    case Recordings::kWide:
      return {{"M260314A.TUB", 1, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}}};
    case Recordings::kTwelve:
      return TwelveSlots();
    case Recordings::kThree:
      break;
  }
  return {{"M260314A.TUB", 1, {1, 5, 9}}, {"M260314B.CHA", 1, {2, 6}}, {"M260314C.AUT", 2, {1, 5}}};
}

int InstrumentsOf(const std::vector<RecordedSlot>& slots) {
  int most = 0;
  for (const RecordedSlot& slot : slots) {
    most = std::max(most, slot.inet);
  }
  return most;
}

std::string SlotText(int number, const RecordedSlot& slot, int interval) {
  std::string inputs;
  for (const int input : slot.inputs) {
    inputs += (inputs.empty() ? "" : "/") + std::to_string(input);
  }
  const std::string ext = slot.file.substr(slot.file.find('.') + 1);
  return "slot:number=" + std::to_string(number) + ",name=Oven,ext=" + ext +
         ",inet=" + std::to_string(slot.inet) +
         ",ctrl=" + std::to_string(std::min(slot.inputs.front(), kControllers)) +
         ",ref=" + std::to_string(slot.inputs.back()) + ",inputs=" + inputs +
         ",fast=1,interval=" + std::to_string(interval);
}

}  // namespace

TruthRun::TruthRun(Bench bench) : bench_(std::move(bench)), slots_(SlotsOf(bench_)) {}

TruthRun::~TruthRun() {
  program_.Kill();
  if (is_mounted_) {
    umount2((program_.Directory() + "/tavdat").c_str(), MNT_DETACH);
  }
}

void TruthRun::Fail(const std::string& problem) {
  problem_ = problem_.empty() ? problem : problem_;
}

bool TruthRun::Begin() {
  if (!screen_.IsUp()) {
    Fail("no screen");
    return false;
  }
  if (bench_.foreign) {
    LayForeignDevice();
  }
  std::vector<std::string> arguments = {"COMMPORT=" + program_.Port(),
                                        bench_.line == "direct" ? "COMMODE=0" : "COMMODE=2"};
  for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
    arguments.push_back(
        SlotText(static_cast<int>(slot) + 1, slots_[slot], bench_.interval / bench_.speedup));
  }
  is_mounted_ = bench_.small_disk && MountData();
  if (!program_.Prepare(arguments) || !program_.StartInstruments(InstrumentOptions())) {
    Fail("no installation");
    return false;
  }
  program_.KeepShownTexts();
  program_.UseClock(bench_.clock);
  if (bench_.clock != OwnClock::kNone) {
    SetClock(bench_.begins_at);
  }
  Start();
  const std::vector<int> none(slots_.size(), 0);
  const seconds comparison(kFirstRowsIntervals * bench_.interval / bench_.speedup);
  if (!WaitUntil([&] { return HasGrown(none, kFirstRows); }, kFirstRowsLimit + comparison)) {
    Fail("no rows at the start");
  }
  return problem_.empty();
}

// A small file system of its own for the data, which can really become full. Without the rights
// for it a limit on the process has to do.
bool TruthRun::MountData() {
  const std::string data = program_.Directory() + "/tavdat";
  std::error_code ignored;
  std::filesystem::create_directory(data, ignored);
  return mount("tavrel-truth", data.c_str(), "tmpfs", 0, kDiskSize) == 0;
}

// It answers like the right one, with words of its own. Without the rights for it the case goes
// on without it.
void TruthRun::LayForeignDevice() {
  const bool is_there = foreign_.LayDown(
      program_.Directory(),
      {"--mode", bench_.line, "--instruments", "6", "--seed", "99", "--sampling-order", "together",
       "--sample", "1=10", "--sample", "2=10", "--backlog", "1=500", "--backlog", "2=500"});
  if (is_there) {
    program_.UsePort(foreign_.Port());
  }
}

// All ovens climb all the time, so that no two sets are alike. Where a case takes so many sets that
// they would have to climb more slowly than a controller can, the sensors climb by themselves.
std::vector<std::string> TruthRun::ClimbOptions(int instruments) const {
  const double sets = bench_.backlog + bench_.slept_sets + kMostSets;
  const double rate = std::min(1.0, kClimb / sets) / bench_.interval;
  std::vector<std::string> options;
  for (int inet = 1; inet <= instruments; ++inet) {
    const std::string number = std::to_string(inet);
    if (rate < kSlowestRamp) {
      options.insert(options.end(),
                     {"--climb", number + "=" + std::to_string(kClimbOfSet / bench_.interval)});
      continue;
    }
    for (int oven = 1; oven <= kControllers; ++oven) {
      options.insert(options.end(), {"--oven", number + "." + std::to_string(oven) +
                                                   "=ramp:450:" + std::to_string(rate)});
    }
  }
  return options;
}

std::vector<std::string> TruthRun::InstrumentOptions() const {
  const int instruments = InstrumentsOf(slots_);
  std::vector<std::string> options = {"--mode",
                                      bench_.line,
                                      "--instruments",
                                      std::to_string(instruments),
                                      "--speedup",
                                      std::to_string(bench_.speedup),
                                      "--sampling-order",
                                      bench_.scan.order,
                                      "--sampling-distance",
                                      std::to_string(bench_.scan.distance),
                                      "--fast",
                                      "1,2,3,4,5,6",
                                      "--warm"};
  const auto climb = ClimbOptions(instruments);
  options.insert(options.end(), climb.begin(), climb.end());
  for (const RecordedSlot& slot : slots_) {
    for (const int input : slot.inputs) {
      options.insert(options.end(),
                     {"--sample", std::to_string(slot.inet) + "." + std::to_string(input) + "=" +
                                      std::to_string(bench_.interval)});
    }
    options.insert(options.end(),
                   {"--backlog", std::to_string(slot.inet) + "=" + std::to_string(bench_.backlog)});
  }
  return options;
}

std::string TruthRun::Samples(const RecordedSlot& slot) const {
  std::ifstream file(program_.Directory() + "/tavdat/" + slot.file, std::ios::binary);
  file.seekg(kHeader);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// As tavrel-file reckons it.
LedgerFigures TruthRun::Ledger(const RecordedSlot& slot) const {
  const std::string file = program_.Read("tavdat/" + slot.file);
  const std::string text = program_.Read("tavdat/journal/" + slot.file);
  const JournalReading journal = ReadJournal(text);
  return LedgerOf(journal, CheckRecording(std::as_bytes(std::span(file)), journal).Rows);
}

int TruthRun::Rows(const RecordedSlot& slot) const {
  return static_cast<int>(Samples(slot).size() / (2 * slot.inputs.size()));
}

std::vector<int> TruthRun::RowsOfAll() const {
  std::vector<int> rows;
  for (const RecordedSlot& slot : slots_) {
    rows.push_back(Rows(slot));
  }
  return rows;
}

bool TruthRun::HasGrown(const std::vector<int>& before, int by) const {
  for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
    if (Rows(slots_[slot]) < before[slot] + by) {
      return false;
    }
  }
  return true;
}

LineTruth TruthRun::Truth() const {
  std::ifstream file(program_.Directory() + "/truth.txt");
  return ReadLineTruth(file, cuts_);
}

// True if no more waits in the instruments than they take while a slot sleeps.
bool TruthRun::HasCaughtUp() const {
  const int most = 2 + kSleep * bench_.speedup / bench_.interval;
  const LineTruth truth = Truth();
  for (const RecordedSlot& slot : slots_) {
    for (const int input : slot.inputs) {
      const auto& samples = truth.inputs.at({slot.inet, input});
      const auto waiting = std::count_if(samples.begin(), samples.end(), [](const auto& sample) {
        return sample.fate == SampleFate::kWaiting;
      });
      if (waiting > most) {
        return false;
      }
    }
  }
  return true;
}

void TruthRun::GoOnUntilCaughtUp() {
  const auto has_caught_up = [this] {
    const bool has = HasCaughtUp();
    GoOn(has ? milliseconds(0) : kBetweenLooks);
    return has;
  };
  std::vector<int> rows = RowsOfAll();
  const auto end = std::chrono::steady_clock::now() + kDrainLimit;
  while (problem_.empty() && !WaitUntil(has_caught_up, kStallLimit)) {
    const std::vector<int> now = RowsOfAll();
    if (now == rows || std::chrono::steady_clock::now() > end) {
      Fail("does not catch up");
    }
    rows = now;
  }
}

bool TruthRun::End(Findings& findings, LedgerVerdict& ledgers) {
  GoOnUntilCaughtUp();
  const std::vector<int> rows = RowsOfAll();
  if (bench_.is_seldom) {
    SleepForSets(kProofOfLife);
  }
  if (problem_.empty() && !WaitUntil([&] { return HasGrown(rows, kProofOfLife); }, kStallLimit)) {
    Fail("no rows any more");
  }
  NoteCut();
  if (!program_.End()) {
    Fail("does not end");
  }
  const LineTruth truth = Truth();
  std::vector<std::string> texts = program_.ShownTexts();
  for (const Notice& notice : TakeUntold(program_.Directory(), Language::kEnglish)) {
    texts.push_back(std::regex_replace(notice.Text, std::regex("\n"), "\\n"));
  }
  const Told told = ReadTold(texts);
  for (const RecordedSlot& slot : slots_) {
    const Findings found = Compare(truth, slot, Samples(slot), told);
    findings.Add(found);
    ledgers.Add(CompareLedger(slot, Ledger(slot), found, MadeSets(truth, slot), told));
  }
  return problem_.empty();
}

void TruthRun::Tell(const std::string& command) {
  is_healthy_ = false;
  if (!program_.Tell(command)) {
    Fail("the instruments refuse: " + command);
  }
}

void TruthRun::GoOn(milliseconds duration) {
  static_cast<void>(WaitUntil([this] { return !problem_.empty(); }, duration));
}

void TruthRun::GoOnUntilRowsCome(seconds limit) {
  const std::vector<int> before = RowsOfAll();
  if (!WaitUntil([&] { return HasGrown(before, 1); }, limit)) {
    Fail("no rows come");
  }
}

void TruthRun::UseScreen(int entry, const std::string& title, const std::vector<std::string>& keys,
                         milliseconds between_keys) {
  constexpr milliseconds kMenu{300};
  const std::string main = program_.WindowCalled("TAVREL  6.1");
  RunCommand({"xdotool", "windowfocus", main});
  RunCommand({"xdotool", "mousemove", "--window", main, "94", "9", "click", "1"});
  GoOn(kMenu);
  std::vector<std::string> choice = {"xdotool", "key", "--delay", "60"};
  choice.insert(choice.end(), static_cast<std::size_t>(entry), "Down");
  choice.emplace_back("Return");
  RunCommand(choice);
  const auto is_open = [&] { return !program_.WindowCalled(title).empty(); };
  if (!WaitUntil(is_open, seconds(10))) {
    Fail("no window called " + title);
    return;
  }
  for (const std::string& key : keys) {
    GoOn(between_keys);
    RunCommand({"xdotool", "key", key});
  }
  if (!WaitUntil([&] { return !is_open(); }, seconds(10))) {
    Fail("the window stays open: " + title);
  }
}

// What is on its way arrives, however long the machine takes for it. A program that lives is quiet
// for a while behind an exchange that ended for it.
void TruthRun::NoteCut() {
  is_healthy_ = false;
  GoOn(kOnItsWay);
  static_cast<void>(WaitUntil([this] { return program_.IsLineAtRest(); }, kRestLimit));
  cuts_.push_back(Truth().handed);
}

void TruthRun::Kill() {
  program_.Kill();
  NoteCut();
}

void TruthRun::Start() {
  if (!program_.Start()) {
    Fail("the program does not start");
  }
}

void TruthRun::Signal(int number) {
  program_.Signal(number);
}

void TruthRun::FillDisk() {
  if (!is_mounted_) {
    const auto rows = RowsOfAll();
    const int most = *std::max_element(rows.begin(), rows.end());
    const rlim_t size = static_cast<rlim_t>(kHeader) + 4 * static_cast<rlim_t>(most);
    const rlimit limit{size, RLIM_INFINITY};
    prlimit(program_.Pid(), RLIMIT_FSIZE, &limit, nullptr);
    return;
  }
  std::ofstream ballast(program_.Directory() + "/" + kBallast, std::ios::binary);
  const std::string block(256, 'x');
  while (ballast.write(block.data(), static_cast<std::streamsize>(block.size())).flush()) {
  }
}

void TruthRun::FreeDisk() {
  if (!is_mounted_) {
    const rlimit limit{RLIM_INFINITY, RLIM_INFINITY};
    prlimit(program_.Pid(), RLIMIT_FSIZE, &limit, nullptr);
    return;
  }
  std::error_code ignored;
  std::filesystem::remove(program_.Directory() + "/" + kBallast, ignored);
}

void TruthRun::SetClock(std::chrono::sys_seconds now) {
  const auto machine = std::chrono::floor<seconds>(std::chrono::system_clock::now());
  clock_ahead_ = now - machine;
  PassTime(seconds(0));
}

// An exchange that is under way meanwhile may end for the program.
void TruthRun::PassTime(seconds time) {
  clock_ahead_ += time;
  program_.SetClock(clock_ahead_);
  NoteCut();
}

// A program that ran between the two would count the samples of a time that has not passed for the
// instruments, and see no full buffer behind it.
void TruthRun::SleepFor(seconds time, double slow_ppm) {
  Signal(SIGSTOP);
  PassTime(time);
  const double passes = static_cast<double>(time.count() * bench_.speedup) * (1 - slow_ppm / 1e6);
  Tell("pass all " + std::to_string(std::llround(passes)));
  Signal(SIGCONT);
}

void TruthRun::SleepForSets(int sets, double slow_ppm) {
  SleepFor(seconds(sets * bench_.interval / bench_.speedup), slow_ppm);
}

void TruthRun::RenameData(const std::string& from, const std::string& to) {
  std::error_code error;
  const std::string root = program_.Directory() + "/";
  std::filesystem::rename(root + from, root + to, error);
  if (error) {
    Fail("cannot rename " + from + ": " + error.message());
  }
}

void TruthRun::Keep(const std::string& directory) const {
  std::error_code error;
  std::filesystem::create_directories(directory, error);
  std::filesystem::copy(program_.Directory(), directory,
                        std::filesystem::copy_options::recursive |
                            std::filesystem::copy_options::skip_symlinks |
                            std::filesystem::copy_options::overwrite_existing,
                        error);
}

int TruthRun::Draw(int below) {
  return std::uniform_int_distribution<int>(0, below - 1)(random_);
}

}  // namespace tavrel
