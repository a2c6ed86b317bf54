#ifndef TAVREL_GRAPH_OUTPUT_PAUSE_H_
#define TAVREL_GRAPH_OUTPUT_PAUSE_H_

#include "graph/graph.h"
#include "platform/events.h"
#include "state/run_state.h"

namespace tavrel {

// While one of these lives, an export or a print has the file of the slot for itself: the cycle
// keeps off it, Timer_Graph stands still, the pointer is the hourglass. All come back when it goes,
// whichever way the output ends. No box may be shown meanwhile, for it would stop the recording.
class OutputPause {
 public:
  OutputPause(RunState& state, Graph& graph, Events& events)
      : state_(state), graph_(graph), events_(events) {
    state_.GraphIdle = false;
    graph_.ValuesForOutput().TimerOn = false;
    events_.SetPointer(Pointer::kHourglass);
  }
  ~OutputPause() {
    events_.SetPointer(Pointer::kNormal);
    graph_.ValuesForOutput().TimerOn = graph_.IsOpen();
    state_.GraphIdle = true;
  }
  OutputPause(const OutputPause&) = delete;
  OutputPause& operator=(const OutputPause&) = delete;

 private:
  RunState& state_;
  Graph& graph_;
  Events& events_;
};

// A button of the part view that is disabled while this lives. It comes back if the part view is
// in front by then.
class DisabledButton {
 public:
  DisabledButton(Graph& graph, bool GraphValues::*button) : graph_(graph), button_(button) {
    graph_.ValuesForOutput().*button_ = false;
  }
  ~DisabledButton() { graph_.ValuesForOutput().*button_ = graph_.Values().MnuOutputEnabled; }
  DisabledButton(const DisabledButton&) = delete;
  DisabledButton& operator=(const DisabledButton&) = delete;

 private:
  Graph& graph_;
  bool GraphValues::*button_;
};

// A flag that has a value while this lives and then its own again.
class ScopedFlag {
 public:
  ScopedFlag(bool& flag, bool value) : flag_(flag), before_(flag) { flag_ = value; }
  ~ScopedFlag() { flag_ = before_; }
  ScopedFlag(const ScopedFlag&) = delete;
  ScopedFlag& operator=(const ScopedFlag&) = delete;

 private:
  bool& flag_;
  bool before_;
};

}  // namespace tavrel

#endif  // TAVREL_GRAPH_OUTPUT_PAUSE_H_
