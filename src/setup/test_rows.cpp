#include "setup/test_rows.h"

#include <algorithm>

#include "base/text.h"
#include "files/recording_format.h"

namespace tavrel {
namespace {

constexpr std::int16_t kFirstInterval = 10;
constexpr std::int16_t kTopOfAxis = 100;    // whole degrees
constexpr std::int16_t kLengthOfAxis = 60;  // minutes
constexpr int kLastRow = kSlots;

constexpr BothLanguages kControllerName{"Controller", "Regler"};
constexpr BothLanguages kReferenceName{"Reference", "Referenz"};
constexpr BothLanguages kMeasuringName{"Measuring input", "Messeingang"};

constexpr std::string_view kExtensionFault = "extension ?";
constexpr std::string_view kControllerFault = "one input must be defined as controller";
constexpr std::string_view kReferenceFault = "one input must be defined as reference";
constexpr std::string_view kTwiceFault = "one input is defined more than once";
constexpr std::string_view kNothingFault = "nothing to install ?";

std::string_view NameOf(Role role, Language language) {
  switch (role) {
    case Role::kController:
      return kControllerName.In(language);
    case Role::kReference:
      return kReferenceName.In(language);
    default:
      return kMeasuringName.In(language);
  }
}

std::string ExtensionOf(const UnitRecord& unit) {
  return Trim(FirstCharacters(unit.UnitDesignation.Get(), kExtensionCharacters));
}

int CountOf(const UnitRecord& unit, Role role, int inputs) {
  int count = 0;
  for (int input = 1; input <= inputs; ++input) {
    count += RoleOf(unit, input) == role ? 1 : 0;
  }
  return count;
}

using Fault = std::optional<InstallationFault>;

// The fault of the last row of which `is_wrong`, else the one before.
template <typename IsWrong>
Fault LastOf(const TestRows& rows, std::string_view text, const Fault& before, IsWrong is_wrong) {
  Fault fault = before;
  for (int row = 1; row <= kLastRow; ++row) {
    if (rows[row].IsInstalled() && is_wrong(rows[row])) {
      fault = {row, text};
    }
  }
  return fault;
}

bool HasUnfitExtension(const TestRow& row) {
  return !IsExtensionForNewFile(row.Test_Ext);
}

bool HasNoSingleController(const TestRow& row) {
  return CountOf(row.Unit, Role::kController, kControllers) != 1;
}

bool HasNoSingleReference(const TestRow& row) {
  return CountOf(row.Unit, Role::kReference, kInputs) != 1;
}

// Marks the inputs of the test; true if one of them was marked already.
bool TakeInputs(const UnitRecord& unit, ByInput<bool>& taken) {
  bool was_taken = false;
  for (int input = 1; input <= kInputs; ++input) {
    if (unit.IsRecorded(input)) {
      bool& is_taken = taken[input];
      was_taken = was_taken || is_taken;
      is_taken = true;
    }
  }
  return was_taken;
}

// Two tests may share an instrument, but no input of it.
Fault SharedInput(const TestRows& rows, const Fault& before) {
  Fault fault = before;
  for (int inet = 1; inet <= kInets; ++inet) {
    ByInput<bool> taken{};
    for (int row = 1; row <= kLastRow; ++row) {
      if (rows[row].Unit.UnitInet == inet && TakeInputs(rows[row].Unit, taken)) {
        fault = {row, kTwiceFault};
      }
    }
  }
  return fault;
}

bool HoldsAnyTest(const TestRows& rows) {
  bool any = false;
  for (int row = 1; row <= kLastRow; ++row) {
    any = any || rows[row].IsInstalled() || rows[row].IsKept();
  }
  return any;
}

// What a new test does not take over from the one that had the record before.
void ClearRunFields(UnitRecord& unit) {
  unit.UnitRecOn = 0;
  unit.UnitMaxMinutes = 0;
  unit.Unnamed30 = {};
  unit.Unnamed47 = {};
  unit.UnitMarks = 0;
  unit.UnitGraphMode = 0;
  unit.UnitYmin = 0;
  unit.UnitFast = 0;
  unit.UnitProgWait = 0;
  unit.UnitProgStep = 0;
  unit.UnitYmax = kTopOfAxis;
  unit.UnitXmax = kLengthOfAxis;
  unit.UnitView = {7600, 4600, 10000, 10000};
  unit.UnitProgName.Set("");
  unit.UnitOrigin.Set("");
}

void SetDefaults(UnitRecord& unit) {
  unit.UnitInterval = kFirstInterval;
  unit.UnitCtrlState = 0;
  unit.Unnamed24 = {};
  unit.UnitSetpoint = 0;
  unit.UnitUpper = 0;
  unit.UnitLower = 0;
  unit.UnitIncrement = 0;
  unit.UnitFinal = 0;
  unit.UnitEndAction = kEndOnly;
}

}  // namespace

TestRow RowOf(const UnitRecord& unit) {
  TestRow row;
  row.Unit = unit;
  row.Test_Des = unit.ApparatusName();
  row.Test_Ext = ExtensionOf(unit);
  return row;
}

void CollectTexts(TestRow& row) {
  std::string extension = UpperCase(FirstCharacters(Trim(row.Test_Ext), kExtensionCharacters));
  const std::size_t length = ToWindows1252(extension).size();
  extension.append(kExtensionCharacters - std::min<std::size_t>(length, kExtensionCharacters), ' ');
  row.Unit.UnitDesignation.Set(extension + ":" + Trim(row.Test_Des));
}

bool IsOtherTest(const UnitRecord& left, const UnitRecord& right) {
  return left.UnitInet != right.UnitInet || left.UnitRole != right.UnitRole ||
         left.ApparatusName() != right.ApparatusName() ||
         !EqualNoCase(ExtensionOf(left), ExtensionOf(right));
}

std::optional<InstallationFault> FindFault(const TestRows& rows) {
  Fault fault = LastOf(rows, kExtensionFault, std::nullopt, HasUnfitExtension);
  fault = LastOf(rows, kControllerFault, fault, HasNoSingleController);
  fault = LastOf(rows, kReferenceFault, fault, HasNoSingleReference);
  fault = SharedInput(rows, fault);
  return HoldsAnyTest(rows) ? fault : Fault({kLastRow, kNothingFault});
}

void RebuildRecord(UnitRecord& unit, const UnitRecord& row, Language language) {
  if (!IsTavrelHeader(unit)) {
    SetDefaults(unit);
  }
  unit.UnitInet = row.UnitInet;
  unit.UnitChannels = 0;
  std::int16_t index = 1;
  for (int input = 1; input <= kInputs; ++input) {
    const Role role = RoleOf(row, input);
    if (role != Role::kNotUsed) {
      ++unit.UnitChannels;
      ++index;
      unit.UnitColour[input] = index;
      unit.UnitInputName[input].Set(NameOf(role, language));
    }
    unit.UnitRole[input] = row.UnitRole[input];
    unit.UnitInputNote[input].Set("");
  }
  unit.UnitCtrl = static_cast<std::int16_t>(InputWith(row, Role::kController));
  unit.UnitRef = static_cast<std::int16_t>(InputWith(row, Role::kReference));
  ClearRunFields(unit);
}

}  // namespace tavrel
