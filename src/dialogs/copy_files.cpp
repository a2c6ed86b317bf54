#include "dialogs/copy_files.h"

#include <utility>
#include <vector>

#include "base/text.h"
#include "dialogs/copy_texts.h"
#include "files/reasons.h"
#include "files/recording_copy.h"
#include "platform/file_system.h"
#include "state/open_slots.h"

namespace tavrel {
namespace {

constexpr const char* kTitle = "Copy";
constexpr int kTypeWithCompanions = 3;  // link variant whose recordings have a file of curves
constexpr char kCompanionLetter = 'C';

// Where `name` is in `directory`, or would be.
std::string PathIn(const std::string& directory, const std::string& name) {
  return FindFile(directory, name).value_or(JoinPath(directory, name));
}

std::string CompanionOf(std::string name) {
  name.front() = kCompanionLetter;
  return name;
}

}  // namespace

CopyFiles::CopyFiles(Parts parts)
    : ModalScreen(parts.state, View::kAllCopy),
      parts_(std::move(parts)),
      lists_(parts_.list_places) {}

void CopyFiles::Open() {
  OpenScreen();
  values_ = CopyFilesValues();
  values_.TipLanguage = LanguageOf(parts_.state.Settings.HelpLang);
  values_.noFiles = std::to_string(parts_.open_file.SelectedNames().size());
  stop_ = false;
  const std::string& last = parts_.state.Settings.DestPath;
  lists_.RefreshPlaces();
  lists_.Open(DirectoryExists(last) ? last : HomeDirectory());
  Lists_Change();
}

void CopyFiles::Lists_Change() {
  values_.lbPath = StripSeparator(lists_.Path());
}

void CopyFiles::cmdCopy_Click(const std::function<void()>& show) {
  const std::string target = values_.lbPath;
  if (values_.IsCopying || target.empty()) {
    return;
  }
  const Notice question = {"Copy file(s) to:\n" + LowerCase(target), kTitle, BoxIcon::kQuestion};
  if (!parts_.dialogs.AskOk(question)) {
    return;
  }
  SetDestPath(target);
  const Counts counts = CopyAll(target, show);
  std::string text = std::to_string(counts.Data) + "  file(s) copied";
  if (HasCompanions()) {
    text = std::to_string(counts.Data) + "  data-file(s)\n" + std::to_string(counts.Curves) +
           "  curve-file(s)";
  }
  if (!parts_.events.EndIsWanted()) {
    parts_.dialogs.Message({text, kTitle, BoxIcon::kInformation});
  }
  if (counts.Data + counts.Curves > 0 || stop_) {
    stop_ = false;
    Quit();
  }
}

// The event queue is served after each file and within large ones: a slow medium must not hold up
// the measuring cycle.
CopyFiles::Counts CopyFiles::CopyAll(const std::string& target, const std::function<void()>& show) {
  const std::vector<std::string> names = parts_.open_file.SelectedNames();
  Counts counts;
  Outcome outcome = Outcome::kNot;
  ProgressMeter meter(parts_.clock, [&](int percent) { values_.Progress = percent; });
  values_.IsCopying = true;
  parts_.events.SetPointer(Pointer::kHourglass);
  for (std::size_t done = 0; done < names.size() && !IsToEnd() && outcome != Outcome::kStop;
       ++done) {
    meter.Step(done, names.size());
    show();
    static_cast<void>(ServeEvents());
    const std::string name = UpperCase(Trim(names[done]));
    outcome = CopyOne(name, target);
    counts.Data += outcome == Outcome::kCopied ? 1 : 0;
    if (HasCompanions() && outcome != Outcome::kStop) {
      outcome = CopyOne(CompanionOf(name), target);
      counts.Curves += outcome == Outcome::kCopied ? 1 : 0;
    }
  }
  parts_.events.SetPointer(Pointer::kNormal);
  values_.IsCopying = false;
  values_.Progress = kNoProgress;
  show();
  return counts;
}

// False: the copying is to end.
bool CopyFiles::ServeEvents() {
  parts_.events.Pump();
  return !IsToEnd();
}

CopyFiles::Outcome CopyFiles::CopyOne(const std::string& name, const std::string& target) {
  const std::string from = PathIn(parts_.open_file.Directory(), name);
  const std::string to = PathIn(target, name);
  if (IsSameFile(from, to)) {
    Refuse(name, "Source = Destination");
    return Outcome::kNot;
  }
  if (IsOpenInSlot(parts_.state, to)) {
    Refuse(name, copy_text::kInUse.Text(values_.TipLanguage));
    return Outcome::kNot;
  }
  SealIfOpen(from);
  const RecordingCopy copy = CopyRecording(from, to, [this] { return ServeEvents(); });
  if (!copy.Problem.empty()) {
    return TellProblem(name, copy.Problem);
  }
  parts_.state.IndexValid = false;
  if (!copy.JournalProblem.empty() && !parts_.events.EndIsWanted()) {
    Refuse(copy_text::kJournalOf.Text(values_.TipLanguage, {name}),
           ReasonIn(values_.TipLanguage, copy.JournalProblem));
  }
  return Outcome::kCopied;
}

CopyFiles::Outcome CopyFiles::TellProblem(const std::string& name, const std::string& problem) {
  if (IsToEnd()) {
    return Outcome::kStop;
  }
  const bool goes_on =
      parts_.dialogs.AskOk({"Cannot copy:" + name + "\n" + problem, kTitle, BoxIcon::kWarning});
  return goes_on ? Outcome::kNot : Outcome::kStop;
}

// All rows that a recording has at this moment are in its copy, and its journal has sealed them.
void CopyFiles::SealIfOpen(const std::string& path) {
  RunState& state = parts_.state;
  for (int slot = kViewedFile; slot <= kSlots; ++slot) {
    if (IsFileOfSlot(state, slot, path) && state.SlotFileNo[slot].IsOpen() &&
        state.SlotFileNo[slot].Sync()) {
      parts_.journals.Synced(slot);
    }
  }
}

void CopyFiles::Refuse(const std::string& name, const std::string& reason) {
  parts_.dialogs.Message({"Cannot copy:" + name + "\n" + reason, kTitle, BoxIcon::kWarning});
}

// A slot would go on with the old file, which then has no name any more.
bool CopyFiles::HasCompanions() const {
  return parts_.state.Settings.TypeSel == kTypeWithCompanions;
}

void CopyFiles::SetDestPath(const std::string& path) {
  RunState& state = parts_.state;
  if (state.Settings.DestPath != path) {
    state.Settings.DestPath = path;
    state.SettingsChanged = true;
  }
}

void CopyFiles::Quit() {
  if (values_.IsCopying) {
    stop_ = true;
    return;
  }
  CloseScreen();
}

}  // namespace tavrel
