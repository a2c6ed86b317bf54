#ifndef TAVREL_TESTS_WIRE_LIVE_INSTRUMENT_H_
#define TAVREL_TESTS_WIRE_LIVE_INSTRUMENT_H_

#include <string>
#include <vector>

#include "tests/e2e/process.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {

// tavrel-instrument on a pseudo-terminal that is COM1 of `home`, with a control socket, the log
// of its line (`line.log`) and its truth (`truth.txt`). Runs as long as this lives.
class LiveInstrument {
 public:
  LiveInstrument(const TemporaryDirectory& home, bool plugin, std::vector<std::string> options);

  [[nodiscard]] bool IsUp() const { return is_up_; }

  // One control command; true if it was answered by ok.
  [[nodiscard]] bool Tell(const std::string& command) const;

  // What it answers to the command `status`.
  [[nodiscard]] std::string Status() const;

  // What is on the line from now on is told by Telegrams().
  void Forget();

  // The commands that arrived, in their order and in the words of the wire. Waits up to two
  // seconds until there are `count` of them; there may be more.
  [[nodiscard]] std::vector<std::string> Telegrams(std::size_t count) const;

  // The last value that the instrument gave in reply to `command`, as the digits on the wire;
  // empty if there was none.
  [[nodiscard]] std::string LastReply(const std::string& command) const;

  // When `command` arrived last, in true seconds since the instrument's start; 0 if it did not.
  [[nodiscard]] double LastTime(const std::string& command) const;

 private:
  // A row of the log: who spoke and what.
  struct Row {
    double seconds = 0;
    bool from_host = false;
    std::string text;
  };
  [[nodiscard]] std::vector<Row> Rows() const;

  const TemporaryDirectory& home_;
  Process process_;
  bool is_up_ = false;
  std::size_t forgotten_ = 0;  // rows of the log
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_WIRE_LIVE_INSTRUMENT_H_
