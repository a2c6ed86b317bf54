#include <cstdio>
#include <string>
#include <vector>

#include "command/file_command.h"

int main(int count, char** arguments) {
  const tavrel::CommandResult result = tavrel::RunFileCommand(
      std::vector<std::string>(arguments + (count > 0 ? 1 : 0), arguments + count));
  const bool is_said =
      std::fwrite(result.Output.data(), 1, result.Output.size(), stdout) == result.Output.size() &&
      std::fflush(stdout) == 0;
  static_cast<void>(std::fwrite(result.Errors.data(), 1, result.Errors.size(), stderr));
  return is_said ? result.Status : tavrel::kCommandFailed;
}
