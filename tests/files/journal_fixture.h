#ifndef TAVREL_TESTS_FILES_JOURNAL_FIXTURE_H_
#define TAVREL_TESTS_FILES_JOURNAL_FIXTURE_H_

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "files/recording_journals.h"
#include "tests/files/recording_bench.h"

namespace tavrel {

inline constexpr const char* kJournal = "journal/M260314A.OVN";

// A slot with a recording, as one start of the program after the other has it.
struct JournalFixture {
  PumpFixture fixture;
  int slot;

  explicit JournalFixture(int of_slot = 12) : slot(of_slot) {
    fixture.clock.wall.ZoneMinutes = 60;
    fixture.state.Settings.CommPort = "COM1";
  }
  void Begin(int channels = 3) { fixture.Open(slot, kName, BytesOf(Running(HeaderOf(channels)))); }
  bool Append(int value) {
    std::array<std::int16_t, kInputs> words{};
    words.fill(static_cast<std::int16_t>(value));
    const auto channels = static_cast<std::size_t>(fixture.state.Unit[slot].UnitChannels);
    return fixture.files.AppendRow(slot, std::span(words.data(), channels), 1);
  }
  [[nodiscard]] std::string Journal() const { return fixture.directory.Read(kJournal); }
  [[nodiscard]] JournalReading Reading() const { return ReadJournal(Journal()); }
  [[nodiscard]] std::vector<std::string> Kinds() const {
    std::vector<std::string> kinds;
    for (const JournalEntry& entry : Reading().Entries) {
      kinds.push_back(entry.Kind);
    }
    return kinds;
  }
  [[nodiscard]] RecordingCheck Check() const {
    const std::string file = fixture.directory.Read(kName);
    return CheckRecording(std::as_bytes(std::span(file)), std::optional(Journal()));
  }
  [[nodiscard]] JournalEntry Last(const std::string& kind) const {
    JournalEntry last;
    for (const JournalEntry& entry : Reading().Entries) {
      last = entry.Kind == kind ? entry : last;
    }
    return last;
  }
  // As a kill: nothing is synced, nothing sealed.
  void KillAndStart() {
    fixture.state.SlotFileNo[slot].Close();
    fixture.Name(slot, kName);
    RecordingFiles again(fixture.state, fixture.clock, fixture.messages);
    again.OpenRecordingFile(slot);
    again.CloseRecordingFile(slot);
  }
};

using Kinds = std::vector<std::string>;

}  // namespace tavrel

#endif  // TAVREL_TESTS_FILES_JOURNAL_FIXTURE_H_
