#ifndef TAVREL_SETUP_TEST_ROWS_H_
#define TAVREL_SETUP_TEST_ROWS_H_

#include <array>
#include <optional>
#include <string>
#include <string_view>

#include "base/language.h"
#include "state/run_state.h"

// The tests as the installation edits them: twelve rows, row n is slot n. Pure rules, nothing of
// the running program is touched here.
namespace tavrel {

inline constexpr int kExtensionCharacters = 3;
inline constexpr int kApparatusCharacters = 16;

// One row of the grid.
struct TestRow {
  UnitRecord Unit{};        // UnitInet 0: the row is free
  std::string Test_Des;     // what the apparatus is called, as the user has typed it
  std::string Test_Ext;     // the extension of its files
  std::string AwaitedFile;  // the test of this slot waits for that file and stays as it is;
                            // empty: the row can be edited

  [[nodiscard]] bool IsInstalled() const { return Unit.UnitInet >= 1; }
  [[nodiscard]] bool IsKept() const { return !AwaitedFile.empty(); }
};
using TestRows = BySlot<TestRow>;  // 1..12

// The row of a test: its record and its texts, without blanks at their ends.
[[nodiscard]] TestRow RowOf(const UnitRecord& unit);

// Puts the texts of a row into the designation of its record, the extension in capitals.
void CollectTexts(TestRow& row);

// True if the two are different tests: another instrument, another role of an input, or a
// designation that reads differently. Blanks at the ends of its texts, and capitals in the
// extension, are no difference.
[[nodiscard]] bool IsOtherTest(const UnitRecord& left, const UnitRecord& right);

// What keeps the rows from being installed.
struct InstallationFault {
  int Row = 0;  // 1..12
  std::string_view Text;

  [[nodiscard]] bool operator==(const InstallationFault&) const = default;
};

// The last fault of the four passes over the rows; empty if there is none. A later pass speaks
// about the rows as a whole, so its fault is the one to mend first.
[[nodiscard]] std::optional<InstallationFault> FindFault(const TestRows& rows);

// Makes `unit`, the record of the slot, that of the test in `row`, for a file that begins now: its
// recording is off, and only what belongs to the slot as such stays, such as the interval. A record
// that held no test gets the defaults.
void RebuildRecord(UnitRecord& unit, const UnitRecord& row, Language language);

}  // namespace tavrel

#endif  // TAVREL_SETUP_TEST_ROWS_H_
