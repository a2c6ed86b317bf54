#include "main/main_sheet.h"

#include <array>
#include <cmath>
#include <filesystem>

#include "base/number.h"
#include "base/text.h"
#include "base/units.h"
#include "files/buffers_last.h"
#include "files/ledger_text.h"
#include "files/recording_format.h"
#include "files/simulated_rows.h"
#include "link/register_access.h"
#include "link/registers.h"
#include "state/header_edit.h"
#include "state/open_slots.h"
#include "state/state_words.h"

namespace tavrel {
namespace {

constexpr std::size_t kFileCharacters = 12;  // "M011111A.NEW"

constexpr BothLanguages kInSimulation{"   (simulated)", "   (simuliert)"};

constexpr BothLanguages kWriteFailedNote{
    " the last set could not be written, it is kept and tried again ",
    " der letzte Satz konnte nicht geschrieben werden, er wird behalten und neu versucht "};

constexpr BothLanguages kNotOpenNote{
    " the file cannot be opened, it is tried again every ten seconds ",
    " die Datei kann nicht geöffnet werden, alle zehn Sekunden wird es neu versucht "};

constexpr BothLanguages kStandsStillNote{
    " stands still: simulated values are not written behind rows of an instrument   (Settings, OK "
    "asks again) ",
    " steht still: simulierte Werte werden nicht hinter Zeilen eines Gerätes geschrieben   "
    "(Settings, OK fragt erneut) "};

struct Status {
  std::string_view word;
  Colour colour;
};

// The controller is to be off, and nobody knows whether it is: that comes before what it was read
// to do.
constexpr Status kStopWaits{"off ?", kOrange};
constexpr BothLanguages kStopWaitsNote{
    " the end of the recording switches the controller off, Tavrel has not acknowledged it yet; it "
    "is tried again ",
    " das Ende der Aufzeichnung schaltet den Regler aus, Tavrel hat es noch nicht bestätigt; es "
    "wird neu versucht "};

Status ControllerStatus(std::int16_t state) {
  switch (state) {
    case kNoData:
    case controller::kUnknown:
      return {"", kGrey};
    case controller::kOff:
      return {controller::WordOf(state), kGrey};
    case controller::kIsotherm:
    case controller::kDynamic:
    case controller::kDynamicFalling:
      return {controller::WordOf(state), kGreen};
    case controller::kFail:
    case controller::kTest:
      return {controller::WordOf(state), kOrange};
    default:
      return {"?", kOrange};
  }
}

// What keeps a recording from its file.
enum class Hindrance { kNone, kWriteFailed, kSimulation };

// A set that cannot be written comes first: it is the only state in which the user has to do
// something.
Status RecordingStatus(int rec_on, bool is_full, Hindrance hindrance, Language language) {
  if (hindrance == Hindrance::kWriteFailed) {
    return {state_word::kFile.In(language), kOrange};
  }
  if (hindrance == Hindrance::kSimulation) {
    return {state_word::kSimulation.In(language), kOrange};
  }
  switch (rec_on) {
    case 0:
      return is_full ? Status{"end", kYellow} : Status{"off", kGrey};
    case 1:
      return {"on", kGreen};
    default:
      return {"", kGrey};
  }
}

// One number for all that the recording cell depends on, to see when it changes.
int RecordingState(int rec_on, bool is_full, Hindrance hindrance) {
  return rec_on * 8 + (is_full ? 4 : 0) + static_cast<int>(hindrance);
}

std::string NoteOf(Hindrance hindrance, Language language) {
  switch (hindrance) {
    case Hindrance::kWriteFailed:
      return std::string(kWriteFailedNote.In(language));
    case Hindrance::kSimulation:
      return std::string(kStandsStillNote.In(language));
    case Hindrance::kNone:
      break;
  }
  return "";
}

// " 2134 sets, 3 lost on 14.03. at 02:10 "; empty while nothing is known to be missing.
std::string MissingNote(const LedgerFigures& figures, Language language) {
  const bool is_whole = figures.Lost.IsNone() && figures.Filled + figures.Questioned == 0;
  return is_whole || !figures.IsKnown ? "" : " " + LedgerSummary(figures, language) + " ";
}

std::string Degrees(int raw) {
  return raw == kNoData ? std::string() : FormatMask(raw * kDegreesPerStep, "#####0.0");
}

std::string ShownFileName(const std::string& slot_file) {
  return LowerCase(FirstCharacters(slot_file, kFileCharacters));
}

std::string ShownHours(std::int32_t sample_count, std::int32_t rec_interval) {
  return FormatMask(RecordedHours(sample_count, rec_interval), "####0.00");
}

// Seconds until then; empty if that is past or farther away than the tick that tries a lost port.
std::optional<int> SecondsUntil(const Deadline& deadline, const Clock& clock) {
  constexpr double kTick = 0.05;  // a deadline in single precision is that exact
  const double seconds = std::ceil(static_cast<double>(deadline.At) - clock.Timer() - kTick);
  const bool is_ahead = seconds >= 0 && seconds <= static_cast<double>(kWakeSeconds);
  return is_ahead ? std::optional(static_cast<int>(seconds)) : std::nullopt;
}

}  // namespace

void MainSheet::SetCaptionAndTips() {
  const Language language = LanguageOf(parts_.state.Settings.HelpLang);
  if (language != values_.TipLanguage) {
    parts_.state.SheetReset = false;  // the words of the cells come anew
  }
  values_.TipLanguage = language;
  values_.Caption = " TAVREL  6.1";
  if (parts_.link.Simulated) {
    values_.Caption += kInSimulation.In(values_.TipLanguage);
  }
}

void MainSheet::ShowPanel() {
  values_.picActual = true;
  values_.cmd_OpenEnabled = parts_.screens.Has(View::kAllOpen);
}

void MainSheet::ShowRow(int slot) {
  SheetRow& row = Row(slot);
  row = SheetRow();
  row.Sheet = true;
  row.tx_Des = parts_.state.Unit[slot].ApparatusName();
  row.tx_DesEnabled = true;
  row.cmd_WorkEnabled = parts_.screens.Has(View::kTavWork);
  parts_.state.SheetReset = false;
}

void MainSheet::HideRow(int slot) {
  Row(slot) = SheetRow();
  parts_.state.SheetReset = false;
}

void MainSheet::ShowWaitingRow(int slot) {
  SheetRow& row = Row(slot);
  row = SheetRow();
  row.Sheet = true;
  row.lb_File = ShownFileName(parts_.state.Settings.ActiveFiles.at(slot - 1));
  row.lb_Rstat = state_word::kFile.In(values_.TipLanguage);
  row.sh_Rstat = kOrange;
  row.RstatNote = kNotOpenNote.In(values_.TipLanguage);
}

bool MainSheet::IsControllerOn(int slot) const {
  switch (shown_[slot].ctrl_state) {
    case controller::kIsotherm:
    case controller::kDynamic:
    case controller::kDynamicFalling:
    case controller::kTest:
      return true;
    default:
      return false;
  }
}

void MainSheet::RefreshRow() {
  RunState& state = parts_.state;
  if (!state.SheetReset) {
    state.SheetReset = true;
    shown_ = {};
  }
  if (state.SheetSlot < 1 || state.SheetSlot > kSlots) {
    BeginPass();
  }
  do {
    ++state.SheetSlot;
  } while (state.SheetSlot < kSlots && state.SlotFile[state.SheetSlot].empty());
  if (!state.SlotFile[state.SheetSlot].empty()) {
    RefreshSlot(state.SheetSlot);
  }
  if (state.SheetSlot == kSlots) {
    EndPass();
  }
}

// The cells empty with what is remembered of them: an instrument that does not answer any more
// gives nothing new that would take the place of its old values.
void MainSheet::EmptyCells(int slot) {
  SheetRow& row = Row(slot);
  for (std::string* cell : {&row.lb_Rec, &row.lb_Rstat, &row.RstatNote, &row.lb_Ref, &row.lb_Ctrl,
                            &row.lb_Cstat, &row.CstatNote}) {
    cell->clear();
  }
  row.sh_Rstat = row.sh_Cstat = kGrey;
}

void MainSheet::BeginPass() {
  parts_.state.SheetSlot = 0;
  values_.Indicator = true;
}

void MainSheet::EndPass() {
  parts_.state.SheetSlot = 0;
  parts_.state.TickRefresh.SetIn(kRefreshSeconds, parts_.clock);
  parts_.events.SetPointer(Pointer::kNormal);
  values_.Indicator = false;
}

// A silent instrument costs one exchange: the reference fails first and the rest is skipped.
void MainSheet::RefreshSlot(int slot) {
  const UnitRecord& unit = parts_.state.Unit[slot];
  SheetRow& row = Row(slot);
  ShownRaw& shown = Shown(slot);

  if (shown.com_status == kNothingShown) {
    EmptyCells(slot);
  }
  const std::int16_t reference = ReadWord(unit.UnitInet, reg::kPresentValue, unit.UnitRef);
  RefreshStatus(slot);
  if (reference != shown.reference) {
    shown.reference = reference;
    row.lb_Ref = Degrees(reference);
  }
  const std::int16_t ctrl = ReadIfGood(unit.UnitInet, reg::kPresentValue, unit.UnitCtrl);
  if (ctrl != shown.ctrl) {
    shown.ctrl = ctrl;
    row.lb_Ctrl = Degrees(ctrl);
  }
  RefreshController(slot);
  RefreshFile(slot);
  RefreshRecording(slot);
}

void MainSheet::RefreshController(int slot) {
  const UnitRecord& unit = parts_.state.Unit[slot];
  const std::int16_t ctrl_state = ReadIfGood(unit.UnitInet, reg::kControllerState, unit.UnitCtrl);
  const bool waits_for_stop = parts_.engine.Orders().IsWaiting(unit.UnitInet, unit.UnitCtrl);
  ShownRaw& shown = Shown(slot);
  if (ctrl_state == shown.ctrl_state && waits_for_stop == shown.waits_for_stop) {
    return;
  }
  shown.ctrl_state = ctrl_state;
  shown.waits_for_stop = waits_for_stop;
  const Status status = waits_for_stop ? kStopWaits : ControllerStatus(ctrl_state);
  SheetRow& row = Row(slot);
  row.lb_Cstat = status.word;
  row.sh_Cstat = status.colour;
  row.CstatNote = waits_for_stop ? kStopWaitsNote.In(values_.TipLanguage) : "";
}

std::int16_t MainSheet::ReadWord(int inet, const char* letter, int index) {
  return Read(parts_.link, Register{inet, letter, index}).WordOr(kNoData);
}

// An instrument that has not answered is asked nothing more.
std::int16_t MainSheet::ReadIfGood(int inet, const char* letter, int index) {
  return parts_.link.IsGood(inet) ? ReadWord(inet, letter, index) : kNoData;
}

void MainSheet::RefreshStatus(int slot) {
  RunState& state = parts_.state;
  const std::int16_t inet = state.Unit[slot].UnitInet;
  const int com_status = static_cast<int>(parts_.link.ComStatus(inet));
  ShownRaw& shown = Shown(slot);
  if (com_status == shown.com_status) {
    return;
  }
  shown.com_status = com_status;
  if (state.ActiveInet == 0) {
    state.ActiveInet = inet;
  }
  SheetRow& row = Row(slot);
  row.lb_TavNo = std::to_string(inet);
  row.imgTavSel = inet == state.ActiveInet;
  row.sh_TavNo = parts_.link.IsGood(inet) ? kYellow : kOrange;
}

void MainSheet::RefreshFile(int slot) {
  const std::string file = ShownFileName(parts_.state.SlotFile[slot]);
  if (file != Shown(slot).file) {
    Shown(slot).file = file;
    Row(slot).lb_File = file;
  }
}

void MainSheet::RefreshRecording(int slot) {
  const RunState& state = parts_.state;
  const int rec_on = state.Unit[slot].UnitRecOn;
  const bool is_full = state.SampleCount[slot] >= state.SampleLimit[slot];
  Hindrance hindrance = Hindrance::kNone;
  if (state.WriteFailed[slot]) {
    hindrance = Hindrance::kWriteFailed;
  } else if (StandsStillInSimulation(state, parts_.link, slot)) {
    hindrance = Hindrance::kSimulation;
  }
  ShownRaw& shown = Shown(slot);
  SheetRow& row = Row(slot);

  const int rec_state = RecordingState(rec_on, is_full, hindrance);
  if (rec_state != shown.rec_state || state.SampleCount[slot] != shown.sample_count) {
    shown.rec_state = rec_state;
    const Status status = RecordingStatus(rec_on, is_full, hindrance, values_.TipLanguage);
    const std::string missing =
        MissingNote(parts_.files.Journals().Figures(slot), values_.TipLanguage);
    const bool is_marked = hindrance == Hindrance::kNone && !missing.empty();
    row.lb_Rstat = is_marked ? std::string(status.word) + " !" : status.word;
    row.sh_Rstat = status.colour;
    row.RstatNote = is_marked ? missing : NoteOf(hindrance, values_.TipLanguage);
  }
  if (state.SampleCount[slot] != shown.sample_count) {
    shown.sample_count = state.SampleCount[slot];
    row.lb_Rec = ShownHours(shown.sample_count, state.RecInterval[slot]);
  }
}

LineState MainSheet::StateOfLine() const {
  const Link& link = parts_.link;
  LineState line;
  line.Simulated = link.Simulated;
  line.PortOpen = link.PortOpen;
  line.Port = link.PortName();
  line.Device = link.Device();
  line.Speed = link.Mode().PortSettings.substr(0, link.Mode().PortSettings.find(','));
  line.Answered = link.AnsweredInLastMinute();
  line.GoneSince = link.LostSince();
  line.SilentSince = link.SilentSince();
  line.NextTry = SecondsUntil(parts_.state.TickTen, parts_.clock);
  line.Buffers = BuffersLastText(parts_.engine, values_.TipLanguage);
  return line;
}

void MainSheet::RefreshState() {
  values_.lbl_State = LineStateText(StateOfLine(), parts_.clock.Now(), values_.TipLanguage);
  for (int slot = 1; slot <= kSlots; ++slot) {
    const std::string lasts = SilentBufferText(parts_.engine, slot, values_.TipLanguage);
    Row(slot).TavNoNote = lasts.empty() || !Row(slot).Sheet ? "" : " " + lasts + " ";
  }
}

void MainSheet::RefreshNow() {
  parts_.state.SheetSlot = 0;
  parts_.state.TickRefresh.MakeDue();
}

void MainSheet::RefreshInfo() {
  values_.lbl_Info = parts_.state.lbl_Info;
}

void MainSheet::lb_TavNo_Click(int slot) {
  RunState& state = parts_.state;
  if (!IsSlot(slot) || state.SlotFile[slot].empty()) {
    return;
  }
  const std::int16_t inet = state.Unit[slot].UnitInet;
  if (inet == state.ActiveInet) {
    return;
  }
  state.ActiveInet = inet;
  for (int other = 1; other <= kSlots; ++other) {
    Row(other).imgTavSel = !state.SlotFile[other].empty() && state.Unit[other].UnitInet == inet;
  }
}

void MainSheet::tx_Des_Change(int slot, const std::string& text) {
  RunState& state = parts_.state;
  EditHeader(state, slot, [&](UnitRecord& unit) { unit.SetApparatusName(text); });
  Row(slot).tx_Des = text;
  if (slot == kViewedFile) {
    Row(OwnerOfViewedFile(state)).tx_Des = text;
    state.IndexValid = false;
  }
  if (slot == state.SelSlot) {
    state.ForgetShownSlot();
  }
}

void MainSheet::cmd_Work_Click(int slot) {
  RunState& state = parts_.state;
  if (state.SelSlot != slot) {
    state.SelSlot = slot;
    state.ForgetShownSlot();
  }
  parts_.events.SetPointer(Pointer::kHourglass);
  state.TickRefresh.MakeDue();
  parts_.screens.Show(View::kTavWork);
  state.TickRefresh.MakeDue();
  state.SheetSlot = 0;
}

void MainSheet::cmd_Open_Click() {
  RunState& state = parts_.state;
  SaveViewedFile();
  state.PendingFile = state.Settings.OpenFile;
  parts_.screens.Show(View::kAllOpen);
  if (!state.Settings.OpenFile.empty()) {
    OpenViewedFile();
  }
}

// A header that was edited would be lost with the change of the file.
void MainSheet::SaveViewedFile() {
  const RunState& state = parts_.state;
  if (state.SlotFile[kViewedFile].empty() || !state.SlotDirty[kViewedFile]) {
    return;
  }
  parts_.files.WriteHeader(kViewedFile);
  if (state.SlotFile[kViewedFile].empty()) {
    HideRow(kViewedFile);
  }
}

bool MainSheet::MayShowFile() const {
  return parts_.state.ActiveView == View::kMainSheet && values_.cmd_OpenEnabled;
}

void MainSheet::ShowFile(const std::string& path) {
  const int slot = SlotOfFile(parts_.state, path);
  if (slot != kViewedFile) {
    cmd_Work_Click(slot);
    return;
  }
  SaveViewedFile();
  parts_.files.CloseRecordingFile(kViewedFile);
  const std::filesystem::path file(path);
  TakeChoice(file.parent_path().string(), file.filename().string());
  if (parts_.files.RefuseWhatIsNone(kViewedFile)) {
    HideRow(kViewedFile);
    return;
  }
  OpenViewedFile();
}

// As the choice of a file leaves it.
void MainSheet::TakeChoice(const std::string& directory, const std::string& name) {
  RunState& state = parts_.state;
  state.SettingsChanged = true;
  state.Settings.OpenFile = name;
  state.Settings.OpenPath = directory;
  state.SlotFile[kViewedFile] = name;
  state.SlotPath[kViewedFile] = directory;
}

void MainSheet::OpenViewedFile() {
  RunState& state = parts_.state;
  parts_.files.CloseRecordingFile(kViewedFile);
  state.SlotFile[kViewedFile] = state.Settings.OpenFile;
  state.SlotPath[kViewedFile] = state.Settings.OpenPath;
  parts_.files.OpenRecordingFile(kViewedFile);
  if (state.SlotFile[kViewedFile].empty()) {
    HideRow(kViewedFile);
    return;
  }
  state.SelSlot = kViewedFile;
  state.ForgetShownSlot();
  ShowViewedFile();
  if (Row(kViewedFile).cmd_WorkEnabled) {
    cmd_Work_Click(kViewedFile);
  }
}

// No pass refreshes row 0: it is filled once.
void MainSheet::ShowViewedFile() {
  const RunState& state = parts_.state;
  ShowRow(kViewedFile);
  SheetRow& row = Row(kViewedFile);
  row.lb_TavNo = std::to_string(state.Unit[kViewedFile].UnitInet);
  row.lb_File = ShownFileName(state.SlotFile[kViewedFile]);
  row.lb_Rec = ShownHours(state.SampleCount[kViewedFile], state.RecInterval[kViewedFile]);
}

void MainSheet::LeaveFront() {
  RunState& state = parts_.state;
  if (state.BacklogCount > 0) {
    state.BacklogCount = 0;
    state.lbl_Info.clear();
  }
}

}  // namespace tavrel
