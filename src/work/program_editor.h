#ifndef TAVREL_WORK_PROGRAM_EDITOR_H_
#define TAVREL_WORK_PROGRAM_EDITOR_H_

#include <array>
#include <cstdint>
#include <string>

#include "base/colour.h"
#include "base/language.h"
#include "base/numbered.h"
#include "platform/dialogs.h"
#include "state/modal_screen.h"
#include "state/run_state.h"
#include "work/program.h"

namespace tavrel {

// The columns of the grid; column 0 has the number of the step.
enum ProgramColumn : int {
  kStepColumn = 0,
  kTimeColumn = 1,
  kSetpointColumn = 2,
  kStatusColumn = 3,
  kIncrementColumn = 4,
};

inline constexpr int kProgramColumns = 5;

template <typename T>
using ByProgramColumn = Numbered<T, kStepColumn, kIncrementColumn>;

// The two lines above a column.
struct ColumnHead {
  const char* Name;
  const char* Unit;
};

inline constexpr ByProgramColumn<ColumnHead> kProgramHeads = {{{{"step", ""},
                                                                {"time", "[ min ]"},
                                                                {"setpoint", "[ °C ]"},
                                                                {"controller", "[ status ]"},
                                                                {"increment", "[ °C / sec ]"}}}};

// The lines of the list Cstat.
inline constexpr std::array kStatusItems = {"       ---", "       off", "       iso", "      dyn"};

// A cell as it is drawn.
struct ProgramCell {
  std::string Text;
  Colour Background{0xFF, 0xFF, 0xFF};

  [[nodiscard]] bool operator==(const ProgramCell&) const = default;
};

// The cell in edit. Row 0: none is.
struct CellInEdit {
  int Row = 0;
  int Column = 0;
  std::string txtEdit;  // in the columns of numbers
  int Cstat = 0;        // in the column of the status: the line of the list

  [[nodiscard]] bool IsOpen() const { return Row > 0; }
  [[nodiscard]] bool IsList() const { return IsOpen() && Column == kStatusColumn; }
};

// TavProg, the editor of controller programs. It knows no slot and no instrument. Rows count from
// 1, as the steps do.
class ProgramEditor : public ModalScreen {
 public:
  struct Parts {  // all outlive the editor
    RunState& state;
    Dialogs& dialogs;
  };
  explicit ProgramEditor(const Parts& parts)
      : ModalScreen(parts.state, View::kTavProg), parts_(parts) {}

  // Before the form is shown: an empty program.
  void Open();

  // What the form shows.
  [[nodiscard]] const std::string& Caption() const { return caption_; }
  [[nodiscard]] ProgramCell Cell(int row, int column) const;
  [[nodiscard]] const CellInEdit& Edit() const { return edit_; }
  [[nodiscard]] const ProgramRows& Rows() const { return rows_; }
  [[nodiscard]] Language TipLanguage() const;

  // Something differs from the file.
  [[nodiscard]] bool ProgChanged() const { return prog_changed_; }

  // The buttons and the menu. Each ends at once if the cell in edit holds a refused value.
  void cmdNew_Click();
  void cmdOpen_Click();
  void cmdSave_Click();

  // A click on a cell: the edit that is open is closed, and one opens there. A click beside the
  // cells of the steps only closes.
  void Grid_Click(int row, int column);

  // The user types, or chooses a line. Nothing is stored yet.
  void txtEdit_Change(const std::string& text) { edit_.txtEdit = text; }
  void Cstat_Click(int index) { edit_.Cstat = index; }

  // Closes the edit and goes on to another cell, `rows` down and `columns` to the right; at the
  // end of a row the next one begins. A refused value stays in edit, and so does the last cell.
  // The Enter key is one row down.
  void MoveEdit(int rows, int columns);

  // The Escape key in a cell: the cell is as it was before the edit.
  void DropEdit() { edit_ = {}; }

  // Asks about changes first.
  void Quit() override;

 private:
  [[nodiscard]] bool CloseEdit();
  [[nodiscard]] bool TakeNumber();
  void TakeStatus();
  void Store(std::int16_t word);
  [[nodiscard]] std::int16_t& WordAt(int row, int column);
  [[nodiscard]] bool MayGoOn();
  [[nodiscard]] bool Check();
  [[nodiscard]] bool Save();
  void OpenProgram();
  void Take(const ProgramFile& file);

  Parts parts_;
  ProgramRows rows_{};
  std::string caption_;
  CellInEdit edit_;
  std::string text_before_;  // of the cell in edit, as it was put in
  int line_before_ = 0;
  bool prog_changed_ = false;
};

}  // namespace tavrel

#endif  // TAVREL_WORK_PROGRAM_EDITOR_H_
