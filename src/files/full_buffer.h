#ifndef TAVREL_FILES_FULL_BUFFER_H_
#define TAVREL_FILES_FULL_BUFFER_H_

#include <vector>

namespace tavrel {

// What to do when the instrument's buffer of a recording is full. Each new sample pushes out the
// oldest one of its input, so inputs that were read already and inputs that were not do not hold
// the same sets any more; and as long as the buffer stays full the evidence for it is destroyed.
// So first some of the oldest values of all inputs are given up, to make room; then the inputs
// are compared; and then those that are behind give up what the others have lost.
class FullBuffer {
 public:
  enum class Stage { kIdle, kMakeRoom, kCompare, kAlign };

  // The oldest sets that may be given up to make room.
  static constexpr int kMostSets = 3;

  // Each of `inputs` gives up its `sets` oldest values, one after the other in that order.
  void Begin(const std::vector<int>& inputs, int sets);

  // Room is made, or has to be judged anew.
  void Compare();

  // The inputs have been compared: each entry is one value of that input to be given up.
  void Align(std::vector<int> inputs);

  void End() { *this = FullBuffer(); }

  [[nodiscard]] Stage At() const { return stage_; }
  [[nodiscard]] bool IsOver() const { return stage_ == Stage::kAlign && rest_.empty(); }

  // The input whose oldest value is to be given up now; 0 for none.
  [[nodiscard]] int Input() const { return rest_.empty() ? 0 : rest_.back(); }

  // That value was given up, or nobody knows.
  void TakeInput();

 private:
  Stage stage_ = Stage::kIdle;
  std::vector<int> rest_;  // the last one is the next
};

}  // namespace tavrel

#endif  // TAVREL_FILES_FULL_BUFFER_H_
