#include "instrument/app.h"

#include <poll.h>
#include <sys/signalfd.h>

#include <algorithm>
#include <csignal>
#include <ctime>
#include <utility>
#include <vector>

namespace instrument {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;
using std::chrono::seconds;

// At a high speed-up the clock's steps are taken in bundles of this real time, not one by one.
constexpr milliseconds kShortestStepWait{5};

Moment Now() {
  return std::chrono::steady_clock::now();
}

timespec TimespecOf(nanoseconds time) {
  const auto whole = std::chrono::duration_cast<seconds>(time);
  timespec spec{};
  spec.tv_sec = whole.count();
  spec.tv_nsec = (time - whole).count();
  return spec;
}

}  // namespace

App::App(const Options& options)
    : options_(options),
      line_(options.mode, truth_),
      reader_(options.mode),
      incoming_(CharTimeAt(options.baud)),
      outgoing_(CharTimeAt(options.baud)),
      clock_(options.speedup),
      commands_(line_, *this) {}

bool App::Start(std::string& error) {
  if (!truth_.Open(options_.truth_path)) {
    error = "cannot write " + options_.truth_path;
    return false;
  }
  if (!wire_log_.Open(options_.wire_log_path, Now())) {
    error = "cannot write " + options_.wire_log_path;
    return false;
  }
  if (!CatchSignals(error) || !PrepareInstruments(error)) {
    return false;
  }
  if (!options_.unplugged && !Plug(error)) {
    return false;
  }
  clock_.Start(Now());
  return options_.control_path.empty() || control_.Listen(options_.control_path, error);
}

bool App::CatchSignals(std::string& error) {
  sigset_t ending;
  ::sigemptyset(&ending);
  ::sigaddset(&ending, SIGTERM);
  ::sigaddset(&ending, SIGINT);
  ::sigaddset(&ending, SIGPIPE);
  ::sigprocmask(SIG_BLOCK, &ending, nullptr);
  ::sigdelset(&ending, SIGPIPE);
  signals_ = FileDescriptor(::signalfd(-1, &ending, SFD_CLOEXEC | SFD_NONBLOCK));
  if (!signals_.IsOpen()) {
    error = "cannot catch signals";
  }
  return signals_.IsOpen();
}

bool App::PrepareInstruments(std::string& error) {
  for (const InstrumentSettings& settings : options_.instruments) {
    line_.Add(settings);
  }
  for (const OvenOption& oven : options_.ovens) {
    line_.Find(oven.inet)->StartOven(oven.start);
  }
  for (const ClimbOption& climb : options_.climbs) {
    for (int input = 1; input < kInputCount; ++input) {
      line_.Find(climb.inet)->Connect(input, {Connection::Kind::kClimb, climb.rate});
    }
  }
  for (const SamplingOption& sampling : options_.sampling) {
    if (!line_.Find(sampling.inet)->StartSampling(sampling.input, sampling.seconds)) {
      error =
          "a sampling time of " + std::to_string(sampling.seconds) + " s needs a fast instrument";
      return false;
    }
  }
  for (const BacklogOption& backlog : options_.backlog) {
    if (!line_.Find(backlog.inet)->Fill(backlog.sets)) {
      error = "a backlog needs inputs that sample, see --sample";
      return false;
    }
  }
  for (const FaultOption& fault : options_.faults) {
    for (const int inet : fault.inet == 0 ? line_.Numbers() : std::vector<int>{fault.inet}) {
      line_.FaultsOf(inet)->Set(fault.fault, fault.level);
    }
  }
  for (const TestOption& test : options_.tests) {
    for (const int inet : test.inet == 0 ? line_.Numbers() : std::vector<int>{test.inet}) {
      line_.Find(inet)->SetTestResult(test.command, test.result);
    }
  }
  truth_.Flush();
  return true;
}

bool App::Plug(std::string& error) {
  return pty_.IsPlugged() || pty_.Plug(options_.link_path, error);
}

void App::Unplug() {
  pty_.Unplug();
  reader_.Clear();
  incoming_.DropAll();
  for (const HandedSample& lost : outgoing_.DropAll()) {
    truth_.Handed(lost);
  }
}

void App::Run() {
  looked_ = Now();
  while (!quit_) {
    const Moment now = Now();
    const ModelClock::Portion portion = clock_.Take(now);
    line_.Advance(portion.time, portion.pace);
    AnswerCommands(now);
    SendReplies(now);
    wire_log_.EndStaleRow(now);
    truth_.Flush();
    Wait();
  }
  wire_log_.EndRow();
}

void App::AnswerCommands(Moment now) {
  while (const auto byte = incoming_.Take(now)) {
    wire_log_.Byte(WireLog::Direction::kToInstrument, *byte);
    const auto command = reader_.Take(byte->byte);
    if (!command) {
      continue;
    }
    if (const auto reply = line_.Answer(*command)) {
      outgoing_.Add(*reply, byte->when, byte->unseen);
    }
  }
}

void App::SendReplies(Moment now) {
  const OutgoingBytes::Due due = outgoing_.TakeDue(now);
  for (const HandedSample& handed : due.handed) {
    truth_.Handed(handed);
  }
  // A reader of the file who has seen the reply finds its row.
  truth_.Flush();
  std::string bytes;
  for (const TimedByte& byte : due.bytes) {
    wire_log_.Byte(WireLog::Direction::kToHost, byte);
    bytes += byte.byte;
  }
  if (!bytes.empty()) {
    pty_.Write(bytes);
  }
}

Moment App::NextMoment(Moment now) const {
  Moment next = clock_.NextDue();
  if (next > now) {
    next = std::max(next, now + kShortestStepWait);
  }
  for (const auto& due : {incoming_.NextDue(), outgoing_.NextDue(), wire_log_.NextDue()}) {
    next = due ? std::min(next, *due) : next;
  }
  return next;
}

void App::Wait() {
  std::vector<pollfd> waited{{signals_.Get(), POLLIN, 0}};
  for (const int fd : control_.Fds()) {
    waited.push_back({fd, POLLIN, 0});
  }
  if (pty_.IsPlugged()) {
    pty_.Unlock();
    waited.push_back({pty_.Fd(), POLLIN, 0});
  }
  const Moment before = Now();
  const nanoseconds time = std::max<nanoseconds>(NextMoment(before) - before, nanoseconds(0));
  const timespec limit = TimespecOf(time);
  const int ready = ::ppoll(waited.data(), waited.size(), &limit, nullptr);
  const Moment now = Now();
  const nanoseconds unseen = now - std::exchange(looked_, now);
  if (ready <= 0) {
    return;
  }
  const int line_fd = pty_.Fd();
  for (const pollfd& fd : waited) {
    if (fd.revents == 0) {
      continue;
    }
    if (fd.fd == signals_.Get()) {
      Quit();
    } else if (fd.fd == line_fd) {
      ReadLine(now, unseen);
    } else {
      control_.Serve(fd.fd, [this](const std::string& text) { return commands_.Execute(text); });
    }
  }
}

void App::ReadLine(Moment now, nanoseconds unseen) {
  if (pty_.IsPlugged()) {
    incoming_.Add(pty_.Read(), now, unseen);
  }
}

bool App::IsAtRest() const {
  return !pty_.HasBytes() && !incoming_.NextDue() && !outgoing_.NextDue();
}

}  // namespace instrument
