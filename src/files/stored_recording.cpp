#include "files/stored_recording.h"

#include <algorithm>
#include <cstring>

#include "files/reasons.h"
#include "files/recording_format.h"
#include "platform/file_system.h"
#include "platform/random_file.h"

namespace tavrel {
namespace {

// A recording has 64 kB; what is much longer is none, and is not read into memory.
constexpr std::int64_t kMostBytes = std::int64_t{16} << 20U;

// So often file and journal are read while the journal grows. Its lines are seconds apart.
constexpr int kMostReadings = 5;

// Empty, with `problem`, on failure. `file` stays open.
std::optional<std::string> ReadFile(RandomFile& file, const std::string& path, std::int64_t limit,
                                    std::string& problem) {
  const std::int64_t length = file.Open(path, FileAccess::kRead) ? file.Size() : -1;
  if (length < 0) {
    problem = file.Error();
    return std::nullopt;
  }
  if (length > limit) {
    problem = reason::kTooLong.English;
    return std::nullopt;
  }
  std::string bytes(static_cast<std::size_t>(length), '\0');
  if (length > 0 && file.ReadAt(0, std::as_writable_bytes(std::span(bytes))) != length) {
    problem = file.Error();
    return std::nullopt;
  }
  return bytes;
}

// Where a recording is, as its path was given.
struct Place {
  std::string Directory;
  std::string Name;
  std::string Path;  // as the disk spells it
};

Place PlaceOf(const std::string& path, FileFinder& finder) {
  const std::size_t name = path.rfind('/') == std::string::npos ? 0 : path.rfind('/') + 1;
  const std::string directory = name == 0 ? "." : path.substr(0, name);
  NoAnswer unused;
  return {directory, path.substr(name),
          finder.Find(directory, path.substr(name), unused).value_or(path)};
}

// False if the journal has grown while the file was read.
bool ReadOnce(const Place& place, FileFinder& finder, StoredRecording& recording) {
  recording = StoredRecording();
  RandomFile journal;
  NoAnswer no_answer;
  const auto path =
      finder.Find(JoinPath(place.Directory, kJournalDirectory), place.Name, no_answer);
  std::string journal_problem = no_answer.Text;
  auto text = path ? ReadFile(journal, *path, kMostJournalBytes, journal_problem) : std::nullopt;
  RandomFile file;
  auto bytes = ReadFile(file, place.Path, kMostBytes, recording.Problem);
  if (!bytes) {
    return true;
  }
  recording.Bytes = std::move(*bytes);
  recording.Problem =
      journal_problem.empty() ? "" : std::string(reason::kItsJournal.English) + journal_problem;
  const bool is_same = !text || journal.Size() == static_cast<std::int64_t>(text->size());
  recording.Journal = std::move(text);
  return is_same;
}

}  // namespace

StoredRecording ReadRecording(const std::string& path) {
  FileFinder finder;
  return ReadRecording(path, finder);
}

StoredRecording ReadRecording(const std::string& path, FileFinder& finder) {
  const Place place = PlaceOf(path, finder);
  StoredRecording recording;
  for (int reading = 0; reading < kMostReadings; ++reading) {
    if (ReadOnce(place, finder, recording)) {
      break;
    }
  }
  return recording;
}

std::optional<std::string> JournalTextOf(const std::string& directory, const std::string& name) {
  const auto path = FindFile(JoinPath(directory, kJournalDirectory), name);
  return path ? ReadWholeFile(*path, kMostJournalBytes) : std::nullopt;
}

UnitRecord HeaderOf(const StoredRecording& recording) {
  UnitRecord unit{};
  const std::size_t length = std::min<std::size_t>(recording.Bytes.size(), kHeaderBytes);
  if (length > 0) {
    std::memcpy(&unit, recording.Bytes.data(), length);
  }
  return unit;
}

bool MayBeRecording(const StoredRecording& recording) {
  return recording.Journal || IsTavrelHeader(HeaderOf(recording));
}

}  // namespace tavrel
