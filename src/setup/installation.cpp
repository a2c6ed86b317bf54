#include "setup/installation.h"

#include <cmath>

#include "base/text.h"
#include "setup/installation_effect.h"

namespace tavrel {
namespace {

constexpr Colour kControllerColour{0xC0, 0xC0, 0xFF};
constexpr Colour kReferenceColour{0xC0, 0xFF, 0xFF};
constexpr Colour kMeasuringColour{0xC0, 0xFF, 0xC0};
constexpr Colour kNumberColour{0xFF, 0xFF, 0xC0};
constexpr int kMeasuringCode = static_cast<int>(Role::kMeasuring);

constexpr BothLanguages kWaitsNote{
    " this test waits for its file and stays as it is:  ",
    " dieser Versuch wartet auf seine Datei und bleibt, wie er ist:  "};
constexpr BothLanguages kNothingChanges{"nothing changes", "nichts ändert sich"};
constexpr BothLanguages kRefuses{"OK will refuse:  row ", "OK lehnt ab:  Zeile "};
constexpr BothLanguages kNotUsed{"not used", "nicht belegt"};
constexpr BothLanguages kControllerWord{"controller", "Regler"};
constexpr BothLanguages kReferenceWord{"reference", "Referenz"};
constexpr BothLanguages kMeasuringWord{"measuring input", "Messeingang"};
constexpr BothLanguages kNoNumber{"no number", "keine Nummer"};

InstallationCell InputCell(Role role, Language language) {
  switch (role) {
    case Role::kController:
      return {"C", kControllerColour, std::string(kControllerWord.In(language))};
    case Role::kReference:
      return {"R", kReferenceColour, std::string(kReferenceWord.In(language))};
    case Role::kMeasuring:
      return {"M", kMeasuringColour, std::string(kMeasuringWord.In(language))};
    default:
      return {"", {0xFF, 0xFF, 0xFF}, std::string(kNotUsed.In(language))};
  }
}

InstallationCell NumberCell(int number, Language language) {
  if (number < 1) {
    return {"", {0xFF, 0xFF, 0xFF}, std::string(kNoNumber.In(language))};
  }
  return {std::to_string(number), kNumberColour, "Tavrel " + std::to_string(number)};
}

}  // namespace

Installation::Installation(const Parts& parts)
    : ModalScreen(parts.commit.state, View::kTavInst), parts_(parts) {}

void Installation::Open() {
  OpenScreen();
  values_ = InstallationValues();
  for (int row = 1; row <= kSlots; ++row) {
    LoadRow(row);
    ShowRow(row);
  }
}

Language Installation::TipLanguage() const {
  return LanguageOf(State().Settings.HelpLang);
}

// A slot without a file stays an empty row, whatever its record holds. One that waits for its file
// keeps its test: nobody can show it now.
void Installation::LoadRow(int row) {
  const RunState& state = State();
  InstWork[row] = TestRow();
  if (!state.SlotFile[row].empty()) {
    InstWork[row] = RowOf(state.Unit[row]);
  } else {
    InstWork[row].AwaitedFile = state.Settings.ActiveFiles[row - 1];
  }
}

// A file that was waited for may have come meanwhile: its test can be edited like all others.
void Installation::TakeArrived() {
  for (int row = 1; row <= kSlots; ++row) {
    if (InstWork[row].IsKept() && !State().SlotFile[row].empty()) {
      LoadRow(row);
      ShowRow(row);
    }
  }
}

bool Installation::IsEditable(int row) const {
  return IsOpen() && IsSlot(row) && !InstWork[row].IsKept();
}

void Installation::ShowRow(int row) {
  const TestRow& work = InstWork[row];
  const Language language = TipLanguage();
  InstallationRow& shown = values_.Rows[row];
  shown.Test_Des = work.IsKept() ? LowerCase(work.AwaitedFile) : work.Test_Des;
  shown.Test_Ext = work.Test_Ext;
  for (int input = 1; input <= kInputs; ++input) {
    shown.Inputs[input] = InputCell(RoleOf(work.Unit, input), language);
  }
  shown.Number = NumberCell(work.Unit.UnitInet, language);
  shown.IsEditable = !work.IsKept();
  shown.WhyNot =
      work.IsKept() ? std::string(kWaitsNote.In(language)) + LowerCase(work.AwaitedFile) + " " : "";
}

void Installation::Changed() {
  values_.CmdOK = true;
  ShowEffect();
}

void Installation::ShowEffect() {
  if (!values_.CmdOK) {
    return;
  }
  if (const auto fault = FindFault(InstWork)) {
    values_.lbl_Effect = {std::string(kRefuses.In(TipLanguage())) + std::to_string(fault->Row) +
                          ":  " + std::string(fault->Text)};
    return;
  }
  const InstallationEffect effect = EffectOf(State(), InstWork, parts_.is_controller_on);
  values_.lbl_Effect = EffectLines(State(), InstWork, effect, TipLanguage());
  if (values_.lbl_Effect.empty()) {
    values_.lbl_Effect.emplace_back(kNothingChanges.In(TipLanguage()));
  }
}

void Installation::Refresh() {
  if (IsOpen()) {
    TakeArrived();
    ShowEffect();
  }
}

void Installation::Sheet_Click(double x, double y) {
  const double row = std::floor(y) + 1;
  if (!(row >= 1 && row <= kSlots) || !(x >= kInputsLeft)) {
    HidePopup();
    return;
  }
  if (x < kNumberLeft) {
    OfferInput(static_cast<int>(row), static_cast<int>((x - kInputsLeft) / kInputWidth) + 1);
  } else {
    OfferNumber(static_cast<int>(row));
  }
}

void Installation::OfferInput(int row, int input) {
  HidePopup();
  if (IsEditable(row) && IsInput(input)) {
    values_.Popup = InstallationPopup::kInput;
    values_.PopupRow = row;
    values_.PopupInput = input;
    values_.cmd_Input_1 = input <= kControllers;
  }
}

void Installation::OfferNumber(int row) {
  HidePopup();
  if (IsEditable(row)) {
    values_.Popup = InstallationPopup::kNumber;
    values_.PopupRow = row;
  }
}

void Installation::cmd_Input_Click(int index) {
  if (values_.Popup == InstallationPopup::kInput && index >= 0 && index <= kMeasuringCode) {
    PutRole(values_.PopupRow, values_.PopupInput, static_cast<Role>(index));
  }
}

void Installation::cmd_TavNo_Click(int index) {
  if (values_.Popup == InstallationPopup::kNumber) {
    PutNumber(values_.PopupRow, index);
  }
}

void Installation::PutRole(int row, int input, Role role) {
  const bool may_be = role != Role::kController || input <= kControllers;
  if (!IsEditable(row) || !IsInput(input) || !may_be) {
    return;
  }
  SetRole(InstWork[row].Unit, input, role);
  HidePopup();
  ShowRow(row);
  Changed();
}

void Installation::PutNumber(int row, int number) {
  if (!IsEditable(row) || number < 0 || number > kInets) {
    return;
  }
  InstWork[row].Unit.UnitInet = static_cast<std::int16_t>(number);
  HidePopup();
  ShowRow(row);
  Changed();
}

void Installation::Test_GotFocus() {
  HidePopup();
}

void Installation::Test_Des_Change(int row, const std::string& text) {
  if (IsEditable(row)) {
    InstWork[row].Test_Des = FirstCharacters(text, kApparatusCharacters);
    ShowRow(row);
    Changed();
  }
}

void Installation::Test_Ext_Change(int row, const std::string& text) {
  if (IsEditable(row)) {
    InstWork[row].Test_Ext = FirstCharacters(text, kExtensionCharacters);
    ShowRow(row);
    Changed();
  }
}

void Installation::CmdOK_Click() {
  if (!IsOpen() || !values_.CmdOK) {
    return;
  }
  HidePopup();
  TakeArrived();
  for (TestRow& row : InstWork) {
    if (row.IsInstalled()) {
      CollectTexts(row);
    }
  }
  if (!IsRefused() && parts_.dialogs.AskOk({"new installation", "Tavrel", BoxIcon::kQuestion})) {
    Commit();
  }
}

// The user has seen a box that says why.
bool Installation::IsRefused() {
  const std::optional<InstallationFault> fault = FindFault(InstWork);
  if (fault) {
    parts_.dialogs.Message(
        {"error in row" + std::to_string(fault->Row) + ":\n" + std::string(fault->Text),
         "check installation", BoxIcon::kWarning});
  }
  return fault.has_value();
}

void Installation::Commit() {
  parts_.events.SetPointer(Pointer::kHourglass);
  InstallationCommit(parts_.commit).Run(InstWork);
  parts_.events.SetPointer(Pointer::kNormal);
  CloseScreen();
  parts_.commit.messages.ShowKept();
}

void Installation::Escape() {
  if (values_.Popup == InstallationPopup::kNone) {
    Quit();
  } else {
    HidePopup();
  }
}

void Installation::Quit() {
  const Notice question{"Installation has been changed, quit anyway ?", "Installation",
                        BoxIcon::kQuestion};
  HidePopup();
  if (!values_.CmdOK || parts_.dialogs.AskOk(question)) {
    CloseScreen();
  }
}

}  // namespace tavrel
