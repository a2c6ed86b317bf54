#ifndef TAVREL_COMMAND_FILE_COMMAND_H_
#define TAVREL_COMMAND_FILE_COMMAND_H_

#include <string>
#include <vector>

// The command tavrel-file: what the shell and scripts ask about recordings, without the program
// and without Qt. It reads recordings and journals and writes over nothing.
namespace tavrel {

// The status with which a call ends. Of many files the highest counts.
enum CommandStatus : int {
  kAllIsWell = 0,      // verify: intact
  kNotAllCovered = 1,  // verify: readable but not covered by a seal
  kSomeDamaged = 2,    // verify: damaged; repair: it cannot be repaired
  kCommandFailed = 3,  // wrong usage, or something could not be read or written
};

// What a call says.
struct CommandResult {
  int Status = kAllIsWell;
  std::string Output;  // for the standard output
  std::string Errors;  // for the standard error
};

// `arguments`: those of the command line without the name of the command.
[[nodiscard]] CommandResult RunFileCommand(const std::vector<std::string>& arguments);

}  // namespace tavrel

#endif  // TAVREL_COMMAND_FILE_COMMAND_H_
