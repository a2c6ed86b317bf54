#include <algorithm>
#include <utility>

#include "base/text.h"
#include "files/file_texts.h"
#include "files/journal_begin.h"
#include "files/new_file.h"
#include "files/reasons.h"
#include "files/recording_file.h"
#include "files/recording_format.h"
#include "platform/file_system.h"
#include "state/user_language.h"

// What becomes of a recording whose file others have taken away. An open file lives on without a
// name, with all its rows, until it is closed.
namespace tavrel {

// A medium that is away takes its directory along, or another directory shows in its place: then
// the file is not lost, it comes back.
bool RecordingFiles::IsFileLost(int slot) const {
  if (!IsSlot(slot) || state_.SlotFile[slot].empty()) {
    return false;
  }
  const RandomFile& file = state_.SlotFileNo[slot];
  const auto own = file.Identity();
  if (own && own == IdentityOf(places_[slot].path)) {
    return false;
  }
  const std::string& directory = state_.SlotPath[slot];
  const std::string& name = state_.SlotFile[slot];
  NoAnswer no_answer;
  const auto found = FindFile(directory, name, no_answer);
  if (found) {
    return own && own != IdentityOf(*found);
  }
  const bool is_certain = no_answer.Why == Failure::kNone;
  const bool is_same_directory =
      places_[slot].directory && places_[slot].directory == IdentityOf(directory);
  return is_certain && DirectoryExists(directory) && (file.IsNameless() || is_same_directory);
}

std::optional<std::string> RecordingFiles::RestoreFile(int slot) {
  const std::string old_name = state_.SlotFile[slot];
  const std::int32_t old_count = state_.SampleCount[slot];
  if (AdoptCopy(slot)) {
    return "";
  }
  const auto rows = RowsOfOpenFile(slot);
  if (!rows || !PutIntoNewFile(slot, *rows)) {
    return std::nullopt;
  }
  const Language language = UserLanguage(state_);
  const bool is_there = EqualNoCase(state_.SlotFile[slot], old_name);
  const BothLanguages& where = is_there ? file_text::kThereAgain : file_text::kGoesOnIn;
  const bool is_whole = state_.SampleCount[slot] == old_count;
  const BothLanguages& left = rows->empty() ? file_text::kWithoutRows : file_text::kWithSomeRows;
  return file_text::kTakenAway.Text(language,
                                    {old_name, where.Text(language, {state_.SlotFile[slot]}),
                                     (is_whole ? file_text::kWithAllRows : left).In(language)});
}

// Without rows the time counts from now.
bool RecordingFiles::PutIntoNewFile(int slot, std::span<const std::byte> rows) {
  UnitRecord unit = state_.Unit[slot];
  if (rows.empty() && state_.SampleCount[slot] > 0) {
    unit.UnitDate.Set(DateText(clock_.Now()));
  }
  const std::string& directory = state_.SlotPath[slot];
  const bool is_free = !HoldsName(directory, state_.SlotFile[slot]);
  const std::string name = is_free ? UpperCase(state_.SlotFile[slot]) : NextFreeName(slot);
  if (name.empty()) {
    return Fail(reason::kNoFreeNextName);
  }
  RandomFile file;
  const std::string problem = MakeRestoredFile(file, slot, name, unit, rows);
  if (!problem.empty()) {
    return Fail(problem);
  }
  const auto length = kHeaderBytes + static_cast<std::int64_t>(rows.size());
  TakeRestoredFile(slot, name, std::move(file));
  state_.Unit[slot] = unit;
  state_.SampleCount[slot] = SampleCountOf(length, unit.UnitChannels);
  journals_.Opened(slot, journals_.LacksLines(slot));
  KeepHeldSet(slot, state_.AskedInput[slot]);
  return true;
}

// Under its own name the journal goes on, or says why it does not, when the file is opened.
std::string RecordingFiles::MakeRestoredFile(RandomFile& file, int slot, const std::string& name,
                                             const UnitRecord& unit,
                                             std::span<const std::byte> rows) {
  if (EqualNoCase(name, state_.SlotFile[slot])) {
    journals_.AnnounceHeader(slot, unit);
    return MakeRecordingFile(file, state_.SlotPath[slot], name, unit, rows);
  }
  const std::int32_t taken =
      SampleCountOf(kHeaderBytes + static_cast<std::int64_t>(rows.size()), unit.UnitChannels);
  // Rows that are lost leave no time to go on from.
  const bool is_whole = !journals_.LacksLines(slot) && taken == state_.SampleCount[slot];
  const JsonValue::Members before =
      BeforeFields({state_.SlotPath[slot], state_.SlotFile[slot], journals_.IdOf(slot), is_whole,
                    state_.SampleCount[slot], taken, RecIntervalOf(unit)});
  return journals_.MakeFile(file, slot, name, unit, rows, {{"before", before}});
}

// What a program for backups leaves is the same recording under the same name.
bool RecordingFiles::AdoptCopy(int slot) {
  RandomFile copy;
  if (!FindFile(state_.SlotPath[slot], state_.SlotFile[slot]) || !OpenSameFile(slot, copy)) {
    return false;
  }
  state_.SlotFileNo[slot] = std::move(copy);
  return true;
}

// The rows of the slot as bytes; none where no handle has them any more. Empty, with Error(), if
// they cannot be read now.
std::optional<std::vector<std::byte>> RecordingFiles::RowsOfOpenFile(int slot) {
  RandomFile& file = state_.SlotFileNo[slot];
  std::vector<std::byte> rows;
  if (!file.IsOpen()) {
    return rows;
  }
  const int channels = state_.Unit[slot].UnitChannels;
  const std::int32_t count =
      std::min(state_.SampleCount[slot], SampleCountOf(file.Size(), channels));
  rows.resize(static_cast<std::size_t>(count) * static_cast<std::size_t>(kWordBytes * channels));
  const std::int64_t got = file.ReadAt(kHeaderBytes, rows);
  if (got != static_cast<std::int64_t>(rows.size())) {
    Fail(file.Error());
    return std::nullopt;
  }
  return rows;
}

void RecordingFiles::TakeRestoredFile(int slot, const std::string& name, RandomFile file) {
  held_set_files_[slot].Close();
  if (!EqualNoCase(name, state_.SlotFile[slot])) {
    static_cast<void>(DeleteFile(HeldSetPath(slot)));
  }
  state_.SlotFileNo[slot] = std::move(file);
  state_.SlotFile[slot] = name;
  state_.Settings.ActiveFiles[slot - 1] = name;
  state_.SlotDirty[slot] = false;
  state_.IndexValid = false;
  const std::string path = JoinPath(state_.SlotPath[slot], name);
  static_cast<void>(Reserve(slot, path));  // it has just been made: nobody else knows it
  NotePlace(slot, path);
  ForgetShown(slot);
}

}  // namespace tavrel
