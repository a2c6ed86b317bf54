#include "graph/sample_reader.h"

#include <algorithm>
#include <span>

#include "files/recording_format.h"

namespace tavrel {

std::int16_t SampleReader::FetchWord(int record) {
  if (record < 1) {
    return row_value_;
  }
  const std::int64_t offset = static_cast<std::int64_t>(record - 1) * kWordBytes;
  const std::int64_t got = file_.ReadAt(offset, std::as_writable_bytes(std::span(window_)));
  first_ = record;
  count_ = static_cast<int>(std::max<std::int64_t>(got, 0) / kWordBytes);
  if (count_ > 0) {
    row_value_ = window_.front();
  }
  return row_value_;
}

}  // namespace tavrel
