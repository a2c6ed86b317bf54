#include "tests/e2e/process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <utility>

extern char** environ;

namespace tavrel {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kLook{20};

pid_t Spawn(const std::vector<std::string>& command, int output) {
  std::vector<char*> arguments;
  for (const std::string& argument : command) {
    arguments.push_back(const_cast<char*>(argument.c_str()));
  }
  arguments.push_back(nullptr);
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  if (output >= 0) {
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
  }
  pid_t pid = -1;
  const int error = posix_spawnp(&pid, arguments[0], &actions, nullptr, arguments.data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  return error == 0 ? pid : -1;
}

}  // namespace

Process::Process(const std::vector<std::string>& command) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) {
    return;
  }
  pid_ = Spawn(command, ends[1]);
  close(ends[1]);
  output_ = ends[0];
}

Process::~Process() {
  End();
}

Process::Process(Process&& other) noexcept {
  Take(other);
}

Process& Process::operator=(Process&& other) noexcept {
  if (this != &other) {
    End();
    Take(other);
  }
  return *this;
}

void Process::Take(Process& other) {
  pid_ = std::exchange(other.pid_, -1);
  output_ = std::exchange(other.output_, -1);
  status_ = other.status_;
}

void Process::End() {
  if (pid_ > 0) {
    kill(pid_, SIGCONT);
    kill(pid_, SIGKILL);
    waitpid(pid_, nullptr, 0);
    pid_ = -1;
  }
  if (output_ >= 0) {
    close(output_);
    output_ = -1;
  }
}

bool Process::IsRunning() {
  if (pid_ <= 0) {
    return false;
  }
  int status = 0;
  if (waitpid(pid_, &status, WNOHANG) == 0) {
    return true;
  }
  status_ = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  pid_ = -1;
  return false;
}

std::string Process::ReadLine(milliseconds limit) {
  const auto end = steady_clock::now() + limit;
  std::string line;
  while (true) {
    const auto left = std::chrono::duration_cast<milliseconds>(end - steady_clock::now());
    pollfd waiting{output_, POLLIN, 0};
    char character = 0;
    if (left.count() <= 0 || poll(&waiting, 1, static_cast<int>(left.count())) <= 0 ||
        read(output_, &character, 1) != 1) {
      return {};
    }
    if (character == '\n') {
      return line;
    }
    line += character;
  }
}

void Process::Signal(int number) const {
  if (pid_ > 0) {
    kill(pid_, number);
  }
}

int Process::Wait(milliseconds limit) {
  return WaitUntil([this] { return !IsRunning(); }, limit) ? status_ : -1;
}

int RunCommand(const std::vector<std::string>& command) {
  const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
  const pid_t pid = Spawn(command, nowhere);
  close(nowhere);
  int status = 0;
  if (pid < 0 || waitpid(pid, &status, 0) != pid) {
    return -1;
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

bool WaitUntil(const std::function<bool()>& condition, milliseconds limit) {
  const auto end = steady_clock::now() + limit;
  while (!condition()) {
    if (steady_clock::now() > end) {
      return false;
    }
    poll(nullptr, 0, static_cast<int>(kLook.count()));
  }
  return true;
}

}  // namespace tavrel
