#include "setup/numbering.h"

#include <algorithm>

#include "base/element.h"
#include "files/buffers_last.h"
#include "link/registers.h"
#include "setup/setup_texts.h"
#include "state/user_language.h"

namespace tavrel {
namespace {

constexpr const char* kNumberAddress = "8000";  // in memory, holds the number less 1
constexpr int kMostMisses = 6;
constexpr int kSilencesToBelieve = 3;
constexpr std::chrono::seconds kReopenInterval{10};

constexpr BothLanguages kSearching{"looking for instruments ...", "Geräte werden gesucht ..."};
constexpr BothLanguages kAssigning{"assigning the number ...", "Nummer wird zugewiesen ..."};
constexpr BothLanguages kUnsure{
    "not acknowledged: looking which number answers ...",
    "nicht bestätigt: es wird nachgesehen, welche Nummer antwortet ..."};
constexpr BothLanguages kDirectNote{
    "direct line:  numbering needs the plug-in line or a single instrument",
    "direkte Leitung:  Nummern brauchen die Plug-in-Leitung oder ein einzelnes Gerät"};
constexpr BothLanguages kSimulatedNote{"Tavrel is simulated:  there is no number to assign",
                                       "Tavrel wird simuliert:  keine Nummer zuzuweisen"};

}  // namespace

Numbering::Numbering(const Parts& parts) : ModalScreen(parts.state, View::kTavNum), parts_(parts) {}

void Numbering::Open() {
  OpenScreen();
  values_ = NumberingValues();
  num_step_ = NumStep::kScan;
  num_target_ = std::max(parts_.state.ActiveInet, 1);
  num_misses_ = 0;
  scanned_ = 0;
  was_sent_ = false;
  ShowState();
  ShowBuffer();
}

Language Numbering::TipLanguage() const {
  return LanguageOf(parts_.state.Settings.HelpLang);
}

bool Numbering::IsDirectLine() const {
  return parts_.link.Mode().LinkDirect && !parts_.link.Simulated;
}

int Numbering::SelectedInet() const {
  const int* inet = ElementAt(values_.cboTavNo, values_.Selected);
  return inet != nullptr ? *inet : 0;
}

// Does anything answer to that number? On a direct line memory has no address, and every number
// would seem to answer; a register has one.
LinkResult Numbering::Probe(int inet) {
  return IsDirectLine() ? Read(parts_.link, Register{inet, reg::kKind, 0}).status
                        : Read(parts_.link, MemoryPlace{inet, kNumberAddress}).status;
}

void Numbering::Step() {
  if (!IsOpen()) {
    return;
  }
  if (!parts_.link.PortOpen) {
    ReopenPort();
  } else if (num_step_ == NumStep::kScan) {
    Scan();
  } else if (num_step_ == NumStep::kWatch) {
    WatchLink(Probe(SelectedInet()));
  } else {
    Assign();
  }
  ShowState();
  ShowBuffer();
}

// The rest of the cycle, which would do it, does not run now.
void Numbering::ReopenPort() {
  values_.ComIcon = true;
  if (parts_.clock.Elapsed() >= reopen_at_) {
    reopen_at_ = parts_.clock.Elapsed() + kReopenInterval;
    parts_.link.ReopenIfLost();
  }
}

// The list and the buttons change at once when the last number has been asked.
void Numbering::Scan() {
  ++scanned_;
  const LinkResult result = Probe(scanned_);
  found_[scanned_] = tavrel::IsGood(result);
  if (scanned_ < kInets) {
    return;
  }
  scanned_ = 0;
  num_misses_ = kMostMisses + 1;
  TakeScan();
  WatchLink(result);
}

// On a direct line a number is written without an address: only an instrument that is alone takes
// what is meant for it.
void Numbering::TakeScan() {
  values_.cboTavNo.clear();
  values_.Selected = -1;
  for (int inet = 1; inet <= kInets; ++inet) {
    const bool is_found = found_[inet];
    values_.cmd_TavNo[inet] = !is_found;
    if (is_found) {
      values_.Selected =
          inet == num_target_ ? static_cast<int>(values_.cboTavNo.size()) : values_.Selected;
      values_.cboTavNo.push_back(inet);
    }
  }
  if (IsDirectLine() && values_.cboTavNo.size() > 1) {
    values_.cmd_TavNo.Fill(false);
  }
  if (!values_.cboTavNo.empty()) {
    values_.Selected = std::max(values_.Selected, 0);
    num_step_ = NumStep::kWatch;
  }
}

void Numbering::cboTavNo_Click(int line) {
  if (values_.IsListEnabled && line >= 0 && line < static_cast<int>(values_.cboTavNo.size())) {
    values_.Selected = line;
  }
}

void Numbering::cmd_TavNo_Click(int number) {
  const bool exists = number >= 1 && number <= kInets;
  if (!IsOpen() || num_step_ != NumStep::kWatch || !exists || !values_.cmd_TavNo[number]) {
    return;
  }
  const int from = SelectedInet();
  if (!MayAssign(from, number) || !IsOpen() || num_step_ != NumStep::kWatch) {
    return;
  }
  from_inet_ = from;
  num_target_ = number;
  num_step_ = NumStep::kAssign;
  was_sent_ = false;
  GoOnWith(Assignment::kWrite);
  ShowState();
}

// The records of the tests keep their numbers: an installed test would be without its instrument,
// or get another one.
bool Numbering::MayAssign(int from, int to) {
  const RunState& state = parts_.state;
  const Language language = UserLanguage(state);
  std::string tests;
  for (int slot = 1; slot <= kSlots; ++slot) {
    const UnitRecord& unit = state.Unit[slot];
    if (!state.SlotFile[slot].empty() && (unit.UnitInet == from || unit.UnitInet == to)) {
      tests += setup_text::kTestLine.Text(
          language, {std::to_string(slot), unit.ApparatusName(), std::to_string(unit.UnitInet)});
    }
  }
  return tests.empty() ||
         parts_.dialogs.AskOk({setup_text::kBecomes.Text(
                                   language, {std::to_string(from), std::to_string(to), tests}),
                               kNumberingCaption + 1, BoxIcon::kQuestion, true});
}

void Numbering::Assign() {
  switch (phase_) {
    case Assignment::kWrite:
      WriteNumber();
      return;
    case Assignment::kLookForNew:
      LookForNew();
      return;
    case Assignment::kLookForOld:
      LookForOld();
      return;
  }
}

void Numbering::GoOnWith(Assignment phase) {
  phase_ = phase;
  silences_ = 0;
}

// On a direct line nobody has seen an acknowledge.
void Numbering::WriteNumber() {
  const auto word = static_cast<std::int16_t>(num_target_ - 1);
  was_sent_ = true;
  const LinkResult result = Write(parts_.link, MemoryPlace{from_inet_, kNumberAddress}, word);
  WatchLink(result);
  if (tavrel::IsGood(result) && !IsDirectLine()) {
    Assigned();
  } else {
    GoOnWith(Assignment::kLookForNew);
  }
}

// One silence may be a lost reply. An answer that cannot be read counts neither as an answer nor as
// a silence.
void Numbering::LookForNew() {
  const LinkResult result = Probe(num_target_);
  WatchLink(result);
  if (tavrel::IsGood(result)) {
    Assigned();
    return;
  }
  silences_ += result == LinkResult::kTimeOut ? 1 : 0;
  if (silences_ >= kSilencesToBelieve) {
    GoOnWith(Assignment::kLookForOld);
  }
}

void Numbering::LookForOld() {
  const LinkResult result = Probe(from_inet_);
  WatchLink(result);
  if (tavrel::IsGood(result)) {
    GoOnWith(Assignment::kWrite);
    return;
  }
  silences_ += result == LinkResult::kTimeOut ? 1 : 0;
  if (silences_ >= kSilencesToBelieve) {
    GoOnWith(Assignment::kLookForNew);
  }
}

// The scan that follows finds the instrument under its new number.
void Numbering::Assigned() {
  parts_.engine.Orders().Renumber(from_inet_, num_target_);
  parts_.renumbered(from_inet_, num_target_);
  num_step_ = NumStep::kScan;
  num_misses_ = 0;
  was_sent_ = false;
}

// Good answers show that there is a connection, but do not clear the count.
void Numbering::WatchLink(LinkResult result) {
  values_.ComIcon = false;
  if (result != LinkResult::kTimeOut) {
    return;
  }
  ++num_misses_;
  if (num_misses_ > kMostMisses) {
    num_misses_ = kMostMisses;
    values_.ComIcon = true;
  }
}

void Numbering::ShowState() {
  const Language language = TipLanguage();
  values_.IsListEnabled = num_step_ == NumStep::kWatch;
  values_.lbl_State.clear();
  if (num_step_ == NumStep::kScan) {
    values_.lbl_State = kSearching.In(language);
  } else if (num_step_ == NumStep::kAssign) {
    values_.lbl_State = (was_sent_ ? kUnsure : kAssigning).In(language);
  }
  values_.lbl_Note.clear();
  if (parts_.link.Simulated) {
    values_.lbl_Note = kSimulatedNote.In(language);
  } else if (IsDirectLine()) {
    values_.lbl_Note = kDirectNote.In(language);
  }
}

void Numbering::ShowBuffer() {
  values_.lbl_Buffer = BuffersLastText(parts_.engine, TipLanguage());
}

void Numbering::Quit() {
  CloseScreen();
  if (num_step_ == NumStep::kAssign && was_sent_) {
    parts_.dialogs.Message(
        {setup_text::kNumberUnsure.Text(UserLanguage(parts_.state),
                                        {std::to_string(from_inet_), std::to_string(num_target_)}),
         kNumberingCaption + 1});
  }
}

}  // namespace tavrel
