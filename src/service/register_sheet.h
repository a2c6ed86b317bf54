#ifndef TAVREL_SERVICE_REGISTER_SHEET_H_
#define TAVREL_SERVICE_REGISTER_SHEET_H_

#include <array>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/numbered.h"
#include "service/service_screen.h"

namespace tavrel {

// A register as it was read.
struct SheetValue {
  std::string Digits;     // hexadecimal, as the instrument has sent them; empty: it was not read
  std::int16_t Word = 0;  // only if there are digits
  std::string Remark;     // about this reading, behind the designation
};

// How the reading of a register ended.
struct RowReading {
  LinkResult result = LinkResult::kNone;  // of the exchange; kNone: none was made
  std::optional<SheetValue> value;        // empty: it is to be tried again
};

// The cell over which the edit box stands.
struct SheetEdit {
  int Row = 0;
  int Column = 0;
  std::string Text;  // of the cell when the edit began
  int Number = 0;    // another one for each edit
};

// A screen that lists registers of an instrument, one a row, and lets the user write into one of
// them. It reads one register at each turn of the cycle; the values come into the grid in one piece
// when all have been read, so that the grid never shows values of two passes. A register that was
// written is read back. A register of which a write or the reading back failed is read again in
// later turns, for nobody knows what it holds.
//
// Rows and columns count from 0; column 0 is the address.
class RegisterSheet : public ServiceScreen {
 public:
  static constexpr int kColumns = 4;
  static constexpr int kHeadRow = -1;  // a click on the head of a column
  using Heads = Numbered<std::string_view, 0, kColumns - 1>;

  using ServiceScreen::ServiceScreen;

  void Open() override;

  [[nodiscard]] virtual const Heads& ColumnHeads() const = 0;
  [[nodiscard]] virtual bool IsEditable(int column) const = 0;
  [[nodiscard]] virtual int Rows() const = 0;

  // Characters that a text of the last column may be longer once it has a remark.
  [[nodiscard]] virtual int RoomForRemarks() const { return 0; }

  // What a cell says.
  [[nodiscard]] virtual std::string TextOf(int row, int column) const = 0;

  // The same with its place, for a screen reader.
  [[nodiscard]] std::string SpokenOf(int row, int column) const;

  // Another one after each change of what the cells say.
  [[nodiscard]] int Version() const { return version_; }

  // All values are in the grid.
  [[nodiscard]] bool IsLoaded() const { return is_loaded_; }

  // How many rows have been read of those that are to be read.
  [[nodiscard]] int RowsRead() const { return row_; }

  // The counter: the row that was read last; hidden while nothing is read.
  [[nodiscard]] const std::string& Cnt() const { return cnt_; }
  [[nodiscard]] bool IsCntShown() const { return !is_loaded_; }

  // What the user has to know; empty if there is nothing.
  [[nodiscard]] std::string Note() const;

  [[nodiscard]] bool IsEditing() const { return edit_.has_value(); }
  [[nodiscard]] const std::optional<SheetEdit>& Edit() const { return edit_; }

  // Reads everything again.
  void CmdRefresh_Click();

  // A click into a cell, or Enter on it; kHeadRow for the head.
  void Grid_Click(int row, int column);

  // Enter in the edit box. False: the text is to be corrected, the edit goes on.
  [[nodiscard]] bool Commit(const std::string& text);

  void CancelEdit() { edit_.reset(); }

  // Escape ends an edit, or closes the screen if there is none.
  void Quit() override;
  void CloseNow() override;

 protected:
  void TakeStep() override;

  // What comes before the first row, each time when that is tried. Where it has failed without an
  // answer the row is left to the next turn.
  [[nodiscard]] virtual LinkResult BeginReading() = 0;
  [[nodiscard]] virtual RowReading ReadRow(int row) = 0;
  // The same behind an edit, in which the address is that of the cell.
  [[nodiscard]] virtual RowReading ReadBack(int row) { return ReadRow(row); }
  // kNone: nothing was sent, and the user has been told why; the edit goes on.
  [[nodiscard]] virtual LinkResult WriteRow(int row, std::int16_t word) = 0;

  // May ask the user, and so serve events.
  [[nodiscard]] virtual bool MayWrite(int /*row*/) { return true; }

  // The value that a typed text means; empty if it is none of 16 bits.
  [[nodiscard]] virtual std::optional<std::int16_t> WordOf(const std::string& text,
                                                           int column) const = 0;
  [[nodiscard]] virtual bool FailureEndsEdit() const = 0;
  [[nodiscard]] virtual bool HeadRefusesClick() const = 0;

  // A note that is shown while there is nothing more important to say.
  [[nodiscard]] virtual std::string StandingNote() const { return ""; }

  // As it stands in the grid; no digits if it was not read yet.
  [[nodiscard]] const SheetValue& ValueOf(int row) const {
    return values_.at(static_cast<std::size_t>(row));
  }

 private:
  void BeginPass();
  void ReadNext();
  void ReadAgain();
  void TakeReading(const SheetValue& value);
  void Finish();
  [[nodiscard]] bool NoteResult(LinkResult result);
  void Write(int row, std::int16_t word);
  void TakeBack(int row);
  void Put(int row, const SheetValue& value);

  std::vector<SheetValue> values_;  // as the grid shows them
  std::vector<SheetValue> clip_;    // of the rows that have been read again
  std::set<int> unsure_;            // rows of which nobody knows what the register holds
  std::optional<SheetEdit> edit_;
  bool is_loaded_ = false;
  int row_ = 0;  // the next one to read
  std::string cnt_;
  std::string told_;  // of the last write; empty: nothing
  int version_ = 0;
  int edits_ = 0;
};

// 16 bits as hexadecimal digits of either case; empty for any other text.
[[nodiscard]] std::optional<std::int16_t> WordOfHex(const std::string& text);

// A whole number from -32768 to 32767; empty for any other text.
[[nodiscard]] std::optional<std::int16_t> WordOfDecimal(const std::string& text);

inline constexpr std::array kSheetTips = {
    ToolTip{"CmdRefresh", {" refresh ", " neu lesen "}},
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_REGISTER_SHEET_H_
