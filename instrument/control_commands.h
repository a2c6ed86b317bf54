#ifndef TAVREL_INSTRUMENT_CONTROL_COMMANDS_H_
#define TAVREL_INSTRUMENT_CONTROL_COMMANDS_H_

#include <string>
#include <string_view>
#include <vector>

#include "instrument/instrument_line.h"

namespace instrument {

// What a command can do beyond the instruments themselves.
class Switchboard {
 public:
  virtual ~Switchboard() = default;
  // False and a sentence in `error` on failure. Plugging twice is good and changes nothing.
  [[nodiscard]] virtual bool Plug(std::string& error) = 0;
  virtual void Unplug() = 0;
  [[nodiscard]] virtual std::string PortPath() const = 0;  // empty: unplugged
  // No command waits or comes in, no reply goes out.
  [[nodiscard]] virtual bool IsAtRest() const = 0;
  virtual void Quit() = 0;
};

// The text commands by which a test or a demonstration changes things while the line runs.
class ControlCommands {
 public:
  // Both outlive the commands.
  ControlCommands(InstrumentLine& line, Switchboard& switchboard)
      : line_(line), switchboard_(switchboard) {}

  // Carries one command out. The answer ends with a line "ok" or "error: ...".
  [[nodiscard]] std::string Execute(const std::string& text);

 private:
  using Words = std::vector<std::string_view>;
  // Each returns an error sentence, empty when it went well.
  [[nodiscard]] std::string DoFault(const Words& words);
  [[nodiscard]] std::string DoRestart(const Words& words);
  [[nodiscard]] std::string DoAttach(const Words& words);
  [[nodiscard]] std::string DoDetach(const Words& words);
  [[nodiscard]] std::string DoFill(const Words& words);
  [[nodiscard]] std::string DoPass(const Words& words);
  [[nodiscard]] std::string DoSensor(const Words& words);
  [[nodiscard]] std::string DoTestResult(const Words& words);
  [[nodiscard]] std::string Dispatch(const Words& words, std::string& answer);
  [[nodiscard]] std::string Status();
  // The instruments that "all" or a number names; empty if there is none.
  [[nodiscard]] std::vector<int> Targets(std::string_view word);

  InstrumentLine& line_;
  Switchboard& switchboard_;
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_CONTROL_COMMANDS_H_
