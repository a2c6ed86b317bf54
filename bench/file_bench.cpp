// Recording files beside the bare calls to the system that they cannot do without.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>

#include "bench/bench_home.h"
#include "bench/promise.h"
#include "files/journal_check.h"
#include "files/recording_file.h"
#include "platform/file_system.h"
#include "state/messages.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_screen.h"

namespace tavrel {
namespace {

constexpr int kSlot = 1;
constexpr int kChannels = 15;
constexpr int kFullRows = kMaxSampleWords / kChannels;  // 2133 rows, 65 kB with the header
constexpr int kRounds = 101;

// Recording files of slot 1, over a directory with full files.
struct FileBench {
  FileBench() {
    state.SlotPath[kSlot] = home.File("tavdat");
    state.SlotFile[kSlot] = BenchHome::NameOf(kSlot);
    files.OpenRecordingFile(kSlot);
  }

  BenchHome home{"----", {kChannels, kFullRows, true}};
  FakeClock clock;
  FakeDialogs dialogs;
  RunState state;
  Messages messages{dialogs};
  RecordingFiles files{state, clock, messages};
};

void AppendOfARow(benchmark::State& state) {
  FileBench bench;
  const std::array<std::int16_t, kChannels> row{};
  const std::string other = bench.home.File("tavdat/" + BenchHome::NameOf(kSlot + 1));
  const int handle = open(other.c_str(), O_RDWR | O_CLOEXEC);
  Promise promise("us");
  for (auto unused : state) {
    bench.state.SampleCount[kSlot] = 0;
    const double product = TimeOf<std::milli>([&] {
      for (int count = 0; count < kFullRows; ++count) {
        benchmark::DoNotOptimize(bench.files.AppendRow(kSlot, row, 1));
      }
    });
    const double bare = TimeOf<std::milli>([&] {
      for (int count = 0; count < kFullRows; ++count) {
        benchmark::DoNotOptimize(
            pwrite(handle, row.data(), sizeof row, SampleByte(kChannels, count, 1)));
      }
    });
    promise.Measured(product * 1000 / kFullRows);
    promise.Limit(bare * 1000 / kFullRows);
  }
  close(handle);
  if (bench.state.SampleCount[kSlot] != kFullRows) {
    state.SkipWithError("rows were not written");
    return;
  }
  promise.MustBeWithin(4);
  promise.Report(state);
}
BENCHMARK(AppendOfARow)->Name("append of a row")->Iterations(kRounds);

// The same row of the same file, in one recording with its journal and in one whose medium has
// refused it.
void AppendWithJournal(benchmark::State& state) {
  FileBench with;
  FileBench without;
  without.files.CloseRecordingFile(kSlot);
  std::filesystem::remove_all(without.home.File("tavdat/journal"));
  std::ofstream(without.home.File("tavdat/journal")) << "in its place";
  without.files.OpenRecordingFile(kSlot);
  const std::array<std::int16_t, kChannels> row{};
  const auto append = [&row](FileBench& bench) {
    bench.state.SampleCount[kSlot] = 0;
    return TimeOf<std::milli>([&] {
      for (int count = 0; count < kFullRows; ++count) {
        benchmark::DoNotOptimize(bench.files.AppendRow(kSlot, row, 1));
      }
    });
  };
  Promise promise("us");
  for (auto unused : state) {
    promise.Measured(append(with) * 1000 / kFullRows);
    promise.Limit(append(without) * 1000 / kFullRows);
  }
  if (with.files.Journals().IdOf(kSlot).empty() || !without.files.Journals().IdOf(kSlot).empty()) {
    state.SkipWithError("the one has no journal, or the other has one");
    return;
  }
  promise.MustBeWithin(2);
  promise.Report(state);
}
BENCHMARK(AppendWithJournal)->Name("append of a row with journal")->Iterations(kRounds);

// A recording and its journal beside the hash of the same bytes, all that it cannot do without.
void VerifyOfAFullFile(benchmark::State& state) {
  FileBench bench;
  bench.files.CloseRecordingFile(kSlot);
  const std::string path = bench.home.File("tavdat/" + BenchHome::NameOf(kSlot));
  const std::string file = ReadWholeFile(path, 1U << 20U).value_or("");
  const std::optional<std::string> journal =
      ReadWholeFile(JournalPath(bench.home.File("tavdat"), BenchHome::NameOf(kSlot)), 1U << 20U);
  const auto bytes = std::as_bytes(std::span(file));
  Promise promise("us");
  for (auto unused : state) {
    promise.Measured(
        TimeOf<std::micro>([&] { benchmark::DoNotOptimize(CheckRecording(bytes, journal)); }));
    promise.Limit(TimeOf<std::micro>([&] { benchmark::DoNotOptimize(Sha256Of(bytes)); }));
  }
  if (CheckRecording(bytes, journal).Verdict != Verdict::kIntact) {
    state.SkipWithError("it is not intact");
    return;
  }
  promise.MustBeWithin(2);
  promise.Report(state);
}
BENCHMARK(VerifyOfAFullFile)->Name("verify of a file of 65 kB")->Iterations(kRounds);

// What cannot be spared: the file is opened, its length asked for, its header read.
void BareOpen(const std::string& path) {
  std::array<char, kHeaderBytes> header{};
  struct stat status {};
  const int handle = open(path.c_str(), O_RDWR | O_CLOEXEC);
  benchmark::DoNotOptimize(fstat(handle, &status));
  benchmark::DoNotOptimize(pread(handle, header.data(), header.size(), 0));
  close(handle);
}

void OpeningOfAFile(benchmark::State& state) {
  FileBench bench;
  const std::string path = bench.home.File("tavdat/" + BenchHome::NameOf(kSlot));
  const std::string journal = bench.home.File("tavdat/journal/" + BenchHome::NameOf(kSlot));
  const std::string kept = bench.home.File("journal.kept");
  bench.files.CloseRecordingFile(kSlot);
  std::filesystem::copy_file(journal, kept);
  Promise promise("us");
  for (auto unused : state) {
    bench.files.CloseRecordingFile(kSlot);  // which waits for the disk
    // Each opening makes the journal longer, and it is read whole.
    std::filesystem::copy_file(kept, journal, std::filesystem::copy_options::overwrite_existing);
    promise.Measured(TimeOf<std::micro>([&] { bench.files.OpenRecordingFile(kSlot); }));
    promise.Limit(TimeOf<std::micro>([&] { BareOpen(path); }));
  }
  if (bench.state.SampleCount[kSlot] != kFullRows) {
    state.SkipWithError("the file did not open");
    return;
  }
  promise.MustBeAtMost(1000);
  promise.Report(state);
}
BENCHMARK(OpeningOfAFile)->Name("opening a file of 65 kB")->Iterations(kRounds);

}  // namespace
}  // namespace tavrel
