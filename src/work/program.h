#ifndef TAVREL_WORK_PROGRAM_H_
#define TAVREL_WORK_PROGRAM_H_

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// Controller programs: their steps, their files, and whether one makes sense. A file is a list
// of records of 8 bytes, of which the first has no meaning and each other is a step.
namespace tavrel {

inline constexpr std::int16_t kEmptyCell = -1;  // a word of a step that is not set
inline constexpr int kProgramRows = 50;         // rows of the editor
inline constexpr int kProgramRecords = 50;      // records that the editor reads at most
inline constexpr int kMostSteps = 49;           // steps that can be run
inline constexpr int kStepBytes = 8;            // one step in a file: 4 words of 2 bytes

// The title of the box that tells a finding in a program.
inline constexpr const char* kProgramCheckTitle = "check of program";

// One step, its raw words in the order of the file.
struct ProgramStep {
  std::int16_t Status = kEmptyCell;     // register Z: 0 off, 2 isotherm, 3 ramp
  std::int16_t Increment = kEmptyCell;  // register I: steps of 0.01 degrees per second
  std::int16_t Setpoint = kEmptyCell;   // steps of 0.05 degrees
  std::int16_t Time = kEmptyCell;       // minutes from its start to that of the next step

  // Something stands in it: a status of 0 or more, or another word of 1 or more.
  [[nodiscard]] bool IsUsed() const;

  [[nodiscard]] bool operator==(const ProgramStep&) const = default;
};

// The rows of the editor; row r stands at place r - 1.
using ProgramRows = std::array<ProgramStep, kProgramRows>;

// What keeps the program from being saved: "program is empty", or the first thing that is
// missing ("missing: time on row 3"). Empty: it is in order. A setpoint of 0 degrees counts as
// missing, and a step that switches off needs a setpoint and a time, too.
[[nodiscard]] std::optional<std::string> ProgramFinding(const ProgramRows& rows);

// What keeps a program file from being started, in the words of ProgramFinding: the first step
// whose status or setpoint is empty (kEmptyCell), for that is what would be sent. Other words that
// the editor would miss are taken as they stand.
[[nodiscard]] std::optional<std::string> StartFinding(const std::vector<ProgramStep>& steps);

// True if no row is used.
[[nodiscard]] bool IsEmptyProgram(const ProgramRows& rows);

// The bytes of the file: a record of zeros, then the rows with a status, without holes.
[[nodiscard]] std::string ProgramFileBytes(const ProgramRows& rows);

// A file as it was read.
struct ProgramFile {
  std::string Problem;             // the system's error text; empty: it could be read
  std::int64_t Records = 0;        // its length in records, rounded to the nearest, ties to even
  std::vector<ProgramStep> Steps;  // record 2 and up, at most kMostSteps of them
};

// `length` bytes in records, rounded to the nearest, ties to even.
[[nodiscard]] std::int64_t RecordsOf(std::int64_t length);

// Reads a file without judging it. A last record that is cut off has empty words where bytes
// are missing. Of a file with more than kProgramRecords records no step is read.
[[nodiscard]] ProgramFile ReadProgramFile(const std::string& path);

}  // namespace tavrel

#endif  // TAVREL_WORK_PROGRAM_H_
