#ifndef TAVREL_STATE_UNFINISHED_WORK_H_
#define TAVREL_STATE_UNFINISHED_WORK_H_

#include "state/run_state.h"

namespace tavrel {

// What a rule has begun on an instrument and also has to finish, such as a controller that is off
// for the time of a wait. While one lives the program does not end, though timers and windows
// go on.
class UnfinishedWork {
 public:
  // `state` outlives this.
  explicit UnfinishedWork(RunState& state) : state_(state) { ++state_.Unfinished; }
  ~UnfinishedWork() { --state_.Unfinished; }
  UnfinishedWork(const UnfinishedWork&) = delete;
  UnfinishedWork& operator=(const UnfinishedWork&) = delete;

 private:
  RunState& state_;
};

}  // namespace tavrel

#endif  // TAVREL_STATE_UNFINISHED_WORK_H_
