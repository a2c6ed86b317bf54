#ifndef TAVREL_GRAPH_SAMPLE_READER_H_
#define TAVREL_GRAPH_SAMPLE_READER_H_

#include <array>
#include <cstdint>
#include <optional>

#include "base/units.h"
#include "platform/random_file.h"

namespace tavrel {

// Reads samples of an open recording file one after the other. It keeps a small window of the
// file, so a walk through all rows costs a few reads of the disk, and no memory grows with the
// file. Lives for one drawing: what the file gains later may stay unseen.
class SampleReader {
 public:
  // `file` outlives the reader.
  explicit SampleReader(RandomFile& file) : file_(file) {}

  // The word at a record number. Nothing where the file does not have it, because it was cut by
  // others, or cannot be read.
  [[nodiscard]] std::optional<std::int16_t> Word(int record) {
    if (!Holds(record) && !Fetch(record)) {
      return std::nullopt;
    }
    return window_[static_cast<std::size_t>(record - first_)];
  }

  // The same in degrees Celsius.
  [[nodiscard]] std::optional<double> Degrees(int record) {
    const std::optional<std::int16_t> word = Word(record);
    return word ? std::optional(*word / kStepsPerDegree) : std::nullopt;
  }

 private:
  static constexpr int kWindow = 2048;  // words

  [[nodiscard]] bool Holds(int record) const {
    return record >= first_ && record - first_ < count_;
  }
  // Moves the window to the record; false if there is nothing.
  bool Fetch(int record);
  [[nodiscard]] int ReadWords(int record, int most);

  RandomFile& file_;
  int first_ = 0;  // record number of the first word in the window
  int count_ = 0;
  std::array<std::int16_t, kWindow> window_{};
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_SAMPLE_READER_H_
