#ifndef TAVREL_SERVICE_BUFFER_WATCH_H_
#define TAVREL_SERVICE_BUFFER_WATCH_H_

#include <chrono>
#include <cstdint>

#include "files/recording_engine.h"
#include "link/link.h"
#include "platform/clock.h"
#include "state/numbers.h"
#include "state/run_state.h"

namespace tavrel {

// Finds out whether a test of an instrument makes its recordings lose the samples that wait in its
// buffers. The sum of the samples read of an input and of those that still wait in the instrument
// never falls, unless the instrument has dropped samples; the fall says how many. One input of a
// recording is enough. Lives as long as the program: the firmware goes on with a test whose screen
// has closed.
class BufferWatch {
 public:
  // All outlive this.
  BufferWatch(RunState& state, Link& link, RecordingEngine& engine, const Clock& clock)
      : state_(state), link_(link), engine_(engine), clock_(clock) {}

  // A command that may take the samples has been given to the instrument. Its recordings are
  // watched for ten seconds.
  void Begin(int inet);

  // On a free tick: reads register R of one input, a few times a second. True: it has used the
  // line.
  [[nodiscard]] bool Look();

 private:
  using Time = std::chrono::nanoseconds;

  // Sets that were in the buffer or have been read out of it.
  struct Count {
    bool is_known = false;
    std::int64_t sets = 0;
  };

  [[nodiscard]] bool IsWatched(int slot) const;
  [[nodiscard]] int NextSlot();
  void Compare(int slot, std::int64_t sets);

  RunState& state_;
  Link& link_;
  RecordingEngine& engine_;
  const Clock& clock_;
  ByInet<Time> until_{};
  BySlot<Count> counted_{};
  Time next_look_{};
  int last_slot_ = 0;
};

}  // namespace tavrel

#endif  // TAVREL_SERVICE_BUFFER_WATCH_H_
