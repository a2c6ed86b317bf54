// The index of 10 000 recording files against the bare calls to the system that it cannot do
// without: it must take no more than 1.3 times as long. Files are warm in the system's memory.
#include <benchmark/benchmark.h>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstring>
#include <string>

#include "files/file_index.h"
#include "platform/system_clock.h"
#include "state/unit_record.h"
#include "tests/support/fake_screen.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

constexpr int kFiles = 10000;
constexpr int kFilesOfADay = 26;

std::string NameOf(int number) {
  const int day = number / kFilesOfADay;
  std::array<char, 32> name{};
  std::snprintf(name.data(), name.size(), "M%02d%02d%02d%c.OVN", day / 336, day / 28 % 12 + 1,
                day % 28 + 1, 'A' + number % kFilesOfADay);
  return name.data();
}

// A data directory of some decades; the contents repeat as those of a dozen ovens do.
class DataFiles {
 public:
  DataFiles() {
    UnitRecord unit = DefaultUnitRecord();
    for (int number = 0; number < kFiles; ++number) {
      unit.UnitDesignation.Set("OVN:Tube oven " + std::to_string(number % 12));
      std::string bytes(sizeof unit, '\0');
      std::memcpy(bytes.data(), &unit, sizeof unit);
      directory_.Write(NameOf(number), bytes);
    }
  }
  [[nodiscard]] const std::string& Path() const { return directory_.Path(); }

 private:
  TemporaryDirectory directory_;
};

const DataFiles& Files() {
  static const DataFiles files;
  return files;
}

// The floor: every file is opened, its length asked for, its header read, and it is closed.
void BareScan(benchmark::State& state) {
  const std::string& path = Files().Path();
  for (auto unused : state) {
    DIR* const directory = opendir(path.c_str());
    int files = 0;
    for (const dirent* entry = readdir(directory); entry != nullptr; entry = readdir(directory)) {
      const int handle = openat(dirfd(directory), entry->d_name, O_RDONLY | O_CLOEXEC);
      struct stat status {};
      std::array<char, 1000> bytes;
      if (fstat(handle, &status) == 0 && status.st_size >= 1000 &&
          pread(handle, bytes.data(), bytes.size(), 0) == 1000) {
        ++files;
      }
      close(handle);
    }
    closedir(directory);
    benchmark::DoNotOptimize(files);
  }
}

// The whole index as the dialog gets it: rules, rows, order.
void Index(benchmark::State& state) {
  RunState run_state;
  run_state.Settings.OpenPath = Files().Path();
  run_state.Settings.SortKey = state.range(0) == 0 ? "FD" : "PA";
  run_state.Settings.TypeSel = 4;
  run_state.Settings.ActiveFiles.fill("M991231A.OVN");
  FakeEvents events;
  const SystemClock clock;
  FileIndex index({run_state, events, clock});
  for (auto unused : state) {
    benchmark::DoNotOptimize(index.Build([](int) {}));
  }
  if (index.Rows().size() != kFiles) {
    state.SkipWithError("rows are missing");
  }
}

BENCHMARK(BareScan)->Unit(benchmark::kMillisecond);
BENCHMARK(Index)->ArgName("by_contents")->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tavrel
