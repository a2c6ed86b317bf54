#include "state/unit_record.h"

#include <algorithm>

#include "base/text.h"

namespace tavrel {

namespace {

constexpr std::size_t kExtensionAndColon = 4;  // "NEW:" stands before the apparatus name

std::string_view BytesOf(const HeaderText& text) {
  return {text.Bytes.data(), text.Bytes.size()};
}

bool IsWithin(int value, int low, int high) {
  return value >= low && value <= high;
}

}  // namespace

std::string HeaderText::Get() const {
  return FromWindows1252(TrimRight(BytesOf(*this)));
}

void HeaderText::Set(std::string_view utf8) {
  const std::string text = ToWindows1252(utf8);
  const std::size_t length = std::min(text.size(), Bytes.size());
  Bytes.fill(' ');
  std::copy_n(text.begin(), length, Bytes.begin());
}

int UnitRecord::RecordedInputs() const {
  return static_cast<int>(
      std::count_if(UnitRole.begin(), UnitRole.end(), [](std::int16_t role) { return role >= 1; }));
}

std::string UnitRecord::ApparatusName() const {
  return FromWindows1252(Trim(BytesOf(UnitDesignation).substr(kExtensionAndColon)));
}

void UnitRecord::SetApparatusName(std::string_view utf8) {
  // The first four are kept as bytes. In a designation that was never set they are zeros, which
  // must not stand in the middle of a text.
  std::string text(BytesOf(UnitDesignation).substr(0, kExtensionAndColon));
  std::replace(text.begin(), text.end(), '\0', ' ');
  UnitDesignation.Set(FromWindows1252(text) + Trim(utf8));
}

Role RoleOf(const UnitRecord& unit, int input) {
  const int role = unit.UnitRole[input];
  const int highest = static_cast<int>(Role::kMeasuring);
  return role < 1 ? Role::kNotUsed : static_cast<Role>(role < highest ? role : highest);
}

void SetRole(UnitRecord& unit, int input, Role role) {
  unit.UnitRole[input] = static_cast<std::int16_t>(role);
}

int InputWith(const UnitRecord& unit, Role role) {
  const int last = role == Role::kController ? kControllers : kInputs;
  for (int input = 1; input <= last; ++input) {
    if (RoleOf(unit, input) == role) {
      return input;
    }
  }
  return 0;
}

bool IsTavrelHeader(const UnitRecord& unit) {
  return IsWithin(unit.UnitInet, 1, 6) && IsWithin(unit.UnitChannels, 1, kInputs) &&
         IsWithin(unit.UnitCtrl, 1, 4) && IsWithin(unit.UnitRef, 1, kInputs) &&
         IsWithin(unit.UnitInterval, 1, 3600);
}

UnitRecord DefaultUnitRecord() {
  UnitRecord unit{};
  unit.UnitInet = 1;
  unit.UnitChannels = 2;
  unit.UnitCtrl = 1;
  unit.UnitRef = 2;
  SetRole(unit, 1, Role::kController);
  SetRole(unit, 2, Role::kReference);
  unit.UnitColour = {2, 4};
  unit.UnitInterval = 10;
  unit.UnitYmax = 400;
  unit.UnitXmax = 60;
  unit.UnitView = {7600, 4600, 10000, 10000};
  unit.UnitDesignation.Set("NEW: Default");
  unit.UnitInputName[1].Set("controller");
  unit.UnitInputName[2].Set("reference");
  unit.UnitDate.Set("11-11-2001 / 00:00");
  return unit;
}

}  // namespace tavrel
