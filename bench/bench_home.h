#ifndef TAVREL_BENCH_BENCH_HOME_H_
#define TAVREL_BENCH_BENCH_HOME_H_

#include <cstring>
#include <filesystem>
#include <string>

#include "files/recording_format.h"
#include "state/settings_keys.h"
#include "state/settings_store.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {

// What the twelve recordings of a bench are like.
struct BenchSlots {
  int channels = 2;
  int rows = 0;
  bool is_on = false;  // the recordings run
};

// A directory with settings and twelve recording files, two to each of the six instruments.
class BenchHome {
 public:
  BenchHome(const std::string& comm_port, const BenchSlots& recordings) {
    std::filesystem::create_directory(directory_.File("tavdat"));
    SettingsValues settings;
    settings.HelpLang = "English";
    settings.CommPort = comm_port;
    settings.DefPath = directory_.File("tavdat");
    for (int slot = 1; slot <= kSlots; ++slot) {
      const std::string name = NameOf(slot);
      directory_.Write("tavdat/" + name, FileOf(slot, recordings));
      settings.ActiveFiles.at(static_cast<std::size_t>(slot - 1)) = name;
    }
    directory_.Write(kSettingsFile, KeyFileBytes(settings));
  }

  [[nodiscard]] const std::string& Path() const { return directory_.Path(); }
  [[nodiscard]] std::string File(const std::string& name) const { return directory_.File(name); }

  static std::string NameOf(int slot) {
    return std::string("M260314") + static_cast<char>('A' + slot - 1) + ".OVE";
  }

 private:
  static std::string FileOf(int slot, const BenchSlots& recordings) {
    UnitRecord unit = DefaultUnitRecord();
    unit.UnitInet = static_cast<std::int16_t>((slot - 1) / 2 + 1);
    unit.UnitCtrl = static_cast<std::int16_t>((slot - 1) % 2 + 1);
    unit.UnitChannels = static_cast<std::int16_t>(recordings.channels);
    unit.UnitRecOn = recordings.is_on ? 1 : 0;
    unit.UnitRole.Fill(0);
    std::fill_n(unit.UnitRole.begin(), recordings.channels, std::int16_t{1});
    unit.UnitDesignation.Set("OVE:Oven " + std::to_string(slot));
    const std::size_t words =
        static_cast<std::size_t>(recordings.channels) * static_cast<std::size_t>(recordings.rows);
    std::string bytes(sizeof unit + words * kWordBytes, '\1');
    std::memcpy(bytes.data(), &unit, sizeof unit);
    return bytes;
  }

  TemporaryDirectory directory_;
};

}  // namespace tavrel

#endif  // TAVREL_BENCH_BENCH_HOME_H_
