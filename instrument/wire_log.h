#ifndef TAVREL_INSTRUMENT_WIRE_LOG_H_
#define TAVREL_INSTRUMENT_WIRE_LOG_H_

#include <chrono>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "instrument/line_timing.h"

namespace instrument {

// Writes every byte on the line with its time, one row for each telegram; the rows are told in
// README.md. Without a file it forgets everything.
class WireLog {
 public:
  enum class Direction : char { kToInstrument = '>', kToHost = '<' };

  // False: the file cannot be written. An empty path means no file and is good. Times are
  // counted from `start`.
  [[nodiscard]] bool Open(const std::string& path, Moment start);

  void Byte(Direction direction, const TimedByte& byte);
  // Ends a row whose last byte is older than a telegram's longest pause.
  void EndStaleRow(Moment now);
  // When `EndStaleRow` has something to do; nothing if no row is open.
  [[nodiscard]] std::optional<Moment> NextDue() const;
  void EndRow();

 private:
  std::ofstream file_;
  Moment start_{};
  Direction direction_ = Direction::kToInstrument;
  std::vector<TimedByte> row_;
};

}  // namespace instrument

#endif  // TAVREL_INSTRUMENT_WIRE_LOG_H_
