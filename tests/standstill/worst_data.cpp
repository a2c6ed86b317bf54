#include "tests/standstill/worst_data.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <random>
#include <set>

#include "dialogs/help.h"
#include "state/settings_keys.h"
#include "state/settings_store.h"
#include "state/unit_record.h"

namespace tavrel {
namespace {

constexpr int kRows = 2100;  // of 2133 that a file of 15 inputs can hold
constexpr int kFilesOfADay = 26;
constexpr const char* kData = "tavdat";

std::string NameOf(int number) {
  const int day = number / kFilesOfADay;
  std::array<char, 32> name{};
  std::snprintf(name.data(), name.size(), "M%02d%02d%02d%c.OVN", day / 336 % 100, day / 28 % 12 + 1,
                day % 28 + 1, 'A' + number % kFilesOfADay);
  return name.data();
}

std::string SlotName(int slot) {
  return std::string("M991231") + static_cast<char>('A' + slot) + ".OVN";
}

std::string BytesOf(const UnitRecord& unit) {
  std::string bytes(sizeof unit, '\0');
  std::memcpy(bytes.data(), &unit, sizeof unit);
  return bytes;
}

UnitRecord HeaderOf(int slot) {
  UnitRecord unit = DefaultUnitRecord();
  unit.UnitInet = static_cast<std::int16_t>(1 + (slot - 1) % kInets);
  unit.UnitCtrl = static_cast<std::int16_t>(1 + slot % kControllers);
  unit.UnitRef = 2;
  unit.UnitChannels = kInputs;
  unit.UnitRecOn = 1;
  unit.UnitXmax = kRows;
  unit.UnitYmax = 1000;
  unit.UnitYmin = 0;
  unit.UnitRes = 0;
  for (int input = 1; input <= kInputs; ++input) {
    unit.UnitRole[input] = 1;
    unit.UnitColour[input] = static_cast<std::int16_t>((input - 1) % 14 + 1);
    unit.UnitInputName[input].Set("input " + std::to_string(input));
  }
  unit.UnitDesignation.Set("OVN:Furnace " + std::to_string(slot));
  return unit;
}

}  // namespace

WorstData::WorstData(int files) {
  std::mt19937 random(1);
  for (int word = 0; word < kRows * kInputs; ++word) {
    const auto value = static_cast<std::int16_t>(random() % 20000);
    noise_.append(reinterpret_cast<const char*>(&value), sizeof value);
  }
  SettingsValues settings;
  settings.HelpLang = "English";
  settings.Plant = "plant";
  settings.CommPort = "COM5";
  settings.ComMode = 1;
  settings.TypeSel = 4;
  settings.DefPath = File(kData);
  settings.OpenPath = settings.DefPath;
  settings.DestPath = File("archive");
  settings.ProgPath = Home();
  settings.PFontName = "DejaVu Sans";
  settings.PFontSize = 11;
  settings.PDrawWidth = 2;
  settings.SortKey = "FD";
  for (int slot = 1; slot <= kSlots; ++slot) {
    settings.ActiveFiles.at(static_cast<std::size_t>(slot - 1)) = SlotName(slot);
  }
  settings_ = KeyFileBytes(settings);
  std::filesystem::create_directory(File(kData));
  std::filesystem::create_directory(File("archive"));
  MakeOldRecordings(files);
}

// A few files under many names: what a directory costs is its entries.
void WorstData::MakeOldRecordings(int files) const {
  const std::string header = BytesOf(HeaderOf(1));
  for (int number = 0; number < files; ++number) {
    const std::string path = File(kData) + "/" + NameOf(number);
    const std::string former = File(kData) + "/" + NameOf(number - number % 1000);
    if (path == former) {
      directory_.Write(std::string(kData) + "/" + NameOf(number), header);
    } else {
      std::filesystem::create_hard_link(former, path);
    }
  }
}

void WorstData::Restore() const {
  for (const auto& entry : std::filesystem::directory_iterator(File(""))) {
    if (!entry.is_directory()) {
      std::filesystem::remove(entry.path());
    }
  }
  std::filesystem::remove_all(File("archive"));
  std::filesystem::create_directory(File("archive"));
  directory_.Write(kGermanManual, "manual");
  directory_.Write(kSettingsFile, settings_);
  for (int slot = 1; slot <= kSlots; ++slot) {
    const std::string path = File(kData) + "/" + SlotName(slot);
    std::filesystem::remove(path);
    directory_.Write(std::string(kData) + "/" + SlotName(slot), BytesOf(HeaderOf(slot)) + noise_);
  }
}

}  // namespace tavrel
