#ifndef TAVREL_TESTS_E2E_PROCESS_H_
#define TAVREL_TESTS_E2E_PROCESS_H_

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace tavrel {

// A child process with its standard output in a pipe. Killed and waited for when it goes.
class Process {
 public:
  Process() = default;
  explicit Process(const std::vector<std::string>& command);
  ~Process();
  Process(Process&& other) noexcept;
  Process& operator=(Process&& other) noexcept;
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  [[nodiscard]] pid_t Pid() const { return pid_; }
  [[nodiscard]] bool IsRunning();

  // The next line of its output; empty after `limit` or at the end.
  [[nodiscard]] std::string ReadLine(std::chrono::milliseconds limit);

  void Signal(int number) const;

  // Waits for the end; the exit status, -1 if it did not end in time or was killed by a signal.
  [[nodiscard]] int Wait(std::chrono::milliseconds limit);

 private:
  void Take(Process& other);
  void End();

  pid_t pid_ = -1;
  int output_ = -1;
  int status_ = -1;
};

// Runs a command to its end, its standard output going nowhere; the exit status.
int RunCommand(const std::vector<std::string>& command);

// Looks again and again until `condition` holds; false if it does not within `limit`.
[[nodiscard]] bool WaitUntil(const std::function<bool()>& condition,
                             std::chrono::milliseconds limit);

}  // namespace tavrel

#endif  // TAVREL_TESTS_E2E_PROCESS_H_
