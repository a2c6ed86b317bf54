#ifndef TAVREL_TESTS_FILES_RECORDING_FIXTURE_H_
#define TAVREL_TESTS_FILES_RECORDING_FIXTURE_H_

#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string>
#include <vector>

#include "files/recording_file.h"
#include "files/recording_format.h"
#include "state/messages.h"
#include "state/run_state.h"
#include "tests/support/fake_clock.h"
#include "tests/support/fake_screen.h"
#include "tests/support/temporary_directory.h"

namespace tavrel {

inline std::string BytesOf(const UnitRecord& unit) {
  std::string bytes(sizeof unit, '\0');
  std::memcpy(bytes.data(), &unit, sizeof unit);
  return bytes;
}

// 16-bit words as they lie in a file.
inline std::string Words(std::initializer_list<int> words) {
  std::string bytes;
  for (const int word : words) {
    bytes += static_cast<char>(word & 0xFF);
    bytes += static_cast<char>((word >> 8) & 0xFF);
  }
  return bytes;
}

// A header of one instrument that records the inputs 1..`channels`.
inline UnitRecord HeaderOf(int channels) {
  UnitRecord unit = DefaultUnitRecord();
  unit.UnitChannels = static_cast<std::int16_t>(channels);
  unit.UnitRole.Fill(0);
  for (int input = 1; input <= channels; ++input) {
    unit.UnitRole[input] = 1;
  }
  return unit;
}

// Shared block, clock, boxes and recording files over a directory of their own.
struct RecordingFixture {
  TemporaryDirectory directory;
  FakeClock clock;
  FakeDialogs dialogs;
  RunState state;
  Messages messages{dialogs};
  RecordingFiles files{state, clock, messages};

  // Puts `bytes` on the disk and names the file for the slot, without opening it.
  void Name(int slot, const std::string& name, const std::string& bytes) {
    directory.Write(name, bytes);
    Name(slot, name);
  }
  void Name(int slot, const std::string& name) {
    state.SlotPath[slot] = directory.Path();
    state.SlotFile[slot] = name;
    if (IsSlot(slot)) {
      state.Settings.ActiveFiles.at(static_cast<std::size_t>(slot - 1)) = name;
    }
  }
  void Open(int slot, const std::string& name, const std::string& bytes) {
    Name(slot, name, bytes);
    files.OpenRecordingFile(slot);
  }

  [[nodiscard]] std::string HeaderInFile(const std::string& name) const {
    return directory.Read(name).substr(0, kHeaderBytes);
  }
  [[nodiscard]] UnitRecord RecordInFile(const std::string& name) const {
    UnitRecord unit{};
    const std::string bytes = HeaderInFile(name);
    std::memcpy(&unit, bytes.data(), bytes.size());
    return unit;
  }
  [[nodiscard]] std::string SamplesInFile(const std::string& name) const {
    const std::string bytes = directory.Read(name);
    return bytes.size() <= kHeaderBytes ? "" : bytes.substr(kHeaderBytes);
  }
};

// While it lives no file can grow beyond `bytes`, as on a full disk: a write that reaches
// further is done up to there and then fails.
class FullDisk {
 public:
  explicit FullDisk(std::size_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit now{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &now);
  }
  ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before_); }
  FullDisk(const FullDisk&) = delete;
  FullDisk& operator=(const FullDisk&) = delete;

 private:
  rlimit before_{};
};

// While it lives nothing in the directory can be written, not even by the super-user that runs
// the tests in a container.
class ReadOnlyMedium {
 public:
  ReadOnlyMedium(const std::string& directory, const std::string& file)
      : directory_(directory), file_(file) {
    chmod(file.c_str(), 0444);
    chmod(directory.c_str(), 0555);
    lowered_ = geteuid() == 0 && seteuid(kNobody) == 0;
  }
  ~ReadOnlyMedium() {
    if (lowered_ && seteuid(0) != 0) {
      std::abort();
    }
    chmod(directory_.c_str(), 0755);
    chmod(file_.c_str(), 0644);
  }
  ReadOnlyMedium(const ReadOnlyMedium&) = delete;
  ReadOnlyMedium& operator=(const ReadOnlyMedium&) = delete;

 private:
  static constexpr uid_t kNobody = 65534;
  std::string directory_;
  std::string file_;
  bool lowered_ = false;
};

}  // namespace tavrel

#endif  // TAVREL_TESTS_FILES_RECORDING_FIXTURE_H_
