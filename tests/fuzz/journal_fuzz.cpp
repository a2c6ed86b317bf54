#include <span>

#include "files/journal_check.h"
#include "tests/fuzz/fuzz_input.h"

namespace tavrel {
namespace {

const JournalStamp kStamp{{2026, 3, 14, 10, 0, 0, 60}, 1, "boot"};

RecordingCheck CheckOf(const std::string& file, const std::string& journal) {
  return CheckRecording(std::as_bytes(std::span(file)), std::optional(journal));
}

// Whatever stands in a journal, a program that goes on behind it leaves one that can be read.
void GoOnBehind(std::string text) {
  JournalReading reading = ReadJournal(text);
  if (!reading.Problem.empty() || reading.Entries.empty()) {
    return;
  }
  const std::size_t lines = reading.Entries.size();
  if (reading.LacksLineFeed) {
    text += "\n";
    reading.Chain.AddRaw("\n");
  }
  text += reading.Chain.Line(kStamp, journal::kTorn, {{"bytes", reading.TornBytes.value_or(0)}});
  const JournalReading again = ReadJournal(text);
  Require(again.Problem.empty() && !again.TornBytes, "a torn line is explained");
  Require(again.Entries.size() == lines + 1, "no line is lost");
  Require(again.Chain.Hash() == Sha256Of(text), "the hash is that of all bytes");
}

// A journal of whole lines, of kinds and fields that the input chooses.
std::string Composed(FuzzInput& script, const std::string& file) {
  constexpr const char* kKinds[] = {"begin", "seal", "header", "torn", "adopted", "note"};
  JournalChain chain;
  std::string text = chain.Line(kStamp, journal::kBegin, {{"id", script.Text(4)}});
  for (int line = 0; line < 6; ++line) {
    const JsonValue::Members fields{
        {"rows", script.Bits<std::int16_t>()},
        {"columns", script.Choice(17)},
        {"data", Sha256Of(file.substr(std::min<std::size_t>(file.size(), 1000)))},
        {"header", Sha256Of(file.substr(0, 1000))},
        {"new", script.Text(8)},
        {"bytes", script.Choice(9)}};
    text += chain.Line(kStamp, kKinds[script.Choice(6)], fields);
    if (script.Choice(5) == 0) {
      text += script.Text(12);
      GoOnBehind(text);
      return text;
    }
  }
  return text;
}

}  // namespace
}  // namespace tavrel

// The first half is a recording, the second a journal; from the same bytes a journal of whole lines
// is made.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace tavrel;
  const std::string bytes = TextOf(data, size);
  const std::string file = bytes.substr(0, bytes.size() / 2);
  const std::string any = bytes.substr(bytes.size() / 2);
  GoOnBehind(any);
  FuzzInput script(any);
  const std::string composed = Composed(script, file);
  GoOnBehind(composed);
  for (const std::string& journal : {any, composed}) {
    const RecordingCheck check = CheckOf(file, journal);
    Require((check.Verdict == Verdict::kIntact) == check.Findings.empty(), "a finding is told");
    Require(check.CoveredRows >= 0 && check.Rows >= 0, "rows are counted");
    const bool is_intact = check.Verdict == Verdict::kIntact;
    Require(!is_intact || check.CoveredRows == check.Rows, "intact is covered");
    std::string changed = file;
    if (is_intact && !changed.empty()) {
      changed.back() = static_cast<char>(changed.back() ^ 1);
      Require(CheckOf(changed, journal).Verdict == Verdict::kDamaged, "a changed byte is seen");
    }
  }
  Require(KinshipOf(any, any) == Kinship::kSame, "a journal is itself");
  static_cast<void>(KinshipOf(any, composed));
  Require(CommonLines(any, composed) >= 0, "lines are counted");
  return 0;
}
