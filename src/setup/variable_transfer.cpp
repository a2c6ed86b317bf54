#include "setup/variable_transfer.h"

#include <algorithm>
#include <chrono>

#include "link/register_access.h"
#include "platform/file_system.h"
#include "setup/touched.h"
#include "state/open_slots.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

constexpr const char* kExtension = "var";
constexpr const char* kFilter = "variables  (*.var)|*.var";
// An instrument with half of its parameters replaced is worse than one left as it was: a load goes
// on for at most so long when the program is to end. A whole load takes six seconds.
constexpr std::chrono::seconds kTimeToFinish{10};
// So many reads without an answer, one behind the other: from then on a group is asked for its
// first register only, until it answers again.
constexpr int kSilences = 3;

}  // namespace

std::optional<VariableTransfer::Chosen> VariableTransfer::Choose(FileMode mode) const {
  FileChoice choice;
  choice.Mode = mode;
  choice.Directory = parts_.state.AppPath;
  choice.DefaultExtension = kExtension;
  choice.Filter = kFilter;
  choice.Title = mode == FileMode::kSave ? "Save As" : "Open";
  parts_.dialogs.FileDialog(choice);
  if (choice.FileName.empty()) {
    return std::nullopt;
  }
  return Chosen{FindPath(choice.FullName).value_or(choice.FullName), choice.FileName};
}

void VariableTransfer::Begin() {
  end_wanted_.reset();
  parts_.values.MenusEnabled = false;
  parts_.values.Lbl_Instr.clear();
  parts_.values.Lbl_InstrShown = true;
}

void VariableTransfer::End() {
  parts_.values.Lbl_InstrShown = false;
  parts_.values.pBarShown = false;
}

void VariableTransfer::ShowRegister(char letter, int row, int done,
                                    const std::function<void()>& show) {
  parts_.values.Lbl_Instr = VariableName(letter, row);
  parts_.values.pBar = std::min(done * 100 / kVariables, 100);
  parts_.values.pBarShown = true;
  show();
  parts_.events.Repaint();
}

void VariableTransfer::Change(AdjState from, AdjState to) {
  if (parts_.adj_state == from) {
    parts_.adj_state = to;
  }
}

bool VariableTransfer::CanWrite(const std::string& path) const {
  return !IsOpenInSlot(parts_.state, path) && WhyNotReplaceable(path).empty();
}

void VariableTransfer::Save(const std::function<void()>& show) {
  const auto chosen = Choose(FileMode::kSave);
  if (!chosen) {
    return;
  }
  const AdjState before = parts_.adj_state;
  Begin();
  parts_.adj_state = CanWrite(chosen->path) ? AdjState::kSaving : AdjState::kCancelled;
  if (parts_.adj_state == AdjState::kSaving) {
    Store(chosen->path, ReadAll(show));
  }
  TellSaved(chosen->name);
  End();
  parts_.adj_state = before;
  parts_.values.MenusEnabled = true;
}

// A register that was not answered gets the word that the link held last, and the user is told that
// the file has errors.
VariableWords VariableTransfer::ReadAll(const std::function<void()>& show) {
  VariableWords words{};
  std::int16_t last = parts_.link.ComValue;
  int silences = 0;
  int done = 0;
  for (std::size_t group = 0; group < words.size(); ++group) {
    const char letter = kVariableLetters[group];
    for (int row = 0; row < kRegistersPerLetter; ++row) {
      if (parts_.events.EndIsWanted()) {
        parts_.adj_state = AdjState::kCancelled;
      }
      if (parts_.adj_state == AdjState::kCancelled) {
        return words;
      }
      ShowRegister(letter, row, done++, show);
      const bool is_asked = row == 0 || silences < kSilences;
      const Reading reading =
          is_asked ? Read(parts_.link, Register{inet_, std::string_view(&letter, 1), row})
                   : Reading();
      silences = reading.IsGood() ? 0 : silences + (is_asked ? 1 : 0);
      last = reading.Word().value_or(last);
      if (!reading.IsGood()) {
        Change(AdjState::kSaving, AdjState::kFailed);
      }
      words[group][static_cast<std::size_t>(row)] = last;
    }
  }
  return words;
}

void VariableTransfer::Store(const std::string& path, const VariableWords& words) {
  if (parts_.adj_state == AdjState::kCancelled) {
    return;
  }
  if (!ReplaceFile(path, VariableFileBytes(words)).empty()) {
    parts_.adj_state = AdjState::kCancelled;
  }
}

void VariableTransfer::TellSaved(const std::string& name) {
  if (parts_.events.EndIsWanted()) {
    return;
  }
  switch (parts_.adj_state) {
    case AdjState::kSaving:
      parts_.dialogs.Message({"File written !", name, BoxIcon::kInformation});
      return;
    case AdjState::kFailed:
      parts_.dialogs.Message({"Error in file !", name, BoxIcon::kWarning});
      return;
    default:
      parts_.dialogs.Message({"Cancelled !", name, BoxIcon::kWarning});
  }
}

void VariableTransfer::Load(const std::function<void()>& show) {
  const Notice warning = {"WARNING:  existing data will be overwritten", "Load", BoxIcon::kWarning};
  const auto chosen =
      parts_.dialogs.AskOk(warning) ? Choose(FileMode::kOpen) : std::optional<Chosen>();
  if (!chosen) {
    return;
  }
  const auto bytes = ReadWholeFile(chosen->path, kLargestVariableFile);
  if (!MayLoad(bytes, chosen->name)) {
    return;
  }
  Begin();
  parts_.events.SetPointer(Pointer::kHourglass);
  if (bytes) {
    parts_.adj_state = AdjState::kLoading;
    WriteAll(*bytes, show);
  }
  parts_.events.SetPointer(Pointer::kNormal);
  End();
  const bool is_loaded = parts_.adj_state == AdjState::kLoaded;
  if (!parts_.events.EndIsWanted()) {
    parts_.dialogs.Message({is_loaded ? "File loaded !" : "Error", chosen->name,
                            is_loaded ? BoxIcon::kInformation : BoxIcon::kWarning});
  }
  parts_.adj_state = AdjState::kReadSensors;
}

bool VariableTransfer::MayLoad(const std::optional<std::string>& bytes, const std::string& name) {
  if (!bytes) {
    return true;
  }
  Rows all{};
  all.Fill(true);
  const Language language = UserLanguage(parts_.state);
  std::vector<std::string> lines = ControllersAtWork(parts_.link, inet_, all, language);
  for (const auto& more :
       {RecordingsAtWork(parts_.state, inet_, all), OrdersInFile(*bytes, language)}) {
    lines.insert(lines.end(), more.begin(), more.end());
  }
  return MayTouch(parts_.dialogs, lines, name, language);
}

void VariableTransfer::WriteAll(std::string_view bytes, const std::function<void()>& show) {
  VariableReader reader(bytes);
  Variable variable;
  char group = 0;
  for (int done = 0; !MustStop(); ++done) {
    const VariableReader::Place place = reader.Next(variable);
    if (place != VariableReader::Place::kReading) {
      const bool is_whole = place == VariableReader::Place::kWhole;
      Change(AdjState::kLoading, is_whole ? AdjState::kLoaded : AdjState::kFailed);
      return;
    }
    const bool is_next_group = variable.row == 0 && group != 0;
    group = variable.letter;
    if (is_next_group && parts_.adj_state != AdjState::kLoading) {
      return;
    }
    if (!IsLoadable(variable)) {
      continue;
    }
    ShowRegister(variable.letter, variable.row, done, show);
    if (!WriteTwice(variable)) {
      Change(AdjState::kLoading, AdjState::kFailed);
    }
  }
  Change(AdjState::kLoading, AdjState::kFailed);
}

// The acknowledge of the first try may come so late that the second meets it on the line and is not
// sent (kLength): that one counts for nothing.
bool VariableTransfer::WriteTwice(const Variable& variable) {
  const Register to{inet_, std::string_view(&variable.letter, 1), variable.row};
  if (IsGood(Write(parts_.link, to, variable.word))) {
    return true;
  }
  const LinkResult again = Write(parts_.link, to, variable.word);
  return IsGood(again) ||
         (again == LinkResult::kLength && IsGood(Write(parts_.link, to, variable.word)));
}

// True if the program is to end and the time to finish is over, or if the user has cancelled.
bool VariableTransfer::MustStop() {
  if (parts_.adj_state == AdjState::kCancelled) {
    return true;
  }
  if (!parts_.events.EndIsWanted()) {
    return false;
  }
  const auto now = parts_.clock.Elapsed();
  end_wanted_ = end_wanted_.value_or(now);
  return now - *end_wanted_ > kTimeToFinish;
}

}  // namespace tavrel
