#include "tests/files/pump_fixture.h"
#include "tests/fuzz/fuzz_input.h"
#include "work/program_editor.h"
#include "work/program_runner.h"

namespace tavrel {
namespace {

constexpr std::size_t kScript = 24;  // bytes of the input that say what is done with the file
constexpr int kEdits = 8;
constexpr int kMinutes = 60;
constexpr int kSlot = 1;
constexpr const char* kName = "A.PRG";
constexpr const char* kSaved = "B.PRG";

using Row = std::vector<std::string>;

// A program file with any bytes: read, edited and saved, and run on a controller.
class ProgramUnderFire {
 public:
  ProgramUnderFire(std::string file, FuzzInput& script) : file_(std::move(file)), script_(script) {
    room_.port.answer = [this](const std::string& command) { return Answer(command); };
    room_.directory.Write(kName, file_);
  }

  void Run() {
    CheckReading();
    CheckEditor();
    CheckRunner();
    Require(room_.directory.Read(kName) == file_, "a program file changes by a save alone");
  }

 private:
  std::string Answer(const std::string& command) {
    if (fails_ && script_.Choice(4) == 0) {
      return "?";
    }
    return command.ends_with('?') ? "01F4\r" : ".";
  }

  void CheckReading() {
    const ProgramFile file = ReadProgramFile(room_.directory.File(kName));
    Require(file.Problem.empty(), "a plain file can be read");
    Require(file.Records == RecordsOf(static_cast<std::int64_t>(file_.size())),
            "the length is told in records");
    const bool is_read = file.Records >= 1 && file.Records <= kProgramRecords;
    const auto steps = static_cast<std::size_t>(is_read ? file.Records - 1 : 0);
    Require(file.Steps.size() == steps, "every record but the first is a step");
    for (std::size_t step = 0; step < steps; ++step) {
      CheckWord(file.Steps.at(step).Status, step, 0);
      CheckWord(file.Steps.at(step).Increment, step, 1);
      CheckWord(file.Steps.at(step).Setpoint, step, 2);
      CheckWord(file.Steps.at(step).Time, step, 3);
    }
  }

  void CheckWord(std::int16_t word, std::size_t step, std::size_t place) const {
    const std::size_t byte = (step + 1) * kStepBytes + 2 * place;
    std::int16_t expected = kEmptyCell;
    if (byte + sizeof expected <= file_.size()) {
      std::memcpy(&expected, file_.data() + byte, sizeof expected);
    }
    Require(word == expected, "a step holds the words of the file");
  }

  void CheckEditor() {
    ProgramEditor editor({room_.state, room_.dialogs});
    editor.Open();
    Choose(kName);
    editor.cmdOpen_Click();
    for (int edit = 0; edit < kEdits; ++edit) {
      EditOnce(editor);
    }
    editor.Grid_Click(0, 0);
    Choose(kSaved);
    room_.dialogs.boxes.clear();
    editor.cmdSave_Click();
    const bool is_saved = room_.directory.Exists(kSaved);
    Require(is_saved == room_.dialogs.boxes.empty(), "what is not saved is told");
    if (is_saved) {
      CheckSaved(editor);
    }
  }

  void EditOnce(ProgramEditor& editor) {
    switch (script_.Choice(4)) {
      case 0:
        editor.Grid_Click(script_.Choice(kProgramRows + 3) - 1,
                          script_.Choice(kProgramColumns + 2) - 1);
        break;
      case 1:
        editor.txtEdit_Change(script_.Text(3));
        break;
      case 2:
        editor.Cstat_Click(script_.Choice(6) - 1);
        break;
      default:
        editor.MoveEdit(script_.Choice(5) - 2, script_.Choice(5) - 2);
    }
  }

  // Only rows with a status are saved, one behind the other; opened again nothing differs.
  void CheckSaved(ProgramEditor& editor) {
    std::vector<Row> before = RowsOf(editor);
    Require(!editor.ProgChanged(), "what is saved has not changed");
    const ProgramFile saved = ReadProgramFile(room_.directory.File(kSaved));
    Require(saved.Problem.empty() && saved.Records <= kProgramRows + 1, "a saved file is read");
    if (saved.Records > kProgramRecords) {
      return;  // the fiftieth step fits the editor, but no file that it reads
    }
    Choose(kSaved);
    editor.cmdOpen_Click();
    Require(RowsOf(editor) == before, "a saved program is read as it was");
  }
  static std::vector<Row> RowsOf(const ProgramEditor& editor) {
    std::vector<Row> rows;
    for (int row = 1; row <= kProgramRows; ++row) {
      rows.emplace_back();
      for (int column = kTimeColumn; column <= kIncrementColumn; ++column) {
        rows.back().push_back(editor.Cell(row, column).Text);
      }
    }
    return rows;
  }

  void CheckRunner() {
    UnitRecord unit = HeaderOf(2, {1});
    unit.UnitCtrl = 3;
    room_.Open(kSlot, "M260314A.OVE", BytesOf(unit));
    FakeEvents events;
    ProgramRunner runner(
        {room_.state, room_.link, room_.engine, room_.dialogs, events, room_.clock});
    Greet();
    fails_ = true;
    Choose(kName);
    const bool is_started = runner.Start(kSlot) == ProgramStart::kStarted;
    const int steps = runner.ProgSteps(kSlot);
    Require(is_started == room_.state.ProgRunning[kSlot], "what is started runs");
    Require(!is_started || (steps >= 1 && steps <= kMostSteps), "a program has 1 to 49 steps");
    for (int minute = 0; minute < kMinutes; ++minute) {
      Greet();
      room_.port.sent.clear();
      runner.StepProgram(kSlot);
      CheckMinute(steps);
    }
  }

  // An exchange that makes the instrument count as connected.
  void Greet() {
    const bool fails = std::exchange(fails_, false);
    room_.clock.AdvanceSeconds(60);
    room_.link.ComInet = 2;
    room_.link.ComLetter = "Y";
    room_.link.ComIndex = 3;
    room_.link.ReadReg();
    fails_ = fails;
  }

  void CheckMinute(int steps) {
    const UnitRecord& unit = room_.state.Unit[kSlot];
    Require(unit.UnitProgStep >= 0 && unit.UnitProgStep <= steps, "no step beyond the last one");
    Require(room_.port.sent.size() <= 5, "a minute has one step at most");
    for (const std::string& command : room_.port.sent) {
      Require(command.size() > 3 && command.compare(1, 2, "13") == 0,
              "nothing is sent to another controller");
    }
  }

  void Choose(const char* name) { room_.dialogs.chosen_file = room_.directory.File(name); }

  std::string file_;
  FuzzInput& script_;
  PumpFixture room_;
  bool fails_ = false;  // some writes are refused
};

}  // namespace
}  // namespace tavrel

// The last bytes say what is done, those before them are the file.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavrel;
  const std::string bytes = TextOf(data, size);
  const std::size_t file_bytes = bytes.size() - std::min(bytes.size(), kScript);
  FuzzInput script(std::string_view(bytes).substr(file_bytes));
  ProgramUnderFire(bytes.substr(0, file_bytes), script).Run();
  return 0;
}
