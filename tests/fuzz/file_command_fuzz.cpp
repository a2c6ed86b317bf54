#include <filesystem>

#include "command/file_command.h"
#include "tests/fuzz/fuzz_input.h"
#include "tests/support/temporary_directory.h"

// The first byte says how much of the rest is the recording and how much its journal, and which
// options export has.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavrel;
  const std::string bytes = TextOf(data, size);
  const std::size_t head = bytes.empty() ? 0 : static_cast<unsigned char>(bytes.front());
  const std::size_t length = bytes.size() * (head % 16) / 16;
  const TemporaryDirectory directory;
  const std::string file = bytes.substr(0, length);
  const std::string journal = bytes.substr(length);
  directory.Write("FILE", file);
  std::filesystem::create_directory(directory.File("journal"));
  if (head % 2 == 0) {
    directory.Write("journal/FILE", journal);
  }
  for (const char* command : {"info", "verify", "export"}) {
    const CommandResult result = RunFileCommand({command, directory.File("FILE")});
    Require(result.Status >= 0 && result.Status <= 3, "the status is one that is told");
    Require(result.Status != 3 || !result.Errors.empty(), "a failure is told");
  }
  static_cast<void>(
      RunFileCommand({"export", "--format", head % 3 == 0 ? "json" : "csv", "--decimal", "comma",
                      "--time", head % 5 == 0 ? "utc" : "local", directory.File("FILE")}));
  const CommandResult repaired =
      RunFileCommand({"repair", directory.File("FILE"), directory.File("OUT")});
  Require((repaired.Status == 0) == directory.Exists("OUT"), "what is repaired is there");
  Require(directory.Read("FILE") == file, "what is looked at stays as it is");
  if (directory.Exists("OUT")) {
    const CommandResult verified = RunFileCommand({"verify", directory.File("OUT")});
    Require(verified.Status == 1, "a repaired file is sound");
    Require(RunFileCommand({"repair", directory.File("FILE"), directory.File("OUT")}).Status == 3,
            "nothing is written over");
  }
  return 0;
}
