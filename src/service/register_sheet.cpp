#include "service/register_sheet.h"

#include <charconv>

#include "base/text.h"

namespace tavrel {
namespace {

constexpr const char* kCheckTitle = "Check";
constexpr const char* kInputData = "Input data ?";
constexpr std::int32_t kWords = 0x10000;

constexpr BothLanguages kNotAcknowledged{":  not acknowledged, it is read again",
                                         ":  nicht bestätigt, der Wert wird neu gelesen"};
constexpr BothLanguages kRefused{":  refused by the instrument", ":  vom Gerät abgelehnt"};

// The whole of `text` as a number; empty for any other text and one that is too large.
std::optional<std::int32_t> WholeNumber(const std::string& text, int base) {
  const std::string digits = Trim(text);
  std::int32_t number = 0;
  const char* end = digits.data() + digits.size();
  const auto read = std::from_chars(digits.data(), end, number, base);
  const bool is_whole = read.ec == std::errc() && read.ptr == end;
  return is_whole ? std::optional(number) : std::nullopt;
}

}  // namespace

std::optional<std::int16_t> WordOfHex(const std::string& text) {
  const auto number = WholeNumber(text, 16);
  const bool is_word = number && *number >= 0 && *number < kWords && text.find('-') == text.npos;
  return is_word ? std::optional(static_cast<std::int16_t>(*number)) : std::nullopt;
}

std::optional<std::int16_t> WordOfDecimal(const std::string& text) {
  const auto number = WholeNumber(text, 10);
  const bool is_word = number && *number >= INT16_MIN && *number <= INT16_MAX;
  return is_word ? std::optional(static_cast<std::int16_t>(*number)) : std::nullopt;
}

void RegisterSheet::Open() {
  OpenScreen();
  values_.assign(static_cast<std::size_t>(Rows()), SheetValue());
  unsure_.clear();
  edit_.reset();
  told_.clear();
  ++version_;
  BeginPass();
}

void RegisterSheet::BeginPass() {
  is_loaded_ = false;
  row_ = 0;
  cnt_.clear();
}

void RegisterSheet::CmdRefresh_Click() {
  told_.clear();
  BeginPass();
}

void RegisterSheet::Quit() {
  if (IsEditing()) {
    CancelEdit();
  } else {
    CloseNow();
  }
}

void RegisterSheet::CloseNow() {
  CancelEdit();
  ServiceScreen::CloseNow();
}

std::string RegisterSheet::SpokenOf(int row, int column) const {
  std::string address = TextOf(row, 0);
  const std::string text = Trim(TextOf(row, column));
  if (column == 0) {
    return address;
  }
  const std::string head(ColumnHeads()[column]);
  return address + " " + head + ": " + text;
}

std::string RegisterSheet::Note() const {
  return told_.empty() ? StandingNote() : told_;
}

// ---- Reading.

void RegisterSheet::TakeStep() {
  if (!is_loaded_) {
    ReadNext();
  } else if (!unsure_.empty()) {
    ReadAgain();
  }
}

// Behind an exchange that failed the line has to settle, so that the rest waits for another turn.
// A refusal is an answer.
void RegisterSheet::ReadNext() {
  if (row_ == 0) {
    Parts().events.SetPointer(Pointer::kHourglass);
    const LinkResult begun = BeginReading();
    if (begun != LinkResult::kGood && begun != LinkResult::kRejected) {
      static_cast<void>(NoteResult(begun));
      return;
    }
  }
  const RowReading reading = ReadRow(row_);
  if (reading.value) {
    TakeReading(*reading.value);
  }
  static_cast<void>(NoteResult(reading.result));
}

void RegisterSheet::TakeReading(const SheetValue& value) {
  if (row_ == 0) {
    clip_.clear();
  }
  clip_.push_back(value);
  cnt_ = std::to_string(row_);
  unsure_.erase(row_);
  ++row_;
  if (row_ == Rows()) {
    Finish();
  }
}

void RegisterSheet::Finish() {
  is_loaded_ = true;
  cnt_.clear();
  values_.swap(clip_);
  ++version_;
  Parts().events.SetPointer(Pointer::kNormal);
}

void RegisterSheet::ReadAgain() {
  const int row = *unsure_.begin();
  const RowReading reading = ReadBack(row);
  if (reading.value) {
    Put(row, *reading.value);
    told_.clear();
  }
  static_cast<void>(NoteResult(reading.result));
}

// True if the exchange was good.
bool RegisterSheet::NoteResult(LinkResult result) {
  if (result != LinkResult::kNone && MissesAnswer(result)) {
    Parts().events.SetPointer(Pointer::kNormal);
  }
  return IsGood(result);
}

// ---- Editing.

void RegisterSheet::Grid_Click(int row, int column) {
  const bool is_row = row >= 0 && row < Rows();
  if (!is_loaded_ || (!is_row && HeadRefusesClick())) {
    Parts().events.Beep();
    return;
  }
  told_.clear();
  if (!is_row || !IsEditable(column)) {
    CancelEdit();
    return;
  }
  ++edits_;
  edit_ = SheetEdit{row, column, Trim(TextOf(row, column)), edits_};
}

bool RegisterSheet::Commit(const std::string& text) {
  if (!edit_) {
    return true;
  }
  const auto word = WordOf(text, edit_->Column);
  if (!word) {
    Parts().dialogs.Message({kInputData, kCheckTitle, BoxIcon::kWarning});
    return false;
  }
  const int number = edit_->Number;
  const bool may_write = MayWrite(edit_->Row);
  const bool goes_on = edit_ && edit_->Number == number;
  if (may_write && goes_on) {
    Write(edit_->Row, *word);
  }
  return may_write || !goes_on;
}

void RegisterSheet::Write(int row, std::int16_t word) {
  told_.clear();
  const LinkResult written = WriteRow(row, word);
  if (written == LinkResult::kNone) {
    return;
  }
  if (NoteResult(written)) {
    TakeBack(row);
  } else if (written == LinkResult::kRejected) {
    told_ = TextOf(row, 0) + std::string(kRefused.In(TipLanguage()));
  } else {
    unsure_.insert(row);
    told_ = TextOf(row, 0) + std::string(kNotAcknowledged.In(TipLanguage()));
  }
  if (IsGood(written) || FailureEndsEdit()) {
    CancelEdit();
  }
}

void RegisterSheet::TakeBack(int row) {
  const RowReading back = ReadBack(row);
  static_cast<void>(NoteResult(back.result));
  if (back.value) {
    Put(row, *back.value);
    return;
  }
  unsure_.insert(row);
  if (back.result != LinkResult::kNone) {
    told_ = TextOf(row, 0) + std::string(kNotAcknowledged.In(TipLanguage()));
  }
}

// A pass that has read the row already would bring the old value back.
void RegisterSheet::Put(int row, const SheetValue& value) {
  const auto place = static_cast<std::size_t>(row);
  values_.at(place) = value;
  if (!is_loaded_ && row < row_) {
    clip_.at(place) = value;
  }
  unsure_.erase(row);
  ++version_;
}

}  // namespace tavrel
