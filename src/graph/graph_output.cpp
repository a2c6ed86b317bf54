#include "graph/graph_output.h"

#include <algorithm>
#include <variant>

#include "base/text.h"
#include "dialogs/written_file.h"
#include "files/ledger_text.h"
#include "files/reasons.h"
#include "files/recording_format.h"
#include "files/seal_text.h"
#include "files/stored_recording.h"
#include "graph/output_pause.h"
#include "graph/output_texts.h"
#include "platform/file_system.h"
#include "state/open_slots.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

constexpr const char* kAsciiTitle = "ASCII - file";
constexpr const char* kClipboardTitle = "clipboard";
constexpr const char* kSubfileTitle = "Subfile";
constexpr const char* kWriteSubfileTitle = "write subfile";
constexpr std::size_t kExtensionLength = 3;

std::string ExtensionOf(const UnitRecord& unit) {
  return Trim(FirstCharacters(unit.UnitDesignation.Get(), kExtensionLength));
}

}  // namespace

void GraphOutput::MnuSubFile_Click() {
  if (is_at_work_ || !parts_.graph.HasOutput()) {
    return;
  }
  const ScopedFlag at_work(is_at_work_, true);
  const DisabledButton button(parts_.graph, &GraphValues::PbSaveEnabled);
  SaveSubfile();
}

void GraphOutput::MnuASCII_Click() {
  if (is_at_work_ || !parts_.graph.HasOutput()) {
    return;
  }
  const ScopedFlag at_work(is_at_work_, true);
  SaveText();
}

void GraphOutput::MnuData_Click() {
  if (is_at_work_ || !parts_.graph.HasOutput()) {
    return;
  }
  const ScopedFlag at_work(is_at_work_, true);
  CopyText();
}

void GraphOutput::MnuGraph_Click() {
  if (is_at_work_ || !parts_.graph.HasOutput()) {
    return;
  }
  const ScopedFlag at_work(is_at_work_, true);
  const DisabledButton button(parts_.graph, &GraphValues::PbCopyEnabled);
  CopyPicture();
}

void GraphOutput::Warn(const char* title, const std::string& text) {
  parts_.dialogs.Message({text, title, BoxIcon::kWarning});
}

void GraphOutput::TellWritten(const char* title, const std::string& path) {
  TellWhereItWent(parts_.dialogs, parts_.shell, path, title, UserLanguage(parts_.state));
}

bool GraphOutput::HasCurves(const char* title) {
  if (parts_.graph.State().Curves.CurveCount > 0) {
    return true;
  }
  Warn(title, "no colors selected");
  return false;
}

bool GraphOutput::IsStill(const std::string& file) const {
  return parts_.graph.HasOutput() && File() == file;
}

std::string GraphOutput::Target(const FileChoice& choice, const char* title) {
  std::string path = FindPath(choice.FullName).value_or(choice.FullName);
  if (IsOpenInSlot(parts_.state, path)) {
    Warn(title, output_text::kInUse.Text(UserLanguage(parts_.state), {choice.FileName}));
    return "";
  }
  return path;
}

void GraphOutput::SaveText() {
  if (!HasCurves(kAsciiTitle)) {
    return;
  }
  const std::string file = File();
  FileChoice choice;
  choice.Mode = FileMode::kSave;
  choice.Directory = parts_.state.Settings.DefPath;
  choice.FileName = file + ".ASC";
  choice.DefaultExtension = "asc";
  choice.Filter = "ASCII-files  (*.asc)|*.asc";
  parts_.dialogs.FileDialog(choice);
  if (choice.FullName.empty() || !IsStill(file)) {
    return;
  }
  const std::string target = Target(choice, kAsciiTitle);
  if (target.empty() || !WhyNotReplaceable(target).empty()) {
    return;  // a file that cannot be opened ends this without a message
  }
  std::optional<std::string> text;
  std::string problem;
  {
    const OutputPause pause(parts_.state, parts_.graph, parts_.events);
    SampleReader reader(parts_.state.SlotFileNo[Slot()]);
    text = AsciiText(Table(), parts_.regional.DecimalMark(), reader);
    problem = text ? ReplaceFile(target, *text) : "";
  }
  if (!text) {
    Warn(kAsciiTitle, UnreadableText());
  } else if (!problem.empty()) {
    Warn(kAsciiTitle, choice.FileName + "\n" + problem);
  } else {
    TellWritten(kAsciiTitle, target);
  }
}

std::string GraphOutput::UnreadableText() const {
  return output_text::kUnreadable.Text(UserLanguage(parts_.state), {File()});
}

ExportTable GraphOutput::Table() const {
  ExportTable table;
  table.FileName = File();
  table.RecInterval = parts_.state.RecInterval[Slot()];
  table.Channels = Unit().UnitChannels;
  table.FirstRecord = View().RecFirst;
  table.LastRecord = View().RecEnd;
  const CurveList& curves = parts_.graph.State().Curves;
  for (int k = 0; k < curves.CurveCount; ++k) {
    const Curve& curve = curves.At(k);
    table.Columns.push_back({curve.CurveColumn, Unit().UnitInputName[curve.CurveInput]});
  }
  return table;
}

void GraphOutput::CopyText() {
  if (!HasCurves(kClipboardTitle)) {
    return;
  }
  const std::string file = File();
  const int rows = std::max((View().RecEnd - View().RecFirst) / Unit().UnitChannels, 0);
  const int columns = parts_.graph.State().Curves.CurveCount + 1;
  const bool is_wanted = parts_.dialogs.AskOk({"columns · rows = " + std::to_string(columns) +
                                                   " · " + std::to_string(rows) + "\ncontinue ?",
                                               "clipboard:  data", BoxIcon::kQuestion});
  if (!is_wanted || !IsStill(file)) {
    return;
  }
  std::optional<ClipboardFault> fault;
  {
    const OutputPause pause(parts_.state, parts_.graph, parts_.events);
    SampleReader reader(parts_.state.SlotFileNo[Slot()]);
    const auto made = ClipboardText(Table(), parts_.regional.DecimalMark(), reader);
    if (const auto* const text = std::get_if<std::string>(&made)) {
      parts_.clipboard.SetText(*text);
    } else {
      fault = std::get<ClipboardFault>(made);
    }
  }
  if (fault == ClipboardFault::kTooLong) {
    parts_.dialogs.Message({"Too much data", "Clipboard", BoxIcon::kCritical});
  } else if (fault == ClipboardFault::kUnreadable) {
    Warn(kClipboardTitle, UnreadableText());
  }
}

void GraphOutput::CopyPicture() {
  if (!HasCurves(kClipboardTitle)) {
    return;
  }
  const OutputPause pause(parts_.state, parts_.graph, parts_.events);
  parts_.clipboard.SetPicture(
      [this](Surface& to) { DrawReport(Content(), Style(true), kPicture, to); });
}

void GraphOutput::SaveSubfile() {
  const std::string file = File();
  FileChoice choice;
  choice.Mode = FileMode::kSave;
  choice.Title = "Create a Subfile ...";
  choice.Directory = parts_.state.Settings.DefPath;
  choice.FileName = SubfileName(file);
  choice.DefaultExtension = ExtensionOf(Unit());
  choice.Filter = "(S*.*)  all subfiles|S*.*";
  parts_.dialogs.FileDialog(choice);
  if (choice.FullName.empty() || !IsStill(file)) {
    return;
  }
  if (!IsSubfileName(choice.FileName)) {
    Warn(kSubfileTitle, "Filename must start with 'S'");
    return;
  }
  if (HasCurves(kSubfileTitle)) {
    WriteSubfile(choice);
  }
}

// A new subfile is in capitals as all recordings are.
void GraphOutput::WriteSubfile(const FileChoice& choice) {
  std::string target = Target(choice, kWriteSubfileTitle);
  if (target.empty()) {
    return;
  }
  if (!FindFile(StripSeparator(choice.Directory), choice.FileName)) {
    target = JoinPath(choice.Directory, UpperCase(choice.FileName));
  }
  RunState& state = parts_.state;
  std::optional<std::string> bytes;
  std::string problem;
  std::string journal_problem;
  {
    const OutputPause pause(state, parts_.graph, parts_.events);
    UnitRecord& header = state.Unit[kWorkHeader];
    header = SubfileHeader(Unit(), Cut());
    SampleReader reader(state.SlotFileNo[Slot()]);
    bytes = SubfileBytes(Unit(), header, Cut(), reader);
    problem = bytes ? ReplaceFile(target, *bytes) : "";
    if (bytes && problem.empty()) {
      journal_problem = BeginSubfileJournal(target, *bytes, Origin(), state.Settings, parts_.clock);
    }
    state.IndexValid = false;
  }
  if (!bytes) {
    Warn(kWriteSubfileTitle, UnreadableText());
  } else if (!problem.empty()) {
    Warn(kWriteSubfileTitle, problem + "\n" + choice.FileName);
  } else {
    if (!journal_problem.empty()) {
      const Language language = UserLanguage(state);
      Warn(kWriteSubfileTitle,
           output_text::kNoJournal.Text(language,
                                        {choice.FileName, ReasonIn(language, journal_problem)}));
    }
    TellWritten(kSubfileTitle, target);
  }
}

SubfileCut GraphOutput::Cut() const {
  return {View().RecFirst, View().RecEnd, View().XRight - View().XLeft, File()};
}

SubfileOrigin GraphOutput::Origin() const {
  const SubfileCut cut = Cut();
  const int channels = std::max<int>(Unit().UnitChannels, 1);
  return {parts_.state.SlotPath[Slot()], File(), (cut.FirstRecord - kHeaderRecords) / channels,
          (cut.LastRecord - kHeaderRecords) / channels, RecIntervalOf(Unit())};
}

ReportContent GraphOutput::Content() const {
  const GraphState& graph = parts_.graph.State();
  ReportContent content{
      Unit(), graph.Curves, View(), graph.AxisTicks, parts_.state.SlotFileNo[Slot()],
      File(), "",           ""};
  const Language language = UserLanguage(parts_.state);
  if (const auto journal = JournalTextOf(parts_.state.SlotPath[Slot()], File())) {
    content.Ledger = LedgerSummary(parts_.journals.Figures(Slot()), language);
    content.Seal = LastSealText(*journal, language);
  }
  return content;
}

ReportStyle GraphOutput::Style(bool is_colour) const {
  const SettingsValues& settings = parts_.state.Settings;
  return {settings.Plant, settings.PFontName,  static_cast<double>(settings.PFontSize),
          is_colour,      settings.PDrawWidth, parts_.regional.ShortDate(parts_.clock.Now())};
}

}  // namespace tavrel
