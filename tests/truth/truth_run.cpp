#include "tests/truth/truth_run.h"

#include <sys/mount.h>
#include <sys/resource.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <utility>

namespace tavrel {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr int kHeader = 1000;    // bytes
constexpr int kFirstRows = 4;    // rows before a case begins
constexpr int kProofOfLife = 2;  // rows that have to come after all
constexpr int kSleep = 14;       // seconds that a slot may sleep before it reads again
constexpr seconds kFirstRowsLimit{60};
constexpr seconds kDrainLimit{1200};
constexpr seconds kStallLimit{40};  // without a new row
constexpr const char* kBallast = "tavdat/ballast.bin";
constexpr const char* kDiskSize = "size=256k";

std::vector<RecordedSlot> SlotsOf(const Bench& bench) {
  if (bench.wide) {
    return {{"M260314A.TUB", 1, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}}};
  }
  return {{"M260314A.TUB", 1, {1, 5, 9}}, {"M260314B.CHA", 1, {2, 6}}, {"M260314C.AUT", 2, {1, 5}}};
}

std::string SlotText(int number, const RecordedSlot& slot) {
  std::string inputs;
  for (const int input : slot.inputs) {
    inputs += (inputs.empty() ? "" : "/") + std::to_string(input);
  }
  const std::string ext = slot.file.substr(slot.file.find('.') + 1);
  return "slot:number=" + std::to_string(number) + ",name=Oven,ext=" + ext +
         ",inet=" + std::to_string(slot.inet) + ",ctrl=" + std::to_string(slot.inputs.front()) +
         ",ref=" + std::to_string(slot.inputs.back()) + ",inputs=" + inputs;
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
  std::vector<std::string> arguments = {"COMMPORT=COM1",
                                        bench_.line == "direct" ? "COMMODE=0" : "COMMODE=2"};
  for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
    arguments.push_back(SlotText(static_cast<int>(slot) + 1, slots_[slot]));
  }
  is_mounted_ = bench_.small_disk && MountData();
  if (!program_.Prepare(arguments) || !program_.StartInstruments(InstrumentOptions())) {
    Fail("no installation");
    return false;
  }
  program_.UseClock(bench_.clock);
  if (bench_.clock != OwnClock::kNone) {
    SetClock(bench_.begins_at);
  }
  Start();
  const std::vector<int> none(slots_.size(), 0);
  if (!WaitUntil([&] { return HasGrown(none, kFirstRows); }, kFirstRowsLimit)) {
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

// All ovens climb all the time, so that no two sets are alike.
std::vector<std::string> TruthRun::InstrumentOptions() const {
  std::vector<std::string> options = {"--mode", bench_.line, "--instruments",
                                      "2",      "--speedup", std::to_string(bench_.speedup),
                                      "--warm"};
  const std::string rate = std::to_string(1.0 / bench_.interval);
  for (const char* oven : {"1.1", "1.2", "1.3", "1.4", "2.1"}) {
    options.insert(options.end(), {"--oven", std::string(oven) + "=ramp:450:" + rate});
  }
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

bool TruthRun::End(Findings& findings) {
  const auto has_caught_up = [this] { return HasCaughtUp(); };
  std::vector<int> rows = RowsOfAll();
  const auto end = std::chrono::steady_clock::now() + kDrainLimit;
  while (problem_.empty() && !WaitUntil(has_caught_up, kStallLimit)) {
    const std::vector<int> now = RowsOfAll();
    if (now == rows || std::chrono::steady_clock::now() > end) {
      Fail("does not catch up");
    }
    rows = now;
  }
  rows = RowsOfAll();
  if (problem_.empty() && !WaitUntil([&] { return HasGrown(rows, kProofOfLife); }, kStallLimit)) {
    Fail("no rows any more");
  }
  NoteCut();
  if (!program_.End()) {
    Fail("does not end");
  }
  const LineTruth truth = Truth();
  for (const RecordedSlot& slot : slots_) {
    findings.Add(Compare(truth, slot, Samples(slot)));
  }
  return problem_.empty();
}

void TruthRun::Tell(const std::string& command) {
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

void TruthRun::NoteCut() {
  GoOn(milliseconds(60));  // what is on its way arrives
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

void TruthRun::RenameData(const std::string& from, const std::string& to) {
  std::error_code error;
  const std::string root = program_.Directory() + "/";
  std::filesystem::rename(root + from, root + to, error);
  if (error) {
    Fail("cannot rename " + from + ": " + error.message());
  }
}

int TruthRun::Draw(int below) {
  return std::uniform_int_distribution<int>(0, below - 1)(random_);
}

}  // namespace tavrel
