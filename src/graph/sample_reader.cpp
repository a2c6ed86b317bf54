#include "graph/sample_reader.h"

#include <algorithm>
#include <span>

#include "files/recording_format.h"

namespace tavrel {

// A fault of the medium behind the word must not take the word with it: where a whole window
// cannot be read the one word is tried alone.
bool SampleReader::Fetch(int record) {
  if (record < 1) {
    return false;
  }
  first_ = record;
  count_ = ReadWords(record, kWindow);
  if (count_ == 0) {
    count_ = ReadWords(record, 1);
  }
  return count_ > 0;
}

// How many of up to `most` words came.
int SampleReader::ReadWords(int record, int most) {
  const std::int64_t offset = static_cast<std::int64_t>(record - 1) * kWordBytes;
  const std::span words = std::span(window_).first(static_cast<std::size_t>(most));
  const std::int64_t got = file_.ReadAt(offset, std::as_writable_bytes(words));
  return static_cast<int>(std::max<std::int64_t>(got, 0) / kWordBytes);
}

}  // namespace tavrel
