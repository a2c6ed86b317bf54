// The text of a full recording beside the least that makes the same bytes: one read, integer
// arithmetic into a buffer, one write.
#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>

#include "bench/promise.h"
#include "files/recording_format.h"
#include "graph/export_text.h"
#include "platform/file_system.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {
namespace {

constexpr int kFullRows = kMaxSampleWords / kInputs;  // 2133
constexpr int kWords = kFullRows * kInputs;           // 31995
constexpr int kInterval = 60;                         // seconds
constexpr int kRounds = 101;
constexpr std::size_t kWordRoom = 16;  // bytes of a value at the most
const char* const kName = "M260314A.OVE";

class FullRecording {
 public:
  FullRecording() {
    UnitRecord unit = DefaultUnitRecord();
    std::string bytes(sizeof unit + std::size_t{kWordBytes} * kWords, '\0');
    std::memcpy(bytes.data(), &unit, sizeof unit);
    for (std::size_t k = 0; k < kWords; ++k) {
      const auto word = static_cast<std::int16_t>(k * 7 % 30000);
      std::memcpy(bytes.data() + sizeof unit + kWordBytes * k, &word, sizeof word);
    }
    home.Write(kName, bytes);
    table.FileName = kName;
    table.RecInterval = kInterval;
    table.Channels = kInputs;
    table.FirstRecord = kHeaderRecords;
    table.LastRecord = kHeaderRecords + kInputs * (kFullRows - 1);
    for (int column = 1; column <= kInputs; ++column) {
      ExportColumn added;
      added.Column = column;
      added.Name.Set("input " + std::to_string(column));
      table.Columns.push_back(added);
    }
  }
  [[nodiscard]] std::string Path(const char* name) const { return home.File(name); }

  TemporaryDirectory home;
  ExportTable table;
};

char* PutDegrees(char* at, int word) {
  const int hundredths = std::abs(word) * 5;
  if (word < 0) {
    *at++ = '-';
  }
  at = std::to_chars(at, at + kWordRoom, hundredths / 100).ptr;
  *at++ = '.';
  *at++ = static_cast<char>('0' + hundredths / 10 % 10);
  *at++ = static_cast<char>('0' + hundredths % 10);
  *at++ = ';';
  *at++ = ' ';
  return at;
}

// The rows without the head, in a buffer that is there.
class BareText {
 public:
  std::string_view Make(const std::string& from) {
    const int source = open(from.c_str(), O_RDONLY | O_CLOEXEC);
    benchmark::DoNotOptimize(pread(source, words_.data(), sizeof words_, kHeaderBytes));
    close(source);
    char* at = text_.data();
    for (int row = 0; row < kFullRows; ++row) {
      at = std::to_chars(at, at + kWordRoom, (row + 1) * kInterval).ptr;
      *at++ = ';';
      *at++ = ' ';
      for (int column = 0; column < kInputs; ++column) {
        at = PutDegrees(at, words_[static_cast<std::size_t>(row * kInputs + column)]);
      }
      *at++ = '\r';
      *at++ = '\n';
    }
    return {text_.data(), static_cast<std::size_t>(at - text_.data())};
  }

 private:
  std::array<std::int16_t, kWords> words_{};
  std::array<char, (kWords + kFullRows) * kWordRoom> text_{};
};

// A file takes the place of another whole: nothing of this can be spared where a stick is pulled
// out right afterwards.
void BareReplace(const std::string& directory, const std::string& path, std::string_view text) {
  const std::string temporary = path + ".tmp";
  const int target = open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644);
  benchmark::DoNotOptimize(write(target, text.data(), text.size()));
  fsync(target);
  close(target);
  benchmark::DoNotOptimize(rename(temporary.c_str(), path.c_str()));
  const int place = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  fsync(place);
  close(place);
}

std::string Text(const FullRecording& recording) {
  RandomFile file;
  benchmark::DoNotOptimize(file.Open(recording.Path(kName), FileAccess::kRead));
  SampleReader reader(file);
  return AsciiText(recording.table, ".", reader).value_or("");
}

void TextOfAFullFile(benchmark::State& state) {
  const FullRecording recording;
  const auto bare = std::make_unique<BareText>();
  Promise promise("us");
  for (auto unused : state) {
    promise.Measured(TimeOf<std::micro>([&] { benchmark::DoNotOptimize(Text(recording)); }));
    promise.Limit(
        TimeOf<std::micro>([&] { benchmark::DoNotOptimize(bare->Make(recording.Path(kName))); }));
  }
  if (!Text(recording).ends_with(bare->Make(recording.Path(kName)))) {
    state.SkipWithError("the two texts differ");
    return;
  }
  promise.MustBeWithin(3);
  promise.Report(state);
}
BENCHMARK(TextOfAFullFile)->Name("text of a full file")->Iterations(kRounds);

void ExportOfAFullFile(benchmark::State& state) {
  const FullRecording recording;
  const auto bare = std::make_unique<BareText>();
  Promise promise("us");
  for (auto unused : state) {
    promise.Measured(TimeOf<std::micro>([&] {
      benchmark::DoNotOptimize(ReplaceFile(recording.Path("OUT.ASC"), Text(recording)));
    }));
    promise.Limit(TimeOf<std::micro>([&] {
      BareReplace(recording.home.Path(), recording.Path("BARE.ASC"),
                  bare->Make(recording.Path(kName)));
    }));
  }
  promise.MustBeWithin(3);
  promise.Report(state);
}
BENCHMARK(ExportOfAFullFile)->Name("export of a full file, synced")->Iterations(kRounds);

}  // namespace
}  // namespace tavrel
