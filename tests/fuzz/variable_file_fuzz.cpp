#include "setup/variable_file.h"

#include <string>

#include "tests/fuzz/fuzz_input.h"
#include "tests/setup/channel_bench.h"

namespace tavrel {
namespace {

constexpr std::size_t kScript = 8;  // bytes of the input that say what fails

// A variable file with any bytes, loaded into an instrument some of whose exchanges fail.
class VariableFileUnderFire {
 public:
  VariableFileUnderFire(std::string file, FuzzInput& script)
      : file_(std::move(file)), fail_every_(script.Choice(40)), ends_at_(script.Byte() * 4) {}

  void Run() {
    CheckReading();
    CheckLoad();
  }

 private:
  void CheckReading() {
    VariableReader reader(file_);
    Variable variable;
    std::size_t registers = 0;
    while (reader.Next(variable) == VariableReader::Place::kReading) {
      ++registers;
      Require(kVariableLetters.find(variable.letter) != std::string_view::npos,
              "only registers of a group are read");
      Require(variable.row >= 0 && variable.row < kRegistersPerLetter, "a group has sixteen rows");
      Require(file_.find(std::to_string(std::abs(int{variable.word}))) != std::string::npos ||
                  HasLeadingZero(),
              "a value stands in the file");
    }
    Require(registers <= file_.size(), "a register takes a character at least");
    is_whole_ = reader.Next(variable) == VariableReader::Place::kWhole;
  }
  [[nodiscard]] bool HasLeadingZero() const {
    return file_.find('0') != std::string::npos;  // "007" is a number as well
  }

  void CheckLoad() {
    ChannelBench fixture;
    fixture.Open();
    Require(fixture.TickTo(AdjState::kIdle), "the sheet is read");
    const auto before = fixture.bench.line.registers;
    fixture.bench.home.Write("A.VAR", file_);
    fixture.bench.dialogs.chosen_file = fixture.bench.home.File("A.VAR");
    int exchanges = 0;
    fixture.on_command = [&](const std::string&) {
      ++exchanges;
      fixture.bench.events.end_is_wanted = ends_at_ > 0 && exchanges >= ends_at_;
    };
    fixture.failure = LineFailure::kRefusal;
    fixture.fails = [&](const std::string& command) {
      return fail_every_ > 0 && command.ends_with('\r') && exchanges % fail_every_ == 0;
    };
    fixture.dialog->Mnu_Load_Click([] {});
    Require(fixture.bench.home.Read("A.VAR") == file_, "a load changes no file");
    Require(fixture.dialog->State() == AdjState::kReadSensors, "the sheet is read anew");
    for (const auto& [place, word] : before) {
      const Variable variable{std::get<1>(place), std::get<2>(place), 0};
      const bool is_saved = kVariableLetters.find(variable.letter) != std::string_view::npos;
      const bool is_of_another = std::get<0>(place) != ChannelBench::kInet;
      if (!is_saved || !IsLoadable(variable) || is_of_another) {
        Require(fixture.bench.line.registers[place] == word, "what is not loaded stays");
      }
    }
    const bool is_told = !fixture.bench.dialogs.boxes.empty();
    Require(is_told, "a load is asked about");
    const bool is_loaded = fixture.bench.dialogs.boxes.back().Text == "File loaded !";
    Require(!is_loaded || is_whole_, "only a whole file is loaded");
  }

  std::string file_;
  int fail_every_;
  int ends_at_;
  bool is_whole_ = false;
};

}  // namespace
}  // namespace tavrel

// The last bytes say what fails, those before them are the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavrel;
  const std::string bytes = TextOf(data, size);
  const std::size_t file_bytes = bytes.size() - std::min(bytes.size(), kScript);
  FuzzInput script(std::string_view(bytes).substr(file_bytes));
  VariableFileUnderFire(bytes.substr(0, file_bytes), script).Run();
  return 0;
}
