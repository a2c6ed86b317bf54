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

// Empty, with `problem`, on failure.
std::optional<std::string> ReadFile(const std::string& path, std::int64_t limit,
                                    std::string& problem) {
  RandomFile file;
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

}  // namespace

StoredRecording ReadRecording(const std::string& path) {
  StoredRecording recording;
  auto bytes = ReadFile(path, kMostBytes, recording.Problem);
  if (!bytes) {
    return recording;
  }
  recording.Bytes = std::move(*bytes);
  const std::size_t name = path.rfind('/') == std::string::npos ? 0 : path.rfind('/') + 1;
  const std::string directory = name == 0 ? "." : path.substr(0, name);
  NoAnswer no_answer;
  const auto journal =
      FindFile(JoinPath(directory, kJournalDirectory), path.substr(name), no_answer);
  if (journal) {
    std::string problem;
    recording.Journal = ReadFile(*journal, kMostJournalBytes, problem);
    recording.Problem = problem.empty() ? "" : std::string(reason::kItsJournal.English) + problem;
  } else if (no_answer.Why != Failure::kNone) {
    recording.Problem = std::string(reason::kItsJournal.English) + no_answer.Text;
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
