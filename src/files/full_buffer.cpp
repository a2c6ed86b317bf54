#include "files/full_buffer.h"

#include <algorithm>
#include <utility>

namespace tavrel {

void FullBuffer::Begin(const std::vector<int>& inputs, int sets) {
  stage_ = Stage::kMakeRoom;
  rest_.clear();
  for (int set = 0; set < std::min(sets, kMostSets); ++set) {
    rest_.insert(rest_.end(), inputs.rbegin(), inputs.rend());
  }
}

void FullBuffer::Compare() {
  stage_ = Stage::kCompare;
  rest_.clear();
}

void FullBuffer::Align(std::vector<int> inputs) {
  stage_ = Stage::kAlign;
  rest_ = std::move(inputs);
}

void FullBuffer::TakeInput() {
  if (!rest_.empty()) {
    rest_.pop_back();
  }
  if (stage_ == Stage::kMakeRoom && rest_.empty()) {
    stage_ = Stage::kCompare;
  }
}

}  // namespace tavrel
