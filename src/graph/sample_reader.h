#ifndef TAVREL_GRAPH_SAMPLE_READER_H_
#define TAVREL_GRAPH_SAMPLE_READER_H_

#include <array>
#include <cstdint>

#include "platform/random_file.h"

namespace tavrel {

// Reads samples of an open recording file one after the other. It keeps a small window of the
// file, so a walk through all rows costs a few reads of the disk, and no memory grows with the
// file. Lives for one drawing: what the file gains later may stay unseen.
class SampleReader {
 public:
  // `file` outlives the reader.
  explicit SampleReader(RandomFile& file) : file_(file) {}

  // The word at a record number. A word that cannot be read leaves the value before in force
  // (0 at first), so that a curve runs on flat.
  [[nodiscard]] std::int16_t Word(int record) {
    const int place = record - first_;
    if (place >= 0 && place < count_) {
      row_value_ = window_[static_cast<std::size_t>(place)];
      return row_value_;
    }
    return FetchWord(record);
  }

  // The same in degrees Celsius.
  [[nodiscard]] double Degrees(int record) { return Word(record) / kStepsPerDegree; }

 private:
  static constexpr double kStepsPerDegree = 20;
  static constexpr int kWindow = 2048;  // words

  std::int16_t FetchWord(int record);

  RandomFile& file_;
  int first_ = 0;  // record number of the first word in the window
  int count_ = 0;
  std::int16_t row_value_ = 0;
  std::array<std::int16_t, kWindow> window_{};
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_SAMPLE_READER_H_
