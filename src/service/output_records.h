#ifndef TAVREL_SERVICE_OUTPUT_RECORDS_H_
#define TAVREL_SERVICE_OUTPUT_RECORDS_H_

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "state/messages.h"
#include "state/run_state.h"

namespace tavrel {

inline constexpr const char* kOutputRecordsFile = "TAVREL.OUT";

// Title of the boxes about outputs that are switched by hand.
inline constexpr const char* kOutputTestTitle = "Test of Outputs";

// A controller whose outputs are switched by hand, and the status that it had before.
struct OutputRecord {
  int Inet = 0;             // 1..6
  int Controller = 0;       // 1..4
  std::int16_t Before = 0;  // register Z; -1..5, any other status is kept as 0, off

  [[nodiscard]] bool operator==(const OutputRecord&) const = default;
};

// What stands in the file of the records.
struct OutputRecordsText {
  std::vector<OutputRecord> Records;  // one for each controller at most
  bool IsWhole = true;                // false: the file held something else, too
};

// The file: a line for each record, such as "inet 2 controller 1 Z=2" CR LF, and a last line "end"
// CR LF. Where the text is not complete no status in it can be relied on: each of its records says
// off.
[[nodiscard]] std::string EncodeOutputRecords(const std::vector<OutputRecord>& records);
[[nodiscard]] OutputRecordsText DecodeOutputRecords(std::string_view text);

// Which controllers a test of outputs has taken out of control, in a file beside the settings: it
// is there before the first write to the instrument, and gone behind the last one. A program that
// finds the file at its start knows that the program before was killed, or that the instrument did
// not answer any more.
class OutputRecords {
 public:
  // Both outlive the records.
  OutputRecords(RunState& state, Messages& messages) : state_(state), messages_(messages) {}

  // Takes what the program before has left, once DataHome is known. True as soon as that is done;
  // a file that cannot be read now is tried again with each call, and nothing takes its place
  // before. That, and a file that is damaged, is told.
  [[nodiscard]] bool Load();

  [[nodiscard]] const std::vector<OutputRecord>& All() const { return records_; }
  [[nodiscard]] bool Has(int inet) const;

  // Puts these in the place of all records of the instrument; none: it has none any more. Empty
  // text if they are on the disk then, synced, else the system's words; it is tried again by Save.
  [[nodiscard]] std::string Put(int inet, const std::vector<OutputRecord>& records);

  // The instrument of number `from` has become number `to`. What was recorded of an instrument that
  // had `to` before is void: it cannot be reached any more.
  void Renumber(int from, int to);

  // Puts the records on the disk if they have changed since. That it fails is told once.
  void Save();

 private:
  [[nodiscard]] std::string Path() const;
  [[nodiscard]] std::string Write() const;

  RunState& state_;
  Messages& messages_;
  std::vector<OutputRecord> records_;
  bool is_loaded_ = false;
  bool is_saved_ = true;  // the disk holds what records_ holds
  std::string told_;      // last problem that was told
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_OUTPUT_RECORDS_H_
