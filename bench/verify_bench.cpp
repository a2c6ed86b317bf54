// A directory of 10 000 recordings with their journals, verified as tavrel-file does it, beside
// what it cannot do without: both files read and the hash of the recording's bytes. Files are warm
// in the system's memory.
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "bench/promise.h"
#include "command/file_command.h"
#include "files/recording_file.h"
#include "platform/file_system.h"
#include "platform/sha256.h"
#include "state/messages.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_screen.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

constexpr int kFiles = 10000;
constexpr int kSlot = 1;
constexpr int kChannels = 3;
constexpr int kRowsOfAFile = 60;
constexpr std::size_t kLongest = 1U << 20U;

std::string NameOf(int number) {
  std::array<char, 32> name{};
  std::snprintf(name.data(), name.size(), "M%06d%c.OVN", number / 26, 'A' + number % 26);
  return name.data();
}

std::string RunningHeader() {
  UnitRecord unit = DefaultUnitRecord();
  unit.UnitInet = 1;
  unit.UnitChannels = kChannels;
  unit.UnitRecOn = 1;
  unit.UnitRole.Fill(0);
  std::fill_n(unit.UnitRole.begin(), kChannels, std::int16_t{1});
  unit.UnitDesignation.Set("OVN:Tube oven");
  std::string bytes(sizeof unit, '\0');
  std::memcpy(bytes.data(), &unit, sizeof unit);
  return bytes;
}

// Recordings that were made one after the other and closed.
class Recordings {
 public:
  Recordings() {
    FakeClock clock;
    FakeDialogs dialogs;
    RunState state;
    Messages messages(dialogs);
    RecordingFiles files(state, clock, messages);
    std::filesystem::create_directories(directory_.File("one/journal"));
    std::filesystem::create_directories(directory_.File("all/journal"));
    state.SlotPath[kSlot] = directory_.File("one");
    const std::array<std::int16_t, kChannels> row{100, 200, 300};
    for (int number = 0; number < kFiles; ++number) {
      const std::string name = NameOf(number);
      state.SlotFile[kSlot] = name;
      directory_.Write("one/" + name, RunningHeader());
      files.OpenRecordingFile(kSlot);
      for (int count = 0; count < kRowsOfAFile; ++count) {
        static_cast<void>(files.AppendRow(kSlot, row, 1));
      }
      files.CloseRecordingFile(kSlot);
      // A recording is begun in a small directory at once, in a large one it is looked for.
      for (const std::string& file : {name, "journal/" + name}) {
        std::filesystem::rename(directory_.File("one/" + file), directory_.File("all/" + file));
      }
    }
  }

  [[nodiscard]] std::vector<std::string> Paths() const {
    std::vector<std::string> paths;
    for (int number = 0; number < kFiles; ++number) {
      paths.push_back(directory_.File("all/" + NameOf(number)));
    }
    return paths;
  }
  [[nodiscard]] std::string Journal(int number) const {
    return directory_.File("all/journal/" + NameOf(number));
  }

 private:
  TemporaryDirectory directory_;
};

// In memory: for each of the recordings the disk would be waited for several times.
void MakeFilesInMemory() {
  if (access("/dev/shm", W_OK) == 0) {
    setenv("TMPDIR", "/dev/shm", 1);
  }
}

void VerifyOfADirectory(benchmark::State& state) {
  MakeFilesInMemory();
  const Recordings recordings;
  std::vector<std::string> arguments = recordings.Paths();
  const std::vector<std::string> paths = arguments;
  arguments.insert(arguments.begin(), "verify");
  Promise promise("ms");
  CommandResult result;
  for (auto unused : state) {
    promise.Measured(TimeOf<std::milli>([&] { result = RunFileCommand(arguments); }));
    promise.Limit(TimeOf<std::milli>([&] {
      for (int number = 0; number < kFiles; ++number) {
        const std::string file =
            ReadWholeFile(paths[static_cast<std::size_t>(number)], kLongest).value_or("");
        benchmark::DoNotOptimize(ReadWholeFile(recordings.Journal(number), kLongest));
        benchmark::DoNotOptimize(Sha256Of(std::as_bytes(std::span(file))));
      }
    }));
  }
  if (result.Status != kAllIsWell) {
    state.SkipWithError("they are not all intact");
    return;
  }
  promise.MustBeWithin(4);
  promise.Report(state);
}
BENCHMARK(VerifyOfADirectory)->Name("verify of 10 000 recordings")->Iterations(5);

}  // namespace
}  // namespace tavrel
